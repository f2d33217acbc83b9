#include "workbench/document/DocumentFolder.h"

#include "base/ReplaceFile.h"
#include "workbench/document/DocumentFile.h"

#include <algorithm>
#include <system_error>

namespace workbench {

namespace {

namespace fs = std::filesystem;

fs::path folderOf(const fs::path& document) {
    std::error_code error;
    const fs::path absolute = fs::absolute(document, error).lexically_normal();
    return error ? document.parent_path() : absolute.parent_path();
}

template <class Wanted>
std::vector<fs::path> filesIn(const fs::path& folder, Wanted wanted) {
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (wanted(at->path())) found.push_back(at->path());
    std::sort(found.begin(), found.end());
    return found;
}

/// What names of combined results begin with.
constexpr const char* kCombined = "_RCB_";

bool startsWith(const fs::path& name, const std::string& start) {
    return name.filename().string().starts_with(start);
}

} // namespace

fs::path registeredFile(const fs::path& folder, const std::string& path) {
    return (folder / fs::path(std::u8string(path.begin(), path.end()))).lexically_normal();
}

FolderReferences referencesIn(const fs::path& folder, const fs::path& except) {
    FolderReferences references;
    for (const fs::path& document :
         filesIn(folder, [](const fs::path& path) { return path.extension() == ".wkm"; })) {
        if (document.filename() == except.filename()) continue;
        DocumentSummary summary;
        const auto database = openDocumentRecords(document, summary);
        if (!database) {
            references.unreadable.push_back(document);
            continue;
        }
        for (const ResultFileRecord& record : (*database)->resultFiles())
            references.files.insert(registeredFile(folder, record.path));
    }
    return references;
}

std::vector<fs::path> resultFilesBeside(const fs::path& document) {
    const std::string start = document.stem().string() + "_";
    return filesIn(folderOf(document), [&](const fs::path& path) {
        return path.extension() == ".lmop" && (startsWith(path, start) || startsWith(path, kCombined));
    });
}

std::vector<fs::path> temporaryFilesBeside(const fs::path& document) {
    const std::string stem = document.stem().string();
    const std::string name = document.filename().string();
    return filesIn(folderOf(document), [&](const fs::path& path) {
        return isTemporaryName(path) &&
               (startsWith(path, name) || startsWith(path, stem + "_") || startsWith(path, kCombined));
    });
}

} // namespace workbench
