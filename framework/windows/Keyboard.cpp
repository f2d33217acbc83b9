#include "framework/windows/Keyboard.h"

#include "framework/windows/ErrorOutput.h"
#include "framework/windows/FocusRules.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/Wnd.h"

#include <utility>

namespace framework {
namespace {

class HeldKeys {
  public:
    explicit HeldKeys(UINT modifiers)
        : before_(std::exchange(windowState().modifiers, modifiers)) {}
    ~HeldKeys() { windowState().modifiers = before_; }
    HeldKeys(const HeldKeys&) = delete;
    HeldKeys& operator=(const HeldKeys&) = delete;

  private:
    UINT before_;
};

/// True when one of the objects from the window up to its top-level one used the message, failed at it, or
/// destroyed the window.
bool preTranslate(MSG& message) {
    HWND window = message.hwnd;
    while (const auto* record = findWindow(window)) {
        const HWND parent = record->parent;
        try {
            if (record->object && record->object->PreTranslateMessage(&message)) return true;
        } catch (...) {
            reportException();
            return true;
        }
        if (!findWindow(message.hwnd)) return true;
        window = parent;
    }
    return false;
}

/// True when the message reached the window itself, which is still there.
bool deliverKey(HWND window, UINT message, WPARAM wParam) {
    MSG key{window, message, wParam, 0};
    if (preTranslate(key)) return false;
    SendMessage(window, message, wParam);
    return findWindow(window) != nullptr;
}

HWND target() {
    const HWND window = GetFocus() ? GetFocus() : GetActiveWindow();
    return isEnabledWithParents(window) ? window : nullptr;
}

} // namespace

bool pressKey(WPARAM key, UINT modifiers) {
    const HeldKeys held(modifiers);
    const HWND window = target();
    if (!window) return false;
    const wchar_t character = key == VK_RETURN  ? L'\r'
                              : key == VK_BACK  ? L'\b'
                              : key == VK_SPACE ? L' '
                                                : L'\0';
    if (deliverKey(window, WM_KEYDOWN, key) && character)
        deliverKey(window, WM_CHAR, static_cast<WPARAM>(character));
    return true;
}

bool typeCharacter(wchar_t character, UINT modifiers) {
    const HeldKeys held(modifiers);
    const HWND window = target();
    if (!window) return false;
    deliverKey(window, WM_CHAR, static_cast<WPARAM>(character));
    return true;
}

bool pressMnemonic(wchar_t letter) {
    const HWND window = target();
    if (!window) return false;
    deliverKey(window, WM_SYSCHAR, static_cast<WPARAM>(letter));
    return true;
}

} // namespace framework
