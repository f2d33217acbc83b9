#include "module/stability/SafetyHistory.h"

#include "framework/text/CodePage.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <sstream>

namespace {

SafetyHistory read(const std::string& text) {
    std::istringstream in(text);
    return readSafetyHistory(in);
}

/// Subcases as one text: "name: iterations displacement factor flag; ...".
std::string described(const SafetyHistory& history) {
    std::ostringstream out;
    for (const SafetySubcase& subcase : history.subcases) {
        out << "[" << framework::toUtf8(subcase.name) << "]";
        for (std::size_t i = 0; i < subcase.safety.size(); ++i)
            out << " " << subcase.iterations[i] << "/" << subcase.displacement[i] << "/" << subcase.safety[i]
                << "/" << int(subcase.isConverged[i]);
    }
    for (const std::size_t line : history.shortLines)
        out << " short:" << line;
    return out.str();
}

TEST(SafetyHistory, Read) {
    const struct {
        const char* text;
        const char* expected;
    } rows[] = {
        {"", ""},
        {"\n\n", ""},
        {"no block here\n1 2 3 T\n", ""},
        {"SUBCASE : Slope 1\nITERATION DISP FOS CONV\n5 0.1 1.0 T\n3, 0.2, 1.1, F\n\n",
         "[Slope 1] 5/0.1/1/1 3/0.2/1.1/0"},
        {"SUBCASE : a\n1 1 1 t\n\njunk\nSUBCASE : b\n2 2 2 T extra words", "[a] 1/1/1/1[b] 2/2/2/1"},
        {"SUBCASE : a\r\niteration x y z\r\n1\t2,3 T\r\n\r\nSUBCASE : b\r\n", "[a] 1/2/3/1[b]"},
        {" SUBCASE : indented\nsubcase : small\nSUBCASES: plural", "[plural]"}, // a prefix, of capitals
        {"SUBCASE", "[]"},
        {"SUBCASE :x", "[]"},
        {"SUBCASE : ", "[]"},
        {"SUBCASE :  two blanks  \t", "[ two blanks]"},
        {"SUBCASE : a\n1 2 3\n4 5 6 T\n\n7 8 9 T", "[a] 4/5/6/1 short:2"},
        {"SUBCASE : a\n\nITERATION\n", "[a]"},
        {"SUBCASE : a\nITERATIONS 1 2 3\n", "[a] 0/1/2/0"}, // the whole first field is the word
        {"SUBCASE : a\nx y z T\n1.9 1e3x .5 True\n99999999999 -1e400 nan T",
         "[a] 0/0/0/1 1/1000/0.5/0 2147483647/-inf/nan/1"},
        {"SUBCASE : a\nSUBCASE : b\n1 2 3 T\n", "[a] 1/2/3/1 short:2"}, // only an empty line ends a block
        {"SUBCASE : \xEA\xB0\x80\xEB\x82\x98\n1 1 1 T", "[\xEA\xB0\x80\xEB\x82\x98] 1/1/1/1"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(described(read(row.text)), row.expected) << testing::PrintToString(row.text);
}

TEST(SafetyHistory, CurvesTakeTheirRows) {
    const SafetyHistory history =
        read("SUBCASE : a\n5 0.1 1.0 T\n3 0.2 1.1 F\n4 0.4 1.2 t\n\nSUBCASE : b\n2147483647 1 1 F\n"
             "2147483647 2 1 F\n");
    const auto text = [](const std::vector<SafetyPoint>& points) {
        std::ostringstream out;
        for (const SafetyPoint& point : points)
            out << point.x << "," << point.y << " ";
        return out.str();
    };
    ASSERT_EQ(history.subcases.size(), 2u);
    EXPECT_EQ(text(displacementCurve(history.subcases[0])), "0.1,1 0.4,1.2 ");
    EXPECT_EQ(text(iterationCurve(history.subcases[0])), "5,1 8,1.1 12,1.2 ");
    EXPECT_EQ(text(displacementCurve(history.subcases[1])), "");
    EXPECT_EQ(iterationCurve(history.subcases[1])[1].x, 4294967294.0);
}

TEST(SafetyHistory, PathStandsBesideTheDocument) {
    EXPECT_EQ(safetyHistoryPath(L"/models/dam.v2.wkm", L"slope"), L"/models/dam.v2_slope_fos.out");
    EXPECT_EQ(safetyHistoryPath(L"C:\\my models\\dam.wkm", L""), L"C:\\my models\\dam__fos.out");
    EXPECT_EQ(safetyHistoryPath(L"", L"%s"), L"_%s_fos.out");
}

TEST(SafetyHistory, NoBytesAreTooBad) {
    std::string binary = "SUBCASE : bytes\n";
    for (int i = 0; i < 4000; ++i)
        binary += static_cast<char>(i * 37 % 256);
    EXPECT_EQ(read(binary).subcases.size(), 1u);

    const std::string endless(50'000'000, 'x');
    EXPECT_EQ(read("SUBCASE : " + endless).subcases[0].name.size(), 4096u - 10u);
    EXPECT_EQ(described(read("SUBCASE : a\n1 2 3 T " + endless + "\n4 5 6 T\n")), "[a] 1/2/3/1 4/5/6/1");
    // The cut falls into a letter of three bytes.
    std::string korean = "SUBCASE : ";
    for (int i = 0; i < 2000; ++i)
        korean += "\xEA\xB0\x80";
    EXPECT_EQ(read(korean).subcases[0].name, std::wstring((4096 - 10) / 3, L'\xAC00'));

    std::string shortRows = "SUBCASE : a\n";
    for (int i = 0; i < 1000; ++i)
        shortRows += "1 2\n";
    const SafetyHistory history = read(shortRows);
    EXPECT_EQ(history.shortLines.size(), kMostNamedLines);
    EXPECT_EQ(history.shortLineCount, 1000u);
}

TEST(SafetyHistory, AMillionRowsInAMoment) {
    std::string rows = "SUBCASE : long\n";
    for (int i = 0; i < 1'000'000; ++i)
        rows += "3, 1.2500e-03, 1.0500e+00, T\n";
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(read(rows).subcases[0].safety.size(), 1'000'000u);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30));
}

} // namespace
