#pragma once

#include "framework/windows/Wnd.h"
#include "host/POHTree.h"
#include "host/PostFileManager.h"
#include "host/QMDBSession.h"
#include "host/QMObserver.h"
#include "host/WorksTreeManager.h"

#include <string>
#include <vector>

class CQMDocBase;

/// Messages of a document to its observers.
namespace DocumentMessage {
inline constexpr UINT Closing = 1; ///< it is about to go; the last that is heard of it
} // namespace DocumentMessage

/// A view of a document: the window that shows its model. It has no window where nobody made a frame.
class CQMViewBase : public CWnd {
  public:
    virtual CQMDocBase* GetDocument() const = 0;
};

/// The open model document. Its dialogs observe it.
class CQMDocBase : public CQMSubject {
  public:
    /// Non-zero while the host does not let its user change what open dialogs show.
    int m_bChoicesLocked = 0;

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
