#include "framework/windows/controls/ItemList.h"

#include "framework/windows/WindowMessages.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <algorithm>

namespace framework {
namespace {

constexpr int kPage = 8; ///< items that a page key passes

std::wstring folded(std::wstring text) {
    for (wchar_t& c : text)
        if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
    return text;
}

int sizeOf(const WindowRecord& record) {
    return static_cast<int>(record.items.size());
}

} // namespace

WindowItem* itemAt(WindowRecord* record, int index) {
    if (!record || index < 0 || index >= sizeOf(*record)) return nullptr;
    return &record->items[static_cast<std::size_t>(index)];
}

int insertItem(WindowRecord* record, int index, const std::wstring& text) {
    if (!record || index < -1 || index > sizeOf(*record)) return -1;
    if (index == -1) index = sizeOf(*record);
    WindowItem item;
    item.texts[0] = text;
    record->items.insert(record->items.begin() + index, std::move(item));
    if (record->current >= index) ++record->current;
    windowChanged(record->handle, change::kContent);
    return index;
}

int addItem(WindowRecord* record, const std::wstring& text, bool sorted) {
    if (!record || !sorted) return insertItem(record, -1, text);
    const auto place = std::upper_bound(
        record->items.begin(), record->items.end(), folded(text),
        [](const std::wstring& added, const WindowItem& there) { return added < folded(there.texts[0]); });
    return insertItem(record, static_cast<int>(place - record->items.begin()), text);
}

int removeItem(WindowRecord* record, int index) {
    if (!itemAt(record, index)) return -1;
    record->items.erase(record->items.begin() + index);
    if (record->current == index)
        record->current = -1;
    else if (record->current > index)
        --record->current;
    windowChanged(record->handle, change::kContent);
    return sizeOf(*record);
}

void removeAllItems(WindowRecord* record) {
    if (!record) return;
    record->items.clear();
    record->current = -1;
    windowChanged(record->handle, change::kContent);
}

int findItem(const WindowRecord* record, int after, const std::wstring& text, bool exact) {
    if (!record || record->items.empty()) return -1;
    const std::wstring wanted = folded(text);
    const int size = sizeOf(*record);
    for (int i = 0; i < size; ++i) {
        const int index = (std::max(after, -1) + 1 + i) % size;
        const std::wstring there = folded(record->items[static_cast<std::size_t>(index)].texts[0]);
        if (exact ? there == wanted : there.starts_with(wanted)) return index;
    }
    return -1;
}

int setCurrentItem(WindowRecord* record, int index) {
    if (!record) return -1;
    const bool valid = itemAt(record, index) != nullptr;
    record->current = valid ? index : -1;
    windowChanged(record->handle, change::kContent);
    return record->current;
}

int itemByKey(const WindowRecord& record, int index, WPARAM key) {
    const int last = sizeOf(record) - 1;
    int to = index;
    switch (key) {
    case VK_UP:
        to = index - 1;
        break;
    case VK_DOWN:
        to = index + 1;
        break;
    case VK_PRIOR:
        to = index - kPage;
        break;
    case VK_NEXT:
        to = index + kPage;
        break;
    case VK_HOME:
        to = 0;
        break;
    case VK_END:
        to = last;
        break;
    default:
        return index;
    }
    return last < 0 ? index : std::clamp(to, 0, last);
}

} // namespace framework
