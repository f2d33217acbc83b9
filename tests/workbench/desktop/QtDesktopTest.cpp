#include "framework/windows/WindowRecord.h"
#include "framework/windows/dialogs/TextWidth.h"
#include "tests/workbench/desktop/DeskFixture.h"
#include "workbench/desktop/Appearance.h"

#include <QtTest/QtTest>

namespace {

using namespace desktest;
using namespace framework;

class Screen : public DeskTest {};

TEST_F(Screen, ShowsWhatTheRecordsSay) {
    struct Row {
        int control;
        const char* atFirst;
        void (*change)(Filled&);
        const char* then;
    };
    const Row rows[] = {
        {IDC_NAME, " []", [](Filled& d) { d.SetDlgItemText(IDC_NAME, L"새 조합"); }, "새 조합 []"},
        {IDC_NAME, " []",
         [](Filled& d) {
             d.SetDlgItemText(IDC_NAME, L"abcdef");
             d.item<CEdit>(IDC_NAME).SetSel(1, 4);
             d.item<CEdit>(IDC_NAME).SetReadOnly();
         },
         "abcdef [bcd] fixed"},
        {IDC_USE, "&Use it 0", [](Filled& d) { d.CheckDlgButton(IDC_USE, 1); }, "&Use it 2"},
        {IDC_USE, "&Use it 0", [](Filled& d) { d.CheckDlgButton(IDC_USE, BST_INDETERMINATE); }, "&Use it 1"},
        {IDC_USE, "&Use it 0", [](Filled& d) { d.SetDlgItemText(IDC_USE, L"사용"); }, "사용 0"},
        {IDC_ENVELOPE, "En&velope 0",
         [](Filled& d) { d.CheckRadioButton(IDC_LINEAR, IDC_BOTH, IDC_ENVELOPE); }, "En&velope 1"},
        {IDC_BOTH, "Both 0 hidden", [](Filled& d) { d.GetDlgItem(IDC_BOTH)->ShowWindow(SW_SHOW); }, "Both 0"},
        {IDC_ADD, "&Add", [](Filled& d) { d.GetDlgItem(IDC_ADD)->EnableWindow(0); }, "&Add disabled"},
        {IDOK, "OK default", [](Filled& d) { d.SetDefID(IDC_ADD); }, "OK"},
        {IDC_ADD, "&Add", [](Filled& d) { d.SetDefID(IDC_ADD); }, "&Add default"},
        {IDC_KIND, " of 3", [](Filled& d) { d.item<CComboBox>(IDC_KIND).SetCurSel(1); }, "Minimum of 3"},
        {IDC_KIND, " of 3", [](Filled& d) { d.item<CComboBox>(IDC_KIND).ResetContent(); }, " of 0"},
        {IDC_LIST, "Maximum,Minimum,절대 \"최대\"",
         [](Filled& d) { d.item<CListBox>(IDC_LIST).SetCurSel(2); }, "Maximum,Minimum,>절대 \"최대\""},
        {IDC_LIST, "Maximum,Minimum,절대 \"최대\"",
         [](Filled& d) { d.item<CListBox>(IDC_LIST).DeleteString(0); }, "Minimum,절대 \"최대\""},
        {IDC_CHECKS, "Maximum=0,Minimum=0,절대 \"최대\"=0", [](Filled& d) { d.checks.SetCheck(1, 1); },
         "Maximum=0,Minimum=2,절대 \"최대\"=0"},
        {IDC_TABLE, "Maximum|1.5,Minimum|1.5,절대 \"최대\"|1.5",
         [](Filled& d) {
             auto& table = d.item<CListCtrl>(IDC_TABLE);
             table.SetItemText(0, 1, L"2");
             table.DeleteItem(1);
             table.SetItemState(-1, LVIS_SELECTED, LVIS_SELECTED);
         },
         ">Maximum|2,>절대 \"최대\"|1.5"},
        {IDC_TABLE, "Maximum|1.5,Minimum|1.5,절대 \"최대\"|1.5",
         [](Filled& d) { d.item<CListCtrl>(IDC_TABLE).DeleteColumn(1); }, "Maximum,Minimum,절대 \"최대\""},
        {IDC_TABS, ">Maximum,Minimum,절대 \"최대\"",
         [](Filled& d) { d.item<CTabCtrl>(IDC_TABS).SetCurSel(1); }, "Maximum,>Minimum,절대 \"최대\""},
        {IDC_TABS, ">Maximum,Minimum,절대 \"최대\"",
         [](Filled& d) { d.item<CTabCtrl>(IDC_TABS).DeleteAllItems(); }, ""},
        {IDC_PLACE, "", [](Filled& d) { d.SetDlgItemText(IDC_PLACE, L"a label"); }, "a label"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.then) + " in control " + std::to_string(row.control));
        Filled dialog;
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        dialog.ShowWindow(SW_SHOW);
        settle();
        ASSERT_NE(widget(dialog, row.control), nullptr);
        EXPECT_EQ(shownBy(*widget(dialog, row.control)), row.atFirst);
        row.change(dialog);
        settle();
        EXPECT_EQ(shownBy(*widget(dialog, row.control)), row.then);
    }
}

