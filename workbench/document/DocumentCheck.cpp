#include "workbench/document/DocumentCheck.h"

#include "workbench/document/DocumentFile.h"
#include "workbench/document/DocumentRows.h"
#include "workbench/document/RecordCheck.h"
#include "workbench/document/Sqlite.h"

#include <algorithm>
#include <system_error>

namespace workbench {

namespace {

namespace fs = std::filesystem;

constexpr const char* kRestore = "restore the document from a copy, or make it anew with vexa new";
constexpr int kMostDatabaseFaults = 20;

/// The database's own look at its trees and free pages.
void checkDatabase(const fs::path& path, Findings& faults) {
    auto connection = SqliteConnection::open(path, SQLITE_OPEN_READONLY);
    if (!connection) return;
    SqliteStatement statement(
        *connection, ("PRAGMA integrity_check(" + std::to_string(kMostDatabaseFaults) + ")").c_str());
    while (statement.next()) {
        std::string text = statement.text(0);
        std::replace(text.begin(), text.end(), '\n', ' ');
        if (text != "ok") faults.push_back({"database", "its structure is damaged: " + text, kRestore});
    }
    if (const auto done = statement.result(); !done)
        faults.push_back({"database", "its structure could not be checked: " + done.error().message, ""});
}

/// What the document states about its mesh in short must be what the mesh is.
void checkSummary(const DocumentSummary& stated, const ModelDatabase& database, Findings& faults) {
    DocumentRows rows;
    rows.meta["schema_version"] = std::to_string(kSchemaVersion);
    addMeshSummary(database.state().mesh, rows);
    const auto found = summaryOf(rows);
    if (!found) return faults.push_back({"mesh", found.error().message, kRestore});
    if (found->bounds != stated.bounds)
        faults.push_back({"mesh", "its bounds are not those that the document states", kRestore});
    if (found->elementTypeCounts != stated.elementTypeCounts)
        faults.push_back(
            {"mesh", "its element types do not stand as often as the document states", kRestore});
}

/// Most sentences of a failed opening say themselves what to do.
Finding openingFault(const std::string& message) {
    const bool needsRemedy =
        message.find("damaged") != message.npos && message.find("restore") == message.npos;
    return {"document", message, needsRemedy ? kRestore : ""};
}

} // namespace

DocumentCheck checkDocument(const fs::path& path) {
    DocumentCheck check;
    std::error_code error;
    fs::path journal = path;
    journal += "-journal";
    const bool wasCutShort = fs::file_size(journal, error) > 0 && !error;

    DocumentSummary summary;
    auto opened = openDocument(path, summary);
    check.meshIsWhole = bool(opened);
    if (!opened) {
        check.faults.push_back(openingFault(opened.error().message));
        opened = openDocumentRecords(path, summary);
    }
    if (opened) check.database = std::move(*opened);
    if (wasCutShort && !fs::exists(journal, error))
        check.notes.push_back({"document", "a save that was cut short was taken back", ""});
    if (!check.database) return check;
    check.nodes = summary.nodeCount;
    check.elements = summary.elementCount;

    checkDatabase(path, check.faults);
    if (check.meshIsWhole) checkSummary(summary, *check.database, check.faults);
    for (Finding& finding : checkRecords(*check.database))
        check.faults.push_back(std::move(finding));
    return check;
}

} // namespace workbench
