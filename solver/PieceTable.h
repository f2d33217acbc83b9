#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace solver {

/// A smooth positive function of a positive argument as polynomials of degree 7, 32 of them an octave, so
/// that a value takes neither a logarithm nor a root. Each piece is compared with the function when the table
/// is made; a piece that misses it holds nothing.
class PieceTable {
  public:
    /// Relative error at most, as measured on each piece where interpolation errs most, with a tenth to
    /// spare.
    static constexpr double kError = 1e-9;

    PieceTable() = default;
    /// Covers the arguments from 2^firstOctave to 2^endOctave, both within -1000 .. 1000.
    PieceTable(const std::function<double(double)>& function, int firstOctave, int endOctave);

    /// The function at any number; not a number where the table holds nothing.
    double at(double argument) const {
        const auto bits = std::bit_cast<std::uint64_t>(argument);
        const std::uint64_t piece = (bits >> (kMantissaBits - kPieceBits)) - firstPiece_;
        if (piece >= pieces_.size()) return std::numeric_limits<double>::quiet_NaN();
        const Piece& c = pieces_[piece];
        // What the piece leaves of the mantissa is the place on it, spread to -1 .. 1.
        const auto place = (bits << kPieceBits & kMantissa) | std::bit_cast<std::uint64_t>(1.0);
        return evaluate(c, 2.0 * std::bit_cast<double>(place) - 3.0);
    }

  private:
    static constexpr int kMantissaBits = 52, kPieceBits = 5;
    static constexpr std::uint64_t kMantissa = (std::uint64_t{1} << kMantissaBits) - 1;
    static constexpr std::size_t kTerms = 8;
    /// Coefficients, the lowest power first; in one line of the processor's cache.
    struct alignas(64) Piece : std::array<double, kTerms> {};

    /// In pairs of powers, which need not wait for each other.
    static double evaluate(const Piece& c, double v) {
        const double w = v * v;
        const double low = (c[0] + c[1] * v) + w * (c[2] + c[3] * v);
        const double high = (c[4] + c[5] * v) + w * (c[6] + c[7] * v);
        return low + w * w * high;
    }
    static std::array<Piece, kTerms> coefficientsOfNodes();

    std::vector<Piece> pieces_;
    std::uint64_t firstPiece_ = 0; ///< leading bits of the first piece's arguments
};

} // namespace solver
