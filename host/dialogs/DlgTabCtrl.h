#pragma once

#include "framework/Export.h"
#include "framework/windows/controls/TabCtrl.h"

#include <string>
#include <vector>

/// Tabs that each show one page in the display area.
class VEXA_API CDlgTabCtrl : public CTabCtrl {
  public:
    /// Adds a tab for a page, which is a window of the same parent and must live as long. Its position.
    int AddPage(const std::wstring& text, CWnd& page);
    void ShowPage(int index);       ///< selects a tab and shows its page, the others hidden
    CWnd* GetPage(int index) const; ///< null for a bad index

  protected:
    int OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

  private:
    void ShowSelectedPage();

    std::vector<CWnd*> m_pages;
};