TEST_F(Screen, WindowsStandWhereTheirRecordsSay) {
    Filled dialog;
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    dialog.ShowWindow(SW_SHOW);
    dialog.MoveWindow(60, 70, 500, 400);
    dialog.SetWindowText(L"결과 조합");
    settle();
    QWidget& window = *widget(dialog.m_hWnd);
    EXPECT_EQ(window.geometry(), QRect(60, 70, 500, 400));
    EXPECT_EQ(window.windowTitle(), "결과 조합");
    for (const int id : {IDC_NAME, IDC_TABLE, IDOK}) {
        CRect place;
        dialog.GetDlgItem(id)->GetWindowRect(&place);
        const QWidget& control = *widget(dialog, id);
        EXPECT_EQ(control.mapToGlobal(QPoint(0, 0)), QPoint(place.left, place.top)) << id;
        EXPECT_EQ(control.size(), QSize(place.Width(), place.Height())) << id;
    }
    EXPECT_LT(widget(dialog, IDC_KIND)->height(), 30); // without its list
    window.setGeometry(90, 95, 500, 400);
    settle();
    CRect now;
    dialog.GetWindowRect(&now);
    EXPECT_EQ(now, CRect(90, 95, 590, 495));
}

class Painted : public CWnd {
  public:
    std::vector<CPoint> pressed;

  protected:
    void OnLButtonDown(UINT, CPoint point) { pressed.push_back(point); }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Painted, CWnd)
ON_WM_PAINT()
ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

/// A control that an object takes over for painting loses the looks of its class and gets the mouse.
TEST_F(Screen, WindowsThatPaintThemselvesGetTheMouse) {
    Filled dialog;
    Painted painted;
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    ASSERT_TRUE(painted.SubclassDlgItem(IDC_PLACE, &dialog));
    dialog.ShowWindow(SW_SHOW);
    settle();
    QTest::mouseClick(widget(dialog, IDC_PLACE), Qt::LeftButton, {}, {7, 9});
    EXPECT_EQ(painted.pressed, std::vector<CPoint>{CPoint(7, 9)});
}

