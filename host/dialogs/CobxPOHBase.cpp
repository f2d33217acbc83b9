#include "host/dialogs/CobxPOHBase.h"

#include "host/FileCtrl.h"
#include "host/dialogs/DlgUtil.h"

#include <algorithm>

namespace {

int typeOf(const CPOHAnalysis& analysis) {
    const bool isCombined = CFileCtrl::GetFileName(analysis.GetResultFilePath()).starts_with(L"_RCB_");
    return isCombined ? AnalysisFilter::Combined : AnalysisFilter::Solved;
}

CPOHBase* objectOf(DWORD_PTR data) {
    return reinterpret_cast<CPOHBase*>(data);
}

} // namespace

CCobxPOHBase::~CCobxPOHBase() {
    SetChild(nullptr);
    if (m_pParent) m_pParent->SetChild(nullptr);
}

int CCobxPOHBase::Initialize(CQMDocBase* doc, int withNone) {
    m_pDoc = doc;
    m_bWithNone = withNone != 0;
    FillList(nullptr);
    UpdateChild();
    return doc && m_hWnd;
}

void CCobxPOHBase::SetChild(CCobxPOHBase* child) {
    if (m_pChild) m_pChild->m_pParent = nullptr;
    m_pChild = child;
    if (child) child->m_pParent = this;
}

CCobxPOHBase::Identity CCobxPOHBase::IdentityOf(const Entry& entry) {
    if (!entry.object) return {};
    // Analyses may be renamed; cases and steps get other keys when their file is read again.
    if (entry.object->GetObjectKind() == POHKind::Analysis)
        return {POHKind::Analysis, entry.object->GetKey(), {}};
    return {entry.object->GetObjectKind(), 0, entry.text};
}

/// Position of the entry that is `selected`; -1 without one.
int CCobxPOHBase::FillList(const Identity* selected) {
    ResetContent();
    m_listed.clear();
    std::vector<Entry> entries;
    CPOHBase* const above = m_pParent ? m_pParent->GetSelected() : nullptr;
    if (m_pDoc && (above || !m_pParent)) entries = ListEntries(*m_pDoc, above);
    if (m_bWithNone) entries.insert(entries.begin(), Entry{nullptr, L""});
    int found = -1;
    for (const Entry& entry : entries) {
        const int index = CDlgUtil::CobxAddItem(*this, entry.text, reinterpret_cast<DWORD_PTR>(entry.object));
        m_listed.push_back(IdentityOf(entry));
        if (selected && m_listed.back() == *selected) found = index;
    }
    CDlgUtil::CobxUpdateItemWidth(*this);
    return found;
}

void CCobxPOHBase::AddComboBoxList() {
    const int current = GetCurSel();
    const bool isSelected = current >= 0 && static_cast<std::size_t>(current) < m_listed.size();
    const Identity selected = isSelected ? m_listed[static_cast<std::size_t>(current)] : Identity();
    const int found = FillList(isSelected ? &selected : nullptr);
    SetCurSel(isSelected && found < 0 ? 0 : found);
    if (!m_pChild) return;
    m_pChild->m_pDoc = m_pDoc;
    m_pChild->AddComboBoxList();
}

void CCobxPOHBase::SelectEntry(int index) {
    SetCurSel(index);
    UpdateChild();
}

void CCobxPOHBase::UpdateChild() {
    if (!m_pChild) return;
    m_pChild->m_pDoc = m_pDoc;
    m_pChild->FillList(nullptr);
    m_pChild->SelectEntry(m_pChild->GetCount() > 0 ? 0 : -1);
}

std::vector<CPOHBase*> CCobxPOHBase::GetCombBoxList() const {
    std::vector<CPOHBase*> objects;
    for (int i = 0; i < GetCount(); ++i)
        if (CPOHBase* object = objectOf(GetItemData(i))) objects.push_back(object);
    return objects;
}

CPOHBase* CCobxPOHBase::GetSelected() const {
    const int current = GetCurSel();
    return current < 0 ? nullptr : objectOf(GetItemData(current));
}

std::vector<CPOHAnalysis*> CCobxPOHBase::ListAnalyses(CQMDocBase& doc) const {
    std::vector<CPOHAnalysis*> analyses;
    const CPOHManager* manager = doc.GetPOHManager();
    if (!manager) return analyses;
    for (CPOHAnalysis* analysis : manager->GetChildList()) {
        const bool isWanted = m_analysisTypes.empty() ||
                              std::ranges::find(m_analysisTypes, typeOf(*analysis)) != m_analysisTypes.end();
        if (isWanted && !analysis->GetChildList().empty()) analyses.push_back(analysis);
    }
    return analyses;
}

int CCobxPOHBase::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    if (message == WM_COMMAND && HIWORD(static_cast<LPARAM>(wParam)) == CBN_SELCHANGE) UpdateChild();
    return CComboBox::OnChildNotify(message, wParam, lParam, result);
}
