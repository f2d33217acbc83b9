#include "framework/windows/Keyboard.h"
#include "framework/windows/desktop/UserActions.h"
#include "host/dialogs/Notifications.h"
#include "host/records/DesignGui.h"
#include "module/resources/resource.h"
#include "tests/module/entry/EntryFixture.h"

#include <functional>

namespace {

using namespace framework;

class DialogLife : public EntryFixture {};

/// The module's templates, changed, in place of them.
class ChangedTemplates {
  public:
    explicit ChangedTemplates(const std::function<void(DialogTemplate&)>& change)
        : templates_(moduleTemplates().begin(), moduleTemplates().end()) {
        for (auto& resource : templates_)
            change(resource);
        removeTemplates(moduleTemplates());
        addTemplates(templates_);
    }
    ~ChangedTemplates() {
        removeTemplates(templates_);
        addTemplates(moduleTemplates());
    }
    ChangedTemplates(const ChangedTemplates&) = delete;
    ChangedTemplates& operator=(const ChangedTemplates&) = delete;

  private:
    std::vector<DialogTemplate> templates_;
};

/// A main window that destroys what takes the activation from it.
class JealousMain : public CWnd {
  protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override {
        if (message == WM_ACTIVATE && wParam == WA_INACTIVE) ::DestroyWindow(reinterpret_cast<HWND>(lParam));
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

const ControlTemplate kUnknownControl[] = {{L"NoSuchClass", L"", 1, WS_CHILD, 0, CRect(0, 0, 10, 10)}};

TEST_F(DialogLife, WhereCreationFailsTheObjectIsDeletedOnce) {
    const struct {
        const char* name;
        std::function<void(DialogTemplate&)> change;
        bool textsFail;
        bool isReported;
    } rows[] = {
        {"no template", [](DialogTemplate& t) { t.id += 10000; }, false, false},
        {"a control before OnInitDialog", [](DialogTemplate& t) { t.controls = kUnknownControl; }, false,
         false},
        {"in OnInitDialog", [](DialogTemplate&) {}, true, true},
        {"after OnInitDialog", [](DialogTemplate& t) { t.style |= WS_VISIBLE; }, false, false},
    };
    tagTDgnaGUI design{1, L"a"};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const ChangedTemplates changed(row.change);
        view.DestroyWindow();
        frame.reset();
        CWinThread thread;
        JealousMain main;
        if (std::string(row.name) == "after OnInitDialog") {
            main.CreateEx(0, nullptr, L"", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 100, 100), nullptr, 0);
            thread.m_pMainWnd = &main;
        }
        host.textsFail = row.textsFail;
        for (const auto& name : kModelessNames) {
            SCOPED_TRACE(testing::Message() << row.name << " of " << std::string(name.begin(), name.end()));
            const bool hasDesign = name == L"CGpsGenerateOptModelDlg";
            for (void* p1 : {static_cast<void*>(nullptr), static_cast<void*>(&design)}) {
                if (p1 && !hasDesign) continue;
                host.errors.clear();
                const std::ptrdiff_t before = liveWindows();
                EXPECT_EQ(openModeless(name, p1), 0);
                EXPECT_EQ(document.GetObserverCount(), 0u);
                EXPECT_EQ(liveWindows(), before);
                EXPECT_EQ(!host.errors.empty(), row.isReported);
            }
        }
        host.textsFail = false;
    }
}

TEST_F(DialogLife, ModalDialogsWhoseCreationFailsAnswerMinusOne) {
    for (const bool textsFail : {false, true}) {
        const ChangedTemplates changed([&](DialogTemplate& t) {
            if (!textsFail) t.controls = kUnknownControl;
        });
        host.textsFail = textsFail;
        for (const auto& name : kModalNames)
            EXPECT_EQ(runModal(name), -1);
        host.textsFail = false;
    }
    EXPECT_TRUE(frame->mainWindow().IsWindowEnabled());
    EXPECT_EQ(document.GetObserverCount(), 0u);
}

/// It was created, so its window deletes it.
TEST_F(DialogLife, ADialogThatIsDestroyedAsItIsShownIsDeletedOnce) {
    view.DestroyWindow();
    frame.reset();
    CWinThread thread;
    JealousMain main;
    main.CreateEx(0, nullptr, L"", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 100, 100), nullptr, 0);
    thread.m_pMainWnd = &main;
    for (const auto& name : kModelessNames) {
        EXPECT_EQ(openModeless(name), 0);
        EXPECT_EQ(document.GetObserverCount(), 0u);
        EXPECT_EQ(liveWindows(), 1);
        main.SetActiveWindow();
    }
}

