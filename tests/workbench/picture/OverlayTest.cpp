#include "workbench/picture/Overlay.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace workbench;

namespace {

/// Every character is as wide as half the font size.
double halfWidth(const std::string& text, double size, bool) {
    return 0.5 * size *
           static_cast<double>(std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

} // namespace

TEST(Overlay, AnyBytesBecomeValidText) {
    const std::pair<std::string, std::string> rows[] = {
        {"plain", "plain"},
        {"정적 해석", "정적 해석"},
        {"a\tb\nc", "a b c"},
        {std::string("a\0b\x7F", 4), "ab"},
        {"\xFFx", "\xEF\xBF\xBDx"},
        {"cut \xEC\xA0", "cut \xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xC0\xAF", "\xEF\xBF\xBD\xEF\xBF\xBD"},                 // overlong
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}, // surrogate
        {"\xF0\x9F\x98\x80", "\xF0\x9F\x98\x80"},
    };
    for (const auto& [bytes, text] : rows)
        EXPECT_EQ(cleanText(bytes), text);
}

TEST(Overlay, LongTextsAreCutBetweenCharactersOrWrapped) {
    const TextWidth measure = halfWidth;
    EXPECT_EQ(fittingText("하중 케이스", 100, 10, false, measure), "하중 케이스");
    EXPECT_EQ(fittingText("하중 케이스", 20, 10, false, measure), "하중 …");
    EXPECT_EQ(fittingText("하중", 4, 10, false, measure), "");
    EXPECT_EQ(fittingText(std::string(1000000, 'x'), 20, 10, false, measure), "xxx…");
    using Lines = std::vector<std::string>;
    EXPECT_EQ(wrappedText("Equivalent stress [MPa]", 60, 10, true, 3, measure),
              (Lines{"Equivalent", "stress [MPa]"}));
    EXPECT_EQ(wrappedText("one two three four", 25, 10, true, 2, measure), (Lines{"one", "two …"}));
    EXPECT_EQ(wrappedText("unbreakablelongword x", 30, 10, true, 3, measure), (Lines{"unbre…", "x"}));
    EXPECT_EQ(wrappedText("", 30, 10, true, 3, measure), Lines{});
}
