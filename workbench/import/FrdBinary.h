#pragma once

#include "base/Result.h"
#include "workbench/import/FrdReader.h"
#include "workbench/import/TextWindow.h"

#include <cstddef>
#include <vector>

/// The binary form of a CalculiX result file: the same records of text as in ASCII, but their rows are
/// little-endian numbers without marks or line ends, as many as the record announces.

namespace workbench::frdbinary {

enum class Real { Single = 4, Double = 8 }; ///< bytes of a value

/// Bytes of a row of values.
constexpr std::size_t rowBytes(std::size_t components, Real real) {
    return 4 + components * static_cast<std::size_t>(real);
}

/// Replaces the tables of a block, one a component, by `count` rows: a node as 32-bit integer, then the
/// values. Fails without a place on values that are not finite, or too large for a table, and when the file
/// ends.
Result<void> readRows(TextWindow& window, std::size_t count, Real real, FrdBlock& block);

/// The next element, its nodes in `nodes`: number, type, group, material and nodes as 32-bit integers.
Result<FrdElement> readElement(TextWindow& window, std::vector<std::int32_t>& nodes);

/// Passes bytes unread. False when the file ends before.
bool skip(TextWindow& window, std::uint64_t bytes);

} // namespace workbench::frdbinary
