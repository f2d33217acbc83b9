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

/// Whether a file is named after the document with the stem, or after what was made of results.
bool isResultOf(const fs::path& path, const std::string& stem) {
    const std::string name = path.filename().string();
    return name.starts_with(stem + "_") || name.starts_with(kCombinedPrefix) ||
           name.starts_with(kSafetyPrefix);
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
    const std::string stem = document.stem().string();
    return filesIn(folderOf(document), [&](const fs::path& path) {
        return path.extension() == ".lmop" && isResultOf(path, stem);
    });
}

std::vector<fs::path> temporaryFilesBeside(const fs::path& document) {
    const std::string stem = document.stem().string();
    const std::string name = document.filename().string();
    return filesIn(folderOf(document), [&](const fs::path& path) {
        return isTemporaryName(path) &&
               (path.filename().string().starts_with(name) || isResultOf(path, stem));
    });
}

} // namespace workbench
