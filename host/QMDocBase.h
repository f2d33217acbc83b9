#pragma once

#include "host/POHTree.h"
#include "host/PostFileManager.h"
#include "host/QMDBSession.h"
#include "host/WorksTreeManager.h"

#include <string>
#include <vector>

class CQMDocBase;

/// A view of a document.
class CQMViewBase {
  public:
    virtual ~CQMViewBase() = default;
    virtual CQMDocBase* GetDocument() const = 0;
};

/// The open model document.
class CQMDocBase {
  public:
    virtual ~CQMDocBase() = default;
    virtual CQMViewBase* GetActiveView() const = 0; ///< null when the document has none
    virtual std::wstring GetFullPathNameW() const = 0;
    virtual CQMDBSession& GetDBSession() = 0;
    virtual CPOHManager* GetPOHManager() = 0;
    virtual CPostFileManager* GetPostFileManager() = 0;
    /// Null where the host shows no works tree.
    virtual IWorksTreeManager* GetTreeManager() { return nullptr; }

    /// Display mode. The argument is kept for the host's views; 0 switches without a redraw.
    virtual void SetPostMode(int redraw) = 0;
    virtual void SetPreMode(int redraw) = 0;

    /// Keys of the nodes or elements picked in the view, in picking order.
    virtual const std::vector<ItrKey>& GetCurSelectBufferAsNode() const = 0;
    virtual const std::vector<ItrKey>& GetCurSelectBufferAsElem() const = 0;
    virtual void AddToSelBuffer(const std::vector<ItrKey>& nodes, const std::vector<ItrKey>& elements) = 0;
    virtual void ClearSelectBuffer(int redraw) = 0;
};
