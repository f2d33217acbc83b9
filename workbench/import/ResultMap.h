#pragma once

#include <span>
#include <string_view>

namespace workbench {

/// What is computed from the components of an entity, as one more result.
enum class DerivedResult {
    None,
    Length,           ///< length of the vector
    VonMises,         ///< of a stress tensor: sqrt(3/2 s:s), s the deviator
    EquivalentStrain, ///< of a strain tensor with tensor shear: sqrt(2/3 e:e), e the deviator
};

/// Which items an entity belongs to.
enum class ResultScope {
    Nodes,      ///< every node; a node of an expanded element has the mean of what stands for it
    NodeTotals, ///< every node; likewise the sum
    Solids,     ///< nodes of solids
    Stress,     ///< a tensor of every family
    Strain,     ///< likewise
};

/// How an entity of a result file is kept: its components, in this order, have the identifiers from firstId
/// on. Those of tensors are the solids'; resultFamily has the others.
struct ResultMapRow {
    ResultScope scope;
    std::string_view block;
    std::span<const std::string_view> components;
    unsigned firstId;
    DerivedResult derived;
    unsigned derivedId;
};

/// Which components of a tensor a family keeps, and under which identifiers.
struct ResultFamily {
    unsigned base;                   ///< of its stress; xx has base + 1
    std::span<const unsigned> parts; ///< 0 to 5: xx, yy, zz, xy, yz, zx
    unsigned equivalent;             ///< what the equivalent adds to base
};

/// Identifiers of strains lie this much below those of stresses.
inline constexpr unsigned kStressToStrain = 1000;

extern const ResultFamily kSolidFamily, kPlateTopFamily, kPlateBottomFamily, kMembraneFamily,
    kAxisymmetricFamily, kPlaneStressFamily, kPlaneStrainFamily;

/// The row of an entity; null for one that is not kept.
const ResultMapRow* findResultRow(std::string_view block);

} // namespace workbench
