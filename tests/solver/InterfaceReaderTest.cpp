#include "solver/InterfaceReader.h"

#include "tests/solver/InterfaceFileBytes.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using interfacefile::Content;

struct Everything {
    solver::Definition definition;
    std::vector<std::int32_t> numbers;
    std::vector<std::vector<std::uint32_t>> materials;
    std::vector<solver::Tensor> tensors;
};

Result<Everything> readAll(const std::string& bytes, std::size_t blockBytes = 128,
                           std::size_t nodesAtATime = 1) {
    const auto source = solver::openMemory("FATIGUE.76", std::as_bytes(std::span(bytes)));
    solver::InterfaceReader reader(*source, blockBytes);
    Everything all;
    auto definition = reader.readDefinition();
    if (!definition) return definition.error();
    all.definition = *definition;
    for (solver::NodeBatch batch;;) {
        if (const auto read = reader.readNodes(batch, nodesAtATime); !read) return read.error();
        if (batch.size() == 0) break;
        EXPECT_LE(batch.size(), nodesAtATime);
        all.numbers.insert(all.numbers.end(), batch.numbers.begin(), batch.numbers.end());
        all.tensors.insert(all.tensors.end(), batch.tensors.begin(), batch.tensors.end());
        std::size_t begin = 0;
        for (const std::uint32_t end : batch.materialEnds) {
            all.materials.emplace_back(batch.materials.begin() + static_cast<std::ptrdiff_t>(begin),
                                       batch.materials.begin() + static_cast<std::ptrdiff_t>(end));
            begin = end;
        }
    }
    EXPECT_EQ(reader.checksum(), Checksum::of(std::as_bytes(std::span(bytes))));
    return all;
}

/// Small, but with every kind of record that its type has.
Content fullContent(int type) {
    Content c;
    c.type = type;
    c.materials.push_back(c.materials.front());
    c.materials.back().curveType = 2;
    c.materials.back().points = {{1e3, 400e6}, {1e6, 200e6}, {1e8, 150e6}};
    c.functions.push_back({9, {{0.5, 2}, {2, -1}}});
    c.axis = {0, 0.5, 1, 2, 3};
    c.loads = {{101, 1.5, 9}, {102, -2, 1}, {103, 1, 9}};
    c.steps = 3;
    c.blocks = 40;
    c.nodes = {{3, {1, 2}, {}}, {4, {}, {}}, {70000, {2}, {}}};
    double value = 0;
    for (auto& node : c.nodes) {
        node.tensors.resize(3);
        for (auto& tensor : node.tensors)
            for (double& component : tensor)
                component = value += 1.25;
    }
    return c;
}

} // namespace

TEST(InterfaceReader, ReadsEveryTypeInAnyPieces) {
    for (int type = 0; type <= 4; ++type) {
        const Content content = fullContent(type);
        const auto bytes = interfacefile::build(content).bytes;
        for (const auto& [blockBytes, nodesAtATime] :
             {std::pair<std::size_t, std::size_t>{1, 1}, {1100, 2}, {1 << 20, 100}}) {
            const auto all = readAll(bytes, blockBytes, nodesAtATime);
            ASSERT_TRUE(all) << all.error().message;
            const solver::Definition& d = all->definition;
            EXPECT_EQ(d.resultFileStem, "model_Fatigue");
            EXPECT_EQ(static_cast<int>(d.type), type);
            EXPECT_EQ(d.loadCycleCount, 40);
            EXPECT_EQ(all->numbers, (std::vector<std::int32_t>{3, 4, 70000}));
            EXPECT_EQ(all->materials, (std::vector<std::vector<std::uint32_t>>{{0, 1}, {}, {1}}));
            const std::size_t perLoad = type == 4 ? 2 : 1;
            ASSERT_EQ(all->tensors.size(), 9 * perLoad);
            EXPECT_EQ(all->tensors.back(), content.nodes.back().tensors.back());
            EXPECT_EQ(all->tensors[3 * perLoad], content.nodes[1].tensors[0]);
        }
    }
}

