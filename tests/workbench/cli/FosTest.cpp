#include "tests/workbench/cli/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

constexpr const char* kHistory = "SUBCASE : Dry\n"
                                 "ITERATION DISPLACEMENT FOS CONVERGED\n"
                                 "5 0.001 1.00 T\n3 0.002 1.10 T\n4 0.004 1.20 F\n"
                                 "\n"
                                 "SUBCASE : Wet, after rain\n9 0.5 0.9 F\n";

class Fos : public testing::Test {
  protected:
    Fos()
        : folder(std::string("fos-") + testing::UnitTest::GetInstance()->current_test_info()->name()) {
        writeCube(folder, kCubeStresses);
        folder.write("cube.toml", cubeDeck());
        EXPECT_EQ(run("vexa new cube.toml -o cube.wkm").exitCode, 0);
        folder.write("cube_ssr_fos.out", kHistory);
    }
    ProgramEnd run(const std::string& command) const { return runShell(folder, command); }

    TestFolder folder;
};

TEST_F(Fos, PrintsTheLastFactorOfEverySubcase) {
    const ProgramEnd end = run("vexa fos cube.wkm --name ssr");
    EXPECT_EQ(end.exitCode, 0) << end.errors;
    EXPECT_EQ(end.output, "subcase          rows  iterations  last factor  last converged  displacement\n"
                          "Dry                 3          12          1.2             1.1         0.002\n"
                          "Wet, after rain     1           9          0.9  -               -\n");
    const auto object = nlohmann::json::parse(run("vexa fos cube.wkm --name ssr --json").output);
    const auto& dry = object["subcases"][0];
    EXPECT_EQ(dry["last factor"], 1.2);
    EXPECT_EQ(dry["last converged factor"], 1.1);
    EXPECT_EQ(dry["factor over displacement"].dump(), "[[0.001,1.0],[0.002,1.1]]");
    EXPECT_EQ(dry["factor over iterations"].dump(), "[[5.0,1.0],[8.0,1.1],[12.0,1.2]]");
    EXPECT_TRUE(object["subcases"][1]["last converged factor"].is_null());
}

TEST_F(Fos, DrawsTheCurveThatIsAskedFor) {
    EXPECT_EQ(run("vexa fos cube.wkm --name ssr -o first.svg").exitCode, 0);
    EXPECT_NE(folder.read("first.svg").find(">Factor of Safety - Displacement<"), std::string::npos);
    EXPECT_EQ(run("vexa fos cube.wkm --lang ko --name ssr --graph iterations --subcase 'Wet, after rain' "
                  "--size 300x200 -o wet.svg")
                  .exitCode,
              0);
    const std::string wet = folder.read("wet.svg");
    EXPECT_NE(wet.find(">안전율-반복 횟수<"), std::string::npos);
    EXPECT_NE(wet.find("width=\"300\" height=\"200\""), std::string::npos);
    const ProgramEnd png = run("vexa fos cube.wkm --name ssr --size 300x200 -o a.PNG");
    EXPECT_EQ(png.exitCode, 0) << png.errors;
    EXPECT_TRUE(folder.read("a.PNG").starts_with("\x89PNG"));
}

TEST_F(Fos, SaysWhatIsWrong) {
    folder.write("cube_empty_fos.out", "nothing here\n");
    folder.write("cube_short_fos.out", "SUBCASE : a\n1 2 3\n4 5 6 T\n");
    const struct {
        const char* command;
        int exitCode;
        const char* says;
    } rows[] = {
        {"vexa fos cube.wkm", 2, "--name is required"},
        {"vexa fos cube.wkm --name ssr --graph time", 2, "--graph"},
        {"vexa fos cube.wkm --name ssr -o a.jpg", 1, "must end in .png or .svg, which \"a.jpg\" does not"},
        {"vexa fos missing.wkm --name ssr", 1, "missing.wkm"},
        {"vexa fos cube.wkm --name none", 1, "cube_none_fos.out does not exist"},
        {"vexa fos cube.wkm --name SSR", 1, "did you mean 'ssr'?; beside the document there are 'empty', "},
        {"vexa fos cube.wkm --name empty", 1,
         "there is no subcase in the history \"empty\" of cube.wkm: run"},
        {"vexa fos cube.wkm --name ssr --subcase 'Wet, after rain' -o wet.svg", 0,
         "--graph iterations shows"},
        {"vexa fos cube.wkm --name short", 0, "_short_fos.out, line 2: a row needs"},
        {"vexa fos cube.wkm --name ssr --subcase Dri", 1, "has no subcase \"Dri\""},
        {"vexa fos cube.wkm --name ssr -o missing/a.svg", 1, "missing/a.svg"},
        {"vexa fos cube.wkm --name ssr -o missing/a.png", 1, "missing/a.png"},
    };
    for (const auto& row : rows) {
        const ProgramEnd end = run(row.command);
        EXPECT_EQ(end.exitCode, row.exitCode) << row.command << "\n" << end.errors;
        EXPECT_NE(end.errors.find(row.says), std::string::npos) << row.command << "\n" << end.errors;
    }
}

} // namespace
