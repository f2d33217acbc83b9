#pragma once

#include "framework/Export.h"

#include <string>

class CQMViewBase;

class VEXA_API CTitleCtrlView {
  public:
    /// The title of a view's window; empty for null.
    static std::wstring GetWindowTitleName(const CQMViewBase* view);
};
