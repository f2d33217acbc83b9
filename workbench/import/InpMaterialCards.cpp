#include "workbench/import/InpMaterialCards.h"

#include "workbench/import/Names.h"

#include <algorithm>

namespace workbench {

constexpr std::array<InpMaterialCards::Row, 21> InpMaterialCards::kCards = {
    {{"MATERIAL", &InpMaterialCards::startMaterial},
     {"ELASTIC", &InpMaterialCards::startElastic},
     {"DENSITY", &InpMaterialCards::startDensity},
     {"HYPERELASTIC", &InpMaterialCards::otherLaw},
     {"HYPERFOAM", &InpMaterialCards::otherLaw},
     {"USERMATERIAL", &InpMaterialCards::otherLaw},
     {"PLASTIC", &InpMaterialCards::otherData},
     {"CYCLICHARDENING", &InpMaterialCards::otherData},
     {"CREEP", &InpMaterialCards::otherData},
     {"DEFORMATIONPLASTICITY", &InpMaterialCards::otherData},
     {"EXPANSION", &InpMaterialCards::otherData},
     {"CONDUCTIVITY", &InpMaterialCards::otherData},
     {"SPECIFICHEAT", &InpMaterialCards::otherData},
     {"DAMPING", &InpMaterialCards::otherData},
     {"DEPVAR", &InpMaterialCards::otherData},
     {"MOHRCOULOMB", &InpMaterialCards::otherData},
     {"FLUIDCONSTANTS", &InpMaterialCards::otherData},
     {"SPECIFICGASCONSTANT", &InpMaterialCards::otherData},
     {"MAGNETICPERMEABILITY", &InpMaterialCards::otherData},
     {"ELECTRICALCONDUCTIVITY", &InpMaterialCards::otherData},
     {"MOHRCOULOMBHARDENING", &InpMaterialCards::otherData}}};

bool InpMaterialCards::startMaterial() {
    context_.noteParametersBut({"NAME"});
    const std::string* name = card_.find("NAME");
    if (!name || name->empty()) return fail("*MATERIAL has no NAME");
    const auto known = std::find_if(deck_.materials.begin(), deck_.materials.end(),
                                    [&](const auto& other) { return equalIgnoringCase(other.name, *name); });
    if (known != deck_.materials.end()) {
        note("MATERIAL " + upperCase(*name),
             "material '" + *name + "' was given before, at " + known->place + "; the first is kept");
        ignoredMaterial_ = {};
        material_ = kIgnoredMaterial;
        return true;
    }
    material_ = deck_.materials.size();
    deck_.materials.emplace_back();
    deck_.materials.back().name = *name;
    deck_.materials.back().place = raw_.text(place_);
    return true;
}

SolverMaterial& InpMaterialCards::material() {
    return material_ == kIgnoredMaterial ? ignoredMaterial_ : deck_.materials[material_];
}

bool InpMaterialCards::insideMaterial() {
    return material_ != kNoMaterial || fail("*" + card_.title + " stands before any *MATERIAL");
}

bool InpMaterialCards::otherLaw() {
    if (!insideMaterial()) return false;
    note("law " + material().name, "*" + card_.title + ": material '" + material().name +
                                       "' keeps no elastic modulus and no Poisson's ratio");
    return true;
}

bool InpMaterialCards::otherData() {
    note("material data",
         "*" + card_.title + " and other data of materials beyond linear elasticity and density are not kept",
         " cards");
    return true;
}

bool InpMaterialCards::startElastic() {
    if (!insideMaterial()) return false;
    const std::string* type = card_.find("TYPE");
    if (type && !type->empty() && !equalIgnoringCase(*type, "ISO") &&
        !equalIgnoringCase(*type, "ISOTROPIC")) {
        note("law " + material().name, "*ELASTIC of type " + upperCase(*type) + ": material '" +
                                           material().name +
                                           "' keeps no elastic modulus and no Poisson's ratio");
        return true;
    }
    constantsLines_ = 0;
    handler_ = &InpMaterialCards::elasticLine;
    return true;
}

bool InpMaterialCards::elasticLine(std::string_view line) {
    if (constantsLines_++ > 0) return noteTemperatures();
    InpFields fields(line);
    if (!context_.realField(fields, "elastic modulus", material().elasticModulus)) return false;
    if (!context_.realField(fields, "Poisson's ratio", material().poissonRatio)) return false;
    if (material().elasticModulus <= 0) {
        note("modulus " + material().name,
             "the elastic modulus of material '" + material().name + "' is not positive and not kept");
        material().elasticModulus = 0;
    }
    return true;
}

bool InpMaterialCards::startDensity() {
    if (!insideMaterial()) return false;
    constantsLines_ = 0;
    handler_ = &InpMaterialCards::densityLine;
    return true;
}

bool InpMaterialCards::densityLine(std::string_view line) {
    if (constantsLines_++ > 0) return noteTemperatures();
    InpFields fields(line);
    return context_.realField(fields, "density", material().density);
}

bool InpMaterialCards::noteTemperatures() {
    note("TEMPERATURES " + card_.keyword,
         "*" + card_.title + " depends on the temperature; the first values are taken", " further lines");
    return true;
}

} // namespace workbench
