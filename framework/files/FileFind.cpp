#include "framework/files/FileFind.h"

#include "framework/files/PathMap.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace {

wchar_t comparable(wchar_t c) {
#ifdef _WIN32
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
#else
    return c;
#endif
}

/// Whether `name` matches `pattern` as a whole: "*" is any text, "?" any one character. After a mismatch the
/// last "*" takes one character more, so the time is at most the product of both lengths.
bool matches(std::wstring_view name, std::wstring_view pattern) {
    std::size_t n = 0, p = 0;
    std::size_t star = std::wstring_view::npos, starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == L'*') {
            star = p++;
            starName = n;
        } else if (p < pattern.size() &&
                   (pattern[p] == L'?' || comparable(pattern[p]) == comparable(name[n]))) {
            ++p;
            ++n;
        } else if (star != std::wstring_view::npos) {
            p = star + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(L'*', p) == std::wstring_view::npos;
}

} // namespace

CFileFind::Match CFileFind::Describe(const std::wstring& folder, const std::wstring& name,
                                     const fs::directory_entry& entry) {
    std::error_code error;
    Match match{folder + name, name, 0, entry.is_directory(error)};
    if (!match.directory) {
        const std::uintmax_t length = entry.file_size(error);
        if (!error) match.length = length;
    }
    return match;
}

int CFileFind::FindFile(const std::wstring& pattern) {
    Close();
    const std::size_t separator = pattern.find_last_of(L"\\/");
    const std::size_t nameAt = separator == std::wstring::npos ? 0 : separator + 1;
    const std::wstring folder = pattern.substr(0, nameAt);
    std::wstring name = pattern.substr(nameAt);
    if (name.empty()) return 0;
    std::error_code error;
    if (name.find_first_of(L"*?") == std::wstring::npos) {
        const fs::directory_entry entry(framework::nativePath(pattern), error);
        if (!error && entry.exists(error)) m_matches.push_back(Describe(folder, name, entry));
        return m_matches.empty() ? 0 : 1;
    }
    if (name == L"*.*") name = L"*"; // this pattern has always meant every file
    fs::directory_iterator at(folder.empty() ? fs::path(".") : framework::nativePath(folder), error);
    for (; !error && at != fs::directory_iterator(); at.increment(error)) {
        const std::wstring found = framework::widePath(at->path().filename());
        if (matches(found, name)) m_matches.push_back(Describe(folder, found, *at));
    }
    std::sort(m_matches.begin(), m_matches.end(),
              [](const Match& a, const Match& b) { return a.name < b.name; });
    return m_matches.empty() ? 0 : 1;
}

int CFileFind::FindNextFile() {
    if (m_next < m_matches.size()) ++m_next;
    return m_next < m_matches.size() ? 1 : 0;
}

const CFileFind::Match& CFileFind::Current() const {
    static const Match none;
    return m_next == 0 || m_next > m_matches.size() ? none : m_matches[m_next - 1];
}

std::wstring CFileFind::GetFileName() const {
    return Current().name;
}
std::wstring CFileFind::GetFilePath() const {
    return Current().path;
}
std::uint64_t CFileFind::GetLength() const {
    return Current().length;
}
bool CFileFind::IsDirectory() const {
    return Current().directory;
}

void CFileFind::Close() {
    m_matches.clear();
    m_next = 0;
}
