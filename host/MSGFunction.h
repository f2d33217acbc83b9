#pragma once

#include <string>
#include <string_view>

/// Texts of the user interface by key, in the current language.
class CMSGFunction {
  public:
    /// The text of a message key; the key itself when the host has no text for it.
    static std::wstring GetValue(std::wstring_view key);
};

/// Reports an error in the host's output pane.
void qmMsgOutError(const std::wstring& text);

/// Styles and answers of message boxes.
namespace MessageBox {
inline constexpr unsigned Ok = 0;
inline constexpr unsigned OkCancel = 1;
inline constexpr unsigned YesNo = 4;
inline constexpr int IdOk = 1;
inline constexpr int IdCancel = 2;
inline constexpr int IdYes = 6;
inline constexpr int IdNo = 7;
} // namespace MessageBox

/// Shows a message box and answers the button that closed it.
int AfxMessageBox(const std::wstring& text, unsigned style = MessageBox::Ok);
