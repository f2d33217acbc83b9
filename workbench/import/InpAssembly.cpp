#include "workbench/import/InpRaw.h"
#include "workbench/import/Names.h"
#include "workbench/import/NumberIndex.h"

#include <algorithm>
#include <numeric>
#include <span>
#include <unordered_map>

namespace workbench {

void InpRawSet::addNumber(std::int32_t number, bool listed) {
    if (!ranges.empty()) {
        Range& last = ranges.back();
        if (last.step == 1 && last.listed == listed && std::int64_t{last.last} + 1 == number) {
            last.last = number;
            return;
        }
    }
    ranges.push_back({number, number, 1, listed});
}

namespace {

/// Positions in ascending order of number; empty when the numbers ascend already.
std::vector<std::uint32_t> sortedOrder(const std::vector<std::int32_t>& numbers) {
    if (std::is_sorted(numbers.begin(), numbers.end())) return {};
    std::vector<std::uint32_t> order(numbers.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return numbers[a] < numbers[b]; });
    return order;
}

template <class T>
void permute(std::vector<T>& values, const std::vector<std::uint32_t>& order) {
    if (order.empty()) return;
    std::vector<T> result;
    result.reserve(values.size());
    for (const std::uint32_t position : order)
        result.push_back(values[position]);
    values = std::move(result);
}

void permuteRows(std::vector<std::uint32_t>& offsets, std::vector<std::int32_t>& values,
                 const std::vector<std::uint32_t>& order) {
    if (order.empty()) return;
    std::vector<std::uint32_t> newOffsets{0};
    std::vector<std::int32_t> newValues;
    newOffsets.reserve(offsets.size());
    newValues.reserve(values.size());
    for (const std::uint32_t row : order) {
        newValues.insert(newValues.end(), values.begin() + offsets[row], values.begin() + offsets[row + 1]);
        newOffsets.push_back(static_cast<std::uint32_t>(newValues.size()));
    }
    offsets = std::move(newOffsets);
    values = std::move(newValues);
}

/// The second of two equal neighbours of a sorted list, or its size.
std::size_t findRepeated(const std::vector<std::int32_t>& numbers) {
    const auto found = std::adjacent_find(numbers.begin(), numbers.end());
    return found == numbers.end() ? numbers.size() : static_cast<std::size_t>(found - numbers.begin()) + 1;
}

Result<void> sortNodes(InpRaw& raw) {
    const auto order = sortedOrder(raw.nodeNumbers);
    permute(raw.nodeNumbers, order);
    permute(raw.nodePositions, order);
    permute(raw.nodePlaces, order);
    const std::size_t repeated = findRepeated(raw.nodeNumbers);
    if (repeated == raw.nodeNumbers.size()) return {};
    return Error{raw.text(raw.nodePlaces[repeated]) + ": node " + std::to_string(raw.nodeNumbers[repeated]) +
                 " was given before, at " + raw.text(raw.nodePlaces[repeated - 1])};
}

Result<void> sortElements(InpRaw& raw) {
    const auto order = sortedOrder(raw.elementNumbers);
    permute(raw.elementNumbers, order);
    permute(raw.elementTypes, order);
    permute(raw.elementFamilies, order);
    permute(raw.elementPlaces, order);
    permuteRows(raw.elementNodeOffsets, raw.elementNodes, order);
    const std::size_t repeated = findRepeated(raw.elementNumbers);
    if (repeated == raw.elementNumbers.size()) return {};
    return Error{raw.text(raw.elementPlaces[repeated]) + ": element " +
                 std::to_string(raw.elementNumbers[repeated]) + " was given before, at " +
                 raw.text(raw.elementPlaces[repeated - 1])};
}

Result<void> resolveConnectivity(const InpRaw& raw, SolverDeck& deck) {
    const NumberIndex nodes(raw.nodeNumbers);
    deck.elementNodes.resize(raw.elementNodes.size());
    for (std::size_t element = 0; element < raw.elementNumbers.size(); ++element)
        for (std::size_t i = raw.elementNodeOffsets[element]; i < raw.elementNodeOffsets[element + 1]; ++i) {
            const std::uint32_t position = nodes.find(raw.elementNodes[i]);
            if (position == NumberIndex::kNone)
                return Error{raw.text(raw.elementPlaces[element]) + ": element " +
                             std::to_string(raw.elementNumbers[element]) + " has node " +
                             std::to_string(raw.elementNodes[i]) + ", which the deck does not define"};
            deck.elementNodes[i] = position;
        }
    return {};
}

/// Turns the cards of one kind of sets into sorted lists of numbers that the model holds.
class SetResolver {
  public:
    SetResolver(const InpRaw& raw, const std::vector<InpRawSet>& sets, std::span<const std::int32_t> numbers,
                std::span<const std::int32_t> leftOut, const char* member)
        : raw_(raw)
        , sets_(sets)
        , numbers_(numbers)
        , leftOut_(leftOut)
        , member_(member)
        , results_(sets.size())
        , states_(sets.size(), State::Untouched) {
        for (std::size_t i = 0; i < sets.size(); ++i)
            index_.emplace(upperCase(sets[i].name), i);
    }

