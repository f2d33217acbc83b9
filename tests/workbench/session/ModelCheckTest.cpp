#include "workbench/session/ModelCheck.h"

#include "base/ReplaceFile.h"
#include "resultfile/ResultFile.h"
#include "tests/support/TemporaryFolder.h"
#include "workbench/document/DocumentFile.h"
#include "workbench/results/PostFileManager.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

using namespace workbench;
namespace fs = std::filesystem;

/// What a row of the test changes about a sound document: how its result file is written, and its records.
struct Model {
    explicit Model(const fs::path& at)
        : folder(at) {}

    /// One tetrahedron with the results of two steps, and a fatigue definition on them.
    void write() {
        MeshData mesh;
        mesh.nodeNumbers = {1, 2, 3, 4};
        mesh.nodePositions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        mesh.elementNumbers = {7};
        mesh.elementTypes = {8};
        mesh.elementNodeOffsets = {0, 4};
        mesh.elementNodes = {0, 1, 2, 3};
        mesh.elementPropertyKeys = {0};
        database.beginTransaction(L"make");
        ASSERT_TRUE(bool(database.setMesh(std::move(mesh))));
        const ItrKey analysis = database.Pool<DPoolVXMcas>()->TR_Add({0, L"Static", 101, 0});
        const ItrKey life = database.Pool<DPoolVXMcas>()->TR_Add({0, L"Life", 999, 0});
        tagTFatg definition;
        definition.name = L"Service";
        definition.analysisKey = analysis;
        definition.resultAnalysisKey = life;
        definition.loads = {{loadCase, loadStep, 1, 0}};
        database.Pool<DPoolFatg>()->TR_Add(definition);
        database.addResultFile(analysis, "a_Static.lmop", registeredKeys, true);
        if (hasRun) database.addResultFile(life, "a_Life.lmop", 2, true);
        database.commitTransaction();
        ASSERT_TRUE(bool(saveDocument(database, folder / "a.wkm")));
        writeResult("a_Static.lmop", "", resultNodes);
        if (hasRun) writeResult("a_Life.lmop", runChecksum, {1, 2, 3, 4});
    }

    void writeResult(const char* name, const std::string& checksum, const std::vector<std::int32_t>& nodes) {
        const std::vector<std::int32_t> elements{7}, corners{4};
        auto writer = resultfile::Writer::create(folder / name, "any", "test");
        ASSERT_TRUE(bool(writer));
        ASSERT_TRUE(bool(writer->setMesh({nodes, elements, corners})));
        ASSERT_TRUE(bool(writer->setInputChecksum(checksum)));
        ASSERT_TRUE(bool(writer->beginCase("Pull")));
        ASSERT_TRUE(bool(writer->beginStep("1", 1)));
        const std::vector<float> values(nodes.size(), 2.5f);
        ASSERT_TRUE(bool(writer->writeTable(101, resultfile::Location::Node, values)));
        const auto done = writer->commit();
        ASSERT_TRUE(bool(done)) << done.error().message;
    }

    /// Puts other bytes over the last occurrence of the values.
    void damageValues(const char* name) const {
        std::string bytes = bytesOf(folder / name);
        const float value = 2.5f;
        const auto at = bytes.rfind(std::string_view(reinterpret_cast<const char*>(&value), sizeof value));
        ASSERT_NE(at, bytes.npos);
        bytes[at + 3] = '\x7f';
        writeBytes(folder / name, bytes);
    }

    fs::path folder;
    ModelDatabase database;
    std::wstring loadCase = L"Pull", loadStep;
    std::uint32_t registeredKeys = 2;
    std::vector<std::int32_t> resultNodes{1, 2, 3, 4};
    bool hasRun = false;
    std::string runChecksum;
};

struct Row {
    const char* what;
    std::function<void(Model&)> before; ///< the files are written
    std::function<void(Model&)> after;
    const char* fault; ///< "item: problem" in parts; empty: sound
    const char* note;
};

std::string listed(const Findings& findings) {
    std::string text;
    for (const Finding& finding : findings)
        text += finding.item + ": " + finding.problem + "; " + finding.remedy + "\n";
    return text;
}

const auto nothing = [](Model&) {};

