#include "workbench/results/Catalogue.h"

#include "host/QMUnitCtrl.h"
#include "resultfile/FatigueComponents.h"

#include <algorithm>
#include <vector>

namespace workbench {
namespace {

/// A run of identifiers that share a quantity: base + suffix.
struct Quantity {
    unsigned base;
    int unitKind;
    const char* english;
    const char* korean;
};

struct Part {
    unsigned suffix;
    const char* english;
    const char* korean;
};

constexpr Quantity kVectors[] = {
    {100, UnitKind::Length, "Displacement", "변위"},
    {104, UnitKind::None, "Rotation", "회전"},
    {110, UnitKind::Force, "Reaction force", "반력"},
    {200, UnitKind::Velocity, "Velocity", "속도"},
    {204, UnitKind::None, "Angular velocity", "각속도"},
    {300, UnitKind::Acceleration, "Acceleration", "가속도"},
    {304, UnitKind::None, "Angular acceleration", "각가속도"},
    {410, UnitKind::FlowRate, "Flow rate", "유량"},
    {510, UnitKind::None, "Heat flux", "열유속"},
};

constexpr Part kVectorParts[] = {{1, "X", "X"}, {2, "Y", "Y"}, {3, "Z", "Z"}, {4, "total", "합계"}};

constexpr Part kTensorParts[] = {{1, "XX", "XX"}, {2, "YY", "YY"}, {3, "ZZ", "ZZ"},
                                 {4, "XY", "XY"}, {5, "YZ", "YZ"}, {6, "ZX", "ZX"}};

/// A family of tensor results. `parts` has a bit for each of xx, yy, zz, xy, yz, zx that the family holds.
struct Family {
    unsigned base; ///< identifier of the component before xx
    const char* english;
    const char* korean;
    unsigned parts;
    unsigned equivalent; ///< what the equivalent adds to base
};

constexpr unsigned kAllParts = 0b111111, kInPlane = 0b001011, kInPlaneAndNormal = 0b001111;

constexpr Family kFamilies[] = {
    {312100, "Solid", "솔리드", kAllParts, 14},
    {412100, "Plate top", "판 상면", kInPlane, 14},
    {412150, "Plate bottom", "판 하면", kInPlane, 14},
    {452100, "Membrane", "막", kInPlane, 14},
    {482100, "Axisymmetric", "축대칭", kInPlaneAndNormal, 14},
    {422130, "Plane-stress element", "평면응력 요소", kInPlane, 54},
    {432130, "Plane-strain element", "평면변형률 요소", kInPlaneAndNormal, 54},
};

/// Stress families end in 2 in their third digit, their strains in 1.
constexpr unsigned kStressToStrain = 1000;

constexpr Quantity kScalars[] = {
    {401, UnitKind::Length, "Total head", "전수두"},
    {402, UnitKind::Length, "Pressure head", "압력수두"},
    {403, UnitKind::Stress, "Pore pressure", "간극수압"},
    {501, UnitKind::Temperature, "Temperature", "온도"},
    {515, UnitKind::None, "Reaction heat flow", "반응 열류량"},
    {311121, UnitKind::None, "Solid equivalent plastic strain", "솔리드 등가 소성변형률"},
    {311131, UnitKind::Stress, "Solid internal energy density", "솔리드 내부 에너지 밀도"},
    {311141, UnitKind::None, "Solid stress error estimate (%)", "솔리드 응력 오차 추정 (%)"},
};

void addFamilies(std::vector<ComponentName>& rows) {
    for (const Family& family : kFamilies)
        for (const bool stress : {true, false}) {
            const unsigned base = stress ? family.base : family.base - kStressToStrain;
            const int unitKind = stress ? UnitKind::Stress : UnitKind::None;
            const std::string english = std::string(family.english) + (stress ? " stress " : " strain ");
            const std::string korean = std::string(family.korean) + (stress ? " 응력 " : " 변형률 ");
            for (const Part& part : kTensorParts)
                if (family.parts >> (part.suffix - 1) & 1u)
                    rows.push_back(
                        {base + part.suffix, unitKind, english + part.english, korean + part.korean});
            rows.push_back({base + family.equivalent, unitKind,
                            english + (stress ? "von Mises" : "equivalent"),
                            korean + (stress ? "von Mises" : "등가")});
        }
}

/// Principal stresses and what local safety reads beside them: in the plane of planar elements, the largest
/// and the smallest of the three of solids. They do not add, and no table holds what they are formed from.
struct Principals {
    unsigned family; ///< base of kFamilies
    unsigned major, minor, maximumShear, equivalent;
};

constexpr Principals kPrincipals[] = {
    {312100, 312107, 312108, 312148, 0}, {412100, 412142, 412143, 412148, 412146},
    {432130, 432137, 432138, 432148, 0}, {422130, 422137, 422138, 422148, 0},
    {452100, 452107, 452108, 452148, 0},
};

bool isPrincipal(unsigned id) {
    return std::ranges::any_of(kPrincipals, [id](const Principals& p) {
        return id == p.major || id == p.minor || id == p.maximumShear || id == p.equivalent;
    });
}

void addPrincipals(std::vector<ComponentName>& rows) {
    for (const Principals& p : kPrincipals) {
        const auto family = std::ranges::find(kFamilies, p.family, &Family::base);
        const auto add = [&](unsigned id, const std::string& english, const std::string& korean) {
            if (id)
                rows.push_back({id, UnitKind::Stress, std::string(family->english) + " stress " + english,
                                std::string(family->korean) + " 응력 " + korean});
        };
        add(p.major, "major principal", "최대 주응력");
        add(p.minor, "minor principal", "최소 주응력");
        add(p.maximumShear, "maximum shear", "최대 전단");
        add(p.equivalent, "in-plane von Mises", "면내 von Mises");
    }
}

/// What a field of local safety holds at its nodes.
void addSafety(std::vector<ComponentName>& rows) {
    using namespace safety;
    rows.push_back({kFactor, UnitKind::None, "Local factor of safety", "국부 안전율"});
    rows.push_back({kStressRatio, UnitKind::None, "Local stress ratio", "국부 응력비"});
    rows.push_back({kCohesion, UnitKind::Stress, "Cohesion", "점착력"});
    rows.push_back({kFrictionAngle, UnitKind::None, "Friction angle (degrees)", "내부마찰각(도)"});
    rows.push_back({kMajorStress, UnitKind::Stress, "Governing major principal stress", "지배 최대 주응력"});
    rows.push_back({kMinorStress, UnitKind::Stress, "Governing minor principal stress", "지배 최소 주응력"});
}

bool isSafety(unsigned id) {
    return id >= safety::kFactor && id <= safety::kMinorStress;
}

/// Edition C names the solid and plate tensors by a second set of identifiers.
struct Alias {
    unsigned id;
    unsigned source;
};

constexpr Alias kAliases[] = {
    {60010, 312101}, {60011, 312102}, {60012, 312103}, {60013, 312104}, {60014, 312105}, {60015, 312106},
    {60031, 312114}, {60050, 311101}, {60051, 311102}, {60052, 311103}, {60053, 311104}, {60054, 311105},
    {60055, 311106}, {60061, 311114}, {7020, 412101},  {7021, 412102},  {7023, 412104},  {7033, 412114},
    {7420, 412151},  {7421, 412152},  {7423, 412154},  {7433, 412164},  {7065, 411101},  {7066, 411102},
    {7068, 411104},  {7077, 411114},  {7465, 411151},  {7466, 411152},  {7468, 411154},  {7477, 411164},
};

/// Strain without its thermal part.
constexpr unsigned kMechanicalStrain = 313100;

void addMechanicalStrain(std::vector<ComponentName>& rows) {
    for (const Part& part : kTensorParts)
        rows.push_back({kMechanicalStrain + part.suffix, UnitKind::None,
                        std::string("Solid mechanical strain ") + part.english,
                        std::string("솔리드 기계적 변형률 ") + part.korean});
    rows.push_back({kMechanicalStrain + 14, UnitKind::None, "Solid mechanical strain equivalent",
                    "솔리드 기계적 변형률 등가"});
}

void addAliases(std::vector<ComponentName>& rows) {
    const std::vector<ComponentName> known = rows;
    for (const Alias& alias : kAliases) {
        const auto source = std::ranges::find(known, alias.source, &ComponentName::id);
        rows.push_back({alias.id, source->unitKind, source->english, source->korean});
    }
}

void addFatigue(std::vector<ComponentName>& rows) {
    using namespace resultfile::fatigue;
    for (unsigned correction = 0; correction < kCorrections.size(); ++correction) {
        const std::string name = kCorrections[correction];
        const std::string english = correction == 0 ? " (no correction)" : " (" + name + ")";
        const std::string korean = correction == 0 ? " (보정 없음)" : " (" + name + ")";
        rows.push_back(
            {componentId(kDamage, correction), UnitKind::None, "Damage" + english, "손상도" + korean});
        rows.push_back({componentId(kLife, correction), UnitKind::None, "Life in blocks" + english,
                        "수명(블록)" + korean});
        rows.push_back({componentId(kEquivalentAmplitude, correction), UnitKind::Stress,
                        "Equivalent amplitude" + english, "등가 진폭" + korean});
        rows.push_back({componentId(kGoverningMaterial, correction), UnitKind::None,
                        "Governing material" + english, "지배 재료" + korean});
        constexpr const char* kAxes[] = {" X", " Y", " Z"};
        for (std::size_t axis = 0; axis < kGoverningNormal.size(); ++axis)
            rows.push_back({componentId(kGoverningNormal[axis], correction), UnitKind::None,
                            std::string("Critical plane normal") + kAxes[axis] + english,
                            std::string("임계면 법선") + kAxes[axis] + korean});
    }
}

/// Magnitudes of solids that do not follow the loads.
constexpr unsigned kNotProportional[] = {311121, 311131, 311141};

DerivedComponent equivalentOf(unsigned base, unsigned parts, unsigned equivalent, bool stress) {
    DerivedComponent derived{base + equivalent, DerivedMeasure::VonMises, {}};
    if (!stress) derived.measure = DerivedMeasure::EquivalentStrain;
    // The strain across a plate counts in its equivalent, but has no table.
    constexpr unsigned kAcross = 0b000100;
    if (!stress && !(parts & kAcross)) return derived;
    for (const Part& part : kTensorParts)
        derived.sources.push_back(parts >> (part.suffix - 1) & 1u ? base + part.suffix : 0);
    return derived;
}

std::vector<DerivedComponent> makeDerived() {
    std::vector<DerivedComponent> rows;
    for (const Quantity& quantity : kVectors)
        rows.push_back({quantity.base + 4,
                        DerivedMeasure::Length,
                        {quantity.base + 1, quantity.base + 2, quantity.base + 3}});
    for (const Family& family : kFamilies) {
        rows.push_back(equivalentOf(family.base, family.parts, family.equivalent, true));
        rows.push_back(equivalentOf(family.base - kStressToStrain, family.parts, family.equivalent, false));
    }
    rows.push_back(equivalentOf(kMechanicalStrain, kAllParts, 14, false));
    std::ranges::sort(rows, {}, &DerivedComponent::id);
    return rows;
}

/// Of fatigue results the damage alone adds up, by Miner's rule.
bool isFatigue(unsigned id, unsigned base) {
    return id >= base && id < base + 10 * resultfile::fatigue::kCorrections.size() && (id - base) % 10 == 0;
}

bool isLabel(unsigned id) {
    using namespace resultfile::fatigue;
    return governedBy(id) != 0 || isFatigue(id, kGoverningMaterial) ||
           std::ranges::any_of(kGoverningNormal, [&](unsigned base) { return isFatigue(id, base); });
}

void addGoverningItems(std::vector<ComponentName>& rows) {
    const std::vector<ComponentName> governed = rows;
    for (const ComponentName& row : governed)
        if (!isLabel(row.id))
            rows.push_back({governingItemOf(row.id), UnitKind::None, "Governing item of " + row.english,
                            "지배 항목: " + row.korean});
}

std::vector<ComponentName> makeCatalogue() {
    std::vector<ComponentName> rows;
    for (const Quantity& quantity : kVectors)
        for (const Part& part : kVectorParts)
            rows.push_back({quantity.base + part.suffix, quantity.unitKind,
                            std::string(quantity.english) + " " + part.english,
                            std::string(quantity.korean) + " " + part.korean});
    for (const Quantity& scalar : kScalars)
        rows.push_back({scalar.base, scalar.unitKind, scalar.english, scalar.korean});
    addFamilies(rows);
    addMechanicalStrain(rows);
    addAliases(rows);
    addFatigue(rows);
    addPrincipals(rows);
    addSafety(rows);
    addGoverningItems(rows);
    std::sort(rows.begin(), rows.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
    return rows;
}

} // namespace

std::span<const ComponentName> resultCatalogue() {
    static const std::vector<ComponentName> rows = makeCatalogue();
    return rows;
}

const ComponentName* findComponent(unsigned id) {
    const auto rows = resultCatalogue();
    const auto found = std::lower_bound(rows.begin(), rows.end(), id,
                                        [](const ComponentName& row, unsigned key) { return row.id < key; });
    return found != rows.end() && found->id == id ? &*found : nullptr;
}

unsigned sourceOfAlias(unsigned id) {
    const auto found = std::ranges::find(kAliases, id, &Alias::id);
    return found != std::end(kAliases) ? found->source : 0;
}

std::span<const DerivedComponent> derivedComponents() {
    static const std::vector<DerivedComponent> rows = makeDerived();
    return rows;
}

Combining combiningOf(unsigned id) {
    using namespace resultfile::fatigue;
    if (const unsigned source = sourceOfAlias(id)) id = source;
    if (isLabel(id)) return Combining::Label;
    if (std::ranges::binary_search(derivedComponents(), id, {}, &DerivedComponent::id))
        return Combining::Derived;
    const bool follows = findComponent(id) && !isFatigue(id, kLife) && !isFatigue(id, kEquivalentAmplitude) &&
                         !isPrincipal(id) && !isSafety(id) &&
                         std::ranges::find(kNotProportional, id) == std::end(kNotProportional);
    return follows ? Combining::Proportional : Combining::NotProportional;
}

std::string componentName(unsigned id, Language language) {
    if (const ComponentName* component = findComponent(id)) return component->text(language);
    return (language == Language::Korean ? "성분 " : "Component ") + std::to_string(id);
}

} // namespace workbench
