#include "framework/windows/desktop/ScriptedDesk.h"

#include "framework/text/Format.h"
#include "framework/windows/ErrorOutput.h"
#include "framework/windows/WindowFunctions.h"
#include "framework/windows/Wnd.h"
#include "framework/windows/dialogs/Dialog.h"

#include <algorithm>

namespace framework {

ScriptedDesk& scriptedDesk() {
    static ScriptedDesk& desk = *new ScriptedDesk;
    return desk;
}

std::vector<int> messageBoxButtons(unsigned style) {
    constexpr unsigned kButtons = 0x0F;
    switch (style & kButtons) {
    case MB_OKCANCEL:
        return {IDOK, IDCANCEL};
    case MB_ABORTRETRYIGNORE:
        return {IDABORT, IDRETRY, IDIGNORE};
    case MB_YESNOCANCEL:
        return {IDYES, IDNO, IDCANCEL};
    case MB_YESNO:
        return {IDYES, IDNO};
    case MB_RETRYCANCEL:
        return {IDRETRY, IDCANCEL};
    default:
        return {IDOK};
    }
}

int defaultAnswer(unsigned style) {
    const auto buttons = messageBoxButtons(style);
    const std::size_t wanted = style & MB_DEFBUTTON3 ? 2 : style & MB_DEFBUTTON2 ? 1 : 0;
    return buttons[std::min(wanted, buttons.size() - 1)];
}

void ScriptedDesk::addStep(std::function<void()> step) {
    steps_.push_back({std::move(step), 0});
}

void ScriptedDesk::addAnswer(int id) {
    const auto unused = [this, id] {
        problems_.push_back(formatWide(L"no message was shown to answer with button %d", id));
    };
    steps_.push_back({unused, id});
}

void ScriptedDesk::addScript(std::wstring_view text) {
    DeskScript script = parseDeskScript(text);
    problems_.insert(problems_.end(), script.problems.begin(), script.problems.end());
    for (auto& step : script.steps) {
        const int answer = step.action == L"answer" ? answerId(step.arguments[0]) : 0;
        const auto perform = [this, step] {
            const std::wstring problem = performDeskStep(step);
            if (!problem.empty()) problems_.push_back(problem);
        };
        steps_.push_back({perform, answer});
    }
}

void ScriptedDesk::clear() {
    steps_.clear();
    messages_.clear();
    problems_.clear();
}

bool ScriptedDesk::doNext() {
    if (steps_.empty()) return false;
    const Step step = std::move(steps_.front());
    steps_.pop_front();
    try {
        step.act();
    } catch (...) {
        reportException();
    }
    pumpMessages();
    return true;
}

void ScriptedDesk::run() {
    pumpMessages();
    while (doNext()) {
    }
}

void ScriptedDesk::closeUnanswered(HWND dialog) {
    SendMessage(dialog, WM_CLOSE);
    pumpMessages();
    if (modalLoopEnded(dialog)) return;
    if (auto* object = dynamic_cast<CDialog*>(CWnd::FromHandlePermanent(dialog)))
        object->EndDialog(IDCANCEL);
    else
        DestroyWindow(dialog);
}

void ScriptedDesk::RunModalLoop(HWND dialog) {
    pumpMessages();
    while (!modalLoopEnded(dialog))
        if (!doNext()) closeUnanswered(dialog);
}

int ScriptedDesk::ShowMessageBox(HWND, const std::wstring& text, const std::wstring& caption,
                                 unsigned style) {
    int answer = defaultAnswer(style);
    if (!steps_.empty() && steps_.front().answer) {
        const int wanted = steps_.front().answer;
        steps_.pop_front();
        const auto buttons = messageBoxButtons(style);
        if (std::find(buttons.begin(), buttons.end(), wanted) != buttons.end())
            answer = wanted;
        else
            problems_.push_back(L"the message \"" + text + L"\" has no such button");
    }
    messages_.push_back({text, caption, style, answer});
    if (listener_) listener_(messages_.back());
    return answer;
}

} // namespace framework
