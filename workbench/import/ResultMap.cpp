#include "workbench/import/ResultMap.h"

#include <algorithm>

namespace workbench {
namespace {

using Names = std::string_view;
constexpr Names kDisplacement[] = {"D1", "D2", "D3"};
constexpr Names kVelocity[] = {"V1", "V2", "V3"};
constexpr Names kForce[] = {"F1", "F2", "F3"};
constexpr Names kTemperature[] = {"T"};
constexpr Names kReactionFlux[] = {"RFL"};
constexpr Names kStress[] = {"SXX", "SYY", "SZZ", "SXY", "SYZ", "SZX"};
constexpr Names kTotalStrain[] = {"EXX", "EYY", "EZZ", "EXY", "EYZ", "EZX"};
constexpr Names kMechanicalStrain[] = {"MEXX", "MEYY", "MEZZ", "MEXY", "MEYZ", "MEZX"};
constexpr Names kPlasticStrain[] = {"PE"};
constexpr Names kEnergy[] = {"ENER"};
constexpr Names kError[] = {"STR(%)"};

constexpr ResultMapRow kRows[] = {
    {"DISP", kDisplacement, 101, DerivedResult::Length, 104},
    {"FORC", kForce, 111, DerivedResult::Length, 114},
    {"VELO", kVelocity, 201, DerivedResult::Length, 204},
    {"NDTEMP", kTemperature, 501, DerivedResult::None, 0},
    {"FLUX", kForce, 511, DerivedResult::Length, 514},
    {"RFL", kReactionFlux, 515, DerivedResult::None, 0},
    {"STRESS", kStress, 312101, DerivedResult::VonMises, 312114},
    {"TOSTRAIN", kTotalStrain, 311101, DerivedResult::EquivalentStrain, 311114},
    {"PE", kPlasticStrain, 311121, DerivedResult::None, 0},
    {"ENER", kEnergy, 311131, DerivedResult::None, 0},
    {"ERROR", kError, 311141, DerivedResult::None, 0},
    {"MESTRAIN", kMechanicalStrain, 313101, DerivedResult::EquivalentStrain, 313114},
};

} // namespace

std::span<const ResultMapRow> resultMap() {
    return kRows;
}

const ResultMapRow* findResultRow(std::string_view block) {
    const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [&](const ResultMapRow& candidate) { return candidate.block == block; });
    return row == std::end(kRows) ? nullptr : row;
}

} // namespace workbench
