#pragma once

#include "framework/Export.h"
#include "host/dialogs/CobxPOHBase.h"

/// Picks a case or one of its steps: each case of the parent selector's analysis (or the parent's case
/// alone), and below it, indented, "case:step" for each of its steps.
class VEXA_API CCobxPOHS2 : public CCobxPOHBase {
  public:
    /// Its kind is POHKind::Case or POHKind::Step; null for none.
    CPOHBase* GetSelectedPOHS() const { return GetSelected(); }

  protected:
    std::vector<Entry> ListEntries(CQMDocBase& doc, CPOHBase* parent) const override;
};
