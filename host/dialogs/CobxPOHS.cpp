#include "host/dialogs/CobxPOHS.h"

#include "host/dialogs/CobxPOHS2.h"

namespace {

/// The cases that belong to an object of the tree; of all these analyses without one.
std::vector<CPOHCase*> casesOf(CPOHBase* object, const std::vector<CPOHAnalysis*>& analyses) {
    if (object && object->GetObjectKind() == POHKind::Case) return {static_cast<CPOHCase*>(object)};
    if (object && object->GetObjectKind() == POHKind::Analysis)
        return static_cast<CPOHAnalysis*>(object)->GetChildList();
    std::vector<CPOHCase*> cases;
    for (CPOHAnalysis* analysis : analyses)
        cases.insert(cases.end(), analysis->GetChildList().begin(), analysis->GetChildList().end());
    return cases;
}

/// Says which case a step belongs to, since a closed box shows this entry alone.
std::wstring stepText(const CPOHCase& owner, const CPOHVCase& step) {
    return owner.GetName() + L":" + step.GetName();
}

} // namespace

std::vector<CCobxPOHBase::Entry> CCobxPOHS::ListEntries(CQMDocBase& doc, CPOHBase* parent) const {
    std::vector<Entry> entries;
    for (CPOHCase* owner : casesOf(parent, ListAnalyses(doc)))
        for (CPOHVCase* step : owner->GetVCaseList())
            entries.push_back({step, stepText(*owner, *step)});
    return entries;
}

std::vector<CCobxPOHBase::Entry> CCobxPOHS2::ListEntries(CQMDocBase& doc, CPOHBase* parent) const {
    std::vector<Entry> entries;
    for (CPOHCase* owner : casesOf(parent, ListAnalyses(doc))) {
        entries.push_back({owner, owner->GetName()});
        for (CPOHVCase* step : owner->GetVCaseList())
            entries.push_back({step, L"    " + stepText(*owner, *step)});
    }
    return entries;
}
