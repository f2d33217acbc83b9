#include "framework/text/CodePage.h"
#include "framework/text/Format.h"
#include "host/MSGFunction.h"
#include "module/fatigue/FatigueKind.h"
#include "module/fatigue/FileNames.h"
#include "module/fatigue/GpsFatigueSolver.h"
#include "module/fatigue/InterfaceSections.h"
#include "module/fatigue/NodeRecords.h"
#include "module/fatigue/RunScopes.h"
#include "module/fatigue/TextFields.h"

#include <algorithm>

namespace {

/// Keys go into 32-bit fields; the host gives out no larger ones.
std::int32_t keyField(ItrKey key) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(key));
}

/// Lets go of the mirror when a write fails on the way.
class MirrorScope {
  public:
    explicit MirrorScope(fatigue::TextMirror& mirror)
        : mirror_(mirror) {}
    ~MirrorScope() { mirror_.abandon(); }
    MirrorScope(const MirrorScope&) = delete;
    MirrorScope& operator=(const MirrorScope&) = delete;

  private:
    fatigue::TextMirror& mirror_;
};

} // namespace

int CGpsFatigueSolver::MakeFileNames() {
    tagTVXMcas analysis;
    tagTVXMcas resultAnalysis;
    if (!m_analysisPool->Get(m_analysisKey, analysis)) return 0;
    if (!m_analysisPool->Get(m_fatigue.resultAnalysisKey, resultAnalysis)) return 0;
    const fatigue::FileNames names = fatigue::fileNames(m_docPathStem, analysis.name, resultAnalysis.name);
    m_resultFileStem = names.resultFileStem;
    m_solverBasePath = names.solverBasePath;
    m_interfaceFilePath = names.interfaceFilePath;
    m_textMirrorPath = names.textMirrorPath;
    return 1;
}

int CGpsFatigueSolver::WriteSolverInterface() {
    if (!MakeFileNames()) return 0;
    CFile file;
    CFileException cause;
    if (!file.Open(m_interfaceFilePath, CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary,
                   &cause)) {
        qmMsgOutError(cause.GetErrorMessage());
        return 0;
    }
    const MirrorScope mirrorScope(m_textMirror);
    if (m_writeTextMirror) m_textMirror.open(m_textMirrorPath);
    CArchive ar(&file, CArchive::store);
    fatigue::RecordWriter records(ar, m_textMirror.stream());

    std::array<char, fatigue::kFileNameWidth + 1> name{};
    FatigueConvertStrChar(m_resultFileStem, name.data(), static_cast<int>(fatigue::kFileNameWidth));
    fatigue::writeFileName(records, std::string_view(name.data(), fatigue::kFileNameWidth));
    fatigue::writeProgramType(records, IsEditionC());
    const int result = WriteData(file, ar);
    ar.Close();
    file.Close();
    m_textMirror.close();
    return result;
}

void CGpsFatigueSolver::FatigueConvertStrChar(const std::wstring& text, char* buffer, int size) {
    std::size_t replaced = 0;
    const std::string bytes = framework::wideToMulti(text, framework::hostCodePage(), &replaced);
    if (replaced > 0)
        qmMsgOutError(
            framework::formatWide(CMSGFunction::GetValue(L"IDS_VEXAGPS_FATIGUE_TEXT_REPLACED"), text));
    fatigue::fillTextField(bytes, buffer, static_cast<std::size_t>(size));
}

