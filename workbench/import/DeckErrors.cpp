#include "workbench/import/DeckErrors.h"

#include <algorithm>

namespace workbench {

void DeckErrors::add(int line, const std::string& message) {
    faults_.push_back({line, message});
}

Error DeckErrors::toError() const {
    constexpr std::size_t kShown = 20;
    std::vector<Fault> sorted = faults_;
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Fault& a, const Fault& b) { return a.line < b.line; });
    std::string text;
    for (std::size_t i = 0; i < std::min(kShown, sorted.size()); ++i) {
        if (i > 0) text += "\n";
        text += fileName_ + (sorted[i].line > 0 ? ":" + std::to_string(sorted[i].line) : "") + ": " +
                sorted[i].message;
    }
    if (sorted.size() > kShown) text += "\nand " + std::to_string(sorted.size() - kShown) + " more faults";
    return Error{text};
}

} // namespace workbench
