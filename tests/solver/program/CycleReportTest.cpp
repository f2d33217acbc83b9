#include "solver/CycleReport.h"

#include "solver/InterfaceReader.h"
#include "tests/solver/program/RunHarness.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

namespace {

using interfacefile::Content;

/// Two nodes with tensors of every component, one of them with two materials.
Content contentOf(int type, int option) {
    Content c = interfacefile::stepsOf({{0, 0, 0, 0, 0, 0}, {0, 0, 0, 0, 0, 0}});
    c.type = type;
    c.stressOption = c.strainOption = option;
    c.infiniteLife = 1e30;
    c.blocks = 7;
    c.flags = {1, 1, 1, 1, type == 2, type == 2, 1, 1, 1};
    c.materials.resize(2, c.materials[0]);
    c.strainLife.resize(2, c.strainLife[0]);
    c.strainLife[1].ductility = 0.1;
    c.materials[1].ultimate = 400e6;
    c.nodes[1].materials = {1, 2};
    const double size = type == 3 ? 2e-3 : 1e8;
    double value = 0.3;
    for (auto& node : c.nodes)
        for (std::size_t i = 0; i < node.tensors.size(); ++i) {
            for (double& component : node.tensors[i]) {
                value = 3.9 * value * (1 - value); // some numbers between 0 and 1
                component = size * (2 * value - 1);
            }
            node.strains.push_back(node.tensors[i]);
            for (double& component : node.strains.back())
                component *= 2e-11;
        }
    return c;
}

} // namespace

TEST(CycleReport, AddsUpToTheResult) {
    for (const int type : {2, 3, 4})
        for (int option = 1; option <= 4; ++option) {
            const Content content = contentOf(type, option);
            SolverRun run;
            ASSERT_EQ(run.run(content), 0) << run.err;
            const std::string bytes = interfacefile::build(content).bytes;
            const auto source = solver::openMemory("FATIGUE.76", std::as_bytes(std::span(bytes)));
            solver::InterfaceReader reader(*source);
            const auto definition = reader.readDefinition();
            ASSERT_TRUE(definition);
            solver::NodeBatch batch;
            ASSERT_TRUE(reader.readNodes(batch, 10));
            std::vector<std::string> notes;
            const auto plan = solver::makePlan(*definition, notes);
            ASSERT_TRUE(plan);
            for (std::size_t node = 0; node < 2; ++node) {
                const auto reports = solver::reportCycles(*definition, *plan, batch, node);
                ASSERT_TRUE(reports) << reports.error().message;
                ASSERT_EQ(reports->size(), type == 2 ? 6u : 4u);
                for (const auto& report : *reports) {
                    double damage = 0, largest = 0;
                    for (const auto& cycle : report.cycles) {
                        damage += cycle.damage;
                        largest = std::max(largest, cycle.range);
                        EXPECT_DOUBLE_EQ(cycle.damage, cycle.count / cycle.cyclesToFailure);
                        EXPECT_GE(cycle.largestStress, cycle.meanStress);
                    }
                    const float stored = run.values(resultfile::fatigue::kDamage, report.correction)[node];
                    EXPECT_NEAR(7 * damage / stored, 1, 1e-6) << "type " << type << ", option " << option;
                    const auto [low, high] =
                        std::minmax_element(report.history.begin(), report.history.end());
                    EXPECT_NEAR(largest, *high - *low, 1e-12 * largest);
                    EXPECT_EQ(report.stress.size(), type == 2 ? 0u : 6u);
                }
            }
        }
}

TEST(CycleReport, SaysWhichNodeHasNoMaterial) {
    Content content = contentOf(2, 1);
    content.nodes[1].materials = {};
    const std::string bytes = interfacefile::build(content).bytes;
    const auto source = solver::openMemory("FATIGUE.76", std::as_bytes(std::span(bytes)));
    solver::InterfaceReader reader(*source);
    const auto definition = reader.readDefinition();
    solver::NodeBatch batch;
    ASSERT_TRUE(definition && reader.readNodes(batch, 10));
    std::vector<std::string> notes;
    const auto reports = solver::reportCycles(*definition, *solver::makePlan(*definition, notes), batch, 1);
    ASSERT_FALSE(reports);
    EXPECT_NE(reports.error().message.find("node 2 has no material"), std::string::npos);
}
