#pragma once

#include "workbench/session/Document.h"
#include "workbench/session/WorkbenchHost.h"

#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// How the run of one fatigue definition ended.
struct FatigueRunReport {
    std::string definition;
    std::string resultAnalysis;
    bool succeeded = false;
    /// Why it failed, where the error output does not say: the solver and how it ended, or what to look for.
    std::string cause;
};

/// Runs fatigue definitions through the module, one after another, in the document's own unit system; the
/// unit system for display is put back afterwards. Results are registered with the document, which is saved
/// after each run when `savesEach` is set, so that one that is killed takes no earlier one with it; a save
/// that fails fails the run. Nothing is run when the document could not be saved, or another program runs
/// definitions of it.
std::vector<FatigueRunReport> runFatigue(WorkbenchHost& host, Document& document,
                                         const std::vector<ItrKey>& definitions, bool savesEach = false);

/// The keys of the definitions with these names, in that order; all of the document without names.
Result<std::vector<ItrKey>> findFatigueDefinitions(Document& document, const std::vector<std::string>& names);

} // namespace workbench
