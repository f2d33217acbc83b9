#pragma once

#include "base/Result.h"
#include "solver/Definition.h"
#include "solver/PieceTable.h"

#include <cmath>
#include <span>
#include <vector>

namespace solver {

/// Cycles to failure over stress amplitude: straight lines between points in log-log axes; beyond the end
/// points the lines of the end pairs go on. A Basquin curve is a single line.
class LifeCurve {
  public:
    /// Nothing takes less than one reversal to fail, however large its amplitude is.
    static constexpr double kFewestCycles = 0.5;

    /// amplitude = coefficient * cycles ^ exponent (O. H. Basquin, Proc. ASTM 10, 1910, in full cycles).
    static Result<LifeCurve> basquin(double coefficient, double exponent);
    /// At least two points, cycles strictly ascending, amplitudes not ascending. Where the amplitude
    /// stays, the smallest number of cycles counts; below a last pair of one amplitude the life is endless.
    static Result<LifeCurve> table(std::span<const CurvePoint> points);

    /// The same curve that looks lives up where its table holds them, several times faster, with a relative
    /// error of PieceTable::kError at most. Takes up to a millisecond and 130 kilobytes.
    LifeCurve tabulated() const;

    /// kFewestCycles or more; infinity for amplitude 0 and below a horizontal end.
    double cyclesToFailure(double amplitude) const {
        const double cycles = table_.at(amplitude);
        return std::isnan(cycles) ? solveCycles(amplitude) : cycles;
    }
    /// The amplitude that fails at `cycles` (positive, finite).
    double amplitudeAt(double cycles) const;

  private:
    LifeCurve(std::vector<double> logCycles, std::vector<double> logAmplitudes);
    double solveCycles(double amplitude) const;

    /// Natural logarithms of the points, two or more; cycles ascend, amplitudes do not ascend.
    std::vector<double> logCycles_;
    std::vector<double> logAmplitudes_;
    PieceTable table_; ///< of solveCycles, where lives matter; may hold nothing
};

} // namespace solver
