#include "workbench/import/InpSectionCards.h"

#include "workbench/import/Names.h"

#include <algorithm>

namespace workbench {

constexpr std::array<InpSectionCards::Row, 11> InpSectionCards::kCards = {
    {{"ORIENTATION", &InpSectionCards::startOrientation},
     {"SOLIDSECTION", &InpSectionCards::startSection},
     {"SHELLSECTION", &InpSectionCards::startSection},
     {"MEMBRANESECTION", &InpSectionCards::startSection},
     {"BEAMSECTION", &InpSectionCards::startBeamSection},
     {"BEAMGENERALSECTION", &InpSectionCards::startBeamSection},
     {"SPRING", &InpSectionCards::startConnectorSection},
     {"DASHPOT", &InpSectionCards::startConnectorSection},
     {"GAP", &InpSectionCards::startConnectorSection},
     {"MASS", &InpSectionCards::startConnectorSection},
     {"DISTRIBUTINGCOUPLING", &InpSectionCards::startConnectorSection}}};

bool InpSectionCards::startSection() {
    context_.noteParametersBut({"ELSET", "MATERIAL", "OFFSET", "ORIENTATION", "COMPOSITE", "NODALTHICKNESS"});
    if (!beginSection("MATERIAL")) return false;
    if (const std::string* name = card_.find("ORIENTATION"); name && section_)
        deck_.sections[*section_].orientation = *name;
    if (card_.has("NODALTHICKNESS"))
        note("NODALTHICKNESS",
             "*" + card_.title + ": the thickness varies from node to node; that of the section is kept");
    sectionLines_ = 0;
    handler_ = card_.has("COMPOSITE") ? &InpSectionCards::layerLine : &InpSectionCards::thicknessLine;
    return true;
}

bool InpSectionCards::startOrientation() {
    const std::string* name = card_.find("NAME");
    if (!name || name->empty() || deck_.orientations.size() >= kMostOrientations) {
        note("ORIENTATION", "*ORIENTATION without NAME, or too many of them, is left out");
        return true;
    }
    deck_.orientations.emplace_back();
    SolverOrientation& orientation = deck_.orientations.back();
    orientation.name = *name;
    const std::string* system = card_.find("SYSTEM");
    orientation.isCylindrical = system && upperCase(*system).starts_with("C");
    orientationLines_ = 0;
    handler_ = &InpSectionCards::orientationLine;
    return true;
}

bool InpSectionCards::orientationLine(std::string_view line) {
    SolverOrientation& orientation = deck_.orientations.back();
    InpFields fields(line);
    std::string_view field;
    orientation.isKnown = orientationLines_++ == 0;
    for (std::size_t i = 0; i < 6 && orientation.isKnown && fields.next(field); ++i) {
        const auto value = parseReal(field);
        orientation.isKnown = value.has_value();
        (i < 3 ? orientation.first : orientation.second)[i % 3] = value.value_or(0);
    }
    return true;
}

bool InpSectionCards::startBeamSection() {
    return beginSection("MATERIAL");
}

bool InpSectionCards::startConnectorSection() {
    return beginSection("");
}

bool InpSectionCards::beginSection(std::string_view materialParameter) {
    const std::string* set = card_.find("ELSET");
    if (!set || set->empty()) {
        note("ELSET " + card_.keyword, "*" + card_.title + " names no element set (ELSET) and is left out");
        section_.reset();
        return true;
    }
    section_ = deck_.sections.size();
    deck_.sections.emplace_back();
    deck_.sections.back().elementSet = *set;
    deck_.sections.back().place = raw_.text(place_);
    if (const std::string* material = card_.find(materialParameter)) addSectionMaterial(*material);
    return true;
}

void InpSectionCards::addSectionMaterial(const std::string& name) {
    auto& materials = deck_.sections[*section_].materials;
    const bool known = std::any_of(materials.begin(), materials.end(),
                                   [&](const auto& other) { return equalIgnoringCase(other, name); });
    if (!known && !name.empty()) materials.push_back(name);
}

bool InpSectionCards::thicknessLine(std::string_view line) {
    if (sectionLines_++ > 0 || !section_) return true;
    InpFields fields(line);
    return context_.realField(fields, "thickness", deck_.sections[*section_].thickness);
}

bool InpSectionCards::layerLine(std::string_view line) {
    if (!section_) return true;
    InpFields fields(line);
    double thickness = 0;
    if (!context_.realField(fields, "thickness of a layer", thickness)) return false;
    SolverSection& section = deck_.sections[*section_];
    section.thickness += thickness;
    section.layers = std::min(section.layers + 1, kMostLayers);
    std::string_view field;
    if (fields.next(field) && fields.next(field)) addSectionMaterial(std::string(field));
    return true;
}

void InpSectionCards::checkSections() {
    const auto has = [](const auto& records, const std::string& name) {
        return std::any_of(records.begin(), records.end(),
                           [&](const auto& record) { return equalIgnoringCase(record.name, name); });
    };
    const auto warn = [&](const SolverSection& section, const std::string& what, const auto& records) {
        std::vector<std::string> names;
        for (const auto& record : records)
            names.push_back(record.name);
        deck_.warnings.push_back(section.place + ": " + what + " is not in the deck; it has " +
                                 listNames(names));
    };
    std::erase_if(deck_.sections, [&](const SolverSection& section) {
        if (has(deck_.elementSets, section.elementSet)) return false;
        warn(section, "element set '" + section.elementSet + "'", deck_.elementSets);
        return true;
    });
    for (SolverSection& section : deck_.sections)
        std::erase_if(section.materials, [&](const std::string& name) {
            if (has(deck_.materials, name)) return false;
            warn(section, "material '" + name + "'", deck_.materials);
            return true;
        });
}

} // namespace workbench