int CGpsFatigueSolver::WriteData(CFile&, CArchive& ar) {
    fatigue::RecordWriter records(ar, m_textMirror.stream());
    fatigue::progressText(CMSGFunction::GetValue(L"IDS_VEXAGPS_FATIGUE_GENERATE"));
    fatigue::progressStep();

    fatigue::InterfaceOptions options;
    options.nodeCount = static_cast<std::int32_t>(m_lists.nodes.size());
    options.materialCount = static_cast<std::int32_t>(m_materialNumber.size());
    options.typeCode = fatigue::headerTypeCode(m_fatigue.fatigueType);
    options.analysisKey = keyField(m_analysisKey);
    options.stressOption = m_fatigue.stressOption;
    options.strainOption = m_fatigue.strainOption;
    options.quickRainflow = m_fatigue.quickRainflow != 0;
    options.rainflowValue = m_fatigue.rainflowValue;
    if (fatigue::isStressLife(m_fatigue.fatigueType))
        std::ranges::copy(m_fatigue.meanStress, options.outputs.begin());
    else
        std::ranges::copy(m_fatigue.strainCorrections, options.outputs.begin());
    std::ranges::copy(m_fatigue.outputs, options.outputs.begin() + 6);
    options.infiniteLife = m_fatigue.infiniteLife;
    if (!fatigue::writeOptions(records, options)) return 0;

    if (!WriteMaterials(records)) return 0;
    GatherNodeMaterials();
    if (!WriteLoads(records)) return 0;
    const int gathered = GatherNodeValues();
    const int result = gathered && WriteNodes(records);
    m_nodeValues.reset();
    return result;
}

int CGpsFatigueSolver::WriteMaterials(fatigue::RecordWriter& records) {
    records.comment("* Material Data");
    m_materialIndex.clear();
    if (fatigue::isStressLife(m_fatigue.fatigueType)) return WriteStressLifeMaterials(records);
    return WriteStrainLifeMaterials(records);
}

int CGpsFatigueSolver::WriteStressLifeMaterials(fatigue::RecordWriter& records) {
    std::int32_t index = 0;
    for (const T_FATG_STRESS_LIFE_D& entry : m_fatigue.stressLifeMaterials) {
        if (entry.materialKey == 0 || entry.curveKey == 0) return 0;
        tagTMatl material;
        if (!m_materialPool->Get(entry.materialKey, material)) continue;
        tagSNFun curve;
        if (entry.curveType == 1 && !m_curvePool->Get(entry.curveKey, curve)) return 0;
        const fatigue::StressLifeMaterial group{material.elasticModulus, entry.yieldStrength,
                                                entry.ultimateStrength,  entry.curveType,
                                                entry.curveParameters,   curve.points};
        if (!fatigue::writeMaterial(records, group)) return 0;
        m_materialIndex[entry.materialKey] = ++index;
        if (m_fatigue.fatigueType != FatigueType::StressLifeSteps) fatigue::progressStep();
    }
    return 1;
}

int CGpsFatigueSolver::WriteStrainLifeMaterials(fatigue::RecordWriter& records) {
    std::int32_t index = 0;
    for (const T_FATG_STRAIN_LIFE_D& entry : m_fatigue.strainLifeMaterials) {
        if (entry.materialKey == 0) return 0;
        tagTMatl material;
        if (!m_materialPool->Get(entry.materialKey, material)) continue;
        fatigue::writeMaterial(records,
                               {material.elasticModulus, material.poissonRatio,
                                entry.deriveCyclicHardeningExponent != 0, entry.cyclicHardeningExponent,
                                entry.deriveCyclicStrengthCoefficient != 0, entry.cyclicStrengthCoefficient,
                                entry.fatigueStrengthCoefficient, entry.fatigueStrengthExponent,
                                entry.fatigueDuctilityCoefficient, entry.fatigueDuctilityExponent});
        m_materialIndex[entry.materialKey] = ++index;
        fatigue::progressStep();
    }
    return 1;
}

int CGpsFatigueSolver::WriteLoads(fatigue::RecordWriter& records) {
    if (!fatigue::isStepBased(m_fatigue.fatigueType)) return WriteCaseLoads(records);
    fatigue::writeStepLoads(records, m_steps.size(), m_fatigue.loadCycleCount,
                            !fatigue::needsStressAndStrain(m_fatigue.fatigueType));
    return 1;
}

