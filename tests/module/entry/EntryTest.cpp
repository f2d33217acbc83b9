#include "host/dialogs/QMPostDialog.h"
#include "host/dialogs/QMPostSelDialog.h"
#include "module/optimization/GpsGenerateOptModelDlg.h"
#include "module/optimization/GpsResponseSurfaceDlg.h"
#include "module/stability/VEXAGpsSAMResultDlg.h"
#include "module/stability/VEXAGpsSafetyGraphDlg.h"
#include "module/stability/VEXAGpsStagewiseRelDispDlg.h"
#include "tests/module/entry/EntryFixture.h"

namespace {

class Entry : public EntryFixture {};

template <class Base>
bool isA(const CQMDialog* dialog) {
    return dynamic_cast<const Base*>(dialog) != nullptr;
}

TEST_F(Entry, EveryModelessDialogOpensAtTheHeightOfTheView) {
    const struct {
        const wchar_t* name;
        UINT id;
        bool (*hasBase)(const CQMDialog* dialog);
    } rows[] = {
        {L"CVEXAGpsSAMResultDlg", 4501, &isA<CQMPostSelDialog>},
        {L"CVEXAGpsDynamicResultsGraphDlg", 4554, &isA<CQMDialog>},
        {L"CVEXAGpsResultsGraphDlg", 4673, &isA<CQMDialog>},
        {L"CVEXAGpsDynamicResultsSelectDlg", 4671, &isA<CQMDialog>},
        {L"CVEXAGpsAnalResult", 4672, &isA<CQMPostSelDialog>},
        {L"CVEXAGpsDynamicResultsPlotDlg", 4555, &isA<CQMDialog>},
        {L"CVEXAGpsSafetyGraphDlg", 6391, &isA<CQMDialog>},
        {L"CVEXAGpsStagewiseRelDispDlg", 4705, &isA<CQMPostDialog>},
        {L"CGpsGenerateOptModelDlg", 9626, &isA<CQMDialog>},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.id);
        EXPECT_EQ(openModeless(row.name), 0);
        CQMDialog* dialog = active();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->GetHtmlHelpID(), row.id);
        EXPECT_TRUE(row.hasBase(dialog));
        EXPECT_EQ(dialog->GetDocBase(), &document);
        EXPECT_TRUE(dialog->IsWindowVisible());
        EXPECT_EQ(dialog->GetOwner(), &frame->mainWindow());
        CRect rect;
        dialog->GetWindowRect(&rect);
        EXPECT_EQ(rect.TopLeft(), CPoint(100, 110)); // the main window's left, the view's top
        dialog->DestroyWindow();
        EXPECT_EQ(document.GetObserverCount(), 0u);
    }
}

TEST_F(Entry, ModalDialogsPassTheirAnswerOnAndStandInTheMiddle) {
    for (const auto& [name, id] :
         {std::pair{kModalNames[0], 9207u}, {kModalNames[1], 9626u}, {kModalNames[2], 6342u}}) {
        SCOPED_TRACE(testing::Message() << id);
        for (const int answer : {IDOK, IDCANCEL, 77, 0, -5}) {
            framework::scriptedDesk().addStep([&, expected = id] {
                ASSERT_NE(active(), nullptr);
                EXPECT_EQ(active()->GetHtmlHelpID(), expected);
                EXPECT_FALSE(frame->mainWindow().IsWindowEnabled());
                CRect rect;
                active()->GetWindowRect(&rect);
                EXPECT_NEAR(rect.CenterPoint().x, 500, 1);
                EXPECT_NEAR(rect.CenterPoint().y, 350, 1);
                active()->EndDialog(answer);
            });
            EXPECT_EQ(runModal(name), answer);
        }
        framework::scriptedDesk().addStep([&] { active()->DestroyWindow(); });
        EXPECT_EQ(runModal(name), -1);
        EXPECT_TRUE(frame->mainWindow().IsWindowEnabled());
        EXPECT_EQ(document.GetObserverCount(), 0u);
    }
}

