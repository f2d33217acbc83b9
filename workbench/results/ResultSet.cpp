#include "workbench/results/ResultSet.h"

#include "framework/text/CodePage.h"
#include "workbench/document/DocumentFolder.h"

#include <algorithm>
#include <string_view>
#include <system_error>

namespace workbench {
namespace {

namespace fs = std::filesystem;

std::string inQuotes(const std::string& name) {
    return "\"" + name + "\"";
}

/// Why a set cannot have that name; empty when it can. The name becomes part of a file name.
std::string nameFault(const std::string& name) {
    constexpr std::string_view forbidden = "/\\:*?\"<>|";
    if (name.empty()) return "the name of the new set is empty";
    if (framework::fromUtf8(name).size() > kAnalysisNameLength)
        return "the name " + inQuotes(name) + " has more than " + std::to_string(kAnalysisNameLength) +
               " characters";
    if (const auto at = name.find_first_of(forbidden); at != std::string::npos)
        return "the name " + inQuotes(name) + " holds '" + name[at] +
               "'; it becomes part of a file name, where none of " + std::string(forbidden) + " may stand";
    if (std::ranges::any_of(name, [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }))
        return "the name " + inQuotes(name) +
               " holds a line break or another control character; it becomes part of a file name";
    if (name.front() == ' ' || name.back() == ' ' || name.back() == '.')
        return "the name " + inQuotes(name) + " begins or ends with a blank or ends with a point";
    return {};
}

} // namespace

Result<ResultSet> findResultSet(const ModelDatabase& database, const ResultTree& tree, const fs::path& folder,
                                const std::string& prefix, const std::string& name) {
    if (const std::string fault = nameFault(name); !fault.empty()) return Error{fault};
    const std::string file = prefix + name + ".lmop";
    ResultSet set{name, folder / fs::path(std::u8string(file.begin(), file.end())), std::nullopt};
    for (const ResultFileRecord& record : database.resultFiles())
        if (registeredFile(folder, record.path) == set.file.lexically_normal()) set.registered = record;
    if (set.registered) return set;
    std::error_code error;
    if (fs::exists(fs::symlink_status(set.file, error)))
        return Error{"the name " + inQuotes(name) + " is already used: " + set.file.string() +
                     " is there; choose another name"};
    const std::wstring wide = framework::fromUtf8(name);
    for (CPOHAnalysis* analysis : tree.GetChildList())
        if (analysis->GetName() == wide)
            return Error{"the name " + inQuotes(name) +
                         " is already used by an analysis of the document; choose another name"};
    return set;
}

Result<void> registerResultSet(ModelDatabase& database, ResultTree& tree, const ResultSet& set, ItrKey model,
                               std::uint32_t keys, const std::wstring& transaction) {
    database.beginTransaction(transaction);
    ItrKey key = 0;
    if (set.registered) {
        key = set.registered->analysisKey;
    } else {
        tagTVXMcas analysis;
        database.Pool<DPoolVXMcas>()->Get(model, analysis);
        analysis.name = framework::fromUtf8(set.name);
        key = database.Pool<DPoolVXMcas>()->TR_Add(analysis);
    }
    const std::u8string name = set.file.filename().u8string();
    if (key == 0 || !database.addResultFile(key, std::string(name.begin(), name.end()), keys, true)) {
        database.rollbackTransaction();
        std::error_code ignored;
        if (!set.registered) fs::remove(set.file, ignored);
        return Error{"the set " + inQuotes(set.name) +
                     " cannot be registered: the document has no keys left"};
    }
    database.commitTransaction();
    tree.update();
    return {};
}

} // namespace workbench
