#include "solver/DefinitionText.h"

#include "solver/NumberText.h"

#include <algorithm>
#include <array>

namespace solver {
namespace {

/// Lines of one list; what comes behind them is only counted.
constexpr std::size_t kMostLines = 20;

/// describe(i) for the first of `count` things, a line each.
template <class Describe>
void list(std::ostream& out, std::size_t count, const char* things, Describe&& describe) {
    for (std::size_t i = 0; i < std::min(count, kMostLines); ++i)
        out << describe(i) << '\n';
    if (count > kMostLines) out << "... and " << count - kMostLines << ' ' << things << " more\n";
}

std::string plural(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

std::string curveText(const StressLifeMaterial& material) {
    if (!material.tabulated)
        return "Basquin curve " + shortNumber(material.basquin[0]) + " x N ^ " +
               shortNumber(material.basquin[1]);
    std::string text = "tabulated curve, " + plural(material.points.size(), "point", "points");
    if (material.points.empty()) return text;
    const CurvePoint &first = material.points.front(), &last = material.points.back();
    return text + " from " + shortNumber(first.amplitude) + " at " + shortNumber(first.cycles) +
           " cycles to " + shortNumber(last.amplitude) + " at " + shortNumber(last.cycles);
}

std::string stressLifeText(const StressLifeMaterial& material) {
    return "elastic modulus " + shortNumber(material.modulus) + ", ultimate strength " +
           shortNumber(material.ultimateStrength) + ", yield strength " +
           shortNumber(material.yieldStrength) + ", " + curveText(material);
}

std::string strainLifeText(const StrainLifeMaterial& m) {
    return "elastic modulus " + shortNumber(m.modulus) + ", n' " + shortNumber(m.cyclicHardeningExponent) +
           ", K' " + shortNumber(m.cyclicStrengthCoefficient) + ", sigma_f' " +
           shortNumber(m.fatigueStrengthCoefficient) + ", b " + shortNumber(m.fatigueStrengthExponent) +
           ", eps_f' " + shortNumber(m.fatigueDuctilityCoefficient) + ", c " +
           shortNumber(m.fatigueDuctilityExponent);
}

std::string functionText(const LoadFunction& f) {
    const auto [low, high] = std::minmax_element(f.values.begin(), f.values.end());
    return "Load function " + std::to_string(f.number) + ": " + plural(f.times.size(), "point", "points") +
           ", times " + shortNumber(f.times.front()) + " to " + shortNumber(f.times.back()) + ", values " +
           shortNumber(*low) + " to " + shortNumber(*high);
}

std::string outputsText(const Definition& definition) {
    constexpr std::array<const char*, 3> kNames{"damage", "life", "equivalent amplitude"};
    std::string text;
    for (std::size_t i = 0; i < kNames.size(); ++i)
        if (definition.outputs[i]) text += (text.empty() ? "" : ", ") + std::string(kNames[i]);
    return text.empty() ? "nothing" : text;
}

void describeMaterials(const Definition& d, std::ostream& out) {
    const auto name = [](std::size_t i) { return "Material " + std::to_string(i + 1) + ": "; };
    if (isStressLife(d.type))
        list(out, d.stressLifeMaterials.size(), "materials",
             [&](std::size_t i) { return name(i) + stressLifeText(d.stressLifeMaterials[i]); });
    else
        list(out, d.strainLifeMaterials.size(), "materials",
             [&](std::size_t i) { return name(i) + strainLifeText(d.strainLifeMaterials[i]); });
}

void describeLoads(const Definition& d, std::ostream& out) {
    list(out, d.functions.size(), "load functions",
         [&](std::size_t i) { return functionText(d.functions[i]); });
    list(out, d.loads.size(), "load entries", [&](std::size_t i) {
        const LoadEntry& load = d.loads[i];
        return "Load entry " + std::to_string(i + 1) + ": result case " + std::to_string(load.caseKey) +
               " x " + shortNumber(load.factor) + " by load function " +
               std::to_string(d.functions[load.function].number);
    });
    if (isCaseBased(d.type)) out << "Times on the merged axis: " << d.times.size() << '\n';
}

} // namespace

std::string typeText(const Definition& definition) {
    std::string text = isStressLife(definition.type)                           ? "stress-life"
                       : definition.type == AnalysisType::StressAndStrainSteps ? "stress and strain together"
                                                                               : "strain-life";
    const std::size_t count = definition.loadsPerNode();
    return text + " over " +
           (isCaseBased(definition.type) ? plural(count, "load entry", "load entries")
                                         : plural(count, "step", "steps"));
}

void describeDefinition(const Definition& d, std::ostream& out) {
    out << "Type: " << typeText(d) << ", blocks: " << d.loadCycleCount << '\n';
    out << "Counting: "
        << (d.quickRainflow
                ? "cycles below " + std::to_string(d.rainflowValue) + " % of the largest range are left out"
                : "all cycles")
        << '\n';
    out << "Results: " << outputsText(d) << "; infinite life: " << shortNumber(d.infiniteLife) << " cycles\n";
    describeMaterials(d, out);
    describeLoads(d, out);
}

} // namespace solver
