#include "host/dialogs/Notifications.h"

#include "tests/host/dialogs/ToolDialog.h"

#include <stdexcept>

namespace {

class Notifications : public ToolTest {
  protected:
    Notifications() {
        otherDocument.activeView = &otherView;
        host.texts = {{L"IDS_LABEL", L"label"}, {L"IDS_TITLE", L"title"}};
    }
    support::MemoryDocument otherDocument;
    support::MemoryView otherView{otherDocument};
};

TEST_F(Notifications, GoToTheDialogsThatTheyConcern) {
    const struct {
        const char* name;
        std::function<void()> notify;
        std::string expected;
    } rows[] = {
        {"language", [] { NotifyLanguageChanged(); }, "language"},
        {"every unit", [] { NotifyUnitChanged(nullptr); }, "unit"},
        {"unit", [&] { NotifyUnitChanged(&document); }, "unit"},
        {"unit of another one", [&] { NotifyUnitChanged(&otherDocument); }, ""},
        {"update", [&] { NotifyPostUpdate(&view, PostUpdate::Tree | PostUpdate::Display); }, "update 3"},
        {"every view", [] { NotifyPostUpdate(nullptr, PostUpdate::Tree); }, "update 1"},
        {"update of another one", [&] { NotifyPostUpdate(&otherView, PostUpdate::Tree); }, ""},
        {"mode", [&] { NotifyChangeMode(&view, DisplayMode::Post); }, "mode 1"},
        {"mode of another one", [&] { NotifyChangeMode(&otherView, DisplayMode::Post); }, ""},
        {"snap",
         [&] {
             NotifySnap(&document, {1, 2, 3});
         },
         "snap 3"},
        {"snap of another one",
         [&] {
             NotifySnap(&otherDocument, {1, 2, 3});
         },
         ""},
        {"drawing", [&] { DrawTempShapes(&document); }, "draw"},
    };
    CQMDialog plain(IDD_TOOL, &document); // listens to nothing, and is in nobody's way
    ASSERT_TRUE(plain.CDialog::Create(IDD_TOOL));
    ToolDialog& dialog = open();
    for (const auto& row : rows) {
        row.notify();
        EXPECT_EQ(logged(), row.expected) << row.name;
    }
    dialog.DestroyWindow();
    logged();
    NotifyLanguageChanged();
    EXPECT_EQ(logged(), "");
}

TEST_F(Notifications, ALanguageChangeReadsTheTextsAgain) {
    ToolDialog& dialog = open();
    const auto texts = [&] {
        std::wstring label, title;
        dialog.GetDlgItemText(IDC_TOOL_LABEL, label);
        dialog.GetWindowText(title);
        return title + L"/" + label;
    };
    NotifyLanguageChanged();
    EXPECT_EQ(texts(), L"title/label");
    host.texts = {{L"IDS_LABEL", L"이름"}, {L"IDS_TITLE", L"제목"}};
    NotifyLanguageChanged();
    EXPECT_EQ(texts(), L"제목/이름");
    dialog.DestroyWindow();
}

TEST_F(Notifications, DialogsMayGoThrowOrOpenOthersWhileTheyAreTold) {
    ToolDialog* last = nullptr;
    open([&](ToolDialog& self) {
        last->DestroyWindow();
        self.DestroyWindow();
    });
    ToolDialog& bad = open([](ToolDialog&) { throw std::runtime_error("no luck"); });
    ToolDialog* opened = nullptr;
    ToolDialog& opener = open([&](ToolDialog&) {
        if (!opened) opened = &open();
    });
    last = &open();
    bad.SetActiveWindow();
    NotifyUnitChanged(nullptr);
    EXPECT_EQ(std::count(log.begin(), log.end(), "unit"),
              3); // neither the last one nor the one that was opened
    EXPECT_EQ(std::count(log.begin(), log.end(), "deleted"), 2);
    EXPECT_EQ(host.errors.size(), 1u);
    ASSERT_NE(opened, nullptr);
    for (CWnd* left : {static_cast<CWnd*>(&bad), static_cast<CWnd*>(&opener), static_cast<CWnd*>(opened)})
        left->DestroyWindow();
    EXPECT_EQ(document.GetObserverCount(), 0u);
}

} // namespace
