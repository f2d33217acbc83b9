#include "module/fatigue/InterfaceSections.h"

#include "module/fatigue/MergedTimeAxis.h"

#include <cmath>

namespace fatigue {
namespace {

std::int32_t count(std::size_t size) {
    return static_cast<std::int32_t>(size);
}
std::span<const double> pair(const CurvePoint& point) {
    return point;
}

bool writeOption(RecordWriter& records, std::string_view comment, std::int32_t option) {
    if (option < 0 || option > 3) return false;
    records.comment(comment);
    records.record(option + 1);
    return true;
}

void writeTimeAxis(RecordWriter& records, std::span<const LoadFunction> functions) {
    std::vector<double> times;
    for (const LoadFunction& function : functions)
        for (const CurvePoint& point : function.points)
            times.push_back(point[0]);
    const std::vector<double> axis = mergedTimeAxis(std::move(times));
    records.record(count(axis.size()));
    for (const double time : axis)
        records.record(time);
}

} // namespace

void writeFileName(RecordWriter& records, std::string_view nameField) {
    records.comment("* FileName");
    records.record(TextField{nameField});
}

void writeProgramType(RecordWriter& records, bool editionC) {
    records.comment("* Program Type ( vorta: 1, Nastran: 2 )");
    records.record(std::int32_t{editionC ? 2 : 1});
}

bool writeOptions(RecordWriter& records, const InterfaceOptions& options) {
    records.header(1, options.nodeCount, options.materialCount, options.typeCode);
    records.comment("* Analysis Set Data");
    records.record(options.analysisKey);
    if (!writeOption(records, "* Stress Option", options.stressOption)) return false;
    if (!writeOption(records, "* Strain Option", options.strainOption)) return false;
    records.comment("* Critical Plane Method Option");
    records.record(std::int32_t{0});
    records.comment("* Quick Rainflow Counting Option");
    records.record(std::int32_t{options.quickRainflow ? 1 : 0}, options.rainflowValue);
    records.comment(
        "* Output Request ( None, Goodman, Gerber, Soderberg, Morrow, SWT, Damage, Fatigue Life Cycle)");
    std::array<std::int32_t, 9> flags{};
    for (std::size_t i = 0; i < flags.size(); ++i)
        flags[i] = options.outputs[i] != 0;
    records.record(std::span<const std::int32_t>(flags));
    records.comment("* Infinite Life");
    records.record(options.infiniteLife);
    return true;
}

bool writeMaterial(RecordWriter& records, const StressLifeMaterial& material) {
    if (material.curveType != 0 && material.curveType != 1) return false;
    records.record(material.elasticModulus, material.secondStrength, material.firstStrength);
    if (material.curveType == 0) {
        records.record(std::int32_t{1});
        records.record(material.parameters[0], material.parameters[1]);
        return true;
    }
    records.record(std::int32_t{2});
    records.record(count(material.points.size()));
    for (const CurvePoint& point : material.points)
        records.record(pair(point));
    return true;
}

void writeMaterial(RecordWriter& records, const StrainLifeMaterial& m) {
    const double exponent = m.deriveHardeningExponent ? m.fatigueStrengthExponent / m.fatigueDuctilityExponent
                                                      : m.hardeningExponent;
    const double coefficient =
        m.deriveStrengthCoefficient
            ? m.fatigueStrengthCoefficient / std::pow(m.fatigueDuctilityCoefficient, exponent)
            : m.strengthCoefficient;
    records.record(m.elasticModulus, m.poissonRatio, exponent, coefficient, m.fatigueStrengthCoefficient,
                   m.fatigueStrengthExponent, m.fatigueDuctilityCoefficient, m.fatigueDuctilityExponent);
}

void writeCaseLoads(RecordWriter& records, std::span<const CaseLoad> loads,
                    std::span<const LoadFunction> functions, std::int32_t loadCycles) {
    std::size_t points = 0;
    for (const LoadFunction& function : functions)
        points += function.points.size();
    records.comment(
        "* Fatigue Load Size, Fatigue Curve Size, Fatigue Curve Field Size, Number of Load Cycles");
    records.record(count(loads.size()), count(functions.size()), loadCycles, count(points));
    records.comment("* Fatigue Load Function");
    for (const LoadFunction& function : functions) {
        records.record(function.number, count(function.points.size()));
        for (const CurvePoint& point : function.points)
            records.record(pair(point));
    }
    writeTimeAxis(records, functions);
    records.comment("* Fatigue Load");
    for (const CaseLoad& load : loads)
        records.record(load.caseKey, load.factor, load.functionNumber);
}

void writeStepLoads(RecordWriter& records, std::size_t steps, std::int32_t loadCycles, bool withComment) {
    if (withComment) records.comment("* Fatigue Load");
    records.record(std::int32_t{0}, std::int32_t{0}, loadCycles, std::int32_t{0});
    records.record(count(steps));
    for (std::size_t step = 0; step < steps; ++step)
        records.record(static_cast<double>(step));
}

} // namespace fatigue
