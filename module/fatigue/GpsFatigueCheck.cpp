#include "framework/text/Format.h"
#include "host/MSGFunction.h"
#include "host/QMAppBase.h"
#include "module/fatigue/FatigueKind.h"
#include "module/fatigue/GpsFatigueSolver.h"

#include <algorithm>

namespace {

void reportKey(const wchar_t* key) {
    qmMsgOutError(CMSGFunction::GetValue(key));
}

/// Message key of what makes a property useless for fatigue; null when nothing does.
const wchar_t* invalidKind(const tagTProp& property) {
    if (property.typeCode == PropertyType::Geogrid2D) return L"IDS_QM_DB_PROPTYPE_2D_GEOGRID";
    if (property.typeCode == PropertyType::GaugingPlate2D) return L"IDS_QM_DB_PROPTYPE_2D_GAUGING_PLATE";
    if (property.plotOnly) return L"IDS_VEXA_LBC_2D_PLOTONLY";
    return nullptr;
}

} // namespace

int CGpsFatigueSolver::CheckData() {
    m_steps.clear();
    if (fatigue::isStepBased(m_fatigue.fatigueType)) {
        if (GetStepList(m_steps) == 0) {
            reportKey(L"IDS_VEXAGPS_FATIGUE_NOT_EXIST_LOAD");
            return 0;
        }
    } else {
        if (m_fatigue.loads.empty()) {
            reportKey(L"IDS_VEXAGPS_FATIGUE_NOT_EXIST_CURVE");
            return 0;
        }
        for (std::size_t i = 0; i < m_fatigue.loads.size(); ++i)
            m_loadCaseKey[i] = GetCasKey(m_fatigue.loads[i].caseName, m_fatigue.loads[i].stepName);
    }
    if (m_fatigue.loadCycleCount < 1) {
        reportKey(L"IDS_VEXAGPS_FATIGUE_NOT_EXIST_LOAD_CYCLE");
        return 0;
    }
    m_materialNumber.clear();
    m_materialNumber.reserve(m_materialPool->GetCount());
    tagTMatl material;
    for (const ItrKey key : DefinitionMaterials())
        if (m_materialPool->Get(key, material)) m_materialNumber[key] = material.number;
    return 1;
}

std::vector<ItrKey> CGpsFatigueSolver::DefinitionMaterials() const {
    std::vector<ItrKey> keys;
    if (fatigue::isStressLife(m_fatigue.fatigueType))
        for (const auto& entry : m_fatigue.stressLifeMaterials)
            keys.push_back(entry.materialKey);
    else
        for (const auto& entry : m_fatigue.strainLifeMaterials)
            keys.push_back(entry.materialKey);
    return keys;
}

int CGpsFatigueSolver::GetStepList(std::vector<CPOHVCase*>& stepList) {
    const auto named = [&](const CPOHCase& resultCase, const CPOHVCase& step) {
        return std::ranges::any_of(m_fatigue.loads, [&](const T_FATG_LOAD_D& load) {
            return load.caseName == resultCase.GetName() &&
                   (load.stepName.empty() || load.stepName == step.GetName());
        });
    };
    stepList.clear();
    for (CPOHCase* resultCase : m_analysis->GetChildList())
        for (CPOHVCase* step : resultCase->GetVCaseList())
            if (named(*resultCase, *step)) stepList.push_back(step);
    return static_cast<int>(stepList.size());
}

int CGpsFatigueSolver::IsValidCase() {
    tagTVXMcas analysis;
    if (!m_analysisPool->Get(m_analysisKey, analysis)) return 0;
    if (IsEditionC()) return analysis.typeCode == 101;
    switch (analysis.typeCode) {
    case 101:
        return m_fatigue.fatigueType == FatigueType::StressLifeCases;
    case 106:
    case 109:
    case 112:
    case 129:
    case 210:
    case 239:
        return 1;
    default:
        return 0;
    }
}

CPOHCase* CGpsFatigueSolver::GetSCasRst(const std::wstring& name) {
    const auto found = m_caseByName.find(name);
    return found == m_caseByName.end() ? nullptr : found->second;
}

