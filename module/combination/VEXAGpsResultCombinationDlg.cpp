#include "module/combination/VEXAGpsResultCombinationDlg.h"

#include "framework/text/Format.h"
#include "framework/text/Numbers.h"
#include "framework/windows/dialogs/DataExchange.h"
#include "host/FileCtrl.h"
#include "host/MSGFunction.h"
#include "host/dialogs/DlgUtil.h"
#include "module/combination/CombinationRules.h"
#include "module/resources/resource.h"

#include <iterator>
#include <span>

namespace {

/// A label and the key of its text.
struct LabelKey {
    int id;
    const wchar_t* key;
};
constexpr LabelKey kLabels[] = {
    {IDC_COMB_ANALYSIS_LABEL, L"IDS_QMGPS_ANALYSISSET"},
    {IDC_COMB_ITEMS_GROUP, L"IDS_QMGPS_RESULT_DATA"},
    {IDC_COMB_RESULT_LABEL, L"IDS_QMGPS_FROM_RESULT"},
    {IDC_COMB_FACTOR_LABEL, L"IDS_QMGPS_SCALE_FACTOR"},
    {IDC_COMB_ADD, L"IDS_QMGPS_ADD"},
    {IDC_COMB_DELETE, L"IDS_QMGPS_DELETE"},
    {IDC_COMB_DELETE_ALL, L"IDS_QMGPS_DELETE_ALL"},
    {IDC_COMB_TYPE_GROUP, L"IDS_QMGPS_COMBINATION_TYPE"},
    {IDC_COMB_LINEAR, L"IDS_QMGPS_COMBTYPE_LINEAR_COMB"},
    {IDC_COMB_ENVELOPE, L"IDS_QMGPS_COMBTYPE_ENVELOPE"},
    {IDC_COMB_NAME_LABEL, L"IDS_QMGPS_NEW_SET"},
    {IDOK, L"IDS_QM_OK"},
    {IDCANCEL, L"IDS_QM_CANCEL"},
    {ID_APPLY_NOW, L"IDS_QM_APPLY"},
};

// Items of the combo boxes; their data is their position.
constexpr const wchar_t* kActions[] = {L"IDS_QMGPS_COMBINATION_ADD", L"IDS_QMGPS_COMBINATION_RECALC"};
constexpr const wchar_t* kEnvelopes[] = {L"IDS_QMGPS_MAXIMUM", L"IDS_QMGPS_MINIMUM",
                                         L"IDS_QMGPS_COMB_ABSMAXU", L"IDS_QMGPS_COMB_ABSMAX"};

// What the analysis selector offers.
constexpr int kAnalysisTypes[] = {AnalysisFilter::Combined, AnalysisFilter::Solved};

std::wstring textOf(const wchar_t* key) {
    return CMSGFunction::GetValue(key);
}

void fill(CComboBox& box, std::span<const wchar_t* const> keys, int selected) {
    box.ResetContent();
    for (std::size_t i = 0; i < keys.size(); ++i)
        CDlgUtil::CobxAddItem(box, textOf(keys[i]), i);
    box.SetCurSel(selected);
}

} // namespace

BEGIN_MESSAGE_MAP(CVEXAGpsResultCombinationDlg, CQMPostDialog)
ON_BN_CLICKED(IDC_COMB_ADD, &CVEXAGpsResultCombinationDlg::OnAdd)
ON_BN_CLICKED(IDC_COMB_DELETE, &CVEXAGpsResultCombinationDlg::OnDelete)
ON_BN_CLICKED(IDC_COMB_DELETE_ALL, &CVEXAGpsResultCombinationDlg::OnDeleteAll)
ON_BN_CLICKED(IDC_COMB_LINEAR, &CVEXAGpsResultCombinationDlg::OnCombinationType)
ON_BN_CLICKED(IDC_COMB_ENVELOPE, &CVEXAGpsResultCombinationDlg::OnCombinationType)
END_MESSAGE_MAP()

