#pragma once

#include <span>
#include <string>

namespace workbench {

enum class Language { English, Korean };

/// What an identifier of a result component means.
struct ComponentName {
    unsigned id;
    int unitKind; ///< UnitKind of the host; None for pure numbers
    std::string english;
    std::string korean;

    const std::string& text(Language language) const {
        return language == Language::Korean ? korean : english;
    }
};

/// The catalogue of result components, ascending by id.
std::span<const ComponentName> resultCatalogue();

/// The entry of an identifier; null for one that the catalogue does not know.
const ComponentName* findComponent(unsigned id);

/// The identifier whose values an edition-C identifier shares; 0 for every other one.
unsigned sourceOfAlias(unsigned id);

/// The name of an identifier, or "Component 123" where the catalogue does not know it.
std::string componentName(unsigned id, Language language);

} // namespace workbench
