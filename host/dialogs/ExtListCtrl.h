#pragma once

#include "framework/Export.h"
#include "framework/windows/controls/ListCtrl.h"

/// A table whose rows are selected as a whole.
class VEXA_API CExtListCtrl : public CListCtrl {
  public:
    void Initialize(); ///< without rows and columns
    /// Adds a column behind the last one; its position.
    int AddColInfo(const std::wstring& heading, int width, int format = LVCFMT_LEFT);
};
