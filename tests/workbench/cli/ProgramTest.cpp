#include "tests/workbench/cli/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>

namespace {

namespace fs = std::filesystem;

class ProgramTest : public testing::Test {
  protected:
    ProgramTest()
        : folder_(testing::UnitTest::GetInstance()->current_test_info()->name()) {
        writeCube(folder_, kCubeStresses);
        folder_.write("cube.toml", cubeDeck());
    }

    /// Runs a command that must succeed.
    std::string succeed(const std::string& command) {
        const ProgramEnd end = runShell(folder_, command);
        EXPECT_EQ(end.exitCode, 0) << command << "\n" << end.errors;
        return end.output;
    }

    /// Names in the folder, apart from what the test itself needs.
    std::string listing() {
        std::string names;
        for (const auto& entry : fs::directory_iterator(folder_.path()))
            if (entry.path().filename().string()[0] != '.') names += entry.path().filename().string() + "\n";
        return names;
    }

    TestFolder folder_;
};

TEST_F(ProgramTest, ConstantAmplitudeGivesTheClosedFormLife) {
    succeed("vexa new cube.toml -o cube.wkm && vexa fatigue cube.wkm");
    // Basquin: 200 = 1000 N^-0.12.
    const double life = std::pow(200.0 / 1000.0, 1 / -0.12);
    const auto lives = parseCsv(succeed("vexa table cube.wkm --analysis Life --component 76200"));
    ASSERT_EQ(lives.size(), 8u);
    for (const auto& [node, value] : lives)
        EXPECT_NEAR(value / life, 1, 1e-6) << "node " << node;
    for (const auto& [node, value] :
         parseCsv(succeed("vexa table cube.wkm --analysis Life --component 76100")))
        EXPECT_NEAR(value * life / 1000, 1, 1e-6) << "damage of 1000 blocks at node " << node;
}

/// The bar belongs to the host and the steps come from the module, which is another library.
TEST_F(ProgramTest, TellsThePartsOfARunAsTheyCome) {
    const std::string told =
        runShell(folder_, "vexa new cube.toml -o cube.wkm && vexa fatigue cube.wkm").errors;
    for (const char* part :
         {"Generating fatigue data", "Gathering the values of load 1", "Running the fatigue solver"})
        EXPECT_NE(told.find(part), std::string::npos) << part << " in:\n" << told;
}

TEST_F(ProgramTest, GoodmanShortensLifeUnderATensileMean) {
    folder_.write("cube.toml", cubeDeck("", "[[0, 1], [1, 0], [2, 1]]"));
    succeed("vexa new cube.toml -o cube.wkm && vexa fatigue cube.wkm");
    // Amplitude 100, mean 100: Goodman's equivalent amplitude is 100 / (1 - 100 / 510).
    const double plain = std::pow(100.0 / 1000.0, 1 / -0.12);
    const double corrected = std::pow(100.0 / (1 - 100.0 / 510.0) / 1000.0, 1 / -0.12);
    EXPECT_NEAR(parseCsv(succeed("vexa table cube.wkm --analysis Life --component 76200"))["1"] / plain, 1,
                1e-6);
    EXPECT_NEAR(parseCsv(succeed("vexa table cube.wkm --analysis Life --component 76210"))["1"] / corrected,
                1, 1e-6);
}

TEST_F(ProgramTest, LeavesTheFilesItSpeaksOf) {
    succeed("vexa new cube.toml -o cube.wkm");
    EXPECT_TRUE(fs::exists(folder_ / "cube_Static.lmop"));
    succeed("FatigueText=no vexa fatigue cube.wkm");
    EXPECT_TRUE(fs::exists(folder_ / "FATIGUE.76"));
    EXPECT_TRUE(fs::exists(folder_ / "cube_Life.lmop"));
    EXPECT_FALSE(fs::exists(folder_ / "cube_Life_Fatigue.lmop"));
    EXPECT_FALSE(fs::exists(folder_ / "cube_Static_FATIGUE_76.txt"));
    const std::string binary = folder_.read("FATIGUE.76");
    succeed("FatigueText=Yes vexa fatigue cube.wkm Service");
    EXPECT_TRUE(fs::exists(folder_ / "cube_Static_FATIGUE_76.txt"));
    EXPECT_EQ(folder_.read("FATIGUE.76"), binary) << "the mirror changes nothing in the binary file";

    const auto info = nlohmann::json::parse(succeed("vexa info --json cube.wkm"));
    EXPECT_EQ(info["nodes"], 8);
    EXPECT_EQ(info["results"].size(), 2u);
    EXPECT_EQ(info["results"][1]["name"], "Life");
    EXPECT_EQ(info["results"][1]["cases"][0]["steps"][0]["components"].size(), 4u);
    EXPECT_NE(succeed("vexa info --lang ko cube.wkm").find("손상도"), std::string::npos);
}

TEST_F(ProgramTest, TablesShowTheUnitsThatAreAskedForAndFatigueKeepsItsOwn) {
    succeed("vexa new cube.toml -o cube.wkm");
    const std::string table = "vexa table cube.wkm --analysis Static --case Pull --component 312101";
    EXPECT_NE(succeed(table).find("[N/mm²]"), std::string::npos);
    EXPECT_EQ(parseCsv(succeed(table))["8"], 200);
    EXPECT_EQ(parseCsv(succeed(table + " --units kN,m"))["8"], 200000);
    EXPECT_NEAR(
        parseCsv(succeed("vexa table cube.wkm --analysis Static --case Shear --component 312114"))["3"],
        50 * std::sqrt(3.0), 1e-4); // von Mises of pure shear
    succeed("vexa fatigue cube.wkm");
    const std::string binary = folder_.read("FATIGUE.76");
    succeed("vexa fatigue cube.wkm --units kN,m");
    EXPECT_EQ(folder_.read("FATIGUE.76"), binary);
}

TEST_F(ProgramTest, RefusesWrongInputWithASentenceAndLeavesNothing) {
    succeed("vexa new cube.toml -o cube.wkm");
    struct Row {
        const char* command;
        int exitCode;
        const char* words; ///< of the standard error output
    };
    const Row rows[] = {
        {"vexa", 2, "subcommand"},
        {"vexa tabel", 2, "no command \"tabel\", did you mean 'table'?"},
        {"vexa table cube.wkm", 2, "--analysis"},
        {"vexa table cube.wkm --analysis Static --case Pull --component abc", 1, "no component \"abc\""},
        {"vexa table cube.wkm --analysis Stat --component 312101", 1, "\"Static\""},
        {"vexa table cube.wkm --analysis Static --component 312101", 1, "\"Pull\""},
        {"vexa table cube.wkm --analysis Static --case Pull --step x --component 312101", 1, "no step \"x\""},
        {"vexa table cube.wkm --analysis Static --case Pull --component 99", 1, "312101"},
        {"mkfifo pipe; vexa table cube.wkm --analysis Static --case Pull --component 312101 -o pipe; c=$?; "
         "test -p "
         "pipe && rm pipe; exit $c",
         1, "no ordinary file"},
        {"vexa table cube.wkm --analysis Static --case Pull --component 312101 >/dev/full", 1,
         "standard output"},
        {"vexa table cube.wkm --analysis Static --case Pull --component 312101 --units kN", 2, "kN,m"},
        {"vexa info cube.wkm --units kN", 2, "kN,m"},
        {"vexa info cube.wkm >/dev/full", 1, "standard output"},
        {"vexa info cube.wkm >&-", 1, "standard output"},
        {"vexa table cube.wkm --analysis Static --case Pull --component 312101 -o cube.wkm", 1, ".wkm"},
        {"vexa table cube.wkm --analysis Static --case Pull --component 312101 -o cube_Static.lmop", 1,
         ".lmop"},
        {"cp cube.toml deck.wkm; vexa new deck.wkm; c=$?; cmp cube.toml deck.wkm && rm deck.wkm; exit $c", 1,
         "project deck"},
        {"vexa table cube.wkm --analysis Static --case Pull --component 312101 -o no/folder.csv", 1,
         "no/folder.csv"},
        {"vexa fatigue cube.wkm Servic", 1, "\"Service\""},
        {"vexa info missing.wkm", 1, "missing.wkm"},
        {"vexa info cube.inp", 1, "cube.inp"},
        {"vexa info .", 1, "error"},
        {"head -c 3000 cube.wkm >short.wkm; vexa info short.wkm; c=$?; rm short.wkm; exit $c", 1,
         "short.wkm"},
        {"vexa new missing.toml -o x.wkm", 1, "missing.toml"},
        {"vexa new cube.inp -o x.wkm", 1, "cube.inp"},
        {"vexa new cube.toml -o cube.toml", 1, "must end in .wkm"},
        {"vexa new cube.toml -o no/folder.wkm", 1, "no/folder"},
        {"vexa picture cube.wkm --analysis Static --case Pull --component 312101 -o cube.wkm", 1,
         "must end in .png or .svg"},
        {"vexa picture cube.wkm --analysis Static --case Pull --component 312101 -o no/folder.png", 1,
         "no/folder.png"},
        {"vexa picture cube.wkm --analysis Static --case Pull --component 'von misse' -o x.png", 1,
         "did you mean 'von Mises'?"},
        {"vexa picture cube.wkm --analysis Static --case Pull --component stress -o x.png", 1,
         "fits several components"},
        {"vexa picture cube.wkm --analysis Static --case Pul --component 312101 -o x.png", 1,
         "did you mean 'Pull'?"},
        {"vexa picture cube.wkm --analysis Static --case Pull --step 9 --component 312101 -o x.png", 1,
         "no step \"9\""},
        {"vexa picture cube.wkm --analysis Static --case Pull --component 312101 --view frnt -o x.png", 2,
         "did you mean 'front'?"},
        {"vexa picture cube.wkm --analysis Static --case Pull --component 312101 --mark node:99 -o x.png", 1,
         "the numbers go from 1 to 8"},
        {"vexa picture cube.wkm --analysis Static --case Pull --component 312101 --mark wurst -o x.png", 1,
         "--mark \"wurst\""},
        {"vexa picture cube.wkm --analysis Static --case Pull --component 312101 --range 5,1 -o x.svg", 1,
         "range of the picture is empty"},
    };
    const std::string before = listing();
    for (const Row& row : rows) {
        const ProgramEnd end = runShell(folder_, row.command);
        EXPECT_EQ(end.exitCode, row.exitCode) << row.command << "\n" << end.errors;
        EXPECT_NE(end.errors.find(row.words), std::string::npos) << row.command << "\n" << end.errors;
        EXPECT_EQ(listing(), before) << row.command;
    }
}

TEST_F(ProgramTest, AFullDiskLeavesTheOldFiles) {
    // A limit on the size of files stands for the full disk; it is in blocks of 512 bytes.
    const std::string before = listing();
    ProgramEnd end = runShell(folder_, "echo ' 1 1 1 5 1. 1. 1.' >cube.sta; ulimit -f 8; "
                                       "vexa new cube.toml -o cube.wkm; c=$?; rm cube.sta; exit $c");
    EXPECT_EQ(end.exitCode, 1) << end.errors;
    EXPECT_EQ(end.errors.find("last increment"), std::string::npos) << end.errors;
    EXPECT_NE(end.errors.find("cube"), std::string::npos) << end.errors;
    EXPECT_EQ(listing(), before);

    succeed("vexa new cube.toml -o cube.wkm");
    const std::string document = folder_.read("cube.wkm");
    end = runShell(folder_, "ulimit -f 1; vexa fatigue cube.wkm");
    EXPECT_EQ(end.exitCode, 1) << end.errors;
    EXPECT_NE(end.errors.find("FATIGUE.76"), std::string::npos) << end.errors;
    EXPECT_EQ(folder_.read("cube.wkm"), document);
    EXPECT_FALSE(fs::exists(folder_ / "cube_Life.lmop"));
    succeed("vexa fatigue cube.wkm");
}

TEST_F(ProgramTest, ASolverThatFailsNeverBecomesAResult) {
    succeed("vexa new cube.toml -o cube.wkm && vexa fatigue cube.wkm && cp cube_Life.lmop other.lmop");
    const std::string solver = "fake/64bit Solver/FatigueSolver.exe";
    folder_.write("fake/64bit Solver/readme", "");
    struct Row {
        const char* name;
        const char* script; ///< null: no program at all
        const char* words;
    };
    const Row rows[] = {
        {"missing", nullptr, "FatigueSolver.exe"},
        {"crashes", "kill -SEGV $$", "signal 11"},
        {"says no", "exit 3", "exit code 3"},
        {"leaves nothing", "exit 0", "exit code 0"},
        {"leaves a foreign file", "echo foreign >cube_Life_Fatigue.lmop", "cube_Life"},
        {"leaves a truncated file", "head -c 2000 other.lmop >cube_Life_Fatigue.lmop", "cube_Life"},
        {"leaves another run's file", "cp stale.lmop cube_Life_Fatigue.lmop", "another FATIGUE.76"},
    };
    // The result of a run whose definition differs: its checksum is another one.
    folder_.write("stale/cube.toml", cubeDeck("quick_rainflow = 5\n"));
    writeCube(folder_, kCubeStresses);
    succeed("cp cube.inp cube.frd stale/ && cd stale && vexa new cube.toml -o cube.wkm && vexa fatigue "
            "cube.wkm && "
            "cp cube_Life.lmop ../stale.lmop");
    for (const Row& row : rows) {
        fs::remove(folder_ / solver);
        if (row.script) folder_.writeScript(solver, row.script);
        const ProgramEnd end = runShell(folder_, "vexa --program-folder fake fatigue cube.wkm");
        EXPECT_EQ(end.exitCode, 1) << row.name << "\n" << end.errors;
        EXPECT_NE(end.errors.find(row.words), std::string::npos) << row.name << "\n" << end.errors;
    }
    fs::permissions(folder_ / solver, fs::perms::owner_read);
    const ProgramEnd end = runShell(folder_, "vexa --program-folder fake fatigue cube.wkm");
    EXPECT_EQ(end.exitCode, 1);
    EXPECT_NE(end.errors.find("cannot start"), std::string::npos) << end.errors;
    succeed("vexa fatigue cube.wkm");
}

TEST_F(ProgramTest, PathsWithBlanksAndKoreanLettersWork) {
    folder_.write("내 모델/a", "");
    succeed("cp cube.* '내 모델/' && cd '내 모델' && vexa new cube.toml -o '보 1.wkm' && vexa fatigue '보 "
            "1.wkm' && "
            "test -f '보 1_Life.lmop'");
}

TEST_F(ProgramTest, PicturesAreWrittenWithoutADisplay) {
    succeed("vexa new cube.toml -o cube.wkm && env -u DISPLAY vexa picture cube.wkm --analysis Static --case "
            "Pull "
            "--component 312114 -o cube.png");
    EXPECT_EQ(folder_.read("cube.png").substr(1, 3), "PNG");
    const ProgramEnd end = runShell(
        folder_, "vexa picture cube.wkm --analysis Static --case Pull --step 1 --component 'von mises' "
                 "--range -5,50 --view -30,20 --mark worst:2 --mark element:1 --json -o cube.svg");
    ASSERT_EQ(end.exitCode, 0) << end.errors;
    const auto report = nlohmann::json::parse(end.output);
    EXPECT_EQ(report["component"], 312114);
    EXPECT_EQ(report["range"]["low"], -5.0);
    EXPECT_EQ(report["range"]["high"], 50.0);
    ASSERT_EQ(report["marks"].size(), 3u);
    EXPECT_EQ(report["marks"][0]["node"], report["maximum"]["node"]);
    EXPECT_EQ(report["marks"][2]["element"], 1);
    EXPECT_EQ(report["marks"][2]["value"], report["maximum"]["value"]);
    EXPECT_NE(folder_.read("cube.svg").find(">Element 1: "), std::string::npos);
}

} // namespace
