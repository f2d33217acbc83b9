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
    , strengthShare_(1.0 / strength_)
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

double StrainLifeModel::solveStress(double strain) const {
    if (strain == 0) return 0;
    return std::copysign(std::exp(cyclicCurve_.logArgument(std::log(std::abs(strain)))), strain);
}

void HysteresisPath::findOrigins(std::span<const StressStrain> points) {
    origins_.resize(points.size());
    open_.resize(points.size());
    std::int32_t* const open = open_.data();
    std::size_t depth = 0;
    const auto strainAt = [&](std::int32_t point) { return points[static_cast<std::size_t>(point)].strain; };
    double before = 0;
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(points.size()); ++i) {
        const double strain = strainAt(i);
        std::int32_t& origin = origins_[static_cast<std::size_t>(i)];
        if (i > 0 && strain == before) {
            origin = kAsBefore;
            continue;
        }
        const bool rising = strain > before;
        // A reversal: the way so far went against the new one. On the cyclic curve, outwards is no reversal,
        // and what starts there is taken off again below.
        if (i > 0 && (depth == 0 || rising != (before > strainAt(open[depth - 1])))) open[depth++] = i - 1;
        before = strain;
        // Beyond the outermost reversal, of either sign, the cyclic curve goes on.
        if (depth == 0 || std::abs(strain) >= std::abs(strainAt(open[0]))) {
            depth = 0;
            origin = kCyclicCurve;
            continue;
        }
        const auto passed = [&](double other) { return rising ? strain >= other : strain <= other; };
        while (depth >= 3 && passed(strainAt(open[depth - 2])))
            depth -= 2;
        origin = open[depth - 1];
    }
}

void HysteresisPath::follow(const StrainLifeModel& model, std::span<StressStrain> points) {
    findOrigins(points);
    // In a loop of its own, which looks many stresses up at once.
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::int32_t from = origins_[i];
        StressStrain& point = points[i];
        if (from == kAsBefore) {
            point.stress = points[i - 1].stress;
        } else if (from == kCyclicCurve) {
            point.stress = model.stressAt(point.strain);
        } else {
            const StressStrain& origin = points[static_cast<std::size_t>(from)];
            point.stress = origin.stress + 2.0 * model.stressAt(0.5 * (point.strain - origin.strain));
        }
    }
}

void followStresses(const StrainLifeModel& model, std::span<const double> strain, double factor,
                    std::span<const double> stress, bool follow, StrainScratch& scratch) {
    auto& points = scratch.points;
    points.resize(strain.size());
    const auto point = [&](std::size_t i) {
        return StressStrain{factor * strain[i], stress.empty() ? 0.0 : stress[i]};
    };
    // Turning points alone; without a branch, since whether a history turns cannot be foretold.
    const std::size_t last = strain.size() - 1;
    std::size_t found = 0;
    points[found++] = point(0);
    for (std::size_t i = 1; i < last; ++i) {
        points[found] = point(i);
        found += (strain[i] - strain[i - 1]) * (strain[i + 1] - strain[i]) <= 0;
    }
    if (last > 0) points[found++] = point(last);
    points.resize(found);
    if (!stress.empty() || !follow || !model.hasCyclicCurve()) return;
    scratch.path.follow(model, points);
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
