#include "tests/workbench/cli/Program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace {

using nlohmann::json;

class SafetyTest : public testing::Test {
  protected:
    SafetyTest()
        : folder_("safety") {
        writeCube(folder_, kCubeStresses);
    }
    /// Makes the document with these keys of its material.
    void make(const std::string& strength) {
        std::string deck = cubeDeck();
        deck.insert(deck.find("yield"), strength);
        folder_.write("cube.toml", deck);
        const ProgramEnd end = runShell(folder_, "vexa new cube.toml -o cube.wkm");
        ASSERT_EQ(end.exitCode, 0) << end.errors;
    }
    json safety(const std::string& arguments) {
        const ProgramEnd end =
            runShell(folder_, "vexa safety cube.wkm --json --analysis Static " + arguments);
        EXPECT_EQ(end.exitCode, 0) << end.errors;
        return end.exitCode == 0 ? json::parse(end.output) : json();
    }
    TestFolder folder_;
};

TEST_F(SafetyTest, StoresTheRateWithWhatItWasMadeOf) {
    make("cohesion = 150\nfriction_angle = 0\n");
    // Pull of 200: radius 100, strength 150.
    const json report = safety("--case Pull --name Local");
    EXPECT_EQ(report["node count"], 8);
    EXPECT_EQ(report["states"], 8);
    EXPECT_NEAR(report["nodes"][0]["rate"], 1.5, 1e-9);
    const struct {
        unsigned component;
        double value;
    } tables[] = {{77101, 1.5}, {77111, 150}, {77112, 0}, {77121, 200}, {77122, 0}};
    for (const auto& table : tables) {
        const ProgramEnd end = runShell(folder_, "vexa table cube.wkm --analysis Local --component " +
                                                     std::to_string(table.component));
        const auto values = parseCsv(end.output);
        ASSERT_EQ(values.size(), 8u) << end.errors;
        for (const auto& [node, value] : values)
            EXPECT_NEAR(value, table.value, 1e-4) << table.component << " at node " << node;
    }
}

TEST_F(SafetyTest, GoesByModeAndCutOffAndMakesASetAnew) {
    make("cohesion = 100\nfriction_angle = 30\ntensile_strength = 30\n");
    EXPECT_EQ(safety("--case Pull")["nodes"][0]["rate"], 0) << "beyond the cut-off";
    // Shear of 50: mean 0, radius 50; the cut-off at 30 is nearer than the line.
    EXPECT_NEAR(safety("--case Shear")["nodes"][0]["rate"], 0.6, 1e-9);
    const json ratio = safety("--case Shear --mode ratio");
    EXPECT_NEAR(ratio["nodes"][0]["rate"], 0.5, 1e-9);
    EXPECT_EQ(ratio["component"], 77102);
    EXPECT_EQ(ratio["set"], "Safety Shear");
    const ProgramEnd info = runShell(folder_, "vexa info cube.wkm");
    EXPECT_EQ(info.exitCode, 0);
    EXPECT_NE(info.output.find("_SFT_Safety Shear.lmop"), std::string::npos) << info.output;
    EXPECT_EQ(info.output.find("77101"), info.output.rfind("77101")) << "of the set of case Pull alone";
}

TEST_F(SafetyTest, PicturesHaveNoValueWhereTheRateIsUndefined) {
    std::string results = folder_.read("cube.frd");
    const std::string pulled = " -1         3 2.00000E+02";
    results.replace(results.find(pulled), pulled.size(), " -1         3 0.00000E+00");
    folder_.write("cube.frd", results);
    make("cohesion = 150\nfriction_angle = 0\n");
    EXPECT_EQ(safety("--case Pull --name Local")["nodes"][7]["rate"], -1) << "the safest";
    const ProgramEnd end =
        runShell(folder_, "vexa picture cube.wkm --analysis Local --component 77101 -o local.svg --json");
    ASSERT_EQ(end.exitCode, 0) << end.errors;
    const json picture = json::parse(end.output);
    EXPECT_NEAR(picture["minimum"]["value"], 1.5, 1e-6);
    EXPECT_NE(picture["marks"][0]["node"], 3);
}

TEST_F(SafetyTest, SaysWhatIsMissing) {
    make("");
    const struct {
        const char* arguments;
        int exitCode;
        const char* words;
    } rows[] = {
        {"--case Pull", 1, "cohesion and friction_angle"}, {"--case Pul", 1, "\"Pull\""},
        {"--case Pull --name a/b", 1, "file name"},        {"--case Pull --name Static", 1, "already used"},
        {"--case Pull --mode both", 2, "--mode"},          {"--case Pull --top -1", 2, "1000000\n"},
    };
    for (const auto& row : rows) {
        const ProgramEnd end =
            runShell(folder_, std::string("vexa safety cube.wkm --analysis Static ") + row.arguments);
        EXPECT_EQ(end.exitCode, row.exitCode) << row.arguments;
        EXPECT_NE((end.errors + end.output).find(row.words), std::string::npos) << row.arguments << "\n"
                                                                                << end.errors;
    }
    EXPECT_EQ(runShell(folder_, "ls _SFT*").output, "") << "nothing is left behind";
}

TEST_F(SafetyTest, RefusesStrengthsThatAreNone) {
    for (const char* strength : {"cohesion = 10\n", "friction_angle = 30\n", "tensile_strength = 1\n",
                                 "cohesion = -1\nfriction_angle = 0\n", "cohesion = 1\nfriction_angle = 90\n",
                                 "cohesion = nan\nfriction_angle = 1\n",
                                 "cohesion = 1\nfriction_angle = 1\ntensile_strength = -1\n"}) {
        std::string deck = cubeDeck();
        deck.insert(deck.find("yield"), strength);
        folder_.write("cube.toml", deck);
        const ProgramEnd end = runShell(folder_, "vexa new cube.toml -o cube.wkm");
        EXPECT_EQ(end.exitCode, 1) << strength;
        EXPECT_NE(end.errors.find("cube.toml:"), std::string::npos) << end.errors;
    }
}

} // namespace
