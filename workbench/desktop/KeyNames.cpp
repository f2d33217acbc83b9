#include "workbench/desktop/KeyNames.h"

#include "framework/windows/Keyboard.h"
#include "framework/windows/WindowFunctions.h"
#include "framework/windows/WindowRecord.h"
#include "workbench/desktop/ControlView.h"

#include <algorithm>

namespace workbench::desktop {

WPARAM frameworkKey(int key) {
    static const std::map<int, WPARAM> keys = {
        {Qt::Key_Tab, VK_TAB},        {Qt::Key_Backtab, VK_TAB},   {Qt::Key_Return, VK_RETURN},
        {Qt::Key_Enter, VK_RETURN},   {Qt::Key_Escape, VK_ESCAPE}, {Qt::Key_Space, VK_SPACE},
        {Qt::Key_Backspace, VK_BACK}, {Qt::Key_Delete, VK_DELETE}, {Qt::Key_Up, VK_UP},
        {Qt::Key_Down, VK_DOWN},      {Qt::Key_Left, VK_LEFT},     {Qt::Key_Right, VK_RIGHT},
        {Qt::Key_Home, VK_HOME},      {Qt::Key_End, VK_END},       {Qt::Key_PageUp, VK_PRIOR},
        {Qt::Key_PageDown, VK_NEXT},  {Qt::Key_F1, VK_F1},         {Qt::Key_F4, VK_F4},
    };
    const auto found = keys.find(key);
    return found == keys.end() ? 0 : found->second;
}

UINT frameworkModifiers(Qt::KeyboardModifiers modifiers) {
    return (modifiers & Qt::ShiftModifier ? MK_SHIFT : 0) |
           (modifiers & Qt::ControlModifier ? MK_CONTROL : 0);
}

bool useClipboardKey(HWND edit, const QKeyEvent& key) {
    const auto* record = framework::findWindow(edit);
    if (!record || !(SendMessage(edit, WM_GETDLGCODE) & DLGC_HASSETSEL)) return false;
    const auto [first, last] = std::minmax(record->selectionBegin, record->selectionEnd);
    const std::wstring selected = record->text.substr(std::min(first, record->text.size()), last - first);
    const bool cut = key.matches(QKeySequence::Cut);
    if (key.matches(QKeySequence::SelectAll)) {
        SendMessage(edit, EM_SETSEL, 0, -1);
    } else if (cut || key.matches(QKeySequence::Copy)) {
        if (selected.empty()) return true;
        QGuiApplication::clipboard()->setText(qText(selected));
        if (cut) framework::pressKey(VK_DELETE);
    } else if (key.matches(QKeySequence::Paste)) {
        // As typed text, so that what an edit does not take stays out.
        for (const wchar_t c : wideText(QGuiApplication::clipboard()->text().remove('\r')))
            if (GetFocus() == edit) framework::typeCharacter(c);
    } else {
        return false;
    }
    return true;
}

} // namespace workbench::desktop
