#include "tests/workbench/cli/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace {

namespace fs = std::filesystem;

constexpr const char* kAsUser = R"sh(
as_user() { if [ "$(id -u)" = 0 ]; then setpriv --reuid=65534 --clear-groups "$@"; else "$@"; fi; }
)sh";

class CombineTest : public testing::Test {
  protected:
    CombineTest()
        : folder_(std::string("combine-") + testing::UnitTest::GetInstance()->current_test_info()->name()) {
        writeCube(folder_, kCubeStresses);
        folder_.write("cube.toml", cubeDeck());
        succeed("vexa new cube.toml -o cube.wkm");
    }

    ProgramEnd run(const std::string& command) { return runShell(folder_, kAsUser + command); }

    std::string succeed(const std::string& command) {
        const ProgramEnd end = run(command);
        EXPECT_EQ(end.exitCode, 0) << command << "\n" << end.errors;
        return end.output;
    }

    /// The value at node 1 of a component.
    double atNode1(const std::string& set, const std::string& component) {
        return parseCsv(succeed("vexa table cube.wkm --analysis " + set + " --component '" + component + "'"))
            .at("1");
    }

    std::map<std::string, std::string> files() const {
        std::map<std::string, std::string> all;
        for (const auto& entry : fs::directory_iterator(folder_.path()))
            if (const std::string name = entry.path().filename().string(); name[0] != '.')
                all[name] = folder_.read(name);
        return all;
    }

    TestFolder folder_;
};

TEST_F(CombineTest, MakesSetsThatOtherCommandsRead) {
    // 1.5 x (xx 200) - 2 x (xy 50): xx 300, xy -100, von Mises sqrt(300^2 + 3 x 100^2).
    const auto made = nlohmann::json::parse(succeed(
        "vexa combine cube.wkm --json --analysis Static --name ULS --linear 'Pull * 1.5' 'Shear:1*-2'"));
    EXPECT_EQ(made["set"], "ULS");
    EXPECT_EQ(made["sources"][1]["number"], 2);
    EXPECT_NEAR(atNode1("ULS", "stress xx"), 300, 1e-3);
    EXPECT_NEAR(atNode1("ULS", "stress xy"), -100, 1e-3);
    EXPECT_NEAR(atNode1("ULS", "von mises") / std::sqrt(120000.0), 1, 1e-6);

    succeed("vexa combine cube.wkm --analysis Static --name Peak --envelope absmax Pull 'Shear*-1'");
    EXPECT_NEAR(atNode1("Peak", "stress xy"), -50, 1e-3);
    EXPECT_NEAR(atNode1("Peak", "von mises"), 200, 1e-3);
    EXPECT_EQ(atNode1("Peak", "governing stress xy"), 2);
    EXPECT_EQ(atNode1("Peak", "지배 von mises"), 1);

    const auto info = nlohmann::json::parse(succeed("vexa info --json cube.wkm"));
    const auto& analyses = info["results"];
    ASSERT_GE(analyses.size(), 2u);
    EXPECT_EQ(analyses[analyses.size() - 2]["sources"][0], "Pull * 1.5");
    EXPECT_EQ(analyses.back()["name"], "Peak");
    EXPECT_TRUE(analyses.back()["sources"][1].get<std::string>().starts_with("Shear:")) << analyses.back();
    EXPECT_FALSE(analyses.front().contains("sources"));
    EXPECT_NE(succeed("vexa check cube.wkm").find("sound"), std::string::npos);
    EXPECT_NE(succeed("vexa combine --help").find("CASE[:STEP][*FACTOR]"), std::string::npos);

    // Factors go through the dialog as they are, not as its list shows them.
    succeed("vexa combine cube.wkm --analysis Static --name Exact --linear 'Pull*1.00000049'");
    EXPECT_NEAR(atNode1("Exact", "stress xx"), 200.000098, 2e-5);

    fs::remove(folder_ / "_RCB_ULS.lmop");
    EXPECT_NE(run("vexa check cube.wkm").output.find("make it again with vexa combine"), std::string::npos);
    succeed("vexa combine cube.wkm --analysis Static --name ULS --linear Pull");
    EXPECT_NEAR(atNode1("ULS", "stress xx"), 200, 1e-3);
    fs::copy(folder_ / "_RCB_ULS.lmop", folder_ / "_RCB_other.lmop");
    EXPECT_NE(run("vexa check cube.wkm").output.find("_RCB_other.lmop: no document here refers to it"),
              std::string::npos);
}

