#include "module/stability/VEXAGpsSafetyRate.h"

#include "host/AppDB.h"
#include "host/DPool.h"

namespace {

// Families in the order of kMajorStressCodes.
constexpr unsigned kMaximumShearCodes[] = {312148, 412148, 432148, 422148, 452148};
// The last digits of the equivalents follow no rule; they are the host's.
constexpr unsigned kEquivalentCodes[] = {312114, 412146, 432184, 422184, 452114};

bool collect(CPOHVCase& source, std::span<const unsigned> codes, std::vector<CVResult*>& list) {
    for (const unsigned code : codes)
        if (CVResult* result = source.GetVResult(code)) list.push_back(result);
    return !list.empty();
}

/// The mode of the analysis that a result belongs to; factor of safety where that cannot be read.
int modeOf(CQMDocBase& doc, const CVResult* result) {
    const CPOHAnalysis* analysis = result ? result->GetAnalysis() : nullptr;
    if (!analysis) return 0;
    CQMDBSession& session = doc.GetDBSession();
    const auto* analyses = session.Pool<DPoolVXMcas>();
    const auto* controls = session.Pool<DPoolVXOctr>();
    tagTVXMcas record;
    tagTVXOctr control;
    if (!analyses || !controls || !analyses->Get(analysis->GetKey(), record) ||
        !controls->Get(record.outputControlKey, control))
        return 0;
    return control.stressRatio;
}

} // namespace

namespace stability {

RateOf rateOf(const tagTMatl& material) {
    if (material.notApplicable) return RateOf::Zero;
    if (material.excluded) return RateOf::Refused;
    return material.strengthDefined ? RateOf::Strength : RateOf::Zero;
}

Strength strengthOf(const tagTMatl& material) {
    return {material.cohesion, material.frictionAngle, material.tensileCutoff != 0, material.tensileStrength};
}

} // namespace stability

std::optional<tagTMatl> CVEXAGpsSafetyRate::ReadMaterial(CQMDocBase& doc) const {
    const ItrKey key = IAppDB::Instance().GetMaterialOfProperty(doc, m_propertyKey);
    const auto* materials = doc.GetDBSession().Pool<DPoolMatl>();
    tagTMatl material;
    if (key == 0 || !materials || !materials->Get(key, material)) return std::nullopt;
    return material;
}

int CVEXAGpsSafetyRate::GetMaterialName(CQMDocBase* doc, std::wstring& name) {
    if (!HasProperty() || !doc) return 0;
    const auto* properties = doc->GetDBSession().Pool<DPoolProp>();
    tagTProp property;
    if (!properties || !properties->Get(m_propertyKey, property)) return 0;
    if (property.typeCode < PropertyType::Shell || property.typeCode > PropertyType::Solid) return 0;
    const auto material = ReadMaterial(*doc);
    if (!material || material->excluded) return 0;
    name = material->name;
    return 1;
}

bool CVEXAGpsSafetyRate::CollectMaximumShears(CPOHVCase& source, std::vector<CVResult*>& list) {
    return collect(source, kMaximumShearCodes, list);
}

bool CVEXAGpsSafetyRate::CollectEquivalents(CPOHVCase& source, std::vector<CVResult*>& list) {
    return collect(source, kEquivalentCodes, list);
}

bool CVEXAGpsSafetyRate::CollectMajorStresses(CPOHVCase& source, std::vector<CVResult*>& list) {
    return collect(source, stability::kMajorStressCodes, list);
}

bool CVEXAGpsSafetyRate::CollectMinorStresses(CPOHVCase& source, std::vector<CVResult*>& list) {
    return collect(source, stability::kMinorStressCodes, list);
}

int CVEXAGpsSafetyRate::CalcRateForResult(CQMDocBase* doc, CVResult* result, double s1, double s2, double s3,
                                          double* rate) {
    return CalcRate(doc, s1, s2, s3, rate, doc ? modeOf(*doc, result) : 0);
}

int CVEXAGpsSafetyRate::CalcRate(CQMDocBase* doc, double s1, double s2, double, double* rate, int mode) {
    *rate = 0;
    if (!HasProperty() || !doc) return 0;
    const auto* properties = doc->GetDBSession().Pool<DPoolProp>();
    tagTProp property;
    if (!properties || !properties->Get(m_propertyKey, property)) return 0;
    const auto material = ReadMaterial(*doc);
    if (!material) return 0;
    const auto kind = stability::rateOf(*material);
    if (kind == stability::RateOf::Refused) return 0;
    if (kind == stability::RateOf::Strength)
        *rate = stability::safetyRate(stability::strengthOf(*material), s1, s2,
                                      mode ? stability::RateMode::StressRatio
                                           : stability::RateMode::FactorOfSafety);
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
