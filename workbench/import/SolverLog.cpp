#include "workbench/import/SolverLog.h"

#include "workbench/import/InpCard.h"
#include "workbench/import/Names.h"
#include "workbench/import/TextWindow.h"

#include <array>

namespace workbench {
namespace {

/// The last "*ERROR ..." of the log with the lines that continue it.
std::string lastError(const std::filesystem::path& log) {
    constexpr std::size_t kLongest = 300;
    std::string found;
    bool inside = false;
    auto window = TextWindow::openFile(log);
    if (!window) return found;
    std::string_view line;
    while (window->nextLine(line)) {
        const std::string_view text = trimmed(line);
        if (text.starts_with("*ERROR")) {
            inside = true;
            found = text;
        } else if (inside && !text.empty() && !text.starts_with("*")) {
            if (found.size() < kLongest) found += " " + std::string(text);
        } else {
            inside = false;
        }
    }
    return found.substr(0, kLongest);
}

/// "step 1, increment 3" from the last line of the summary: step, increment, attempt, iterations, times.
std::string lastIncrement(const std::filesystem::path& summary) {
    auto window = TextWindow::openFile(summary);
    if (!window) return {};
    std::string last;
    std::string_view line;
    while (window->nextLine(line)) {
        std::array<std::string_view, 2> words;
        std::string_view rest = line;
        for (std::string_view& word : words) {
            rest = trimmed(rest);
            const std::size_t end = std::min(rest.find_first_of(" \t"), rest.size());
            word = rest.substr(0, end);
            rest.remove_prefix(end);
        }
        if (parseInteger(words[0]) && parseInteger(words[1]))
            last = "step " + std::string(words[0]) + ", increment " + std::string(words[1]);
    }
    return last;
}

} // namespace

std::string solverLastWords(const std::filesystem::path& results) {
    auto beside = [&](const char* extension) {
        return std::filesystem::path(results).replace_extension(extension);
    };
    std::string text;
    if (const std::string error = lastError(beside(".log")); !error.empty())
        text += "; its log says: " + error;
    if (const std::string increment = lastIncrement(beside(".sta")); !increment.empty())
        text += "; the last increment that it finished is " + increment;
    return text;
}

} // namespace workbench
