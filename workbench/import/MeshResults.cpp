#include "workbench/import/MeshResults.h"

#include "module/fatigue/TensorRotation.h"
#include "workbench/document/MeshPools.h"
#include "workbench/import/Names.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace workbench {
namespace {

constexpr std::size_t kTensorParts = 6;
constexpr unsigned kAllParts[] = {0, 1, 2, 3, 4, 5};

/// Where the components xx, yy, zz, xy, yz, zx and their mirrored ones stand in a row of 6 or 9.
using TensorPlaces = std::size_t[kTensorParts][2];
constexpr TensorPlaces kSix = {{0, 0}, {1, 1}, {2, 2}, {3, 3}, {4, 4}, {5, 5}};
constexpr TensorPlaces kNine = {{0, 0}, {4, 4}, {8, 8}, {1, 3}, {5, 7}, {2, 6}};

struct FamilyOfElements {
    ElementFamily elements;
    const ResultFamily* results;
    bool isAtCorners; ///< in the axes of each element
};

/// A mesh file says nothing of the faces of a plate; what it has stands for the top face, which runs read.
const FamilyOfElements kFamilies[] = {{ElementFamily::Solid, &kSolidFamily, false},
                                      {ElementFamily::PlaneStress, &kPlaneStressFamily, false},
                                      {ElementFamily::PlaneStrain, &kPlaneStrainFamily, false},
                                      {ElementFamily::Axisymmetric, &kAxisymmetricFamily, false},
                                      {ElementFamily::Plate, &kPlateTopFamily, true},
                                      {ElementFamily::Membrane, &kMembraneFamily, true}};

std::string shortest(double value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string listArrays(const std::vector<FieldHeader>& fields) {
    std::vector<std::string> names;
    for (const FieldHeader& field : fields)
        if (std::ranges::find(names, field.name) == names.end()) names.push_back(field.name);
    return listNames(names);
}

/// The first identifier of what a target gives; of tensors the solids' stands for all families.
unsigned resultOf(const FieldTarget& target) {
    if (!target.isTensor()) return target.firstId;
    return kSolidFamily.base - (target.kind == FieldTarget::Stress ? 0 : kStressToStrain);
}

} // namespace

MeshResults::MeshResults(resultfile::Writer& writer, const ResultMesh& mesh, const MeshModel& model,
                         std::span<const DeckField> rules, std::string fileName)
    : writer_(writer)
    , mesh_(mesh)
    , model_(model)
    , rules_(rules)
    , fileName_(std::move(fileName)) {}

void MeshResults::warnOnce(const std::string& key, const std::string& text) {
    if (warned_.insert(key).second) warnings_.push_back(text);
}

Result<void> MeshResults::checkRules() const {
    const auto& fields = model_.file.fields();
    for (const DeckField& rule : rules_) {
        const auto isNamed = [&](const FieldHeader& field) { return field.name == rule.array; };
        const std::string line = "line " + std::to_string(rule.line) + " of the project deck";
        if (std::ranges::none_of(fields, isNamed))
            return Error{fileName_ + ": there is no array '" + rule.array + "', which " + line +
                         " names; the file has " + listArrays(fields)};
        for (const FieldHeader& field : fields)
            if (isNamed(field) && !rule.target.takes(field.components))
                return Error{fileName_ + ": the array '" + field.name + "' has " +
                             std::to_string(field.components) +
                             (field.components == 1 ? " component" : " components") + ", but what " + line +
                             " makes of it has " + rule.target.shape()};
    }
    return {};
}

Result<void> MeshResults::chooseTargets() {
    if (auto sound = checkRules(); !sound) return sound;
    std::vector<FieldHeader> unknown;
    for (const FieldHeader& field : model_.file.fields()) {
        const auto rule = std::ranges::find(rules_, field.name, &DeckField::array);
        const auto target = rule != rules_.end() ? std::optional(rule->target) : usualTarget(field);
        if (!target) unknown.push_back(field);
        targets_.push_back(target.value_or(FieldTarget()));
    }
    if (!unknown.empty())
        warnings_.push_back(fileName_ + ": the meaning of the arrays " + listArrays(unknown) +
                            " is not known; they are left out unless [analysis.fields] of the project deck "
                            "says what they are");
    return {};
}

Result<void> MeshResults::write(const std::string& caseName, const std::function<void(double)>& progress) {
    if (auto chosen = chooseTargets(); !chosen) return chosen;
    if (auto begun = writer_.beginCase(caseName); !begun) return begun;
    cases_.push_back({caseName, {}});
    const auto& fields = model_.file.fields();
    std::map<std::pair<std::int32_t, double>, std::vector<std::size_t>> fieldsOfSteps;
    for (std::size_t i = 0; i < fields.size(); ++i)
        if (targets_[i].kind != FieldTarget::Nothing)
            fieldsOfSteps[{fields[i].step, fields[i].time}].push_back(i);
    std::size_t done = 0;
    for (const auto& [key, indices] : fieldsOfSteps) {
        if (auto begun = beginStep(key.second); !begun) return begun;
        for (const std::size_t i : indices)
            if (auto written = writeField(i); !written) return written;
        if (progress) progress(static_cast<double>(++done) / static_cast<double>(fieldsOfSteps.size()));
    }
    if (fieldsOfSteps.empty()) warnings_.push_back(fileName_ + ": the file gives no results");
    return {};
}

Result<void> MeshResults::beginStep(double time) {
    auto& steps = cases_.back().steps;
    std::string name = "Time " + shortest(time);
    for (int copy = 2; std::ranges::find(steps, name) != steps.end(); ++copy)
        name = "Time " + shortest(time) + " (" + std::to_string(copy) + ")";
    steps.push_back(name);
    taken_.clear();
    return writer_.beginStep(name, time);
}

/// False, with a warning, where another array of the step gives the same result.
bool MeshResults::takeResult(unsigned id, const FieldHeader& header) {
    const auto [taken, isNew] = taken_.insert({id, header.name});
    if (!isNew)
        warnOnce("twice " + header.name,
                 current_ + (header.place == FieldPlace::Node ? " at points" : " at cells") +
                     " is left out, since '" + taken->second + "' gives the same result");
    return isNew;
}

Result<void> MeshResults::writeField(std::size_t field) {
    const FieldHeader& header = model_.file.fields()[field];
    const FieldTarget& target = targets_[field];
    current_ = fileName_ + ": the array '" + header.name + "'";
    if (!takeResult(resultOf(target), header)) return {};
    const auto values = model_.file.load(field);
    if (!values) return values.error();
    const FieldRows rows = FieldRows::of(header, *values, model_, mesh_);
    if (rows.missing > 0)
        warnOnce("missing " + header.name,
                 current_ + " has values that are not finite at " + std::to_string(rows.missing) +
                     (header.place == FieldPlace::Node ? " points" : " cells") + ", which are left out");
    if (rows.items.empty()) return {};
    if (!target.isTensor()) return writePlain(target, *values, rows);
    tensorComponents_ = header.components;
    return writeTensor(target, *values, rows);
}

Result<void> MeshResults::writePlain(const FieldTarget& target, const FieldValues& values,
                                     const FieldRows& rows) {
    tables_.assign(target.kind == FieldTarget::Vector ? 3 : 1, std::vector<float>(rows.first.size()));
    for (std::size_t row = 0; row < rows.first.size(); ++row)
        for (std::size_t c = 0; c < tables_.size(); ++c)
            tables_[c][row] = values.values[rows.first[row] + c];
    const auto items = nameItems(rows);
    if (!items) return items.error();
    unsigned id = target.firstId;
    for (const auto& table : tables_)
        if (auto written = writer_.writeTable(id++, rows.location, table, *items); !written) return written;
    if (target.kind == FieldTarget::Scalar) return {};
    return writeDerived(DerivedResult::Length, id, rows, *items, kAllParts);
}

Result<void> MeshResults::writeTensor(const FieldTarget& target, const FieldValues& values,
                                      const FieldRows& rows) {
    for (const FamilyOfElements& family : kFamilies) {
        const bool toCorners = family.isAtCorners && rows.location == Location::Node;
        const FieldRows own =
            toCorners ? rows.atCorners(family.elements, mesh_) : rows.ofFamily(family.elements, mesh_);
        if (own.items.empty()) continue;
        if (auto written = writeFamily(target, *family.results, own, values, family.isAtCorners); !written)
            return written;
    }
    return {};
}

Result<void> MeshResults::writeFamily(const FieldTarget& target, const ResultFamily& family,
                                      const FieldRows& rows, const FieldValues& values, bool isTurned) {
    const TensorPlaces& places = tensorComponents_ == 9 ? kNine : kSix;
    tables_.assign(kTensorParts, std::vector<float>(rows.first.size()));
    for (std::size_t c = 0; c < kTensorParts; ++c) {
        const bool isHalved = c >= 3 && target.kind == FieldTarget::EngineeringStrain;
        const double share = isHalved ? 0.25 : 0.5;
        for (std::size_t row = 0; row < rows.first.size(); ++row)
            tables_[c][row] =
                static_cast<float>(share * (double{values.values[rows.first[row] + places[c][0]]} +
                                            double{values.values[rows.first[row] + places[c][1]]}));
    }
    if (isTurned) turnToElements(rows);
    const auto items = nameItems(rows);
    if (!items) return items.error();
    const bool isStress = target.kind == FieldTarget::Stress;
    const unsigned base = family.base - (isStress ? 0 : kStressToStrain);
    for (const unsigned part : family.parts)
        if (auto written = writer_.writeTable(base + 1 + part, rows.location, tables_[part], *items);
            !written)
            return written;
    // As of results of a solver: the equivalent stress is that of the components that are kept, of strains
    // the part through the thickness counts, too.
    return writeDerived(isStress ? DerivedResult::VonMises : DerivedResult::EquivalentStrain,
                        base + family.equivalent, rows, *items,
                        isStress ? family.parts : std::span<const unsigned>(kAllParts));
}

void MeshResults::turnToElements(const FieldRows& rows) {
    std::size_t row = 0;
    for (const std::uint32_t element : rows.items) {
        const auto nodes = mesh_.nodesOf(element);
        std::array<std::array<double, 3>, 4> corners{};
        const std::size_t count = nodes.size() % 4 == 0 ? 4 : 3;
        for (std::size_t i = 0; i < count; ++i)
            corners[i] = mesh_.nodePositions[nodes[i]];
        double axes[3][3];
        if (!planarElementAxes(std::span(corners).first(count), axes)) {
            row += nodes.size();
            continue;
        }
        // Turning to global axes by the transposed axes is turning to those of the element.
        const double transposed[3][3] = {{axes[0][0], axes[1][0], axes[2][0]},
                                         {axes[0][1], axes[1][1], axes[2][1]},
                                         {axes[0][2], axes[1][2], axes[2][2]}};
        for (std::size_t i = 0; i < nodes.size(); ++i, ++row) {
            double tensor[kTensorParts];
            for (std::size_t c = 0; c < kTensorParts; ++c)
                tensor[c] = double{tables_[c][row]};
            fatigue::turnToGlobal(tensor, transposed);
            for (std::size_t c = 0; c < kTensorParts; ++c)
                tables_[c][row] = static_cast<float>(tensor[c]);
        }
    }
}

Result<void> MeshResults::writeDerived(DerivedResult kind, unsigned id, const FieldRows& rows,
                                       const std::string& items, std::span<const unsigned> kept) {
    derived_.resize(rows.first.size());
    double components[kTensorParts] = {};
    for (std::size_t row = 0; row < derived_.size(); ++row) {
        for (const unsigned c : kept)
            if (c < tables_.size()) components[c] = double{tables_[c][row]};
        derived_[row] = static_cast<float>(deriveResult(kind, components));
    }
    if (!std::ranges::all_of(derived_, [](float v) { return std::isfinite(v); }))
        return Error{current_ + " has values that are too large to form their equivalent or total"};
    return writer_.writeTable(id, rows.location, derived_, items);
}

/// The name of the list of items, made anew where no table had it; empty for all of them.
Result<std::string> MeshResults::nameItems(const FieldRows& rows) {
    const bool atNodes = rows.location == Location::Node;
    if (rows.items.size() == (atNodes ? mesh_.nodeNumbers : mesh_.elementNumbers).size())
        return std::string();
    const std::string name = (atNodes ? "nodes " : "elements ") + std::to_string(itemLists_.size() + 1);
    const auto [list, isNew] = itemLists_.insert({{rows.location, rows.items}, name});
    if (isNew)
        if (auto added = writer_.addItems(name, rows.location, rows.items); !added) return added.error();
    return list->second;
}

} // namespace workbench
