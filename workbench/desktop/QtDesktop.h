#pragma once

#include "framework/windows/desktop/DeskScript.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "workbench/desktop/ControlView.h"

#include <deque>
#include <functional>
#include <map>
#include <vector>

namespace workbench::desktop {

/// The screen of the framework's windows: a widget for every record. Registers itself while it lives; one at
/// a time, in the thread of the application object.
///
/// Records change while handlers run, often inside a widget's own event. So nothing is done to a widget then:
/// what changed is remembered and taken over when control is back in the event loop, and widgets of windows
/// that are gone are hidden then and deleted when none of their events can be running any more.
class QtDesktop final : public QObject, public framework::DesktopPort, public ViewKeeper {
  public:
    QtDesktop();
    ~QtDesktop() override;

    /// Lets a widget of the program's own stand for a window: it follows whether the window can be used and
    /// is active, and keeps its own place and looks. To be called before the window is shown.
    void adopt(HWND window, QWidget& widget);

    /// Takes over now what changed. Not from within a handler.
    void flush();

    QWidget* widgetOf(HWND window) const;       ///< null until it was taken over
    HWND windowOf(const QWidget* widget) const; ///< that it belongs to; null for the program's own
    /// Whether a modal dialog or a message box is open.
    bool isInLoop() const { return loops_ > 0; }

    /// Texts of the buttons of message boxes, by their ids; English where there is none.
    void setButtonTexts(std::map<int, std::wstring> texts) { buttonTexts_ = std::move(texts); }

    /// Does the steps of a script in place of the user: at once, and inside modal loops as they come. Then
    /// `atEnd` is called, once, with the windows as the last step left them. With `closing`, modal dialogs
    /// that are still open are closed then, and every message box takes its default answer.
    void play(std::vector<framework::DeskStep> steps, bool closing, std::function<void()> atEnd);
    /// The steps that no modal loop has come for.
    void finishPlaying();
    const std::vector<std::wstring>& problems() const { return problems_; }
    /// Told of every message box that a script answered.
    std::function<void(const std::wstring& text)> messageListener;

    void refresh(HWND window) override;

    void WindowCreated(HWND window) override;
    void WindowChanged(HWND window, unsigned what) override;
    void WindowDestroyed(HWND window) override;
    void RegionInvalid(HWND window, const CRect& region) override;
    void WindowPainted(HWND window) override;
    void MessagePosted() override;
    void RunModalLoop(HWND dialog) override;
    int ShowMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption,
                       unsigned style) override;
    CRect WorkArea() const override;

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

  private:
    struct Shown {
        QPointer<QWidget> widget;
        ControlView* view = nullptr; ///< null for an adopted widget
        int shape = 0;
    };

    void mark(HWND window, unsigned what);
    void schedule();
    void takeOver(HWND window, unsigned what);
    Shown* makeWidget(const framework::WindowRecord& record);
    void bury(HWND window);
    void place(const framework::WindowRecord& record, QWidget& widget);
    void followActivation();
    bool filterWidget(QWidget& widget, QEvent& event);
    void clicked(HWND window);
    bool takeKey(HWND window, const QKeyEvent& key);
    bool playNext();
    int answerByScript(const std::wstring& text, unsigned style);
    void closeUnanswered(HWND dialog);

    std::map<HWND, Shown> shown_;
    QHash<const QWidget*, HWND> windows_;
    std::vector<HWND> marked_; ///< in the order of their first change, so that parents come first
    std::map<HWND, unsigned> changes_;
    std::vector<QPointer<QWidget>> buried_;
    bool scheduled_ = false;
    bool flushing_ = false;
    int loops_ = 0;
    std::map<int, std::wstring> buttonTexts_;

    std::deque<framework::DeskStep> steps_;
    std::function<void()> atEnd_;
    bool playing_ = false;
    bool closing_ = false; ///< what is modal is closed now
    bool closeAfterwards_ = false;
    std::vector<std::wstring> problems_;
    framework::DesktopPort* before_;
};

} // namespace workbench::desktop
