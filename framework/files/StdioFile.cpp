#include "framework/files/StdioFile.h"

#include "framework/text/CodePage.h"
#include "framework/text/LineEnd.h"

namespace {

/// `bytes` with every "\n" as the platform's line end. No code page has a byte of that value inside a
/// character.
void widenLineEnds(std::string& bytes) {
    for (std::size_t at = bytes.find('\n'); at != std::string::npos;
         at = bytes.find('\n', at + framework::kLineEnd.size()))
        bytes.replace(at, 1, framework::kLineEnd);
}

} // namespace

int CStdioFile::ReadString(std::wstring& line) {
    std::string bytes;
    if (!ReadLine(bytes)) {
        line.clear();
        return 0;
    }
    line = framework::multiToWide(bytes);
    return 1;
}

void CStdioFile::WriteString(std::wstring_view text) {
    std::string bytes = framework::wideToMulti(text);
    if constexpr (framework::kLineEnd != "\n") {
        if (IsText()) widenLineEnds(bytes);
    }
    Write(bytes.data(), bytes.size());
}