/// Each load function is written once, where an entry first uses it. An entry without one ends the write.
int CGpsFatigueSolver::WriteCaseLoads(fatigue::RecordWriter& records) {
    std::vector<fatigue::CaseLoad> loads;
    std::vector<ItrKey> functionKeys;
    std::vector<fatigue::LoadFunction> functions;
    for (const T_FATG_LOAD_D& load : m_fatigue.loads) {
        if (!m_functionPool->Exist(load.loadFunctionKey)) return 0;
        const tagFLFun& function = m_functionPool->GetAtNU(load.loadFunctionKey);
        if (std::ranges::find(functionKeys, load.loadFunctionKey) == functionKeys.end()) {
            functionKeys.push_back(load.loadFunctionKey);
            functions.push_back({function.number, function.points});
        }
        loads.push_back({keyField(GetCasKey(load.caseName, load.stepName)), load.factor, function.number});
    }
    fatigue::writeCaseLoads(records, loads, functions, m_fatigue.loadCycleCount);
    return 1;
}

int CGpsFatigueSolver::GatherNodeValues() {
    const bool steps = fatigue::isStepBased(m_fatigue.fatigueType);
    const std::size_t loads = steps ? m_steps.size() : m_fatigue.loads.size();
    const std::size_t arrays = fatigue::needsStressAndStrain(m_fatigue.fatigueType) ? 12 : 6;
    m_nodeValues = std::make_unique<fatigue::NodeTables>(loads, arrays, m_mesh.nodeCount());
    for (std::size_t i = 0; i < loads; ++i) {
        fatigue::progressText(framework::formatWide(
            CMSGFunction::GetValue(L"IDS_VEXAGPS_FATIGUE_LOAD_GENERATE"), static_cast<int>(i) + 1));
        CPOHCase* resultCase = nullptr;
        CPOHVCase* step = nullptr;
        if (steps) {
            step = m_steps[i];
            resultCase = step->GetCase();
        } else {
            const T_FATG_LOAD_D& load = m_fatigue.loads[i];
            fatigue::progressText(CMSGFunction::GetValue(L"IDS_VEXAGPS_FATIGUE_READ_RESULT"));
            resultCase = GetSCasRst(load.caseName);
            if (!load.stepName.empty()) step = GetVCasRst(load.caseName, load.stepName);
        }
        if (!GatherLoad(resultCase, step, m_nodeValues->load(i))) return 0;
        if (m_fatigue.fatigueType == FatigueType::StressLifeSteps) fatigue::progressStep();
    }
    const int dims[3] = {static_cast<int>(loads), static_cast<int>(arrays),
                         static_cast<int>(m_mesh.nodeCount())};
    ConvertNodeValUnitIn(m_nodeValues->loads(), dims);
    return 1;
}

int CGpsFatigueSolver::GatherLoad(CPOHCase* resultCase, CPOHVCase* step, float** arrays) {
    if (fatigue::isStressLife(m_fatigue.fatigueType)) return GetStressValue(resultCase, step, arrays);
    if (!fatigue::needsStressAndStrain(m_fatigue.fatigueType))
        return GetStrainValue(resultCase, step, arrays);
    return GetStressValue(resultCase, step, arrays) &&
           GetStrainValue(resultCase, step, arrays + fatigue::kTensorComponents);
}

int CGpsFatigueSolver::WriteNodes(fatigue::RecordWriter& records) {
    fatigue::progressText(CMSGFunction::GetValue(L"IDS_VEXAGPS_FATIGUE_WRITE_SOLVER_FILE"));
    fatigue::progressStep();
    std::vector<std::int32_t> caseKeys;
    if (!fatigue::isStepBased(m_fatigue.fatigueType))
        for (std::size_t i = 0; i < m_fatigue.loads.size(); ++i)
            caseKeys.push_back(keyField(m_loadCaseKey[i]));
    const fatigue::NodeSection section{m_lists.nodes,   m_mesh.nodeNumbers,
                                       m_mesh.nodeKeys, {m_nodeValues->loads(), m_nodeValues->loadCount()},
                                       caseKeys,        fatigue::needsStressAndStrain(m_fatigue.fatigueType)};
    fatigue::writeNodes(records, section, m_nodeMaterial);
    return 1;
}
