#include "module/stability/StrengthLookup.h"

#include "host/AppDB.h"
#include "host/DPool.h"

namespace stability {

std::optional<PropertyMaterial> materialOf(CQMDocBase& doc, ItrKey property) {
    CQMDBSession& session = doc.GetDBSession();
    const auto* properties = session.Pool<DPoolProp>();
    const auto* materials = session.Pool<DPoolMatl>();
    PropertyMaterial found;
    if (!properties || !materials || !properties->Get(property, found.property)) return std::nullopt;
    const ItrKey key = IAppDB::Instance().GetMaterialOfProperty(doc, property);
    if (key == 0 || !materials->Get(key, found.material)) return std::nullopt;
    return found;
}

RateOf rateOf(const tagTMatl& material) {
    if (material.notApplicable) return RateOf::Zero;
    if (material.excluded) return RateOf::Refused;
    return material.strengthDefined ? RateOf::Strength : RateOf::Zero;
}

Strength strengthOf(const tagTMatl& material) {
    return {material.cohesion, material.frictionAngle, material.tensileCutoff != 0, material.tensileStrength};
}

RateMode rateModeOf(CQMDocBase& doc, ItrKey analysis) {
    CQMDBSession& session = doc.GetDBSession();
    const auto* analyses = session.Pool<DPoolVXMcas>();
    const auto* controls = session.Pool<DPoolVXOctr>();
    tagTVXMcas record;
    tagTVXOctr control;
    const bool isRead = analyses && controls && analyses->Get(analysis, record) &&
                        controls->Get(record.outputControlKey, control);
    return isRead && control.stressRatio ? RateMode::StressRatio : RateMode::FactorOfSafety;
}

} // namespace stability
