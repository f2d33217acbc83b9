#include "workbench/results/ResultCombination.h"

#include "framework/text/CodePage.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/CombinationKernels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace workbench {
namespace {

using resultfile::Location;

/// Values that are worked on at once: all blocks of a tensor stay in the cache.
constexpr std::size_t kBlock = 16 * 1024;

constexpr std::size_t kNamed = 4; ///< components that a warning names

std::string nameOf(const ResultStep& step) {
    return "step \"" + framework::toUtf8(step.GetName()) + "\" of case \"" +
           framework::toUtf8(step.GetCase()->GetName()) + "\"";
}

kernels::Envelope envelopeOf(CombinationKind kind) {
    switch (kind) {
    case CombinationKind::Minimum:
        return kernels::Envelope::Minimum;
    case CombinationKind::AbsoluteMaximum:
        return kernels::Envelope::AbsoluteMaximum;
    case CombinationKind::SignedAbsoluteMaximum:
        return kernels::Envelope::SignedAbsoluteMaximum;
    case CombinationKind::Linear:
    case CombinationKind::Maximum:
        break;
    }
    return kernels::Envelope::Maximum;
}

std::string listed(const std::vector<unsigned>& ids) {
    std::string text;
    for (std::size_t i = 0; i < std::min(ids.size(), kNamed); ++i)
        text += (i == 0 ? "" : ", ") + componentName(ids[i], Language::English) + " (" +
                std::to_string(ids[i]) + ")";
    return ids.size() > kNamed ? text + " and " + std::to_string(ids.size() - kNamed) + " more" : text;
}

} // namespace

/// A table that is being written.
struct ResultCombination::Output {
    resultfile::Writer::Table table;
    std::vector<float> block;

    Result<void> append(std::size_t count) { return table.append(std::span(block).first(count)); }
};

ResultCombination::ResultCombination(const T_QM_MESH_D& mesh, CombinationKind kind,
                                     resultfile::Writer& writer, std::string itemPrefix)
    : mesh_(mesh)
    , kind_(kind)
    , writer_(writer)
    , itemPrefix_(std::move(itemPrefix))
    , items_(mesh)
    , values_(kBlock)
    , space_(kBlock)
    , sums_(kind == CombinationKind::Linear ? kBlock : 0) {}

void ResultCombination::warn(const std::string& reason, unsigned id) {
    if (!warned_.insert(id).second) return;
    const auto same =
        std::ranges::find(warnings_, reason, &std::pair<std::string, std::vector<unsigned>>::first);
    if (same != warnings_.end())
        same->second.push_back(id);
    else
        warnings_.push_back({reason, {id}});
}

std::vector<std::string> ResultCombination::warnings() const {
    std::vector<std::string> sentences;
    for (const auto& [reason, ids] : warnings_)
        sentences.push_back(listed(ids) + " " + (ids.size() == 1 ? "is " : "are ") + reason);
    return sentences;
}

/// Why a component cannot take part; empty when it can.
std::string ResultCombination::refusal(const CombinedStep& step, unsigned id) const {
    const auto& members = step.members;
    const resultfile::Component* const first = findComponent(members.front().step->stored(), id);
    for (const CombinationMember& member : members) {
        const resultfile::Component* component = findComponent(member.step->stored(), id);
        if (!component) return "left out: missing in " + nameOf(*member.step);
        if (first && component->location != first->location)
            return "left out: it stands at nodes in one item and at element corners in another";
    }
    if (kind_ == CombinationKind::Linear)
        return combiningOf(id) == Combining::NotProportional
                   ? "left out: it does not grow with the loads, so that it cannot be added up"
                   : "";
    const bool scaled = std::ranges::any_of(members, [](const auto& m) { return m.factor != 1; });
    if (combiningOf(id) == Combining::NotProportional && scaled)
        return "left out: it does not grow with the loads, so that it takes no factors";
    return {};
}

