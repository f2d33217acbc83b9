#include "framework/text/CodePage.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "framework/windows/desktop/UserActions.h"
#include "framework/windows/dialogs/Navigation.h"
#include "framework/windows/dialogs/TextWidth.h"
#include "module/entry/VEXAGpsDialog.h"
#include "tests/support/TemporaryFolder.h"
#include "workbench/session/Document.h"
#include "workbench/session/WindowFrame.h"
#include "workbench/session/WorkbenchHost.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

namespace {

using namespace workbench;

constexpr struct {
    const wchar_t* className;
    UINT templateId;
    bool modal;
} kDialogs[] = {
    {L"CVEXAGpsResultCombinationDlg", 9207, true},     {L"CGpsGenerateOptModelDlg", 9626, true},
    {L"CGpsResponseSurfaceDlg", 6342, true},           {L"CVEXAGpsSAMResultDlg", 4501, false},
    {L"CVEXAGpsDynamicResultsGraphDlg", 4554, false},  {L"CVEXAGpsResultsGraphDlg", 4673, false},
    {L"CVEXAGpsDynamicResultsSelectDlg", 4671, false}, {L"CVEXAGpsAnalResult", 4672, false},
    {L"CVEXAGpsDynamicResultsPlotDlg", 4555, false},   {L"CVEXAGpsSafetyGraphDlg", 6391, false},
    {L"CVEXAGpsStagewiseRelDispDlg", 4705, false},
};

std::string narrow(const std::wstring& text) {
    return framework::toUtf8(text);
}

/// Every text of a dialog that is not a user's own, as one text.
std::wstring textsOf(HWND dialog) {
    std::wstring texts = framework::windowText(dialog);
    for (const HWND control : framework::findWindow(dialog)->children) {
        const auto& record = *framework::findWindow(control);
        if (record.windowClass->kind == framework::ControlKind::kEdit) continue;
        texts += L"\n" + record.text;
        for (const auto& column : record.columns)
            texts += L"\n" + column.title;
        for (const auto& item : record.items)
            texts += L"\n" + item.texts.front();
    }
    return texts;
}

void expectThatTextsFit(HWND dialog, UINT templateId) {
    constexpr int kCaptionButtons = 60; // pixels for the icon and the close button
    constexpr int kHeadingMargins = 12;
    const auto* layout = framework::findTemplate(templateId);
    ASSERT_TRUE(layout);
    const std::wstring title = framework::windowText(dialog);
    EXPECT_LE(framework::textWidth(title) + kCaptionButtons, framework::dialogToPixels(layout->rect).Width())
        << narrow(title);
    EXPECT_EQ(textsOf(dialog).find(L"IDS_"), std::wstring::npos) << narrow(textsOf(dialog));
    std::set<wchar_t> letters;
    for (const auto& control : layout->controls) {
        const auto* record = framework::findWindow(GetDlgItem(dialog, static_cast<int>(control.id)));
        ASSERT_TRUE(record) << control.id;
        EXPECT_TRUE(framework::fitsControl(control, record->text))
            << control.id << " " << narrow(record->text);
        const wchar_t letter = framework::mnemonicOf(record->text);
        EXPECT_TRUE(letter == 0 || letters.insert(letter).second) << narrow(record->text);
        for (const auto& item : record->items)
            EXPECT_TRUE(framework::fitsControl(control, item.texts.front())) << narrow(item.texts.front());
        for (const auto& column : record->columns)
            EXPECT_LE(framework::textWidth(column.title) + kHeadingMargins, column.width)
                << narrow(column.title);
    }
}

TEST(DialogTexts, FitInBothLanguagesAndFollowTheLanguage) {
    const TemporaryFolder folder;
    WorkbenchHost host({});
    ModelDatabase empty;
    ASSERT_TRUE(saveDocument(empty, folder / "dam.wkm"));
    auto document = Document::open(folder / "dam.wkm");
    ASSERT_TRUE(document) << document.error().message;
    WindowFrame frame(L"test");
    frame.showView(*(*document)->GetActiveView());
    for (const auto& opened : kDialogs) {
        SCOPED_TRACE(narrow(opened.className));
        std::set<std::wstring> shown; // a text for each language
        const auto look = [&] {
            const HWND dialog = GetActiveWindow();
            ASSERT_NE(dialog, frame.mainWindow().m_hWnd);
            for (const Language language : {Language::Korean, Language::English, Language::Korean}) {
                host.setLanguage(language);
                SCOPED_TRACE(language == Language::Korean ? "Korean" : "English");
                expectThatTextsFit(dialog, opened.templateId);
                shown.insert(textsOf(dialog));
            }
        };
        for (const Language language : {Language::English, Language::Korean}) {
            host.setLanguage(language);
            if (opened.modal) {
                framework::scriptedDesk().addStep([&] { look(); });
                EXPECT_EQ(IVEXAGpsDialog::DoModal(document->get(), opened.className, nullptr, nullptr),
                          IDCANCEL);
            } else {
                EXPECT_EQ(IVEXAGpsDialog::DoModeless(document->get(), opened.className, nullptr, nullptr), 0);
                look();
                EXPECT_TRUE(framework::user::close(GetActiveWindow()));
            }
        }
        EXPECT_EQ(shown.size(), 2u);
    }
}

} // namespace
