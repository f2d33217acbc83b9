#pragma once

#include "host/QMGpsSafetyRate.h"
#include "module/Export.h"

/// The safety rate of the module: the arithmetic of SafetyRate.h with the strength of a property's material.
/// The result codes of the sources are those of StressSources.h.
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
};
