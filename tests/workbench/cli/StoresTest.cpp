#include "tests/workbench/cli/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;

/// `as_user` runs a command without the rights of root; `sql` runs a statement on the document; `locked` runs
/// a command while another program holds the document in a transaction; `cut_save` dies in the middle of a
/// save.
constexpr const char* kWords = R"sh(
as_user() { if [ "$(id -u)" = 0 ]; then setpriv --reuid=65534 --clear-groups "$@"; else "$@"; fi; }
sql() { python3 -c 'import sqlite3, sys
sqlite3.connect("cube.wkm").executescript(sys.argv[1])' "$1"; }
locked() { python3 -c 'import sqlite3, subprocess, sys
c = sqlite3.connect("cube.wkm", isolation_level=None)
c.execute(sys.argv[1])
sys.exit(subprocess.run(sys.argv[2:]).returncode)' "$@"; }
cut_save() { python3 -c 'import os, signal, sqlite3
c = sqlite3.connect("cube.wkm", isolation_level=None)
c.execute("PRAGMA cache_size=1")
c.execute("BEGIN IMMEDIATE")
c.execute("UPDATE records SET name = name || hex(zeroblob(4000))")
os.kill(os.getpid(), signal.SIGKILL)'; }
)sh";

class StoresTest : public testing::Test {
  protected:
    StoresTest()
        : folder_(std::string("stores-") + testing::UnitTest::GetInstance()->current_test_info()->name()) {
        writeCube(folder_, kCubeStresses);
        folder_.write("cube.toml", cubeDeck());
        const ProgramEnd end = run("vexa new cube.toml -o cube.wkm && vexa fatigue cube.wkm");
        EXPECT_EQ(end.exitCode, 0) << end.errors;
    }

    ProgramEnd run(const std::string& command) { return runShell(folder_, kWords + command); }

    /// Every file of the folder with its bytes, hidden ones aside.
    std::map<std::string, std::string> files() const {
        std::map<std::string, std::string> all;
        for (const auto& entry : fs::directory_iterator(folder_.path()))
            if (const std::string name = entry.path().filename().string(); name[0] != '.')
                all[name] = folder_.read(name);
        return all;
    }

    void restore(const std::map<std::string, std::string>& good) {
        run("chmod -R u+rwX . && rm -rf *");
        for (const auto& [name, bytes] : good)
            folder_.write(name, bytes);
    }

    std::string faults() { return run("vexa check cube.wkm").output; }

    TestFolder folder_;
};

TEST_F(StoresTest, AnswerABrokenStoreWithASentenceAndKeepTheLastGoodState) {
    struct Row {
        const char* prepare;
        const char* command;
        const char* words; ///< of the error output; empty: it succeeds
    };
    const Row rows[] = {
        {"head -c 20000 cube.wkm >x; mv x cube.wkm", "vexa fatigue cube.wkm", "damaged"},
        {"cp cube.frd cube.wkm", "vexa fatigue cube.wkm", "not a model document"},
        {"sql 'PRAGMA user_version=3'", "vexa fatigue cube.wkm", "newer version"},
        {"sql 'PRAGMA user_version=0'", "vexa fatigue cube.wkm", "document version 0 is unknown"},
        {"", "locked 'BEGIN EXCLUSIVE' vexa info cube.wkm", "in use by another program"},
        {"", "locked 'BEGIN IMMEDIATE' vexa fatigue cube.wkm", "in use by another program"},
        {"", "locked 'BEGIN IMMEDIATE' vexa new cube.toml -o cube.wkm", "in use by another program"},
        {"chmod 777 .; chmod 444 cube.wkm", "as_user vexa fatigue cube.wkm", "write-protected"},
        {"chmod 777 .; chmod 444 cube.wkm", "as_user vexa new cube.toml -o cube.wkm", "write-protected"},
        {"chmod 555 .", "as_user vexa new cube.toml -o cube.wkm", "cube_Static.lmop: Permission denied"},
        {"chmod 555 .", "as_user vexa check cube.wkm", ""},
        {"chmod 555 . ; chmod 444 *", "as_user vexa info cube.wkm", ""},
        {"cut_save; chmod 444 cube.wkm*; chmod 555 .", "as_user vexa info cube.wkm", "-journal"},
        {"head -c 3000 cube_Static.lmop >x; mv x cube_Static.lmop", "vexa fatigue cube.wkm", "cut short"},
        {"cp cube.frd cube_Static.lmop", "vexa fatigue cube.wkm", "not an HDF5 file"},
        {"rm cube_Static.lmop", "vexa fatigue cube.wkm", "analysis \"Static\" is without these results"},
        {"rm cube_Static.lmop; mkfifo cube_Static.lmop",
         "timeout 20 vexa info cube.wkm; c=$?; rm -f "
         "cube_Static.lmop; exit $c",
         "not a regular file"},
    };
    const auto good = files();
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.prepare) + " | " + row.command);
        restore(good);
        run(row.prepare);
        const bool hasPipe = fs::is_fifo(folder_ / "cube_Static.lmop");
        const auto before = hasPipe ? std::map<std::string, std::string>() : files();
        const ProgramEnd end = run(row.command);
        EXPECT_EQ(end.exitCode, *row.words ? 1 : 0) << end.errors;
        EXPECT_NE(end.errors.find(row.words), std::string::npos) << end.errors;
        if (!hasPipe) {
            EXPECT_TRUE(files() == before);
        }
    }
    restore(good);
}