TEST_F(DialogLife, EveryDialogOpensAndClosesAThousandTimes) {
    const std::ptrdiff_t before = liveWindows();
    std::size_t slots = 0;
    for (int i = 0; i < 1000; ++i) {
        for (const auto& name : kModelessNames) {
            openModeless(name);
            const HWND dialog = GetActiveWindow();
            ASSERT_NE(active(), nullptr);
            switch (i % 4) {
            case 0:
                ASSERT_TRUE(user::press(GetDlgItem(dialog, IDCANCEL)));
                break;
            case 1:
                ASSERT_TRUE(pressKey(VK_ESCAPE));
                break;
            case 2:
                ASSERT_TRUE(user::close(dialog));
                break;
            default:
                ASSERT_TRUE(DestroyWindow(dialog));
                break;
            }
            ASSERT_FALSE(IsWindow(dialog));
        }
        for (const auto& name : kModalNames) {
            scriptedDesk().addStep([] { pressKey(VK_ESCAPE); });
            ASSERT_EQ(runModal(name), IDCANCEL);
        }
        if (i == 0) slots = windowState().slots.size();
    }
    EXPECT_EQ(liveWindows(), before);
    EXPECT_EQ(document.GetObserverCount(), 0u);
    EXPECT_EQ(windowState().slots.size(), slots); // no record was left behind, and no slot was lost
    EXPECT_LE(windowState().deadTemporaries.size() + windowState().temporaries.size(), 100u);
}

TEST_F(DialogLife, OpenDialogsCloseWithTheirDocument) {
    for (const auto& name : kModelessNames)
        openModeless(name);
    EXPECT_EQ(document.GetObserverCount(), kModelessNames.size());
    document.NotifyObservers(DocumentMessage::Closing);
    EXPECT_EQ(document.GetObserverCount(), 0u);
    EXPECT_EQ(topLevelWindows().size(), 1u);
}

/// Titles by template, and what a dialog has whose tool is not there yet: one sentence, and a way out.
TEST_F(DialogLife, DialogsWithoutTheirToolSayItInTheLanguageOfTheUser) {
    for (const wchar_t* language : {L"en ", L"ko "}) {
        host.texts = {{L"IDS_VEXAGPS_TOOL_NOT_AVAILABLE", std::wstring(language) + L"sentence"},
                      {L"IDS_QM_BASE_CLOSE", std::wstring(language) + L"close"}};
        const auto expectTexts = [&](const CQMDialog& dialog) {
            EXPECT_EQ(textOf(dialog.GetDlgItem(IDC_NOT_AVAILABLE)), std::wstring(language) + L"sentence");
            EXPECT_EQ(textOf(dialog.GetDlgItem(IDCANCEL)), std::wstring(language) + L"close");
            EXPECT_TRUE(textOf(&dialog).starts_with(L"IDS_")) << "a title is a message text";
            EXPECT_EQ(findWindow(dialog.m_hWnd)->children.size(), 2u);
        };
        for (const auto& name : kModelessNames) {
            if (name == L"CVEXAGpsSafetyGraphDlg") continue;
            SCOPED_TRACE(std::string(name.begin(), name.end()));
            openModeless(name);
            CQMDialog* dialog = active();
            ASSERT_NE(dialog, nullptr);
            expectTexts(*dialog);
            const auto before = host.texts;
            host.texts.clear();
            NotifyLanguageChanged();
            EXPECT_EQ(textOf(dialog->GetDlgItem(IDCANCEL)), L"IDS_QM_BASE_CLOSE");
            host.texts = before;
            NotifyLanguageChanged();
            expectTexts(*dialog);
            const HWND window = dialog->m_hWnd;
            EXPECT_TRUE(pressKey(VK_RETURN)); // the only button
            EXPECT_FALSE(IsWindow(window));
        }
    }
}

TEST_F(DialogLife, AHandlerThatThrowsLeavesItsDialogOpen) {
    openModeless(kModelessNames[0]);
    const HWND dialog = GetActiveWindow();
    host.textsFail = true;
    NotifyLanguageChanged();
    host.textsFail = false;
    EXPECT_EQ(host.errors, std::vector<std::wstring>{L"a message handler failed: no texts"});
    EXPECT_TRUE(IsWindowVisible(dialog));
    DestroyWindow(dialog);
}

} // namespace
