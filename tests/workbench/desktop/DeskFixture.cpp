#include "tests/workbench/desktop/DeskFixture.h"

#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/controls/ItemList.h"
#include "workbench/desktop/Appearance.h"

#include <QtTest/QtTest>

#include <sstream>

namespace desktest {
namespace {

using namespace workbench::desktop;

class Application : public testing::Environment {
  public:
    void SetUp() override {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int count = 1;
        static char name[] = "test";
        static char* arguments[] = {name, nullptr};
        application_ = std::make_unique<QApplication>(count, arguments);
        setAppearance(*application_);
        application_->setQuitOnLastWindowClosed(false);
        application_->setDoubleClickInterval(0); // clicks one after another are clicks
    }
    void TearDown() override { application_.reset(); }

  private:
    std::unique_ptr<QApplication> application_;
};
[[maybe_unused]] const auto* const g_application = testing::AddGlobalTestEnvironment(new Application);

std::string narrow(const std::wstring& text) {
    return qText(text).toStdString();
}

void click(QWidget& widget, QPoint at, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(&widget, Qt::LeftButton, modifiers, at);
    QCoreApplication::processEvents();
}

QRect rowRect(QTreeView& view, int row) {
    return view.visualRect(view.model()->index(row, 0));
}

int indexOf(HWND list, const std::wstring& name) {
    const auto* record = framework::findWindow(list);
    if (const int found = framework::findItem(record, -1, name, true); found >= 0) return found;
    return std::stoi(name.substr(1));
}

void chooseWithEvents(QComboBox& combo, int index) {
    click(combo, combo.rect().center());
    QTest::qWait(20); // a release right after the press that opened the list does not choose
    auto& list = *combo.view();
    click(*list.viewport(), list.visualRect(combo.model()->index(index, 0)).center());
}

void selectWithEvents(QWidget& widget, HWND window, const std::vector<std::wstring>& names) {
    if (auto* bar = widget.findChild<QTabBar*>()) {
        click(*bar, bar->tabRect(indexOf(window, names[0])).center());
        return;
    }
    auto& view = dynamic_cast<QTreeView&>(widget);
    for (std::size_t i = 0; i < names.size(); ++i)
        click(*view.viewport(), rowRect(view, indexOf(window, names[i])).center(),
              i ? Qt::ControlModifier : Qt::NoModifier);
}

void checkWithEvents(QWidget& widget, HWND window, const std::vector<std::wstring>& arguments) {
    const bool on = arguments.back() != L"off";
    const auto& record = *framework::findWindow(window);
    if (auto* view = dynamic_cast<QTreeView*>(&widget)) {
        const int row = indexOf(window, arguments[0]);
        if ((record.items[static_cast<std::size_t>(row)].check != 0) != on)
            click(*view->viewport(), rowRect(*view, row).topLeft() + QPoint(8, 8));
    } else if ((record.check != 0) != on) {
        click(widget, {8, widget.height() / 2});
    }
}

void typeText(QWidget& widget, const QString& text) {
    for (const QChar c : text) {
        QKeyEvent press(QEvent::KeyPress, c == ' ' ? Qt::Key_Space : 0, Qt::NoModifier, QString(c));
        QCoreApplication::sendEvent(&widget, &press);
    }
}

void keyWithEvents(const std::wstring& name) {
    static const std::map<std::wstring, int> keys = {
        {L"Tab", Qt::Key_Tab},     {L"Enter", Qt::Key_Return}, {L"Escape", Qt::Key_Escape},
        {L"Space", Qt::Key_Space}, {L"Up", Qt::Key_Up},        {L"Down", Qt::Key_Down},
        {L"Home", Qt::Key_Home},   {L"End", Qt::Key_End},      {L"Backspace", Qt::Key_Backspace},
        {L"Left", Qt::Key_Left},   {L"Right", Qt::Key_Right},  {L"Delete", Qt::Key_Delete}};
    QWidget* target =
        QApplication::focusWidget() ? QApplication::focusWidget() : QApplication::activeWindow();
    if (name.starts_with(L"Alt+"))
        QTest::keyClick(target, static_cast<char>(name[4]), Qt::AltModifier);
    else if (name == L"Shift+Tab")
        QTest::keyClick(target, Qt::Key_Backtab, Qt::ShiftModifier);
    else
        QTest::keyClick(target, static_cast<Qt::Key>(keys.at(name)));
}

} // namespace

int Filled::OnInitDialog() {
    CDialog::OnInitDialog();
    checks.SubclassDlgItem(IDC_CHECKS, this);
    auto& table = item<CListCtrl>(IDC_TABLE);
    table.InsertColumn(0, L"Step", LVCFMT_LEFT, 50);
    table.InsertColumn(1, L"Factor", LVCFMT_RIGHT, 30);
    for (const wchar_t* text : {L"Maximum", L"Minimum", L"절대 \"최대\""}) {
        item<CComboBox>(IDC_KIND).AddString(text);
        item<CListBox>(IDC_LIST).AddString(text);
        checks.AddString(text);
        table.SetItemText(table.InsertItem(9, text), 1, L"1.5");
        item<CTabCtrl>(IDC_TABS).InsertItem(9, text);
    }
    return 1;
}

DeskTest::DeskTest()
    : desk(std::make_unique<QtDesktop>()) {}

DeskTest::~DeskTest() {
    settle();
    desk.reset();
    EXPECT_TRUE(QApplication::topLevelWidgets().isEmpty());
}

void DeskTest::settle() {
    for (int round = 0; round < 3; ++round) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

std::string stateOf(HWND dialog) {
    std::ostringstream text;
    for (const HWND child : framework::findWindow(dialog)->children) {
        const auto& record = *framework::findWindow(child);
        text << record.id << " \"" << narrow(record.text) << "\" check " << record.check << " current "
             << record.current << " at " << record.position << " selected " << record.selectionBegin << "-"
             << record.selectionEnd << " items";
        for (const auto& item : record.items)
            text << " " << item.selected << item.check;
        text << (GetFocus() == child ? " focus\n" : "\n");
    }
    return text.str();
}

std::string shownBy(QWidget& widget) {
    std::ostringstream text;
    if (auto* button = qobject_cast<QAbstractButton*>(&widget)) {
        text << button->text().toStdString();
        if (auto* box = qobject_cast<QCheckBox*>(button))
            text << " " << box->checkState();
        else if (button->isCheckable())
            text << " " << button->isChecked();
        if (auto* push = qobject_cast<QPushButton*>(button); push && push->isDefault()) text << " default";
    } else if (const auto* edit = qobject_cast<QLineEdit*>(&widget)) {
        text << edit->text().toStdString() << " [" << edit->selectedText().toStdString() << "]";
        if (edit->isReadOnly()) text << " fixed";
    } else if (const auto* combo = qobject_cast<QComboBox*>(&widget)) {
        text << combo->currentText().toStdString() << " of " << combo->count();
    } else if (auto* view = qobject_cast<QTreeView*>(&widget)) {
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            text << (row ? "," : "") << (view->selectionModel()->isRowSelected(row) ? ">" : "");
            for (int column = 0; column < view->model()->columnCount(); ++column)
                text << (column ? "|" : "")
                     << view->model()->index(row, column).data().toString().toStdString();
            const QVariant check = view->model()->index(row, 0).data(Qt::CheckStateRole);
            if (check.isValid()) text << "=" << check.toInt();
        }
    } else if (const auto* bar = widget.findChild<QTabBar*>()) {
        for (int i = 0; i < bar->count(); ++i)
            text << (i ? "," : "") << (i == bar->currentIndex() ? ">" : "") << bar->tabText(i).toStdString();
    } else {
        text << widget.accessibleName().toStdString();
    }
    if (!widget.isEnabled()) text << " disabled";
    if (!widget.isVisible()) text << " hidden";
    return text.str();
}

void performWithEvents(QtDesktop& desk, const framework::DeskStep& step) {
    const auto& arguments = step.arguments;
    if (step.action == L"key") {
        keyWithEvents(arguments[0]);
    } else {
        const HWND control = framework::findControl(GetActiveWindow(), arguments[0]);
        QWidget* widget = desk.widgetOf(control);
        ASSERT_NE(widget, nullptr) << testing::PrintToString(arguments[0]);
        const std::vector<std::wstring> rest(arguments.begin() + 1, arguments.end());
        if (step.action == L"press") {
            click(*widget, {8, widget->height() / 2});
        } else if (step.action == L"check") {
            checkWithEvents(*widget, control, rest.empty() ? std::vector<std::wstring>{L"on"} : rest);
        } else if (step.action == L"choose") {
            chooseWithEvents(dynamic_cast<QComboBox&>(*widget), indexOf(control, rest[0]));
        } else if (step.action == L"select") {
            selectWithEvents(*widget, control, rest);
        } else if (step.action == L"type") {
            click(*widget, {10, widget->height() / 2});
            QTest::keyClick(widget, Qt::Key_A, Qt::ControlModifier);
            typeText(*widget, qText(rest[0]));
        } else if (step.action == L"spin") {
            const int steps = std::stoi(rest[0]);
            for (int i = 0; i < std::abs(steps); ++i)
                click(*widget, {4, steps > 0 ? 3 : widget->height() - 3});
        } else if (step.action == L"open") {
            auto& view = dynamic_cast<QTreeView&>(*widget);
            QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier,
                               rowRect(view, indexOf(control, rest[0])).center());
        }
    }
    QCoreApplication::processEvents();
}

} // namespace desktest