TEST_F(Screen, RealEventsDoWhatTheScriptedDeskDoes) {
    const wchar_t* scripts[] = {
        L"type Name \"a new set\"\ntype Factor 2.5\nkey Tab",
        L"type Name abc\nkey Backspace\nkey Home\nkey Delete\nkey End\nkey Left",
        L"type 1003 1a2",
        L"check \"Use it\"",
        L"check \"Use it\"\ncheck \"Use it\" off",
        L"press \"Use it\"\nkey Space\nkey Tab",
        L"press Envelope\npress Linear",
        L"press Envelope\nkey Up",
        L"choose Kind Minimum",
        L"choose Kind #2\nkey Up\nkey Tab",
        L"select 1009 Minimum\nkey Down",
        L"check 1010 Minimum\ncheck 1010 #0\ncheck 1010 #0 off",
        L"select 1011 Maximum #2",
        L"select 1011 Minimum\nkey Down",
        L"open 1011 Minimum",
        L"select 1012 Minimum\nkey Right",
        L"spin 1013 3\nspin 1013 -1",
        L"type 1003 7\nkey Up",
        L"key Alt+U\nkey Alt+K\nkey Down",
        L"key Tab\nkey Tab\nkey Shift+Tab",
        L"press Add\nkey Tab\nkey Left",
    };
    for (const wchar_t* script : scripts) {
        SCOPED_TRACE(testing::PrintToString(script));
        const DeskScript parsed = parseDeskScript(script);
        ASSERT_EQ(parsed.problems.size(), 0u);
        std::string states[2];
        for (const bool real : {false, true}) {
            Filled dialog;
            ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
            dialog.ShowWindow(SW_SHOW);
            settle();
            for (const DeskStep& step : parsed.steps) {
                if (real)
                    performWithEvents(*desk, step);
                else
                    EXPECT_EQ(performDeskStep(step), L"");
                settle();
            }
            states[real] = stateOf(dialog.m_hWnd);
            // Whatever was done, the widgets show it.
            desk->flush();
            for (const HWND child : findWindow(dialog.m_hWnd)->children) {
                const std::string shown = shownBy(*widget(child));
                desk->refresh(child);
                desk->flush();
                EXPECT_EQ(shownBy(*widget(child)), shown) << GetDlgCtrlID(child);
            }
        }
        EXPECT_EQ(states[1], states[0]);
    }
}

/// The commands that a dialog gets, and what it does then.
class Acting : public Filled {
  public:
    std::function<void(Acting&)> act;
    int pressed = 0;

  protected:
    void OnAdd() {
        ++pressed;
        if (act) act(*this);
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Acting, Filled)
ON_BN_CLICKED(IDC_ADD, &Acting::OnAdd)
END_MESSAGE_MAP()

TEST_F(Screen, AHandlerMayDestroyItsOwnWindow) {
    for (const bool byKey : {false, true}) {
        Acting dialog;
        dialog.act = [](Acting& d) { d.DestroyWindow(); };
        ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
        dialog.ShowWindow(SW_SHOW);
        settle();
        const QPointer<QWidget> button = widget(dialog, IDC_ADD);
        if (byKey)
            QTest::keyClick(button, 'A', Qt::AltModifier);
        else
            QTest::mouseClick(button, Qt::LeftButton);
        EXPECT_EQ(dialog.pressed, 1);
        EXPECT_EQ(dialog.m_hWnd, nullptr);
        settle();
        EXPECT_TRUE(button.isNull());
    }
}

/// A dialog that opens another one from a button, which the user of the inner loop closes; meanwhile the
/// outer one cannot be used.
TEST_F(Screen, ModalDialogsNest) {
    Acting outer;
    std::vector<INT_PTR> answers;
    outer.act = [&](Acting& d) {
        Filled inner(&d);
        QTimer::singleShot(0, [&] {
            settle();
            EXPECT_FALSE(widget(d.m_hWnd)->isEnabled());
            QTest::keyClick(widget(inner.m_hWnd), Qt::Key_Escape);
        });
        answers.push_back(inner.DoModal());
        answers.push_back(GetActiveWindow() == d.m_hWnd);
    };
    QTimer::singleShot(0, [&] {
        settle();
        QTest::mouseClick(widget(outer, IDC_ADD), Qt::LeftButton);
        settle();
        EXPECT_TRUE(widget(outer.m_hWnd)->isEnabled());
        outer.act = [](Acting& d) { d.DestroyWindow(); };
        QTest::mouseClick(widget(outer, IDC_ADD), Qt::LeftButton);
    });
    EXPECT_EQ(outer.DoModal(), -1); // destroyed without an answer
    EXPECT_EQ(answers, (std::vector<INT_PTR>{IDCANCEL, 1}));
    EXPECT_EQ(errors, std::vector<std::wstring>{});
}

TEST_F(Screen, MessageBoxesHaveTheirButtons) {
    struct Row {
        unsigned style;
        const char* press; ///< text of a button, or a key
        int answer;
    };
    const Row rows[] = {{MB_OK, "확인", IDOK},
                        {MB_OK, "Escape", IDOK},
                        {MB_YESNO, "예", IDYES},
                        {MB_YESNO | MB_DEFBUTTON2, "Enter", IDNO},
                        {MB_OKCANCEL, "Escape", IDCANCEL},
                        {MB_YESNOCANCEL, "아니요", IDNO},
                        {MB_RETRYCANCEL, "Retry", IDRETRY}};
    desk->setButtonTexts({{IDOK, L"확인"}, {IDYES, L"예"}, {IDNO, L"아니요"}});
    for (const Row& row : rows) {
        SCOPED_TRACE(row.press);
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            EXPECT_EQ(box->text(), "Sure?");
            EXPECT_EQ(box->windowTitle(), "A caption");
            const auto buttons = box->buttons();
            const auto named = std::find_if(buttons.begin(), buttons.end(),
                                            [&](QAbstractButton* b) { return b->text() == row.press; });
            if (named != buttons.end())
                QTest::mouseClick(*named, Qt::LeftButton);
            else
                QTest::keyClick(box, row.press == std::string("Enter") ? Qt::Key_Return : Qt::Key_Escape);
        });
        EXPECT_EQ(desktop().ShowMessageBox(nullptr, L"Sure?", L"A caption", row.style), row.answer);
    }
}

