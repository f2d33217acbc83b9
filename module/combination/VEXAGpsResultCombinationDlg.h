#pragma once

#include "framework/windows/controls/ComboBox.h"
#include "framework/windows/controls/Edit.h"
#include "host/dialogs/CobxPOHM2.h"
#include "host/dialogs/CobxPOHS2.h"
#include "host/dialogs/ExtListCtrl.h"
#include "host/dialogs/QMPostDialog.h"
#include "module/combination/CombinationItem.h"

#include <string>

/// Asks for cases and steps with their factors, and has the host combine them into a new result set. Modal.
class CVEXAGpsResultCombinationDlg : public CQMPostDialog {
  public:
    /// `view` goes to the host's calculator.
    CVEXAGpsResultCombinationDlg(CQMDocBase* doc, CQMViewBase* view, CWnd* parent);

    using CQMPostDialog::Create;
    int Create(CWnd* parent) override;
    int OnInitDialog() override;
    /// Checks the input and makes the set; non-zero when it was made. The dialog stays open, its items stay.
    int EnterApply() override;
    void OnChangeLanguage() override;
    void OnPostUpdate(unsigned flags) override;
    CQMViewBase* GetPostListenerView() override { return m_pView; }

  protected:
    void OnOK() override;
    void DoDataExchange(CDataExchange* exchange) override;
    DECLARE_MESSAGE_MAP()

  private:
    void OnAdd();
    void OnDelete();
    void OnDeleteAll();
    void OnCombinationType();

    void SetTexts();
    void FillKinds(int action, int envelopeKind);
    void InitItemList();
    void RefreshItems();
    int GetCombinationType() const;
    bool IsNameFree(const std::wstring& name) const;
    int GetOutputControl(const CPOHAnalysis* analysis) const;

    CEdit m_editName;
    CCobxPOHM2 m_cobxAnalysis;
    CCobxPOHS2 m_cobxResult;
    CEdit m_editFactor;
    CExtListCtrl m_listItems;
    CComboBox m_cobxAction;
    CComboBox m_cobxEnvelope;

    CQMViewBase* m_pView;
    TArray<T_RESULT_COMB_ITEM_D> m_items;
};
