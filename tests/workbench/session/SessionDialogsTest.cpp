#include "framework/windows/ErrorOutput.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "host/dialogs/QMPostDialog.h"
#include "module/entry/VEXAGpsDialog.h"
#include "tests/support/TemporaryFolder.h"
#include "workbench/document/DocumentFile.h"
#include "workbench/session/Document.h"
#include "workbench/session/WindowFrame.h"
#include "workbench/session/WorkbenchHost.h"

#include <gtest/gtest.h>

namespace {

using namespace workbench;

/// A document in the frame of a program without a screen.
class SessionDialogs : public testing::Test {
  protected:
    SessionDialogs() {
        framework::scriptedDesk().clear();
        ModelDatabase database;
        EXPECT_TRUE(saveDocument(database, folder / "empty.wkm"));
        auto opened = Document::open(folder / "empty.wkm");
        EXPECT_TRUE(opened);
        document = std::move(*opened);
        frame.showView(*document->GetActiveView());
    }
    CWnd* open(const wchar_t* name) {
        IVEXAGpsDialog::DoModeless(document.get(), name, nullptr, nullptr);
        return CWnd::GetActiveWindow();
    }
    static std::wstring titleOf(CWnd* window) {
        std::wstring text;
        window->GetWindowText(text);
        return text;
    }
    const TemporaryFolder folder;
    WorkbenchHost host{{}};
    WindowFrame frame{L"main"};
    std::unique_ptr<Document> document;
};

TEST_F(SessionDialogs, ReadTheirTextsAgainAndCloseWithTheDocument) {
    CWnd* graph = open(L"CVEXAGpsSafetyGraphDlg");
    EXPECT_EQ(titleOf(graph), L"Safety Graph");
    open(L"CVEXAGpsStagewiseRelDispDlg");
    host.setLanguage(Language::Korean);
    EXPECT_EQ(titleOf(graph), L"안전율 그래프");
    EXPECT_EQ(titleOf(CWnd::GetActiveWindow()), L"단계별 상대 변위");
    document.reset();
    EXPECT_EQ(framework::topLevelWindows(), std::vector<HWND>{frame.mainWindow().m_hWnd});
}

TEST_F(SessionDialogs, OpenWhereTheFrameIsNow) {
    const auto cornerOf = [&] {
        CRect rect;
        open(L"CVEXAGpsSafetyGraphDlg")->GetWindowRect(&rect);
        return rect.TopLeft();
    };
    EXPECT_EQ(cornerOf(), CPoint(0, 60));
    frame.place(CRect(200, 100, 1000, 700), CRect(400, 175, 1000, 690));
    EXPECT_EQ(cornerOf(), CPoint(200, 175));
}

/// Notes that the units changed.
class UnitDialog : public CQMPostDialog {
  public:
    explicit UnitDialog(CQMDocBase* doc)
        : CQMPostDialog(6391, doc) {}
    void OnUnitChanged() override { ++changes; }
    int changes = 0;
};

TEST_F(SessionDialogs, HearOfUnits) {
    auto* dialog = new UnitDialog(document.get());
    ASSERT_TRUE(dialog->Create(nullptr));
    host.setCurrentUnits({"kN", "m"});
    EXPECT_EQ(dialog->changes, 1);
    host.setDatabaseUnits({"N", "m"});
    EXPECT_EQ(dialog->changes, 2);
}

TEST_F(SessionDialogs, MessagesGoThroughTheDeskAndCausesToTheErrors) {
    EXPECT_EQ(AfxMessageBox(L"first", MB_YESNO), IDYES);
    framework::scriptedDesk().addAnswer(IDNO);
    EXPECT_EQ(AfxMessageBox(L"second", MB_YESNO), IDNO);
    framework::reportError(L"third");
    EXPECT_EQ(host.errors(), (std::vector<std::string>{"first", "second", "third"}));
    ASSERT_EQ(framework::scriptedDesk().messages().size(), 2u);
    EXPECT_EQ(framework::scriptedDesk().messages()[1].answer, IDNO);
}

} // namespace
