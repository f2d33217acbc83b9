#include "solver/StrainLife.h"

#include "resultfile/FatigueComponents.h"
#include "solver/LifeCurve.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace solver {
namespace {

namespace fatigue = resultfile::fatigue;

constexpr double kEndless = std::numeric_limits<double>::infinity();

bool positive(double value) {
    return value > 0 && std::isfinite(value);
}

/// Cycles at ln(reversals).
double cyclesAt(double logReversals) {
    return std::max(0.5 * std::exp(logReversals), LifeCurve::kFewestCycles);
}

double poissonFactor(double ratio) {
    return ratio >= 0 && ratio <= 0.5 ? 1.0 / (1.0 + ratio) : 0.0;
}

/// Exponents beyond any material's, which only a broken file holds.
bool sensibleExponent(double value) {
    return value >= -10 && value <= -1e-6;
}

bool givesCyclicCurve(const StrainLifeMaterial& m) {
    return m.cyclicHardeningExponent >= 1e-3 && m.cyclicHardeningExponent <= 10 &&
           positive(m.cyclicStrengthCoefficient);
}

/// The cyclic curve; a straight one where there is none, which is then not asked for.
TwoPowers cyclicCurve(const StrainLifeMaterial& m) {
    const double elastic = -std::log(m.modulus);
    if (!givesCyclicCurve(m)) return {elastic, 1.0, -kEndless, 1.0};
    const double power = 1.0 / m.cyclicHardeningExponent;
    return {elastic, 1.0, -power * std::log(m.cyclicStrengthCoefficient), power};
}

} // namespace

StrainLifeModel::StrainLifeModel(const StrainLifeMaterial& m)
    : strength_(m.fatigueStrengthCoefficient)
    , b_(m.fatigueStrengthExponent)
    , c_(m.fatigueDuctilityExponent)
    , logElastic_(std::log(strength_) - std::log(m.modulus))
    , logPlastic_(std::log(m.fatigueDuctilityCoefficient))
    , hasCyclicCurve_(givesCyclicCurve(m))
    , shearMeasureFactor_(poissonFactor(m.secondElasticConstant))
    , strainLife_(logElastic_, b_, logPlastic_, c_)
    , damageParameter_(logElastic_ + std::log(strength_), 2.0 * b_, logPlastic_ + std::log(strength_),
                       b_ + c_)
    , cyclicCurve_(cyclicCurve(m)) {}

Result<StrainLifeModel> StrainLifeModel::make(const StrainLifeMaterial& m) {
    if (!positive(m.modulus)) return Error{"its elastic modulus must be more than 0"};
    if (!positive(m.fatigueStrengthCoefficient))
        return Error{"its fatigue strength coefficient must be more than 0"};
    if (!sensibleExponent(m.fatigueStrengthExponent))
        return Error{"its fatigue strength exponent must lie between -10 and -1e-6"};
    if (!(m.fatigueDuctilityCoefficient >= 0 && std::isfinite(m.fatigueDuctilityCoefficient)))
        return Error{"its fatigue ductility coefficient must not be negative"};
    if (!sensibleExponent(m.fatigueDuctilityExponent))
        return Error{"its fatigue ductility exponent must lie between -10 and -1e-6"};
    return StrainLifeModel(m);
}

StrainLifeModel StrainLifeModel::tabulated() const {
    // Octaves of strain amplitudes, of parameters, of strains and of 1 - mean / sigma_f'. Beyond, lives and
    // stresses are solved for.
    constexpr int kAmplitudes[] = {-20, -2}, kParameters[] = {-32, -4}, kStrains[] = {-20, -2},
                  kRests[] = {-6, 1};
    const auto over = [](const TwoPowers& curve, double scale, const int(&octaves)[2]) {
        const auto solved = [&](double x) { return std::exp(curve.logArgument(std::log(x) + scale)); };
        return PieceTable(solved, octaves[0], octaves[1]);
    };
    const auto power = [&](double exponent) {
        return PieceTable([=](double x) { return std::pow(x, exponent); }, kRests[0], kRests[1]);
    };
    auto tables = std::make_shared<StrainLifeTables>();
    tables->reversals = over(strainLife_, 0, kAmplitudes);
    tables->reversalsOfParameter = over(damageParameter_, std::log(strength_), kParameters);
    if (hasCyclicCurve_) tables->stress = over(cyclicCurve_, 0, kStrains);
    tables->morrowLife = power(1.0 / (c_ - b_));
    tables->morrowAmplitude = power(-c_ / (c_ - b_));
    tables->mansonHalfordLife = power(-1.0 / b_);
    StrainLifeModel model = *this;
    model.tables_ = std::move(tables);
    return model;
}

namespace {

/// As StrainLifeModel::solveCycles, in reversals; not a number where the tables hold nothing.
double lookUpReversals(const StrainLifeTables& tables, double strength, unsigned correction,
                       const StrainCycle& cycle) {
    const double amplitude = 0.5 * cycle.range;
    if (correction == fatigue::kSwt)
        return tables.reversalsOfParameter.at(cycle.largestStress / strength * amplitude);
    if (correction == fatigue::kNone || cycle.meanStress <= 0) return tables.reversals.at(amplitude);
    const double rest = 1.0 - cycle.meanStress / strength;
    if (correction == fatigue::kMansonHalford)
        return tables.mansonHalfordLife.at(rest) * tables.reversals.at(amplitude);
    return tables.morrowLife.at(rest) * tables.reversals.at(tables.morrowAmplitude.at(rest) * amplitude);
}

} // namespace

