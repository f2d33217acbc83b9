#include "framework/windows/dialogs/TextWidth.h"

#include "framework/windows/WindowStyles.h"

#include <gtest/gtest.h>

namespace {

using framework::ControlTemplate;
using framework::fitsControl;
using framework::textWidth;

TEST(TextWidth, SumsBeforeItRounds) {
    EXPECT_EQ(textWidth(L""), 0);
    EXPECT_EQ(textWidth(L"0"), 7);           // 1303 / 2048 * 11 = 6.9986
    EXPECT_EQ(textWidth(L"0000000000"), 70); // 69.986
    EXPECT_EQ(textWidth(L"iiiiiiiiii"), 31); // 30.56
    EXPECT_EQ(textWidth(L"결과"), 22);
    EXPECT_EQ(textWidth(L"é°µ"), textWidth(L"e") + 6 + 7); // 1024 and 1303
}

TEST(TextWidth, FitsByTheKindOfControl) {
    const struct {
        const char* name;
        ControlTemplate control;
        const wchar_t* text;
        bool fits;
    } rows[] = {
        // 40 units are 60 pixels, 8 units 13.
        {"label", {L"Static", L"", 1, SS_LEFT, 0, {0, 0, 40, 8}}, L"결과 결", true}, // 37
        {"label of two lines", {L"Static", L"", 1, SS_LEFT, 0, {0, 0, 40, 8}}, L"결과조합 결과", false},
        {"with room for two", {L"Static", L"", 1, SS_LEFT, 0, {0, 0, 40, 16}}, L"결과조합 결과", true},
        {"that does not break", {L"Static", L"", 1, SS_SIMPLE, 0, {0, 0, 40, 16}}, L"결과조합 결과", false},
        {"one long word", {L"Static", L"", 1, SS_LEFT, 0, {0, 0, 40, 80}}, L"결과조합결과", false},
        {"lines of the text", {L"Static", L"", 1, SS_LEFT, 0, {0, 0, 40, 16}}, L"a\nb\nc", false},
        {"button", {L"Button", L"", 1, BS_PUSHBUTTON, 0, {0, 0, 40, 14}}, L"결과조합", true}, // 44 of 50
        {"its mnemonic takes no room",
         {L"Button", L"", 1, BS_PUSHBUTTON, 0, {0, 0, 40, 14}},
         L"&결&과&조&합",
         true},
        {"check box",
         {L"Button", L"", 1, BS_AUTOCHECKBOX, 0, {0, 0, 40, 10}},
         L"결과조합",
         false}, // 44 of 42
        {"edit", {L"Edit", L"", 1, 0, 0, {0, 0, 4, 14}}, L"any text at all", true},
    };
    for (const auto& row : rows)
        EXPECT_EQ(fitsControl(row.control, row.text), row.fits) << row.name;
}

} // namespace
