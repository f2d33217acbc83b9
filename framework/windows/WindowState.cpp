#include "framework/windows/WindowState.h"

#include "framework/windows/Wnd.h"

#include <algorithm>

namespace framework {
namespace {

static_assert(sizeof(void*) == 8, "a handle holds a slot and its generation, 32 bits each");

HWND makeHandle(std::size_t slot, std::uint32_t generation) {
    return reinterpret_cast<HWND>(std::uintptr_t{generation} << 32 | (slot + 1));
}

std::optional<std::size_t> slotOf(HWND window) {
    const auto value = reinterpret_cast<std::uintptr_t>(window);
    const std::size_t number = value & 0xFFFFFFFF;
    const auto& slots = windowState().slots;
    if (number == 0 || number > slots.size()) return {};
    const auto& slot = slots[number - 1];
    if (!slot.record || slot.generation != value >> 32) return {};
    return number - 1;
}

} // namespace

ControlState::~ControlState() = default;

WindowState& windowState() {
    // Never destroyed: objects of static life may still hold windows when the process ends.
    static WindowState& state = *new WindowState;
    return state;
}

WindowRecord* findWindow(HWND window) {
    const auto slot = slotOf(window);
    return slot ? windowState().slots[*slot].record.get() : nullptr;
}

WindowRecord& addRecord() {
    auto& state = windowState();
    if (state.freeSlots.empty()) {
        state.slots.emplace_back();
        state.freeSlots.push_back(state.slots.size() - 1);
    }
    const std::size_t slot = state.freeSlots.back();
    state.freeSlots.pop_back();
    auto& place = state.slots[slot];
    place.record = std::make_unique<WindowRecord>();
    place.record->handle = makeHandle(slot, place.generation);
    return *place.record;
}

void removeRecord(HWND window) {
    const auto slot = slotOf(window);
    if (!slot) return;
    auto& state = windowState();
    auto& place = state.slots[*slot];
    place.record.reset();
    // A slot whose generations are used up is not given out again.
    if (++place.generation != 0) state.freeSlots.push_back(*slot);
}

std::vector<HWND> topLevelWindows() {
    return windowState().topLevels;
}

int borderWidth(const WindowRecord& record) {
    const bool bordered = (record.style & (WS_BORDER | WS_DLGFRAME | WS_THICKFRAME)) != 0 ||
                          (record.exStyle & (WS_EX_CLIENTEDGE | WS_EX_DLGMODALFRAME | WS_EX_STATICEDGE)) != 0;
    return bordered ? 2 : 0;
}

void releaseTemporaries() {
    windowState().deadTemporaries.clear();
}

} // namespace framework
