#include "workbench/desktop/QtDesktop.h"

#include "framework/windows/Keyboard.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowFunctions.h"
#include "framework/windows/Wnd.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "framework/windows/desktop/UserActions.h"
#include "framework/windows/dialogs/Dialog.h"
#include "workbench/desktop/ControlShape.h"
#include "workbench/desktop/KeyNames.h"

#include <algorithm>
#include <utility>

namespace workbench::desktop {
namespace {

using framework::findWindow;
using framework::WindowRecord;

constexpr unsigned kEverything = ~0U;

const QEvent::Type kPump = static_cast<QEvent::Type>(QEvent::registerEventType());

class Counted {
  public:
    explicit Counted(int& count)
        : count_(count) {
        ++count_;
    }
    ~Counted() { --count_; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

  private:
    int& count_;
};

Qt::WindowFlags frameOf(const WindowRecord& record) {
    Qt::WindowFlags flags = Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    if (record.style & WS_SYSMENU) flags |= Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    return flags;
}

QRect qRect(const CRect& rect) {
    return {rect.left, rect.top, rect.Width(), rect.Height()};
}

/// English; a program gives those of its user's language.
std::wstring buttonText(int id) {
    switch (id) {
    case IDOK:
        return L"OK";
    case IDCANCEL:
        return L"Cancel";
    case IDABORT:
        return L"Abort";
    case IDRETRY:
        return L"Retry";
    case IDIGNORE:
        return L"Ignore";
    case IDYES:
        return L"Yes";
    default:
        return L"No";
    }
}

/// What the key writes, also where Alt keeps it from writing.
std::wstring letterOf(const QKeyEvent& key) {
    if (!key.text().isEmpty()) return wideText(key.text());
    return key.key() < Qt::Key_Escape ? std::wstring(1, static_cast<wchar_t>(key.key())) : std::wstring();
}

QMessageBox::Icon iconOf(unsigned style) {
    constexpr unsigned kIcons = 0xF0;
    switch (style & kIcons) {
    case MB_ICONERROR:
        return QMessageBox::Critical;
    case MB_ICONQUESTION:
        return QMessageBox::Question;
    case MB_ICONINFORMATION:
        return QMessageBox::Information;
    case MB_ICONWARNING:
        return QMessageBox::Warning;
    default:
        return QMessageBox::NoIcon;
    }
}

} // namespace

QtDesktop::QtDesktop()
    : before_(framework::setDesktop(this)) {
    qApp->installEventFilter(this);
}

QtDesktop::~QtDesktop() {
    qApp->removeEventFilter(this);
    framework::setDesktop(before_);
    std::vector<QPointer<QWidget>> all = std::move(buried_);
    for (const auto& [window, shown] : shown_)
        if (shown.view) all.push_back(shown.widget);
    for (const auto& widget : all)
        delete widget;
}

void QtDesktop::adopt(HWND window, QWidget& widget) {
    bury(window);
    shown_[window] = {&widget, nullptr, 0};
    mark(window, kEverything);
}

QWidget* QtDesktop::widgetOf(HWND window) const {
    const auto found = shown_.find(window);
    return found == shown_.end() ? nullptr : found->second.widget.data();
}

HWND QtDesktop::windowOf(const QWidget* widget) const {
    for (; widget; widget = widget->parentWidget())
        if (const HWND window = windows_.value(widget)) return window;
    return nullptr;
}

void QtDesktop::mark(HWND window, unsigned what) {
    const auto [place, isNew] = changes_.try_emplace(window, 0);
    place->second |= what;
    if (isNew) marked_.push_back(window);
    schedule();
}

void QtDesktop::schedule() {
    if (std::exchange(scheduled_, true)) return;
    QCoreApplication::postEvent(this, new QEvent(kPump), Qt::HighEventPriority);
}

void QtDesktop::refresh(HWND window) {
    mark(window, kEverything);
}

void QtDesktop::WindowCreated(HWND window) {
    mark(window, kEverything);
}

void QtDesktop::WindowChanged(HWND window, unsigned what) {
    mark(window, what);
}

void QtDesktop::WindowDestroyed(HWND window) {
    mark(window, kEverything);
}

void QtDesktop::RegionInvalid(HWND, const CRect&) {
    schedule();
}

void QtDesktop::WindowPainted(HWND window) {
    if (QWidget* widget = widgetOf(window)) widget->update();
}

void QtDesktop::MessagePosted() {
    schedule();
}

bool QtDesktop::event(QEvent* event) {
    if (event->type() != kPump) return QObject::event(event);
    scheduled_ = false;
    framework::pumpMessages();
    flush();
    // Inside a loop an event of a buried widget may still be running.
    if (loops_ == 0)
        for (const auto& widget : std::exchange(buried_, {}))
            if (widget) widget->deleteLater();
    return true;
}

void QtDesktop::flush() {
    if (std::exchange(flushing_, true)) return;
    while (!marked_.empty()) {
        auto changes = std::exchange(changes_, {});
        for (const HWND window : std::exchange(marked_, {}))
            takeOver(window, changes[window]);
    }
    followActivation();
    flushing_ = false;
}

void QtDesktop::bury(HWND window) {
    const auto found = shown_.find(window);
    if (found == shown_.end()) return;
    const Shown gone = found->second;
    shown_.erase(found);
    if (!gone.widget || !gone.view) return;
    windows_.remove(gone.widget);
    gone.widget->hide();
    gone.widget->setParent(nullptr);
    buried_.push_back(gone.widget);
    schedule();
}

QtDesktop::Shown* QtDesktop::makeWidget(const WindowRecord& record) {
    QWidget* parent = widgetOf(record.parent ? record.parent : record.owner);
    if (record.parent && !parent) return nullptr;
    ControlView* view = makeControlView(record, *this, parent);
    QWidget& widget = view->widget();
    if (!record.parent) widget.setWindowFlags(frameOf(record));
    widget.setObjectName(QString("%1").arg(record.id));
    for (QWidget* part : widget.findChildren<QWidget*>())
        part->setFocusPolicy(Qt::NoFocus);
    widget.setFocusPolicy(Qt::NoFocus);
    windows_.insert(&widget, record.handle);
    Shown& shown = shown_[record.handle];
    shown = {&widget, view, static_cast<int>(shapeOf(record))};
    return &shown;
}

void QtDesktop::takeOver(HWND window, unsigned what) {
    const auto* record = findWindow(window);
    if (!record || record->destroying) return bury(window);
    const auto found = shown_.find(window);
    Shown* shown = found == shown_.end() ? nullptr : &found->second;
    if (shown && !shown->view) { // the program's own
        if (shown->widget) shown->widget->setEnabled(!(record->style & WS_DISABLED));
        return;
    }
    const bool reshaped = shown && shown->shape != static_cast<int>(shapeOf(*record));
    if (reshaped) bury(window);
    if (!shown || reshaped) {
        shown = makeWidget(*record);
        if (!shown) return;
        what = kEverything;
        if (reshaped)
            for (const HWND child : record->children)
                mark(child, framework::change::kOrder);
    }
    QWidget& widget = *shown->widget;
    if (what & framework::change::kOrder && record->parent)
        if (QWidget* parent = widgetOf(record->parent); parent && widget.parentWidget() != parent)
            widget.setParent(parent);
    shown->view->follow(*record, what);
    if (what & (framework::change::kPlace | framework::change::kOrder)) place(*record, widget);
    if (what & (framework::change::kState | framework::change::kOrder)) {
        widget.setEnabled(!(record->style & WS_DISABLED));
        widget.setVisible((record->style & WS_VISIBLE) != 0);
        // Which button is the default one is the dialog's to say.
        if (shown->shape == static_cast<int>(ControlShape::Page))
            for (const HWND child : record->children)
                if (const auto other = shown_.find(child);
                    other != shown_.end() && other->second.view &&
                    other->second.shape == static_cast<int>(ControlShape::Push))
                    other->second.view->follow(*findWindow(child), framework::change::kState);
    }
}

void QtDesktop::place(const WindowRecord& record, QWidget& widget) {
    const QRect rect = qRect(shownRect(record));
    if (record.parent) {
        widget.setGeometry(rect);
    } else if (widget.geometry() != rect) {
        if (!(record.style & WS_THICKFRAME)) widget.setFixedSize(rect.size());
        widget.setGeometry(rect);
    }
}

/// Hands the toolkit's focus and active window over to those of the records.
void QtDesktop::followActivation() {
    QWidget* active = widgetOf(GetActiveWindow());
    if (active && active->isVisible() && !active->isActiveWindow() && !QApplication::activePopupWidget()) {
        if (QGuiApplication::platformName() != "offscreen") active->raise(); // which has no order
        active->activateWindow();
    }
    const auto focused = shown_.find(GetFocus());
    if (focused == shown_.end() || !focused->second.view || !focused->second.widget) return;
    QWidget& widget = *focused->second.widget;
    if (widget.window()->focusWidget() == &widget) return;
    const bool edit = focused->second.shape == static_cast<int>(ControlShape::Line) ||
                      focused->second.shape == static_cast<int>(ControlShape::Field);
    widget.setFocus(edit ? Qt::OtherFocusReason : Qt::TabFocusReason);
    focused->second.view->follow(*findWindow(focused->first), framework::change::kFocus);
}

bool QtDesktop::eventFilter(QObject* object, QEvent* event) {
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::MouseButtonPress:
    case QEvent::WindowActivate:
    case QEvent::Move:
    case QEvent::Resize:
        return object->isWidgetType() && filterWidget(*static_cast<QWidget*>(object), *event);
    default:
        return false;
    }
}

bool QtDesktop::filterWidget(QWidget& widget, QEvent& event) {
    if (event.type() == QEvent::WindowActivate) {
        // Also of an adopted widget.
        for (const auto& [window, shown] : shown_)
            if (shown.widget == &widget && widget.isWindow() && GetActiveWindow() != window) {
                SetActiveWindow(window);
                break;
            }
        return false;
    }
    const HWND window = windowOf(&widget);
    if (!window) return false;
    switch (event.type()) {
    case QEvent::ShortcutOverride:
        event.accept();
        return true;
    case QEvent::KeyPress:
        return takeKey(window, static_cast<const QKeyEvent&>(event));
    case QEvent::KeyRelease:
        return true;
    case QEvent::MouseButtonPress:
        clicked(window);
        return false;
    default: // moved or sized by the user
        if (const auto* record = findWindow(window); record && !record->parent && !flushing_ &&
                                                     widget.isVisible() &&
                                                     windows_.value(&widget) == window) {
            const QRect now = widget.geometry();
            MoveWindow(window, {now.left(), now.top(), now.left() + now.width(), now.top() + now.height()});
        }
        return false;
    }
}

/// What a press of the mouse means before the control makes its own of it.
void QtDesktop::clicked(HWND window) {
    if (!framework::user::canUse(window)) return;
    switch (framework::kindOf(window)) {
    case framework::ControlKind::kPlain:
    case framework::ControlKind::kDialog:
    case framework::ControlKind::kStatic:
    case framework::ControlKind::kSpin:
        SetActiveWindow(framework::topLevelOf(window));
        break;
    default:
        SetFocus(window);
    }
    schedule();
}

bool QtDesktop::takeKey(HWND window, const QKeyEvent& key) {
    const HWND top = framework::topLevelOf(window);
    if (GetActiveWindow() != top) SetActiveWindow(top);
    const UINT modifiers = frameworkModifiers(key.modifiers());
    const bool alt = (key.modifiers() & Qt::AltModifier) != 0;
    const WPARAM known = frameworkKey(key.key());
    if (alt && known == VK_F4) {
        framework::user::close(top);
    } else if (alt) {
        if (const std::wstring letter = letterOf(key); !letter.empty()) framework::pressMnemonic(letter[0]);
    } else if (known) {
        framework::pressKey(known, key.key() == Qt::Key_Backtab ? modifiers | MK_SHIFT : modifiers);
    } else if (!useClipboardKey(GetFocus(), key)) {
        for (const wchar_t c : wideText(key.text()))
            if (c > L' ' && c != 127) framework::typeCharacter(c, modifiers);
    }
    schedule();
    return true;
}

void QtDesktop::RunModalLoop(HWND dialog) {
    const Counted loop(loops_);
    framework::pumpMessages();
    flush();
    while (!framework::modalLoopEnded(dialog)) {
        if (playNext()) continue;
        if (closing_) {
            closeUnanswered(dialog);
            continue;
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        framework::pumpMessages();
        flush();
    }
}

int QtDesktop::ShowMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption,
                              unsigned style) {
    if (playing_ || closing_) return answerByScript(text, style);
    const Counted loop(loops_);
    flush();
    QWidget* above = widgetOf(framework::topLevelOf(owner ? owner : GetActiveWindow()));
    QMessageBox box(above);
    box.setIcon(iconOf(style));
    box.setText(qText(text));
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(caption.empty() ? QGuiApplication::applicationDisplayName() : qText(caption));
    const auto buttons = framework::messageBoxButtons(style);
    std::map<QAbstractButton*, int> ids;
    for (const int id : buttons) {
        const auto named = buttonTexts_.find(id);
        const std::wstring label = named == buttonTexts_.end() ? buttonText(id) : named->second;
        // In the order of the framework, whatever the platform's is.
        QPushButton* button = box.addButton(qText(label), QMessageBox::ActionRole);
        ids[button] = id;
        if (id == framework::defaultAnswer(style)) box.setDefaultButton(button);
        if (id == IDCANCEL || buttons.size() == 1) box.setEscapeButton(button);
    }
    box.exec();
    const auto answer = ids.find(box.clickedButton());
    if (answer != ids.end()) return answer->second;
    return std::ranges::find(buttons, IDCANCEL) != buttons.end() ? IDCANCEL : framework::defaultAnswer(style);
}

CRect QtDesktop::WorkArea() const {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (!screen) return framework::DesktopPort::WorkArea();
    const QRect area = screen->availableGeometry();
    return {area.left(), area.top(), area.left() + area.width(), area.top() + area.height()};
}

void QtDesktop::play(std::vector<framework::DeskStep> steps, bool closing, std::function<void()> atEnd) {
    steps_.assign(std::make_move_iterator(steps.begin()), std::make_move_iterator(steps.end()));
    atEnd_ = std::move(atEnd);
    playing_ = true;
    closing_ = false;
    closeAfterwards_ = closing;
}

bool QtDesktop::playNext() {
    if (!playing_) return false;
    framework::pumpMessages();
    flush();
    QCoreApplication::processEvents();
    if (steps_.empty()) {
        playing_ = false;
        closing_ = closeAfterwards_;
        if (const auto atEnd = std::exchange(atEnd_, nullptr)) atEnd();
        return true;
    }
    const framework::DeskStep step = std::move(steps_.front());
    steps_.pop_front();
    const std::wstring problem = framework::performDeskStep(step);
    if (!problem.empty()) problems_.push_back(problem);
    framework::pumpMessages();
    flush();
    return true;
}

void QtDesktop::finishPlaying() {
    while (playNext()) {
    }
}

int QtDesktop::answerByScript(const std::wstring& text, unsigned style) {
    int answer = framework::defaultAnswer(style);
    if (!steps_.empty() && steps_.front().action == L"answer") {
        const int wanted = framework::answerId(steps_.front().arguments[0]);
        steps_.pop_front();
        const auto buttons = framework::messageBoxButtons(style);
        if (std::ranges::find(buttons, wanted) != buttons.end())
            answer = wanted;
        else
            problems_.push_back(L"the message \"" + text + L"\" has no such button");
    }
    if (messageListener) messageListener(text);
    return answer;
}

void QtDesktop::closeUnanswered(HWND dialog) {
    SendMessage(dialog, WM_CLOSE);
    framework::pumpMessages();
    if (framework::modalLoopEnded(dialog)) return;
    if (auto* object = dynamic_cast<CDialog*>(CWnd::FromHandlePermanent(dialog)))
        object->EndDialog(IDCANCEL);
    else
        DestroyWindow(dialog);
}

} // namespace workbench::desktop
