#include "workbench/import/ResultImport.h"

#include "module/fatigue/TensorRotation.h"
#include "workbench/document/MeshPools.h"
#include "workbench/import/Names.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>

namespace workbench {
namespace {

std::string shortest(double value) {
    char text[32];
    const auto end = std::to_chars(text, text + sizeof text, value).ptr;
    return std::string(text, end);
}

constexpr std::size_t kMostComponents = 6; ///< of an entity of the result map

/// sqrt(3/2 s:s) of the deviator s of a symmetric tensor.
double vonMises(const double* t) {
    const double xy = t[0] - t[1], yz = t[1] - t[2], zx = t[2] - t[0];
    return std::sqrt(0.5 * (xy * xy + yz * yz + zx * zx) + 3 * (t[3] * t[3] + t[4] * t[4] + t[5] * t[5]));
}

/// Turns a symmetric tensor from global axes into those in the rows of `axes`: A S transpose(A).
void turnToLocal(double* t, const double axes[3][3]) {
    const double global[3][3] = {{t[0], t[3], t[5]}, {t[3], t[1], t[4]}, {t[5], t[4], t[2]}};
    double half[3][3];
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            half[i][j] = axes[i][0] * global[0][j] + axes[i][1] * global[1][j] + axes[i][2] * global[2][j];
    const auto local = [&](int i, int j) {
        return half[i][0] * axes[j][0] + half[i][1] * axes[j][1] + half[i][2] * axes[j][2];
    };
    const double turned[6] = {local(0, 0), local(1, 1), local(2, 2), local(0, 1), local(1, 2), local(2, 0)};
    std::copy(std::begin(turned), std::end(turned), t);
}

/// Procedures that leave nothing of a request for displacements and stresses.
bool isThermal(std::string_view procedure) {
    constexpr std::string_view kThermal[] = {"HEATTRANSFER", "ELECTROMAGNETICS"};
    return std::ranges::find(kThermal, procedure) != std::end(kThermal);
}

} // namespace

double deriveResult(DerivedResult kind, const double* c) {
    switch (kind) {
    case DerivedResult::Length:
        return std::sqrt(c[0] * c[0] + c[1] * c[1] + c[2] * c[2]);
    case DerivedResult::VonMises:
        return vonMises(c);
    // sqrt(2/3 e:e) is two thirds of sqrt(3/2 e:e).
    case DerivedResult::EquivalentStrain:
        return vonMises(c) * (2.0 / 3.0);
    case DerivedResult::None:
        break;
    }
    return 0;
}

ResultImport::ResultImport(resultfile::Writer& writer, const ResultMesh& mesh,
                           std::span<const SolverStep> steps, std::span<const std::string> caseNames,
                           std::string fileName, std::function<void(double)> progress)
    : writer_(writer)
    , mesh_(mesh)
    , steps_(steps)
    , caseNames_(caseNames)
    , fileName_(std::move(fileName))
    , progress_(std::move(progress))
    , nodes_(mesh.nodeNumbers)
    , expanded_(mesh)
    , space_(kMostComponents) {}

void ResultImport::warnOnce(const std::string& key, const std::string& text) {
    if (std::find(warnedKeys_.begin(), warnedKeys_.end(), key) != warnedKeys_.end()) return;
    warnedKeys_.push_back(key);
    warnings_.push_back(text);
}

Result<void> ResultImport::meshNodes(const FrdBlock& nodes) {
    if (expanded_.expects() || mesh_.solverAddsItems) return {};
    for (const std::int32_t number : nodes.nodes)
        if (nodes_.find(number) == NumberIndex::kNone)
            return Error{fileName_ + ": node " + std::to_string(number) +
                         " is not in the deck; the result file belongs to another deck"};
    return {};
}

Result<void> ResultImport::meshElement(const FrdElement& element) {
    const auto found =
        std::lower_bound(mesh_.elementNumbers.begin(), mesh_.elementNumbers.end(), element.number);
    if (found != mesh_.elementNumbers.end() && *found == element.number) {
        const auto position = static_cast<std::size_t>(found - mesh_.elementNumbers.begin());
        if (auto added = expanded_.add(position, element); !added)
            return Error{fileName_ + ": " + added.error().message};
        return {};
    }
    if (expanded_.addLayer(element) || mesh_.solverAddsItems) return {};
    return Error{fileName_ + ": element " + std::to_string(element.number) +
                 " is not in the deck; the result file belongs to another deck"};
}

bool ResultImport::wants(const FrdBlock& header) {
    const ResultMapRow* row = findResultRow(header.name);
    if (!row) {
        warnOnce(header.name, header.place + ": results " + header.name + " are not known and left out");
        return false;
    }
    if (std::equal(row->components.begin(), row->components.end(), header.components.begin(),
                   header.components.end()))
        return true;
    warnOnce(header.name, header.place + ": results " + header.name +
                              " are left out, since their components are " + listNames(header.components));
    return false;
}

Result<void> ResultImport::block(FrdBlock& block, std::uint64_t done, std::uint64_t total) {
    const ResultMapRow& row = *findResultRow(block.name);
    if (auto begun = beginStep(block); !begun) return begun;
    if (std::find(idsOfStep_.begin(), idsOfStep_.end(), row.firstId) != idsOfStep_.end()) {
        warnOnce("twice " + block.name, block.place + ": results " + block.name +
                                            " stand twice in the same increment; the first are kept");
        return {};
    }
    idsOfStep_.push_back(row.firstId);
    if (auto placed = placeRows(block); !placed) return placed;
    if (block.values.size() == kMostComponents) turnToGlobal(block);
    if (auto written = writeBlock(block, row); !written) return written;
    if (progress_ && total > 0) progress_(static_cast<double>(done) / static_cast<double>(total));
    return {};
}

Result<void> ResultImport::beginCasesUpTo(std::size_t count) {
    while (cases_.size() < count) {
        const std::string& name = caseNames_[cases_.size()];
        if (auto begun = writer_.beginCase(name); !begun) return begun;
        cases_.push_back({name, {}});
    }
    return {};
}

Result<void> ResultImport::beginStep(const FrdBlock& block) {
    const StepKey key{block.step, block.increment, block.mode, block.value};
    if (key == current_) return {};
    if (block.step < 1 || static_cast<std::size_t>(block.step) > steps_.size())
        return Error{block.place + ": these are results of step " + std::to_string(block.step) +
                     ", but the deck has " + std::to_string(steps_.size()) +
                     "; the result file belongs to another deck"};
    if (static_cast<std::size_t>(block.step) < cases_.size())
        return Error{block.place + ": results of step " + std::to_string(block.step) +
                     " follow those of step " + std::to_string(cases_.size())};
    if (auto begun = beginCasesUpTo(static_cast<std::size_t>(block.step)); !begun) return begun;
    current_ = key;
    idsOfStep_.clear();
    const std::string name = stepName(block);
    if (auto begun = writer_.beginStep(name, block.value); !begun) return begun;
    cases_.back().steps.push_back(name);
    return {};
}

std::string ResultImport::stepName(const FrdBlock& block) const {
    const std::string& procedure = steps_[static_cast<std::size_t>(block.step) - 1].procedure;
    const char* quantity = procedure == "STEADYSTATEDYNAMICS" ? "Frequency "
                           : procedure == "BUCKLE"            ? "Factor "
                                                              : "Time ";
    const std::string plain =
        block.mode > 0 ? "Mode " + std::to_string(block.mode) : quantity + shortest(block.value);
    const auto& taken = cases_.back().steps;
    std::string name = plain;
    for (int copy = 2; std::find(taken.begin(), taken.end(), name) != taken.end(); ++copy)
        name = plain + " (" + std::to_string(copy) + ")";
    return name;
}

Result<void> ResultImport::placeRows(const FrdBlock& block) {
    if (!meshComplete_ && !expanded_.finish())
        warnOnce("layers", fileName_ +
                               ": the layers of shells are not as many as in the deck; results of these "
                               "shells are left out");
    if (meshComplete_ && block.nodes == lastNodes_) return {};
    meshComplete_ = true;
    rows_ = ResultRows::of(mesh_, nodes_, expanded_, block.nodes);
    if (rows_.repeatedNode != 0)
        return Error{block.place + ": block " + block.name + " has values at node " +
                     std::to_string(rows_.repeatedNode) + " twice"};
    if (rows_.foreignNodes > 0) {
        const std::string node = std::to_string(rows_.firstForeignNode);
        if (!mesh_.solverAddsItems && !layered())
            return Error{block.place + ": block " + block.name + " has values at node " + node +
                         ", which is not in the deck"};
        warnOnce("foreign", block.place + ": values at " + std::to_string(rows_.foreignNodes) +
                                " nodes that the solver added (" + node + " is the first) are left out");
    }
    lastNodes_ = block.nodes;
    using resultfile::Location;
    for (NodeRows* rows : {&rows_.means, &rows_.sums(), &rows_.solids(), &rows_.planeStress,
                           &rows_.planeStrain, &rows_.axisymmetric})
        if (auto named = nameItems(rows->items, Location::Node, rows->positions, mesh_.nodeNumbers.size());
            !named)
            return named;
    for (CornerRows* rows : {&rows_.plates, &rows_.membranes})
        if (auto named =
                nameItems(rows->items, Location::ElementCorner, rows->elements, mesh_.elementNumbers.size());
            !named)
            return named;
    return {};
}

/// Tables that lack items of the mesh follow a list of those that they have.
Result<void> ResultImport::nameItems(std::string& name, resultfile::Location location,
                                     std::span<const std::uint32_t> positions, std::size_t all) {
    name.clear();
    if (positions.size() == all || positions.empty()) return {};
    for (const ItemList& list : itemLists_)
        if (list.location == location && std::ranges::equal(list.positions, positions)) {
            name = list.name;
            return {};
        }
    name = (location == resultfile::Location::Node ? "nodes " : "elements ") +
           std::to_string(itemLists_.size() + 1);
    itemLists_.push_back({name, location, {positions.begin(), positions.end()}});
    return writer_.addItems(name, location, positions);
}

Result<void> ResultImport::writeBlock(const FrdBlock& block, const ResultMapRow& row) {
    switch (row.scope) {
    case ResultScope::Nodes:
        return writeAtNodes(block, row, rows_.means);
    case ResultScope::NodeTotals:
        return writeAtNodes(block, row, rows_.sums());
    case ResultScope::Solids:
        if (expanded_.expects())
            warnOnce("solids " + block.name,
                     block.place + ": results " + block.name +
                         (rows_.solids().positions.empty()
                              ? " are left out: the model has a place for them at solids only"
                              : " are kept at the nodes of solids only"));
        return writeAtNodes(block, row, rows_.solids());
    case ResultScope::Stress:
    case ResultScope::Strain:
        break;
    }
    return writeTensors(block, row);
}

bool ResultImport::orientationAxes(const RowOrientation& at, double axes[3][3]) {
    if (at.orientation == RowOrientation::kMixed) return false;
    const SolverOrientation& orientation = mesh_.orientations[at.orientation - 1u];
    if (!orientation.axesAt(mesh_.nodePositions[at.node], axes)) return false;
    const ElementFamily family = mesh_.elementFamilies[at.element];
    if (family != ElementFamily::Plate && family != ElementFamily::Membrane) return true;
    const double(*own)[3] = axesOf(at.element);
    return own && layOnSurface(own[2], axes);
}

void ResultImport::turnToGlobal(FrdBlock& block) {
    std::size_t unknown = 0;
    for (std::size_t row = 0; row < rows_.orientations.size(); ++row) {
        const RowOrientation& at = rows_.orientations[row];
        if (at.orientation == 0) continue;
        double axes[3][3];
        if (!orientationAxes(at, axes)) {
            ++unknown;
            continue;
        }
        double tensor[kMostComponents];
        for (std::size_t c = 0; c < kMostComponents; ++c)
            tensor[c] = static_cast<double>(block.values[c][row]);
        fatigue::turnToGlobal(tensor, axes);
        for (std::size_t c = 0; c < kMostComponents; ++c)
            block.values[c][row] = static_cast<float>(tensor[c]);
    }
    if (unknown > 0)
        warnOnce("orientations", block.place + ": " + std::to_string(unknown) +
                                     " values stand in axes of orientations that differ or are not followed "
                                     "(GLOBAL=NO); they are stored as they stand");
}

Result<void> ResultImport::writeAtNodes(const FrdBlock& block, const ResultMapRow& row,
                                        const NodeRows& rows) {
    if (rows.positions.empty()) return {};
    unsigned id = row.firstId;
    tables_.clear();
    for (std::size_t c = 0; c < block.values.size(); ++c) {
        tables_.push_back(rows.valuesOf(block.values[c], space_[c]));
        if (auto written = writer_.writeTable(id++, resultfile::Location::Node, tables_.back(), rows.items);
            !written)
            return written;
    }
    if (row.derived == DerivedResult::None) return {};
    return writeDerived(block, row, row.derivedId, resultfile::Location::Node, rows.items, {});
}

Result<void> ResultImport::writeTensors(const FrdBlock& block, const ResultMapRow& row) {
    const std::pair<const ResultFamily*, const NodeRows*> atNodes[] = {
        {&kSolidFamily, &rows_.solids()},
        {&kPlaneStressFamily, &rows_.planeStress},
        {&kPlaneStrainFamily, &rows_.planeStrain},
        {&kAxisymmetricFamily, &rows_.axisymmetric}};
    for (const auto& [family, rows] : atNodes)
        if (auto written = writeFamily(block, row, *family, *rows); !written) return written;
    struct AtCorners {
        const ResultFamily* family;
        const CornerRows* rows;
        double upperShare;
    };
    const AtCorners atCorners[] = {{&kPlateTopFamily, &rows_.plates, 1},
                                   {&kPlateBottomFamily, &rows_.plates, 0},
                                   {&kMembraneFamily, &rows_.membranes, 0.5}};
    for (const AtCorners& one : atCorners)
        if (auto written = writeCorners(block, row, *one.family, *one.rows, one.upperShare); !written)
            return written;
    if (rows_.lines > 0)
        warnOnce("lines", block.place + ": stresses and strains of " + std::to_string(rows_.lines) +
                              (rows_.lines == 1 ? " beam or truss element" : " beam and truss elements") +
                              " are left out: the model has no place for them");
    if (rows_.flatPlates > 0)
        warnOnce("flat", block.place + ": stresses and strains of " + std::to_string(rows_.flatPlates) +
                             " shell elements are left out: OUTPUT=2D averages their faces, which takes the "
                             "bending away; ask the solver for OUTPUT=3D");
    return {};
}

Result<void> ResultImport::writeFamily(const FrdBlock& block, const ResultMapRow& row,
                                       const ResultFamily& family, const NodeRows& rows) {
    if (rows.positions.empty()) return {};
    tables_.clear();
    for (std::size_t c = 0; c < block.values.size(); ++c)
        tables_.push_back(rows.valuesOf(block.values[c], space_[c]));
    return writeParts(block, row, family, resultfile::Location::Node, rows.items);
}

Result<void> ResultImport::writeCorners(const FrdBlock& block, const ResultMapRow& row,
                                        const ResultFamily& family, const CornerRows& rows,
                                        double upperShare) {
    if (rows.elements.empty()) return {};
    for (auto& table : space_)
        table.resize(rows.pairs.size());
    std::size_t at = 0;
    for (const std::uint32_t element : rows.elements) {
        const auto nodes = mesh_.nodesOf(element);
        const double(*axes)[3] = axesOf(element);
        for (std::size_t i = 0; i < nodes.size(); ++i, ++at) {
            const auto [lower, upper] = rows.pairs[at];
            double tensor[kMostComponents];
            for (std::size_t c = 0; c < kMostComponents; ++c)
                tensor[c] = (1 - upperShare) * static_cast<double>(block.values[c][lower]) +
                            upperShare * static_cast<double>(block.values[c][upper]);
            if (axes) turnToLocal(tensor, axes);
            for (std::size_t c = 0; c < kMostComponents; ++c)
                space_[c][at] = static_cast<float>(tensor[c]);
        }
    }
    tables_.assign(space_.begin(), space_.end());
    return writeParts(block, row, family, resultfile::Location::ElementCorner, rows.items);
}

/// The axes of a planar element; null, and the tensor stays as it is, where it has none.
const double (*ResultImport::axesOf(std::size_t element))[3] {
    std::array<std::array<double, 3>, 4> corners{};
    const auto type = static_cast<ElementType>(mesh_.elementTypes[element]);
    const std::size_t count = type == ElementType::Tri3 || type == ElementType::Tri6 ? 3 : 4;
    for (std::size_t i = 0; i < count; ++i)
        corners[i] = mesh_.nodePositions[mesh_.nodesOf(element)[i]];
    return planarElementAxes(std::span(corners).first(count), axes_) ? axes_ : nullptr;
}

Result<void> ResultImport::writeParts(const FrdBlock& block, const ResultMapRow& row,
                                      const ResultFamily& family, resultfile::Location location,
                                      const std::string& items) {
    const bool strain = row.scope == ResultScope::Strain;
    const unsigned base = family.base - (strain ? kStressToStrain : 0);
    for (const unsigned part : family.parts)
        if (auto written = writer_.writeTable(base + 1 + part, location, tables_[part], items); !written)
            return written;
    // The equivalent stress is that of the components that are kept. Strains have a part through the
    // thickness that plates and plane stress do not keep; it counts.
    static constexpr unsigned kAll[] = {0, 1, 2, 3, 4, 5};
    return writeDerived(block, row, base + family.equivalent, location, items,
                        strain ? std::span<const unsigned>(kAll) : family.parts);
}

/// Of tensors only the components `kept` count, all of them where it is empty.
Result<void> ResultImport::writeDerived(const FrdBlock& block, const ResultMapRow& row, unsigned id,
                                        resultfile::Location location, const std::string& items,
                                        std::span<const unsigned> kept) {
    const std::size_t count = tables_.front().size();
    derived_.resize(count);
    double components[kMostComponents] = {};
    bool counts[kMostComponents] = {};
    for (std::size_t c = 0; c < tables_.size(); ++c)
        counts[c] = kept.empty() || std::ranges::find(kept, c) != kept.end();
    for (std::size_t i = 0; i < count; ++i) {
        for (std::size_t c = 0; c < tables_.size(); ++c)
            components[c] = counts[c] ? static_cast<double>(tables_[c][i]) : 0.0;
        derived_[i] = static_cast<float>(deriveResult(row.derived, components));
    }
    const auto bad =
        std::find_if(derived_.begin(), derived_.end(), [](float v) { return !std::isfinite(v); });
    if (bad != derived_.end())
        return Error{block.place + ": the values of block " + block.name +
                     " are too large to form their equivalent or total"};
    return writer_.writeTable(id, location, derived_, items);
}

Result<void> ResultImport::finish() {
    if (auto begun = beginCasesUpTo(caseNames_.size()); !begun) return begun;
    const bool hasAny =
        std::any_of(cases_.begin(), cases_.end(), [](const auto& c) { return !c.steps.empty(); });
    if (!hasAny) return Error{"the solver left no results: " + fileName_ + " holds none"};
    for (std::size_t i = 0; i < cases_.size(); ++i) {
        if (!cases_[i].steps.empty()) continue;
        const std::string text =
            "has no results of step " + std::to_string(i + 1) + " ('" + cases_[i].name + "')";
        if (steps_[i].requestsResults && !isThermal(steps_[i].procedure))
            return Error{"the solver left no results: " + fileName_ + " " + text +
                         ", which asks for some at " + steps_[i].place};
        warnings_.push_back(fileName_ + ": the file " + text);
    }
    return {};
}

} // namespace workbench
