#pragma once

#include "framework/Export.h"

#include <exception>
#include <string>

/// Raised by CFile, CArchive and CStdioFile when the system refuses an operation.
class VEXA_API CFileException : public std::exception {
  public:
    enum Cause {
        none,
        genericException,
        fileNotFound,
        badPath,
        accessDenied,
        sharingViolation,
        diskFull,
        endOfFile
    };
    /// What was tried; "use" when nobody said.
    enum Operation { use, open, read, write, close, remove, rename };

    explicit CFileException(Cause cause = none, int osError = 0, std::wstring path = {},
                            Operation operation = use);

    Cause m_cause;
    int m_lOsError; ///< errno or GetLastError of the operation; 0 when the system was not asked
    std::wstring m_strFileName;
    Operation m_operation;

    /// One sentence: the operation, the file and the cause.
    std::wstring GetErrorMessage() const;
    const char* what() const noexcept override { return m_what.c_str(); }

  private:
    std::string m_what; ///< the message as UTF-8
};
