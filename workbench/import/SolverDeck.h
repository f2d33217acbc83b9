#pragma once

#include "workbench/import/ElementCards.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace workbench {

/// Strength after Mohr-Coulomb.
struct MohrCoulombStrength {
    double cohesion = 0;
    double frictionAngle = 0; ///< degrees
    std::optional<double> tensileStrength;
};

/// An isotropic material of a solver deck; what the deck does not give is 0.
struct SolverMaterial {
    std::string name;
    double elasticModulus = 0;
    double poissonRatio = 0;
    double density = 0;
    std::optional<MohrCoulombStrength> strength; ///< solver decks have none
    std::string place;                           ///< "file:line"
};

/// Axes that a deck defines, by two points: a point on x and one near y, or two points on the axis of a
/// cylinder, whose x points away from it and whose z runs along it.
struct SolverOrientation {
    std::string name;
    bool isCylindrical = false;
    bool isKnown = true; ///< false where the deck defines it in another way
    std::array<double, 3> first{}, second{};

    /// The axes at a place, in rows. False, and `axes` untouched, where they are not defined.
    bool axesAt(const std::array<double, 3>& place, double axes[3][3]) const;
};

/// Lays axes on a surface, as the solver does for shells: z becomes the unit `normal`, x the part of x in the
/// surface. False, and `axes` untouched, where x has none.
bool layOnSurface(const double normal[3], double axes[3][3]);

/// What makes a property of an element set: a section with its material, or the data of springs and the like.
struct SolverSection {
    std::string elementSet;
    std::vector<std::string> materials; ///< one; several of a layered shell; none of connectors
    double thickness = 0;               ///< of shells, membranes and plane elements
    int layers = 0;                     ///< of a layered shell; 0 of others
    std::string orientation;            ///< empty: none
    std::string place;
};

struct SolverStep {
    std::string title;
    std::string procedure;       ///< keyword without its asterisk and blanks, as "HEATTRANSFER"; may be empty
    bool requestsResults = true; ///< whether the deck asks for results in the result file from this step
    std::string place;
};

struct SolverSet {
    std::string name;
    std::vector<std::int32_t> numbers; ///< ascending, each once
};

/// What a solver deck says about the model, by the numbers that its author gave.
struct SolverDeck {
    std::string title;
    std::vector<std::int32_t> nodeNumbers; ///< strictly ascending
    std::vector<std::array<double, 3>> nodePositions;

    std::vector<std::int32_t> elementNumbers; ///< strictly ascending
    std::vector<std::uint8_t> elementTypes;   ///< host element type codes
    std::vector<ElementFamily> elementFamilies;
    std::vector<std::uint32_t> elementNodeOffsets{0};
    std::vector<std::uint32_t> elementNodes; ///< node positions, in the deck's order of nodes
    /// Numbers of elements of types that are not read, ascending.
    std::vector<std::int32_t> leftOutElements;

    std::vector<SolverSet> nodeSets;    ///< in order of first appearance
    std::vector<SolverSet> elementSets; ///< likewise
    std::vector<SolverMaterial> materials;
    std::vector<SolverSection> sections;
    std::vector<SolverStep> steps;

    /// Layers of each element, which the solver stores one by one; empty where no shell has layers.
    std::vector<std::uint16_t> elementLayers;
    std::vector<SolverOrientation> orientations;
    /// Whether the results of elements stand in the axes of the orientations of their sections (GLOBAL=NO).
    bool hasLocalResults = false;
    /// Orientation of each element, 0 for none, else its position plus 1; empty where none is needed.
    std::vector<std::uint16_t> elementOrientations;
    /// Whether the solver adds nodes and elements of its own to its results: sectors of a cyclic symmetry,
    /// nodes of a pre-tension section, parts of elements that are not read.
    bool solverAddsItems = false;

    std::vector<std::string> warnings; ///< what was found and not taken over, each with file and line
};

} // namespace workbench
