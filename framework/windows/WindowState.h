#pragma once

#include "framework/Export.h"
#include "framework/windows/WindowRecord.h"

#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <vector>

class CWnd;

namespace framework {

/// Everything about windows that a process has once. All of it belongs to the one thread of windows.
struct WindowState {
    struct Slot {
        std::unique_ptr<WindowRecord> record;
        std::uint32_t generation = 1;
    };
    std::vector<Slot> slots;
    std::vector<std::size_t> freeSlots;
    std::vector<HWND> topLevels; ///< topmost last

    HWND active = nullptr;
    HWND focus = nullptr;
    HWND capture = nullptr;
    UINT modifiers = 0; ///< MK_SHIFT and MK_CONTROL while a key is delivered

    MSG current;   ///< the message that an object is handling
    int depth = 0; ///< of nested dispatch
    std::deque<MSG> posted;
    HWND lockedOut = nullptr; ///< a dialog whose controls are being filled: their notifications are dropped

    std::map<HWND, std::unique_ptr<CWnd>> temporaries;
    std::vector<std::unique_ptr<CWnd>> deadTemporaries; ///< kept until nobody can be using them
};

VEXA_API WindowState& windowState();

/// A fresh record with a handle.
VEXA_API WindowRecord& addRecord();
void removeRecord(HWND window);

/// Sends a message; nothing when a handler threw.
VEXA_API std::optional<LRESULT> deliver(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

/// Frees objects of FromHandle whose windows are gone. Call where no code of a user is on the stack.
void releaseTemporaries();

} // namespace framework
