#pragma once

#include "framework/windows/controls/ComboBox.h"
#include "host/chart/ChartCtrl.h"
#include "host/dialogs/QMDialog.h"
#include "module/stability/SafetyHistory.h"

#include <string>
#include <utility>

/// The history of the factor of safety that the solver left beside the document. Modeless.
class CVEXAGpsSafetyGraphDlg : public CQMDialog {
  public:
    CVEXAGpsSafetyGraphDlg(CQMDocBase* doc, CWnd* parent);
    /// The second part of the name of the history's file. Call before the window is made.
    void SetName(std::wstring name) { m_strName = std::move(name); }
    const std::wstring& GetName() const { return m_strName; }

    using CQMDialog::Create;
    int Create(CWnd* parent) override;
    int OnInitDialog() override;
    void OnChangeLanguage() override;

  protected:
    void DoDataExchange(CDataExchange* exchange) override;
    DECLARE_MESSAGE_MAP()

  private:
    void OnSelection();

    void SetTexts();
    void ReadHistory();
    void FillCases();
    void FillGraphTypes();
    void SetUpChart(int type);
    void SetAxisTexts(int type);
    /// Zero when the chart has no window.
    int DrawGraph(int type, int subcase);

    std::wstring m_strName;
    tqx::frx::MChartCtrl m_chart;
    CComboBox m_cobxCase;
    CComboBox m_cobxType;
    std::vector<SafetySubcase> m_subcases;
};
