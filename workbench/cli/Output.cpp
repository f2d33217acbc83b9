#include "workbench/cli/Output.h"

#include "base/ReplaceFile.h"
#include "framework/text/CodePage.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>

namespace workbench::cli {
namespace {

/// Terminal columns of a text: Hangul and other wide characters take two.
std::size_t displayWidth(const std::string& text) {
    std::size_t width = 0;
    for (const wchar_t c : framework::fromUtf8(text))
        width += c >= 0x1100 ? 2 : 1;
    return width;
}

bool looksLikeNumber(const std::string& text) {
    return !text.empty() && (text.find_first_of("0123456789") == 0 || (text[0] == '-' && text.size() > 1));
}

} // namespace

int fail(const std::string& message) {
    std::fprintf(stderr, "error: %s\n", message.c_str());
    return kFailed;
}

int fail(const Error& error) {
    return fail(error.message);
}

Result<void> applyUnits(WorkbenchHost& host, ModelDatabase& database, const CommonOptions& common) {
    const UnitSystem own{database.units().force, database.units().length};
    if (!isKnown(own))
        return Error{"the document is in " + own.force + " and " + own.length +
                     ", which this program does not know"};
    host.setDatabaseUnits(own);
    if (common.units.empty()) return {};
    host.setCurrentUnits(parseUnitSystem(common.units));
    return {};
}

Result<std::unique_ptr<Document>> openForCommand(WorkbenchHost& host, const std::filesystem::path& path,
                                                 const CommonOptions& common) {
    auto document = Document::open(path);
    if (!document) return document;
    if (auto units = applyUnits(host, (*document)->database(), common); !units) return units.error();
    return document;
}

std::string numberText(float value) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    return {buffer, end};
}

std::string csvField(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + "\"";
}

std::string TextTable::text() const {
    std::vector<std::size_t> widths;
    for (const auto& row : rows_)
        for (std::size_t c = 0; c < row.size(); ++c) {
            if (c == widths.size()) widths.push_back(0);
            widths[c] = std::max(widths[c], displayWidth(row[c]));
        }
    std::string text;
    for (std::size_t r = 0; r < rows_.size(); ++r) {
        std::string line;
        for (std::size_t c = 0; c < rows_[r].size(); ++c) {
            const std::string& cell = rows_[r][c];
            const std::string gap(widths[c] - displayWidth(cell), ' ');
            const bool right = looksLikeNumber(rows_.size() > 1 && r == 0 ? rows_[1][c] : cell);
            line += (c == 0 ? "" : "  ") + (right ? gap + cell : cell + gap);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

Result<void> writeText(const std::string& text, const std::filesystem::path& path) {
    if (path.empty()) {
        std::fwrite(text.data(), 1, text.size(), stdout); // a failure is told when the program ends
        return {};
    }
    ReplacedFile replaced(path);
    std::FILE* file = std::fopen(replaced.temporaryPath().c_str(), "wb");
    if (!file) return Error{"cannot write " + path.string() + ": " + systemErrorText(errno)};
    const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    const int writeError = errno;
    if (std::fclose(file) != 0 || !written)
        return Error{"cannot write " + path.string() + ": " + systemErrorText(written ? errno : writeError)};
    return replaced.commit();
}

} // namespace workbench::cli
