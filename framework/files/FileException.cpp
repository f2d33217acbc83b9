#include "framework/files/FileException.h"

#include "framework/system/SystemError.h"
#include "framework/text/CodePage.h"

#include <utility>

namespace {

const wchar_t* operationText(CFileException::Operation operation) {
    switch (operation) {
    case CFileException::open:
        return L"open";
    case CFileException::read:
        return L"read";
    case CFileException::write:
        return L"write";
    case CFileException::close:
        return L"close";
    case CFileException::remove:
        return L"delete";
    case CFileException::rename:
        return L"rename";
    case CFileException::use:
        break;
    }
    return L"use";
}

const wchar_t* causeText(CFileException::Cause cause) {
    switch (cause) {
    case CFileException::none:
        return L"no error";
    case CFileException::fileNotFound:
        return L"the file does not exist";
    case CFileException::badPath:
        return L"the path is not valid";
    case CFileException::accessDenied:
        return L"access is denied";
    case CFileException::sharingViolation:
        return L"the file is in use";
    case CFileException::diskFull:
        return L"the disk is full";
    case CFileException::endOfFile:
        return L"the file has ended";
    case CFileException::genericException:
        break;
    }
    return L"the operation failed";
}

} // namespace

CFileException::CFileException(Cause cause, int osError, std::wstring path, Operation operation)
    : m_cause(cause)
    , m_lOsError(osError)
    , m_strFileName(std::move(path))
    , m_operation(operation)
    , m_what(framework::toUtf8(GetErrorMessage())) {}

std::wstring CFileException::GetErrorMessage() const {
    std::wstring text = L"cannot ";
    text.append(operationText(m_operation)).append(L" ");
    text.append(m_strFileName.empty() ? L"a file without name" : m_strFileName).append(L": ");
    return text + (m_lOsError ? framework::systemErrorText(m_lOsError) : causeText(m_cause));
}
