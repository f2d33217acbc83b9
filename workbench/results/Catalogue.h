#pragma once

#include <span>
#include <string>
#include <vector>

namespace workbench {

enum class Language { English, Korean };

/// Components of a field of local safety.
namespace safety {
inline constexpr unsigned kFactor = 77101, kStressRatio = 77102, kCohesion = 77111, kFrictionAngle = 77112,
                          kMajorStress = 77121, kMinorStress = 77122;
} // namespace safety

/// What an identifier of a result component means.
struct ComponentName {
    unsigned id;
    int unitKind; ///< UnitKind of the host; None for pure numbers
    std::string english;
    std::string korean;

    const std::string& text(Language language) const {
        return language == Language::Korean ? korean : english;
    }
};

/// The catalogue of result components, ascending by id.
std::span<const ComponentName> resultCatalogue();

/// The entry of an identifier; null for one that the catalogue does not know.
const ComponentName* findComponent(unsigned id);

/// The identifier whose values an edition-C identifier shares; 0 for every other one.
unsigned sourceOfAlias(unsigned id);

/// How the values of a component behave when results are scaled and combined.
enum class Combining {
    Proportional,    ///< scales and adds as the loads do
    Derived,         ///< a magnitude formed from other components: it scales, but does not add
    NotProportional, ///< neither scales nor adds: plastic strain, energy, life, what the catalogue lacks
    Label,           ///< a number that stands for something else, or part of a direction
};
Combining combiningOf(unsigned id);

enum class DerivedMeasure {
    Length,           ///< of a vector
    VonMises,         ///< of a stress tensor: sqrt(3/2 s:s), s the deviator
    EquivalentStrain, ///< of a strain tensor with tensor shear: sqrt(2/3 e:e), e the deviator
};

/// A component that is formed from others at the same place.
struct DerivedComponent {
    unsigned id;
    DerivedMeasure measure;
    /// x, y, z of a vector; xx, yy, zz, xy, yz, zx of a tensor, 0 where it counts as zero. Empty: the tables
    /// do not hold all that it is formed from.
    std::vector<unsigned> sources;
};

/// The derived components of the catalogue, ascending by id.
std::span<const DerivedComponent> derivedComponents();

/// The component that says which item governs each value of an envelope of component `id`; 0 for identifiers
/// beyond the catalogue's.
constexpr unsigned governingItemOf(unsigned id) {
    constexpr unsigned base = 9000000, end = 1000000;
    return id < end ? base + id : 0;
}
/// The component whose governing items `id` are; 0 for every other one.
constexpr unsigned governedBy(unsigned id) {
    constexpr unsigned base = 9000000;
    return id >= base && id == governingItemOf(id - base) ? id - base : 0;
}

/// The name of an identifier, or "Component 123" where the catalogue does not know it.
std::string componentName(unsigned id, Language language);

} // namespace workbench
