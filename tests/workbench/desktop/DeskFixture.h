#pragma once

#include "framework/windows/dialogs/Dialog.h"
#include "tests/framework/windows/WindowTest.h"
#include "workbench/desktop/QtDesktop.h"

namespace desktest {

/// A dialog with every kind of control, filled.
class Filled : public CDialog {
  public:
    explicit Filled(CWnd* parent = nullptr)
        : CDialog(IDD_CONTROLS, parent) {}
    CCheckListBox checks;

    int OnInitDialog() override;
    template <class Control>
    Control& item(int id) {
        return *static_cast<Control*>(GetDlgItem(id));
    }
};

/// The toolkit's application without a display, and a screen on which windows are shown.
class DeskTest : public WindowTest {
  protected:
    DeskTest();
    ~DeskTest() override;

    /// Lets the events run that are due.
    void settle();
    QWidget* widget(HWND window) const { return desk->widgetOf(window); }
    QWidget* widget(CWnd& dialog, int id) const { return widget(GetDlgItem(dialog.m_hWnd, id)); }

    std::unique_ptr<workbench::desktop::QtDesktop> desk;
};

/// What the records of a dialog's controls say, one line a control, and where the focus is.
std::string stateOf(HWND dialog);

/// What a widget shows: its text, check, rows, tabs, as the user sees them.
std::string shownBy(QWidget& widget);

/// Does a step of a script as a user at the widgets does, with events of mouse and keyboard.
void performWithEvents(workbench::desktop::QtDesktop& desk, const framework::DeskStep& step);

} // namespace desktest
