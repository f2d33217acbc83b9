#pragma once

#include "framework/Export.h"
#include "host/dialogs/CobxPOHBase.h"

/// Picks a case of any analysis: "analysis:case".
class VEXA_API CCobxPOHM : public CCobxPOHBase {
  public:
    CPOHCase* GetSelectedPOHM() const { return static_cast<CPOHCase*>(GetSelected()); } ///< null for none
    /// Keys of the mesh sets that the selected results can be asked for: results are those of the whole
    /// model, so all of the document's, ascending. Empty without a selection.
    std::vector<ItrKey> GetMeshSetList() const;

  protected:
    std::vector<Entry> ListEntries(CQMDocBase& doc, CPOHBase* parent) const override;
};
