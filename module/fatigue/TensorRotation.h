#pragma once

namespace fatigue {

/// Positions of the components of a symmetric tensor, in every table and record of the fatigue run.
enum TensorComponent : int { XX = 0, YY = 1, ZZ = 2, XY = 3, YZ = 4, ZX = 5 };
inline constexpr int kTensorComponents = 6;

/// Turns a tensor from local into global axes in place: G = transpose(A) S A, where the rows of A are the
/// local axes in global coordinates. M = S A comes first, then G = transpose(A) M; every sum starts at 0.0
/// and runs over k = 0, 1, 2, so that results agree to the last bit wherever they are computed.
/// Example: local x along global y, y along z, z along x takes xx, yy, zz to zz, xx, yy.
inline void turnToGlobal(double* components, const double axes[3][3]) {
    const double local[3][3] = {{components[XX], components[XY], components[ZX]},
                                {components[XY], components[YY], components[YZ]},
                                {components[ZX], components[YZ], components[ZZ]}};
    double half[3][3];
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) {
            double sum = 0.0;
            for (int k = 0; k < 3; ++k)
                sum += local[i][k] * axes[k][j];
            half[i][j] = sum;
        }
    const auto global = [&](int i, int j) {
        double sum = 0.0;
        for (int k = 0; k < 3; ++k)
            sum += axes[k][i] * half[k][j];
        return sum;
    };
    components[XX] = global(0, 0);
    components[YY] = global(1, 1);
    components[ZZ] = global(2, 2);
    components[XY] = global(0, 1);
    components[YZ] = global(1, 2);
    components[ZX] = global(0, 2);
}

} // namespace fatigue
