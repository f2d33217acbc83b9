#include "module/fatigue/GpsFatigueSolver.h"

#include "host/FileCtrl.h"
#include "host/MSGFunction.h"
#include "host/QMGlobalData.h"
#include "module/fatigue/FatigueKind.h"
#include "module/fatigue/RunScopes.h"
#include "module/fatigue/SolverLaunch.h"

#include <algorithm>

namespace {

/// ASCII letters only: a switch is not a matter of language.
std::wstring upperCased(std::wstring text) {
    for (wchar_t& c : text)
        if (c >= L'a' && c <= L'z') c = static_cast<wchar_t>(c - L'a' + L'A');
    return text;
}

} // namespace

CGpsFatigueSolver::CGpsFatigueSolver() = default;
CGpsFatigueSolver::~CGpsFatigueSolver() {
    Clear();
}

CGpsFatigueSolver& CGpsFatigueSolver::Instance() {
    static CGpsFatigueSolver solver;
    return solver;
}

int CGpsFatigueSolver::RunSolver(CQMDocBase* doc, std::vector<std::uint64_t>& definitions) {
    if (!doc) return 0;
    const fatigue::WaitCursorScope waitCursor;
    const fatigue::PostModeScope postMode(*doc);
    m_doc = doc;
    if (!SetDpoolPtr() || !Init()) return 0;
    int result = 0;
    for (const ItrKey key : definitions) {
        ResetRun();
        if (key == 0 || !m_fatiguePool->Get(key, m_fatigue)) continue;
        m_analysisKey = m_fatigue.analysisKey;
        if (!SetMapBuf()) return 0;
        result = Run();
    }
    ResetRun();
    return result;
}

int CGpsFatigueSolver::SetDpoolPtr() {
    CQMDBSession& session = m_doc->GetDBSession();
    m_fatiguePool = session.Pool<DPoolFatg>();
    m_analysisPool = session.Pool<DPoolVXMcas>();
    m_materialPool = session.Pool<DPoolMatl>();
    m_curvePool = session.Pool<DPoolSNFun>();
    m_functionPool = session.Pool<DPoolFLFun>();
    m_elementPool = session.Pool<DPoolElem>();
    m_propertyPool = session.Pool<DPoolProp>();
    return m_fatiguePool && m_analysisPool && m_materialPool && m_curvePool && m_functionPool &&
           m_elementPool && m_propertyPool;
}

int CGpsFatigueSolver::Init() {
    m_view = m_doc->GetActiveView();
    m_docPathStem = CFileCtrl::GetFilePathName(m_doc->GetFullPathNameW());
    m_programPath = CQMAppBase::GetProgramPath();
    m_solverExePath = fatigue::solverExePath(m_programPath);
    m_mesh = CQMGlobalData::GetStruct(*m_doc);
    m_lists = {};
    m_resultIdTable = fatigue::resultIds(IsEditionC());
    m_writeTextMirror = upperCased(CProduct::GetTestEnvValue(L"FatigueText")) == L"YES";
    return 1;
}

void CGpsFatigueSolver::ResetRun() {
    m_nodeValues.reset();
    m_nodeMaterial.clear();
    m_loadCaseKey.clear();
    m_materialNumber.clear();
    m_materialIndex.clear();
    m_lists = {};
    m_propertiesInUse.clear();
    m_steps.clear();
}

void CGpsFatigueSolver::Clear() {
    ResetRun();
    m_caseByName.clear();
    m_vcaseByName.clear();
    m_textMirror.abandon();
    m_mesh = {};
    m_analysis = nullptr;
    m_view = nullptr;
    m_doc = nullptr;
}

int CGpsFatigueSolver::SetMapBuf() {
    m_caseByName.clear();
    m_vcaseByName.clear();
    CPOHManager* manager = m_doc->GetPOHManager();
    m_analysis = manager ? manager->GetChild(m_analysisKey) : nullptr;
    if (!m_analysis) return 0;
    for (CPOHCase* resultCase : m_analysis->GetChildList()) {
        m_caseByName.emplace(resultCase->GetName(), resultCase);
        for (CPOHVCase* step : resultCase->GetVCaseList())
            m_vcaseByName.emplace(std::pair(resultCase->GetName(), step->GetName()), step);
    }
    return 1;
}

int CGpsFatigueSolver::ProgressCount() const {
    if (m_fatigue.fatigueType == FatigueType::StressLifeSteps) return static_cast<int>(m_steps.size());
    return static_cast<int>(DefinitionMaterials().size());
}

int CGpsFatigueSolver::Run() {
    if (!CheckData()) return 0;
    fatigue::ProgressScope progress(ProgressCount() + 5);
    if (!MakeWriteNodeElem()) return 0;
    if (!CheckExistResult()) {
        progress.close();
        return 0;
    }
    if (!WriteInterfaceReported() || !RunFatigueExe()) return 0;
    progress.finish();
    return ImportFatigueResult();
}

/// A failing write ends this definition, not the host.
int CGpsFatigueSolver::WriteInterfaceReported() {
    try {
        return WriteSolverInterface();
    } catch (const CFileException& failure) {
        qmMsgOutError(failure.GetErrorMessage());
        return 0;
    }
}
