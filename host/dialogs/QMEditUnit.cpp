#include "host/dialogs/QMEditUnit.h"

#include "framework/text/Format.h"
#include "framework/text/Numbers.h"

void CQMEditUnit::SetEditUnit(int kind) {
    const double value = GetEditNUValue();
    m_nKind = kind;
    if (GetWindowTextLength() > 0)
        SetEditNUValue(value);
    else
        m_dShownFactor = Factor();
}

void CQMEditUnit::SetEditNUValue(double value) {
    m_dValue = value;
    m_dShownFactor = Factor();
    m_strShown = framework::formatWide(L"%.10g", value * m_dShownFactor);
    SetWindowText(m_strShown);
}

double CQMEditUnit::GetEditNUValue() const {
    std::wstring text;
    GetWindowText(text);
    // Rounding to what is shown and back would change a value that nobody touched.
    return text == m_strShown && !text.empty() ? m_dValue : framework::wtof(text) / m_dShownFactor;
}

void CQMEditUnit::UpdateUnit() {
    SetEditUnit(m_nKind);
}
