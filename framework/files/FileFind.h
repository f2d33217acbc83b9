#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Finds files by a pattern with * and ? in its last component, in ascending order of name.
class CFileFind {
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
    std::vector<Match> m_matches;
    std::size_t m_next = 0;
};
