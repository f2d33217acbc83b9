#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

/// XXH3, 64 bits: finds damage and mix-ups, not forgery. Feed it in pieces of any size.
class Checksum {
  public:
    Checksum();
    ~Checksum();
    Checksum(Checksum&&) noexcept;
    Checksum& operator=(Checksum&&) noexcept;

    void add(std::span<const std::byte> bytes);
    std::uint64_t value() const;

    static std::uint64_t of(std::span<const std::byte> bytes);

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// Sixteen lower-case hexadecimal digits.
std::string checksumText(std::uint64_t checksum);
