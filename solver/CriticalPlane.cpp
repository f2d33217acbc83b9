#include "solver/CriticalPlane.h"

#include "solver/PlaneSet.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace solver {
namespace {

/// Two unit vectors normal to `n` and to each other.
std::array<Vector3, 2> tangents(const Vector3& n) {
    const std::size_t axis = std::abs(n[0]) < 0.6 ? 0 : std::abs(n[1]) < 0.6 ? 1 : 2;
    Vector3 a{};
    for (std::size_t i = 0; i < 3; ++i)
        a[i] = (i == axis ? 1.0 : 0.0) - n[axis] * n[i];
    const double length = std::sqrt(a[0] * a[0] + a[1] * a[1] + a[2] * a[2]);
    for (double& component : a)
        component /= length;
    return {a, Vector3{n[1] * a[2] - n[2] * a[1], n[2] * a[0] - n[0] * a[2], n[0] * a[1] - n[1] * a[0]}};
}

/// `n` turned by `angle` towards the direction `turn` in its plane.
Vector3 turned(const Vector3& n, const std::array<Vector3, 2>& plane, double turn, double angle) {
    Vector3 result;
    const double c = std::cos(turn), s = std::sin(turn);
    for (std::size_t i = 0; i < 3; ++i)
        result[i] = std::cos(angle) * n[i] + std::sin(angle) * (c * plane[0][i] + s * plane[1][i]);
    const double length = std::sqrt(result[0] * result[0] + result[1] * result[1] + result[2] * result[2]);
    for (double& component : result)
        component /= length;
    return result;
}

/// What damages are measured against: the damage, or without any that without the infinite life's cut-off.
double sizeOf(const Governing& governing, const Governing& best) {
    return best.sums.damage > 0 ? governing.sums.damage : governing.sums.uncutDamage;
}

/// The planes of the set in an order that jumps about, so that a bad plane is met early and the others are
/// measured against it.
std::size_t scatter(std::size_t i, std::size_t count) {
    constexpr std::size_t kStride = 67; // without a common factor with the 181 planes
    return i * kStride % count;
}

} // namespace

struct PlaneSearch::Task {
    const EvaluationPlan& plan;
    const NodeTensors& node;
    std::span<const std::uint32_t> materials;
    EvaluationScratch& scratch;
};

ScalarHistory PlaneSearch::project(const NodeTensors& node, const Vector3& normal) {
    ++planesSeen_;
    extremes_ = node.counted.project(normal, values_);
    if (!node.stress) return {values_, {}};
    largestStress_ = node.stress->project(normal, stress_).largest;
    return {values_, stress_};
}

/// Whether the plane that was projected last can reach the share of the best one's damage.
bool PlaneSearch::mayMatter(const Task& task, unsigned correction, const Governing& best) const {
    for (const std::uint32_t material : task.materials) {
        const DamageBound bound =
            boundDamage(task.plan, correction, material, extremes_, largestStress_, values_.size());
        const bool tooSmall = bound.uncutDamage < kCandidateShare * sizeOf(best, best);
        if (!tooSmall || (best.sums.damage == 0 && !bound.beyondInfiniteLife)) return true;
    }
    return false;
}

void PlaneSearch::scanGrid(const Task& task, std::span<Governing> best) {
    const auto normals = PlaneSet::instance().normals();
    const auto& corrections = task.plan.corrections;
    grid_.assign(corrections.size() * normals.size(), {});
    for (std::size_t i = 0; i < normals.size(); ++i) {
        const std::size_t plane = scatter(i, normals.size());
        const ScalarHistory history = project(task.node, normals[plane]);
        pending_.clear();
        pendingAt_.clear();
        for (std::size_t c = 0; c < corrections.size(); ++c)
            if (mayMatter(task, corrections[c], best[c])) {
                pending_.push_back(corrections[c]);
                pendingAt_.push_back(c);
            }
        if (pending_.empty()) continue;
        found_.resize(pending_.size());
        sumHistory(task.plan, pending_, history, task.materials, task.scratch, found_);
        for (std::size_t k = 0; k < pending_.size(); ++k) {
            const std::size_t c = pendingAt_[k];
            found_[k].normal = normals[plane];
            grid_[c * normals.size() + plane] = found_[k];
            if (i == 0 || found_[k].worseThan(best[c])) best[c] = found_[k];
        }
    }
}

Governing PlaneSearch::evaluate(const Task& task, std::size_t correction, const Vector3& normal) {
    Governing found;
    const ScalarHistory history = project(task.node, normal);
    sumHistory(task.plan, std::span(&task.plan.corrections[correction], 1), history, task.materials,
               task.scratch, std::span(&found, 1));
    found.normal = normal;
    return found;
}

/// Steps to the worst of eight directions while that makes it worse, else halves the step. The directions
/// turn with every round, since the damage has edges, along which fixed ones would get stuck.
Governing PlaneSearch::refine(const Task& task, std::size_t correction, Governing best) {
    constexpr int kDirections = 8;
    constexpr double kFirstStep = 0.08;
    constexpr double kTurn = 2.399963229728653; // golden angle, rad
    constexpr int kMostRounds = 200;
    double step = kFirstStep, turn = 0;
    for (int round = 0; round < kMostRounds && step >= kFinestStep; ++round, turn += kTurn) {
        const auto plane = tangents(best.normal);
        Governing next = best;
        for (int i = 0; i < kDirections; ++i) {
            const double direction = turn + 2 * std::numbers::pi * i / kDirections;
            const Governing found = evaluate(task, correction, turned(best.normal, plane, direction, step));
            if (found.worseThan(next)) next = found;
        }
        if (next.worseThan(best))
            best = next;
        else
            step *= 0.5;
    }
    return best;
}

void PlaneSearch::search(const EvaluationPlan& plan, const NodeTensors& node,
                         std::span<const std::uint32_t> materials, EvaluationScratch& scratch,
                         std::span<Governing> governing) {
    const Task task{plan, node, materials, scratch};
    std::ranges::fill(governing, Governing{});
    scanGrid(task, governing);
    const PlaneSet& planes = PlaneSet::instance();
    const std::size_t count = planes.normals().size();
    for (std::size_t c = 0; c < plan.corrections.size(); ++c) {
        const Governing coarse = governing[c];
        if (coarse.sums.uncutDamage == 0) continue; // nothing changes anywhere
        const std::span<const Governing> grid = std::span(grid_).subspan(c * count, count);
        for (std::size_t i = 0; i < count; ++i) {
            const bool candidate = sizeOf(grid[i], coarse) >= kCandidateShare * sizeOf(coarse, coarse) &&
                                   std::ranges::none_of(planes.neighbours(i), [&](std::size_t neighbour) {
                                       return grid[neighbour].worseThan(grid[i]);
                                   });
            if (!candidate) continue;
            const Governing refined = refine(task, c, grid[i]);
            if (refined.worseThan(governing[c])) governing[c] = refined;
        }
        governing[c].normal = withStatedSign(governing[c].normal);
    }
}

} // namespace solver
