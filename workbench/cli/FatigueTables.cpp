#include "workbench/cli/FatigueTables.h"

#include "framework/text/CodePage.h"
#include "resultfile/FatigueComponents.h"
#include "workbench/cli/Output.h"
#include "workbench/results/ResultQuery.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace workbench::cli {
namespace {

using resultfile::fatigue::componentId;
using resultfile::fatigue::kCorrections;

constexpr int kMeasures = 4;
constexpr const char* kMeasureNames[kMeasures][2] = {{"absolute maximum principal", "절대 최대 주응력"},
                                                     {"signed von Mises", "부호 von Mises"},
                                                     {"signed Tresca", "부호 Tresca"},
                                                     {"critical plane", "임계면"}};

std::string measureName(const tagTFatg& definition, Language language) {
    const bool stressLife = definition.fatigueType == FatigueType::StressLifeCases ||
                            definition.fatigueType == FatigueType::StressLifeSteps;
    const int measure = stressLife ? definition.stressOption : definition.strainOption;
    return measure >= 0 && measure < kMeasures ? kMeasureNames[measure][language == Language::Korean] : "";
}

std::string shortNumber(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", static_cast<double>(value));
    return text;
}

std::string title(const FatigueColumn& column, Language language) {
    const bool korean = language == Language::Korean;
    const char* quantity = column.damage ? (korean ? "손상도 " : "damage ") : (korean ? "수명 " : "life ");
    return std::string(quantity) + kCorrections[column.correction];
}

/// How bad a node is: its largest damage, or without damages its shortest life negated.
std::vector<float> severity(const FatigueResult& result) {
    const bool anyDamage = std::ranges::any_of(result.columns, &FatigueColumn::damage);
    std::vector<float> worst(result.columns.front().values.size(), std::numeric_limits<float>::quiet_NaN());
    for (const FatigueColumn& column : result.columns) {
        if (column.damage != anyDamage) continue;
        for (std::size_t node = 0; node < worst.size(); ++node) {
            const float value = anyDamage ? column.values[node] : -column.values[node];
            if (!(worst[node] >= value)) worst[node] = value;
        }
    }
    return worst;
}

/// The worst value of a correction and its node; life where there is one, else damage.
std::string worstOf(const FatigueResult& result, unsigned correction, const T_QM_MESH_D& mesh) {
    const FatigueColumn* chosen = nullptr;
    for (const FatigueColumn& column : result.columns)
        if (column.correction == correction && (!chosen || !column.damage)) chosen = &column;
    if (!chosen) return "-";
    const auto worst = worstNodes(chosen->values, 1, chosen->damage);
    if (worst.empty()) return "-";
    return (chosen->damage ? "D " : "") + shortNumber(chosen->values[worst[0]]) + " @" +
           std::to_string(mesh.nodeNumbers[worst[0]]);
}

} // namespace

Result<FatigueResult> readFatigueResult(Document& document, const tagTFatg& definition, Language language) {
    FatigueResult result;
    result.definition = framework::toUtf8(definition.name);
    result.measure = measureName(definition, language);
    tagTVXMcas analysis;
    if (document.database().Pool<DPoolVXMcas>()->Get(definition.resultAnalysisKey, analysis))
        result.resultAnalysis = framework::toUtf8(analysis.name);
    const auto step = findStep(document.results(), result.resultAnalysis, "", "");
    if (!step) return step.error();
    for (unsigned correction = 0; correction < kCorrections.size(); ++correction)
        for (const bool damage : {true, false}) {
            using namespace resultfile::fatigue;
            const unsigned id = componentId(damage ? kDamage : kLife, correction);
            CVResult* table = (*step)->GetVResult(id);
            if (!table) continue;
            auto values = nodalValues(*table, document.database().mesh());
            if (!values) return values.error();
            result.columns.push_back({id, correction, damage, std::move(*values)});
        }
    if (result.columns.empty())
        return Error{"the result \"" + result.resultAnalysis + "\" holds neither damage nor life"};
    return result;
}

std::vector<std::uint32_t> mostDamagedNodes(const FatigueResult& result, std::size_t count) {
    return worstNodes(severity(result), count, true);
}

std::string nodeTable(const FatigueResult& result, const T_QM_MESH_D& mesh,
                      const std::vector<std::uint32_t>& nodes, Language language) {
    std::vector<std::string> header{language == Language::Korean ? "절점" : "node", "x", "y", "z"};
    for (const FatigueColumn& column : result.columns)
        header.push_back(title(column, language));
    TextTable table(std::move(header));
    for (const std::uint32_t node : nodes) {
        std::vector<std::string> cells{std::to_string(mesh.nodeNumbers[node])};
        for (const double coordinate : mesh.nodePositions[node])
            cells.push_back(shortNumber(static_cast<float>(coordinate)));
        for (const FatigueColumn& column : result.columns)
            cells.push_back(shortNumber(column.values[node]));
        table.add(std::move(cells));
    }
    return table.text();
}

std::string comparisonTable(const std::vector<FatigueResult>& results, const T_QM_MESH_D& mesh,
                            Language language) {
    std::vector<unsigned> corrections;
    for (const FatigueResult& result : results)
        for (const FatigueColumn& column : result.columns)
            corrections.push_back(column.correction);
    std::ranges::sort(corrections);
    corrections.erase(std::ranges::unique(corrections).begin(), corrections.end());

    const bool korean = language == Language::Korean;
    std::vector<std::string> header{korean ? "정의" : "definition", korean ? "척도" : "measure"};
    for (const unsigned correction : corrections)
        header.emplace_back(kCorrections[correction]);
    TextTable table(std::move(header));
    for (const FatigueResult& result : results) {
        std::vector<std::string> cells{result.definition, result.measure};
        for (const unsigned correction : corrections)
            cells.push_back(worstOf(result, correction, mesh));
        table.add(std::move(cells));
    }
    return table.text();
}

} // namespace workbench::cli
