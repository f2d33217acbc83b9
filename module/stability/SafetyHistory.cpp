#include "module/stability/SafetyHistory.h"

#include "framework/text/CodePage.h"
#include "framework/text/Format.h"
#include "framework/text/Numbers.h"
#include "host/FileCtrl.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace {

constexpr std::size_t kLongestLine = 4096;
constexpr std::size_t kNameStart = 10;
constexpr std::string_view kBlockWord = "SUBCASE";
constexpr std::string_view kHeadingWord = "ITERATION";

/// Lines of a stream in blocks of bytes; a line of any length costs no more memory than what counts of it.
class LineReader {
  public:
    explicit LineReader(std::istream& in)
        : in_(in)
        , buffer_(std::size_t{1} << 16) {}

    /// False at the end. The line end is cut.
    bool next(std::string& line) {
        line.clear();
        isCut_ = false;
        bool isRead = false;
        while (at_ < filled_ || fill()) {
            isRead = true;
            const std::string_view rest(buffer_.data() + at_, filled_ - at_);
            const std::size_t end = rest.find('\n');
            append(line, rest.substr(0, end));
            at_ += end == std::string_view::npos ? rest.size() : end + 1;
            if (end != std::string_view::npos) break;
        }
        number_ += isRead;
        return isRead;
    }
    std::size_t number() const { return number_; }
    bool isCut() const { return isCut_; }

  private:
    bool fill() {
        at_ = 0;
        in_.read(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
        filled_ = static_cast<std::size_t>(in_.gcount());
        return filled_ > 0;
    }
    void append(std::string& line, std::string_view part) {
        const std::size_t room = kLongestLine - line.size();
        isCut_ = isCut_ || part.size() > room;
        line += part.substr(0, room);
    }

    std::istream& in_;
    std::vector<char> buffer_;
    std::size_t at_ = 0;
    std::size_t filled_ = 0;
    std::size_t number_ = 0;
    bool isCut_ = false;
};

/// The first fields of a line, as many as a row needs.
struct Fields {
    std::array<std::string_view, 4> texts;
    std::size_t count = 0;
};

Fields fieldsOf(std::string_view line) {
    constexpr std::string_view kBetween = ",\n\r\t ";
    Fields fields;
    std::size_t at = line.find_first_not_of(kBetween);
    while (at != std::string_view::npos && fields.count < fields.texts.size()) {
        const std::size_t end = std::min(line.find_first_of(kBetween, at), line.size());
        fields.texts[fields.count++] = line.substr(at, end - at);
        at = line.find_first_not_of(kBetween, end);
    }
    return fields;
}

/// Whether a field is that word of capitals, in any letter case.
bool isWord(std::string_view field, std::string_view word) {
    if (field.size() != word.size()) return false;
    for (std::size_t i = 0; i < field.size(); ++i) {
        const char c = field[i];
        if ((c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c) != word[i]) return false;
    }
    return true;
}

std::wstring nameOf(std::string line, bool isCut) {
    line.erase(line.find_last_not_of(" \t\r\n\v\f") + 1);
    std::wstring text = framework::multiToWide(line);
    // Where the line was cut in the middle of a character.
    while (isCut && !text.empty() && text.back() == 0xFFFD)
        text.pop_back();
    return text.size() > kNameStart ? text.substr(kNameStart) : std::wstring();
}

void readBlock(LineReader& reader, SafetySubcase& subcase, SafetyHistory& history) {
    std::string line;
    while (reader.next(line)) {
        const Fields fields = fieldsOf(line);
        if (fields.count == 0) return;
        if (isWord(fields.texts[0], kHeadingWord)) continue;
        if (fields.count < fields.texts.size()) {
            if (history.shortLineCount++ < kMostNamedLines) history.shortLines.push_back(reader.number());
            continue;
        }
        subcase.iterations.push_back(framework::ntoi(fields.texts[0]));
        subcase.displacement.push_back(framework::ntof(fields.texts[1]));
        subcase.safety.push_back(framework::ntof(fields.texts[2]));
        subcase.isConverged.push_back(isWord(fields.texts[3], "T"));
    }
}

} // namespace

std::wstring safetyHistoryPath(const std::wstring& documentPath, const std::wstring& name) {
    const std::wstring stem = framework::formatWide(L"%s%s", CFileCtrl::GetFilePath(documentPath),
                                                    CFileCtrl::GetFileName(documentPath));
    return framework::formatWide(L"%s_%s_fos.out", stem, name);
}

SafetyHistory readSafetyHistory(std::istream& in) {
    SafetyHistory history;
    LineReader reader(in);
    std::string line;
    while (reader.next(line)) {
        if (!line.starts_with(kBlockWord)) continue;
        SafetySubcase subcase;
        subcase.name = nameOf(std::move(line), reader.isCut());
        readBlock(reader, subcase, history);
        history.subcases.push_back(std::move(subcase));
    }
    return history;
}

std::vector<SafetyPoint> displacementCurve(const SafetySubcase& subcase) {
    std::vector<SafetyPoint> points;
    for (std::size_t i = 0; i < subcase.safety.size(); ++i)
        if (subcase.isConverged[i]) points.push_back({subcase.displacement[i], subcase.safety[i]});
    return points;
}

std::vector<SafetyPoint> iterationCurve(const SafetySubcase& subcase) {
    std::vector<SafetyPoint> points;
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < subcase.safety.size(); ++i) {
        sum += subcase.iterations[i];
        points.push_back({static_cast<double>(sum), subcase.safety[i]});
    }
    return points;
}
