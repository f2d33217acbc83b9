#include "solver/InterfaceReader.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>

namespace solver {
namespace {

constexpr std::uint32_t kNameBytes = 1024;
constexpr std::uint32_t kStressLifeBytes = 24;
constexpr std::uint32_t kStrainLifeBytes = 64;
constexpr std::int32_t kAny = std::numeric_limits<std::int32_t>::max();
/// Times of the functions that are closer than 1e-9 stand once on the axis; some room for rounding on top.
constexpr double kAxisTolerance = 1e-8;

std::string number(double value) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

/// True when some time of the axis stands for each of the ascending `times`.
bool axisCovers(const std::vector<double>& axis, const std::vector<double>& times) {
    std::size_t i = 0;
    for (const double time : times) {
        while (i + 1 < axis.size() && std::abs(axis[i + 1] - time) <= std::abs(axis[i] - time))
            ++i;
        if (std::abs(axis[i] - time) > kAxisTolerance) return false;
    }
    return true;
}

/// Zero when all six values are finite, else not a number.
double finiteProbe(const Tensor& tensor) {
    double probe = 0;
    for (const double value : tensor)
        probe += value * 0.0;
    return probe;
}

} // namespace

void NodeBatch::clear() {
    numbers.clear();
    materialEnds.clear();
    materials.clear();
    tensors.clear();
}

bool InterfaceReader::expect(std::string_view what, std::int32_t value, std::int32_t expected) {
    if (value == expected) return true;
    return records_.fail(std::string(what) + " is " + std::to_string(value) + ", expected " +
                         std::to_string(expected));
}

bool InterfaceReader::within(std::string_view what, std::int32_t value, std::int32_t low, std::int32_t high) {
    if (value >= low && value <= high) return true;
    const std::string range =
        high == kAny ? std::to_string(low) + " or more" : std::to_string(low) + " to " + std::to_string(high);
    return records_.fail(std::string(what) + " is " + std::to_string(value) + ", expected " + range);
}

bool InterfaceReader::readFlag(std::string_view what, bool& flag) {
    const std::int32_t value = records_.integer();
    flag = value == 1;
    return within(what, value, 0, 1);
}

bool InterfaceReader::readFinite(std::string_view what, double& value) {
    value = records_.real();
    return std::isfinite(value) || records_.fail(std::string(what) + " is not a finite number");
}

Result<Definition> InterfaceReader::readDefinition() {
    const bool good =
        readOptions() && readMaterials() && (isCaseBased(definition_.type) ? readCaseLoads() : readSteps());
    if (!good) return records_.error();
    return definition_;
}

bool InterfaceReader::readOptions() {
    Definition& d = definition_;
    if (!records_.open("file name", kNameBytes)) return false;
    const std::string_view name = records_.bytes(kNameBytes);
    d.resultFileStem = name.substr(0, name.find('\0'));
    if (d.resultFileStem.empty()) return records_.fail("the result file name is empty");

    if (!records_.open("program type", 4)) return false;
    d.programType = records_.integer();
    if (!within("the program type", d.programType, 1, 2)) return false;

    if (!records_.open("header", 16)) return false;
    if (!expect("its first value", records_.integer(), 1)) return false;
    d.nodeCount = records_.integer();
    d.materialCount = records_.integer();
    const std::int32_t type = records_.integer();
    if (!within("the number of nodes", d.nodeCount, 1, kAny) ||
        !within("the number of materials", d.materialCount, 1, kAny) ||
        !within("the analysis type", type, 0, 4))
        return false;
    d.type = static_cast<AnalysisType>(type);

    if (!records_.open("analysis", 4)) return false;
    d.analysisKey = records_.integer();
    if (!records_.open("stress option", 4)) return false;
    d.stressOption = records_.integer();
    if (!within("the stress option", d.stressOption, 1, 4)) return false;
    if (!records_.open("strain option", 4)) return false;
    d.strainOption = records_.integer();
    if (!within("the strain option", d.strainOption, 1, 4)) return false;
    if (!records_.open("critical plane method", 4)) return false;
    if (!expect("the method", records_.integer(), 0)) return false;

    if (!records_.open("quick rainflow counting", 8)) return false;
    if (!readFlag("the flag", d.quickRainflow)) return false;
    d.rainflowValue = records_.integer();
    if (d.quickRainflow && !within("the per cent of the largest range", d.rainflowValue, 0, 100))
        return false;

    if (!records_.open("output request", 36)) return false;
    for (bool& flag : d.corrections)
        if (!readFlag("a mean-stress flag", flag)) return false;
    if (!isStressLife(d.type) && (d.corrections[4] || d.corrections[5]))
        return records_.fail("the fifth or sixth mean-stress flag is set, but strain-life has four");
    for (bool& flag : d.outputs)
        if (!readFlag("an output flag", flag)) return false;

    if (!records_.open("infinite life", 8)) return false;
    if (!readFinite("the infinite life", d.infiniteLife)) return false;
    return d.infiniteLife > 0 ||
           records_.fail("the infinite life is " + number(d.infiniteLife) + " cycles, expected more than 0");
}

bool InterfaceReader::readMaterials() {
    const bool stressLife = isStressLife(definition_.type);
    const std::uint32_t groupBytes = stressLife ? kStressLifeBytes : kStrainLifeBytes;
    if (!records_.fits("materials", static_cast<std::uint64_t>(definition_.materialCount), groupBytes))
        return false;
    for (std::int32_t i = 0; i < definition_.materialCount; ++i)
        if (!(stressLife ? readStressLifeMaterial() : readStrainLifeMaterial())) return false;
    // No load section starts with a record of this length.
    if (records_.peekLength() == static_cast<std::int32_t>(groupBytes))
        return records_.fail("another material follows, but the header announces " +
                             std::to_string(definition_.materialCount) +
                             "; is a material listed twice in the fatigue definition?");
    return true;
}

bool InterfaceReader::readStressLifeMaterial() {
    StressLifeMaterial material;
    if (!records_.open("material strengths", kStressLifeBytes)) return false;
    if (!readFinite("the elastic modulus", material.modulus) ||
        !readFinite("the ultimate strength", material.ultimateStrength) ||
        !readFinite("the yield strength", material.yieldStrength))
        return false;

    if (!records_.open("curve type", 4)) return false;
    const std::int32_t curveType = records_.integer();
    if (!within("the curve type", curveType, 1, 2)) return false;
    material.tabulated = curveType == 2;
    if (!material.tabulated) {
        if (!records_.open("curve parameters", 16)) return false;
        for (double& parameter : material.basquin)
            if (!readFinite("a curve parameter", parameter)) return false;
    } else {
        if (!records_.open("curve point count", 4)) return false;
        const std::int32_t count = records_.integer();
        if (!within("the number of points", count, 0, kAny)) return false;
        if (!records_.fits("curve points", static_cast<std::uint64_t>(count), 16)) return false;
        material.points.resize(static_cast<std::size_t>(count));
        for (CurvePoint& point : material.points) {
            if (!records_.open("curve point", 16)) return false;
            if (!readFinite("the number of cycles", point.cycles) ||
                !readFinite("the stress amplitude", point.amplitude))
                return false;
        }
    }
    definition_.stressLifeMaterials.push_back(std::move(material));
    return true;
}

bool InterfaceReader::readStrainLifeMaterial() {
    StrainLifeMaterial m;
    if (!records_.open("strain-life material", kStrainLifeBytes)) return false;
    for (double* value :
         {&m.modulus, &m.secondElasticConstant, &m.cyclicHardeningExponent, &m.cyclicStrengthCoefficient,
          &m.fatigueStrengthCoefficient, &m.fatigueStrengthExponent, &m.fatigueDuctilityCoefficient,
          &m.fatigueDuctilityExponent})
        if (!readFinite("a material value", *value)) return false;
    definition_.strainLifeMaterials.push_back(m);
    return true;
}

bool InterfaceReader::readCaseLoads() {
    if (!records_.open("fatigue load sizes", 16)) return false;
    const std::int32_t entries = records_.integer();
    const std::int32_t functions = records_.integer();
    definition_.loadCycleCount = records_.integer();
    const std::int32_t points = records_.integer();
    if (!within("the number of load entries", entries, 1, kAny) ||
        !within("the number of load functions", functions, 1, entries) ||
        !within("the number of load cycles", definition_.loadCycleCount, 1, kAny) ||
        !within("the number of load function points", points, functions, kAny))
        return false;
    if (!records_.fits("load function points", static_cast<std::uint64_t>(points), 16) ||
        !records_.fits("load entries", static_cast<std::uint64_t>(entries), 16))
        return false;

    std::int32_t pointsLeft = points;
    for (std::int32_t i = 0; i < functions; ++i)
        if (!readLoadFunction(pointsLeft)) return false;
    if (pointsLeft != 0)
        return records_.fail("the load functions have " + std::to_string(points - pointsLeft) +
                             " points, but their section announces " + std::to_string(points));
    if (!readTimeAxis(points)) return false;
    for (std::int32_t i = 0; i < entries; ++i)
        if (!readLoadEntry()) return false;
    return true;
}

bool InterfaceReader::readLoadFunction(std::int32_t& pointsLeft) {
    LoadFunction function;
    if (!records_.open("load function", 8)) return false;
    function.number = records_.integer();
    const std::int32_t count = records_.integer();
    if (!functionByNumber_.emplace(function.number, definition_.functions.size()).second)
        return records_.fail("load function " + std::to_string(function.number) + " comes twice");
    if (!within("its number of points", count, 1, pointsLeft)) return false;
    pointsLeft -= count;
    for (std::int32_t i = 0; i < count; ++i) {
        double time = 0, value = 0;
        if (!records_.open("load function point", 16)) return false;
        if (!readFinite("the time", time) || !readFinite("the value", value)) return false;
        if (i > 0 && time <= function.times.back())
            return records_.fail("time " + number(time) + " of load function " +
                                 std::to_string(function.number) +
                                 " does not lie behind the time before it, " + number(function.times.back()));
        function.times.push_back(time);
        function.values.push_back(value);
    }
    definition_.functions.push_back(std::move(function));
    return true;
}

bool InterfaceReader::readTimeAxis(std::int32_t totalPoints) {
    if (!records_.open("time count", 4)) return false;
    const std::int32_t count = records_.integer();
    if (!within("the number of times", count, 1, totalPoints)) return false;
    if (!records_.fits("times", static_cast<std::uint64_t>(count), 8)) return false;
    auto& times = definition_.times;
    for (std::int32_t i = 0; i < count; ++i) {
        double time = 0;
        if (!records_.open("time", 8)) return false;
        if (!readFinite("the time", time)) return false;
        if (i > 0 && time <= times.back())
            return records_.fail("time " + number(time) + " does not lie behind the time before it, " +
                                 number(times.back()));
        times.push_back(time);
    }
    for (const LoadFunction& function : definition_.functions)
        if (!axisCovers(times, function.times))
            return records_.fail("the times leave out a point of load function " +
                                 std::to_string(function.number));
    return true;
}

bool InterfaceReader::readLoadEntry() {
    LoadEntry entry;
    if (!records_.open("load entry", 16)) return false;
    entry.caseKey = records_.integer();
    if (!readFinite("the load factor", entry.factor)) return false;
    const std::int32_t function = records_.integer();
    const auto found = functionByNumber_.find(function);
    if (found == functionByNumber_.end())
        return records_.fail("it names load function " + std::to_string(function) +
                             ", which is not in the file");
    entry.function = found->second;
    definition_.loads.push_back(entry);
    return true;
}

bool InterfaceReader::readSteps() {
    if (!records_.open("fatigue load sizes", 16)) return false;
    const std::int32_t first = records_.integer();
    const std::int32_t second = records_.integer();
    definition_.loadCycleCount = records_.integer();
    const std::int32_t fourth = records_.integer();
    if (!expect("its first value", first, 0) || !expect("its second value", second, 0) ||
        !within("the number of load cycles", definition_.loadCycleCount, 1, kAny) ||
        !expect("its fourth value", fourth, 0))
        return false;
    if (!records_.open("step count", 4)) return false;
    const std::int32_t count = records_.integer();
    if (!within("the number of steps", count, 1, kAny)) return false;
    if (!records_.fits("steps", static_cast<std::uint64_t>(count), 8)) return false;
    for (std::int32_t i = 0; i < count; ++i) {
        if (!records_.open("step", 8)) return false;
        const double position = records_.real();
        if (position != i)
            return records_.fail("the position of the step is " + number(position) + ", expected " +
                                 std::to_string(i));
    }
    definition_.stepCount = static_cast<std::size_t>(count);
    return true;
}

Result<void> InterfaceReader::readNodes(NodeBatch& batch, std::size_t maxNodes) {
    batch.clear();
    const auto nodeCount = static_cast<std::size_t>(definition_.nodeCount);
    while (nodesRead_ < nodeCount && batch.size() < maxNodes)
        if (!readNode(batch)) return records_.error();
    if (batch.size() == 0 && !records_.atEnd()) return records_.error();
    return {};
}

bool InterfaceReader::readNode(NodeBatch& batch) {
    if (!records_.open("node", 16)) return false;
    const std::int32_t node = records_.integer();
    const std::int32_t loads = records_.integer();
    const std::int32_t again = records_.integer();
    const std::int32_t materials = records_.integer();
    if (again != node)
        return records_.fail("the node number is " + std::to_string(node) + " at first and " +
                             std::to_string(again) + " the second time");
    if (nodesRead_ > 0 && node <= lastNode_)
        return records_.fail("node " + std::to_string(node) + " follows node " + std::to_string(lastNode_) +
                             "; the numbers must ascend");
    if (!expect("the number of loads", loads, static_cast<std::int32_t>(definition_.loadsPerNode())) ||
        !within("the number of materials", materials, 0, definition_.materialCount))
        return false;
    lastNode_ = node;
    ++nodesRead_;
    batch.numbers.push_back(node);
    return readNodeMaterials(batch, materials) && readNodeTensors(batch);
}

bool InterfaceReader::readNodeMaterials(NodeBatch& batch, std::int32_t count) {
    if (count > 0) {
        if (!records_.open("node materials", 4 * static_cast<std::uint32_t>(count))) return false;
        std::int32_t last = 0;
        for (std::int32_t i = 0; i < count; ++i) {
            const std::int32_t index = records_.integer();
            if (!within("a material index", index, 1, definition_.materialCount)) return false;
            if (index <= last) return records_.fail("the material indices do not ascend");
            batch.materials.push_back(static_cast<std::uint32_t>(index - 1));
            last = index;
        }
    }
    batch.materialEnds.push_back(static_cast<std::uint32_t>(batch.materials.size()));
    return true;
}

bool InterfaceReader::readNodeTensors(NodeBatch& batch) {
    const std::size_t tensorsPerLoad = definition_.tensorsPerLoad();
    const std::size_t keyBytes = isCaseBased(definition_.type) ? 4 : 0;
    const auto length = static_cast<std::uint32_t>(keyBytes + tensorsPerLoad * sizeof(Tensor));
    const std::size_t loads = definition_.loadsPerNode();
    if (!records_.fits("loads", loads, length)) return false;
    const std::size_t start = batch.tensors.size();
    batch.tensors.resize(start + loads * tensorsPerLoad);
    Tensor* tensor = batch.tensors.data() + start;
    double probe = 0;
    for (std::size_t load = 0; load < loads;) {
        const std::byte* payload = nullptr;
        const std::size_t count = records_.openRun("node load", length, loads - load, payload);
        if (count == 0) return false;
        for (const std::size_t end = load + count; load < end; ++load, payload += length + 8) {
            if (keyBytes != 0 && loadInteger(payload) != definition_.loads[load].caseKey)
                return expect("the case of node " + std::to_string(lastNode_) + ", load " +
                                  std::to_string(load + 1),
                              loadInteger(payload), definition_.loads[load].caseKey);
            const std::byte* value = payload + keyBytes;
            for (std::size_t t = 0; t < tensorsPerLoad; ++t, ++tensor) {
                for (double& component : *tensor) {
                    component = loadReal(value);
                    value += sizeof(double);
                }
                probe += finiteProbe(*tensor);
            }
        }
    }
    return probe == 0 || records_.fail("the loads of node " + std::to_string(lastNode_) +
                                       " hold a value that is not finite");
}

} // namespace solver