    Result<void> resolveAll(std::vector<SolverSet>& out, std::vector<std::string>& warnings) {
        for (std::size_t i = 0; i < sets_.size(); ++i)
            if (auto done = resolve(i, 0); !done) return done;
        for (std::size_t i = 0; i < sets_.size(); ++i)
            out.push_back({sets_[i].name, std::move(results_[i])});
        warnings.insert(warnings.end(), warnings_.begin(), warnings_.end());
        return {};
    }

  private:
    enum class State { Untouched, Open, Done };

    static constexpr int kDeepest = 200;

    Result<void> resolve(std::size_t index, int depth) {
        if (states_[index] == State::Done) return {};
        states_[index] = State::Open;
        std::vector<std::int32_t> members;
        std::uint64_t missing = 0;
        for (const InpRawSet::Range& range : sets_[index].ranges)
            missing += addRange(range, members);
        if (missing > 0)
            warnings_.push_back(
                raw_.text(sets_[index].place) + ": set '" + sets_[index].name + "' lists " +
                std::to_string(missing) + " " + member_ +
                (missing == 1 ? " that the deck does not define" : "s that the deck does not define"));
        std::vector<std::size_t> taken;
        for (const InpRawSet::Reference& reference : sets_[index].references) {
            const auto found = index_.find(upperCase(reference.name));
            if (found == index_.end())
                return Error{raw_.text(reference.place) + ": '" + reference.name +
                             "' is neither a number nor the name of a " + member_ +
                             " set of the deck; those are " + listNames(setNames())};
            const std::size_t other = found->second;
            if (states_[other] == State::Open || depth == kDeepest)
                return Error{raw_.text(reference.place) + ": the set '" + reference.name +
                             "' contains itself or sets nested too deep"};
            if (std::find(taken.begin(), taken.end(), other) != taken.end()) continue;
            taken.push_back(other);
            if (auto done = resolve(other, depth + 1); !done) return done;
            members.insert(members.end(), results_[other].begin(), results_[other].end());
        }
        std::sort(members.begin(), members.end());
        members.erase(std::unique(members.begin(), members.end()), members.end());
        results_[index] = std::move(members);
        states_[index] = State::Done;
        return {};
    }

