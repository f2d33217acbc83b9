#pragma once

#include "framework/Export.h"
#include "framework/drawing/Geometry.h"
#include "framework/windows/WindowStyles.h"

#include <memory>
#include <string>
#include <vector>

class CWnd;

namespace framework {

struct WindowClass;
class Surface;

/// A row of a list, an entry of a combo box or a tab.
struct WindowItem {
    std::vector<std::wstring> texts = {std::wstring()}; ///< one a column, at least one
    DWORD_PTR data = 0;
    bool selected = false; ///< in lists; a combo box and a tab control have WindowRecord::current
    int check = 0;
};

struct WindowColumn {
    std::wstring title;
    int width = 0; ///< pixels
    int format = 0;
};

/// What a control of a host keeps with its window, beside what every record has.
struct VEXA_API ControlState {
    virtual ~ControlState();
};

/// The state of one window: the only truth about it. Objects are attached to it, a desktop shows it.
struct WindowRecord {
    HWND handle = nullptr;
    const WindowClass* windowClass = nullptr;
    UINT style = 0;
    UINT exStyle = 0;
    UINT id = 0;
    std::wstring text;
    CRect rect;                 ///< a child's: in the client area of its parent; else on the screen
    HWND parent = nullptr;      ///< of a child (WS_CHILD)
    HWND owner = nullptr;       ///< of a top-level window
    std::vector<HWND> children; ///< in tab order, which is the order of creation

    CWnd* object = nullptr; ///< attached; not owned
    bool routed = false;    ///< messages go to the object first
    bool made = false;      ///< the object made this window, so the window goes with it
    bool creating = false;  ///< until creation is complete; a window that dies before has no post-destroy
    bool destroying = false;

    // What controls hold.
    std::vector<WindowItem> items;
    std::vector<WindowColumn> columns;
    int current = -1; ///< selected entry, or the row with the caret in lists of several
    int check = 0;
    bool checkItems = false; ///< rows have check boxes
    int lower = 0;           ///< range of a spin button; `upper` may be the smaller one
    int upper = 100;
    int position = 0;
    HWND buddy = nullptr;           ///< the edit beside a spin button
    std::size_t selectionBegin = 0; ///< in the text of an edit, the caret at its end
    std::size_t selectionEnd = 0;
    std::size_t textLimit = 30000;
    bool dropped = false;   ///< the list of a combo box is open
    int droppedWidth = 0;   ///< least width of a dropped-down list, pixels
    UINT extendedStyle = 0; ///< of a list control (LVS_EX_...)

    std::unique_ptr<ControlState> controlState; ///< made by the object that is attached first

    // What dialogs hold.
    UINT defaultId = 0;
    HWND savedFocus = nullptr; ///< gets the focus when the dialog becomes active
    bool modalEnded = false;
    int modalResult = -1;

    CRect invalid; ///< what is to be painted, in client coordinates
    bool eraseInvalid = false;
    CRect painting; ///< what is being painted, while WM_PAINT is handled; what becomes invalid then waits
    bool erasePainting = false;
    std::shared_ptr<Surface> presented; ///< what the client area shows; null until it was painted
};

/// Null for null and for the handle of a window that is gone.
VEXA_API WindowRecord* findWindow(HWND window);

/// All windows without a parent, from the lowest to the topmost.
VEXA_API std::vector<HWND> topLevelWindows();

/// Pixels of border that the style takes on every side.
VEXA_API int borderWidth(const WindowRecord& record);

} // namespace framework
