#pragma once

#include "framework/Export.h"
#include "host/dialogs/CobxPOHBase.h"

/// Picks a step of the parent selector's case, or of any case of its analysis: "case:step". Without a parent:
/// of every analysis.
class VEXA_API CCobxPOHS : public CCobxPOHBase {
  public:
    CPOHVCase* GetSelectedPOHS() const { return static_cast<CPOHVCase*>(GetSelected()); } ///< null for none

  protected:
    std::vector<Entry> ListEntries(CQMDocBase& doc, CPOHBase* parent) const override;
};