TEST(InterfaceReader, ReadsEachField) {
    Content content = fullContent(0);
    content.programType = 2;
    content.stressOption = 3;
    content.strainOption = 4;
    content.quick = {1, 7};
    content.flags = {0, 1, 0, 1, 0, 1, 0, 1, 0};
    content.infiniteLife = 2.5e7;
    const auto all = readAll(interfacefile::build(content).bytes);
    ASSERT_TRUE(all) << all.error().message;
    const solver::Definition& d = all->definition;
    EXPECT_EQ(d.programType, 2);
    EXPECT_EQ(d.analysisKey, 7);
    EXPECT_EQ(d.stressOption, 3);
    EXPECT_EQ(d.strainOption, 4);
    EXPECT_TRUE(d.quickRainflow);
    EXPECT_EQ(d.rainflowValue, 7);
    EXPECT_EQ(d.corrections, (std::array<bool, 6>{false, true, false, true, false, true}));
    EXPECT_EQ(d.outputs, (std::array<bool, 3>{false, true, false}));
    EXPECT_EQ(d.infiniteLife, 2.5e7);
    EXPECT_EQ(d.stressLifeMaterials[0].ultimateStrength, 500e6); // written before the yield strength
    EXPECT_EQ(d.stressLifeMaterials[0].yieldStrength, 300e6);
    EXPECT_EQ(d.stressLifeMaterials[0].basquin, (std::array<double, 2>{1000e6, -0.1}));
    EXPECT_TRUE(d.stressLifeMaterials[1].tabulated);
    EXPECT_EQ(d.stressLifeMaterials[1].points[2].cycles, 1e8);
    EXPECT_EQ(d.stressLifeMaterials[1].points[2].amplitude, 150e6);
    EXPECT_EQ(d.functions[1].number, 9);
    EXPECT_EQ(d.functions[1].times, (std::vector<double>{0.5, 2}));
    EXPECT_EQ(d.functions[1].values, (std::vector<double>{2, -1}));
    EXPECT_EQ(d.times, content.axis);
    EXPECT_EQ(d.loads[1].caseKey, 102);
    EXPECT_EQ(d.loads[1].factor, -2);
    EXPECT_EQ(d.loads[1].function, 0u);
    EXPECT_EQ(d.loads[2].function, 1u);
}

TEST(InterfaceReader, NameMayFillItsField) {
    Content content;
    content.name = std::string(1024, 'n');
    const auto all = readAll(interfacefile::build(content).bytes);
    ASSERT_TRUE(all) << all.error().message;
    EXPECT_EQ(all->definition.resultFileStem, content.name);
}

TEST(InterfaceReader, EveryTruncationIsRefused) {
    for (int type = 0; type <= 4; ++type) {
        const auto bytes = interfacefile::build(fullContent(type)).bytes;
        for (std::size_t length = 0; length < bytes.size(); ++length) {
            const auto all = readAll(bytes.substr(0, length));
            ASSERT_FALSE(all) << "type " << type << ", " << length << " of " << bytes.size() << " bytes";
            ASSERT_NE(all.error().message.find("FATIGUE.76: record "), std::string::npos)
                << all.error().message;
        }
        EXPECT_FALSE(readAll(bytes + 'x'));
        EXPECT_FALSE(readAll(bytes + bytes));
    }
}

TEST(InterfaceReader, EveryChangedByteOfACountIsRefused) {
    for (int type = 0; type <= 4; ++type) {
        const auto file = interfacefile::build(fullContent(type));
        for (const std::size_t count : file.counts)
            for (std::size_t byte = count; byte < count + 4; ++byte)
                for (int change = 1; change < 256; ++change) {
                    std::string bytes = file.bytes;
                    bytes[byte] = static_cast<char>(bytes[byte] ^ change);
                    ASSERT_FALSE(readAll(bytes))
                        << "type " << type << ", byte " << byte << " changed by " << change;
                }
    }
}

