#pragma once

#include "base/Result.h"
#include "host/records/Fatigue.h"
#include "workbench/import/DeckErrors.h"
#include "workbench/import/ElementCards.h"
#include "workbench/import/FieldTargets.h"
#include "workbench/import/SolverDeck.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// What a project deck says, as it stands there: names are not looked up in the solver decks yet. Lines are
/// those of the deck, for later messages.

struct DeckAnalysis {
    int line = 0;
    std::string name;
    std::filesystem::path deck;    ///< resolved against the folder of the project deck
    std::filesystem::path results; ///< likewise
    std::int32_t typeCode = 101;
    std::vector<std::string> cases; ///< names of the deck's steps; empty: "Step 1", "Step 2", ...
    int casesLine = 0;
    std::optional<ElementFamily> planar; ///< of a mesh file: what its planar elements are
    std::vector<DeckField> fields;       ///< of a mesh file: what its arrays are
};

struct DeckMaterial {
    int line = 0;
    std::string name;
    std::optional<double> yield;
    std::optional<double> ultimate;
    std::optional<double> elasticModulus; ///< in place of the solver deck's, like those that follow
    std::optional<double> poissonRatio;
    std::optional<double> density;
    std::optional<MohrCoulombStrength> strength;
};

struct DeckCurve {
    int line = 0;
    std::string name;
    std::vector<std::array<double, 2>> points; ///< cycles, stress amplitude
};

struct DeckLoadFunction {
    int line = 0;
    std::string name;
    std::int32_t number = 0;
    std::vector<std::array<double, 2>> points; ///< time, value
};

struct DeckFatigueMaterial {
    int line = 0;
    std::string material;
    std::string curve; ///< name of an S-N curve; empty: parametric
    double coefficient = 0;
    double exponent = 0;
    std::optional<double> yield; ///< empty: the material's
    std::optional<double> ultimate;
    T_FATG_STRAIN_LIFE_D strainLife;
};

struct DeckFatigueLoad {
    int line = 0;
    std::string caseName;
    std::string step; ///< empty: the whole case
    double factor = 1;
    std::string function; ///< empty for types over steps
};

struct DeckFatigue {
    int line = 0;
    std::string name;
    std::string analysis;
    std::string result; ///< name of its result analysis
    std::int32_t type = FatigueType::StressLifeCases;
    std::int32_t measure = 0;       ///< as tagTFatg::stressOption and strainOption
    std::vector<int> meanStress{0}; ///< positions of the flags that are set
    std::vector<int> outputs{0, 1};
    std::int32_t cycles = 1;
    double infiniteLife = 1e12;
    std::optional<std::int32_t> quickRainflow; ///< per cent
    std::vector<DeckFatigueMaterial> materials;
    std::vector<DeckFatigueLoad> loads;

    bool isStressLife() const {
        return type == FatigueType::StressLifeCases || type == FatigueType::StressLifeSteps;
    }
    bool isOverSteps() const { return type >= FatigueType::StressLifeSteps; }
};

struct ProjectDeck {
    std::string fileName; ///< as messages name it
    std::string title;
    std::string forceUnit = "N";
    std::string lengthUnit = "mm";
    std::vector<DeckAnalysis> analyses;
    std::vector<DeckMaterial> materials;
    std::vector<DeckCurve> curves;
    std::vector<DeckLoadFunction> functions;
    std::vector<DeckFatigue> fatigue;
};

/// Reads a project deck and checks everything that can be told without opening the files that it names, but
/// that they are there. The failure lists all faults found, one a line, each with file and line.
Result<ProjectDeck> readProjectDeck(const std::filesystem::path& path);

/// The same over text, without asking whether the named files are there. `name` stands for the file in
/// messages.
Result<ProjectDeck> readProjectDeckText(std::string_view text, const std::string& name,
                                        const std::filesystem::path& folder);

/// Why a text cannot be the name of an analysis, and so a part of file names; empty when it can.
std::string analysisNameFault(std::string_view name);

} // namespace workbench
