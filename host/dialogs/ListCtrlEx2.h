#pragma once

#include "framework/Export.h"
#include "host/dialogs/ExtListCtrl.h"

/// A table that its user sorts by clicking the heading of a column; a second click turns the order around.
class VEXA_API CListCtrlEx2 : public CExtListCtrl {
  public:
    /// Sorts the rows, data, checks and selection with them: as numbers where every text of the column is
    /// one. Rows that are equal keep their order. Zero for a bad column.
    int SortByColumn(int column, bool ascending);

  protected:
    int OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

  private:
    int m_nSortColumn = -1;
    bool m_bAscending = false;
};
