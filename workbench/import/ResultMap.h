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

/// How an entity of a result file is kept: its components, in this order, have the identifiers from firstId
/// on.
struct ResultMapRow {
    std::string_view block;
    std::span<const std::string_view> components;
    unsigned firstId;
    DerivedResult derived;
    unsigned derivedId;
};

/// All entities that are kept.
std::span<const ResultMapRow> resultMap();
/// The row of an entity; null for one that is not kept.
const ResultMapRow* findResultRow(std::string_view block);

} // namespace workbench
