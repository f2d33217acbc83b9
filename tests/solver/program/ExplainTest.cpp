#include "tests/solver/SvgSheet.h"
#include "tests/solver/program/RunHarness.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <sstream>

namespace {

using interfacefile::Content;

/// Sums of damage_per_block by correction.
std::map<std::string, double> damageSums(const std::string& csv) {
    std::map<std::string, double> sums;
    std::istringstream lines(csv);
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line))
        sums[line.substr(0, line.find(','))] += std::strtod(line.c_str() + line.rfind(',') + 1, nullptr);
    return sums;
}

} // namespace

TEST(Explain, CyclesAddUpToWhatTheRunWrites) {
    struct Row {
        const char* what;
        std::function<void(Content&)> change;
    };
    const Row rows[] = {
        {"as it is", [](Content&) {}},
        {"two corrections", [](Content& c) { c.flags = {1, 1, 0, 0, 0, 0, 1, 1, 0}; }},
        {"several blocks", [](Content& c) { c.blocks = 7; }},
        {"critical plane", [](Content& c) { c.stressOption = 4; }},
    };
    for (const Row& row : rows) {
        Content content;
        row.change(content);
        SolverRun run;
        ASSERT_EQ(run.run(content), 0) << row.what << run.err;
        ASSERT_EQ(run.run(content, {"--explain", "11"}), 0) << row.what << run.err;
        EXPECT_NE(run.out.find("Node 11: stress-life"), std::string::npos) << run.out;
        const auto sums = damageSums(bytesOf(run.path("node_11_cycles.csv")));
        ASSERT_FALSE(sums.empty());
        for (const auto& [name, sum] : sums) {
            const unsigned correction = name == "Goodman" ? 1 : 0;
            const float written = run.values(resultfile::fatigue::kDamage, correction)[0];
            EXPECT_GT(written, 0) << row.what;
            EXPECT_NEAR(sum * content.blocks, written, 2e-7 * written) << row.what << ", " << name;
        }
        for (const char* picture : {"node_11_history.svg", "node_11_matrix.svg"})
            SvgSheet(bytesOf(run.path(picture))).expectReadable(std::string(row.what) + ", " + picture);
    }
}

TEST(Explain, RefusesANodeThatIsNotThereAndLeavesNothing) {
    struct Row {
        std::vector<std::string> options;
        std::function<void(Content&)> change;
        int code;
        const char* words;
    };
    const auto sound = [](Content&) {};
    const Row rows[] = {
        {{"--explain", "12"}, sound, 1, "has no node 12; its nodes have numbers from 11 to 25"},
        {{"--explain", "11"}, [](Content& c) { c.nodes[0].materials = {}; }, 1, "node 11 has no material"},
        {{"--explain", "x"}, sound, 2, "needs the number of a node"},
        {{"--explain", "11", "--check"}, sound, 2, "ask for one of them"},
        {{"--explain", "11", "-o", "/nowhere/at/all"}, sound, 3, "/nowhere/at/all_cycles.csv"},
        {{"-o", "stem"}, sound, 2, "-o belongs to --explain"},
    };
    for (const Row& row : rows) {
        Content content;
        row.change(content);
        SolverRun run;
        EXPECT_EQ(run.run(content, row.options), row.code) << row.words;
        EXPECT_NE(run.err.find(row.words), std::string::npos) << row.words << ": " << run.err;
        EXPECT_EQ(run.leftBehind(), "") << row.words;
    }
}
