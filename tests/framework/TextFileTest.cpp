#include "framework/files/PathMap.h"
#include "framework/files/StdioFile.h"
#include "framework/text/CodePage.h"
#include "framework/text/LineEnd.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <vector>

using framework::widePath;

namespace {

using Lines = std::vector<std::wstring>;

Lines linesOf(const std::filesystem::path& path, unsigned flags) {
    CStdioFile file;
    EXPECT_TRUE(file.Open(widePath(path), flags));
    Lines lines;
    for (std::wstring line; file.ReadString(line);)
        lines.push_back(line);
    std::wstring line = L"left over";
    EXPECT_EQ(file.ReadString(line), 0); // the end stays the end
    EXPECT_EQ(line, L"");
    return lines;
}

TEST(StdioFile, ReadsLines) {
    const TemporaryFolder folder;
    const std::string longLine((3 << 20) + 5, 'x');
    // The line feed, and then the carriage return alone, behind the first buffer of 1 MiB.
    const std::string edge((1 << 20) - 1, 'e');
    using std::string_literals::operator""s;
    const struct {
        std::string bytes;
        Lines lines;
    } rows[] = {
        {"", {}},
        {"\n", {L""}},
        {"\r\n", {L""}},
        {"a\nb\n", {L"a", L"b"}},
        {"a\r\nb\r\n", {L"a", L"b"}},
        {"a\n\n\r\nb", {L"a", L"", L"", L"b"}},
        {"a\rb\n", {L"a\rb"}},
        {"a\r\r\n", {L"a\r"}},
        {"a\r", {L"a\r"}},
        {"a\0b\nc"s, {std::wstring(L"a\0b", 3), L"c"}},
        {"절점\n", {L"절점"}},
        {"cut \xEC\xA0\n", {L"cut \uFFFD\uFFFD"}},
        {longLine + "\nend", {std::wstring(longLine.begin(), longLine.end()), L"end"}},
        {edge + "\r\nz", {std::wstring(edge.begin(), edge.end()), L"z"}},
        {edge + "e\r\nz", {std::wstring(edge.begin(), edge.end()) + L"e", L"z"}},
    };
    for (const auto& row : rows) {
        writeBytes(folder / "text", row.bytes);
        for (const unsigned type : {CFile::typeText, CFile::typeBinary})
            EXPECT_TRUE(linesOf(folder / "text", CFile::modeRead | type) == row.lines)
                << row.bytes.substr(0, 40);
    }
}

TEST(StdioFile, ReadsAndWritesInTheHostsCodePage) {
    const TemporaryFolder folder;
    ASSERT_TRUE(framework::setHostCodePage(949));
    writeBytes(folder / "text", "\xC7\xD1\xB1\xDB\r\n");
    const Lines lines = linesOf(folder / "text", CFile::modeRead | CFile::typeText);
    {
        CStdioFile file;
        EXPECT_TRUE(
            file.Open(widePath(folder / "out"), CFile::modeCreate | CFile::modeWrite | CFile::typeBinary));
        file.WriteString(L"한\n😀\n");
        file.Close();
    }
    framework::setHostCodePage(framework::kCodePageUtf8);
    EXPECT_EQ(lines, Lines{L"한글"});
    EXPECT_EQ(bytesOf(folder / "out"), "\xC7\xD1\n?\n");
}

TEST(StdioFile, TextModeWritesThePlatformsLineEnds) {
    const TemporaryFolder folder;
    const std::string end(framework::kLineEnd);
    const struct {
        unsigned type;
        std::string expected;
    } rows[] = {{CFile::typeText, "a" + end + end + "b"}, {CFile::typeBinary, "a\n\nb"}};
    for (const auto& row : rows) {
        CStdioFile file;
        ASSERT_TRUE(file.Open(widePath(folder / "text"), CFile::modeCreate | CFile::modeWrite | row.type));
        file.WriteString(L"a\n\n");
        file.WriteString(L"b");
        file.Close();
        EXPECT_EQ(bytesOf(folder / "text"), row.expected);
    }
}

TEST(StdioFile, LinesAndPositionsMix) {
    const TemporaryFolder folder;
    writeBytes(folder / "text", "one\r\ntwo\nthree\n");
    CStdioFile file;
    ASSERT_TRUE(file.Open(widePath(folder / "text"), CFile::modeReadWrite));
    std::wstring line;
    ASSERT_TRUE(file.ReadString(line));
    EXPECT_EQ(file.GetPosition(), 5u);
    char byte = 0;
    ASSERT_EQ(file.Read(&byte, 1), 1u);
    ASSERT_TRUE(file.ReadString(line));
    EXPECT_EQ(line, L"wo");
    file.WriteString(L"THREE\n");
    file.Seek(5, CFile::begin);
    ASSERT_TRUE(file.ReadString(line) && file.ReadString(line));
    EXPECT_EQ(line, L"THREE");
}

} // namespace