TEST_F(Entry, ArgumentsReachTheirDialogs) {
    // The name is the dialog's own copy; without one it is empty.
    std::wstring name = L"slope 1";
    openModeless(L"CVEXAGpsSafetyGraphDlg", name.data());
    name = L"changed";
    EXPECT_EQ(active<CVEXAGpsSafetyGraphDlg>()->GetName(), L"slope 1");
    active()->DestroyWindow();
    openModeless(L"CVEXAGpsSafetyGraphDlg");
    EXPECT_EQ(active<CVEXAGpsSafetyGraphDlg>()->GetName(), L"");
    active()->DestroyWindow();

    support::MemoryView other(document);
    openModeless(L"CVEXAGpsStagewiseRelDispDlg", static_cast<CQMViewBase*>(&other));
    EXPECT_EQ(active<CVEXAGpsStagewiseRelDispDlg>()->GetView(), &other);
    active()->DestroyWindow();
    openModeless(L"CVEXAGpsStagewiseRelDispDlg");
    EXPECT_EQ(active<CVEXAGpsStagewiseRelDispDlg>()->GetView(), nullptr);
    active()->DestroyWindow();

    int kept = 0;
    openModeless(L"CVEXAGpsSAMResultDlg", &name, &kept);
    EXPECT_EQ(active<CVEXAGpsSAMResultDlg>()->GetParam(), &kept);
    active()->DestroyWindow();
}

TEST_F(Entry, TheCombinationDialogFollowsTheGivenViewOrTheActiveOne) {
    support::MemoryView other(document);
    for (CQMViewBase* given : {static_cast<CQMViewBase*>(nullptr), static_cast<CQMViewBase*>(&other)}) {
        CQMViewBase* followed = nullptr;
        framework::scriptedDesk().addStep(
            [&] { followed = active<IQMPostUIListener>()->GetPostListenerView(); });
        runModal(L"CVEXAGpsResultCombinationDlg", given);
        EXPECT_EQ(followed, given ? given : &view);
    }
}

TEST_F(Entry, ADesignIsCopiedIntoModalDialogsOnly) {
    tagTDgnaGUI design{42, L"beam"};
    std::vector<ItrKey> keys;
    const auto note = [&](auto* dialog) {
        ASSERT_NE(dialog, nullptr);
        keys.push_back(dialog->GetDesign().designKey);
    };
    for (void* p1 : {static_cast<void*>(&design), static_cast<void*>(nullptr)}) {
        framework::scriptedDesk().addStep([&] { note(active<CGpsGenerateOptModelDlg>()); });
        runModal(L"CGpsGenerateOptModelDlg", p1);
        framework::scriptedDesk().addStep([&] { note(active<CGpsResponseSurfaceDlg>()); });
        runModal(L"CGpsResponseSurfaceDlg", p1);
        openModeless(L"CGpsGenerateOptModelDlg", p1);
        note(active<CGpsGenerateOptModelDlg>());
        EXPECT_EQ(active<CGpsGenerateOptModelDlg>()->GetView(), &view);
        active()->DestroyWindow();
    }
    EXPECT_EQ(keys, (std::vector<ItrKey>{42, 42, 0, 0, 0, 0}));
}

TEST_F(Entry, OtherNamesOpenNothing) {
    std::vector<const wchar_t*> names = {nullptr,
                                         L"",
                                         L"CQMDialog",
                                         L"CGpsGenOptimizeAssocAnalDlg",
                                         L"cvexagpssafetygraphdlg",
                                         L"CVEXAGPSANALRESULT",
                                         L"CVEXAGpsAnalResult ",
                                         L"VEXAGpsAnalResult",
                                         L"CVEXAGpsAnalResul",
                                         L"CVEXAGpsAnalResult\u0430"};
    const std::ptrdiff_t before = liveWindows();
    for (const wchar_t* name : names) {
        EXPECT_EQ(IVEXAGpsDialog::DoModal(&document, name, nullptr, nullptr), 0);
        EXPECT_EQ(IVEXAGpsDialog::DoModeless(&document, name, nullptr, nullptr), 0);
    }
    // Names of the other kind.
    for (const auto& name : kModelessNames)
        if (name != L"CGpsGenerateOptModelDlg") {
            EXPECT_EQ(runModal(name), 0);
        }
    openModeless(L"CVEXAGpsResultCombinationDlg");
    openModeless(L"CGpsResponseSurfaceDlg");
    EXPECT_EQ(liveWindows(), before);
    EXPECT_EQ(document.GetObserverCount(), 0u);
    EXPECT_TRUE(host.errors.empty() && host.boxes.empty());
}

