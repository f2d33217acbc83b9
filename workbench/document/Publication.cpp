#include "workbench/document/Publication.h"

#include "base/ReplaceFile.h"
#include "workbench/document/DocumentFile.h"
#include "workbench/document/DocumentFolder.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace workbench {

namespace {

namespace fs = std::filesystem;

/// The result files of the document at `path` that lie in its folder; none when it cannot be read.
std::vector<fs::path> resultFilesOf(const fs::path& path) {
    std::vector<fs::path> files;
    DocumentSummary summary;
    std::error_code error;
    if (!fs::exists(path, error)) return files;
    const auto database = openDocumentRecords(path, summary);
    if (!database) return files;
    for (const ResultFileRecord& record : (*database)->resultFiles())
        if (!fs::path(record.path).has_parent_path()) files.push_back(path.parent_path() / record.path);
    return files;
}

} // namespace

Publication::~Publication() {
    std::error_code ignored; // nothing better can be done about a failure to clean up
    if (!committed_)
        for (const File& file : files_)
            fs::remove(file.path, ignored);
}

void Publication::add(ItrKey key, const fs::path& file, const fs::path& wanted) {
    files_.push_back({key, file, wanted});
}

Result<void> Publication::commit(ModelDatabase& database) {
    former_ = resultFilesOf(document_);
    if (auto saved = saveDocument(database, document_); !saved) return saved;
    committed_ = true;
    settleNames(database);
    removeFormer();
    return {};
}

/// Second names first, then the document that refers to them, and only then the first names go.
void Publication::settleNames(ModelDatabase& database) {
    std::vector<fs::path> before;
    for (const File& file : files_)
        before.push_back(file.path);
    const auto rename = [&] {
        if (!database.beginTransaction(L"Name results")) return;
        for (File& file : files_) {
            if (file.path == file.wanted || !takeName(file.path, file.wanted)) continue;
            const std::u8string name = file.wanted.filename().u8string();
            if (database.renameResultFile(file.key, std::string(name.begin(), name.end())))
                file.path = file.wanted;
        }
        database.commitTransaction();
        database.ClearUndo();
    };
    if (std::ranges::all_of(files_, [](const File& file) { return file.path == file.wanted; })) return;
    // When this fails the document goes on with the names that it was saved with.
    const bool settled = bool(saveDocument(database, document_, rename));
    std::error_code ignored;
    for (std::size_t i = 0; i < files_.size(); ++i) {
        if (files_[i].path == before[i]) continue;
        if (settled)
            fs::remove(before[i], ignored);
        else
            files_[i].path = before[i];
    }
}

/// Result files of the former document, and files of publications that were cut short.
void Publication::removeFormer() const {
    std::vector<fs::path> candidates = former_;
    for (const fs::path& path : resultFilesBeside(document_)) {
        const bool numbered = std::ranges::any_of(files_, [&](const File& file) {
            return path.filename().string().starts_with(file.wanted.stem().string() + "~");
        });
        if (numbered) candidates.push_back(path);
    }
    std::erase_if(candidates, [&](const fs::path& path) {
        return std::ranges::any_of(files_, [&](const File& file) { return file.path == path; });
    });
    if (candidates.empty()) return;
    std::error_code error;
    const fs::path folder = fs::absolute(document_, error).lexically_normal().parent_path();
    const FolderReferences references = referencesIn(folder);
    if (error || !references.unreadable.empty()) return;
    for (const fs::path& path : candidates) {
        const fs::path whole = folder / path.filename();
        if (!references.files.contains(whole)) removeAbandoned(whole);
    }
}

} // namespace workbench
