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

/// All texts, by subsystem; each table ascends by key.
std::span<const std::span<const Message>> messageTables();

/// The text of a key; the key itself where there is none.
std::wstring messageText(std::wstring_view key, Language language);

/// Gives the texts that the exchange of dialog data shows to the framework.
void translateDataExchange(Language language);

} // namespace workbench
