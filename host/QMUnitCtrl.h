#pragma once

#include "framework/Export.h"

/// Kinds of quantities that the host converts.
namespace UnitKind {
inline constexpr int None = 0;
inline constexpr int Length = 1;
inline constexpr int Force = 2;
inline constexpr int Time = 3;
inline constexpr int Angle = 4;
inline constexpr int Mass = 5;
inline constexpr int Temperature = 6;
inline constexpr int Velocity = 10;
inline constexpr int Acceleration = 11;
inline constexpr int FlowRate = 12;
inline constexpr int Density = 14;
inline constexpr int Stress = 18;
} // namespace UnitKind

/// Unit conversion. The database keeps its own (default) unit system; the current one is for display.
class VEXA_API CQMUnitCtrl {
  public:
    /// Factor from database units to the current unit system for a kind of quantity; 1 for unknown kinds.
    static double GetConvertFactorCurrent(int kind);
    static int GetUnitIndexCurrent(); ///< index of the current unit system in the host's list
    static int GetUnitIndexDefault(); ///< index of the database's unit system
    static int GetUnitSystemForce();  ///< the current force unit's position in the host's list
    static int GetUnitSystemLength(); ///< likewise of the length unit
    /// A database value in the current unit system, for display.
    static double ConvertUnitDataOut(double value, int kind);
    /// A value of the current unit system in another one, and back.
    static double ConvertCurUnitData2TgtUnit(double value, int kind, int targetIndex);
    static double ConvertTgtUnitData2CurUnit(double value, int kind, int targetIndex);
    static double ConvertSrcUnitData2TgtUnit(double value, int kind, int sourceIndex, int targetIndex);
};
