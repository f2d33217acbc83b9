#pragma once

#include <cstddef>

namespace workbench::fixedfield {

/// Reads a column of a table of text: `count` fields "%12.5E", the first at `field`, each `stride` bytes
/// behind the one before, into `out`. False, and `out` worthless, when parseReal has to decide about one of
/// them. The four bytes behind each field must be readable.
using ColumnReader = bool (*)(const char* field, std::size_t stride, std::size_t count, float* out);

/// For any processor.
bool readColumn(const char* field, std::size_t stride, std::size_t count, float* out);

/// The fastest one for the processor that runs the program. All of them give the same floats.
ColumnReader fastestColumnReader();

} // namespace workbench::fixedfield
