#pragma once

#include "framework/Export.h"
#include "host/QMDocBase.h"

#include <span>
#include <vector>

/// The values of one result table for the whole mesh, copied, so that they stay when the table leaves memory.
/// NaN where the table has no value. Document and view are the caller's; the view may be null.
class VEXA_API CPDLItem {
  public:
    CPDLItem(CQMDocBase* doc, CQMViewBase* view)
        : m_pDoc(doc)
        , m_pView(view) {}
    CQMDocBase* GetDocument() const { return m_pDoc; }
    CQMViewBase* GetView() const { return m_pView; }

    /// Loads the values as the table has them: one a node in mesh order, or one a corner of each element,
    /// element by element in mesh order. Zero, and the item empty, when the values cannot be read or do not
    /// fit the mesh.
    int LoadOrgData(CVResult* result);
    /// Loads one value a node: the mean of the corner values at it where the table has corners. Otherwise the
    /// same.
    int LoadMainData(CVResult* result);
    void Clear();

    /// In database units; empty when nothing is loaded.
    std::span<const float> GetValues() const { return m_values; }
    ResultLocation GetLocation() const { return m_location; } ///< of the loaded values

  private:
    CQMDocBase* m_pDoc;
    CQMViewBase* m_pView;
    std::vector<float> m_values;
    ResultLocation m_location = ResultLocation::Node;
};
