#include "framework/system/Process.h"
#include "framework/text/Format.h"
#include "host/FileCtrl.h"
#include "host/MSGFunction.h"
#include "host/QMAppBase.h"
#include "module/fatigue/GpsFatigueSolver.h"
#include "module/fatigue/RunScopes.h"
#include "module/fatigue/SolverLaunch.h"

namespace {

void showMissingFile(const wchar_t* key, const std::wstring& path) {
    AfxMessageBox(L"[" + CMSGFunction::GetValue(L"IDS_QM_LIB_ERROR") + L"] " +
                  framework::formatWide(CMSGFunction::GetValue(key), path));
}

/// The run goes on without the operation; what it leads to is seen from the files that exist afterwards.
template <class Operation>
void tryFile(Operation operation) {
    try {
        operation();
    } catch (const CFileException&) {
    }
}

} // namespace

int CGpsFatigueSolver::RunFatigueExe() {
    if (IsEditionA())
        fatigue::progressText(CMSGFunction::GetValue(L"IDS_VEXAGPS_FATIGUE_SOLVE_WKM"));
    else if (IsEditionB())
        fatigue::progressText(CMSGFunction::GetValue(L"IDS_VEXAGPS_FATIGUE_SOLVE_KPR"));
    fatigue::progressStep();
    if (!CFileCtrl::FileExists(m_solverExePath)) {
        showMissingFile(L"IDS_QM_DB_CANNOT_EXECUTE_FILE", m_solverExePath);
        return 0;
    }
    if (!CFileCtrl::FileExists(m_interfaceFilePath)) {
        showMissingFile(L"IDS_QM_DB_CANNOT_FIND_FILE", m_interfaceFilePath);
        return 0;
    }
    const std::wstring registered = fatigue::registeredName(m_resultFileStem);
    if (CFileCtrl::FileExists(registered)) tryFile([&] { CFile::Remove(registered); });
    m_resultFilePath = fatigue::solverResultName(m_resultFileStem);

    const framework::ProcessRequest request{m_solverExePath, m_interfaceFilePath,
                                            fatigue::solverCommandLine(m_solverExePath, m_interfaceFilePath)};
    if (!framework::runProcess(request)) return 0;

    const bool registeredExists = CFileCtrl::FileExists(registered);
    if (fatigue::resultAction(registeredExists, CFileCtrl::FileExists(m_resultFilePath)) ==
        fatigue::ResultAction::Rename) {
        tryFile([&] { CFile::Rename(m_resultFilePath, registered); });
        m_resultFilePath = registered;
    }
    return 1;
}

int CGpsFatigueSolver::ImportFatigueResult() {
    if (!CFileCtrl::FileExists(m_resultFilePath)) return 0;
    CPostFileManager* manager = m_doc->GetPostFileManager();
    return manager && manager->AddFile(m_resultFilePath, m_fatigue.resultAnalysisKey, 1) ? 1 : 0;
}
