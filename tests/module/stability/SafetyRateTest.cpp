#include "module/stability/SafetyRate.h"

#include "module/stability/VEXAGpsSafetyRate.h"
#include "tests/support/Golden.h"
#include "tests/support/MemoryHost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace {

using namespace stability;

constexpr double kInfinite = std::numeric_limits<double>::infinity();

struct RateRow {
    const char* what;
    Strength strength;
    RateMode mode;
    double s1, s2, rate;
};

// c = 10, phi = 30: slope 0.57735, apex 17.3205. At s = (-10, -30): mean -20, radius 10, distance to the line
// (10 + 20 * 0.57735) / sqrt(1 + 1/3) = 18.6603.
const double kSlope = std::tan(30 * 0.017453292519943295);
const RateRow kRates[] = {
    {"drained", {10, 30, false, 0}, RateMode::FactorOfSafety, -10, -30, 1.8660254037844386},
    {"the stresses in the other order",
     {10, 30, false, 0},
     RateMode::FactorOfSafety,
     -30,
     -10,
     1.8660254037844386},
    {"ratio", {10, 30, false, 0}, RateMode::StressRatio, -10, -30, 10 / (10 + 20 * kSlope)},
    {"undrained", {25, 0, false, 0}, RateMode::FactorOfSafety, 40, 20, 2.5},
    {"undrained, no cut-off, any tension",
     {25, 0, false, 0},
     RateMode::FactorOfSafety,
     1e9 + 10,
     1e9 - 10,
     2.5},
    {"undrained with a cut-off nearer than the line", {25, 0, true, 50}, RateMode::FactorOfSafety, 40, 20, 2},
    {"the cut-off moves the apex", {10, 30, true, 5}, RateMode::FactorOfSafety, 5, 3, 1},
    {"a cut-off beyond the apex counts for nothing",
     {10, 30, true, 500},
     RateMode::FactorOfSafety,
     -10,
     -30,
     1.8660254037844386},
    {"no radius", {10, 30, false, 0}, RateMode::FactorOfSafety, -7, -7, kUndefinedRate},
    {"hardly a radius", {10, 30, false, 0}, RateMode::FactorOfSafety, 4.2e-12, 0, kUndefinedRate},
    {"on the apex", {10, 30, true, 5}, RateMode::FactorOfSafety, 6, 4, kApexRate},
    {"on the apex without a radius", {10, 30, true, 5}, RateMode::FactorOfSafety, 5, 5, kUndefinedRate},
    {"beyond the apex", {10, 30, true, 5}, RateMode::FactorOfSafety, 7, 5, 0},
    {"beyond the apex without a radius", {10, 30, true, 5}, RateMode::FactorOfSafety, 6, 6, 0},
    {"ratio of a strength used up", {0, 30, false, 0}, RateMode::StressRatio, 1, -1, kInfinite},
    {"ratio beyond the apex", {0, 45, false, 0}, RateMode::StressRatio, 3, 1, -0.5},
    {"neither stress nor strength", {0, 0, false, 0}, RateMode::StressRatio, 0, 0, NAN},
};

TEST(SafetyRate, FollowsTheCircleAndItsSpecialCases) {
    for (const RateRow& row : kRates) {
        SCOPED_TRACE(row.what);
        const double rate = safetyRate(row.strength, row.s1, row.s2, row.mode);
        if (std::isnan(row.rate))
            EXPECT_TRUE(std::isnan(rate));
        else
            EXPECT_DOUBLE_EQ(rate, row.rate);
    }
}

/// A document with one property of one material and a step with results.
class SafetyRateClass : public testing::Test {
  protected:
    SafetyRateClass() {
        material.key = 2;
        material.name = L"Clay";
        material.strengthDefined = 1;
        material.cohesion = 25;
        document.materials.put(material);
        property.key = 3;
        property.typeCode = PropertyType::PlaneStrain;
        property.materialKeys = {2};
        document.properties.put(property);
        rate.SetProperty(3);
    }
    void change(void (*of)(tagTMatl&)) {
        tagTMatl changed = material;
        of(changed);
        document.materials.put(changed);
    }

    support::MemoryHost host;
    support::MemoryDocument document;
    tagTMatl material;
    tagTProp property;
    CVEXAGpsSafetyRate rate;
};

TEST_F(SafetyRateClass, AgreesWithTheFieldOnTenThousandStates) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> stress(-200, 40);
    const std::size_t count = 10000;
    std::vector<double> s1(count), s2(count), rates(count);
    for (std::size_t i = 0; i < count; ++i) {
        s1[i] = stress(random);
        s2[i] = i % 50 == 0 ? s1[i] : stress(random);
    }
    std::string kept;
    for (const Strength& strength :
         {Strength{25, 0, false, 0}, Strength{8, 27.5, true, 4}, Strength{10, 30, false, 0},
          Strength{12, 17.3, false, 0}, Strength{3, 41.7, true, 60}})
        for (const int mode : {0, 1}) {
            tagTMatl soil = material;
            soil.cohesion = strength.cohesion;
            soil.frictionAngle = strength.frictionAngle;
            soil.tensileCutoff = strength.tensileCutoff;
            soil.tensileStrength = strength.tensileStrength;
            document.materials.put(soil);
            safetyRates(strength, static_cast<RateMode>(mode), s1, s2, rates);
            for (std::size_t i = 0; i < count; ++i) {
                double one = 7;
                ASSERT_EQ(rate.CalcRate(&document, s1[i], s2[i], 0, &one, mode), 1);
                ASSERT_EQ(one, rates[i]) << s1[i] << " " << s2[i];
            }
            kept.append(reinterpret_cast<const char*>(rates.data()), 1000 * sizeof rates[0]);
        }
    keepGolden("module/safety-rates.f64", kept);
}

