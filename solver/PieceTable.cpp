#include "solver/PieceTable.h"

#include <cmath>
#include <numbers>

namespace solver {
namespace {

/// Chebyshev's node j of `count`, in -1 .. 1.
double node(std::size_t j, std::size_t count) {
    return std::cos(std::numbers::pi * (static_cast<double>(j) + 0.5) / static_cast<double>(count));
}

} // namespace

/// What a value at each node adds to the coefficients: Lagrange's polynomials, multiplied out.
std::array<PieceTable::Piece, PieceTable::kTerms> PieceTable::coefficientsOfNodes() {
    std::array<Piece, kTerms> all{};
    for (std::size_t j = 0; j < kTerms; ++j) {
        Piece& product = all[j];
        product[0] = 1;
        std::size_t degree = 0;
        for (std::size_t k = 0; k < kTerms; ++k) {
            if (k == j) continue;
            const double other = node(k, kTerms), factor = 1.0 / (node(j, kTerms) - other);
            ++degree;
            for (std::size_t i = degree + 1; i-- > 0;)
                product[i] = factor * ((i > 0 ? product[i - 1] : 0.0) - other * product[i]);
        }
    }
    return all;
}

PieceTable::PieceTable(const std::function<double(double)>& function, int firstOctave, int endOctave)
    : firstPiece_(std::bit_cast<std::uint64_t>(std::ldexp(1.0, firstOctave)) >>
                  (kMantissaBits - kPieceBits)) {
    static const auto ofNodes = coefficientsOfNodes();
    constexpr int kPieces = 1 << kPieceBits;
    for (int octave = firstOctave; octave < endOctave; ++octave)
        for (int i = 0; i < kPieces; ++i) {
            const auto argument = [&](double v) {
                return std::ldexp(1.0 + (i + 0.5 + 0.5 * v) / kPieces, octave);
            };
            Piece piece{};
            for (std::size_t j = 0; j < kTerms; ++j) {
                const double value = function(argument(node(j, kTerms)));
                for (std::size_t k = 0; k < kTerms; ++k)
                    piece[k] += value * ofNodes[j][k];
            }
            for (const double v : {-1.0, -0.7071, -0.3827, 0.0, 0.3827, 0.7071, 1.0}) {
                const double exact = function(argument(v));
                if (!std::isnormal(exact) || !(std::abs(evaluate(piece, v) - exact) <= 0.1 * kError * exact))
                    piece.fill(std::numeric_limits<double>::quiet_NaN());
            }
            pieces_.push_back(piece);
        }
}

} // namespace solver
