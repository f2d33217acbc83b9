#include "host/HostServices.h"

#include "framework/windows/ErrorOutput.h"
#include "host/QMCommandObj.h"
#include "host/QMDocBase.h"
#include "host/QMPostManager.h"
#include "host/QMUnitCtrl.h"
#include "host/TitleCtrlView.h"
#include "host/Transaction.h"

#include <stdexcept>

namespace {
IHostServices* g_services = nullptr;
int g_waitDepth = 0;
} // namespace

IHostServices* RegisterHostServices(IHostServices* services) {
    IHostServices* previous = g_services;
    g_services = services;
    g_waitDepth = 0;
    framework::setErrorOutput({});
    if (services)
        framework::setErrorOutput([services](const std::wstring& text) { services->ErrorOut(text); });
    return previous;
}

IHostServices& HostServices() {
    if (!g_services) throw std::logic_error("no host is registered: call RegisterHostServices first");
    return *g_services;
}

std::wstring CMSGFunction::GetValue(std::wstring_view key) {
    return HostServices().GetMessageText(key);
}
void qmMsgOutError(const std::wstring& text) {
    HostServices().ErrorOut(text);
}
void qmMsgOutWarning(const std::wstring& text) {
    HostServices().WarningOut(text);
}
int AfxMessageBox(const std::wstring& text, unsigned style) {
    return HostServices().ShowMessageBox(text, style);
}

bool IsEditionA() {
    return HostServices().GetEdition() == Edition::A;
}
bool IsEditionB() {
    return HostServices().GetEdition() == Edition::B;
}
bool IsEditionC() {
    return HostServices().GetEdition() == Edition::C;
}
bool IsEditionD() {
    return HostServices().GetEdition() == Edition::D;
}
std::wstring CQMAppBase::GetProgramPath() {
    return HostServices().GetProgramPath();
}
std::wstring CProduct::GetTestEnvValue(std::wstring_view name) {
    return HostServices().GetTestEnvValue(name);
}

void BeginWaitCursor() {
    if (g_waitDepth++ == 0) HostServices().SetWaitCursor(true);
}
void EndWaitCursor() {
    if (g_waitDepth > 0 && --g_waitDepth == 0) HostServices().SetWaitCursor(false);
}

double CQMUnitCtrl::GetConvertFactorCurrent(int kind) {
    return HostServices().GetUnitFactor(kind, HostServices().GetUnitIndexCurrent());
}
int CQMUnitCtrl::GetUnitIndexCurrent() {
    return HostServices().GetUnitIndexCurrent();
}
int CQMUnitCtrl::GetUnitIndexDefault() {
    return HostServices().GetUnitIndexDefault();
}
double CQMUnitCtrl::ConvertSrcUnitData2TgtUnit(double value, int kind, int sourceIndex, int targetIndex) {
    const IHostServices& host = HostServices();
    return value / host.GetUnitFactor(kind, sourceIndex) * host.GetUnitFactor(kind, targetIndex);
}
double CQMUnitCtrl::ConvertCurUnitData2TgtUnit(double value, int kind, int targetIndex) {
    return ConvertSrcUnitData2TgtUnit(value, kind, GetUnitIndexCurrent(), targetIndex);
}
double CQMUnitCtrl::ConvertTgtUnitData2CurUnit(double value, int kind, int targetIndex) {
    return ConvertSrcUnitData2TgtUnit(value, kind, targetIndex, GetUnitIndexCurrent());
}

int CQMUnitCtrl::GetUnitSystemForce() {
    return HostServices().GetUnitSystemForce();
}
int CQMUnitCtrl::GetUnitSystemLength() {
    return HostServices().GetUnitSystemLength();
}
double CQMUnitCtrl::ConvertUnitDataOut(double value, int kind) {
    return value * GetConvertFactorCurrent(kind);
}

const T_QM_MESH_D& CQMGlobalData::GetStruct(CQMDocBase& doc) {
    return doc.GetDBSession().GetMesh();
}

std::wstring CTitleCtrlView::GetWindowTitleName(const CQMViewBase* view) {
    return view ? HostServices().GetViewTitle(*view) : std::wstring();
}
void CQMPostManager::DisplayPostResult(CQMViewBase* view, CVResult* result) {
    if (view) HostServices().DisplayPostResult(*view, result);
}

int CTransaction::Begin(const std::wstring& title) {
    if (m_bOpen) return 0;
    m_bOpen = HostServices().BeginTransaction(m_doc, title) != 0;
    return m_bOpen ? 1 : 0;
}
int CTransaction::Commit() {
    if (!m_bOpen) return 0;
    m_bOpen = false;
    return HostServices().CommitTransaction(m_doc);
}
void CTransaction::Rollback() {
    if (!m_bOpen) return;
    m_bOpen = false;
    HostServices().RollbackTransaction(m_doc);
}

int CQMCommandObj::Execute() {
    return HostServices().ExecuteCommand(m_pDoc, m_strName, m_params);
}