const Row kRows[] = {
    {"sound", nothing, nothing, "", ""},
    {"another case and step count", [](Model& m) { m.registeredKeys = 3; }, nothing,
     "result file a_Static.lmop: it holds 2 cases and steps where the document registered 3; restore", ""},
    {"nodes of another model",
     [](Model& m) {
         m.resultNodes = {1, 2, 3, 9};
     },
     nothing, "node 9, which the model does not have", ""},
    {"a damaged table", nothing, [](Model& m) { m.damageValues("a_Static.lmop"); }, "its checksum differs",
     ""},
    {"a missing file", nothing, [](Model& m) { fs::remove(m.folder / "a_Static.lmop"); },
     "a_Static.lmop: No such file", ""},
    {"a load of an unknown case", [](Model& m) { m.loadCase = L"Push"; }, nothing,
     "fatigue definition \"Service\": there is no case \"Push\" in analysis \"Static\"; correct the deck",
     ""},
    {"a load of an unknown step", [](Model& m) { m.loadStep = L"2"; }, nothing, "no step \"2\" of case", ""},
    {"a run without its input's checksum", [](Model& m) { m.hasRun = true; }, nothing,
     "a_Life.lmop: it does not say what it was computed from; run it again: vexa fatigue a.wkm \"Service\"",
     ""},
    {"a run whose input is gone",
     [](Model& m) {
         m.hasRun = true;
         m.runChecksum = "00";
     },
     nothing, "", "a_Life.lmop: FATIGUE.76, which it was computed from, is not there"},
    {"a run of an earlier input",
     [](Model& m) {
         m.hasRun = true;
         m.runChecksum = "00";
         writeBytes(m.folder / "FATIGUE.76", "x");
     },
     nothing, "", "from an earlier FATIGUE.76"},
    {"a run of the input that is there",
     [](Model& m) {
         m.hasRun = true;
         writeBytes(m.folder / "FATIGUE.76", "x");
         m.runChecksum = *interfaceFileChecksum(m.folder);
     },
     nothing, "", "from the FATIGUE.76 that is there"},
    {"an orphan", nothing, [](Model& m) { writeBytes(m.folder / "a_Old.lmop", "x"); },
     "file a_Old.lmop: no document here refers to it; delete it", ""},
    {"another document's result", nothing,
     [](Model& m) {
         writeBytes(m.folder / "a_b_Static.lmop", "x");
         ModelDatabase other;
         other.beginTransaction(L"make");
         other.addResultFile(other.Pool<DPoolVXMcas>()->TR_Add({0, L"Static", 101, 0}), "a_b_Static.lmop", 1,
                             true);
         other.commitTransaction();
         ASSERT_TRUE(bool(saveDocument(other, m.folder / "a_b.wkm")));
     },
     "", ""},
    {"an orphan of a safety run", nothing, [](Model& m) { writeBytes(m.folder / "_SFT_Old.lmop", "x"); },
     "file _SFT_Old.lmop: no document here refers to it; delete it", ""},
    {"an orphan beside a document that cannot be read", nothing,
     [](Model& m) {
         writeBytes(m.folder / "a_Old.lmop", "x");
         writeBytes(m.folder / "b.wkm", "x");
     },
     "", "a_Old.lmop: the document does not refer to it, and what b.wkm refers to cannot be read"},
    {"files that are no business of the document", nothing,
     [](Model& m) {
         for (const char* name : {"b_Old.lmop", "a_notes.txt", "b.wkm.vexa-part-1-1"})
             writeBytes(m.folder / name, "x");
     },
     "", ""},
    {"left by an ended program", nothing,
     [](Model& m) { writeBytes(m.folder / "a_Static.lmop.vexa-part-1-1", "x"); },
     "file a_Static.lmop.vexa-part-1-1: a program that was ended left it", ""},
    {"no document", nothing, [](Model& m) { writeBytes(m.folder / "a.wkm", "x"); }, "not a model document",
     ""},
};

TEST(ModelCheck, FindsWhatIsWrongAndNothingElse) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.what);
        const TemporaryFolder folder;
        Model model(folder.path());
        row.before(model);
        model.write();
        row.after(model);
        if (testing::Test::HasFatalFailure()) return;
        double last = 0;
        const ModelCheckReport report =
            checkModel(folder / "a.wkm", [&](const std::string&, double fraction) {
                EXPECT_LE(last, fraction);
                last = fraction;
            });
        EXPECT_LE(last, 1);
        EXPECT_EQ(report.faults.size(), *row.fault ? 1u : 0u) << listed(report.faults);
        EXPECT_NE(listed(report.faults).find(row.fault), std::string::npos) << listed(report.faults);
        EXPECT_EQ(report.notes.size(), *row.note ? 1u : 0u) << listed(report.notes);
        EXPECT_NE(listed(report.notes).find(row.note), std::string::npos) << listed(report.notes);
    }
}

TEST(ModelCheck, AFileInWorkIsNoFault) {
    const TemporaryFolder folder;
    Model model(folder.path());
    model.write();
    ReplacedFile document(folder / "a.wkm");
    ReplacedFile result(folder / "a_New.lmop");
    writeBytes(result.temporaryPath(), "x");
    ASSERT_TRUE(bool(result.commitUnderFreeName()));
    const ModelCheckReport report = checkModel(folder / "a.wkm");
    EXPECT_EQ(listed(report.faults), "");
    EXPECT_EQ(report.notes.size(), 2u) << listed(report.notes);
}

TEST(ModelCheck, ReportsEveryFaultAtOnce) {
    const TemporaryFolder folder;
    Model model(folder.path());
    model.loadCase = L"Push";
    model.registeredKeys = 5;
    model.write();
    model.damageValues("a_Static.lmop");
    writeBytes(folder / "a_Old.lmop", "x");
    EXPECT_EQ(checkModel(folder / "a.wkm").faults.size(), 4u);
}

} // namespace
