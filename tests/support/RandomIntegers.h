#pragma once

#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

/// The same integers from the same seed on every platform (splitmix64, S. Vigna). The seed comes from the
/// environment variable VEXA_TEST_SEED or the clock; print `seedText()` with every failure.
class RandomIntegers {
  public:
    RandomIntegers() {
        const char* given = std::getenv("VEXA_TEST_SEED");
        seed_ = given
                    ? std::strtoull(given, nullptr, 10)
                    : static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        state_ = seed_;
    }
    std::string seedText() const { return "run again with VEXA_TEST_SEED=" + std::to_string(seed_); }

    std::uint64_t next() {
        state_ += 0x9E3779B97F4A7C15u;
        std::uint64_t z = state_;
        z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9u;
        z = (z ^ z >> 27) * 0x94D049BB133111EBu;
        return z ^ z >> 31;
    }
    /// 0 .. limit - 1.
    std::size_t below(std::size_t limit) { return static_cast<std::size_t>(next() % limit); }
    bool oneIn(std::size_t count) { return below(count) == 0; }

    /// A double of any size; the sign of what is no number is plus, since not all libraries show it.
    double real() {
        const auto any = std::bit_cast<double>(next());
        return std::isnan(any) ? std::abs(any) : any;
    }

  private:
    std::uint64_t seed_ = 0;
    std::uint64_t state_ = 0;
};
