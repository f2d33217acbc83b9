#pragma once

#include "base/Result.h"
#include "workbench/import/SolverDeck.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace workbench {

/// A line of one of the files of a deck.
struct InpPlace {
    std::uint32_t file = 0;
    std::uint32_t line = 0;
};

/// The cards of a set as they were read: members by number and by the names of other sets.
struct InpRawSet {
    struct Range {
        std::int32_t first, last, step;
        bool listed; ///< written out one by one, so that a missing member is worth a warning
    };
    struct Reference {
        std::string name;
        InpPlace place;
    };

    std::string name;
    InpPlace place;
    std::vector<Range> ranges;
    std::vector<Reference> references;

    /// A member that a data line names.
    void addNumber(std::int32_t number, bool listed);
};

/// The mesh and the sets in the order of the file, before numbers are resolved.
struct InpRaw {
    std::vector<std::string> files;

    std::vector<std::int32_t> nodeNumbers;
    std::vector<std::array<double, 3>> nodePositions;
    std::vector<InpPlace> nodePlaces;

    std::vector<std::int32_t> elementNumbers;
    std::vector<std::uint8_t> elementTypes;
    std::vector<ElementFamily> elementFamilies;
    std::vector<InpPlace> elementPlaces;
    std::vector<std::uint32_t> elementNodeOffsets{0};
    std::vector<std::int32_t> elementNodes; ///< node numbers
    std::vector<std::int32_t> leftOutElements;

    std::vector<InpRawSet> nodeSets;
    std::vector<InpRawSet> elementSets;

    std::string text(InpPlace place) const { return files[place.file] + ":" + std::to_string(place.line); }
};

/// Sorts the mesh by number, resolves connectivity and sets, and adds all of it to `deck`. `raw` is used up.
Result<void> assembleMesh(InpRaw& raw, SolverDeck& deck);

/// Fills in the layers and the orientations of the elements, by the sections of the assembled deck.
void applySections(SolverDeck& deck);

} // namespace workbench
