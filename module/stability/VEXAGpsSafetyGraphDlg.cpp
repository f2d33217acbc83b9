#include "module/stability/VEXAGpsSafetyGraphDlg.h"

#include "framework/files/FileFind.h"
#include "framework/files/PathMap.h"
#include "framework/text/Format.h"
#include "framework/windows/dialogs/DataExchange.h"
#include "host/MSGFunction.h"
#include "host/dialogs/DlgUtil.h"
#include "module/resources/resource.h"
#include "module/stability/SafetyGraphType.h"

#include <algorithm>
#include <fstream>

namespace {

using tqx::frx::ChartZoom::X;
using tqx::frx::ChartZoom::Y;
namespace ChartAxis = tqx::frx::ChartAxis;

constexpr double kAxisTitlePoints = 12.0;
constexpr double kLineWidth = 2.0;
constexpr int kZoomOn = 1;

/// What depends on the type of the graph.
struct GraphType {
    const wchar_t* title;
    const wchar_t* xTitle;
    const wchar_t* xFormat;
};
constexpr GraphType kGraphTypes[] = {
    {L"IDS_VEXAGPS_DISP_SAFETY_GRAPH_TITLE", L"IDS_VEXAGPS_DISP_SAFETY_GRAPH_X_AXIS", L"%.4le"},
    {L"IDS_VEXAGPS_ITER_SAFETY_GRAPH_TITLE", L"IDS_VEXAGPS_ITER_SAFETY_GRAPH_X_AXIS", L"%.0f"},
};
constexpr const wchar_t* kSafetyKey = L"IDS_VEXAGPS_SAFETY_GRAPH_Y_AXIS";
constexpr const wchar_t* kSafetyFormat = L"%.4le";

std::wstring textOf(const wchar_t* key) {
    return CMSGFunction::GetValue(key);
}

/// No selection counts as the first item.
int selectionOf(const CComboBox& box) {
    return std::max(0, box.GetCurSel());
}

} // namespace

BEGIN_MESSAGE_MAP(CVEXAGpsSafetyGraphDlg, CQMDialog)
ON_CBN_SELCHANGE(IDC_SAFETY_CASE, &CVEXAGpsSafetyGraphDlg::OnSelection)
ON_CBN_SELCHANGE(IDC_SAFETY_TYPE, &CVEXAGpsSafetyGraphDlg::OnSelection)
END_MESSAGE_MAP()

CVEXAGpsSafetyGraphDlg::CVEXAGpsSafetyGraphDlg(CQMDocBase* doc, CWnd* parent)
    : CQMDialog(IDD_SAFETY_GRAPH, doc, parent) {}

int CVEXAGpsSafetyGraphDlg::Create(CWnd* parent) {
    return CQMDialog::Create(IDD_SAFETY_GRAPH, parent);
}

void CVEXAGpsSafetyGraphDlg::DoDataExchange(CDataExchange* exchange) {
    CQMDialog::DoDataExchange(exchange);
    DDX_Control(exchange, IDC_SAFETY_CASE, m_cobxCase);
    DDX_Control(exchange, IDC_SAFETY_TYPE, m_cobxType);
    DDX_Control(exchange, IDC_SAFETY_CHART, m_chart);
}

int CVEXAGpsSafetyGraphDlg::OnInitDialog() {
    CQMDialog::OnInitDialog();
    SetTexts();

    ReadHistory();
    FillCases();
    FillGraphTypes();
    const int enable = GetDocBase() && GetDocBase()->m_bChoicesLocked == 0;
    m_cobxCase.EnableWindow(enable);
    m_cobxType.EnableWindow(enable);

    SetUpChart(SafetyGraphType::Displacement);
    SetUpChart(SafetyGraphType::Displacement);
    DrawGraph(SafetyGraphType::Displacement, 0);
    return 1;
}

void CVEXAGpsSafetyGraphDlg::SetTexts() {
    SetTitleMessage(L"IDS_VEXA_CAE_GRAPH_FOS");
    SetItemMessage(IDC_SAFETY_CASE_LABEL, L"IDS_VEXA_GPS_ANALYSIS_CASE");
    SetItemMessage(IDC_SAFETY_TYPE_LABEL, L"IDS_VEXA_GPS_FOS_GRAPH_TYPE");
    SetItemMessage(IDCANCEL, L"IDS_QM_BASE_CLOSE");
}

