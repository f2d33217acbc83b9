#include "framework/windows/Keyboard.h"
#include "framework/windows/desktop/UserActions.h"
#include "framework/windows/dialogs/Navigation.h"
#include "host/dialogs/ChildDialog.h"
#include "tests/host/dialogs/ToolDialog.h"

#include <stdexcept>

namespace {

using namespace framework;

class DialogBases : public ToolTest {};

TEST_F(DialogBases, InitialPlace) {
    const struct {
        UINT id;
        int mode;
        int x, y;
        bool withMain;
        CPoint expected;
    } rows[] = {
        {IDD_TOOL, InitialPlace::MainWindow, 0, 60, true, {100, 110}},
        {IDD_TOOL, InitialPlace::MainWindow, -30, -20, true, {70, 30}},
        {IDD_TOOL, InitialPlace::MainWindow, 0, 60, false, {0, 60}},
        {IDD_TOOL, InitialPlace::Template, 0, 60, false, {15, 33}},        // 10, 20 dialog units
        {IDD_TOOL_SHOWN, InitialPlace::MainWindow, 5, 7, true, {105, 57}}, // not the centre
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::to_string(row.id) + " at " + std::to_string(row.x));
        if (!row.withMain) {
            view.DestroyWindow();
            frame.reset();
        }
        auto* dialog = new ToolDialog(log, &document);
        dialog->SetInitPos(row.mode, row.x, row.y);
        ASSERT_TRUE(dialog->Create(row.id, nullptr));
        CRect rect;
        dialog->GetWindowRect(&rect);
        EXPECT_EQ(rect.left, row.expected.x);
        EXPECT_EQ(rect.top, row.expected.y);
        dialog->DestroyWindow();
        if (!row.withMain) {
            frame.emplace(L"main", CRect(100, 50, 900, 650), CRect(300, 110, 900, 640));
            frame->showView(view);
        }
    }
}