TEST_F(SafetyRateClass, ReadsTheFlagsOfTheMaterialInOrder) {
    const struct {
        const char* what;
        void (*of)(tagTMatl&);
        int answer;
        double rate;
        int hasName;
    } rows[] = {
        {"a strength", [](tagTMatl&) {}, 1, 2.5, 1},
        {"not applicable", [](tagTMatl& m) { m.notApplicable = 1; }, 1, 0, 1},
        {"not applicable and excluded", [](tagTMatl& m) { m.notApplicable = m.excluded = 1; }, 1, 0, 0},
        {"excluded", [](tagTMatl& m) { m.excluded = 1; }, 0, 0, 0},
        {"no strength", [](tagTMatl& m) { m.strengthDefined = 0; }, 1, 0, 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        change(row.of);
        double value = 7;
        EXPECT_EQ(rate.CalcRate(&document, 40, 20, 99, &value, 0), row.answer);
        EXPECT_EQ(value, row.rate);
        std::wstring name = L"before";
        EXPECT_EQ(rate.GetMaterialName(&document, name), row.hasName);
        EXPECT_EQ(name, row.hasName ? L"Clay" : L"before");
    }
}

TEST_F(SafetyRateClass, AnswersZeroWithoutPropertyOrMaterial) {
    double value = 7;
    std::wstring name;
    for (const int broken : {0, 1, 2}) {
        SCOPED_TRACE(broken);
        if (broken == 0) rate.SetProperty(0);
        if (broken == 1) rate.SetProperty(99);
        if (broken == 2) {
            rate.SetProperty(3);
            document.materials.records.clear();
        }
        EXPECT_EQ(rate.HasProperty(), broken != 0);
        EXPECT_EQ(rate.CalcRate(&document, 40, 20, 0, &value, 0), 0);
        EXPECT_EQ(value, 0);
        EXPECT_EQ(rate.CalcRate(&document, 40, 20, 0, 0, &value, 0), 1) << "the long form says nothing";
        EXPECT_EQ(rate.GetMaterialName(&document, name), 0);
    }
}

TEST_F(SafetyRateClass, NamesMaterialsOfPlanarAndSolidPropertiesOnly) {
    for (const auto& [type, answer] : {std::pair{199, 0}, {200, 1}, {300, 1}, {301, 0}}) {
        property.typeCode = type;
        document.properties.put(property);
        std::wstring name;
        EXPECT_EQ(rate.GetMaterialName(&document, name), answer) << type;
    }
}

TEST_F(SafetyRateClass, TakesTheModeFromTheAnalysisOfTheResult) {
    auto& analysis = document.results.addAnalysis(5, L"Slope");
    auto& step = analysis.addCase(6, L"Gravity").addStep(7, L"1");
    auto& result = step.add(432137, ResultLocation::Node, {0.f});
    const auto calculate = [&](CVResult* of) {
        double value = 7;
        EXPECT_EQ(rate.CalcRateForResult(&document, of, 40, 20, 0, &value), 1);
        return value;
    };
    EXPECT_EQ(calculate(nullptr), 2.5);
    EXPECT_EQ(calculate(&result), 2.5) << "no analysis record";
    tagTVXMcas record;
    record.key = 5;
    record.outputControlKey = 8;
    document.analyses.put(record);
    EXPECT_EQ(calculate(&result), 2.5) << "no output control";
    tagTVXOctr control;
    control.key = 8;
    control.stressRatio = 1;
    document.outputControls.put(control);
    EXPECT_EQ(calculate(&result), 0.4);
    double value = 7;
    EXPECT_EQ(rate.CalcRateForResult(&document, &result, 40, 20, 0, 0, &value), 1);
    EXPECT_EQ(value, 0.4);
}

TEST_F(SafetyRateClass, CollectsItsSourcesInTheirOrder) {
    auto& step = document.results.addAnalysis(5, L"Slope").addCase(6, L"Gravity").addStep(7, L"1");
    std::vector<CVResult*> list;
    EXPECT_FALSE(rate.CollectEquivalents(step, list));
    for (const unsigned id : {452114u, 312114u, 412146u, 312107u, 432137u, 412114u, 432148u, 422138u})
        step.add(id, ResultLocation::Node, {0.f});
    const auto ids = [&] {
        std::vector<unsigned> found;
        for (const CVResult* result : list)
            found.push_back(result->GetId());
        return found;
    };
    EXPECT_TRUE(rate.CollectEquivalents(step, list));
    EXPECT_EQ(ids(), (std::vector<unsigned>{312114, 412146, 452114}));
    EXPECT_TRUE(rate.CollectMajorStresses(step, list)) << "appends";
    EXPECT_EQ(ids(), (std::vector<unsigned>{312114, 412146, 452114, 312107, 432137}));
    list.clear();
    EXPECT_TRUE(rate.CollectMinorStresses(step, list));
    EXPECT_TRUE(rate.CollectMaximumShears(step, list));
    EXPECT_EQ(ids(), (std::vector<unsigned>{422138, 432148}));
}

} // namespace
