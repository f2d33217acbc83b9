#include "base/Checksum.h"
#include "tests/solver/program/RunHarness.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using interfacefile::Content;

} // namespace

TEST(Check, SaysWhatASoundFileHolds) {
    struct Row {
        std::function<void(Content&)> change;
        std::vector<const char*> words;
    };
    const Row rows[] = {
        {[](Content&) {},
         {"is sound.", "model_Fatigue_Fatigue.lmop", "Type: stress-life over 1 load entry, blocks: 1\n",
          "Measure: absolute maximum principal; corrections: None\n", "Counting: all cycles\n",
          "Results: damage, life, equivalent amplitude; infinite life: 1e+12 cycles\n",
          "Material 1: elastic modulus 2.1e+11, ultimate strength 5e+08, yield strength 3e+08, Basquin curve "
          "1e+09 x N ^ -0.1\n",
          "Load function 1: 4 points, times 0 to 3, values -1 to 1\n",
          "Load entry 1: result case 1 x 1 by load function 1\n", "Times on the merged axis: 4\n",
          "Nodes: 2, numbers 11 to 25\n"}},
        {[](Content& c) {
             c.materials[0].curveType = 2;
             c.materials[0].points = {{1e3, 4e8}, {1e6, 2e8}};
             c.nodes[0].materials = {};
             c.flags = {0, 1, 0, 0, 0, 0, 0, 1, 0};
             c.quick = {1, 5};
             c.stressOption = 2;
         },
         {"tabulated curve, 2 points from 4e+08 at 1000 cycles to 2e+08 at 1e+06\n",
          "without a material, so left out: 1\n", "signed von Mises; corrections: Goodman\n",
          "Results: life;", "cycles below 5 % of the largest range are left out\n"}},
        {[](Content& c) {
             c.materials.assign(23, c.materials[0]);
             c.flags[1] = 1;
             c.materials[22].ultimate = 0;
         },
         {"Material 20: ", "... and 3 materials more\n", "Goodman is left out: material 23 has no ultimate"}},
    };
    for (const Row& row : rows) {
        Content content;
        row.change(content);
        SolverRun run;
        ASSERT_EQ(run.run(content, {"--check"}), 0) << run.err;
        for (const char* words : row.words)
            EXPECT_NE(run.out.find(words), std::string::npos) << words << " is missing in\n" << run.out;
        const std::string bytes = bytesOf(run.interfaceFile());
        EXPECT_NE(run.out.find("Bytes: " + std::to_string(bytes.size()) +
                               ", checksum: " + checksumText(Checksum::of(std::as_bytes(std::span(bytes))))),
                  std::string::npos)
            << run.out;
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.leftBehind(), "") << "computes and writes nothing";
    }
}

// What lies behind the definition is found too, and what the run would refuse is refused here.
TEST(Check, RefusesWithTheSentenceOfTheRun) {
    struct Row {
        std::function<void(Content&)> change;
        std::function<void(std::string&)> damage;
        const char* words;
    };
    const auto sound = [](std::string&) {};
    const Row rows[] = {
        {[](Content&) {}, [](std::string& bytes) { bytes.pop_back(); },
         "announces 1 loads, but the rest of the file has room for 0"},
        {[](Content&) {}, [](std::string& bytes) { bytes += '\0'; }, "follow"},
        {[](Content&) {}, [](std::string& bytes) { bytes[0] = 5; }, "record 1 (file name) at byte 0"},
        {[](Content& c) { c.nodes[1].tensors[0][5] = std::numeric_limits<double>::infinity(); }, sound,
         "the loads of node 25 hold a value that is not finite"},
        {[](Content& c) { c.nodes[1].number = 10; }, sound, "the numbers must ascend"},
        {[](Content& c) { c.nodes[1].materials = {2}; }, sound, "a material index is 2, expected 1 to 1"},
        {[](Content& c) { c.loads[0].function = 9; }, sound, "it names load function 9"},
        {[](Content& c) {
             c.axis = {0, 1, 3};
         },
         sound, "the times leave out a point"},
        {[](Content& c) { c.materials[0].basquin[1] = 0.1; }, sound, "material 1: the exponent"},
        {[](Content& c) { c.name = "\xB8\xF0"; }, sound, "is not text in the code page UTF-8"},
        {[](Content& c) { c.nodes[0].materials = c.nodes[1].materials = {}; }, sound,
         "no node has a material"},
    };
    for (const Row& row : rows) {
        Content content;
        row.change(content);
        std::string bytes = interfacefile::build(content).bytes;
        row.damage(bytes);
        SolverRun run;
        EXPECT_EQ(run.runBytes(bytes, {"--check"}), 1) << row.words;
        EXPECT_NE(run.err.find(row.words), std::string::npos) << row.words << ": " << run.err;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
        EXPECT_EQ(run.out, "");
        const std::string said = run.err;
        EXPECT_EQ(run.runBytes(bytes), 1);
        EXPECT_EQ(run.err, said);
        EXPECT_EQ(run.leftBehind(), "");
    }
}
