#include "workbench/import/InpContext.h"

#include <algorithm>

namespace workbench {

bool InpContext::fail(const std::string& message) {
    if (error.empty()) error = raw.text(place) + ": " + message;
    return false;
}

bool InpContext::numberOf(std::string_view field, const char* what, int& number) {
    const auto value = parseInteger(field);
    if (!value || *value < 1)
        return fail("'" + std::string(field) + "' is no " + what + " (1 to 2147483647)");
    number = *value;
    return true;
}

bool InpContext::numberField(InpFields& fields, const char* what, int& number) {
    std::string_view field;
    if (!fields.next(field)) return fail(std::string("the ") + what + " is missing");
    return numberOf(field, what, number);
}

bool InpContext::realField(InpFields& fields, const char* what, double& number) {
    std::string_view field;
    if (!fields.next(field)) return true;
    const auto value = parseReal(field);
    if (!value) return fail("'" + std::string(field) + "' is no " + what);
    number = *value;
    return true;
}

void InpContext::note(const std::string& key, const std::string& text, const char* unit) {
    const auto [found, isNew] = noteIndex_.try_emplace(key, notes_.size());
    if (isNew) notes_.push_back({raw.text(place) + ": " + text, unit, 0});
    ++notes_[found->second].count;
}

void InpContext::noteParametersBut(std::initializer_list<std::string_view> known) {
    for (const InpCard::Parameter& parameter : card.parameters)
        if (std::find(known.begin(), known.end(), parameter.name) == known.end())
            note(card.keyword + "," + parameter.name,
                 "*" + card.title + ": the parameter " + parameter.name + " is not read");
}

void InpContext::collectNotes() {
    std::vector<std::string> texts;
    for (const Note& entry : notes_)
        texts.push_back(entry.text + (entry.count > 1 ? " (" + std::to_string(entry.count) + entry.unit + ")"
                                                      : std::string()));
    deck.warnings.insert(deck.warnings.begin(), texts.begin(), texts.end());
}

} // namespace workbench