CVEXAGpsResultCombinationDlg::CVEXAGpsResultCombinationDlg(CQMDocBase* doc, CQMViewBase* view, CWnd* parent)
    : CQMPostDialog(IDD_RESULT_COMBINATION, doc, parent)
    , m_pView(view) {}

int CVEXAGpsResultCombinationDlg::Create(CWnd* parent) {
    return CQMDialog::Create(IDD_RESULT_COMBINATION, parent);
}

void CVEXAGpsResultCombinationDlg::DoDataExchange(CDataExchange* exchange) {
    CQMPostDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_COMB_NAME, m_editName);
    DDX_Control(exchange, IDC_COMB_ANALYSIS, m_cobxAnalysis);
    DDX_Control(exchange, IDC_COMB_RESULT, m_cobxResult);
    DDX_Control(exchange, IDC_COMB_FACTOR, m_editFactor);
    DDX_Control(exchange, IDC_COMB_ITEMS, m_listItems);
    DDX_Control(exchange, IDC_COMB_ACTION, m_cobxAction);
    DDX_Control(exchange, IDC_COMB_ENVELOPE_KIND, m_cobxEnvelope);
}

int CVEXAGpsResultCombinationDlg::OnInitDialog() {
    CQMPostDialog::OnInitDialog();
    SetTexts();

    m_cobxAnalysis.SetAnalysisTypes({std::begin(kAnalysisTypes), std::end(kAnalysisTypes)});
    m_cobxAnalysis.SetChild(&m_cobxResult);
    m_cobxAnalysis.Initialize(GetDocBase(), 0);
    if (m_cobxAnalysis.GetCount() > 0) m_cobxAnalysis.SelectEntry(0);

    m_editFactor.SetWindowText(L"1.0");
    m_items.RemoveAll();
    InitItemList();

    CDlgUtil::CtrlRadioSetCheck(this, IDC_COMB_LINEAR, IDC_COMB_ENVELOPE, CombinationType::Linear);
    FillKinds(CombinationAction::Recalculate, EnvelopeKind::Maximum);
    OnCombinationType();

    m_editName.SetWindowText(combination::proposedName(
        textOf(L"IDS_QMGPS_NEW_COMBINATION"), [this](const std::wstring& name) { return IsNameFree(name); }));
    return 1;
}

void CVEXAGpsResultCombinationDlg::SetTexts() {
    SetTitleMessage(L"IDS_QMGPS_RESULT_COMBINATION");
    for (const LabelKey& label : kLabels)
        SetItemMessage(label.id, label.key);
}

void CVEXAGpsResultCombinationDlg::FillKinds(int action, int envelopeKind) {
    fill(m_cobxAction, kActions, action);
    fill(m_cobxEnvelope, kEnvelopes, envelopeKind);
}

void CVEXAGpsResultCombinationDlg::InitItemList() {
    m_listItems.Initialize();
    CRect client;
    m_listItems.GetClientRect(&client);
    m_listItems.AddColInfo(textOf(L"IDS_QMGPS_COMB_STEP"), static_cast<int>(client.Width() * 0.7));
    m_listItems.AddColInfo(textOf(L"IDS_QMGPS_COMB_FACTOR"), static_cast<int>(client.Width() * 0.3));
    RefreshItems();
}

void CVEXAGpsResultCombinationDlg::OnChangeLanguage() {
    CQMPostDialog::OnChangeLanguage();
    SetTexts();
    InitItemList();
    FillKinds(m_cobxAction.GetCurSel(), m_cobxEnvelope.GetCurSel());
}

int CVEXAGpsResultCombinationDlg::GetCombinationType() const {
    return CDlgUtil::CtrlRadioGetCheck(this, IDC_COMB_LINEAR, IDC_COMB_ENVELOPE);
}

void CVEXAGpsResultCombinationDlg::OnCombinationType() {
    const bool isLinear = GetCombinationType() == CombinationType::Linear;
    m_cobxAction.EnableWindow(isLinear);
    m_cobxEnvelope.EnableWindow(!isLinear);
}

