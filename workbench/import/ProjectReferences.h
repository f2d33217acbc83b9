#pragma once

#include "workbench/import/DeckErrors.h"
#include "workbench/import/ImportProject.h"
#include "workbench/import/ProjectDeck.h"
#include "workbench/import/SolverDeck.h"

#include <span>
#include <string>

namespace workbench {

/// Gives every analysis a case name for each step of its solver deck; a list of another length is an error.
void resolveCases(ProjectDeck& deck, std::span<const SolverDeck> solverDecks, DeckErrors& errors);

/// Gives the materials of a solver deck the constants that the project deck states for them.
void completeMaterials(const ProjectDeck& deck, SolverDeck& model);

/// Checks the materials and cases that a project deck names against the solver decks; `model` is the one
/// whose mesh and materials the document takes.
void checkReferences(const ProjectDeck& deck, const SolverDeck& model, DeckErrors& errors);

/// Checks the steps that loads name against those that were found in the results, and that every load has
/// any.
void checkSteps(const ProjectDeck& deck, std::span<const ImportedAnalysis> analyses, DeckErrors& errors);

/// What two decks differ in as to their mesh; empty when they do not.
std::string meshDifference(const SolverDeck& first, const SolverDeck& other);
bool sameMaterials(const SolverDeck& first, const SolverDeck& other);

} // namespace workbench
