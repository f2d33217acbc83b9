#pragma once

#include "host/VResult.h"
#include "host/records/ItrKey.h"

#include <string>
#include <vector>

/// Kinds of the objects of the post-processing result tree.
enum class POHKind : int { Manager = 0, Analysis = 1, Case = 2, Step = 3 };

/// What the objects of the result tree have in common. The host owns them; they live until the tree changes.
class CPOHBase {
  public:
    virtual ~CPOHBase() = default;
    virtual POHKind GetObjectKind() const = 0;
    virtual ItrKey GetKey() const = 0;
    virtual const std::wstring& GetName() const = 0;
    virtual CPOHBase* GetParent() const = 0; ///< null for the manager
};

/// One step (time, load factor, mode) of a case.
class CPOHVCase : public CPOHBase {
  public:
    POHKind GetObjectKind() const final { return POHKind::Step; }
    virtual CPOHCase* GetCase() const = 0;
    virtual double GetStepValue() const = 0;
    /// The result table of a component; null when the step has none. Owned by the step.
    virtual CVResult* GetVResult(unsigned id) = 0;
    /// Identifiers of all tables of the step, ascending.
    virtual const std::vector<unsigned>& GetResultIds() const = 0;
};

/// One result case (load case, construction stage).
class CPOHCase : public CPOHBase {
  public:
    POHKind GetObjectKind() const final { return POHKind::Case; }
    virtual CPOHAnalysis* GetAnalysis() const = 0;
    virtual const std::vector<CPOHVCase*>& GetVCaseList() const = 0;
    double GetStepValue(std::size_t step) const { return GetVCaseList().at(step)->GetStepValue(); }
};

/// One analysis of the results database; its key is the key of its tagTVXMcas record.
class CPOHAnalysis : public CPOHBase {
  public:
    POHKind GetObjectKind() const final { return POHKind::Analysis; }
    virtual const std::vector<CPOHCase*>& GetChildList() const = 0;
    virtual CPOHCase* GetChild(ItrKey key) const = 0; ///< null when there is none
    virtual std::wstring GetResultFilePath() const = 0;
};

/// Root of the result tree.
class CPOHManager : public CPOHBase {
  public:
    POHKind GetObjectKind() const final { return POHKind::Manager; }
    virtual const std::vector<CPOHAnalysis*>& GetChildList() const = 0;
    virtual CPOHAnalysis* GetChild(ItrKey key) const = 0; ///< null when there is none
};
