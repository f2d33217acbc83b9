#pragma once

#include "framework/Export.h"

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

namespace framework {

/// One argument of formatWide: an integer, a real or a wide text.
using FormatArgument = std::variant<std::int64_t, std::uint64_t, double, std::wstring_view>;

/// printf-like formatting in the C locale: %d %i %u %x %X %c %s %e %f %g %G %E %% with flags, width and
/// precision (also *); length modifiers are read and ignored, %s takes wide text. Exponents have at least
/// two digits on every platform. An argument that is missing or of the wrong kind prints as "?".
VEXA_API std::wstring formatWideArguments(std::wstring_view format,
                                          std::initializer_list<FormatArgument> arguments);

namespace detail {
template <class T>
FormatArgument formatArgument(const T& value) {
    if constexpr (std::signed_integral<T>)
        return static_cast<std::int64_t>(value);
    else if constexpr (std::unsigned_integral<T>)
        return static_cast<std::uint64_t>(value);
    else if constexpr (std::floating_point<T>)
        return static_cast<double>(value);
    else
        return std::wstring_view(value);
}
} // namespace detail

template <class... Arguments>
std::wstring formatWide(std::wstring_view format, const Arguments&... arguments) {
    return formatWideArguments(format, {detail::formatArgument(arguments)...});
}

} // namespace framework
