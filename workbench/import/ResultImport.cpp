#include "workbench/import/ResultImport.h"

#include "workbench/import/Names.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>

namespace workbench {
namespace {

std::string shortest(double value) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return std::string(text, end);
}

constexpr std::size_t kMostComponents = 6; ///< of an entity of the result map

/// sqrt(3/2 s:s) of the deviator s of a symmetric tensor.
double vonMises(const double* t) {
    const double xy = t[0] - t[1], yz = t[1] - t[2], zx = t[2] - t[0];
    return std::sqrt(0.5 * (xy * xy + yz * yz + zx * zx) + 3 * (t[3] * t[3] + t[4] * t[4] + t[5] * t[5]));
}

} // namespace

double deriveResult(DerivedResult kind, const double* c) {
    switch (kind) {
    case DerivedResult::Length:
        return std::sqrt(c[0] * c[0] + c[1] * c[1] + c[2] * c[2]);
    case DerivedResult::VonMises:
        return vonMises(c);
    // sqrt(2/3 e:e) is two thirds of sqrt(3/2 e:e).
    case DerivedResult::EquivalentStrain:
        return vonMises(c) * (2.0 / 3.0);
    case DerivedResult::None:
        break;
    }
    return 0;
}

ResultImport::ResultImport(resultfile::Writer& writer, const ResultMesh& mesh,
                           std::span<const SolverStep> steps, std::span<const std::string> caseNames,
                           std::string fileName, std::function<void(double)> progress)
    : writer_(writer)
    , mesh_(mesh)
    , steps_(steps)
    , caseNames_(caseNames)
    , fileName_(std::move(fileName))
    , progress_(std::move(progress))
    , nodes_(mesh.nodeNumbers) {}

void ResultImport::warnOnce(const std::string& key, const std::string& text) {
    if (std::find(warnedKeys_.begin(), warnedKeys_.end(), key) != warnedKeys_.end()) return;
    warnedKeys_.push_back(key);
    warnings_.push_back(text);
}

Result<void> ResultImport::meshNodes(const FrdBlock& nodes) {
    for (const std::int32_t number : nodes.nodes)
        if (nodes_.find(number) == NumberIndex::kNone)
            return Error{fileName_ + ": node " + std::to_string(number) +
                         " is not in the deck; the result file belongs to another deck" +
                         (mesh_.leftOutElements.empty()
                              ? std::string()
                              : ", or the solver made it for an element of a type that is not read")};
    return {};
}

Result<void> ResultImport::meshElement(const FrdElement& element) {
    const auto holds = [&](std::span<const std::int32_t> numbers) {
        return std::binary_search(numbers.begin(), numbers.end(), element.number);
    };
    if (holds(mesh_.elementNumbers) || holds(mesh_.leftOutElements)) return {};
    return Error{fileName_ + ": element " + std::to_string(element.number) +
                 " is not in the deck; the result file belongs to another deck"};
}

bool ResultImport::wants(const FrdBlock& header) {
    const ResultMapRow* row = findResultRow(header.name);
    if (!row) {
        warnOnce(header.name, header.place + ": results " + header.name + " are not known and left out");
        return false;
    }
    if (std::equal(row->components.begin(), row->components.end(), header.components.begin(),
                   header.components.end()))
        return true;
    warnOnce(header.name, header.place + ": results " + header.name +
                              " are left out, since their components are " + listNames(header.components));
    return false;
}

Result<void> ResultImport::block(FrdBlock& block, std::uint64_t done, std::uint64_t total) {
    const ResultMapRow& row = *findResultRow(block.name);
    if (auto begun = beginStep(block); !begun) return begun;
    if (std::find(idsOfStep_.begin(), idsOfStep_.end(), row.firstId) != idsOfStep_.end()) {
        warnOnce("twice " + block.name, block.place + ": results " + block.name +
                                            " stand twice in the same increment; the first are kept");
        return {};
    }
    idsOfStep_.push_back(row.firstId);
    if (auto placed = placeNodes(block); !placed) return placed;
    if (auto written = writeTables(block, row); !written) return written;
    if (progress_ && total > 0) progress_(static_cast<double>(done) / static_cast<double>(total));
    return {};
}

Result<void> ResultImport::beginCasesUpTo(std::size_t count) {
    while (cases_.size() < count) {
        const std::string& name = caseNames_[cases_.size()];
        if (auto begun = writer_.beginCase(name); !begun) return begun;
        cases_.push_back({name, {}});
    }
    return {};
}

Result<void> ResultImport::beginStep(const FrdBlock& block) {
    const StepKey key{block.step, block.increment, block.mode, block.value};
    if (key == current_) return {};
    if (block.step < 1 || static_cast<std::size_t>(block.step) > steps_.size())
        return Error{block.place + ": these are results of step " + std::to_string(block.step) +
                     ", but the deck has " + std::to_string(steps_.size()) +
                     "; the result file belongs to another deck"};
    if (static_cast<std::size_t>(block.step) < cases_.size())
        return Error{block.place + ": results of step " + std::to_string(block.step) +
                     " follow those of step " + std::to_string(cases_.size())};
    if (auto begun = beginCasesUpTo(static_cast<std::size_t>(block.step)); !begun) return begun;
    current_ = key;
    idsOfStep_.clear();
    const std::string name = stepName(block);
    if (auto begun = writer_.beginStep(name, block.value); !begun) return begun;
    cases_.back().steps.push_back(name);
    return {};
}

