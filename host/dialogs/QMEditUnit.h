#pragma once

#include "framework/Export.h"
#include "framework/windows/controls/Edit.h"
#include "host/QMUnitCtrl.h"

/// An edit that shows a value of the database in the current unit.
class VEXA_API CQMEditUnit : public CEdit {
  public:
    void SetEditUnit(int kind);        ///< see UnitKind; a value that is shown stays the same value
    void SetEditNUValue(double value); ///< in database units
    /// The value in database units: the very one that was set while its text stands, else the leading number
    /// of the text, 0 without one.
    double GetEditNUValue() const;
    void SetEditText(const std::wstring& text) { SetWindowText(text); } ///< in the current unit
    /// Shows the value in the unit that is current now. Dialogs call it in OnUnitChanged.
    void UpdateUnit();

  private:
    double Factor() const { return CQMUnitCtrl::GetConvertFactorCurrent(m_nKind); }

    int m_nKind = UnitKind::None;
    double m_dValue = 0;
    double m_dShownFactor = 1; ///< of the unit that the text is in
    std::wstring m_strShown;
};
