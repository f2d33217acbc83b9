#pragma once

#include "framework/Export.h"
#include "host/dialogs/CobxPOHBase.h"

/// Picks an analysis.
class VEXA_API CCobxPOHM2 : public CCobxPOHBase {
  public:
    CPOHAnalysis* GetSelectedPOHM() const {
        return static_cast<CPOHAnalysis*>(GetSelected());
    }                                           ///< null for none
    std::vector<ItrKey> GetMeshSetList() const; ///< as CCobxPOHM's

  protected:
    std::vector<Entry> ListEntries(CQMDocBase& doc, CPOHBase* parent) const override;
};
