#pragma once

#include <string>

class CQMViewBase;

class CTitleCtrlView {
  public:
    /// The title of a view's window; empty for null.
    static std::wstring GetWindowTitleName(const CQMViewBase* view);
};
