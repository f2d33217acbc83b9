#include "framework/windows/WindowFunctions.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <algorithm>
#include <utility>

using framework::findWindow;

namespace {

/// Left top corner of the client area, on the screen.
CPoint clientOrigin(const framework::WindowRecord& record) {
    CPoint origin = record.rect.TopLeft();
    const int border = framework::borderWidth(record);
    origin.Offset(border, border);
    if (const auto* parent = findWindow(record.parent)) origin = origin + clientOrigin(*parent);
    return origin;
}

} // namespace

namespace framework {

HWND topLevelOf(HWND window) {
    const auto* record = findWindow(window);
    if (!record) return nullptr;
    while (const auto* parent = findWindow(record->parent))
        record = parent;
    return record->handle;
}

std::wstring windowText(HWND window) {
    const auto* record = findWindow(window);
    return record ? record->text : std::wstring();
}

} // namespace framework

HWND GetParent(HWND window) {
    const auto* record = findWindow(window);
    return !record ? nullptr : record->parent ? record->parent : record->owner;
}

HWND GetDlgItem(HWND window, int id) {
    const auto* record = findWindow(window);
    if (!record) return nullptr;
    for (const HWND child : record->children)
        if (const auto* item = findWindow(child); item && item->id == (static_cast<UINT>(id) & 0xFFFF))
            return child;
    return nullptr;
}

int GetDlgCtrlID(HWND window) {
    const auto* record = findWindow(window);
    return record ? static_cast<int>(record->id) : 0;
}

int IsChild(HWND window, HWND descendant) {
    for (const auto* record = findWindow(descendant); record && record->parent;
         record = findWindow(record->parent))
        if (record->parent == window) return 1;
    return 0;
}

HWND SetParent(HWND window, HWND parent) {
    auto* record = findWindow(window);
    auto* target = findWindow(parent);
    if (!record || !record->parent || !target || parent == window || IsChild(window, parent)) return nullptr;
    if (auto* former = findWindow(record->parent)) std::erase(former->children, window);
    target->children.push_back(window);
    const HWND before = std::exchange(record->parent, parent);
    framework::windowChanged(window, framework::change::kOrder);
    return before;
}

int MoveWindow(HWND window, const CRect& rect) {
    auto* record = findWindow(window);
    if (!record) return 0;
    const CRect before = std::exchange(record->rect, rect);
    if (before == rect) return 1;
    framework::windowChanged(window, framework::change::kPlace);
    if (before.TopLeft() != rect.TopLeft()) SendMessage(window, WM_MOVE, 0, MAKELPARAM(rect.left, rect.top));
    if (before.Size() != rect.Size() && IsWindow(window)) {
        CRect client;
        GetClientRect(window, &client);
        InvalidateRect(window, nullptr, 1);
        SendMessage(window, WM_SIZE, SIZE_RESTORED, MAKELPARAM(client.right, client.bottom));
    }
    return 1;
}

int GetWindowRect(HWND window, CRect* rect) {
    const auto* record = findWindow(window);
    if (!record) return 0;
    *rect = record->rect;
    if (const auto* parent = findWindow(record->parent)) rect->OffsetRect(clientOrigin(*parent));
    return 1;
}

int GetClientRect(HWND window, CRect* rect) {
    const auto* record = findWindow(window);
    if (!record) return 0;
    const int borders = 2 * framework::borderWidth(*record);
    *rect = CRect(0, 0, std::max(0, record->rect.Width() - borders),
                  std::max(0, record->rect.Height() - borders));
    return 1;
}

int ClientToScreen(HWND window, CPoint* point) {
    const auto* record = findWindow(window);
    if (!record) return 0;
    *point = *point + clientOrigin(*record);
    return 1;
}

int ScreenToClient(HWND window, CPoint* point) {
    const auto* record = findWindow(window);
    if (!record) return 0;
    *point = *point - clientOrigin(*record);
    return 1;
}

int BringWindowToTop(HWND window) {
    return SetActiveWindow(framework::topLevelOf(window)) != nullptr;
}

int InvalidateRect(HWND window, const CRect* rect, int erase) {
    auto* record = findWindow(window);
    if (!record) return 0;
    CRect client;
    GetClientRect(window, &client);
    CRect part = client;
    if (rect && !part.IntersectRect(*rect, client)) return 1;
    record->invalid.UnionRect(CRect(record->invalid), part);
    record->eraseInvalid = record->eraseInvalid || erase;
    framework::desktop().RegionInvalid(window, part);
    return 1;
}

int ValidateRect(HWND window, const CRect* rect) {
    auto* record = findWindow(window);
    if (!record) return 0;
    CRect rest;
    // One rectangle stands for what is invalid: it goes only when all of it becomes valid.
    if (rect && rest.IntersectRect(*rect, record->invalid) && rest != record->invalid) return 1;
    if (rect && rest.IsRectEmpty()) return 1;
    record->invalid.SetRectEmpty();
    record->eraseInvalid = false;
    return 1;
}

int UpdateWindow(HWND window) {
    auto* record = findWindow(window);
    if (!record) return 0;
    if (record->invalid.IsRectEmpty() || !IsWindowVisible(window)) return 1;
    record->painting = std::exchange(record->invalid, CRect());
    record->erasePainting = std::exchange(record->eraseInvalid, false);
    SendMessage(window, WM_PAINT);
    if (findWindow(window)) record->painting.SetRectEmpty();
    return 1;
}
