#pragma once

#include "workbench/import/DeckErrors.h"
#include "workbench/import/ProjectDeck.h"

namespace workbench {

/// Checks what the parts of a project deck say about each other: names given twice, references to what the
/// deck does not have, result analyses that would overwrite something.
void checkProjectDeck(const ProjectDeck& deck, DeckErrors& errors);

/// Checks that the files which the deck names are there.
void checkFilesExist(const ProjectDeck& deck, DeckErrors& errors);

} // namespace workbench
