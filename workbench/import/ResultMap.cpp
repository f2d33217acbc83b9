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
    {ResultScope::Nodes, "DISP", kDisplacement, 101, DerivedResult::Length, 104},
    {ResultScope::NodeTotals, "FORC", kForce, 111, DerivedResult::Length, 114},
    {ResultScope::Nodes, "VELO", kVelocity, 201, DerivedResult::Length, 204},
    {ResultScope::Nodes, "NDTEMP", kTemperature, 501, DerivedResult::None, 0},
    {ResultScope::Nodes, "FLUX", kForce, 511, DerivedResult::Length, 514},
    {ResultScope::NodeTotals, "RFL", kReactionFlux, 515, DerivedResult::None, 0},
    {ResultScope::Stress, "STRESS", kStress, 312101, DerivedResult::VonMises, 312114},
    {ResultScope::Strain, "TOSTRAIN", kTotalStrain, 311101, DerivedResult::EquivalentStrain, 311114},
    {ResultScope::Solids, "PE", kPlasticStrain, 311121, DerivedResult::None, 0},
    {ResultScope::Solids, "ENER", kEnergy, 311131, DerivedResult::None, 0},
    {ResultScope::Solids, "ERROR", kError, 311141, DerivedResult::None, 0},
    {ResultScope::Solids, "MESTRAIN", kMechanicalStrain, 313101, DerivedResult::EquivalentStrain, 313114},
};

constexpr unsigned kAllParts[] = {0, 1, 2, 3, 4, 5};
constexpr unsigned kInPlane[] = {0, 1, 3};
constexpr unsigned kInPlaneAndNormal[] = {0, 1, 2, 3};

} // namespace

const ResultFamily kSolidFamily{312100, kAllParts, 14};
const ResultFamily kPlateTopFamily{412100, kInPlane, 14};
const ResultFamily kPlateBottomFamily{412150, kInPlane, 14};
const ResultFamily kMembraneFamily{452100, kInPlane, 14};
const ResultFamily kAxisymmetricFamily{482100, kInPlaneAndNormal, 14};
const ResultFamily kPlaneStressFamily{422130, kInPlane, 54};
const ResultFamily kPlaneStrainFamily{432130, kInPlaneAndNormal, 54};

const ResultMapRow* findResultRow(std::string_view block) {
    const auto row = std::find_if(std::begin(kRows), std::end(kRows),
                                  [&](const ResultMapRow& candidate) { return candidate.block == block; });
    return row == std::end(kRows) ? nullptr : row;
}

} // namespace workbench
