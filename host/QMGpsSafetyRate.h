#pragma once

#include "host/QMDocBase.h"

/// A local safety for stress states, which a module computes and the host's post-processing shows.
class IQMGpsSafetyRate {
  public:
    virtual ~IQMGpsSafetyRate() = default;
    /// The property whose material gives the strength from now on; 0: none.
    virtual void SetProperty(ItrKey key) { m_propertyKey = key; }

    /// The material's name, when the property qualifies; else zero, and `name` is untouched.
    virtual int GetMaterialName(CQMDocBase* doc, std::wstring& name) = 0;
    virtual bool HasProperty() const = 0;
    virtual bool HasRateProperty() const = 0;

    // The tables of a step that serve as sources, appended to `list` in the order of the element families:
    // solid, plate, plane strain, plane stress, membrane. True when `list` is not empty afterwards.
    virtual bool CollectMaximumShears(CPOHVCase& source, std::vector<CVResult*>& list) = 0;
    virtual bool CollectEquivalents(CPOHVCase& source, std::vector<CVResult*>& list) = 0;
    virtual bool CollectMajorStresses(CPOHVCase& source, std::vector<CVResult*>& list) = 0;
    virtual bool CollectMinorStresses(CPOHVCase& source, std::vector<CVResult*>& list) = 0;

    // The rate of a stress state, tension positive, database units. Zero, and a rate of 0, when property or
    // material cannot be read. Without a mode it is that of the result's analysis. s3 is not used.
    virtual int CalcRateForResult(CQMDocBase* doc, CVResult* result, double s1, double s2, double s3,
                                  double* rate) = 0;
    virtual int CalcRate(CQMDocBase* doc, double s1, double s2, double s3, double* rate, int mode) = 0;
    // Likewise with an argument more, which is dropped; always 1.
    virtual int CalcRateForResult(CQMDocBase* doc, CVResult* result, double s1, double s2, double dropped,
                                  double s3, double* rate) = 0;
    virtual int CalcRate(CQMDocBase* doc, double s1, double s2, double dropped, double s3, double* rate,
                         int mode) = 0;

  protected:
    ItrKey m_propertyKey = 0;
};
