#include "workbench/session/Document.h"

#include "framework/files/PathMap.h"

#include <system_error>

namespace workbench {
namespace {

/// The view of a document that nobody looks at.
class View final : public CQMViewBase {
  public:
    explicit View(CQMDocBase& document)
        : document_(document) {}
    CQMDocBase* GetDocument() const override { return &document_; }

  private:
    CQMDocBase& document_;
};

std::filesystem::path absolutePath(const std::filesystem::path& path) {
    std::error_code error;
    const auto absolute = std::filesystem::absolute(path, error).lexically_normal();
    return error ? path : absolute;
}

} // namespace

Document::Document(std::filesystem::path path, std::unique_ptr<ModelDatabase> database)
    : path_(std::move(path))
    , database_(std::move(database))
    , tree_(*database_, path_.parent_path())
    , files_(*database_, tree_, path_.parent_path())
    , view_(std::make_unique<View>(*this)) {}

Result<std::unique_ptr<Document>> Document::open(const std::filesystem::path& path) {
    auto database = openDocument(path);
    if (!database) return database.error();
    return std::unique_ptr<Document>(new Document(absolutePath(path), std::move(*database)));
}

Result<std::unique_ptr<Document>> Document::openWithoutMesh(const std::filesystem::path& path,
                                                            DocumentSummary& summary) {
    auto database = openDocumentRecords(path, summary);
    if (!database) return database.error();
    return std::unique_ptr<Document>(new Document(absolutePath(path), std::move(*database)));
}

std::wstring Document::GetFullPathNameW() const {
    return framework::widePath(path_);
}

void Document::AddToSelBuffer(const std::vector<ItrKey>& nodes, const std::vector<ItrKey>& elements) {
    selectedNodes_.insert(selectedNodes_.end(), nodes.begin(), nodes.end());
    selectedElements_.insert(selectedElements_.end(), elements.begin(), elements.end());
}

void Document::ClearSelectBuffer(int) {
    selectedNodes_.clear();
    selectedElements_.clear();
}

void Document::showMeshSet(ItrKey set, bool show) {
    if (show)
        hiddenMeshSets_.erase(set);
    else
        hiddenMeshSets_.insert(set);
}

Result<void> Document::save() {
    return saveDocument(*database_, path_);
}

Result<void> Document::reserve() {
    if (isReserved_) return checkSavable(*database_);
    // Marked first: what another program saved before that is seen by the check.
    FileInWork mark;
    const bool isMarked = mark.mark(path_);
    if (auto savable = checkSavable(*database_); !savable) return savable;
    if (!isMarked)
        return Error{"another program is working on " + path_.string() + "; wait until it has finished"};
    inWork_ = std::move(mark);
    isReserved_ = true;
    return {};
}

} // namespace workbench