std::string ResultImport::stepName(const FrdBlock& block) const {
    const std::string plain =
        block.mode > 0 ? "Mode " + std::to_string(block.mode) : "Time " + shortest(block.value);
    const auto& taken = cases_.back().steps;
    std::string name = plain;
    for (int copy = 2; std::find(taken.begin(), taken.end(), name) != taken.end(); ++copy)
        name = plain + " (" + std::to_string(copy) + ")";
    return name;
}

Result<void> ResultImport::placeNodes(FrdBlock& block) {
    if (block.nodes != lastNodes_) {
        positions_.clear();
        positions_.reserve(block.nodes.size());
        for (const std::int32_t number : block.nodes) {
            positions_.push_back(nodes_.find(number));
            if (positions_.back() == NumberIndex::kNone)
                return Error{block.place + ": block " + block.name + " has values at node " +
                             std::to_string(number) + ", which is not in the deck"};
        }
        order_.clear();
        if (!std::is_sorted(positions_.begin(), positions_.end())) {
            order_.resize(positions_.size());
            std::iota(order_.begin(), order_.end(), 0u);
            std::sort(order_.begin(), order_.end(),
                      [&](std::uint32_t a, std::uint32_t b) { return positions_[a] < positions_[b]; });
            std::sort(positions_.begin(), positions_.end());
        }
        const auto twice = std::adjacent_find(positions_.begin(), positions_.end());
        if (twice != positions_.end())
            return Error{block.place + ": block " + block.name + " has values at node " +
                         std::to_string(mesh_.nodeNumbers[*twice]) + " twice"};
        if (auto chosen = chooseItems(); !chosen) return chosen;
        lastNodes_ = block.nodes;
    }
    if (order_.empty()) return {};
    std::vector<float> sorted(order_.size());
    for (auto& table : block.values) {
        for (std::size_t i = 0; i < order_.size(); ++i)
            sorted[i] = table[order_[i]];
        table.swap(sorted);
    }
    return {};
}

/// A block that lacks nodes of the mesh (nodes without elements, results of a set) follows a list of its
/// nodes.
Result<void> ResultImport::chooseItems() {
    items_.clear();
    if (positions_.size() == mesh_.nodeNumbers.size()) return {};
    for (const ItemList& list : itemLists_)
        if (list.positions == positions_) {
            items_ = list.name;
            return {};
        }
    items_ = "nodes " + std::to_string(itemLists_.size() + 1);
    itemLists_.push_back({items_, positions_});
    return writer_.addItems(items_, resultfile::Location::Node, positions_);
}

Result<void> ResultImport::writeTables(const FrdBlock& block, const ResultMapRow& row) {
    unsigned id = row.firstId;
    for (const auto& table : block.values)
        if (auto written = writer_.writeTable(id++, resultfile::Location::Node, table, items_); !written)
            return written;
    if (row.derived == DerivedResult::None) return {};
    deriveTable(block, row);
    const auto bad =
        std::find_if(derived_.begin(), derived_.end(), [](float v) { return !std::isfinite(v); });
    if (bad != derived_.end())
        return Error{block.place + ": the values of block " + block.name + " at node " +
                     std::to_string(mesh_.nodeNumbers[positions_[std::size_t(bad - derived_.begin())]]) +
                     " are too large to form their equivalent or total"};
    return writer_.writeTable(row.derivedId, resultfile::Location::Node, derived_, items_);
}

void ResultImport::deriveTable(const FrdBlock& block, const ResultMapRow& row) {
    const std::size_t count = block.nodes.size();
    derived_.resize(count);
    double components[kMostComponents] = {};
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t c = 0; c < block.values.size(); ++c)
            components[c] = block.values[c][i];
        derived_[i] = static_cast<float>(deriveResult(row.derived, components));
    }
}

Result<void> ResultImport::finish() {
    if (auto begun = beginCasesUpTo(caseNames_.size()); !begun) return begun;
    const bool hasAny =
        std::any_of(cases_.begin(), cases_.end(), [](const auto& c) { return !c.steps.empty(); });
    if (!hasAny) return Error{"the solver left no results: " + fileName_ + " holds none"};
    for (std::size_t i = 0; i < cases_.size(); ++i) {
        if (!cases_[i].steps.empty()) continue;
        const std::string text =
            "has no results of step " + std::to_string(i + 1) + " ('" + cases_[i].name + "')";
        if (steps_[i].requestsResults)
            return Error{"the solver left no results: " + fileName_ + " " + text +
                         ", which asks for some at " + steps_[i].place};
        warnings_.push_back(fileName_ + ": the file " + text);
    }
    return {};
}

} // namespace workbench
