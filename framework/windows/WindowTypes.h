#pragma once

#include <cstdint>

/// The system's names for the plain types of windows and messages.
using UINT = unsigned int;
using DWORD = std::uint32_t;
using DWORD_PTR = std::uintptr_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;

/// A window's handle: opaque, never given out twice, null for no window.
struct HWND__;
using HWND = HWND__*;

/// A message as it is sent or posted.
struct MSG {
    HWND hwnd = nullptr;
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};

/// Head of every WM_NOTIFY record.
struct NMHDR {
    HWND hwndFrom = nullptr;
    WPARAM idFrom = 0;
    UINT code = 0;
};

/// What a list control notifies of: the row, the column, and the states before and after.
struct NMLISTVIEW {
    NMHDR hdr;
    int iItem = -1;
    int iSubItem = 0;
    UINT uNewState = 0;
    UINT uOldState = 0;
    UINT uChanged = 0;
};

/// What a spin button is about to do; a handler may change the step.
struct NMUPDOWN {
    NMHDR hdr;
    int iPos = 0;
    int iDelta = 0;
};

constexpr UINT LOWORD(std::intptr_t value) {
    return static_cast<UINT>(value & 0xFFFF);
}
constexpr UINT HIWORD(std::intptr_t value) {
    return static_cast<UINT>(value >> 16 & 0xFFFF);
}
constexpr WPARAM MAKEWPARAM(UINT low, UINT high) {
    return (low & 0xFFFF) | (high & 0xFFFF) << 16;
}
constexpr LPARAM MAKELPARAM(int low, int high) {
    return static_cast<LPARAM>(MAKEWPARAM(static_cast<UINT>(low), static_cast<UINT>(high)));
}
/// A signed coordinate of a mouse message.
constexpr int GET_X_LPARAM(LPARAM value) {
    return static_cast<std::int16_t>(LOWORD(value));
}
constexpr int GET_Y_LPARAM(LPARAM value) {
    return static_cast<std::int16_t>(HIWORD(value));
}
