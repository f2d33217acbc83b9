#pragma once

#include <exception>
#include <string>

/// Raised by CFile, CArchive and CStdioFile when the system refuses an operation.
class CFileException : public std::exception {
  public:
    enum Cause { none, genericException, fileNotFound, badPath, accessDenied, sharingViolation, diskFull, endOfFile };

    CFileException(Cause cause, int osError, std::wstring path);

    Cause m_cause;
    int m_lOsError; ///< errno or GetLastError of the operation
    std::wstring m_strFileName;

    /// One sentence: the file and the cause.
    std::wstring GetErrorMessage() const;
    const char* what() const noexcept override { return m_what.c_str(); }

  private:
    std::string m_what; ///< the message as UTF-8
};
