#include "workbench/results/ResultTree.h"

#include "base/Checksum.h"
#include "framework/files/PathMap.h"
#include "host/ElementTypes.h"
#include "resultfile/ResultFile.h"
#include "workbench/results/Catalogue.h"
#include "workbench/results/PostFileManager.h"
#include "workbench/results/ResultQuery.h"
#include "workbench/session/WorkbenchHost.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <set>

namespace {

using namespace workbench;
namespace fs = std::filesystem;

/// A document of two quadrilaterals side by side (nodes 10, 20, ... 60) with one analysis, in a folder of its
/// own.
class ResultTreeTest : public testing::Test {
  protected:
    ResultTreeTest()
        : folder_(fs::path(testing::TempDir()) /
                  ("tree-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name())))
        , host_({}) {
        fs::remove_all(folder_);
        fs::create_directories(folder_);
        EXPECT_TRUE(database_.beginTransaction(L"model"));
        tagTProp property;
        property.name = L"plate";
        property.typeCode = PropertyType::Shell;
        const auto propertyKey = static_cast<std::uint32_t>(database_.Pool<DPoolProp>()->TR_Add(property));
        MeshData mesh;
        mesh.nodeNumbers = {10, 20, 30, 40, 50, 60};
        for (int i = 0; i < 6; ++i)
            mesh.nodePositions.push_back({double(i % 3), double(i / 3), 0});
        mesh.elementNumbers = {1, 2};
        mesh.elementTypes.assign(2, static_cast<std::uint8_t>(ElementType::Quad4));
        mesh.elementPropertyKeys.assign(2, propertyKey);
        mesh.elementNodeOffsets = {0, 4, 8};
        mesh.elementNodes = {0, 1, 4, 3, 1, 2, 5, 4};
        const auto set = database_.setMesh(std::move(mesh));
        EXPECT_TRUE(set) << set.error().message;
        tagTVXMcas analysis;
        analysis.name = L"Static";
        analysis_ = database_.Pool<DPoolVXMcas>()->TR_Add(analysis);
        EXPECT_TRUE(database_.commitTransaction());
    }
    ~ResultTreeTest() override { fs::remove_all(folder_); }

    /// A result file with one case and one step, over `nodes` and the two elements.
    fs::path write(const std::string& name, std::vector<std::int32_t> nodes, const std::string& checksum = {},
                   std::vector<std::int32_t> cornerCounts = {4, 4}) {
        const fs::path path = folder_ / name;
        auto writer = resultfile::Writer::create(path, "Static", "test");
        EXPECT_TRUE(writer);
        const std::vector<std::int32_t> elements{1, 2};
        EXPECT_TRUE(writer->setMesh({nodes, elements, cornerCounts}));
        if (!checksum.empty()) {
            EXPECT_TRUE(writer->setInputChecksum(checksum));
        }
        EXPECT_TRUE(writer->addItems("second", resultfile::Location::Node, std::vector<std::uint32_t>{1}));
        EXPECT_TRUE(writer->beginCase("Load"));
        EXPECT_TRUE(writer->beginStep("End", 1));
        std::vector<float> perNode;
        for (const std::int32_t node : nodes)
            perNode.push_back(static_cast<float>(node));
        EXPECT_TRUE(writer->writeTable(101, resultfile::Location::Node, perNode));
        EXPECT_TRUE(writer->writeTable(102, resultfile::Location::Node, std::vector<float>{7}, "second"));
        std::vector<float> corners;
        for (int e = 0; e < 2; ++e)
            for (int c = 0; c < cornerCounts[static_cast<std::size_t>(e)]; ++c)
                corners.push_back(static_cast<float>(1 + 10 * e + c));
        EXPECT_TRUE(writer->writeTable(412101, resultfile::Location::ElementCorner, corners));
        const auto committed = writer->commit();
        EXPECT_TRUE(committed) << committed.error().message;
        return path;
    }

    void registerDirectly(const fs::path& path) {
        ASSERT_TRUE(database_.beginTransaction(L"register"));
        ASSERT_NE(database_.addResultFile(analysis_, path.filename().string(), 2, true), 0u);
        ASSERT_TRUE(database_.commitTransaction());
    }

    std::vector<float> values(CPOHManager& tree, unsigned id) {
        const auto step = findStep(tree, "Static", "Load", "End");
        EXPECT_TRUE(step);
        const auto table = findTable(**step, id);
        EXPECT_TRUE(table) << table.error().message;
        auto nodal = nodalValues(**table, database_.mesh());
        EXPECT_TRUE(nodal) << nodal.error().message;
        for (float& value : *nodal)
            if (std::isnan(value)) value = -1;
        return *nodal;
    }

    fs::path folder_;
    WorkbenchHost host_;
    ModelDatabase database_;
    ItrKey analysis_ = 0;
};

TEST_F(ResultTreeTest, PutsTablesIntoMeshOrder) {
    struct Row {
        std::vector<std::int32_t> fileNodes;
        std::vector<float> whole;  ///< component 101 at the six nodes, -1 where there is none
        std::vector<float> listed; ///< component 102, which stands at the file's second node only
    };
    const Row rows[] = {
        {{10, 20, 30, 40, 50, 60}, {10, 20, 30, 40, 50, 60}, {-1, 7, -1, -1, -1, -1}},
        {{20, 50, 60}, {-1, 20, -1, -1, 50, 60}, {-1, -1, -1, -1, 7, -1}},
    };
    for (const Row& row : rows) {
        registerDirectly(write("a.lmop", row.fileNodes));
        ResultTree tree(database_, folder_);
        EXPECT_EQ(values(tree, 101), row.whole);
        EXPECT_EQ(values(tree, 102), row.listed);
    }
}

TEST_F(ResultTreeTest, AveragesCornersAtSharedNodesAndSharesEditionCIdentifiers) {
    registerDirectly(write("a.lmop", {10, 20, 30, 40, 50, 60}));
    ResultTree tree(database_, folder_);
    // Corners 1 2 3 4 at nodes 10 20 50 40, and 11 12 13 14 at 20 30 60 50.
    const std::vector<float> expected{1, 6.5f, 12, 4, 8.5f, 13};
    EXPECT_EQ(values(tree, 412101), expected);
    EXPECT_EQ(values(tree, 7020), expected);
    EXPECT_FALSE(findTable(**findStep(tree, "Static", "", ""), 312101));
}

TEST_F(ResultTreeTest, GivesCasesAndStepsTheRegisteredKeys) {
    registerDirectly(write("a.lmop", {10, 20}));
    ResultTree tree(database_, folder_);
    CPOHCase* resultCase = tree.GetChild(analysis_)->GetChildList().front();
    EXPECT_EQ(resultCase->GetKey(), database_.resultFiles().front().firstKey);
    EXPECT_EQ(resultCase->GetVCaseList().front()->GetKey(), resultCase->GetKey() + 1);
    EXPECT_EQ(tree.GetChild(analysis_)->GetChild(resultCase->GetKey()), resultCase);
    EXPECT_EQ(tree.GetChild(analysis_)->GetChild(0), nullptr);
}

TEST_F(ResultTreeTest, NamesAMissingFileAndKeepsTheAnalysis) {
    registerDirectly(folder_ / "gone.lmop");
    ResultTree tree(database_, folder_);
    EXPECT_EQ(tree.unreadableFiles(), 1);
    ASSERT_NE(tree.GetChild(analysis_), nullptr);
    EXPECT_TRUE(tree.GetChild(analysis_)->GetChildList().empty());
    ASSERT_EQ(host_.errors().size(), 1u);
    EXPECT_NE(host_.errors()[0].find("gone.lmop"), std::string::npos);
}

TEST_F(ResultTreeTest, AnswersWrongNamesWithTheRightOnes) {
    registerDirectly(write("a.lmop", {10, 20}));
    ResultTree tree(database_, folder_);
    struct Row {
        const char *analysis, *caseName, *step, *expected;
    };
    for (const Row& row : {Row{"static", "", "", "\"Static\""}, Row{"Static", "load", "", "\"Load\""},
                           Row{"Static", "Load", "Start", "\"End\""}}) {
        const auto found = findStep(tree, row.analysis, row.caseName, row.step);
        ASSERT_FALSE(found) << row.expected;
        EXPECT_NE(found.error().message.find(row.expected), std::string::npos) << found.error().message;
    }
}

TEST_F(ResultTreeTest, RegistersOnlyTheResultOfThisRun) {
    const std::string input = "interface file";
    std::ofstream(folder_ / "FATIGUE.76") << input;
    const std::string right = checksumText(Checksum::of(std::as_bytes(std::span(input))));
    struct Row {
        const char* name;
        fs::path path;
        ItrKey analysis;
        const char* refusal; ///< words of the refusal; null when it is accepted
    };
    const fs::path truncated = write("truncated.lmop", {10, 20}, right);
    fs::resize_file(truncated, fs::file_size(truncated) / 2);
    std::ofstream(folder_ / "foreign.lmop") << "something else";
    const Row rows[] = {
        {"right", write("right.lmop", {10, 20}, right), analysis_, nullptr},
        {"no checksum", write("none.lmop", {10, 20}), analysis_, "does not say what it was computed from"},
        {"stale", write("stale.lmop", {10, 20}, "0123456789abcdef"), analysis_, "another FATIGUE.76"},
        {"other nodes", write("nodes.lmop", {10, 21}, right), analysis_, "node 21"},
        {"other elements", write("shape.lmop", {10, 20}, right, {4, 3}), analysis_, "element 2"},
        {"truncated", truncated, analysis_, "truncated.lmop"},
        {"foreign", folder_ / "foreign.lmop", analysis_, "foreign.lmop"},
        {"missing", folder_ / "missing.lmop", analysis_, "missing.lmop"},
        {"unknown analysis", write("right.lmop", {10, 20}, right), 999, "key 999"},
    };
    ResultTree tree(database_, folder_);
    PostFileManager files(database_, tree, folder_);
    for (const Row& row : rows) {
        const std::size_t errorsBefore = host_.errors().size();
        const bool accepted = files.AddFile(framework::widePath(row.path), row.analysis, 1) != 0;
        EXPECT_EQ(accepted, row.refusal == nullptr) << row.name;
        ASSERT_EQ(host_.errors().size(), errorsBefore + (row.refusal ? 1 : 0)) << row.name;
        if (row.refusal) {
            EXPECT_NE(host_.errors().back().find(row.refusal), std::string::npos) << host_.errors().back();
        }
        ASSERT_EQ(database_.resultFiles().size(), 1u) << row.name;
        EXPECT_EQ(database_.resultFiles()[0].path, "right.lmop") << row.name;
    }
    EXPECT_EQ(tree.GetChild(analysis_)->GetChildList().size(), 1u);

    fs::remove(folder_ / "FATIGUE.76");
    EXPECT_EQ(files.AddFile(framework::widePath(folder_ / "right.lmop"), analysis_, 1), 0);
}

TEST(WorstNodes, RanksFiniteValuesAndBreaksTiesByPosition) {
    const float nan = std::nanf("");
    const std::vector<float> values{3, nan, 5, 5, -1};
    EXPECT_EQ(worstNodes(values, 3, true), (std::vector<std::uint32_t>{2, 3, 0}));
    EXPECT_EQ(worstNodes(values, 2, false), (std::vector<std::uint32_t>{4, 0}));
    EXPECT_EQ(worstNodes(values, 99, true).size(), 4u);
    EXPECT_TRUE(worstNodes({nan}, 1, true).empty());
}

TEST(Catalogue, IdentifiersAreUniqueNamedAndFound) {
    std::set<unsigned> ids;
    for (const ComponentName& row : resultCatalogue()) {
        EXPECT_TRUE(ids.insert(row.id).second) << row.id << " stands twice";
        EXPECT_FALSE(row.english.empty() || row.korean.empty()) << row.id;
        EXPECT_EQ(findComponent(row.id), &row);
    }
    EXPECT_EQ(componentName(312114, Language::English), "Solid stress von Mises");
    EXPECT_EQ(componentName(431184, Language::English), "Plane-strain element strain equivalent");
    EXPECT_EQ(componentName(1, Language::English), "Component 1");
    EXPECT_EQ(sourceOfAlias(7465), 411151u);
    EXPECT_EQ(sourceOfAlias(312101), 0u);
}

} // namespace