TEST_F(Entry, ANameOpensAnotherDialogEachTime) {
    openModeless(L"CVEXAGpsSafetyGraphDlg", const_cast<wchar_t*>(L"a"));
    auto* first = active<CVEXAGpsSafetyGraphDlg>();
    openModeless(L"CVEXAGpsSafetyGraphDlg", const_cast<wchar_t*>(L"b"));
    auto* second = active<CVEXAGpsSafetyGraphDlg>();
    ASSERT_NE(first, second);
    first->DestroyWindow();
    EXPECT_TRUE(IsWindow(second->m_hWnd));
    EXPECT_EQ(second->GetName(), L"b");
    second->DestroyWindow();
}

/// What the entry asks for, in order.
class Asked : public Entry {
  protected:
    struct Thread : CWinThread {
        explicit Thread(std::string& log)
            : asked(log) {}
        CWnd* GetMainWnd() override {
            asked += "main ";
            return CWinThread::GetMainWnd();
        }
        std::string& asked;
    };
    struct Document : support::MemoryDocument {
        explicit Document(std::string& log)
            : asked(log) {}
        CQMViewBase* GetActiveView() const override {
            asked += "view ";
            return activeView;
        }
        std::string& asked;
    };
    Asked() {
        view.DestroyWindow();
        frame.reset();
    }
    std::string asked;
};

TEST_F(Asked, InTheOrderOfTheChecks) {
    Thread thread(asked);
    Document watched(asked);
    const struct {
        const char* name;
        CQMDocBase* doc;
        CQMViewBase* activeView;
        const wchar_t* className;
        const char* expected;
    } rows[] = {
        {"no document", nullptr, nullptr, L"CVEXAGpsAnalResult", ""},
        {"no view", &watched, nullptr, L"CVEXAGpsAnalResult", "main view "},
        {"no such name", &watched, &view, L"?", "main view "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        watched.activeView = row.activeView;
        using Open = std::int64_t (*)(CQMDocBase*, const wchar_t*, void*, void*);
        for (const Open open : {Open{&IVEXAGpsDialog::DoModal}, Open{&IVEXAGpsDialog::DoModeless}}) {
            asked.clear();
            EXPECT_EQ(open(row.doc, row.className, nullptr, nullptr), 0);
            EXPECT_EQ(asked, row.expected);
        }
    }
    EXPECT_EQ(liveWindows(), 0);
}

TEST_F(Asked, CallersWithoutADocument) {
    for (const wchar_t* name :
         {static_cast<const wchar_t*>(nullptr), L"CVEXAGpsAnalResult", L"CGpsResponseSurfaceDlg"}) {
        EXPECT_EQ(IVEXAGpsDialog::DoModal(name, this), -1);
        EXPECT_EQ(IVEXAGpsDialog::DoModeless(name, this), 0); // no thread to ask
        Thread thread(asked);
        EXPECT_EQ(IVEXAGpsDialog::DoModal(name, nullptr), -1);
        EXPECT_EQ(asked, "");
        EXPECT_EQ(IVEXAGpsDialog::DoModeless(name, nullptr), 0);
        EXPECT_EQ(asked, "main ");
        asked.clear();
    }
    EXPECT_EQ(liveWindows(), 0);
}

TEST_F(Asked, WithoutAMainWindowItsRectangleIsZero) {
    const auto opensAt = [&] {
        openModeless(L"CVEXAGpsResultsGraphDlg");
        CRect rect(-1, -1, -1, -1);
        if (CQMDialog* dialog = active()) {
            dialog->GetWindowRect(&rect);
            dialog->DestroyWindow();
        }
        return rect.TopLeft();
    };
    EXPECT_EQ(opensAt(), CPoint(0, 0)); // no window of the view either
    view.CreateEx(0, nullptr, L"", WS_POPUP, CRect(300, 110, 900, 640), nullptr, 0);
    EXPECT_EQ(opensAt(), CPoint(0, 110));
    CWinThread thread;
    EXPECT_EQ(opensAt(), CPoint(0, 110));
}

} // namespace