void CVEXAGpsSafetyGraphDlg::ReadHistory() {
    const std::wstring path =
        safetyHistoryPath(GetDocBase() ? GetDocBase()->GetFullPathNameW() : std::wstring(), m_strName);
    std::ifstream file;
    if (CFileFind().FindFile(path)) file.open(framework::nativePath(path), std::ios::binary);
    SafetyHistory history = readSafetyHistory(file);
    if (!file.is_open() || file.bad())
        qmMsgOutWarning(framework::formatWide(textOf(L"IDS_VEXAGPS_NO_SAFETY_GRAPH_FILE"), path));
    m_subcases = std::move(history.subcases);
    for (const std::size_t line : history.shortLines)
        qmMsgOutWarning(framework::formatWide(textOf(L"IDS_VEXAGPS_SAFETY_GRAPH_SHORT_LINE"), path, line));
    if (history.shortLineCount > history.shortLines.size())
        qmMsgOutWarning(framework::formatWide(textOf(L"IDS_VEXAGPS_SAFETY_GRAPH_SHORT_LINES"), path,
                                              history.shortLineCount - history.shortLines.size()));
}

void CVEXAGpsSafetyGraphDlg::FillCases() {
    m_cobxCase.ResetContent();
    for (std::size_t i = 0; i < m_subcases.size(); ++i)
        CDlgUtil::CobxAddItem(m_cobxCase, m_subcases[i].name, i);
    CDlgUtil::CobxUpdateItemWidth(m_cobxCase);
    m_cobxCase.SetCurSel(0);
}

void CVEXAGpsSafetyGraphDlg::FillGraphTypes() {
    m_cobxType.ResetContent();
    for (const GraphType& type : kGraphTypes)
        CDlgUtil::CobxAddItem(m_cobxType, textOf(type.title), 0);
    CDlgUtil::CobxUpdateItemWidth(m_cobxType);
    m_cobxType.SetCurSel(SafetyGraphType::Displacement);
}

void CVEXAGpsSafetyGraphDlg::SetUpChart(int type) {
    m_chart.SetAxisTitleSize(ChartAxis::Both, kAxisTitlePoints);
    m_chart.ShowContextMenu(1);
    m_chart.ShowToolTip(1);
    m_chart.SetZoom(kZoomOn, X | Y);
    m_chart.EnableMarker(1);
    m_chart.ShowSummary(0);
    m_chart.ShowMinorGridLine(1);
    m_chart.ShowLegend(0);
    m_chart.SetTitle(textOf(kGraphTypes[type].title));
    SetAxisTexts(type);
    m_chart.SetAxisDataFormat(ChartAxis::Y, kSafetyFormat);
}

void CVEXAGpsSafetyGraphDlg::SetAxisTexts(int type) {
    m_chart.SetAxisTitle(ChartAxis::X, textOf(kGraphTypes[type].xTitle));
    m_chart.SetAxisDataFormat(ChartAxis::X, kGraphTypes[type].xFormat);
    m_chart.SetAxisTitle(ChartAxis::Y, textOf(kSafetyKey));
}

int CVEXAGpsSafetyGraphDlg::DrawGraph(int type, int subcase) {
    if (!m_chart.GetSafeHwnd()) return 0;
    m_chart.RemoveDataAll();
    if (static_cast<std::size_t>(subcase) < m_subcases.size()) {
        const SafetySubcase& shown = m_subcases[static_cast<std::size_t>(subcase)];
        for (const SafetyPoint& point :
             type == SafetyGraphType::Displacement ? displacementCurve(shown) : iterationCurve(shown))
            m_chart.AddData(0, point.x, point.y);
        m_chart.SetSeriesName(0, textOf(kSafetyKey));
        SetAxisTexts(type);
        for (int i = 0; i < m_chart.GetSeriesCount(); ++i)
            m_chart.SetSeriesLineWidth(i, kLineWidth);
    }
    m_chart.SetDirty();
    m_chart.Redraw();
    return 1;
}

void CVEXAGpsSafetyGraphDlg::OnSelection() {
    const int type = selectionOf(m_cobxType);
    SetUpChart(type);
    DrawGraph(type, selectionOf(m_cobxCase));
}

void CVEXAGpsSafetyGraphDlg::OnChangeLanguage() {
    CQMDialog::OnChangeLanguage();
    SetTexts();
    const int type = selectionOf(m_cobxType);
    FillGraphTypes();
    m_cobxType.SetCurSel(type);
    OnSelection();
}
