#include "solver/CriticalPlane.h"

#include "solver/PlaneSet.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace {

using solver::AnalysisType;
using solver::EvaluationPlan;
using solver::Governing;
using solver::Tensor;
using solver::Vector3;
using Matrix = std::array<Vector3, 3>;

/// As docs/fatigue.md states it.
constexpr double kRotationTolerance = 0.01;

/// Stress-life with None, Goodman and SWT, or strain-life with None and Morrow.
EvaluationPlan makePlan(AnalysisType type, double infiniteLife = 1e300) {
    solver::Definition definition;
    definition.type = type;
    definition.stressOption = definition.strainOption = 4;
    definition.corrections = {true, true, false, false, false, solver::isStressLife(type)};
    definition.outputs = {true, true, true};
    definition.infiniteLife = infiniteLife;
    definition.loadCycleCount = 1;
    if (solver::isStressLife(type))
        definition.stressLifeMaterials = {{2.1e5, 1500, 900, false, {1200, -0.1}, {}}};
    else
        definition.strainLifeMaterials = {{2.1e5, 0.3, 0.15, 1200, 900, -0.09, 0.5, -0.6}};
    std::vector<std::string> notes;
    auto plan = solver::makePlan(definition, notes);
    if (!plan) throw std::runtime_error(plan.error().message);
    return *plan;
}

solver::TensorColumns columnsOf(const std::vector<Tensor>& path) {
    solver::TensorColumns columns;
    columns.resize(path.size());
    columns.put(0, path);
    return columns;
}

std::vector<Governing> search(const EvaluationPlan& plan, const std::vector<Tensor>& path,
                              const std::vector<Tensor>& stress = {}) {
    const auto columns = columnsOf(path), stressColumns = columnsOf(stress);
    const std::uint32_t material = 0;
    solver::EvaluationScratch scratch;
    solver::PlaneSearch planes;
    std::vector<Governing> governing(plan.corrections.size());
    planes.search(plan, {columns, stress.empty() ? nullptr : &stressColumns}, std::span(&material, 1),
                  scratch, governing);
    return governing;
}

Tensor rotated(const Tensor& t, const Matrix& r) {
    const Matrix m{{{t[0], t[3], t[5]}, {t[3], t[1], t[4]}, {t[5], t[4], t[2]}}};
    Matrix result{};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j)
            for (int k = 0; k < 3; ++k)
                for (int l = 0; l < 3; ++l)
                    result[i][j] += r[i][k] * m[k][l] * r[j][l];
    return {result[0][0], result[1][1], result[2][2], result[0][1], result[1][2], result[2][0]};
}

double uniform(RandomIntegers& random) {
    return static_cast<double>(random.below(2000001)) / 1e6 - 1;
}

/// From a random unit quaternion.
Matrix randomRotation(RandomIntegers& random) {
    double q[4], sum = 0;
    do {
        sum = 0;
        for (double& component : q) {
            component = uniform(random);
            sum += component * component;
        }
    } while (sum < 0.1 || sum > 1);
    const double s = 2 / sum, w = q[0], x = q[1], y = q[2], z = q[3];
    return {{{1 - s * (y * y + z * z), s * (x * y - w * z), s * (x * z + w * y)},
             {s * (x * y + w * z), 1 - s * (x * x + z * z), s * (y * z - w * x)},
             {s * (x * z - w * y), s * (y * z + w * x), 1 - s * (x * x + y * y)}}};
}

/// Out of proportion: two random tensors with factors of their own, and a little noise.
std::vector<Tensor> randomPath(RandomIntegers& random, std::size_t length, double size) {
    Tensor a, b;
    for (std::size_t k = 0; k < 6; ++k) {
        a[k] = uniform(random);
        b[k] = uniform(random);
    }
    std::vector<Tensor> path(length);
    for (Tensor& tensor : path) {
        const double fa = uniform(random), fb = uniform(random);
        for (std::size_t k = 0; k < 6; ++k)
            tensor[k] = size * (fa * a[k] + fb * b[k] + 0.1 * uniform(random));
    }
    return path;
}

double sizeFor(AnalysisType type) {
    return solver::isStressLife(type) ? 200 : 3e-3;
}

} // namespace

TEST(PlaneSet, CoversTheHalfSphereEvenly) {
    const auto& set = solver::PlaneSet::instance();
    ASSERT_EQ(set.normals().size(), 181u);
    RandomIntegers random;
    for (int round = 0; round < 3000; ++round) {
        const Vector3 v{uniform(random), uniform(random), uniform(random)};
        const double length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
        if (length < 0.1) continue;
        double nearest = 0;
        for (const Vector3& n : set.normals())
            nearest = std::max(nearest, std::abs(n[0] * v[0] + n[1] * v[1] + n[2] * v[2]) / length);
        ASSERT_GT(nearest, std::cos(0.13)) << random.seedText();
    }
    for (const Vector3& n : set.normals())
        EXPECT_GE(n[2], 0);
}

