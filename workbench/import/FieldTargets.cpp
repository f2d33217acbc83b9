#include "workbench/import/FieldTargets.h"

#include "workbench/import/Names.h"

#include <algorithm>
#include <iterator>

namespace workbench {
namespace {

struct Row {
    const char* word;
    FieldTarget target;
    std::vector<std::string_view> usualNames; ///< letters and digits in lower case
};

const std::vector<Row>& rows() {
    using enum FieldTarget::Kind;
    static const std::vector<Row> kRows{
        {"displacement", {Vector, 101}, {"displacement", "displacements", "disp", "u", "deformation"}},
        {"rotation", {Vector, 105}, {"rotation", "rotations"}},
        {"reaction force",
         {Vector, 111},
         {"reactionforce", "reactionforces", "reaction", "reactions", "rf", "forc"}},
        {"velocity", {Vector, 201}, {"velocity", "velocities", "vel", "v", "velo"}},
        {"angular velocity", {Vector, 205}, {"angularvelocity"}},
        {"acceleration", {Vector, 301}, {"acceleration", "accelerations", "acc"}},
        {"angular acceleration", {Vector, 305}, {"angularacceleration"}},
        {"heat flux", {Vector, 511}, {"heatflux", "flux"}},
        {"temperature", {Scalar, 501}, {"temperature", "temperatures", "temp", "t", "nt", "ndtemp"}},
        {"stress", {Stress, 0}, {"stress", "stresses", "stresstensor", "cauchystress", "sigma", "s"}},
        {"strain",
         {Strain, 0},
         {"strain", "strains", "straintensor", "totalstrain", "epsilon", "e", "tostrain"}},
        {"engineering strain", {EngineeringStrain, 0}, {"engineeringstrain"}},
        {"none", {Nothing, 0}, {}},
    };
    return kRows;
}

std::string plainName(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        if (c >= 'A' && c <= 'Z') plain += static_cast<char>(c - 'A' + 'a');
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) plain += c;
    }
    return plain;
}

} // namespace

bool FieldTarget::takes(std::uint32_t components) const {
    switch (kind) {
    case Nothing:
        return true;
    case Scalar:
        return components == 1;
    case Vector:
        return components == 3;
    default:
        return components == 6 || components == 9;
    }
}

const char* FieldTarget::shape() const {
    return kind == Scalar ? "1 component" : kind == Vector ? "3 components" : "6 or 9 components";
}

const std::vector<std::string>& fieldTargetNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> words;
        std::ranges::transform(rows(), std::back_inserter(words), &Row::word);
        return words;
    }();
    return names;
}

std::optional<FieldTarget> fieldTarget(std::string_view word) {
    for (const Row& row : rows())
        if (equalIgnoringCase(row.word, word)) return row.target;
    return std::nullopt;
}

std::optional<FieldTarget> usualTarget(const FieldHeader& field) {
    const std::string name = plainName(field.name);
    for (const Row& row : rows())
        if (std::ranges::find(row.usualNames, name) != row.usualNames.end() &&
            row.target.takes(field.components))
            return row.target;
    return std::nullopt;
}

} // namespace workbench
