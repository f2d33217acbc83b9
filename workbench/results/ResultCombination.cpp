#include "workbench/results/ResultCombination.h"

#include "framework/text/CodePage.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/CombinationKernels.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <barrier>
#include <cmath>
#include <optional>
#include <thread>

namespace workbench {
namespace {

using resultfile::Location;

/// Values that are worked on at once, few enough to stay in the cache.
constexpr std::size_t kBlock = 32 * 1024;
/// Components that are open at once: those of a tensor.
constexpr std::size_t kWave = 6;
constexpr unsigned kMostThreads = 4; ///< the disk is the limit soon

/// Values below which a second thread costs more than it brings.
constexpr std::uint64_t kWorthThreads = 500000;

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

/// Runs work(0) here and work(1), work(2), ... beside it.
template <class Work>
void runThreads(std::size_t count, Work work) {
    std::vector<std::jthread> threads;
    for (std::size_t i = 1; i < count; ++i)
        threads.emplace_back([&work, i] { work(i); });
    work(0);
}

/// `lanes` have `set` and `members`.
template <class Lanes>
std::size_t threadsFor(const Lanes& lanes) {
    std::uint64_t values = 0;
    for (const auto& lane : lanes)
        values += lane.set->valueCount * lane.members.size();
    if (values < kWorthThreads) return 1;
    return std::min<std::size_t>(
        {lanes.size(), kMostThreads, std::max(1u, std::thread::hardware_concurrency())});
}

} // namespace

/// A component on its way from the members to the writer.
struct ResultCombination::Lane {
    unsigned id = 0;
    const ItemSet* set = nullptr;
    std::vector<SelectedStream> members;
    resultfile::Writer::Table table;
    std::optional<resultfile::Writer::Table> governing;
    /// Two blocks of the result in turn, where another component is formed from them; else empty.
    std::array<std::vector<float>, 2> blocks;
};

/// What one thread works in.
struct ResultCombination::Workspace {
    std::vector<float> values = std::vector<float>(kBlock), passed = values, result = values,
                       governing = values;
    std::vector<double> sums = std::vector<double>(kBlock);
};

ResultCombination::ResultCombination(const T_QM_MESH_D& mesh, CombinationKind kind,
                                     resultfile::Writer& writer, std::string itemPrefix)
    : mesh_(mesh)
    , kind_(kind)
    , writer_(writer)
    , itemPrefix_(std::move(itemPrefix))
    , items_(mesh) {}

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

Result<resultfile::Writer::Table> ResultCombination::open(unsigned id, const ItemSet* set) {
    const auto list = listName(set);
    if (!list) return list.error();
    written_.insert(id);
    return writer_.openTable(id, set->location, set->valueCount, *list);
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

Result<void> ResultCombination::append(resultfile::Writer::Table& table, std::span<const float> values) {
    const std::scoped_lock lock(writing_);
    return table.append(values);
}

Result<void> ResultCombination::combineBlock(const CombinedStep& step, Lane& lane, Workspace& space,
                                             std::span<float> result, std::span<float> governing) const {
    const auto values = std::span(space.values).first(result.size());
    const auto sums = std::span(space.sums).first(result.size());
    for (std::size_t m = 0; m < lane.members.size(); ++m) {
        if (auto read = lane.members[m].next(values, space.passed); !read) return read;
        const double factor = factorOf(step.members[m], lane.id);
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

Result<void> ResultCombination::addLanes(const CombinedStep& step, const Group& group,
                                         std::vector<Lane>& lanes) {
    const auto common = commonItems(step, group);
    if (!common) return common.error();
    if (!*common) return {};
    for (const unsigned id : group.ids) {
        auto table = open(id, *common);
        if (!table) return table.error();
        auto members = openMembers(step, id, *common);
        if (!members) return members.error();
        lanes.push_back({id, *common, std::move(*members), *table, {}, {}});
        if (group.derived) lanes.back().blocks.fill(std::vector<float>(kBlock));
        if (kind_ == CombinationKind::Linear || governingItemOf(id) == 0) continue;
        table = open(governingItemOf(id), *common);
        if (!table) return table.error();
        lanes.back().governing = *table;
    }
    return {};
}

Result<void> ResultCombination::writeLane(const CombinedStep& step, Lane& lane, Workspace& space) {
    for (std::uint64_t first = 0; first < lane.set->valueCount; first += kBlock) {
        const std::size_t size = std::min<std::uint64_t>(kBlock, lane.set->valueCount - first);
        const auto result = std::span(space.result).first(size);
        const auto governing = std::span(space.governing).first(size);
        if (auto done = combineBlock(step, lane, space, result, governing); !done) return done;
        if (auto done = append(lane.table, result); !done) return done;
        if (lane.governing)
            if (auto done = append(*lane.governing, governing); !done) return done;
    }
    for (SelectedStream& member : lane.members)
        if (auto done = member.finish(space.passed); !done) return done;
    return {};
}

/// Components that nothing is formed from: each thread takes the next one.
Result<void> ResultCombination::writeComponents(const CombinedStep& step, std::span<const Group> groups) {
    std::vector<Lane> lanes;
    for (const Group& group : groups)
        if (auto added = addLanes(step, group, lanes); !added) return added;
    std::atomic<std::size_t> next = 0;
    std::vector<Result<void>> outcomes(lanes.size());
    runThreads(threadsFor(lanes), [&](std::size_t) {
        Workspace space;
        for (std::size_t i; (i = next++) < lanes.size();)
            if (outcomes[i] = writeLane(step, lanes[i], space); !outcomes[i]) next = lanes.size();
    });
    for (Result<void>& outcome : outcomes)
        if (!outcome) return outcome;
    return {};
}

/// A vector or tensor: the threads share its components and meet after each block. Then the first one forms
/// the derived component of that block while the others are in the next.
Result<void> ResultCombination::writeDerived(const CombinedStep& step, const Group& group) {
    std::vector<Lane> lanes;
    if (auto added = addLanes(step, group, lanes); !added || lanes.empty()) return added;
    const ItemSet* const set = lanes.front().set;
    auto table = open(group.derived->id, set);
    if (!table) return table.error();
    const std::size_t threads = threadsFor(lanes);
    std::vector<Result<void>> outcomes(threads);
    std::barrier meeting(static_cast<std::ptrdiff_t>(threads));
    const auto derive = [&](std::size_t turn, std::span<float> derived) {
        std::array<std::span<const float>, 6> sources;
        std::size_t next = 0;
        for (std::size_t s = 0; s < group.derived->sources.size(); ++s)
            if (group.derived->sources[s] != 0) sources[s] = lanes[next++].blocks[turn];
        kernels::derive(derived, group.derived->measure, sources);
        return append(*table, derived);
    };
    const auto work = [&](std::size_t thread) -> Result<void> {
        Workspace space;
        for (std::uint64_t first = 0; first < set->valueCount; first += kBlock) {
            const std::size_t size = std::min<std::uint64_t>(kBlock, set->valueCount - first);
            const std::size_t turn = first / kBlock % 2;
            for (std::size_t i = thread; i < lanes.size(); i += threads) {
                const auto result = std::span(lanes[i].blocks[turn]).first(size);
                if (auto done = combineBlock(step, lanes[i], space, result, {}); !done) return done;
                if (auto done = append(lanes[i].table, result); !done) return done;
            }
            meeting.arrive_and_wait();
            if (thread != 0) continue;
            if (auto done = derive(turn, std::span(space.result).first(size)); !done) return done;
        }
        for (std::size_t i = thread; i < lanes.size(); i += threads)
            for (SelectedStream& member : lanes[i].members)
                if (auto done = member.finish(space.passed); !done) return done;
        return {};
    };
    runThreads(threads, [&](std::size_t thread) {
        outcomes[thread] = work(thread);
        meeting.arrive_and_drop(); // whoever fails does not keep the others waiting
    });
    for (Result<void>& outcome : outcomes)
        if (!outcome) return outcome;
    return {};
}

Result<void> ResultCombination::write(const CombinedStep& step, const std::function<void(double)>& progress) {
    if (auto begun = writer_.beginStep(step.name, step.value); !begun) return begun;
    const std::vector<Group> groups = groupsOf(step);
    for (std::size_t first = 0, end = 0; first < groups.size(); first = end) {
        Result<void> done;
        if (groups[first].derived) {
            end = first + 1;
            done = writeDerived(step, groups[first]);
        } else {
            end = std::min(first + kWave, groups.size());
            done = writeComponents(step, std::span(groups).subspan(first, end - first));
        }
        if (!done) return done;
        if (progress) progress(static_cast<double>(end) / static_cast<double>(groups.size()));
    }
    return {};
}

} // namespace workbench
