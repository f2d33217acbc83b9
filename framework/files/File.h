#pragma once

#include "framework/Export.h"
#include "framework/files/FileException.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/// A file opened by path. Paths are wide, with either separator; see PathMap.h. Reading and writing may mix.
/// After a failed write every later write, flush and close fails with the same cause.
class VEXA_API CFile {
  public:
    enum OpenFlags : unsigned {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        modeCreate = 0x1000,     ///< makes the file, or empties an existing one
        modeNoTruncate = 0x2000, ///< with modeCreate: keeps what an existing file holds
        typeText = 0x4000,
        typeBinary = 0x8000,
    };
    enum SeekPosition { begin, current, end };

    CFile();
    virtual ~CFile(); ///< closes; a failure to close is lost, so call Close where it matters
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    /// Zero when the file cannot be opened; `error`, when given, then receives the cause.
    int Open(const std::wstring& path, unsigned flags, CFileException* error = nullptr);
    bool IsOpen() const;
    const std::wstring& GetFilePath() const { return m_strFileName; }

    /// Bytes read; fewer than asked only at the end of the file. Raises CFileException.
    std::size_t Read(void* buffer, std::size_t count);
    /// Writes all bytes, gathered in a buffer of the file's own. Raises CFileException.
    void Write(const void* buffer, std::size_t count);
    /// Hands everything gathered to the system. Raises CFileException.
    void Flush();
    /// The new position, which may lie behind the end. Raises CFileException.
    std::uint64_t Seek(std::int64_t offset, SeekPosition from);
    std::uint64_t GetPosition() const;
    std::uint64_t GetLength() const;
    /// Flushes and closes; raises CFileException when either fails (the file is closed all the same).
    void Close();
    /// Closes without a word; what was gathered and not flushed is lost.
    void Abort() noexcept;

    static void Remove(const std::wstring& path); ///< a file, not a folder; raises CFileException
    /// Fails when `to` exists. Raises CFileException.
    static void Rename(const std::wstring& from, const std::wstring& to);

  protected:
    bool IsText() const; ///< opened with typeText
    /// The next bytes up to LF, without it and a CR before it; zero at the end of the file. Raises
    /// CFileException.
    int ReadLine(std::string& line);

    std::wstring m_strFileName;

  private:
    struct State;
    State& Opened() const; ///< raises CFileException when no file is open
    std::unique_ptr<State> m_state;
};