double StrainLifeModel::cyclesToFailure(unsigned correction, const StrainCycle& cycle) const {
    if (tables_) {
        const double reversals = lookUpReversals(*tables_, strength_, correction, cycle);
        if (std::isfinite(reversals)) return std::max(0.5 * reversals, LifeCurve::kFewestCycles);
    }
    return solveCycles(correction, cycle);
}

double StrainLifeModel::solveCycles(unsigned correction, const StrainCycle& cycle) const {
    const double amplitude = 0.5 * cycle.range;
    if (!(amplitude > 0)) return kEndless;
    const double logAmplitude = std::log(amplitude);
    if (correction == fatigue::kNone) return cyclesAt(strainLife_.logArgument(logAmplitude));
    if (correction == fatigue::kSwt) { // K. N. Smith, P. Watson, T. H. Topper, J. Materials 5 (1970) 767
        if (!(cycle.largestStress > 0)) return kEndless;
        return cyclesAt(damageParameter_.logArgument(std::log(cycle.largestStress) + logAmplitude));
    }
    // A compressive mean neither helps nor harms.
    const double share = std::max(cycle.meanStress, 0.0) / strength_;
    if (share >= 1) return LifeCurve::kFewestCycles;
    const double rest = std::log1p(-share);
    // J. Morrow, SAE AE-4 (1968), takes the mean off the elastic part; S. S. Manson, G. R. Halford, Int. J.
    // Fract. 17 (1981) 169, off both.
    const double ofPlastic = correction == fatigue::kMansonHalford ? rest * (c_ / b_) : 0.0;
    return cyclesAt(TwoPowers(logElastic_ + rest, b_, logPlastic_ + ofPlastic, c_).logArgument(logAmplitude));
}

double StrainLifeModel::amplitudeAt(double cycles) const {
    return std::exp(strainLife_.logValue(std::log(2.0 * cycles)));
}

double StrainLifeModel::stressAt(double strain) const {
    if (tables_) {
        const double stress = tables_->stress.at(std::abs(strain));
        if (std::isfinite(stress)) return std::copysign(stress, strain);
    }
    return solveStress(strain);
}

double StrainLifeModel::solveStress(double strain) const {
    if (strain == 0) return 0;
    return std::copysign(std::exp(cyclicCurve_.logArgument(std::log(std::abs(strain)))), strain);
}

void HysteresisPath::clear() {
    origins_.clear();
    current_ = {};
}

double HysteresisPath::stressAt(const StrainLifeModel& model, double strain) {
    if (strain == current_.strain) return current_.stress;
    const bool rising = strain > current_.strain;
    // A reversal: the way so far went against the new one. On the cyclic curve, outwards is no reversal, and
    // what starts there is taken off again below.
    if (origins_.empty() || rising != (current_.strain > origins_.back().strain))
        origins_.push_back(current_);
    // Beyond the outermost reversal, of either sign, the cyclic curve goes on.
    if (std::abs(strain) >= std::abs(origins_.front().strain)) {
        origins_.clear();
        current_ = {strain, model.stressAt(strain)};
        return current_.stress;
    }
    const auto passed = [&](double other) { return rising ? strain >= other : strain <= other; };
    while (origins_.size() >= 3 && passed(origins_[origins_.size() - 2].strain))
        origins_.resize(origins_.size() - 2);
    const StressStrain& origin = origins_.back();
    current_ = {strain, origin.stress + 2.0 * model.stressAt(0.5 * (strain - origin.strain))};
    return current_.stress;
}

void followStresses(const StrainLifeModel& model, std::span<const double> strain, double factor,
                    std::span<const double> stress, bool follow, StrainScratch& scratch) {
    auto& points = scratch.points;
    points.resize(strain.size());
    for (std::size_t i = 0; i < strain.size(); ++i)
        points[i] = {factor * strain[i], stress.empty() ? 0.0 : stress[i]};
    if (!stress.empty() || !follow || !model.hasCyclicCurve()) return;
    // Between turning points the stress is not asked for, and following the hysteresis is dear.
    scratch.path.clear();
    const std::size_t last = points.size() - 1;
    for (std::size_t i = 0; i <= last; ++i) {
        const bool turns =
            i == 0 || i == last ||
            (points[i].strain - points[i - 1].strain) * (points[i + 1].strain - points[i].strain) <= 0;
        if (turns) points[i].stress = scratch.path.stressAt(model, points[i].strain);
    }
}

void countStrainCycles(StrainScratch& scratch, std::vector<StrainCycle>& cycles) {
    cycles.clear();
    const auto add = [&cycles](StressStrain from, StressStrain to, double count) {
        cycles.push_back({{std::abs(to.strain - from.strain), 0.5 * from.strain + 0.5 * to.strain, count},
                          0.5 * from.stress + 0.5 * to.stress,
                          std::max(from.stress, to.stress)});
    };
    const auto whole = [&add](StressStrain from, StressStrain to) { add(from, to, 1.0); };
    const auto half = [&add](StressStrain from, StressStrain to) { add(from, to, 0.5); };
    scratch.counter.clear();
    scratch.counter.feed(scratch.points, whole);
    scratch.counter.finish(whole, half);
}

} // namespace solver
