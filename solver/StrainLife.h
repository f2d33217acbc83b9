#pragma once

#include "base/Result.h"
#include "resultfile/FatigueComponents.h"
#include "solver/Definition.h"
#include "solver/LifeCurve.h"
#include "solver/Rainflow.h"
#include "solver/StrainLifeTables.h"
#include "solver/TwoPowers.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace solver {

/// A moment of a history: the strain, which is what is counted, and the stress that goes with it.
struct StressStrain {
    double strain = 0;
    double stress = 0;
    operator double() const { return strain; }
};

/// A counted strain cycle with the stresses at its two turning points.
struct StrainCycle : Cycle {
    double meanStress = 0;
    double largestStress = 0;
};

/// What a strain-life material brings into the evaluation. N in cycles, 2N in reversals.
class StrainLifeModel {
  public:
    /// Fails, saying which value makes no sense, when the material has no strain-life curve.
    static Result<StrainLifeModel> make(const StrainLifeMaterial& material);

    /// The same material that looks stresses and lives up where tables hold them, several times faster. Lives
    /// differ by 1e-7 at most. Takes milliseconds and about 150 kilobytes.
    StrainLifeModel tabulated() const;

    /// Cycles to failure by one of the corrections resultfile::fatigue::kStrainLifeCorrections: half a cycle
    /// or more, infinity where nothing fails.
    double cyclesToFailure(unsigned correction, const StrainCycle& cycle) const;
    /// The strain amplitude at mean stress 0 that fails at `cycles`.
    double amplitudeAt(double cycles) const;

    /// Whether stressAt may be called.
    bool hasCyclicCurve() const { return hasCyclicCurve_; }
    /// Stress on the cyclic stress-strain curve, odd in the strain:
    /// strain = stress / E + (stress / K')^(1 / n') (W. Ramberg, W. R. Osgood, NACA TN 902, 1943).
    double stressAt(double strain) const;

    /// What an elastic measure of a strain tensor is multiplied by to give the axial strain of a uniaxial
    /// test, 1 / (1 + Poisson's ratio), for the measures that shear makes.
    double shearMeasureFactor() const { return shearMeasureFactor_; }
    bool hasPoissonRatio() const { return shearMeasureFactor_ > 0; }

  private:
    explicit StrainLifeModel(const StrainLifeMaterial& material);
    double solveCycles(unsigned correction, const StrainCycle& cycle) const;
    double lookUpReversals(unsigned correction, const StrainCycle& cycle) const;
    double solveStress(double strain) const;

    double strength_;      ///< sigma_f'
    double strengthShare_; ///< 1 / sigma_f'
    double b_, c_;
    double logElastic_; ///< ln(sigma_f' / E)
    double logPlastic_; ///< ln(eps_f')
    bool hasCyclicCurve_;
    double shearMeasureFactor_; ///< 0 when Poisson's ratio is out of its bounds
    TwoPowers strainLife_;      ///< strain amplitude over 2N
    TwoPowers damageParameter_; ///< largest stress x strain amplitude over 2N (Smith, Watson, Topper)
    TwoPowers cyclicCurve_;     ///< strain over stress
    std::shared_ptr<const StrainLifeTables> tables_;
};

inline double StrainLifeModel::cyclesToFailure(unsigned correction, const StrainCycle& cycle) const {
    if (tables_) {
        const double reversals = lookUpReversals(correction, cycle);
        if (std::isfinite(reversals)) return std::max(0.5 * reversals, LifeCurve::kFewestCycles);
    }
    return solveCycles(correction, cycle);
}

/// As solveCycles, in reversals; not a number where the tables hold nothing.
inline double StrainLifeModel::lookUpReversals(unsigned correction, const StrainCycle& cycle) const {
    namespace fatigue = resultfile::fatigue;
    const double amplitude = 0.5 * cycle.range;
    if (correction == fatigue::kSwt)
        return tables_->reversalsOfParameter.at(cycle.largestStress * strengthShare_ * amplitude);
    if (correction == fatigue::kNone || cycle.meanStress <= 0) return tables_->reversals.at(amplitude);
    const double rest = 1.0 - cycle.meanStress * strengthShare_;
    if (correction == fatigue::kMansonHalford)
        return tables_->mansonHalfordLife.at(rest) * tables_->reversals.at(amplitude);
    return tables_->morrowLife.at(rest) *
           tables_->reversals.at(tables_->morrowAmplitude.at(rest) * amplitude);
}

inline double StrainLifeModel::stressAt(double strain) const {
    if (tables_) {
        const double stress = tables_->stress.at(std::abs(strain));
        if (std::isfinite(stress)) return std::copysign(stress, strain);
    }
    return solveStress(strain);
}

/// The stresses of a strain history on the material's hysteresis branches. The material starts without
/// strain and stress and follows its cyclic curve; after each reversal the branch is the cyclic curve doubled
/// (G. Masing, 1926); where a branch comes back to the point that an earlier one left, the earlier one goes
/// on (memory: U. H. Clormann, T. Seeger, Stahlbau 55 (1986) 65), and beyond the largest strain so far, of
/// either sign, the cyclic curve does.
class HysteresisPath {
  public:
    /// Sets the stresses of a history from its strains. Points between turning points do no harm.
    void follow(const StrainLifeModel& model, std::span<StressStrain> points);

  private:
    static constexpr std::int32_t kCyclicCurve = -1, kAsBefore = -2;
    void findOrigins(std::span<const StressStrain> points);

    std::vector<std::int32_t> origins_; ///< of each point: where its branch starts, or one of the constants
    std::vector<std::int32_t> open_;    ///< reversals from which open branches start, outermost first
};

/// Memory for counting strain histories.
struct StrainScratch {
    RainflowOf<StressStrain> counter;
    HysteresisPath path;
    std::vector<StressStrain> points;
};

/// The turning points of a strain history, which is not empty, times `factor`, beside the stress that goes
/// with them: `stress` when it is given, else, when `follow` is set and the material has a cyclic curve, that
/// of its hysteresis, else 0. Into scratch.points.
void followStresses(const StrainLifeModel& model, std::span<const double> strain, double factor,
                    std::span<const double> stress, bool follow, StrainScratch& scratch);

/// Replaces `cycles` by those of scratch.points.
void countStrainCycles(StrainScratch& scratch, std::vector<StrainCycle>& cycles);

} // namespace solver
