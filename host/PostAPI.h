#pragma once

#include "framework/Export.h"

/// Categories of result types.
enum class ResultCategory : int {
    None = 0, ///< a code of no category below
    Displacement = 1,
    Velocity = 2,
    Acceleration = 3,
    Seepage = 4,
    Solid = 10,
    Plate = 11,
    Membrane = 12,
    Axisymmetric = 13,
    PlaneStress = 14,
    PlaneStrain = 15,
};

class VEXA_API IPostAPI {
  public:
    /// The category of a result-type code: its hundreds for codes of three digits, its first three digits for
    /// longer ones (stresses and strains of an element kind are one category).
    static ResultCategory GetResCat(long type);
};
