#pragma once

#include "base/Result.h"
#include "resultfile/ResultFile.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/CombinedItems.h"
#include "workbench/results/ResultTree.h"

#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace workbench {

enum class CombinationKind { Linear, Maximum, Minimum, AbsoluteMaximum, SignedAbsoluteMaximum };

/// One step that takes part, scaled. `number` is its place among the sources of the file, from 1.
struct CombinationMember {
    ResultStep* step = nullptr;
    double factor = 1;
    std::uint32_t number = 0;
};

/// A step of the result and what it is made of, at least one member.
struct CombinedStep {
    std::string name;
    double value = 0;
    std::vector<CombinationMember> members;
};

/// Computes combined steps, a block of values at a time, some components at once on the processors that there
/// are. Besides blocks and lists of items it keeps the components that a derived one is formed from, whatever
/// the number of members. Values and file are the same for any number of processors. The rules are those of
/// docs/combinations.md.
class ResultCombination {
  public:
    /// The writer has the mesh, and its case has begun. Both must live longer. `itemPrefix` begins the names
    /// of the item lists that are added.
    ResultCombination(const T_QM_MESH_D& mesh, CombinationKind kind, resultfile::Writer& writer,
                      std::string itemPrefix);

    /// Begins a step of the writer and writes its tables. `progress` hears 0 to 1.
    Result<void> write(const CombinedStep& step, const std::function<void(double)>& progress = {});

    /// Identifiers that were written to any step.
    const std::set<unsigned>& components() const { return written_; }
    /// What was left out or restricted and why, each component once a reason: one sentence each.
    std::vector<std::string> warnings() const;

  private:
    /// Tables that are computed together: a component, or a vector or tensor with what derives from it.
    struct Group {
        std::vector<unsigned> ids;
        const DerivedComponent* derived = nullptr;
    };
    struct Lane;
    struct Workspace;

    std::vector<Group> groupsOf(const CombinedStep& step);
    std::vector<unsigned> usable(const CombinedStep& step);
    std::string refusal(const CombinedStep& step, unsigned id) const;
    Result<const ItemSet*> commonItems(const CombinedStep& step, const Group& group);
    Result<std::string> listName(const ItemSet* set);
    Result<resultfile::Writer::Table> open(unsigned id, const ItemSet* set);
    Result<std::vector<SelectedStream>> openMembers(const CombinedStep& step, unsigned id,
                                                    const ItemSet* set);
    Result<void> addLanes(const CombinedStep& step, const Group& group, std::vector<Lane>& lanes);
    Result<void> writeComponents(const CombinedStep& step, std::span<const Group> groups);
    Result<void> writeLane(const CombinedStep& step, Lane& lane, Workspace& space);
    Result<void> writeDerived(const CombinedStep& step, const Group& group);
    Result<void> combineBlock(const CombinedStep& step, Lane& lane, Workspace& space, std::span<float> result,
                              std::span<float> governing) const;
    Result<void> append(resultfile::Writer::Table& table, std::span<const float> values);
    double factorOf(const CombinationMember& member, unsigned id) const;
    void warn(const std::string& reason, unsigned id);

    const T_QM_MESH_D& mesh_;
    CombinationKind kind_;
    resultfile::Writer& writer_;
    std::string itemPrefix_;
    CombinedItems items_;
    std::map<const ItemSet*, std::string> listNames_;
    std::set<unsigned> written_;
    std::vector<std::pair<std::string, std::vector<unsigned>>> warnings_; ///< reason and components
    std::set<unsigned> warned_;
    std::mutex writing_;
};

} // namespace workbench
