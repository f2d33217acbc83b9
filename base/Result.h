#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

/// Why something failed: one sentence that says what, which item and what to do.
struct Error {
    std::string message; ///< UTF-8
};

/// A value or the reason why there is none.
template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value)
        : state_(std::move(value)) {}
    Result(Error error)
        : state_(std::move(error)) {}

    explicit operator bool() const { return std::holds_alternative<T>(state_); }
    T& operator*() { return std::get<T>(state_); }
    const T& operator*() const { return std::get<T>(state_); }
    T* operator->() { return &std::get<T>(state_); }
    const T* operator->() const { return &std::get<T>(state_); }
    /// The failure; only when there is no value.
    const Error& error() const { return std::get<Error>(state_); }

  private:
    std::variant<T, Error> state_;
};

/// Success, or the reason for failure.
template <>
class [[nodiscard]] Result<void> {
  public:
    Result() = default;
    Result(Error error)
        : error_(std::move(error)) {}

    explicit operator bool() const { return !error_; }
    const Error& error() const { return *error_; }

  private:
    std::optional<Error> error_;
};
