#pragma once

#include "host/QMGpsSafetyRate.h"
#include "module/Export.h"
#include "module/stability/SafetyRate.h"

#include <optional>

struct tagTMatl;

/// The safety rate of the module: the arithmetic of SafetyRate.h with the strength of a property's material.
/// The result codes of the sources are those of the host's catalogue.
class VEXA_GPS_API CVEXAGpsSafetyRate : public IQMGpsSafetyRate {
  public:
    int GetMaterialName(CQMDocBase* doc, std::wstring& name) override;
    bool HasProperty() const override { return m_propertyKey > 0; }
    bool HasRateProperty() const override { return HasProperty(); }

    bool CollectMaximumShears(CPOHVCase& source, std::vector<CVResult*>& list) override;
    bool CollectEquivalents(CPOHVCase& source, std::vector<CVResult*>& list) override;
    bool CollectMajorStresses(CPOHVCase& source, std::vector<CVResult*>& list) override;
    bool CollectMinorStresses(CPOHVCase& source, std::vector<CVResult*>& list) override;

    int CalcRateForResult(CQMDocBase* doc, CVResult* result, double s1, double s2, double s3,
                          double* rate) override;
    int CalcRate(CQMDocBase* doc, double s1, double s2, double s3, double* rate, int mode) override;
    int CalcRateForResult(CQMDocBase* doc, CVResult* result, double s1, double s2, double dropped, double s3,
                          double* rate) override;
    int CalcRate(CQMDocBase* doc, double s1, double s2, double dropped, double s3, double* rate,
                 int mode) override;

  private:
    std::optional<tagTMatl> ReadMaterial(CQMDocBase& doc) const;
};

namespace stability {

/// What a material says about the rate of its states.
enum class RateOf { Refused, Zero, Strength };
VEXA_GPS_API RateOf rateOf(const tagTMatl& material);
VEXA_GPS_API Strength strengthOf(const tagTMatl& material);

/// Result codes of principal stresses by element family: solid, plate, plane strain, plane stress, membrane.
inline constexpr unsigned kMajorStressCodes[] = {312107, 412142, 432137, 422137, 452107};
inline constexpr unsigned kMinorStressCodes[] = {312108, 412143, 432138, 422138, 452108};

} // namespace stability
