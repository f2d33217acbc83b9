#pragma once

/// The curves of the safety graph, by their position in its box of graph types.
namespace SafetyGraphType {
inline constexpr int Displacement = 0; ///< factor of safety over displacement
inline constexpr int Iterations = 1;   ///< factor of safety over accumulated iterations
} // namespace SafetyGraphType
