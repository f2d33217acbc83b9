#include "workbench/document/Publication.h"

#include "base/ReplaceFile.h"
#include "tests/workbench/document/DocumentTesting.h"
#include "workbench/document/DocumentFolder.h"

#include <fstream>
#include <functional>
#include <iterator>
#include <optional>
#include <sstream>

namespace workbench {

namespace {

namespace fs = std::filesystem;

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeText(const fs::path& path, const std::string& text) {
    std::ofstream(path, std::ios::binary) << text;
}

/// What a folder looks like to its readers: each result file that a document refers to with its text, then
/// the names that nobody refers to.
std::string view(const fs::path& folder) {
    std::set<std::string> lines;
    std::set<fs::path> referred;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() != ".wkm") continue;
        DocumentSummary summary;
        const auto document = openDocumentRecords(entry.path(), summary);
        if (!document) return document.error().message;
        referred.insert(entry.path());
        std::string line = entry.path().stem().string() + ":";
        for (const ResultFileRecord& file : (*document)->resultFiles()) {
            line += " " + file.path + "=" + textOf(folder / file.path);
            referred.insert(folder / file.path);
        }
        lines.insert(line);
    }
    for (const auto& entry : fs::directory_iterator(folder))
        if (!referred.contains(entry.path())) lines.insert("~ " + entry.path().filename().string());
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

/// An import in small: a document with one result file "a_Static.lmop" that holds `text`.
struct Import {
    Import(const fs::path& folder, const std::string& text)
        : writer(folder / "a_Static.lmop")
        , publication(folder / "a.wkm") {
        writeText(writer.temporaryPath(), text);
        const auto file = writer.commitUnderFreeName();
        EXPECT_TRUE(bool(file));
        change(database, [&] {
            const ItrKey analysis = database.Pool<DPoolVXMcas>()->TR_Add({0, L"Static", 101, 0});
            const ItrKey key = database.addResultFile(analysis, file->filename().string(), 1, true);
            publication.add(key, *file, folder / "a_Static.lmop");
        });
    }
    ReplacedFile writer;
    ModelDatabase database;
    Publication publication;
};

void publish(const fs::path& folder, const std::string& text) {
    Import import(folder, text);
    const auto done = import.publication.commit(import.database);
    ASSERT_TRUE(bool(done)) << done.error().message;
}

/// Registers another result with the document, as a run does.
void addRun(const fs::path& folder, const std::string& file) {
    auto document = openDocument(folder / "a.wkm");
    ASSERT_TRUE(bool(document));
    change(**document, [&] {
        const ItrKey analysis = (*document)->Pool<DPoolVXMcas>()->TR_Add({0, L"Life", 999, 0});
        (*document)->addResultFile(analysis, file, 1, true);
    });
    ASSERT_TRUE(bool(saveDocument(**document, folder / "a.wkm")));
    writeText(folder / file, "life");
}

TEST(Publication, OldFilesStandUntilTheDocumentIsReplaced) {
    TemporaryFolder folder;
    publish(folder.path(), "1");
    addRun(folder.path(), "a_Life.lmop");
    const std::string before = view(folder.path());
    EXPECT_EQ(before, "a: a_Static.lmop=1 a_Life.lmop=life\n");
    {
        const Import prepared(folder.path(), "2");
        EXPECT_EQ(view(folder.path()), before + "~ a_Static~2.lmop\n");
    }
    EXPECT_EQ(view(folder.path()), before);
    publish(folder.path(), "3");
    EXPECT_EQ(view(folder.path()), "a: a_Static.lmop=3\n");
}

TEST(Publication, TakesAwayOnlyWhatNobodyNeeds) {
    struct Row {
        const char* what;
        std::function<void(const fs::path&)> prepare;
        const char* after;
    };
    const Row rows[] = {
        {"a former import was cut short",
         [](const fs::path& folder) { writeText(folder / "a_Static~2.lmop", "cut"); },
         "a: a_Static.lmop=2\n"},
        {"a copy of the document needs the run",
         [](const fs::path& folder) { fs::copy_file(folder / "a.wkm", folder / "b.wkm"); },
         "a: a_Static.lmop=2\nb: a_Static.lmop=2 a_Life.lmop=life\n"},
        {"a document that cannot be read may need anything",
         [](const fs::path& folder) { writeText(folder / "b.wkm", "?"); }, nullptr},
        {"files of the user",
         [](const fs::path& folder) {
             writeText(folder / "a_Other.lmop", "mine");
             writeText(folder / "ab_Static~2.lmop", "mine");
         },
         "a: a_Static.lmop=2\n~ a_Other.lmop\n~ ab_Static~2.lmop\n"},
        {"the document is damaged", [](const fs::path& folder) { writeText(folder / "a.wkm", "?"); },
         "a: a_Static.lmop=2\n~ a_Life.lmop\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        TemporaryFolder folder;
        publish(folder.path(), "1");
        addRun(folder.path(), "a_Life.lmop");
        row.prepare(folder.path());
        publish(folder.path(), "2");
        if (row.after)
            EXPECT_EQ(view(folder.path()), row.after);
        else
            EXPECT_EQ(textOf(folder / "a_Life.lmop"), "life");
    }
}

TEST(Publication, AFileThatALivingProgramWorksOnKeepsItsName) {
    TemporaryFolder folder;
    std::optional<Import> living(std::in_place, folder.path(),
                                 "1"); // has the plain name, and no document yet
    publish(folder.path(), "2");
    EXPECT_EQ(view(folder.path()), "a: a_Static~2.lmop=2\n~ a_Static.lmop\n");
    ASSERT_TRUE(bool(living->publication.commit(living->database)));
    EXPECT_EQ(view(folder.path()), "a: a_Static.lmop=1\n");
    living.reset();
    publish(folder.path(), "3");
    EXPECT_EQ(view(folder.path()), "a: a_Static.lmop=3\n");
}

TEST(Publication, ARefusedDocumentLeavesTheOldFiles) {
    TemporaryFolder folder;
    publish(folder.path(), "1");
    const std::string before = view(folder.path());
    {
        Import import(folder.path(), "2");
        fs::rename(folder / "a.wkm", folder / "kept");
        fs::create_directory(folder / "a.wkm");
        EXPECT_FALSE(bool(import.publication.commit(import.database)));
        fs::remove(folder / "a.wkm");
        fs::rename(folder / "kept", folder / "a.wkm");
    }
    EXPECT_EQ(view(folder.path()), before);
}

} // namespace

} // namespace workbench
