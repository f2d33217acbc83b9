#pragma once

#include "framework/Export.h"
#include "framework/windows/controls/ComboBox.h"
#include "host/QMDocBase.h"

#include <string>
#include <vector>

/// Values of the filter of analyses (CCobxPOHBase::SetAnalysisTypes).
namespace AnalysisFilter {
inline constexpr int Solved = 1;   ///< results of a solver
inline constexpr int Combined = 2; ///< sets that were combined from other results
} // namespace AnalysisFilter

/// A combo box of objects of the result tree. An item's data is its object, a CPOHBase*; none is 0. A
/// selector that is the child of another one lists what belongs to that one's selected object: it follows the
/// choice of the user by itself, and SelectEntry; a selection by SetCurSel needs UpdateChild.
class VEXA_API CCobxPOHBase : public CComboBox {
  public:
    ~CCobxPOHBase() override;
    /// Lists the objects of `doc`, behind an empty entry for "none" when `withNone` is non-zero. Nothing is
    /// selected, and children are empty. Zero without a document or a window.
    virtual int Initialize(CQMDocBase* doc, int withNone);
    /// Which analyses are listed, see AnalysisFilter; empty, as at first: all. For the next listing.
    virtual void SetAnalysisTypes(const std::vector<int>& types) { m_analysisTypes = types; }
    /// The selector that lists what belongs to the one selected here; it must live as long. Null takes it
    /// off.
    void SetChild(CCobxPOHBase* child);

    /// Lists anew, after the tree changed: the selected object stays selected if it is still there, else the
    /// first entry takes its place. Children follow.
    void AddComboBoxList();
    std::vector<CPOHBase*> GetCombBoxList() const; ///< the objects, in the order of the list
    void SelectEntry(int index);                   ///< also fills the child; a bad index selects nothing
    void UpdateChild(); ///< lists the child for the selected object and selects its first entry
    CPOHBase* GetSelected() const;

  protected:
    struct Entry {
        CPOHBase* object;
        std::wstring text;
    };
    /// What there is to list; `parent` is the selected object of the parent selector, null without one.
    virtual std::vector<Entry> ListEntries(CQMDocBase& doc, CPOHBase* parent) const = 0;
    /// The analyses of the document that have results and pass the filter.
    std::vector<CPOHAnalysis*> ListAnalyses(CQMDocBase& doc) const;
    CQMDocBase* GetDoc() const { return m_pDoc; }
    int OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) override;

  private:
    /// What tells an object of the tree from others across a rebuild.
    struct Identity {
        POHKind kind = POHKind::Manager;
        ItrKey analysisKey = 0;
        std::wstring text;
        bool operator==(const Identity&) const = default;
    };
    static Identity IdentityOf(const Entry& entry);
    int FillList(const Identity* selected);

    CQMDocBase* m_pDoc = nullptr;
    bool m_bWithNone = false;
    std::vector<int> m_analysisTypes;
    CCobxPOHBase* m_pParent = nullptr;
    CCobxPOHBase* m_pChild = nullptr;
    std::vector<Identity> m_listed; ///< of the items, whose objects may be gone
};
