#include "framework/windows/desktop/DeskScript.h"

#include "framework/text/Format.h"
#include "framework/text/Numbers.h"
#include "framework/windows/Keyboard.h"
#include "framework/windows/WindowClasses.h"
#include "framework/windows/WindowFunctions.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/controls/ItemList.h"
#include "framework/windows/desktop/UserActions.h"
#include "framework/windows/dialogs/Navigation.h"

#include <algorithm>
#include <optional>

namespace framework {
namespace {

struct Action {
    const wchar_t* name;
    std::size_t least;
    std::size_t most;
};
constexpr std::size_t kAnyNumber = 1000;
constexpr Action kActions[] = {
    {L"window", 1, 1}, {L"press", 1, 1}, {L"check", 1, 3}, {L"choose", 2, 2}, {L"select", 1, kAnyNumber},
    {L"type", 2, 2},   {L"spin", 2, 2},  {L"open", 2, 2},  {L"key", 1, 1},    {L"close", 0, 0},
    {L"answer", 1, 1},
};

struct NamedId {
    const wchar_t* name;
    int id;
};
constexpr NamedId kAnswers[] = {{L"ok", IDOK},       {L"cancel", IDCANCEL}, {L"abort", IDABORT},
                                {L"retry", IDRETRY}, {L"ignore", IDIGNORE}, {L"yes", IDYES},
                                {L"no", IDNO}};

struct NamedKey {
    const wchar_t* name;
    WPARAM key;
};
constexpr NamedKey kKeys[] = {
    {L"tab", VK_TAB},       {L"enter", VK_RETURN},   {L"escape", VK_ESCAPE}, {L"space", VK_SPACE},
    {L"up", VK_UP},         {L"down", VK_DOWN},      {L"left", VK_LEFT},     {L"right", VK_RIGHT},
    {L"home", VK_HOME},     {L"end", VK_END},        {L"pageup", VK_PRIOR},  {L"pagedown", VK_NEXT},
    {L"delete", VK_DELETE}, {L"backspace", VK_BACK},
};

std::wstring lower(std::wstring text) {
    for (wchar_t& c : text)
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    return text;
}

/// Words of a line, or texts in double quotes, in which "" is a quote. Nothing for an open quote.
std::optional<std::vector<std::wstring>> wordsOf(std::wstring_view line) {
    std::vector<std::wstring> words;
    std::size_t i = 0;
    const auto isBlank = [](wchar_t c) { return c == L' ' || c == L'\t' || c == L'\r'; };
    while (true) {
        while (i < line.size() && isBlank(line[i]))
            ++i;
        // "#2" names an item; any other "#" begins a comment.
        const bool comment =
            i < line.size() && line[i] == L'#' &&
            (words.empty() || i + 1 == line.size() || line[i + 1] < L'-' || line[i + 1] > L'9');
        if (i == line.size() || comment) return words;
        std::wstring word;
        if (line[i] != L'"') {
            while (i < line.size() && !isBlank(line[i]))
                word += line[i++];
        } else {
            for (++i;; ++i) {
                if (i == line.size()) return {};
                if (line[i] == L'"' && (++i == line.size() || line[i] != L'"')) break;
                word += line[i];
            }
        }
        words.push_back(std::move(word));
    }
}

std::optional<int> numberOf(const std::wstring& text) {
    const std::size_t digits = text.starts_with(L'-') ? 1 : 0;
    if (text.size() == digits || text.find_first_not_of(L"0123456789", digits) != std::wstring::npos)
        return {};
    return wtoi(text);
}

/// A label as a user would say it.
std::wstring spoken(const std::wstring& text) {
    std::wstring shown = withoutMnemonic(text);
    while (!shown.empty() && (shown.back() == L':' || shown.back() == L' '))
        shown.pop_back();
    return shown;
}

bool isLabel(HWND control) {
    return (SendMessage(control, WM_GETDLGCODE) & DLGC_STATIC) != 0;
}

/// An item by its text, which may be indented, or by "#" and its position.
std::optional<int> itemIndex(HWND list, const std::wstring& name) {
    const auto* record = findWindow(list);
    if (const int exact = findItem(record, -1, name, true); exact >= 0) return exact;
    for (std::size_t i = 0; record && i < record->items.size(); ++i) {
        const std::wstring& text = record->items[i].texts[0];
        const auto start = text.find_first_not_of(L' ');
        if (start != std::wstring::npos && lower(text.substr(start)) == lower(name))
            return static_cast<int>(i);
    }
    if (!name.starts_with(L'#')) return {};
    return numberOf(name.substr(1));
}

std::wstring notThere(const DeskStep& step, const std::wstring& what) {
    return formatWide(L"line %d: there is no %s \"%s\" here", static_cast<int>(step.line), what,
                      step.arguments[0]);
}

std::wstring pressNamedKey(const DeskStep& step) {
    std::wstring name = lower(step.arguments[0]);
    UINT modifiers = 0;
    for (const auto& [prefix, modifier] : {std::pair{L"shift+", MK_SHIFT}, std::pair{L"ctrl+", MK_CONTROL}})
        if (name.starts_with(prefix)) {
            modifiers |= modifier;
            name.erase(0, std::wstring_view(prefix).size());
        }
    if (name.starts_with(L"alt+") && name.size() == 5)
        return pressMnemonic(name[4]) ? std::wstring() : notThere(step, L"window for the key");
    const auto* known = std::find_if(std::begin(kKeys), std::end(kKeys),
                                     [&](const NamedKey& key) { return name == key.name; });
    if (known == std::end(kKeys)) return notThere(step, L"key");
    return pressKey(known->key, modifiers) ? std::wstring() : notThere(step, L"window for the key");
}

std::wstring activateNamed(const DeskStep& step) {
    for (const HWND window : topLevelWindows())
        if (user::canUse(window) && windowText(window) == step.arguments[0]) {
            SetActiveWindow(window);
            return {};
        }
    return notThere(step, L"window");
}

bool checkNamed(HWND control, const DeskStep& step) {
    const bool button = kindOf(control) == ControlKind::kButton;
    const bool on = step.arguments.back() != L"off";
    if (button) return user::check(control, on);
    const auto index = step.arguments.size() > 1 ? itemIndex(control, step.arguments[1]) : std::nullopt;
    return index && user::checkItem(control, *index, on);
}

bool selectNamed(HWND control, const DeskStep& step) {
    std::vector<int> indices;
    for (std::size_t i = 1; i < step.arguments.size(); ++i) {
        const auto index = itemIndex(control, step.arguments[i]);
        if (!index) return false;
        indices.push_back(*index);
    }
    return user::select(control, indices);
}

bool act(HWND control, const DeskStep& step) {
    const std::wstring& action = step.action;
    if (action == L"press") return user::press(control);
    if (action == L"check") return checkNamed(control, step);
    if (action == L"select") return selectNamed(control, step);
    if (action == L"type") return user::type(control, step.arguments[1]);
    if (action == L"spin") {
        const auto steps = numberOf(step.arguments[1]);
        return steps && user::spin(control, *steps);
    }
    const auto index = itemIndex(control, step.arguments[1]);
    if (!index) return false;
    return action == L"choose" ? user::choose(control, *index) : user::doubleClickItem(control, *index);
}

} // namespace

DeskScript parseDeskScript(std::wstring_view text) {
    DeskScript script;
    for (std::size_t line = 1; !text.empty(); ++line) {
        const auto end = std::min(text.find(L'\n'), text.size());
        const auto words = wordsOf(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto complain = [&](const std::wstring& what) {
            script.problems.push_back(formatWide(L"line %d: %s", static_cast<int>(line), what));
        };
        if (!words) {
            complain(L"a text in quotes has no end");
            continue;
        }
        if (words->empty()) continue;
        DeskStep step{line, words->front(), {words->begin() + 1, words->end()}};
        const auto* known = std::find_if(std::begin(kActions), std::end(kActions),
                                         [&](const Action& action) { return step.action == action.name; });
        if (known == std::end(kActions))
            complain(L"there is no action \"" + step.action + L"\"");
        else if (step.arguments.size() < known->least || step.arguments.size() > known->most)
            complain(L"\"" + step.action + L"\" takes another number of arguments");
        else if (step.action == L"answer" && !answerId(step.arguments[0]))
            complain(L"there is no answer \"" + step.arguments[0] + L"\"");
        else
            script.steps.push_back(std::move(step));
    }
    return script;
}

int answerId(const std::wstring& name) {
    for (const auto& answer : kAnswers)
        if (lower(name) == answer.name) return answer.id;
    return 0;
}

HWND findControl(HWND dialog, const std::wstring& name) {
    const auto controls = controlsInTabOrder(dialog);
    const auto matches = [&](auto condition) {
        const auto found = std::find_if(controls.begin(), controls.end(), condition);
        return found == controls.end() ? nullptr : *found;
    };
    if (const auto id = numberOf(name))
        if (const HWND control = matches([&](HWND c) { return GetDlgCtrlID(c) == *id; })) return control;
    if (const HWND control = matches([&](HWND c) {
            return kindOf(c) == ControlKind::kButton && !isLabel(c) && spoken(windowText(c)) == spoken(name);
        }))
        return control;
    const HWND label = matches([&](HWND c) { return isLabel(c) && spoken(windowText(c)) == spoken(name); });
    const auto after = std::find_if(std::find(controls.begin(), controls.end(), label), controls.end(),
                                    [](HWND c) { return !isLabel(c); });
    return label && after != controls.end() ? *after : nullptr;
}

std::wstring performDeskStep(const DeskStep& step) {
    if (step.action == L"window") return activateNamed(step);
    if (step.action == L"key") return pressNamedKey(step);
    const HWND dialog = GetActiveWindow();
    const int line = static_cast<int>(step.line);
    if (step.action == L"close")
        return user::close(dialog) ? std::wstring()
                                   : formatWide(L"line %d: there is no window to close", line);
    if (step.action == L"answer") return formatWide(L"line %d: no message was shown to answer", line);
    const HWND control = findControl(dialog, step.arguments[0]);
    if (!control) return notThere(step, L"control");
    if (act(control, step)) return {};
    return formatWide(L"line %d: \"%s\" is not possible with \"%s\" now", line, step.action,
                      step.arguments[0]);
}

} // namespace framework