CPOHVCase* CGpsFatigueSolver::GetVCasRst(const std::wstring& caseName, const std::wstring& stepName) {
    const auto found = m_vcaseByName.find({caseName, stepName});
    return found == m_vcaseByName.end() ? nullptr : found->second;
}

CVResult* CGpsFatigueSolver::GetVRst(CPOHCase* resultCase, CPOHVCase* step, unsigned id) {
    if (!step && resultCase && !resultCase->GetVCaseList().empty()) step = resultCase->GetVCaseList().back();
    return step && id ? step->GetVResult(id) : nullptr;
}

std::vector<unsigned> CGpsFatigueSolver::GetQuery(fatigue::ElementGroup group) const {
    return fatigue::requiredIds(m_resultIdTable, group, fatigue::isStepBased(m_fatigue.fatigueType));
}

std::uint64_t CGpsFatigueSolver::GetCasKey(const std::wstring& caseName, const std::wstring& stepName) {
    const CPOHBase* named = nullptr;
    if (stepName.empty())
        named = GetSCasRst(caseName);
    else
        named = GetVCasRst(caseName, stepName);
    return named ? named->GetKey() : 0;
}

int CGpsFatigueSolver::CheckExistResult() {
    if (!CheckProperties()) return 0;
    return fatigue::isStepBased(m_fatigue.fatigueType) ? CheckSteps() : CheckCases();
}

int CGpsFatigueSolver::CheckProperties() {
    int valid = 1;
    tagTProp property;
    for (const ItrKey key : m_propertiesInUse) {
        if (!m_propertyPool->Get(key, property)) continue;
        const wchar_t* kind = invalidKind(property);
        if (!kind) continue;
        valid = 0;
        qmMsgOutError(
            framework::formatWide(CMSGFunction::GetValue(L"IDS_VEXAGPS_FATIGUE_ANALYSIS_PROPERTY_TYPE"),
                                  property.name, CMSGFunction::GetValue(kind)));
    }
    if (!valid) reportKey(L"IDS_VEXAGPS_FATIGUE_ANALYSIS_PROPERTY_TYPE_ERROR");
    return valid;
}

/// Keeps the steps that have every component; fails all the same when one lacks any.
int CGpsFatigueSolver::CheckSteps() {
    const auto lacks = [&](CPOHVCase* step) {
        for (int group = 0; group < fatigue::kGroupCount; ++group) {
            if (!m_lists.present(fatigue::ElementGroup(group))) continue;
            for (const unsigned id : GetQuery(fatigue::ElementGroup(group)))
                if (!GetVRst(step->GetCase(), step, id)) return true;
        }
        return false;
    };
    const std::size_t incomplete = std::erase_if(m_steps, lacks);
    if (m_steps.empty()) {
        reportKey(L"IDS_VEXAGPS_FATIGUE_ANALYSIS_RESULT_ERROR");
        return 0;
    }
    if (incomplete > 0) {
        qmMsgOutError(L"Some results are not exist For fatigue analysis.");
        return 0;
    }
    return 1;
}

int CGpsFatigueSolver::CheckCases() {
    std::vector<MissingResult> missing;
    for (const T_FATG_LOAD_D& load : m_fatigue.loads) {
        CPOHCase* resultCase = GetSCasRst(load.caseName);
        CPOHVCase* step = load.stepName.empty() ? nullptr : GetVCasRst(load.caseName, load.stepName);
        const bool named = resultCase && (load.stepName.empty() || step);
        for (int group = 0; group < fatigue::kGroupCount; ++group) {
            if (!m_lists.present(fatigue::ElementGroup(group))) continue;
            for (const unsigned id : GetQuery(fatigue::ElementGroup(group)))
                if (!named || !GetVRst(resultCase, step, id)) missing.push_back({load.caseName, id});
        }
    }
    if (missing.empty()) return 1;
    ErrorNotExistResult(missing);
    return 0;
}

void CGpsFatigueSolver::ErrorNotExistResult(const std::vector<MissingResult>& missing) {
    if (!missing.empty()) reportKey(L"IDS_VEXAGPS_FATIGUE_ANALYSIS_RESULT_ERROR");
}