TEST_F(StoresTest, ASaveThatWasCutShortIsTakenBack) {
    const auto good = files();
    run("cut_save");
    ASSERT_GT(folder_.read("cube.wkm-journal").size(), 0u);
    const std::string found = faults();
    EXPECT_NE(found.find("note: document: a save that was cut short was taken back"), std::string::npos)
        << found;
    EXPECT_NE(found.find("sound"), std::string::npos) << found;
    EXPECT_TRUE(files() == good);
}

TEST_F(StoresTest, AFullDiskLeavesTheOldImportOrGivesTheNewOne) {
    run("sed -i 's/\"Pull\"/\"Push\"/' cube.toml");
    const std::string document = folder_.read("cube.wkm");
    bool wasOld = false, isNew = false;
    // The limit of the size of a file stands for the full disk; it is in blocks of 512 bytes.
    for (int blocks = 1; blocks < 4096 && !isNew; blocks = blocks * 5 / 4 + 1) {
        const ProgramEnd end =
            run("ulimit -f " + std::to_string(blocks) + "; vexa new cube.toml -o cube.wkm");
        isNew = end.exitCode == 0;
        wasOld |= !isNew && folder_.read("cube.wkm") == document;
        EXPECT_TRUE(isNew || end.errors.find("error: cannot") != std::string::npos) << end.errors;
        EXPECT_NE(faults().find("sound"), std::string::npos) << blocks << "\n" << faults();
    }
    EXPECT_TRUE(wasOld && isNew);
}

TEST_F(StoresTest, OnlyOneProgramAtATimeRunsDefinitionsOfADocument) {
    fs::create_directories(folder_ / "slow/64bit Solver");
    folder_.writeScript("slow/64bit Solver/FatigueSolver.exe",
                        "touch started; while [ ! -e go ]; do sleep 0.02; done");
    const ProgramEnd end = run("vexa fatigue cube.wkm --program-folder \"$PWD/slow\" >/dev/null 2>&1 & "
                               "while [ ! -e started ]; do sleep 0.02; done; "
                               "vexa fatigue cube.wkm; c=$?; touch go; wait; exit $c");
    EXPECT_EQ(end.exitCode, 1) << end.errors;
    EXPECT_NE(end.errors.find("another program is working on"), std::string::npos) << end.errors;
    EXPECT_EQ(run("vexa fatigue cube.wkm").exitCode, 0);
}

TEST_F(StoresTest, ARunThatIsKilledTakesNoEarlierOneWithIt) {
    std::string second = cubeDeck().substr(cubeDeck().find("[[fatigue]]"));
    for (const auto& [from, to] :
         {std::pair("\"Service\"", "\"Second\""), std::pair("\"Life\"", "\"Other\"")})
        second.replace(second.find(from), std::string(from).size(), to);
    folder_.write("cube.toml", cubeDeck() + second);
    fs::create_directories(folder_ / "fake/64bit Solver");
    folder_.writeScript(
        "fake/64bit Solver/FatigueSolver.exe",
        "[ -e once ] && kill -9 $PPID; touch once; exec \"$(dirname \"$(command -v vexa)\")/64bit "
        "Solver/FatigueSolver.exe\" \"$1\"");
    const ProgramEnd end =
        run("vexa new cube.toml -o cube.wkm && vexa fatigue cube.wkm --program-folder \"$PWD/fake\"");
    EXPECT_NE(end.exitCode, 0);
    EXPECT_EQ(run("vexa table cube.wkm --analysis Life --component 76200").exitCode, 0)
        << end.errors << faults();
}

TEST_F(StoresTest, CheckTellsInItsExitCodeAndAsJson) {
    EXPECT_EQ(run("vexa check cube.wkm").exitCode, 0);
    EXPECT_EQ(run("vexa check").exitCode, 2);
    EXPECT_EQ(run("vexa check missing.wkm").exitCode, 1);
    run("touch cube_Life.lmop.vexa-part-1-1 cube_Static~2.lmop; rm cube_Life.lmop");
    const ProgramEnd end = run("vexa check cube.wkm --json");
    EXPECT_EQ(end.exitCode, 1);
    const auto report = nlohmann::json::parse(end.output);
    EXPECT_EQ(report["sound"], false);
    ASSERT_EQ(report["faults"].size(), 3u) << end.output;
    EXPECT_EQ(report["faults"][0]["remedy"], "run it again: vexa fatigue cube.wkm \"Service\"");
    EXPECT_EQ(report["tables"], 2 * 7) << "displacements are not asked for";
    // The next programs tidy up.
    EXPECT_EQ(run("vexa fatigue cube.wkm && vexa new cube.toml -o cube.wkm && vexa check cube.wkm").exitCode,
              0)
        << faults();
    EXPECT_FALSE(fs::exists(folder_ / "cube_Static~2.lmop"));
}

} // namespace