TEST_F(CombineTest, RefusesWithOneSentenceAndLeavesTheFiles) {
    struct Row {
        const char* before;
        const char* arguments; ///< behind the name of the model
        int exitCode;
        const char* message;
    };
    const std::string usual = "--analysis Static --name N --linear Pull";
    const Row rows[] = {
        {"", "--analysis Statik --name N --linear Pull", 1, "no analysis \"Statik\", did you mean 'Static'?"},
        {"", "--analysis Static --name N --linear Pul", 1, "no case \"Pul\", did you mean 'Pull'?"},
        {"", "--analysis Static --name N --linear xyz*2", 1, "no case \"xyz\"; it has 'Pull' and 'Shear'"},
        {"", "--analysis Static --name N --linear Pull:7", 1, "case \"Pull\" has no step \"7\""},
        {"", "--analysis Static --name N --linear 'Pull*1,5'", 1, "no number behind its star"},
        {"", "--analysis Static --name N --linear 'Pull*'", 1, "no number behind its star"},
        {"", "--analysis Static --name N --linear 'Pull*inf'", 1, "is not finite"},
        {"", "--analysis Static --name N --linear 'Pull*1e99'", 1, "is not finite at value"},
        {"", "--analysis Static --name a/b --linear Pull", 1, "holds '/'"},
        {"", "--analysis Static --name '' --linear Pull", 1, "name of the new set is empty"},
        {"", "--analysis Static --name Static --linear Pull", 1, "already used by an analysis"},
        {"touch _RCB_N.lmop", "", 1, "\"N\" is already used"},
        {"touch _RCB_N.lmop", "--lang ko --analysis Static --name N --linear Pull", 1, "이미 사용 중"},
        {"", "--analysis Static --linear Pull --name 'two\nlines'", 1, "control character"},
        {"", "--analysis Static --name N Pull", 2, "--linear"},
        {"", "--analysis Static --name N --linear --envelope max Pull", 2, "--envelope"},
        {"", "--analysis Static --name N --envelope mean Pull", 2, "absmaxu"},
        {"", "--analysis Static --name N --linear", 2, "item"},
        {"truncate -s 3000 cube_Static.lmop", "", 1, "cube_Static.lmop"},
        {"rm cube_Static.lmop", "", 1, "cube_Static.lmop"},
        {"chmod 555 .; chmod 444 *", "", 1, "error: "},
    };
    run("chmod -R a+rwX .");
    const auto good = files();
    for (const Row& row : rows) {
        const std::string arguments = *row.arguments ? row.arguments : usual;
        SCOPED_TRACE(std::string(row.before) + " " + arguments);
        run(row.before);
        const auto before = files();
        const ProgramEnd end = run("as_user vexa combine cube.wkm " + arguments);
        EXPECT_EQ(end.exitCode, row.exitCode) << end.errors;
        EXPECT_NE(end.errors.find(row.message), std::string::npos) << end.errors;
        EXPECT_TRUE(files() == before);
        run("chmod -R u+rwX . && rm -rf *");
        for (const auto& [name, bytes] : good)
            folder_.write(name, bytes);
        run("chmod -R a+rwX .");
    }
}

TEST_F(CombineTest, AFullDiskLeavesNothing) {
    const auto good = files();
    bool failed = false, made = false;
    // The limit of the size of a file stands for the full disk; it is in blocks of 512 bytes.
    for (int blocks = 1; blocks < 4096 && !made; blocks = blocks * 5 / 4 + 1) {
        const ProgramEnd end =
            run("ulimit -f " + std::to_string(blocks) +
                "; vexa combine cube.wkm --analysis Static --name N --envelope max Pull Shear");
        made = end.exitCode == 0;
        failed |= !made;
        if (made) continue;
        EXPECT_NE(end.errors.find("error: "), std::string::npos) << end.errors;
        // A save that was cut short is taken back by the next program that opens the document.
        EXPECT_NE(succeed("vexa check cube.wkm").find("sound"), std::string::npos) << blocks;
        EXPECT_TRUE(files() == good) << blocks << "\n" << end.errors;
    }
    EXPECT_TRUE(failed && made);
    EXPECT_NE(succeed("vexa check cube.wkm").find("sound"), std::string::npos);
}

} // namespace