void CVEXAGpsResultCombinationDlg::OnAdd() {
    CPOHBase* const selected = m_cobxResult.GetSelectedPOHS();
    if (!selected) return;
    std::wstring factor;
    m_editFactor.GetWindowText(factor);
    m_items.Add(combination::itemOf(*selected, framework::wtof(factor)));
    RefreshItems();
    m_listItems.EnsureVisible(m_listItems.GetItemCount() - 1, 0);
}

void CVEXAGpsResultCombinationDlg::OnDelete() {
    const auto selected = CDlgUtil::GetSelectedListItemIndex(m_listItems);
    for (auto row = selected.rbegin(); row != selected.rend(); ++row)
        m_items.RemoveAt(static_cast<std::size_t>(*row));
    RefreshItems();
}

void CVEXAGpsResultCombinationDlg::OnDeleteAll() {
    m_items.RemoveAll();
    RefreshItems();
}

void CVEXAGpsResultCombinationDlg::RefreshItems() {
    m_listItems.DeleteAllItems();
    int row = 0;
    for (const T_RESULT_COMB_ITEM_D& item : m_items)
        CDlgUtil::SetListItem(
            m_listItems, row++,
            {combination::itemText(item.resultCase->GetName(), item.vcase ? &item.vcase->GetName() : nullptr),
             combination::factorText(item.factor)});
}

/// The set that was just made can be combined, too. Items go with their results.
void CVEXAGpsResultCombinationDlg::OnPostUpdate(unsigned flags) {
    if (!(flags & PostUpdate::Tree) || !GetDocBase()) return;
    const CPOHManager* tree = GetDocBase()->GetPOHManager();
    for (std::size_t i = m_items.GetSize(); i-- > 0;)
        if (!tree || !combination::isInTree(*tree, m_items[i])) m_items.RemoveAt(i);
    m_cobxAnalysis.AddComboBoxList();
    RefreshItems();
}

bool CVEXAGpsResultCombinationDlg::IsNameFree(const std::wstring& name) const {
    const std::wstring folder = CFileCtrl::GetFilePath(GetDocBase()->GetFullPathNameW());
    return !CFileCtrl::FileExists(
        CFileCtrl::SetFilePathNameExt(combination::setFilePathName(folder, name), L"lmop"));
}

/// 0 without one.
int CVEXAGpsResultCombinationDlg::GetOutputControl(const CPOHAnalysis* analysis) const {
    CQMDBSession& session = GetDocBase()->GetDBSession();
    const auto* masterCases = session.Pool<DPoolVXMcas>();
    const auto* controls = session.Pool<DPoolVXOctr>();
    tagTVXMcas masterCase;
    tagTVXOctr control;
    if (!analysis || !masterCases || !controls || !masterCases->Get(analysis->GetKey(), masterCase) ||
        !controls->Get(masterCase.outputControlKey, control))
        return 0;
    return control.value;
}

int CVEXAGpsResultCombinationDlg::EnterApply() {
    UpdateData(1);
    combination::Values values;
    m_editName.GetWindowText(values.name);
    values.type = GetCombinationType();
    values.action = m_cobxAction.GetCurSel();
    values.envelopeKind = m_cobxEnvelope.GetCurSel();

    const auto fault = combination::checkInput(m_items.GetSize(), values.name,
                                               [this](const std::wstring& name) { return IsNameFree(name); });
    if (*fault.key) {
        const std::wstring text = textOf(fault.key);
        qmMsgOutError(fault.namesSet ? framework::formatWide(text, values.name) : text);
        if (fault.namesSet) m_editName.SetFocus();
        return 0;
    }
    CPOHAnalysis* const analysis = m_cobxAnalysis.GetSelectedPOHM();
    T_COMB_ENVL_RESULT_D request = combination::requestOf(values, analysis, m_items);
    request.outputControl = GetOutputControl(analysis);
    return CGpsLinearCombCalculator(GetDocBase(), m_pView).GenerateSubCombResult(request, 1);
}

void CVEXAGpsResultCombinationDlg::OnOK() {
    if (EnterApply()) CQMPostDialog::OnOK();
}
