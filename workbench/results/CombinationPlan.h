#pragma once

#include "workbench/results/ResultCombination.h"

#include <string>
#include <vector>

namespace workbench {

/// One item of a combination: a case with all its steps, or one step of it.
struct CombinationItem {
    CPOHCase* resultCase = nullptr;
    CPOHVCase* step = nullptr; ///< null: the whole case
    double factor = 1;
};

/// The steps that a combination has, and the names of what they are made of.
struct CombinationPlan {
    std::vector<CombinedStep> steps;
    std::vector<std::string> sources; ///< a member's number, from 1, is its place here
    std::vector<std::string> warnings;
};

/// A linear combination has the steps of its whole cases, taken in their order; a single step, and the step
/// of a case that has only one, counts in each of them. An envelope has one step over all steps of all items.
/// The objects must be those of a ResultTree.
Result<CombinationPlan> planCombination(CombinationKind kind, const std::vector<CombinationItem>& items);

} // namespace workbench
