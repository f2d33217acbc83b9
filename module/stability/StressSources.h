#pragma once

/// Result codes of the host's catalogue from which local safety is made, by element family: solid, plate,
/// plane strain, plane stress, membrane.
namespace stability {

inline constexpr unsigned kMaximumShearCodes[] = {312148, 412148, 432148, 422148, 452148};
// The last digits of the equivalents follow no rule; they are the host's.
inline constexpr unsigned kEquivalentCodes[] = {312114, 412146, 432184, 422184, 452114};
inline constexpr unsigned kMajorStressCodes[] = {312107, 412142, 432137, 422137, 452107};
inline constexpr unsigned kMinorStressCodes[] = {312108, 412143, 432138, 422138, 452108};

} // namespace stability
