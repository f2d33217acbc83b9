#pragma once

#include "framework/Export.h"
#include "framework/windows/WindowRecord.h"

#include <string>

namespace framework {

/// The items of combo and list boxes. Positions are checked: a bad one answers -1 or null.
WindowItem* itemAt(WindowRecord* record, int index);
/// Behind the last item, or in its place by text where the style sorts; its position.
VEXA_API int addItem(WindowRecord* record, const std::wstring& text, bool sorted);
int insertItem(WindowRecord* record, int index,
               const std::wstring& text);        ///< -1: behind the last one
int removeItem(WindowRecord* record, int index); ///< number of items left
void removeAllItems(WindowRecord* record);
/// The first item after `after`, around the end, that begins with or is a text, in any case of ASCII letters.
VEXA_API int findItem(const WindowRecord* record, int after, const std::wstring& text, bool exact);
/// The selected item of a box of one, set by the program; -1 for none. Its position, or -1.
VEXA_API int setCurrentItem(WindowRecord* record, int index);
/// The item that a key moves the selection to; `index` itself when the key moves nothing.
int itemByKey(const WindowRecord& record, int index, WPARAM key);

} // namespace framework
