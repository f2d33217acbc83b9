#pragma once

#include "workbench/meshfile/MeshRecords.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// What the array of a mesh file becomes.
struct FieldTarget {
    enum Kind { Nothing, Scalar, Vector, Stress, Strain, EngineeringStrain };
    Kind kind = Nothing;
    unsigned firstId = 0; ///< of a scalar or vector; that of the vector's length is 3 more

    bool isTensor() const { return kind >= Stress; }
    /// Whether arrays of so many components can become it: 1; 3; 6 or 9.
    bool takes(std::uint32_t components) const;
    const char* shape() const; ///< "3 components"
};

/// What the user says about an array of a mesh file.
struct DeckField {
    int line = 0;
    std::string array;
    FieldTarget target;
};

/// The words for targets, in the order of their meanings.
const std::vector<std::string>& fieldTargetNames();
/// The target of such a word, in any letter case; nothing for others.
std::optional<FieldTarget> fieldTarget(std::string_view word);

/// What an array with this name and so many components means by common use; nothing where there is none.
std::optional<FieldTarget> usualTarget(const FieldHeader& field);

} // namespace workbench
