#pragma once

#include "workbench/import/InpCard.h"
#include "workbench/import/InpRaw.h"
#include "workbench/import/SolverDeck.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace workbench {

/// What the readers of a deck's cards share: the deck as it grows, the card and the line that are read, what
/// went wrong and what was left out.
struct InpContext {
    SolverDeck deck;
    InpRaw raw;
    InpCard card;       ///< whose data lines are read
    InpPlace place;     ///< of the line that is read
    InpPlace cardPlace; ///< of the card
    std::string error;  ///< "file:line: ..."; the first one counts

    /// Keeps the error; false, for the caller to return.
    bool fail(const std::string& message);

    /// Remembers a warning; later ones of the same key are only counted.
    void note(const std::string& key, const std::string& text, const char* unit = " times");
    void noteParametersBut(std::initializer_list<std::string_view> known);
    /// Puts the remembered warnings before those of the deck.
    void collectNotes();

    // Fields of data lines; false when the field is something else, `what` being its name in the message.
    bool numberOf(std::string_view field, const char* what, int& number);
    bool numberField(InpFields& fields, const char* what, int& number);
    /// A field that is missing leaves the number as it is.
    bool realField(InpFields& fields, const char* what, double& number);

  private:
    struct Note {
        std::string text;
        const char* unit;
        std::uint64_t count;
    };
    std::vector<Note> notes_;
    std::unordered_map<std::string, std::size_t> noteIndex_;
};

} // namespace workbench
