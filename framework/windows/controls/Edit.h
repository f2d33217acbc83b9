#pragma once

#include "framework/Export.h"
#include "framework/windows/Wnd.h"

/// A line or, with ES_MULTILINE, a field of text. Text that is set notifies (EN_UPDATE, EN_CHANGE) as typed
/// text does.
class VEXA_API CEdit : public CWnd {
  public:
    /// Selects from `start` to before `end`, the caret at `end`; (0, -1) all, (-1, 0) nothing.
    void SetSel(int start, int end);
    void GetSel(int& start, int& end) const;
    void ReplaceSel(const std::wstring& text);
    void SetLimitText(UINT characters); ///< for what is typed; 0 is the largest
    UINT GetLimitText() const;
    int SetReadOnly(int readOnly = 1);
};

namespace framework {

LRESULT editProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// What editing a record's text by keys is, for edits and the text of combo boxes.
bool editByCharacter(HWND window, wchar_t character); ///< true when the text changed
bool editByKey(HWND window, WPARAM key);
void selectText(HWND window, LPARAM start, LPARAM end);
void replaceSelection(HWND window, const std::wstring& text);

} // namespace framework
