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

/// Whether two normals, or one and the other's opposite, are less than `angle` apart.
bool sameLine(const Vector3& a, const Vector3& b, double angle) {
    return std::abs(a[0] * b[0] + a[1] * b[1] + a[2] * b[2]) > std::cos(angle);
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

/// Steps to the worst of six directions, if that makes it worse. The directions turn from call to call, since
/// the damage has edges, along which fixed ones would get stuck.
bool PlaneSearch::move(const Task& task, std::size_t correction, double step, Governing& best) {
    constexpr int kDirections = 6;
    constexpr double kTurn = 2.399963229728653; // golden angle, rad
    const auto plane = tangents(best.normal);
    Governing next = best;
    turn_ += kTurn;
    for (int i = 0; i < kDirections; ++i) {
        const double direction = turn_ + 2 * std::numbers::pi * i / kDirections;
        const Governing found = evaluate(task, correction, turned(best.normal, plane, direction, step));
        if (found.worseThan(next)) next = found;
    }
    const bool moved = next.worseThan(best);
    best = next;
    return moved;
}

/// Puts the worst candidate first and gives those up that are within a step of a worse one, or that lag by
/// more than steps of this size could make good.
void PlaneSearch::prune(double step) {
    constexpr double kLag = 10; // share of the damage that a rad makes
    const auto worse = [](const Candidate& a, const Candidate& b) { return a.best.worseThan(b.best); };
    std::ranges::stable_sort(candidates_, worse);
    const Governing worst = candidates_.front().best;
    std::size_t kept = 0;
    for (const Candidate& candidate : candidates_) {
        const auto near = [&](const Candidate& other) {
            return sameLine(other.best.normal, candidate.best.normal, step);
        };
        const auto end = candidates_.begin() + static_cast<std::ptrdiff_t>(kept);
        const bool lags = sizeOf(candidate.best, worst) < (1 - kLag * step) * sizeOf(worst, worst);
        if (!lags && std::none_of(candidates_.begin(), end, near)) candidates_[kept++] = Candidate(candidate);
    }
    candidates_.resize(kept);
}

/// Climbs from all candidates at once, with ever smaller steps.
Governing PlaneSearch::refine(const Task& task, std::size_t correction) {
    constexpr double kFirstStep = 0.08; // rad, half of the distance between planes of the set
    constexpr int kMostMoves = 20;      // of one size
    turn_ = 0;
    for (double step = kFirstStep; step >= kFinestStep; step *= 0.5) {
        for (Candidate& candidate : candidates_)
            candidate.settled = false;
        bool moved = true;
        for (int round = 0; round < kMostMoves && moved; ++round) {
            moved = false;
            for (Candidate& candidate : candidates_)
                if (!candidate.settled) {
                    candidate.settled = !move(task, correction, step, candidate.best);
                    moved = moved || !candidate.settled;
                }
            prune(step);
        }
    }
    return candidates_.front().best;
}

void PlaneSearch::search(const EvaluationPlan& plan, const NodeTensors& node,
                         std::span<const std::uint32_t> materials, EvaluationScratch& scratch,
                         std::span<Governing> governing) {
    const Task task{plan, node, materials, scratch};
    std::ranges::fill(governing, Governing{});
    scanGrid(task, governing);
    const std::size_t count = PlaneSet::instance().normals().size();
    for (std::size_t c = 0; c < plan.corrections.size(); ++c) {
        const Governing coarse = governing[c];
        if (coarse.sums.uncutDamage == 0) continue; // nothing changes anywhere
        candidates_.clear();
        for (const Governing& plane : std::span(grid_).subspan(c * count, count))
            if (sizeOf(plane, coarse) >= kCandidateShare * sizeOf(coarse, coarse))
                candidates_.push_back({plane});
        governing[c] = refine(task, c);
        governing[c].normal = withStatedSign(governing[c].normal);
    }
}

} // namespace solver
