#include "framework/resourcescript/ResourceScript.h"

#include "tests/framework/windows/TestTemplates.h"

#include <gtest/gtest.h>

namespace {

using framework::ResourceScript;

ResourceScript read(const std::wstring& text) {
    framework::ScriptSymbols symbols;
    framework::readSymbols(
        L"#pragma once\n#define IDD_A 9207 // a dialog\n  # define IDC_B 0x3E9\n#define IDC_C IDC_B\n"
        L"#define GUARD\n#define IDC_D -1\n// #define IDC_E 5\n",
        symbols);
    return framework::readResourceScript(text, symbols);
}

TEST(ResourceScript, CompiledTemplatesHaveTheScriptsValues) {
    const auto templates = testDialogTemplates();
    ASSERT_EQ(templates.size(), 6u);
    const auto& controls = templates[0];
    EXPECT_EQ(controls.id, 100u);
    EXPECT_STREQ(controls.title, L"Controls \"for\" tests");
    EXPECT_STREQ(templates[2].title, L"결과 조합");
    EXPECT_EQ(controls.rect, CRect(10, 20, 250, 220));
    EXPECT_EQ(controls.style, DS_SETFONT | DS_MODALFRAME | WS_POPUP | WS_CAPTION | WS_SYSMENU);
    EXPECT_EQ(templates[3].style, WS_POPUP | WS_BORDER | WS_SYSMENU); // none is given
    EXPECT_TRUE(templates[4].controls.empty());
    const struct {
        std::size_t index;
        UINT id;
        const wchar_t* className;
        UINT style;
        CRect rect;
    } rows[] = {
        {0, 0xFFFF, L"Static", SS_LEFT | WS_GROUP, {7, 9, 47, 17}},
        {4, IDC_COUNT, L"Edit", ES_AUTOHSCROLL | ES_NUMBER | WS_BORDER | WS_TABSTOP, {95, 25, 130, 39}},
        {10, IDC_BOTH, L"Button", BS_AUTORADIOBUTTON | WS_TABSTOP, {92, 70, 122, 80}}, // NOT WS_VISIBLE
        {12, IDC_KIND, L"ComboBox", CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, {50, 90, 130, 150}},
        {19, 1024, L"Button", BS_PUSHBUTTON | WS_TABSTOP, {60, 180, 110, 194}},
        {20, 1, L"Button", BS_DEFPUSHBUTTON | WS_TABSTOP, {115, 180, 165, 194}},
    };
    for (const auto& row : rows) {
        const auto& control = controls.controls[row.index];
        EXPECT_EQ(control.id, row.id);
        EXPECT_STREQ(control.className, row.className);
        EXPECT_EQ(control.style, row.style | WS_CHILD | (row.id == IDC_BOTH ? 0 : WS_VISIBLE)) << row.id;
        EXPECT_EQ(control.rect, row.rect) << row.id;
    }
}

TEST(ResourceScript, Symbols) {
    const auto script = read(
        L"IDD_A DIALOGEX 0,0,1,1\nEXSTYLE WS_EX_CONTROLPARENT\nBEGIN\nLTEXT \"a\\n\\\\b\",IDC_C,-1,0x10,2,3\n"
        L"CONTROL \"\",IDC_D,\"Static\",SS_SIMPLE|NOT WS_VISIBLE,0,0,1,1,WS_EX_CLIENTEDGE\nEND");
    ASSERT_TRUE(script.problems.empty());
    EXPECT_EQ(script.dialogs[0].id, 9207u);
    EXPECT_EQ(script.dialogs[0].exStyle, WS_EX_CONTROLPARENT);
    const auto& controls = script.dialogs[0].controls;
    EXPECT_EQ(controls[0].id, 1001u);
    EXPECT_EQ(controls[0].text, L"a\n\\b");
    EXPECT_EQ(controls[0].rect[0], -1);
    EXPECT_EQ(controls[0].rect[1], 16);
    EXPECT_EQ(controls[1].id, 0xFFFFu);
    EXPECT_EQ(controls[1].style, SS_SIMPLE | WS_CHILD);
    EXPECT_EQ(controls[1].exStyle, WS_EX_CLIENTEDGE);
}

TEST(ResourceScript, FaultsAreNamedWithTheirLine) {
    const std::wstring head = L"1 DIALOGEX 0, 0, 9, 9\nBEGIN\n";
    const struct {
        std::wstring text;
        const wchar_t* problem;
    } rows[] = {
        {L"1 MENU\nBEGIN\nEND", L"line 1: \"1\" is no statement"},
        {L"IDD_X DIALOGEX 0,0,1,1 BEGIN END", L"line 1: nothing defines \"IDD_X\""},
        {L"1 DIALOGEX 0, 0, 9\nBEGIN END", L"line 2: \",\" is missing before \"BEGIN\""},
        {L"1 DIALOGEX 0, 0, 9, 9\nMENU 3\nBEGIN END", L"line 2: \"MENU\" is no option"},
        {L"1 DIALOGEX 0, 0, 9, 9\nCAPTION Title\nBEGIN END", L"line 2: a text in quotes is missing"},
        {head, L"line 2: END is missing"},
        {L"1 DIALOGEX 0, 0, 9, 9", L"line 1: BEGIN is missing"},
        {head + L"SLIDER 1, 2, 3, 4, 5\nEND", L"line 3: \"SLIDER\" is no control"},
        {head + L"LTEXT \"a\" 1, 2, 3, 4, 5\nEND", L"line 3: \",\" is missing before \"1\""},
        {head + L"EDITTEXT 1, 2, 3, 4, 5, WS_NONSENSE\nEND", L"line 3: nothing defines \"WS_NONSENSE\""},
        {head + L"EDITTEXT 1, 2, 3, \"x\", 5\nEND", L"line 3: a number is missing"},
        {head + L"LTEXT \"open, 1, 2, 3, 4, 5\nEND", L"line 4: \",\" is missing before \"END\""},
        {head + L"END\n1 DIALOGEX 0,0,1,1 BEGIN END", L"line 4: the id 1 is used by the dialog of line 1"},
        {L"/* open", nullptr},
        {L"", nullptr},
    };
    for (const auto& row : rows) {
        const auto script = read(row.text);
        if (!row.problem) {
            EXPECT_TRUE(script.problems.empty());
            continue;
        }
        ASSERT_FALSE(script.problems.empty()) << testing::PrintToString(row.text);
        EXPECT_TRUE(script.problems[0].starts_with(row.problem))
            << testing::PrintToString(script.problems[0]);
    }
    // The dialog after a faulty one is read.
    EXPECT_EQ(read(head + L"SLIDER 1\nEND\n2 DIALOGEX 0,0,1,1 BEGIN END").dialogs.size(), 1u);
    for (std::size_t size = 0; size < rows[8].text.size(); ++size)
        read(rows[8].text.substr(0, size)); // whatever is missing at the end
}

TEST(ResourceScript, SourceEscapesTexts) {
    ResourceScript script;
    script.dialogs.push_back({L"\"a\\b\n1?\x1", 5, 0, 0, {}, {}, 1});
    const std::wstring source = framework::writeTemplateSource(script, L"made");
    EXPECT_NE(source.find(L"L\"\\\"a\\\\b\\0121?\\001\""), std::wstring::npos);
}

} // namespace
