#pragma once

#include "framework/text/CodePage.h"
#include "host/POHTree.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace workbench::cli {

/// The names of analyses, cases or steps.
template <class T>
std::vector<std::string> namesOf(const std::vector<T*>& children) {
    std::vector<std::string> names;
    for (T* child : children)
        names.push_back(framework::toUtf8(child->GetName()));
    return names;
}

/// The one of that name; null for none.
template <class T>
T* byName(const std::vector<T*>& children, const std::string& name) {
    const auto found =
        std::ranges::find(children, framework::fromUtf8(name), [](T* child) { return child->GetName(); });
    return found == children.end() ? nullptr : *found;
}

/// A whole number from 0 that is all of the text.
std::optional<std::size_t> asNumber(const std::string& text);

/// The step of that name, or of that number counted from 1 where no step has the number as its name; null for
/// none.
CPOHVCase* stepOf(const std::vector<CPOHVCase*>& steps, const std::string& text);

} // namespace workbench::cli
