#pragma once

#include "base/Result.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace solver {

/// Bytes that are read once, in order, and whose number is known beforehand.
class ByteSource {
  public:
    virtual ~ByteSource() = default;

    /// What messages call it.
    virtual const std::string& name() const = 0;
    virtual std::uint64_t size() const = 0;
    /// Fills `out` from its start; fewer bytes than asked for, or none, only at the end.
    virtual Result<std::size_t> read(std::span<std::byte> out) = 0;
};

/// A regular file; anything else is refused, since its size says nothing.
Result<std::unique_ptr<ByteSource>> openFile(const std::filesystem::path& path);

/// Bytes in memory, which must outlive the source.
std::unique_ptr<ByteSource> openMemory(std::string name, std::span<const std::byte> bytes);

} // namespace solver
