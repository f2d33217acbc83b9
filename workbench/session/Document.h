#pragma once

#include "base/ReplaceFile.h"
#include "base/Result.h"
#include "host/QMDocBase.h"
#include "workbench/document/DocumentFile.h"
#include "workbench/document/ModelDatabase.h"
#include "workbench/results/PostFileManager.h"
#include "workbench/results/ResultTree.h"

#include <filesystem>
#include <memory>
#include <set>
#include <vector>

namespace workbench {

/// The open document that the module sees: database, results and registered files of one `.wkm` file.
class Document final : public CQMDocBase {
  public:
    /// Opens a document with its mesh. A host must be registered.
    static Result<std::unique_ptr<Document>> open(const std::filesystem::path& path);
    /// Opens everything but the mesh, which is then summarised: quick, and never to be saved.
    static Result<std::unique_ptr<Document>> openWithoutMesh(const std::filesystem::path& path,
                                                             DocumentSummary& summary);

    /// Tells the observers, so that the dialogs of the document close.
    ~Document() override { NotifyObservers(DocumentMessage::Closing); }

    CQMViewBase* GetActiveView() const override { return view_.get(); }
    std::wstring GetFullPathNameW() const override;
    CQMDBSession& GetDBSession() override { return *database_; }
    CPOHManager* GetPOHManager() override { return &tree_; }
    CPostFileManager* GetPostFileManager() override { return &files_; }
    void SetPostMode(int) override { postMode_ = true; }
    void SetPreMode(int) override { postMode_ = false; }
    const std::vector<ItrKey>& GetCurSelectBufferAsNode() const override { return selectedNodes_; }
    const std::vector<ItrKey>& GetCurSelectBufferAsElem() const override { return selectedElements_; }
    void AddToSelBuffer(const std::vector<ItrKey>& nodes, const std::vector<ItrKey>& elements) override;
    void ClearSelectBuffer(int redraw) override;

    const std::filesystem::path& path() const { return path_; }
    ModelDatabase& database() { return *database_; }
    ResultTree& results() { return tree_; }
    bool inPostMode() const { return postMode_; }
    /// Whether views show a mesh set: all do that nobody hid. Not saved with the document.
    bool isMeshSetShown(ItrKey set) const { return !hiddenMeshSets_.contains(set); }
    void showMeshSet(ItrKey set, bool show);

    Result<void> save();
    /// To be called before long work that ends with a save: whether the file can be saved to now. From then
    /// on, as long as this object lives, the same call of another program is refused.
    Result<void> reserve();

  private:
    Document(std::filesystem::path path, std::unique_ptr<ModelDatabase> database);

    std::filesystem::path path_; ///< absolute
    FileInWork inWork_;
    bool isReserved_ = false;
    std::unique_ptr<ModelDatabase> database_;
    ResultTree tree_;
    PostFileManager files_;
    std::unique_ptr<CQMViewBase> view_;
    bool postMode_ = false;
    std::vector<ItrKey> selectedNodes_;
    std::vector<ItrKey> selectedElements_;
    std::set<ItrKey> hiddenMeshSets_;
};

} // namespace workbench
