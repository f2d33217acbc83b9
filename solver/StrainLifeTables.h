#pragma once

#include "solver/PieceTable.h"

namespace solver {

/// What a strain-life material's equations give when they are solved, in tables. All answers are not a number
/// where a table holds nothing; 2N in reversals.
///
/// Every mean stress leads to the one curve without it: with s = 1 - mean / sigma_f',
/// s A t^b + C t^c = K (A (t / l)^b + C (t / l)^c) for l = s^(1 / (c - b)) and K = s^(c / (c - b)) (Morrow),
/// and for l = s^(-1 / b) with K = 1 where C shrinks by s^(c / b) (Manson, Halford).
struct StrainLifeTables {
    PieceTable reversals;            ///< 2N without mean stress over the strain amplitude
    PieceTable reversalsOfParameter; ///< 2N over largest stress / sigma_f' x strain amplitude
    PieceTable stress;               ///< cyclic curve, stress over strain
    PieceTable morrowLife, morrowAmplitude, mansonHalfordLife; ///< l, 1 / K and l over s
};

} // namespace solver
