#pragma once

#include "base/Result.h"
#include "workbench/document/ModelDatabase.h"
#include "workbench/results/ResultTree.h"

#include <filesystem>
#include <optional>
#include <string>

namespace workbench {

/// Results that are computed from those of a document: a result file beside it, and an analysis of that name.
struct ResultSet {
    std::string name;                           ///< UTF-8
    std::filesystem::path file;                 ///< whole
    std::optional<ResultFileRecord> registered; ///< when the document has the set already
};

/// The set of that name in the document in `folder`, with the file `prefix` + name + ".lmop". Refused are
/// names that cannot be file names, and those that another file or another analysis has.
Result<ResultSet> findResultSet(const ModelDatabase& database, const ResultTree& tree,
                                const std::filesystem::path& folder, const std::string& prefix,
                                const std::string& name);

/// Makes the written file of a set an analysis of the document, like the analysis `model` in all but the
/// name, or replaces what the set had. `keys` is the number of its cases and steps. The document is not
/// saved. After a failure a new file is gone again.
Result<void> registerResultSet(ModelDatabase& database, ResultTree& tree, const ResultSet& set, ItrKey model,
                               std::uint32_t keys, const std::wstring& transaction);

} // namespace workbench
