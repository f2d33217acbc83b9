#include "framework/text/CodePage.h"

#include "framework/text/Utf8.h"
#include "tests/framework/SystemDecoder.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <vector>

using namespace framework;
using std::string_literals::operator""s;

namespace {

std::u32string utf32(std::string_view text, std::size_t& replaced) {
    return utf8::convert<char32_t>(text, utf8::kReplacement, replaced);
}

// Each byte that belongs to no character is one replacement.
TEST(Utf8, DecodesStrictly) {
    const struct {
        const char* what;
        std::string bytes;
        std::u32string expected;
        std::size_t replaced;
    } rows[] = {
        {"empty", "", U"", 0},
        {"ascii and zero", "a\0b"s, U"a\0b"s, 0},
        {"two bytes", "\xC3\xA9", U"\u00E9", 0},
        {"Korean", "\xEC\xA0\x88\xEC\xA0\x90", U"절점", 0},
        {"four bytes", "\xF0\x9F\x98\x80", U"\U0001F600", 0},
        {"last character", "\xF4\x8F\xBF\xBF", U"\U0010FFFF", 0},
        {"smallest of each length", "\x7F\xC2\x80\xE0\xA0\x80\xF0\x90\x80\x80",
         U"\u007F\u0080\u0800\U00010000", 0},
        {"beyond the last", "\xF4\x90\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD", 4},
        {"lead byte of five", "\xF8\x88\x80\x80\x80", U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD", 5},
        {"overlong zero", "\xC0\x80", U"\uFFFD\uFFFD", 2},
        {"overlong in three", "\xE0\x9F\xBF", U"\uFFFD\uFFFD\uFFFD", 3},
        {"overlong in four", "\xF0\x8F\xBF\xBF", U"\uFFFD\uFFFD\uFFFD\uFFFD", 4},
        {"surrogate", "\xED\xA0\x80", U"\uFFFD\uFFFD\uFFFD", 3},
        {"next to the surrogates", "\xED\x9F\xBF\xEE\x80\x80", U"\uD7FF\uE000", 0},
        {"continuation alone", "a\x80z", U"a\uFFFDz", 1},
        {"cut at the end", "a\xEC\xA0", U"a\uFFFD\uFFFD", 2},
        {"cut by a letter", "\xEC\xA0z", U"\uFFFD\uFFFDz", 2},
        {"cut by a character", "\xEC\xEC\xA0\x88", U"\uFFFD절", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        std::size_t replaced = 0;
        EXPECT_EQ(utf32(row.bytes, replaced), row.expected);
        EXPECT_EQ(replaced, row.replaced);
        std::size_t ignored = 0;
        const std::u16string narrow =
            utf8::convert<char16_t>(std::string_view(row.bytes), utf8::kReplacement, ignored);
        std::size_t lost = 0;
        const std::string again = utf8::convert<char>(std::u16string_view(narrow), U'?', lost);
        EXPECT_EQ(utf32(again, ignored), row.expected);
        EXPECT_EQ(lost, 0u);
    }
}

TEST(Utf8, ReplacesWhatIsNoCharacter) {
    const struct {
        const char* what;
        std::u16string text;
        std::string expected;
        std::size_t replaced;
    } narrow[] = {
        {"pair", {0xD83D, 0xDE00}, "\xF0\x9F\x98\x80", 0},
        {"first and last pair", {0xD800, 0xDC00, 0xDBFF, 0xDFFF}, "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", 0},
        {"high at the end", {u'a', 0xD83D}, "a?", 1},
        {"high before a letter", {0xD83D, u'a'}, "?a", 1},
        {"low alone", {0xDE00, u'a'}, "?a", 1},
        {"swapped", {0xDE00, 0xD83D}, "??", 2},
        {"high before a pair", {0xD83D, 0xD83D, 0xDE00}, "?\xF0\x9F\x98\x80", 1},
    };
    for (const auto& row : narrow) {
        SCOPED_TRACE(row.what);
        std::size_t replaced = 0;
        EXPECT_EQ(utf8::convert<char>(std::u16string_view(row.text), U'?', replaced), row.expected);
        EXPECT_EQ(replaced, row.replaced);
    }
    const std::u32string wide{U'a', 0xD83D, 0xDE00, 0x110000, 0xFFFFFFFF, U'z'};
    std::size_t replaced = 0;
    EXPECT_EQ(utf8::convert<char>(std::u32string_view(wide), U'?', replaced), "a????z");
    EXPECT_EQ(replaced, 4u);
}

TEST(Utf8, AgreesWithTheSystemOnRandomBytes) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    constexpr unsigned char likely[] = {'a',  0x80, 0xBF, 0x90, 0xC2, 0xE0,
                                        0xED, 0xEF, 0xF0, 0xF4, 0xA0, 0x8F};
    for (int round = 0; round < 2000; ++round) {
        std::string bytes;
        for (std::size_t i = random.below(12); i > 0; --i)
            bytes += static_cast<char>(random.oneIn(3) ? random.below(256)
                                                       : likely[random.below(std::size(likely))]);
        std::size_t replaced = 0;
        ASSERT_EQ(utf32(bytes, replaced), decodedBySystem(bytes)) << testing::PrintToString(bytes);
    }
}

struct PageRow {
    unsigned page;
    std::wstring text;
    std::string bytes;
};

TEST(CodePage, ConvertsBothWays) {
    std::wstring longText;
    std::string longBytes;
    for (int i = 0; i < 5000; ++i) { // longer than any block of the converter, cut at odd places
        longText += L"가b";
        longBytes += "\xB0\xA1"
                     "b";
    }
    const PageRow rows[] = {
        {949, L"한글", "\xC7\xD1\xB1\xDB"},
        {949, L"외적안정성검토", "\xBF\xDC\xC0\xFB\xBE\xC8\xC1\xA4\xBC\xBA\xB0\xCB\xC5\xE4"},
        {949, L"똠x", "\x8C\x63x"}, // beyond KS X 1001
        {949, L"a\\b~", "a\\b~"},
        {949, longText, longBytes},
        {1252, L"\u20AC\u00E9", "\x80\xE9"},
        {932, L"日\uFF71", "\x93\xFA\xB1"},
        {936, L"中", "\xD6\xD0"},
        {950, L"中", "\xA4\xA4"},
        {28591, L"\u00FF", "\xFF"},
        {kCodePageUtf8, L"절점", "\xEC\xA0\x88\xEC\xA0\x90"},
    };
    for (const PageRow& row : rows) {
        SCOPED_TRACE(row.page);
        std::size_t replaced = 99;
        EXPECT_EQ(wideToMulti(row.text, row.page, &replaced), row.bytes);
        EXPECT_EQ(replaced, 0u);
        EXPECT_EQ(multiToWide(row.bytes, row.page), row.text);
    }
}

TEST(CodePage, KoreanSyllablesAllReturn) {
    std::wstring all;
    for (wchar_t c = 0xAC00; c <= 0xD7A3; ++c)
        all += c;
    std::size_t replaced = 0;
    const std::string bytes = wideToMulti(all, kCodePageKorean, &replaced);
    EXPECT_EQ(replaced, 0u);
    EXPECT_EQ(bytes.size(), 2 * all.size());
    EXPECT_EQ(multiToWide(bytes, kCodePageKorean), all);
}

TEST(CodePage, LackingCharactersBecomeQuestionMarks) {
    const struct {
        unsigned page;
        std::wstring text;
        std::string expected;
        std::size_t replaced;
    } rows[] = {
        {949, L"가\U0001F600나", "\xB0\xA1?\xB3\xAA", 1},
        {949, {L'가', static_cast<wchar_t>(0xD800), L'x'}, "\xB0\xA1?x", 1},
        {949, {static_cast<wchar_t>(0xDC00), L'x'}, "?x", 1},
        {1252, L"한글é", "??\xE9", 2},
        {1252, L"é한", "\xE9?", 1},
        {20127, L"né", "n?", 1},
        {4711, L"a절é", "a??", 2}, // no such code page
        {kCodePageUtf8, {L'a', static_cast<wchar_t>(0xDFFF)}, "a?", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        std::size_t replaced = 99;
        EXPECT_EQ(wideToMulti(row.text, row.page, &replaced), row.expected);
        EXPECT_EQ(replaced, row.replaced);
    }
}

TEST(CodePage, ForeignBytesBecomeReplacements) {
    const PageRow rows[] = {
        {949, L"한\uFFFD", "\xC7\xD1\xB1"}, // cut at the end
        {949, L"\uFFFDa",
         "\xFF"
         "a"},                                // never a first byte
        {949, L"\uFFFD 가", "\xC7 \xB0\xA1"}, // a blank is no second byte
        {4711, L"a\uFFFD\uFFFD", "a\xB0\xA1"},
    };
    for (const PageRow& row : rows)
        EXPECT_EQ(multiToWide(row.bytes, row.page), row.text) << row.bytes;
}

TEST(CodePage, RandomBytesNeverStopAConversion) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    constexpr unsigned pages[] = {949, 932, 936, 950, 1252, 54936, kCodePageUtf8};
    for (int round = 0; round < 500; ++round) {
        std::string bytes;
        for (std::size_t i = random.below(40); i > 0; --i)
            bytes += static_cast<char>(random.below(256));
        const unsigned page = pages[random.below(std::size(pages))];
        const std::wstring wide = multiToWide(bytes, page);
        ASSERT_LE(wide.size(), bytes.size());
        // What was text returns as the same text.
        std::size_t replaced = 0;
        const std::string again = wideToMulti(wide, page, &replaced);
        if (replaced == 0) {
            ASSERT_EQ(multiToWide(again, page), wide) << page;
        }
    }
}

TEST(CodePage, OnlyUsableHostCodePagesAreTaken) {
    ASSERT_EQ(hostCodePage(), kCodePageUtf8);
    const struct {
        unsigned page;
        int accepted;
    } rows[] = {{949, 1}, {1252, 1}, {0, 0}, {4711, 0}, {37, 0} /* EBCDIC */, {1200, 0}, {4294967295u, 0}};
    for (const auto& row : rows) {
        const unsigned before = hostCodePage();
        EXPECT_EQ(setHostCodePage(row.page), row.accepted) << row.page;
        EXPECT_EQ(hostCodePage(), row.accepted ? row.page : before);
    }
    EXPECT_EQ(wideToMulti(L"é"), "\xE9");
    EXPECT_EQ(toUtf8(L"é"), "\xC3\xA9");
    EXPECT_EQ(setHostCodePage(kCodePageUtf8), 1);
}

} // namespace