TEST_F(Screen, AScriptPlaysInsideModalLoops) {
    Acting dialog;
    dialog.act = [](Acting& d) { d.SetDlgItemInt(IDC_COUNT, d.MessageBox(L"?", L"", MB_YESNO)); };
    std::string seen;
    desk->play(parseDeskScript(L"press Add\nanswer no\ntype Name x\npress Nothing").steps, true,
               [&] { seen = shownBy(*widget(dialog, IDC_NAME)) + shownBy(*widget(dialog, IDC_COUNT)); });
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(seen, "x []7 []");
    ASSERT_EQ(desk->problems().size(), 1u);
    EXPECT_TRUE(desk->problems()[0].starts_with(L"line 4")) << testing::PrintToString(desk->problems()[0]);
}

/// Text from an input method comes whole, not key by key.
TEST_F(Screen, InputMethodsWriteIntoRecords) {
    Filled dialog;
    ASSERT_TRUE(dialog.Create(IDD_CONTROLS));
    dialog.ShowWindow(SW_SHOW);
    dialog.SetDlgItemText(IDC_NAME, L"ab");
    dialog.item<CEdit>(IDC_NAME).SetSel(1, 1);
    settle();
    QInputMethodEvent event;
    event.setCommitString("한글");
    QCoreApplication::sendEvent(widget(dialog, IDC_NAME), &event);
    settle();
    EXPECT_EQ(windowText(GetDlgItem(dialog.m_hWnd, IDC_NAME)), L"a한글b");
    EXPECT_EQ(findWindow(GetDlgItem(dialog.m_hWnd, IDC_NAME))->selectionEnd, 3u);
}

TEST_F(Screen, TextsThatFitTheTableFitTheScreen) {
    const QFontMetricsF metrics(QApplication::font());
    for (const wchar_t* text :
         {L"Result Combination/Envelope Results", L"Scale Factor", L"WWWWMMMM", L"iiiillll",
          L"0.123456789e+10", L"결과 조합/포락", L"배율", L"안전율 그래프 Safety", L"σ = 12.5 N/mm² (αβγ)"})
        EXPECT_LE(metrics.horizontalAdvance(workbench::desktop::qText(text)), textWidth(text) + 0.5)
            << testing::PrintToString(text);
    EXPECT_LE(metrics.height(), kTextHeight + 1.0);
}

} // namespace
