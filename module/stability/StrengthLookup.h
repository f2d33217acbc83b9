#pragma once

#include "host/QMDocBase.h"
#include "host/records/Material.h"
#include "module/Export.h"
#include "module/stability/SafetyRate.h"

#include <optional>

/// What the records of a document say about the safety of stress states.
namespace stability {

struct PropertyMaterial {
    tagTProp property;
    tagTMatl material;
};
/// A property and its material; none where one of them cannot be read.
VEXA_GPS_API std::optional<PropertyMaterial> materialOf(CQMDocBase& doc, ItrKey property);

/// What a material says about the rate of its states.
enum class RateOf { Refused, Zero, Strength };
VEXA_GPS_API RateOf rateOf(const tagTMatl& material);
VEXA_GPS_API Strength strengthOf(const tagTMatl& material);

/// The mode of an analysis; factor of safety where that cannot be read.
VEXA_GPS_API RateMode rateModeOf(CQMDocBase& doc, ItrKey analysis);

} // namespace stability