// Uniaxial stress: the plane across it, and the damage of the stress itself.
TEST(CriticalPlane, UniaxialStressIsItsOwnPlane) {
    RandomIntegers random;
    for (int round = 0; round < 20; ++round) {
        const Matrix r = randomRotation(random);
        const Vector3 axis = solver::withStatedSign({r[0][0], r[1][0], r[2][0]});
        std::vector<Tensor> path;
        std::vector<double> values;
        for (int i = 0; i < 30; ++i) {
            values.push_back(300 * uniform(random));
            path.push_back(rotated({values.back(), 0, 0, 0, 0, 0}, r));
        }
        const auto plan = makePlan(AnalysisType::StressLifeSteps);
        const std::uint32_t material = 0;
        solver::EvaluationScratch scratch;
        std::vector<solver::Outcome> direct(plan.corrections.size());
        solver::evaluateHistory(plan, {values, {}}, std::span(&material, 1), scratch, direct);
        const auto found = search(plan, path);
        for (std::size_t i = 0; i < found.size(); ++i) {
            ASSERT_NEAR(found[i].sums.damage / direct[i].damage, 1, 1e-5) << random.seedText();
            for (std::size_t k = 0; k < 3; ++k)
                ASSERT_NEAR(found[i].normal[k], axis[k], 2e-3) << random.seedText();
        }
    }
}

TEST(CriticalPlane, ARotatedModelHasTheSameDamage) {
    RandomIntegers random;
    for (int round = 0; round < 60; ++round) {
        const AnalysisType type =
            round % 3 == 2 ? AnalysisType::StrainLifeSteps : AnalysisType::StressLifeSteps;
        const auto plan = makePlan(type);
        auto path = randomPath(random, 4 + random.below(40), sizeFor(type));
        const auto before = search(plan, path);
        const Matrix r = randomRotation(random);
        for (Tensor& tensor : path)
            tensor = rotated(tensor, r);
        const auto after = search(plan, path);
        for (std::size_t i = 0; i < before.size(); ++i)
            ASSERT_NEAR(after[i].sums.damage / before[i].sums.damage, 1, kRotationTolerance)
                << "round " << round << ", correction " << plan.corrections[i] << "; " << random.seedText();
    }
}

// Twenty thousand planes, one by one and none left out, find nothing worse.
TEST(CriticalPlane, ManyPlanesFindNothingWorse) {
    RandomIntegers random;
    for (const AnalysisType type : {AnalysisType::StressLifeSteps, AnalysisType::StrainLifeSteps,
                                    AnalysisType::StressAndStrainSteps, AnalysisType::StressLifeSteps}) {
        const auto plan = makePlan(type);
        const auto path = randomPath(random, 8, sizeFor(type));
        const auto stress =
            type == AnalysisType::StressAndStrainSteps ? randomPath(random, 8, 200) : std::vector<Tensor>{};
        const auto found = search(plan, path, stress);
        const auto columns = columnsOf(path), stressColumns = columnsOf(stress);
        const solver::NodeTensors node{columns, stress.empty() ? nullptr : &stressColumns};
        solver::PlaneSearch planes;
        solver::EvaluationScratch scratch;
        const std::uint32_t material = 0;
        std::vector<Governing> plane(plan.corrections.size());
        constexpr int kPlanes = 20000; // a spiral over the half sphere
        for (int i = 0; i < kPlanes; ++i) {
            const double z = (i + 0.5) / kPlanes, turn = 2.399963229728653 * i, ring = std::sqrt(1 - z * z);
            sumHistory(plan, plan.corrections,
                       planes.project(node, {ring * std::cos(turn), ring * std::sin(turn), z}),
                       std::span(&material, 1), scratch, plane);
            for (std::size_t k = 0; k < plane.size(); ++k)
                ASSERT_LE(plane[k].sums.damage, found[k].sums.damage * (1 + kRotationTolerance))
                    << "correction " << plan.corrections[k] << "; " << random.seedText();
        }
    }
}

TEST(CriticalPlane, SeesDamageThatOnlyASmallCapOfPlanesHas) {
    // Uniaxial, along no direction of the set, its life just below the infinite one: no plane of the set is
    // damaged.
    const Matrix r{{{0.36, 0.48, -0.8}, {-0.8, 0.6, 0}, {0.48, 0.64, 0.6}}};
    const auto plan = makePlan(AnalysisType::StressLifeSteps, std::pow(1200 / 300.0, 10) * 1.001);
    std::vector<Tensor> path;
    for (const double stress : {300.0, -300.0, 300.0})
        path.push_back(rotated({stress, 0, 0, 0, 0, 0}, r));
    EXPECT_GT(search(plan, path)[0].sums.damage, 0);
    // A stress that does not change damages nothing.
    const std::vector<Tensor> still(5, Tensor{100, 20, -30, 5, 6, 7});
    for (const Governing& governing : search(plan, still))
        EXPECT_EQ(governing.sums.uncutDamage, 0);
}