TEST(InterfaceReader, SaysWhatIsWrongAndWhere) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Row {
        std::function<void(Content&)> change;
        const char* words;
    };
    const Row rows[] = {
        {[](Content& c) { c.name = ""; }, "record 1 (file name) at byte 0: the result file name is empty"},
        {[](Content& c) { c.programType = 3; },
         "record 2 (program type) at byte 1032: the program type is 3, expected 1 to 2"},
        {[](Content& c) { c.headerFirst = 2; }, "(header) at byte 1044: its first value is 2, expected 1"},
        {[](Content& c) { c.nodes.clear(); }, "the number of nodes is 0, expected 1 or more"},
        {[](Content& c) { c.headerMaterials = 0; }, "the number of materials is 0"},
        {[](Content& c) { c.headerMaterials = 1; }, "listed twice"},
        {[](Content& c) { c.headerMaterials = 3; }, "(material strengths)"},
        {[](Content& c) { c.headerMaterials = 1 << 30; },
         "announces 1073741824 materials, but the rest of the file has room for"},
        {[](Content& c) { c.type = 5; }, "the analysis type is 5, expected 0 to 4"},
        {[](Content& c) { c.stressOption = 0; }, "the stress option is 0"},
        {[](Content& c) { c.stressOption = 5; }, "the stress option is 5"},
        {[](Content& c) { c.strainOption = 0; }, "the strain option is 0"},
        {[](Content& c) { c.planeMethod = 1; }, "(critical plane method)"},
        {[](Content& c) {
             c.quick = {2, 0};
         },
         "the flag is 2, expected 0 to 1"},
        {[](Content& c) {
             c.quick = {1, 101};
         },
         "per cent of the largest range is 101"},
        {[](Content& c) { c.flags[4] = -1; }, "a mean-stress flag is -1"},
        {[](Content& c) { c.flags[8] = 2; }, "an output flag is 2"},
        {[](Content& c) {
             c.type = 3;
             c.flags[5] = 1;
         },
         "the fifth or sixth mean-stress flag is set"},
        {[](Content& c) { c.infiniteLife = 0; }, "the infinite life is 0 cycles"},
        {[=](Content& c) { c.infiniteLife = nan; }, "the infinite life is not a finite number"},
        {[=](Content& c) { c.materials[0].ultimate = nan; }, "the ultimate strength is not a finite number"},
        {[](Content& c) { c.materials[0].curveType = 3; }, "the curve type is 3, expected 1 to 2"},
        {[](Content& c) { c.blocks = 0; }, "the number of load cycles is 0"},
        {[](Content& c) { c.functions[1].number = 1; }, "load function 1 comes twice"},
        {[](Content& c) { c.functions[0].points[1][0] = 0; },
         "time 0 of load function 1 does not lie behind"},
        {[](Content& c) { c.functions[1].points.clear(); }, "its number of points is 0"},
        {[](Content& c) { c.axis[2] = 0.5; }, "time 0.5 does not lie behind the time before it, 0.5"},
        {[](Content& c) { c.axis.erase(c.axis.begin() + 1); }, "leave out a point of load function 9"},
        {[](Content& c) { c.loads[0].function = 8; }, "it names load function 8, which is not in the file"},
        {[=](Content& c) { c.loads[0].factor = nan; }, "the load factor is not a finite number"},
        {[](Content& c) { c.nodes[1].number = 3; }, "node 3 follows node 3"},
        {[](Content& c) { c.nodes[2].materials = {3}; }, "a material index is 3, expected 1 to 2"},
        {[](Content& c) { c.nodes[2].materials = {0}; }, "a material index is 0"},
        {[](Content& c) {
             c.nodes[0].materials = {2, 1};
         },
         "do not ascend"},
        {[](Content& c) {
             c.nodes[0].materials = {1, 1};
         },
         "do not ascend"},
        {[=](Content& c) { c.nodes[2].tensors[1][5] = nan; },
         "the loads of node 70000 hold a value that is not finite"},
        {[](Content& c) { c.nodes[2].tensors[0][0] = -std::numeric_limits<double>::infinity(); },
         "not finite"},
    };
    for (const Row& row : rows) {
        Content content = fullContent(0);
        row.change(content);
        const auto all = readAll(interfacefile::build(content).bytes);
        ASSERT_FALSE(all) << row.words;
        EXPECT_NE(all.error().message.find(row.words), std::string::npos) << all.error().message;
    }
}

TEST(InterfaceReader, EachNodeRepeatsItsNumberAndTheCasesOfTheLoads) {
    const Content content = fullContent(0);
    const std::string bytes = interfacefile::build(content).bytes;
    const auto refusal = [&](const std::string& original, const std::string& changed) {
        std::string broken = bytes;
        broken.replace(broken.rfind(original), original.size(), changed);
        const auto all = readAll(broken);
        return all ? std::string("read") : all.error().message;
    };
    const auto number = [](int value) {
        return interfacefile::Bytes::littleEndian(static_cast<unsigned>(value), 4);
    };
    EXPECT_NE(refusal(number(3) + number(70000), number(3) + number(70001))
                  .find("the node number is 70000 at first and 70001 the second time"),
              std::string::npos);
    EXPECT_NE(refusal(number(52) + number(102), number(52) + number(101))
                  .find("the case of node 70000, load 2 is 101, expected 102"),
              std::string::npos);
}