/// The components of the members that can be combined as they are stored, ascending.
std::vector<unsigned> ResultCombination::usable(const CombinedStep& step) {
    std::set<unsigned> all;
    for (const CombinationMember& member : step.members)
        for (const resultfile::Component& component : member.step->stored().components)
            all.insert(component.id);
    std::vector<unsigned> ids;
    for (const unsigned id : all) {
        const Combining combining = combiningOf(id);
        if (combining == Combining::Label) continue; // means nothing but where it is
        if (kind_ == CombinationKind::Linear && combining == Combining::Derived) {
            const auto derived = std::ranges::find(derivedComponents(), id, &DerivedComponent::id);
            if (derived == derivedComponents().end() || derived->sources.empty())
                warn("left out: it is not the sum of its parts, and what it is formed from is not stored",
                     id);
            continue; // formed again, see groupsOf
        }
        if (const std::string reason = refusal(step, id); !reason.empty())
            warn(reason, id);
        else
            ids.push_back(id);
    }
    return ids;
}

std::vector<ResultCombination::Group> ResultCombination::groupsOf(const CombinedStep& step) {
    std::vector<Group> groups;
    std::vector<unsigned> ids = usable(step);
    if (kind_ == CombinationKind::Linear)
        for (const DerivedComponent& derived : derivedComponents()) {
            Group group{{}, &derived};
            bool whole = !derived.sources.empty();
            for (const unsigned source : derived.sources) {
                if (source == 0) continue;
                if (std::ranges::binary_search(ids, source))
                    group.ids.push_back(source);
                else
                    whole = false;
            }
            const bool isStored = std::ranges::any_of(step.members, [&](const CombinationMember& member) {
                return findComponent(member.step->stored(), derived.id) != nullptr;
            });
            if (!whole) {
                if (isStored)
                    warn("left out: not all components that it is formed from can be combined", derived.id);
                continue;
            }
            std::erase_if(ids,
                          [&](unsigned id) { return std::ranges::find(group.ids, id) != group.ids.end(); });
            groups.push_back(std::move(group));
        }
    for (const unsigned id : ids)
        groups.push_back({{id}, nullptr});
    return groups;
}

/// Null when the members have no item in common.
Result<const ItemSet*> ResultCombination::commonItems(const CombinedStep& step, const Group& group) {
    const ItemSet* common = nullptr;
    bool differ = false;
    for (const unsigned id : group.ids)
        for (const CombinationMember& member : step.members) {
            const auto set = items_.of(member.step->source(), *findComponent(member.step->stored(), id));
            if (!set) return set.error();
            if (!common) common = *set;
            differ |= *set != common;
            common = items_.common(common, *set);
        }
    const auto tell = [&](const std::string& reason) {
        for (const unsigned id : group.ids)
            warn(reason, id);
        if (group.derived) warn(reason, group.derived->id);
    };
    const std::string what = common->location == Location::Node ? "node" : "element";
    if (common->valueCount == 0) {
        tell("left out: no " + what + " has values in all items");
        return nullptr;
    }
    if (differ)
        tell("restricted to where all items have values: " + std::to_string(common->items.size()) + " " +
             what + (common->items.size() == 1 ? "" : "s"));
    return common;
}

Result<std::string> ResultCombination::listName(const ItemSet* set) {
    if (set->whole) return std::string();
    const auto [known, isNew] = listNames_.try_emplace(set);
    if (!isNew) return known->second;
    known->second = itemPrefix_ + " " + (set->location == Location::Node ? "nodes " : "elements ") +
                    std::to_string(listNames_.size());
    if (auto added = writer_.addItems(known->second, set->location, set->items); !added) return added.error();
    return known->second;
}

Result<ResultCombination::Output> ResultCombination::open(unsigned id, const ItemSet* set) {
    const auto list = listName(set);
    if (!list) return list.error();
    auto table = writer_.openTable(id, set->location, set->valueCount, *list);
    if (!table) return table.error();
    written_.insert(id);
    return Output{*table, std::vector<float>(std::min<std::uint64_t>(kBlock, set->valueCount))};
}

Result<std::vector<SelectedStream>> ResultCombination::openMembers(const CombinedStep& step, unsigned id,
                                                                   const ItemSet* set) {
    std::vector<SelectedStream> streams;
    streams.reserve(step.members.size());
    for (const CombinationMember& member : step.members) {
        ResultSource& source = member.step->source();
        auto stream = source.reader().stream(member.step->caseIndex(), member.step->stepIndex(), id);
        if (!stream) return stream.error();
        const auto own = items_.of(source, *findComponent(member.step->stored(), id));
        if (!own) return own.error();
        streams.emplace_back(std::move(*stream), items_.select(*own, set));
    }
    return streams;
}