    /// Appends the members of a range that the model holds; answers how many listed ones it lacks.
    std::uint64_t addRange(const InpRawSet::Range& range, std::vector<std::int32_t>& members) const {
        const auto first = std::lower_bound(numbers_.begin(), numbers_.end(), range.first);
        const auto last = std::upper_bound(first, numbers_.end(), range.last);
        std::uint64_t found = 0;
        for (auto it = first; it != last; ++it) {
            if ((std::int64_t{*it} - range.first) % range.step != 0) continue;
            members.push_back(*it);
            ++found;
        }
        if (!range.listed) return 0;
        const auto leftFirst = std::lower_bound(leftOut_.begin(), leftOut_.end(), range.first);
        const auto leftLast = std::upper_bound(leftFirst, leftOut_.end(), range.last);
        const auto expected = std::uint64_t(std::int64_t{range.last} - range.first + 1);
        const std::uint64_t known = found + std::uint64_t(leftLast - leftFirst);
        return known < expected ? expected - known : 0;
    }

    std::vector<std::string> setNames() const {
        std::vector<std::string> names;
        for (const InpRawSet& set : sets_)
            names.push_back(set.name);
        return names;
    }

    const InpRaw& raw_;
    const std::vector<InpRawSet>& sets_;
    std::span<const std::int32_t> numbers_;
    std::span<const std::int32_t> leftOut_;
    std::string member_;
    std::vector<std::vector<std::int32_t>> results_;
    std::vector<State> states_;
    std::unordered_map<std::string, std::size_t> index_;
    std::vector<std::string> warnings_;
};

} // namespace

Result<void> assembleMesh(InpRaw& raw, SolverDeck& deck) {
    if (auto done = sortNodes(raw); !done) return done;
    if (auto done = sortElements(raw); !done) return done;
    if (auto done = resolveConnectivity(raw, deck); !done) return done;
    std::sort(raw.leftOutElements.begin(), raw.leftOutElements.end());
    SetResolver nodeSets(raw, raw.nodeSets, raw.nodeNumbers, {}, "node");
    if (auto done = nodeSets.resolveAll(deck.nodeSets, deck.warnings); !done) return done;
    SetResolver elementSets(raw, raw.elementSets, raw.elementNumbers, raw.leftOutElements, "element");
    if (auto done = elementSets.resolveAll(deck.elementSets, deck.warnings); !done) return done;
    deck.nodeNumbers = std::move(raw.nodeNumbers);
    deck.nodePositions = std::move(raw.nodePositions);
    deck.elementNumbers = std::move(raw.elementNumbers);
    deck.elementTypes = std::move(raw.elementTypes);
    deck.elementFamilies = std::move(raw.elementFamilies);
    deck.elementNodeOffsets = std::move(raw.elementNodeOffsets);
    deck.leftOutElements = std::move(raw.leftOutElements);
    return {};
}

void applySections(SolverDeck& deck) {
    const auto any = [&](auto has) { return std::any_of(deck.sections.begin(), deck.sections.end(), has); };
    const bool layered = any([](const SolverSection& section) { return section.layers > 0; });
    const bool oriented = deck.hasLocalResults &&
                          any([](const SolverSection& section) { return !section.orientation.empty(); });
    if (layered) deck.elementLayers.assign(deck.elementNumbers.size(), 0);
    if (oriented) deck.elementOrientations.assign(deck.elementNumbers.size(), 0);
    if (!layered && !oriented) return;
    const auto named = [](const auto& records, const std::string& name) {
        return std::find_if(records.begin(), records.end(),
                            [&](const auto& record) { return equalIgnoringCase(record.name, name); });
    };
    const NumberIndex elements(deck.elementNumbers);
    for (const SolverSection& section : deck.sections) {
        const auto found = named(deck.orientations, section.orientation);
        const auto orientation = found == deck.orientations.end()
                                     ? std::uint16_t{0}
                                     : static_cast<std::uint16_t>(found - deck.orientations.begin() + 1);
        for (const std::int32_t number : named(deck.elementSets, section.elementSet)->numbers) {
            const std::uint32_t element = elements.find(number);
            if (layered && deck.elementFamilies[element] == ElementFamily::Plate)
                deck.elementLayers[element] = static_cast<std::uint16_t>(section.layers);
            if (oriented) deck.elementOrientations[element] = orientation;
        }
    }
}

} // namespace workbench
