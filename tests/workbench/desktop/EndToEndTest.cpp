#include "module/resources/resource.h"
#include "tests/workbench/desktop/LiveScreen.h"

#include <gtest/gtest.h>

namespace {

using namespace desktest;

std::string control(const char* kind, int id) {
    return std::string("^") + kind + ":" + std::to_string(id) + " ";
}

double atNode1(const TestFolder& folder, const std::string& set, const std::string& component) {
    const ProgramEnd end =
        runShell(folder, "vexa table cube.wkm --analysis " + set + " --component '" + component + "'");
    EXPECT_EQ(end.exitCode, 0) << end.errors;
    return end.exitCode == 0 ? parseCsv(end.output).at("1") : 0.0;
}

/// A person at a real screen: menus and dialogs by mouse and keyboard, from outside of the program.
TEST(LiveDesktop, CombinesResultsByMouseAndKeyboard) {
    TestFolder folder("live");
    writeCube(folder, kCubeStresses);
    folder.write("cube.toml", cubeDeck());
    ASSERT_EQ(runShell(folder, "vexa new cube.toml -o cube.wkm").exitCode, 0);
    LiveScreen screen(folder, "cube.wkm");

    screen.waitFor("^item0 .* Static$");
    screen.click("^menu .* Results$");
    screen.click("^entry .* Combination and Envelope");
    ASSERT_TRUE(screen.waitFor("^window .* on Result Combination"));

    // The first item by mouse: the case "Pull" is chosen when the dialog opens.
    screen.click(control("edit", IDC_COMB_FACTOR));
    screen.type("1.5");
    screen.click(control("button", IDC_COMB_ADD));
    screen.waitFor("^row .* Pull \\| 1.5$");

    // The second one by keyboard: Tab walks on, letters choose, Alt and a letter presses.
    screen.press("alt+f");
    screen.press("s");
    screen.waitFor(control("choice", IDC_COMB_RESULT) + ".* Shear$");
    screen.press("Tab");
    screen.waitFor(control("edit", IDC_COMB_FACTOR) + ".* on ");
    screen.type("-2");
    screen.press("alt+a");
    ASSERT_TRUE(screen.waitFor("^row .* Shear \\| -2$"));

    screen.press("alt+n");
    screen.type("ULS");
    screen.click(control("button", ID_APPLY_NOW));
    EXPECT_TRUE(screen.waitFor("^item0 .* ULS$"));
    EXPECT_TRUE(screen.isThere("^window .* Result Combination")); // Apply leaves it open
    screen.press("Escape");
    screen.waitUntilGone("^window .* Result Combination");

    // The new set can be looked at, and a node of it picked.
    screen.click("^item0 .* ULS$");
    screen.press("Right Right Right Right Right Right Down");
    const auto component = screen.waitFor("^item3 .* on ");
    EXPECT_TRUE(component);
    screen.drag({600, 400, {}}, 60, 40);
    screen.click(LiveScreen::Place{600, 400, {}});
    EXPECT_TRUE(screen.waitFor("^label .* Node [1-8]: "));

    screen.press("ctrl+s");
    screen.waitFor("^text:.* Saved: .*cube.wkm");
    screen.click("^menu .* Language$");
    screen.click("^entry .* 한국어");
    EXPECT_TRUE(screen.waitFor("^menu .* 파일\\(F\\)$"));
    screen.press("alt+f");
    screen.click("^entry .* 끝내기");
    EXPECT_EQ(screen.end(), 0) << screen.errors();

    // 1.5 x (xx 200) - 2 x (xy 50): xx 300, xy -100, von Mises sqrt(300^2 + 3 x 100^2).
    EXPECT_NEAR(atNode1(folder, "ULS", "stress xx"), 300, 1e-3);
    EXPECT_NEAR(atNode1(folder, "ULS", "stress xy"), -100, 1e-3);
    EXPECT_NEAR(atNode1(folder, "ULS", "von mises") / 346.41016, 1, 1e-6);
}

TEST(Desktop, ScreenshotsNeedNoDisplay) {
    TestFolder folder("shots");
    writeCube(folder, kCubeStresses);
    folder.write("cube.toml", cubeDeck());
    folder.write("add.desk", "type 1107 2.5\npress Add\ntype \"New set\" \"My set\"\n");
    folder.write("wrong.desk", "press Add\npress Nowhere\n");
    folder.write("broken.desk", "push Add\n");
    folder.write("cube_run_fos.out", "SUBCASE : Gravity\n 1 0.5 1.25 T\n");
    ASSERT_EQ(runShell(folder, "vexa new cube.toml -o cube.wkm").exitCode, 0);
    struct Row {
        const char* arguments;
        int exitCode;
        const char* message; ///< on the standard error output
    };
    const std::string combination = "cube.wkm --screenshot s.png --dialog CVEXAGpsResultCombinationDlg ";
    const std::string chart = "cube.wkm --chart s.png --dialog CVEXAGpsSafetyGraphDlg ";
    const std::pair<std::string, Row> rows[] = {
        {"cube.wkm --screenshot s.png", {"", 0, ""}},
        {"--screenshot s.png --lang ko", {"", 0, ""}},
        {"cube.wkm --screenshot s.png --units kN,m --analysis Static --case Pull --component 'von mises'",
         {"", 0, ""}},
        {combination, {"--lang ko", 0, ""}},
        {combination, {"--do add.desk", 0, ""}},
        {"cube.wkm --screenshot s.png --dialog CVEXAGpsSafetyGraphDlg --argument fos", {"", 0, ""}},
        {chart, {"--argument run", 0, ""}},
        {chart, {"--argument fos", 1, "the chart of the dialog CVEXAGpsSafetyGraphDlg has no values"}},
        {combination, {"--do wrong.desk", 1, "wrong.desk: line 2: there is no control \"Nowhere\""}},
        {combination, {"--do broken.desk", 1, "broken.desk: line 1: there is no action \"push\""}},
        {combination, {"--do none.desk", 1, "cannot read the script none.desk"}},
        {"none.wkm --screenshot s.png", {"", 1, "none.wkm"}},
        {"cube.wkm --screenshot none/s.png", {"", 1, "cannot write the picture none/s.png"}},
        {"cube.wkm --screenshot s.png --analysis Statik", {"", 1, "no analysis \"Statik\""}},
        {"cube.wkm --screenshot s.png --dialog Nothing", {"", 2, "there is no dialog \"Nothing\""}},
        {"cube.wkm --screenshot s.jpg", {"", 2, "must end in .png"}},
        {"--screenshot s.png --dialog CVEXAGpsSafetyGraphDlg", {"", 2, "--dialog needs a model"}},
        {"cube.wkm", {"", 1, "there is no display"}},
        {"cube.wkm --size 10x10", {"", 2, ""}},
    };
    for (const auto& [start, row] : rows) {
        const std::string arguments = start + " " + row.arguments;
        SCOPED_TRACE(arguments);
        const ProgramEnd end =
            runShell(folder, "rm -f s.png; env -u DISPLAY -u QT_QPA_PLATFORM vexa-desktop " + arguments);
        EXPECT_EQ(end.exitCode, row.exitCode) << end.errors;
        EXPECT_NE(end.errors.find(row.message), std::string::npos) << end.errors;
        // What a script could not do is told, and the picture shows what it did.
        const bool drawn = row.exitCode == 0 || end.errors.find("wrong.desk: ") != std::string::npos;
        EXPECT_EQ(folder.read("s.png").starts_with("\x89PNG"), drawn);
    }
}

} // namespace
