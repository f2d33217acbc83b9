#pragma once

#include "host/ElementTypes.h"
#include "workbench/document/DocumentFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace workbench {

/// A folder of the running test's own, gone with the object.
class TemporaryFolder {
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }
    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

/// Integers that are the same on every platform (SplitMix64).
class Generator {
  public:
    explicit Generator(std::uint64_t seed)
        : state_(seed) {}
    std::uint64_t next();
    std::uint64_t below(std::uint64_t end) { return next() % end; }

  private:
    std::uint64_t state_;
};

// Every field of a record, by structured binding: a field that is added does not compile until it is compared
// too.
inline auto fieldsOf(const tagTMatl& r) {
    const auto& [a, b, c, d, e, f, g, h, i, j, k, l, m] = r;
    return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m);
}
inline auto fieldsOf(const tagTProp& r) {
    const auto& [a, b, c, d, e, f, g] = r;
    return std::tie(a, b, c, d, e, f, g);
}
inline auto fieldsOf(const tagTMset& r) {
    const auto& [a, b, c, d] = r;
    return std::tie(a, b, c, d);
}
inline auto fieldsOf(const tagTVXMcas& r) {
    const auto& [a, b, c, d] = r;
    return std::tie(a, b, c, d);
}
inline auto fieldsOf(const tagTVXOctr& r) {
    const auto& [a, b, c, d] = r;
    return std::tie(a, b, c, d);
}
inline auto fieldsOf(const tagSNFun& r) {
    const auto& [a, b, c] = r;
    return std::tie(a, b, c);
}
inline auto fieldsOf(const tagFLFun& r) {
    const auto& [a, b, c, d] = r;
    return std::tie(a, b, c, d);
}
inline auto fieldsOf(const T_FATG_STRESS_LIFE_D& r) {
    const auto& [a, b, c, d, e, f] = r;
    return std::tie(a, b, c, d, e, f);
}
inline auto fieldsOf(const T_FATG_STRAIN_LIFE_D& r) {
    const auto& [a, b, c, d, e, f, g, h, i] = r;
    return std::tie(a, b, c, d, e, f, g, h, i);
}
inline auto fieldsOf(const T_FATG_LOAD_D& r) {
    const auto& [a, b, c, d] = r;
    return std::tie(a, b, c, d);
}
inline auto fieldsOf(const tagTFatg& r) {
    const auto& [a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q] = r;
    return std::tie(a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q);
}
template <int Kind>
auto fieldsOf(const T_NAMED_RECORD_D<Kind>& r) {
    const auto& [a, b] = r;
    return std::tie(a, b);
}
inline auto fieldsOf(const ResultFileRecord& r) {
    const auto& [a, b, c, d, e] = r;
    return std::tie(a, b, c, d, e);
}
inline auto fieldsOf(const DocumentUnits& r) {
    const auto& [a, b] = r;
    return std::tie(a, b);
}
inline auto fieldsOf(const MeshData& r) {
    const auto& [a, b, c, d, e, f, g, h, i] = r;
    return std::tie(a, b, c, d, e, f, g, h, i);
}

/// Equal to the bit; NaN is NaN.
template <class T>
bool same(const T& a, const T& b) {
    if constexpr (std::is_floating_point_v<T>) {
        return (std::isnan(a) && std::isnan(b)) ||
               std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
    } else if constexpr (requires { a.begin(); }) {
        return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                          [](const auto& left, const auto& right) { return same(left, right); });
    } else if constexpr (requires { fieldsOf(a); }) {
        const auto left = fieldsOf(a);
        const auto right = fieldsOf(b);
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            return (same(std::get<I>(left), std::get<I>(right)) && ...);
        }
        (std::make_index_sequence<std::tuple_size_v<decltype(left)>>());
    } else {
        return a == b;
    }
}

/// What differs first between two documents, in words; empty when nothing does. The key sequence counts, so
/// this leaves a rolled-back transaction behind in both.
std::string difference(ModelDatabase& a, ModelDatabase& b);

/// A row of `cells` hexahedra along x, numbered from `firstNumber`; `cells` * 4 + 4 nodes.
MeshData hexRow(std::uint32_t cells, std::uint32_t propertyKey = 0, std::int32_t firstNumber = 1);

/// A document that has records of every kind, odd values, a mesh and a result file.
std::unique_ptr<ModelDatabase> oddDocument();

/// Runs `change` in a transaction of its own.
template <class F>
void change(ModelDatabase& database, F&& work) {
    ASSERT_TRUE(database.beginTransaction(L"change"));
    work();
    ASSERT_TRUE(database.commitTransaction());
}

} // namespace workbench