/// The magnitude of a scaled tensor is its magnitude times that of the factor.
double ResultCombination::factorOf(const CombinationMember& member, unsigned id) const {
    return combiningOf(id) == Combining::Derived ? std::fabs(member.factor) : member.factor;
}

Result<void> ResultCombination::combineBlock(const CombinedStep& step, unsigned id,
                                             std::vector<SelectedStream>& streams, std::span<float> result,
                                             std::span<float> governing) {
    const auto values = std::span(values_).first(result.size());
    const auto sums = std::span(sums_).first(kind_ == CombinationKind::Linear ? result.size() : 0);
    for (std::size_t m = 0; m < streams.size(); ++m) {
        if (auto read = streams[m].next(values, space_); !read) return read;
        const double factor = factorOf(step.members[m], id);
        const auto number = static_cast<float>(step.members[m].number);
        if (kind_ == CombinationKind::Linear)
            m == 0 ? kernels::setScaled(sums, values, factor) : kernels::addScaled(sums, values, factor);
        else if (m == 0)
            kernels::beginEnvelope(envelopeOf(kind_), result, governing, values, factor, number);
        else
            kernels::extendEnvelope(envelopeOf(kind_), result, governing, values, factor, number);
    }
    if (kind_ == CombinationKind::Linear) kernels::round(result, sums);
    return {};
}

Result<void> ResultCombination::writeGroup(const CombinedStep& step, const Group& group) {
    const auto common = commonItems(step, group);
    if (!common) return common.error();
    if (!*common) return {};
    const std::uint64_t count = (*common)->valueCount;

    std::vector<Output> outputs, governing;
    std::vector<std::vector<SelectedStream>> members;
    for (const unsigned id : group.ids) {
        auto output = open(id, *common);
        if (!output) return output.error();
        outputs.push_back(std::move(*output));
        auto streams = openMembers(step, id, *common);
        if (!streams) return streams.error();
        members.push_back(std::move(*streams));
        if (kind_ == CombinationKind::Linear || governingItemOf(id) == 0) continue;
        output = open(governingItemOf(id), *common);
        if (!output) return output.error();
        governing.push_back(std::move(*output));
    }
    std::optional<Output> derived;
    if (group.derived) {
        auto output = open(group.derived->id, *common);
        if (!output) return output.error();
        derived = std::move(*output);
    }

    std::vector<float> unnamed(governing.empty() ? std::min<std::uint64_t>(kBlock, count) : 0);
    for (std::uint64_t first = 0; first < count; first += kBlock) {
        const std::size_t size = std::min<std::uint64_t>(kBlock, count - first);
        for (std::size_t c = 0; c < outputs.size(); ++c) {
            const auto numbers = std::span(governing.empty() ? unnamed : governing[c].block).first(size);
            const auto result = std::span(outputs[c].block).first(size);
            if (auto done = combineBlock(step, group.ids[c], members[c], result, numbers); !done) return done;
            if (auto done = outputs[c].append(size); !done) return done;
        }
        for (Output& output : governing)
            if (auto done = output.append(size); !done) return done;
        if (!derived) continue;
        std::array<std::span<const float>, 6> sources;
        std::size_t next = 0;
        for (std::size_t s = 0; s < group.derived->sources.size(); ++s)
            if (group.derived->sources[s] != 0) sources[s] = std::span(outputs[next++].block).first(size);
        kernels::derive(std::span(derived->block).first(size), group.derived->measure, sources);
        if (auto done = derived->append(size); !done) return done;
    }
    for (auto& streams : members)
        for (SelectedStream& stream : streams)
            if (auto done = stream.finish(space_); !done) return done;
    return {};
}

Result<void> ResultCombination::write(const CombinedStep& step, const std::function<void(double)>& progress) {
    if (auto begun = writer_.beginStep(step.name, step.value); !begun) return begun;
    const std::vector<Group> groups = groupsOf(step);
    for (std::size_t g = 0; g < groups.size(); ++g) {
        if (auto done = writeGroup(step, groups[g]); !done) return done;
        if (progress) progress(static_cast<double>(g + 1) / static_cast<double>(groups.size()));
    }
    return {};
}

} // namespace workbench