TEST_F(DialogBases, AModelessDialogIsDeletedOnceHoweverItEnds) {
    const struct {
        const char* name;
        std::function<void(HWND dialog)> end;
    } rows[] = {
        {"OK", [](HWND d) { user::press(GetDlgItem(d, IDOK)); }},
        {"Cancel", [](HWND d) { user::press(GetDlgItem(d, IDCANCEL)); }},
        {"Escape", [](HWND) { pressKey(VK_ESCAPE); }},
        {"frame", [](HWND d) { user::close(d); }},
        {"window", [](HWND d) { DestroyWindow(d); }},
        {"document", [&](HWND) { document.NotifyObservers(DocumentMessage::Closing); }},
        {"main window", [&](HWND) { frame->mainWindow().DestroyWindow(); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const HWND window = open().m_hWnd;
        EXPECT_EQ(document.GetObserverCount(), 1u);
        row.end(window);
        EXPECT_FALSE(IsWindow(window));
        EXPECT_EQ(logged(), "deleted");
        EXPECT_EQ(document.GetObserverCount(), 0u);
    }
}

TEST_F(DialogBases, AModalDialogIsNotDeletedAndClosesWithItsDocument) {
    {
        ToolDialog dialog(log, &document);
        scriptedDesk().addStep([&] { user::press(GetDlgItem(dialog.m_hWnd, ID_APPLY_NOW)); });
        scriptedDesk().addStep([&] { user::press(GetDlgItem(dialog.m_hWnd, IDOK)); });
        EXPECT_EQ(dialog.DoModal(), IDOK);
        EXPECT_EQ(logged(), "apply");
        scriptedDesk().addStep([&] { document.NotifyObservers(DocumentMessage::Closing); });
        EXPECT_EQ(dialog.DoModal(), IDCANCEL);
        EXPECT_EQ(dialog.GetDocBase(), nullptr);
        scriptedDesk().addStep([&] { dialog.DestroyWindow(); });
        EXPECT_EQ(dialog.DoModal(), -1);
        EXPECT_EQ(logged(), "");
    }
    EXPECT_EQ(logged(), "deleted");
}

TEST_F(DialogBases, ApplyMayDestroyTheDialogOrThrow) {
    const HWND first = open([](ToolDialog& dialog) { dialog.DestroyWindow(); }).m_hWnd;
    EXPECT_TRUE(user::press(GetDlgItem(first, ID_APPLY_NOW)));
    EXPECT_EQ(logged(), "apply, deleted");
    ToolDialog& second = open([](ToolDialog&) { throw std::runtime_error("no luck"); });
    EXPECT_TRUE(user::press(GetDlgItem(second.m_hWnd, ID_APPLY_NOW)));
    EXPECT_EQ(host.errors, (std::vector<std::wstring>{L"a message handler failed: no luck"}));
    EXPECT_TRUE(second.IsWindowVisible());
    second.DestroyWindow();
}

TEST_F(DialogBases, PickingDialogsEmptyThePickBuffer) {
    const struct {
        const char* name;
        int button;
        bool isEmptied;
        bool isOpen;
    } rows[] = {
        {"Cancel", IDCANCEL, true, false}, {"OK", IDOK, false, false}, {"Reset", IDC_QM_RESET, true, true}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ToolDialog& dialog = open();
        const HWND window = dialog.m_hWnd;
        dialog.SetDefaultID(IDC_TOOL_LAST);
        document.AddToSelBuffer({1, 2}, {3});
        user::press(GetDlgItem(window, row.button));
        EXPECT_EQ(document.GetCurSelectBufferAsNode().empty(), row.isEmptied);
        EXPECT_EQ(IsWindow(window) != 0, row.isOpen);
        if (row.isOpen) {
            EXPECT_EQ(GetFocus(), GetDlgItem(window, IDC_TOOL_LAST));
        }
        DestroyWindow(window);
    }
    ToolDialog& dialog = open();
    document.AddToSelBuffer({1}, {});
    dialog.OnSelectComboChanged(SelectionType::Element);
    EXPECT_EQ(dialog.GetSelectionType(), SelectionType::Element);
    EXPECT_TRUE(document.GetCurSelectBufferAsNode().empty());
    log.clear();
    dialog.SendMessage(WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<UINT>(-120)), 0);
    EXPECT_EQ(logged(), "wheel -120");
    dialog.DestroyWindow();
}

class Page : public CChildDialog {
  public:
    using CChildDialog::PrivateNotifyToParent;
};

class PagedDialog : public ToolDialog {
  public:
    using ToolDialog::ToolDialog;
    std::vector<std::pair<WPARAM, LPARAM>> commands;

  protected:
    int OnCommand(WPARAM wParam, LPARAM lParam) override {
        commands.emplace_back(wParam, lParam);
        return ToolDialog::OnCommand(wParam, lParam);
    }
};

TEST_F(DialogBases, APageTakesThePlaceOfItsPlaceholder) {
    auto* dialog = new PagedDialog(log, &document);
    ASSERT_TRUE(dialog->Create(nullptr));
    CRect place;
    dialog->GetDlgItem(IDC_TOOL_PLACE)->GetWindowRect(&place);
    Page page;
    EXPECT_FALSE(page.CreateInit(IDD_TOOL_PAGE, IDC_TOOL_PLACE)); // no parent yet
    page.SetParentDlg(dialog);
    EXPECT_FALSE(page.CreateInit(IDD_TOOL_PAGE, 999));
    ASSERT_TRUE(page.CreateInit(IDD_TOOL_PAGE, IDC_TOOL_PLACE));
    CRect rect;
    page.GetWindowRect(&rect);
    EXPECT_EQ(rect, place);
    EXPECT_EQ(dialog->GetDlgItem(IDC_TOOL_PLACE), &page);
    // Tab goes through the page between the controls before and after the placeholder.
    dialog->ShowWindow(SW_SHOW);
    SetFocus(GetDlgItem(dialog->m_hWnd, IDC_TOOL_VALUE));
    pressKey(VK_TAB);
    EXPECT_EQ(GetFocus(), GetDlgItem(page.m_hWnd, IDC_TOOL_PAGE_EDIT));
    pressKey(VK_TAB);
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog->m_hWnd, IDC_TOOL_LAST));

    dialog->commands.clear();
    page.PrivateNotifyToParent(7);
    ASSERT_EQ(dialog->commands.size(), 1u);
    EXPECT_EQ(dialog->commands[0].first, MAKEWPARAM(IDC_TOOL_PLACE, 7));
    EXPECT_EQ(dialog->commands[0].second, reinterpret_cast<LPARAM>(page.m_hWnd));
    dialog->DestroyWindow();
    EXPECT_EQ(page.m_hWnd, nullptr);
}

TEST_F(DialogBases, ObserversMayComeAndGoWhileTheyAreTold) {
    struct Observer : CQMObserver {
        explicit Observer(std::function<void()> told)
            : act(std::move(told)) {}
        void UpdateObserver(CQMSubject*, UINT message, WPARAM w, LPARAM l) override {
            received = static_cast<int>(message) + static_cast<int>(w) + static_cast<int>(l);
            ++count;
            if (act) act();
        }
        std::function<void()> act;
        int count = 0;
        int received = 0;
    };
    auto subject = std::make_unique<CQMSubject>();
    auto third = std::make_unique<Observer>(std::function<void()>());
    Observer late({});
    Observer* self = nullptr;
    Observer first([&] {
        third.reset();
        subject->AttachObserver(late);
        subject->DetachObserver(*self);
    });
    self = &first;
    Observer second({});
    subject->AttachObserver(first);
    subject->AttachObserver(second);
    subject->AttachObserver(second);
    subject->AttachObserver(*third);
    subject->NotifyObservers(1, 20, 300);
    EXPECT_EQ(first.count, 1);
    EXPECT_EQ(second.count, 1);
    EXPECT_EQ(second.received, 321);
    EXPECT_EQ(late.count, 0);
    subject->NotifyObservers(1);
    EXPECT_EQ(first.count, 1);
    EXPECT_EQ(late.count, 1);
    subject.reset(); // observers outlive it
}

} // namespace
