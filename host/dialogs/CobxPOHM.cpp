#include "host/dialogs/CobxPOHM.h"

#include "host/dialogs/CobxPOHM2.h"

namespace {

std::vector<ItrKey> meshSetsOf(CQMDocBase* doc, const CPOHBase* selected) {
    const auto* pool = doc && selected ? doc->GetDBSession().Pool<DPoolMset>() : nullptr;
    return pool ? pool->GetKeyList() : std::vector<ItrKey>();
}

} // namespace

std::vector<ItrKey> CCobxPOHM::GetMeshSetList() const {
    return meshSetsOf(GetDoc(), GetSelected());
}

std::vector<ItrKey> CCobxPOHM2::GetMeshSetList() const {
    return meshSetsOf(GetDoc(), GetSelected());
}

std::vector<CCobxPOHBase::Entry> CCobxPOHM::ListEntries(CQMDocBase& doc, CPOHBase*) const {
    std::vector<Entry> entries;
    for (CPOHAnalysis* analysis : ListAnalyses(doc))
        for (CPOHCase* child : analysis->GetChildList())
            entries.push_back({child, analysis->GetName() + L":" + child->GetName()});
    return entries;
}

std::vector<CCobxPOHBase::Entry> CCobxPOHM2::ListEntries(CQMDocBase& doc, CPOHBase*) const {
    std::vector<Entry> entries;
    for (CPOHAnalysis* analysis : ListAnalyses(doc))
        entries.push_back({analysis, analysis->GetName()});
    return entries;
}
