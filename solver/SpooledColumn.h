#pragma once

#include "base/Result.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

namespace solver {

/// Bytes that are gathered piece by piece in a nameless temporary file, so that they take no memory however
/// many they become, and are then seen whole. The file is gone with the object, also after a kill.
class Spool {
  public:
    /// `folder` is where the temporary file lives.
    static Result<Spool> create(const std::filesystem::path& folder);
    Spool(Spool&& other) noexcept;
    Spool& operator=(Spool&&) = delete;
    ~Spool();

    Result<void> append(std::span<const std::byte> bytes);
    /// All bytes, valid while the object lives; nothing may be appended afterwards.
    Result<std::span<const std::byte>> view();

  private:
    explicit Spool(int fd);
    Result<void> flush();

    int fd_;
    std::vector<std::byte> buffer_;
    std::size_t size_ = 0; ///< bytes in the file
    void* mapping_ = nullptr;
};

/// A spool of numbers.
template <class T>
class SpooledColumn {
    static_assert(std::is_arithmetic_v<T>);

  public:
    explicit SpooledColumn(Spool spool)
        : spool_(std::move(spool)) {}

    Result<void> append(std::span<const T> values) { return spool_.append(std::as_bytes(values)); }

    Result<std::span<const T>> view() {
        const auto bytes = spool_.view();
        if (!bytes) return bytes.error();
        return std::span(reinterpret_cast<const T*>(bytes->data()), bytes->size() / sizeof(T));
    }

  private:
    Spool spool_;
};

} // namespace solver
