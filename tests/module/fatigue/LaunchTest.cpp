#include "framework/system/Process.h"
#include "tests/module/fatigue/FatigueModel.h"

#include <gtest/gtest.h>

namespace {

std::string contents(const std::filesystem::path& path) {
    return std::filesystem::exists(path) ? bytesOf(path) : "";
}

TEST(FatigueLaunch, SettlesTheResultFile) {
    const struct {
        const char* what;
        const char* commands; ///< of the solver
        bool stale;           ///< a result of an earlier run lies there
        int result;
        std::string registered, own; ///< what the two files hold afterwards
        const wchar_t* added;        ///< end of the path that the host was given
    } rows[] = {
        {"own name", "put _Fatigue.lmop new", false, 1, "new\n", "", L"model_Life.lmop"},
        {"own name over a stale file", "put _Fatigue.lmop new", true, 1, "new\n", "", L"model_Life.lmop"},
        {"registered name only", "put .lmop new", false, 0, "new\n", "", nullptr},
        {"both", "put .lmop a\nput _Fatigue.lmop b", false, 1, "a\n", "b\n", L"model_Life_Fatigue.lmop"},
        {"none", "exit 0", false, 0, "", "", nullptr},
        {"none, with a stale file", "exit 0", true, 0, "", "", nullptr},
        {"crash", "crash", true, 0, "", "", nullptr},
        {"failure after the result", "put _Fatigue.lmop new\nexit 3", false, 1, "new\n", "",
         L"model_Life.lmop"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        FatigueModel model;
        model.installSolver(row.commands);
        if (row.stale) writeBytes(model.folder / "model_Life.lmop", "old");
        EXPECT_EQ(model.run(), row.result);
        EXPECT_EQ(contents(model.folder / "model_Life.lmop"), row.registered);
        EXPECT_EQ(contents(model.folder / "model_Life_Fatigue.lmop"), row.own);
        ASSERT_EQ(model.doc.files.added.size(), row.added ? 1u : 0u);
        if (row.added) {
            EXPECT_TRUE(model.doc.files.added[0].path.ends_with(row.added));
            EXPECT_EQ(model.doc.files.added[0].analysisKey, FatigueModel::kResultAnalysis);
            EXPECT_EQ(model.doc.files.added[0].flag, 1);
        }
        EXPECT_TRUE(model.host.errors.empty());
        EXPECT_TRUE(model.host.boxes.empty());
        const auto& events = model.host.progress.events;
        EXPECT_EQ(std::vector(events.end() - 2, events.end()), (std::vector<std::wstring>{L"end", L"close"}));
    }
}

TEST(FatigueLaunch, PassesOnWhatTheHostAnswers) {
    FatigueModel model;
    model.installSolver("put _Fatigue.lmop new");
    model.doc.files.accepts = 0;
    EXPECT_EQ(model.run(), 0);
    EXPECT_EQ(model.doc.files.added.size(), 1u);
    EXPECT_TRUE(model.host.errors.empty());
}

TEST(FatigueLaunch, WorksInFoldersWithBlanksAndKoreanLetters) {
    FatigueModel model;
    const std::filesystem::path place = model.folder / "내 작업 폴더 1";
    std::filesystem::create_directories(place);
    model.doc.path = framework::widePath(place / pathOf("노치 시편.wkm"));
    model.host.programPath = framework::widePath(model.folder / "내 프로그램") + L"\\";
    model.installSolver("count _Fatigue.lmop");
    EXPECT_EQ(model.run(), 1);
    EXPECT_EQ(contents(place / pathOf("노치 시편_Life.lmop")), "1\n");
}

TEST(FatigueLaunch, NamesWhatIsMissing) {
    FatigueModel model;
    model.host.texts[L"IDS_QM_LIB_ERROR"] = L"Error";
    model.host.texts[L"IDS_QM_DB_CANNOT_EXECUTE_FILE"] = L"cannot run %s";
    model.host.texts[L"IDS_QM_DB_CANNOT_FIND_FILE"] = L"cannot find %s";
    EXPECT_EQ(model.run(), 0);
    const std::wstring program = model.host.programPath + L"64bit Solver\\FatigueSolver.exe";
    EXPECT_EQ(model.host.boxes, std::vector<std::wstring>{L"[Error] cannot run " + program});

    model.installSolver("exit 0");
    FatigueProbe solver;
    ASSERT_TRUE(solver.prepare(model.doc, model.definition));
    ASSERT_TRUE(solver.CheckData() && solver.MakeWriteNodeElem() && solver.WriteSolverInterface());
    std::filesystem::remove(model.interfaceFile());
    model.host.boxes.clear();
    EXPECT_EQ(solver.RunFatigueExe(), 0);
    EXPECT_EQ(model.host.boxes, std::vector<std::wstring>{L"[Error] cannot find " +
                                                          framework::widePath(model.interfaceFile())});
}

TEST(FatigueLaunch, FailsSilentlyWhenTheSolverCannotStart) {
    FatigueModel model;
    std::filesystem::create_directories(model.solverProgram().parent_path());
    writeBytes(model.solverProgram(), "no program");
    writeBytes(model.folder / "model_Life_Fatigue.lmop", "left over");
    EXPECT_EQ(model.run(), 0);
    EXPECT_TRUE(model.host.boxes.empty());
    EXPECT_TRUE(model.host.errors.empty());
    EXPECT_TRUE(model.doc.files.added.empty());
    EXPECT_FALSE(framework::lastProcessEnd());
}

// A folder of the registered name can neither be deleted as a file nor renamed over.
TEST(FatigueLaunch, GoesOnWhenFilesCannotBeMoved) {
    FatigueModel model;
    std::filesystem::create_directories(model.folder / "model_Life.lmop" / "inside");
    model.installSolver("put _Fatigue.lmop new");
    EXPECT_EQ(model.run(), 0);
    EXPECT_TRUE(model.host.errors.empty());
    EXPECT_EQ(contents(model.folder / "model_Life_Fatigue.lmop"), "new\n");
}

TEST(FatigueLaunch, ShowsProgressByEdition) {
    const struct {
        Edition edition;
        int type;
        std::vector<std::wstring> events;
    } rows[] = {
        {Edition::A,
         2,
         {L"start", L"range 0 9", L"IDS_VEXAGPS_FATIGUE_GENERATE", L"step", L"load 1", L"step", L"load 2",
          L"step", L"load 3", L"step", L"load 4", L"step", L"IDS_VEXAGPS_FATIGUE_WRITE_SOLVER_FILE", L"step",
          L"IDS_VEXAGPS_FATIGUE_SOLVE_WKM", L"step", L"end", L"close"}},
        {Edition::B,
         0,
         {L"start", L"range 0 7", L"IDS_VEXAGPS_FATIGUE_GENERATE", L"step", L"step", L"step", L"load 1",
          L"IDS_VEXAGPS_FATIGUE_READ_RESULT", L"load 2", L"IDS_VEXAGPS_FATIGUE_READ_RESULT", L"load 3",
          L"IDS_VEXAGPS_FATIGUE_READ_RESULT", L"IDS_VEXAGPS_FATIGUE_WRITE_SOLVER_FILE", L"step",
          L"IDS_VEXAGPS_FATIGUE_SOLVE_KPR", L"step", L"end", L"close"}},
        {Edition::D,
         4,
         {L"start", L"range 0 7", L"IDS_VEXAGPS_FATIGUE_GENERATE", L"step", L"step", L"step", L"load 1",
          L"load 2", L"load 3", L"load 4", L"IDS_VEXAGPS_FATIGUE_WRITE_SOLVER_FILE", L"step", L"step", L"end",
          L"close"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.type);
        FatigueModel model;
        model.host.edition = row.edition;
        model.host.texts[L"IDS_VEXAGPS_FATIGUE_LOAD_GENERATE"] = L"load %d";
        model.definition.fatigueType = row.type;
        model.installSolver("exit 0");
        model.run();
        EXPECT_EQ(model.host.progress.events, row.events);
        IQMProgressBar::m_pInstance = nullptr;
        EXPECT_EQ(model.run(), 0) << "and without a bar";
    }
}

} // namespace
