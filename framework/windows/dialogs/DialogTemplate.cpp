#include "framework/windows/dialogs/DialogTemplate.h"

#include <algorithm>
#include <vector>

namespace framework {
namespace {

using Table = std::span<const DialogTemplate>;

std::vector<Table>& tables() {
    static std::vector<Table>& all = *new std::vector<Table>;
    return all;
}

int scaled(int units, int base, int parts) {
    const int product = units * base;
    return (product + (product < 0 ? -parts : parts) / 2) / parts;
}

} // namespace

void addTemplates(Table templates) {
    removeTemplates(templates);
    tables().push_back(templates);
}

void removeTemplates(Table templates) {
    std::erase_if(tables(), [&](const Table& known) { return known.data() == templates.data(); });
}

const DialogTemplate* findTemplate(UINT id) {
    for (auto table = tables().rbegin(); table != tables().rend(); ++table) {
        const auto found =
            std::find_if(table->begin(), table->end(), [&](const auto& known) { return known.id == id; });
        if (found != table->end()) return &*found;
    }
    return nullptr;
}

CRect dialogToPixels(const CRect& units) {
    constexpr int kWidth = 6;
    constexpr int kHeight = 13;
    return {scaled(units.left, kWidth, 4), scaled(units.top, kHeight, 8), scaled(units.right, kWidth, 4),
            scaled(units.bottom, kHeight, 8)};
}

} // namespace framework
