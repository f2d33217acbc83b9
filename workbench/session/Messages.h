#pragma once

#include "workbench/results/Catalogue.h"

#include <span>
#include <string>
#include <string_view>

namespace workbench {

/// A text of the user interface. Arguments stand as %s and %d in the same order in every language.
struct Message {
    const char* key;
    const char* english;
    const char* korean;
};

/// All texts, ascending by key.
std::span<const Message> messageTable();

/// The text of a key; the key itself where there is none.
std::wstring messageText(std::wstring_view key, Language language);

} // namespace workbench
