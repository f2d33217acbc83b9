#include "workbench/results/PostFileManager.h"

#include "base/Checksum.h"
#include "base/ReplaceFile.h"
#include "framework/files/PathMap.h"
#include "framework/text/CodePage.h"
#include "host/MSGFunction.h"
#include "host/dialogs/Notifications.h"
#include "workbench/results/ResultSource.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <vector>

namespace workbench {
namespace {

constexpr const char* kInterfaceFile = "FATIGUE.76";

std::string registeredPath(const std::filesystem::path& path, const std::filesystem::path& folder) {
    const auto relative = path.lexically_normal().lexically_relative(folder.lexically_normal());
    const bool inside = !relative.empty() && *relative.begin() != "..";
    return (inside ? relative : std::filesystem::absolute(path)).generic_string();
}

} // namespace

Result<std::string> interfaceFileChecksum(const std::filesystem::path& folder) {
    const auto path = folder / kInterfaceFile;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    if (!file) return Error{"cannot read " + path.string() + ": " + systemErrorText(errno)};
    std::vector<std::byte> block(std::size_t{1} << 20);
    Checksum checksum;
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), file.get()))
        checksum.add(std::span(block).first(count));
    if (std::ferror(file.get())) return Error{"cannot read " + path.string() + ": " + systemErrorText(errno)};
    return checksumText(checksum.value());
}

int PostFileManager::AddFile(const std::wstring& path, ItrKey analysisKey, int flag) {
    const auto added = registerFile(framework::nativePath(path), analysisKey, flag == 1);
    if (added) {
        NotifyPostUpdate(nullptr, PostUpdate::Tree);
        return 1;
    }
    qmMsgOutError(framework::fromUtf8(added.error().message));
    return 0;
}

Result<void> PostFileManager::registerFile(const std::filesystem::path& path, ItrKey analysisKey,
                                           bool replace) {
    if (!database_.Pool<DPoolVXMcas>()->Exist(analysisKey))
        return Error{"cannot register " + path.string() + ": the document has no analysis with key " +
                     std::to_string(analysisKey)};
    auto reader = resultfile::Reader::open(path);
    if (!reader) return reader.error();
    const auto expected = interfaceFileChecksum(folder_);
    if (!expected) return expected.error();
    const std::string& found = reader->contents().inputChecksum;
    if (found != *expected)
        return Error{path.string() +
                     (found.empty() ? " does not say what it was computed from"
                                    : " was computed from another " + std::string(kInterfaceFile)) +
                     ": it is not the result of this run and is not registered"};
    std::uint32_t keys = 0;
    for (const resultfile::Case& stored : reader->contents().cases)
        keys += 1 + static_cast<std::uint32_t>(stored.steps.size());
    if (keys == 0) return Error{path.string() + " holds no results"};
    ResultSource source(std::move(*reader));
    if (auto fits = source.checkMesh(database_.mesh()); !fits) return fits;

    if (!database_.beginTransaction(L"Register results"))
        return Error{"cannot register " + path.string() + ": another change of the document is under way"};
    if (!database_.addResultFile(analysisKey, registeredPath(path, folder_), keys, replace)) {
        database_.rollbackTransaction();
        return Error{"cannot register " + path.string() + ": the document has no keys left"};
    }
    database_.commitTransaction();
    tree_.rebuild();
    return {};
}

} // namespace workbench
