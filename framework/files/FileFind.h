#pragma once

#include "framework/Export.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// Finds files and folders by a pattern with * and ? in its last component, in ascending order of name. A
/// match keeps the folder as the pattern wrote it. FindNextFile comes before the first match is looked at:
///     for (int more = find.FindFile(pattern); more;) { more = find.FindNextFile(); use(find.GetFileName());
///     }
class VEXA_API CFileFind {
  public:
    int FindFile(const std::wstring& pattern); ///< zero when nothing matches
    int FindNextFile();                        ///< moves to the next match; zero when that one is the last
    std::wstring GetFileName() const;          ///< last component, with extension
    std::wstring GetFilePath() const;
    std::uint64_t GetLength() const;
    bool IsDirectory() const;
    void Close();

  private:
    struct Match {
        std::wstring path;
        std::wstring name;
        std::uint64_t length = 0;
        bool directory = false;
    };
    static Match Describe(const std::wstring& folder, const std::wstring& name,
                          const std::filesystem::directory_entry& entry);
    const Match& Current() const; ///< an empty one before the first FindNextFile

    std::vector<Match> m_matches;
    std::size_t m_next = 0;
};
