#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

#include <cstdint>
#include <exception>
#include <stdexcept>
#include <string>

/// Ends a data exchange whose cause the user has been told.
class CUserException : public std::exception {
  public:
    const char* what() const noexcept override { return "the user's input was refused"; }
};

/// A dialog whose template lacks a control, or one that is bound already.
class CNotSupportedException : public std::logic_error {
  public:
    using std::logic_error::logic_error;
};

/// One run between controls and members.
class VEXA_API CDataExchange {
  public:
    CDataExchange(CWnd* dialog, int save)
        : m_bSaveAndValidate(save)
        , m_pDlgWnd(dialog) {}

    int m_bSaveAndValidate; ///< non-zero: from the controls to the members
    CWnd* m_pDlgWnd;

    HWND PrepareCtrl(int id);     ///< the control; CNotSupportedException when it is missing
    HWND PrepareEditCtrl(int id); ///< the same, and Fail selects its text
    /// Puts the focus on the control that was prepared last and raises CUserException.
    [[noreturn]] void Fail();
    /// Shows a message, then fails.
    [[noreturn]] void Fail(const std::wstring& message);
    /// Limits what can be typed into the edit that was prepared last.
    void LimitText(std::size_t characters);

  private:
    HWND m_hWndLast = nullptr;
    bool m_bEditLast = false;
};

/// Texts that the exchange shows; the host's language replaces them.
struct DataExchangeTexts {
    std::wstring number = L"Please enter a number.";
    std::wstring integer = L"Please enter an integer.";
    std::wstring range = L"Please enter a number between %s and %s.";
    std::wstring length = L"Please enter at most %s characters.";
};
VEXA_API DataExchangeTexts& dataExchangeTexts();

/// Binds a member to a control, which it then serves (SubclassDlgItem). CNotSupportedException when the
/// control is missing, or it or the member is bound otherwise.
VEXA_API void DDX_Control(CDataExchange* exchange, int id, CWnd& control);

// Text of an edit. A number that the text is not, as a whole, is refused.
VEXA_API void DDX_Text(CDataExchange* exchange, int id, std::wstring& value);
VEXA_API void DDX_Text(CDataExchange* exchange, int id, int& value);
VEXA_API void DDX_Text(CDataExchange* exchange, int id, UINT& value);
VEXA_API void DDX_Text(CDataExchange* exchange, int id, double& value); ///< written with 15 digits at most

VEXA_API void DDX_Check(CDataExchange* exchange, int id, int& value);
/// Position of the checked button in the group that begins with `id`; -1 when none is.
VEXA_API void DDX_Radio(CDataExchange* exchange, int id, int& value);
VEXA_API void DDX_CBIndex(CDataExchange* exchange, int id, int& value);
VEXA_API void DDX_CBString(CDataExchange* exchange, int id, std::wstring& value);
VEXA_API void DDX_LBIndex(CDataExchange* exchange, int id, int& value);
VEXA_API void DDX_LBString(CDataExchange* exchange, int id, std::wstring& value);

// Checks of the value that was just read. They refuse only when reading.
VEXA_API void DDV_MinMaxInt(CDataExchange* exchange, int value, int smallest, int largest);
VEXA_API void DDV_MinMaxDouble(CDataExchange* exchange, double value, double smallest, double largest);
VEXA_API void DDV_MaxChars(CDataExchange* exchange, const std::wstring& value,
                           int most); ///< also limits what is typed
