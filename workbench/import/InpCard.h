#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

/// A keyword line of a solver deck with its continuation: "*ELEMENT, TYPE=C3D8, ELSET=PART".
struct InpCard {
    struct Parameter {
        std::string name;  ///< upper case, without blanks
        std::string value; ///< as written, without quotes; empty without "="
    };

    std::string keyword; ///< upper case, without the asterisk and without blanks, which do not count
    std::string title;   ///< the same for messages, with single blanks
    std::vector<Parameter> parameters;

    bool has(std::string_view name) const { return find(name) != nullptr; }
    const std::string* find(std::string_view name) const {
        for (const Parameter& parameter : parameters)
            if (parameter.name == name) return &parameter.value;
        return nullptr;
    }
};

InpCard parseCard(std::string_view line);

/// The comma-separated fields of a data line, one after another.
class InpFields {
  public:
    explicit InpFields(std::string_view line)
        : rest_(line) {}

    /// The next field without its blanks; false after the last. A comma at the end of the line opens no
    /// field.
    bool next(std::string_view& field);

  private:
    std::string_view rest_;
};

/// A whole number; nothing when the field is something else or does not fit.
std::optional<int> parseInteger(std::string_view field);
/// A real as solvers write it: "1.", "+2.5E3", "1D5"; an empty field is 0. Nothing when it is something else
/// or not finite.
std::optional<double> parseReal(std::string_view field);

} // namespace workbench
