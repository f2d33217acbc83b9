#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace combination {

/// Whether no result set of that name is there yet.
using NameIsFree = std::function<bool(const std::wstring& name)>;

/// Where the file of a result set would lie, without its extension; `folder` ends with its separator.
std::wstring setFilePathName(std::wstring_view folder, std::wstring_view name);

/// The name proposed for a new set: `base`, or base_0 to base_99, the first one that is free; base_99 when
/// none is.
std::wstring proposedName(const std::wstring& base, const NameIsFree& isFree);

/// How the item list names what is combined: the case, or case and step.
std::wstring itemText(const std::wstring& caseName, const std::wstring* stepName);

/// A factor as the item list shows it.
std::wstring factorText(double factor);

/// What is wrong with the input: the key of the message and whether it names the set; an empty key when
/// nothing is. Items come first, then whether the name is free, then whether there is one.
struct InputFault {
    const wchar_t* key = L"";
    bool namesSet = false;
};
InputFault checkInput(std::size_t itemCount, const std::wstring& name, const NameIsFree& isFree);

} // namespace combination
