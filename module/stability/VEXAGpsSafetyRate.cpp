#include "module/stability/VEXAGpsSafetyRate.h"

#include "host/POHTree.h"
#include "module/stability/StrengthLookup.h"
#include "module/stability/StressSources.h"

#include <span>

namespace {

bool collect(CPOHVCase& source, std::span<const unsigned> codes, std::vector<CVResult*>& list) {
    for (const unsigned code : codes)
        if (CVResult* result = source.GetVResult(code)) list.push_back(result);
    return !list.empty();
}

} // namespace

int CVEXAGpsSafetyRate::GetMaterialName(CQMDocBase* doc, std::wstring& name) {
    if (!HasProperty() || !doc) return 0;
    const auto found = stability::materialOf(*doc, m_propertyKey);
    if (!found || found->material.excluded) return 0;
    const int type = found->property.typeCode;
    if (type < PropertyType::Shell || type > PropertyType::Solid) return 0;
    name = found->material.name;
    return 1;
}

bool CVEXAGpsSafetyRate::CollectMaximumShears(CPOHVCase& source, std::vector<CVResult*>& list) {
    return collect(source, stability::kMaximumShearCodes, list);
}

bool CVEXAGpsSafetyRate::CollectEquivalents(CPOHVCase& source, std::vector<CVResult*>& list) {
    return collect(source, stability::kEquivalentCodes, list);
}

bool CVEXAGpsSafetyRate::CollectMajorStresses(CPOHVCase& source, std::vector<CVResult*>& list) {
    return collect(source, stability::kMajorStressCodes, list);
}

bool CVEXAGpsSafetyRate::CollectMinorStresses(CPOHVCase& source, std::vector<CVResult*>& list) {
    return collect(source, stability::kMinorStressCodes, list);
}

int CVEXAGpsSafetyRate::CalcRateForResult(CQMDocBase* doc, CVResult* result, double s1, double s2, double s3,
                                          double* rate) {
    const CPOHAnalysis* analysis = result ? result->GetAnalysis() : nullptr;
    const auto mode = doc && analysis ? stability::rateModeOf(*doc, analysis->GetKey())
                                      : stability::RateMode::FactorOfSafety;
    return CalcRate(doc, s1, s2, s3, rate, static_cast<int>(mode));
}

int CVEXAGpsSafetyRate::CalcRate(CQMDocBase* doc, double s1, double s2, double, double* rate, int mode) {
    using namespace stability;
    *rate = 0;
    if (!HasProperty() || !doc) return 0;
    const auto found = materialOf(*doc, m_propertyKey);
    if (!found) return 0;
    const RateOf kind = rateOf(found->material);
    if (kind == RateOf::Refused) return 0;
    if (kind == RateOf::Strength)
        *rate = safetyRate(strengthOf(found->material), s1, s2,
                           mode ? RateMode::StressRatio : RateMode::FactorOfSafety);
    return 1;
}

int CVEXAGpsSafetyRate::CalcRateForResult(CQMDocBase* doc, CVResult* result, double s1, double s2, double,
                                          double s3, double* rate) {
    CalcRateForResult(doc, result, s1, s2, s3, rate);
    return 1;
}

int CVEXAGpsSafetyRate::CalcRate(CQMDocBase* doc, double s1, double s2, double, double s3, double* rate,
                                 int mode) {
    CalcRate(doc, s1, s2, s3, rate, mode);
    return 1;
}
