#pragma once

#include "module/fatigue/TensorRotation.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace fatigue {

/// Kinds of elements whose results have identifiers of their own, in the order of the identifier table.
enum class ElementGroup : int { Solid = 0, Plate, Membrane, Axisymmetric, PlaneStress, PlaneStrain };
inline constexpr int kGroupCount = 6;

/// The two result forms of the results database: stresses are primary, strains are paired with them.
enum class ResultForm { Primary, Paired };

inline constexpr int kSlotCount = 65;
inline constexpr int kPairDistance = 33;
using ResultIds = std::array<std::int32_t, kSlotCount>; ///< 0: the edition has no such result

/// The identifiers of the host's editions; edition C knows solids and plates only.
ResultIds resultIds(bool editionC);

/// The slot of the same component in the other form; none for slot 32, the last primary one.
std::optional<int> pairedSlot(int slot);

/// Identifiers that must exist for elements of a group: the primary ones, and the paired ones if asked for.
/// Slots that are not set are left out.
std::vector<unsigned> requiredIds(const ResultIds& ids, ElementGroup group, bool withPaired);

/// One table to read: its identifier, 0 where the edition has none, and the tensor component it holds.
struct ComponentSource {
    unsigned id;
    TensorComponent component;
};

/// The tables that make up the tensor of a group; plates are read on their top face. Components that are not
/// listed are zero for the group.
std::vector<ComponentSource> tensorSources(const ResultIds& ids, ElementGroup group, ResultForm form);

/// Groups whose results stand in the axes of each element: plates and membranes.
constexpr bool hasLocalAxes(ElementGroup group) {
    return group == ElementGroup::Plate || group == ElementGroup::Membrane;
}

} // namespace fatigue
