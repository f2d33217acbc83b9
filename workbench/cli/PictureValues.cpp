#include "workbench/cli/PictureValues.h"

#include "framework/text/CodePage.h"
#include "host/ElementTypes.h"
#include "host/QMUnitCtrl.h"
#include "module/stability/SafetyRate.h"
#include "resultfile/FatigueComponents.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/ResultQuery.h"

#include <algorithm>
#include <limits>

namespace workbench::cli {
namespace {

constexpr std::array<unsigned, 3> kDisplacements{101, 102, 103};

enum class Family { Any, Solid, Planar };

/// By the first two of the six digits of a tensor component; edition C has other numbers for the same.
Family familyOf(unsigned id) {
    if (const unsigned source = sourceOfAlias(id)) id = source;
    switch (id / 10000) {
    case 31:
        return Family::Solid;
    case 41:
    case 42:
    case 43:
    case 45:
    case 48:
        return Family::Planar;
    default:
        return Family::Any;
    }
}

} // namespace

bool isSpreadWidely(unsigned id) {
    return id >= resultfile::fatigue::kDamage && id < resultfile::fatigue::kEquivalentAmplitude;
}

bool smallestIsWorst(unsigned id) {
    const bool isLife = id >= resultfile::fatigue::kLife && id < resultfile::fatigue::kEquivalentAmplitude;
    return isLife || id == safety::kFactor;
}

double shownFactor(unsigned id) {
    const ComponentName* component = findComponent(id);
    return CQMUnitCtrl::GetConvertFactorCurrent(component ? component->unitKind : UnitKind::None);
}

Result<std::vector<float>> shownValues(CVResult& table, const T_QM_MESH_D& mesh) {
    auto values = nodalValues(table, mesh);
    if (!values) return values;
    const unsigned id = table.GetId();
    const double factor = shownFactor(id);
    for (float& value : *values)
        value = id == safety::kFactor && value == stability::kUndefinedRate
                    ? std::numeric_limits<float>::quiet_NaN()
                    : static_cast<float>(value * factor);
    return values;
}

ContourPicture describedPicture(const WorkbenchHost& host, CVResult& table) {
    const unsigned id = table.GetId();
    const ComponentName* component = findComponent(id);
    const std::string unit = unitLabel(component ? component->unitKind : UnitKind::None, host.currentUnits());
    ContourPicture picture;
    picture.valueTitle = componentName(id, host.language()) + (unit.empty() ? "" : " [" + unit + "]");
    picture.titleLines = {framework::toUtf8(table.GetAnalysis()->GetName()),
                          framework::toUtf8(table.GetCase()->GetName()) + " : " +
                              framework::toUtf8(table.GetVCase()->GetName())};
    picture.valueScale = isSpreadWidely(id) ? ValueScale::Logarithmic : ValueScale::Linear;
    if (host.language() == Language::Korean) picture.words = {"최대", "최소", "값 없음", "뒤쪽", "변형"};
    return picture;
}

Result<std::vector<std::array<float, 3>>> displacementsOf(CPOHVCase& step, const T_QM_MESH_D& mesh) {
    std::vector<std::array<float, 3>> vectors(mesh.nodeCount());
    for (std::size_t c = 0; c < kDisplacements.size(); ++c) {
        CVResult* table = step.GetVResult(kDisplacements[c]);
        if (!table)
            return Error{
                "step \"" + framework::toUtf8(step.GetName()) +
                "\" has no displacements (components 101 to 103), which a deformed shape needs: leave "
                "--deform out or choose a step that has them"};
        const auto values = nodalValues(*table, mesh);
        if (!values) return values.error();
        for (std::size_t node = 0; node < vectors.size(); ++node)
            vectors[node][c] = (*values)[node];
    }
    return vectors;
}

std::vector<std::uint8_t> valuedElements(const T_RESULT_TABLE_D& table, const T_QM_MESH_D& mesh) {
    std::vector<std::uint8_t> valued;
    if (table.location == ResultLocation::ElementCorner) {
        if (table.items.empty()) return valued;
        valued.assign(mesh.elementCount(), 0);
        for (const std::uint32_t element : table.items)
            valued[element] = 1;
        return valued;
    }
    const Family family = familyOf(table.id);
    if (family == Family::Any) return valued;
    for (const std::uint8_t type : mesh.elementTypes)
        valued.push_back(family == Family::Solid ? isSolidElement(type) : isPlanarElement(type));
    return valued;
}

} // namespace workbench::cli
