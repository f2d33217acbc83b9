#include "host/dialogs/ExtListCtrl.h"

void CExtListCtrl::Initialize() {
    DeleteAllItems();
    while (DeleteColumn(0)) {
    }
    SetExtendedStyle(GetExtendedStyle() | LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
}

int CExtListCtrl::AddColInfo(const std::wstring& heading, int width, int format) {
    return InsertColumn(GetColumnCount(), heading, format, width);
}
