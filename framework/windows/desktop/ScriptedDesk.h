#pragma once

#include "framework/Export.h"
#include "framework/windows/desktop/DeskScript.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace framework {

/// A message box that was answered.
struct ShownMessage {
    std::wstring text;
    std::wstring caption;
    unsigned style = 0;
    int answer = 0;
};

/// The desktop of a process without a screen: its user is a list of steps. Steps are done in order, those of
/// a modal dialog within its loop. A modal dialog that finds no step left is closed, and cancelled when it
/// does not close; a message box that the next step does not answer takes its default button.
class VEXA_API ScriptedDesk : public DesktopPort {
  public:
    /// A step that does anything. While a modal dialog runs, the active window is that dialog.
    void addStep(std::function<void()> step);
    /// Answers the next message box, when it comes before the step after this one.
    void addAnswer(int id);
    /// Adds the steps of a script; what is wrong with it goes to the problems.
    void addScript(std::wstring_view text);
    /// Does the steps that are left, outside of any modal dialog.
    void run();

    const std::vector<ShownMessage>& messages() const { return messages_; }
    const std::vector<std::wstring>& problems() const { return problems_; }
    /// Told of every message box as it is answered, for a program that prints it.
    void setMessageListener(std::function<void(const ShownMessage&)> listener) {
        listener_ = std::move(listener);
    }
    void clear(); ///< forgets steps, messages and problems

    void RunModalLoop(HWND dialog) override;
    int ShowMessageBox(HWND owner, const std::wstring& text, const std::wstring& caption,
                       unsigned style) override;

  private:
    struct Step {
        std::function<void()> act;
        int answer = 0;
    };
    bool doNext();
    void closeUnanswered(HWND dialog);

    std::deque<Step> steps_;
    std::vector<ShownMessage> messages_;
    std::vector<std::wstring> problems_;
    std::function<void(const ShownMessage&)> listener_;
};

/// The desk that stands in while no desktop is registered.
VEXA_API ScriptedDesk& scriptedDesk();

/// The buttons of a message box by its style, in their order, and the one that Enter presses.
VEXA_API std::vector<int> messageBoxButtons(unsigned style);
VEXA_API int defaultAnswer(unsigned style);

} // namespace framework
