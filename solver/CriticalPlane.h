#pragma once

#include "solver/Evaluation.h"
#include "solver/TensorColumns.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace solver {

/// The histories of one node that planes are cut through.
struct NodeTensors {
    const TensorColumns& counted;          ///< stress or strain
    const TensorColumns* stress = nullptr; ///< beside strains, where the file has it
};

/// Looks for the plane whose normal stress (strain-life: normal strain) does the largest damage, for each
/// correction of its own. First the planes of PlaneSet; then, around each that is worse than its neighbours
/// and does at least kCandidateShare of the largest damage, ever finer steps, down to kFinestStep.
///
/// A plane whose damage cannot reach that share, by boundDamage, is left out: the outcome is the same.
class PlaneSearch {
  public:
    static constexpr double kCandidateShare = 0.5;
    static constexpr double kFinestStep = 1e-4; ///< rad

    /// `node.counted` must be projectable. `materials` is not empty. One element of `governing` for each
    /// correction of the plan.
    void search(const EvaluationPlan& plan, const NodeTensors& node, std::span<const std::uint32_t> materials,
                EvaluationScratch& scratch, std::span<Governing> governing);

    /// The history on one plane, valid until the next call.
    ScalarHistory project(const NodeTensors& node, const Vector3& normal);

    /// Planes that were projected so far, for measurements.
    std::size_t planesSeen() const { return planesSeen_; }

  private:
    struct Task; ///< what one search works on
    /// A plane on its way uphill.
    struct Candidate {
        Governing best;
        bool settled = false; ///< no step of the present size makes it worse
    };
    bool mayMatter(const Task& task, unsigned correction, const Governing& best) const;
    Governing evaluate(const Task& task, std::size_t correction, const Vector3& normal);
    void scanGrid(const Task& task, std::span<Governing> best);
    bool move(const Task& task, std::size_t correction, double step, Governing& best);
    void prune(double step);
    Governing refine(const Task& task, std::size_t correction);

    std::vector<double> values_, stress_;
    TensorColumns::Extremes extremes_{};
    double largestStress_ = 0; ///< of stress_
    std::vector<unsigned> pending_;
    std::vector<std::size_t> pendingAt_;
    std::vector<Governing> found_;
    std::vector<Governing> grid_;       ///< correction by correction, plane by plane
    std::vector<Candidate> candidates_; ///< worst first, once refining has begun
    double turn_ = 0;
    std::size_t planesSeen_ = 0;
};

} // namespace solver
