#include "workbench/import/FrdReader.h"

#include "tests/support/TemporaryFolder.h"
#include "tests/workbench/import/FrdText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

using namespace workbench;

struct Collector final : FrdSink {
    std::vector<std::int32_t> nodes, elements;
    std::vector<std::vector<std::int32_t>> elementNodes;
    std::vector<FrdBlock> blocks;

    Result<void> meshNodes(const FrdBlock& block) override {
        nodes = block.nodes;
        return {};
    }
    Result<void> meshElement(const FrdElement& element) override {
        elements.push_back(element.number);
        elementNodes.emplace_back(element.nodes.begin(), element.nodes.end());
        return {};
    }
    bool wantsElementNodes() const override { return true; }
    bool wants(const FrdBlock& header) override { return header.name != "UNKNOWN"; }
    Result<void> block(FrdBlock& block, std::uint64_t, std::uint64_t) override {
        blocks.push_back(block);
        return {};
    }
};

std::string readError(const std::string& text) {
    Collector sink;
    TextWindow window = TextWindow::overMemory(text, "x.frd");
    const auto done = readFrd(window, sink);
    return done ? std::string() : done.error().message;
}

double sample(int node, int component) {
    return (component % 2 ? -1.25 : 1.5) * node + component * 1e-7;
}

std::string withLineEnds(std::string text) {
    std::string result;
    for (const char c : text)
        result += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return result;
}

std::string sampleFile(FrdForm form = FrdForm::Long) {
    const std::vector<int> nodes{1, 2, 5};
    return FrdText(form)
        .mesh(nodes, {7})
        .block("DISP", kDisplacement, nodes, sample, 1, 1, 0.5)
        .block("STRESS", kStress, nodes, sample, 1, 1, 0.5)
        .block("UNKNOWN", {"A"}, nodes, sample, 1, 1, 0.5)
        .block("SDV", {"1", "2", "3", "4", "5", "6", "7", "8"}, nodes, sample, 1, 2, 1)
        .block("DISP", kDisplacement, {5, 1}, sample, 2, 1, 123.5, 3)
        .end();
}

TEST(FrdReader, ReadsBlocksOfAllFormats) {
    const std::string rows[] = {sampleFile(), sampleFile(FrdForm::Short), withLineEnds(sampleFile()),
                                sampleFile(FrdForm::Binary)};
    const std::size_t binary = 3;
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(i);
        Collector sink;
        TextWindow window = TextWindow::overMemory(rows[i], "x.frd");
        const auto done = readFrd(window, sink);
        ASSERT_TRUE(done) << done.error().message;
        EXPECT_EQ(sink.nodes, (std::vector<std::int32_t>{1, 2, 5}));
        EXPECT_EQ(sink.elements, (std::vector<std::int32_t>{7}));
        EXPECT_EQ(sink.elementNodes, (std::vector<std::vector<std::int32_t>>{{1, 2}}));
        ASSERT_EQ(sink.blocks.size(), 4u);
        EXPECT_EQ(sink.blocks[0].components, (std::vector<std::string>{"D1", "D2", "D3"}));
        EXPECT_EQ(sink.blocks[0].value, 0.5);
        EXPECT_EQ(sink.blocks[0].increment, 1);
        EXPECT_EQ(sink.blocks[2].increment, 2);
        EXPECT_EQ(sink.blocks[3].step, 2);
        EXPECT_EQ(sink.blocks[3].mode, 3);
        EXPECT_EQ(sink.blocks[3].value, 123.5);
        EXPECT_EQ(sink.blocks[3].nodes, (std::vector<std::int32_t>{5, 1}));
        for (const FrdBlock& block : sink.blocks)
            for (std::size_t c = 0; c < block.values.size(); ++c)
                for (std::size_t n = 0; n < block.nodes.size(); ++n) {
                    char printed[32];
                    std::snprintf(printed, sizeof printed, "%12.5E", sample(block.nodes[n], int(c)));
                    const float expected =
                        i == binary ? float(sample(block.nodes[n], int(c))) : std::strtof(printed, nullptr);
                    EXPECT_EQ(block.values[c][n], expected) << block.name << " " << c;
                }
    }
}

/// A file cut anywhere is told from a whole one; what is cut off may only be the last line's end.
TEST(FrdReader, RefusesEveryTruncation) {
    for (const std::string& whole : {sampleFile(), sampleFile(FrdForm::Binary)}) {
        for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
            const std::string message = readError(whole.substr(0, length));
            ASSERT_FALSE(message.empty()) << "cut to " << length << " of " << whole.size() << " bytes";
            ASSERT_TRUE(message.starts_with("x.frd:")) << message;
        }
        EXPECT_EQ(readError(whole), "");
    }
}

TEST(FrdReader, RefusesBrokenValues) {
    const char* const fields[] = {"         NaN", "         Inf", "   -Infinity",
                                  "************", " 1.00000+100", " 1.00000E+99",
                                  "            ", " 1.0000 E+00", " 1,00000E+00"};
    for (const char* field : fields) {
        const std::string text = FrdText()
                                     .header("STRESS", kStress, 2)
                                     .row(11, {1, 2, 3, 4, 5, 6})
                                     .raw(" -1        12 1.00000E+00" + std::string(field) +
                                          " 1.00000E+00 1.00000E+00 1.00000E+00 1.00000E+00\n")
                                     .endBlock()
                                     .end();
        const std::string message = readError(text);
        EXPECT_TRUE(message.starts_with("x.frd:14: block STRESS, node 12, component SYY: "))
            << field << ": " << message;
    }
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        const std::string message = readError(FrdText(FrdForm::Binary)
                                                  .header("STRESS", kStress, 2)
                                                  .row(11, {1, 2, 3, 4, 5, 6})
                                                  .row(12, {1, value, 3, 4, 5, 6})
                                                  .endBlock()
                                                  .end());
        EXPECT_EQ(message, "x.frd:12: block STRESS, node 12, component SYY: the value is no finite number");
    }
}

TEST(FrdReader, RefusesBrokenStructure) {
    struct Row {
        std::string text;
        const char* words;
    };
    const auto replaced = [](std::string text, const std::string& from, const std::string& to) {
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return text.replace(at, from.size(), to);
    };
    const std::string good = sampleFile(), binary = sampleFile(FrdForm::Binary);
    const char kType[] = "\7\0\0\0\13"; // element 7 of type 11
    const Row rows[] = {
        {replaced(good, " 1\n -4  DISP", " 7\n -4  DISP"), "names no known format"},
        {replaced(good, " 1\n -4  DISP", " 2\n -4  DISP"), "begins no record"},
        {replaced(binary, " 2\n -4  DISP", " 1\n -4  DISP"), "no line of values of block DISP"},
        {replaced(binary, std::string(kType, 5), std::string("\7\0\0\0\15", 5)),
         "element 7 has the type 13, which is not known"},
        {replaced(good, " -4  DISP        4", " -4  DISP     9999"), "component count of DISP is broken"},
        {replaced(good, " -4  DISP        4", " -4  DISP        5"), "names too few components"},
        {replaced(good, "  100CL", "  200CL"), "begins no record of a result file"},
        {replaced(good, " -1         2 3", " -1         x 3"), "no line of values of block"},
        {replaced(good, "\n -1         5 7.5", "\n -3\n -1         5 7.5"), "announces 3 nodes and holds 2"},
        {replaced(good, " -2         1         2", " -2         1        2x"),
         "no line of the nodes of an element"},
        {replaced(good, " -1         7   11", " -1         0   11"), "no line of an element"},
        {replaced(good, " 5.00000E-01", "         NAN"), "NAN' is no time or frequency"},
        {replaced(good, "1PSTEP", "1PSTEP x"), "the numbers of the STEP line are broken"},
        {replaced(good, " 1.50000E+00-1.25000E+00 1.50000E+00\n",
                  " 1.50000E+00-1.25000E+00 1.50000E+00 1.50000E+00\n"),
         "has more than the 3 values of block DISP"},
        {"", "x.frd: the file ends without its end mark"},
    };
    for (const Row& row : rows) {
        const std::string message = readError(row.text);
        EXPECT_NE(message.find(row.words), std::string::npos)
            << "gave: " << message << "\nnot:  " << row.words;
    }
}

/// Bytes thrown in at random: an answer or a sentence, and never more memory than the file has room for.
TEST(FrdReader, SurvivesHugeCounts) {
    const std::string text =
        FrdText().header("STRESS", kStress, 2147483647).row(1, {1, 2, 3, 4, 5, 6}).endBlock().end();
    EXPECT_NE(readError(text).find("announces 2147483647 nodes and holds 1"), std::string::npos);
}

/// A beam of elements with middle nodes, bent by the real solver, which prints its results as it is asked to.
Collector solved(const std::string& requests) {
    TemporaryFolder folder;
    writeBytes(folder / "a.inp",
               "*NODE\n1,0,0,0\n2,1,0,0\n3,1,1,0\n4,0,1,0\n5,0,0,2\n6,1,0,2\n7,1,1,2\n8,0,1,2\n9,.5,0,0\n"
               "10,1,.5,0\n11,.5,1,0\n12,0,.5,0\n13,.5,0,2\n14,1,.5,2\n15,.5,1,2\n16,0,.5,2\n17,0,0,1\n"
               "18,1,0,1\n19,1,1,1\n20,0,1,1\n"
               "*ELEMENT,TYPE=C3D20,ELSET=E\n1,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,\n16,17,18,19,20\n"
               "*MATERIAL,NAME=M\n*ELASTIC\n210000.,.3\n*SOLID SECTION,ELSET=E,MATERIAL=M\n"
               "*BOUNDARY\n1,1,3\n2,1,3\n3,1,3\n4,1,3\n*STEP\n*STATIC\n*CLOAD\n7,1,100.\n" +
                   requests + "*END STEP\n");
    Collector sink;
    if (std::system(("cd '" + folder.path().string() + "' && ccx a > a.log 2>&1").c_str()) != 0) return sink;
    auto window = TextWindow::openFile(folder / "a.frd");
    EXPECT_TRUE(window) << window.error().message;
    const auto done = readFrd(*window, sink);
    EXPECT_TRUE(done) << done.error().message;
    return sink;
}

TEST(FrdReader, BinaryHoldsWhatTheTextOfTheSameRunDoes) {
    if (std::system("command -v ccx > /dev/null 2>&1") != 0) GTEST_SKIP() << "ccx is not installed";
    const Collector text = solved("*NODE FILE\nU\n*EL FILE\nS,E\n");
    const Collector binary = solved("*NODE OUTPUT\nU\n*ELEMENT OUTPUT\nS,E\n");
    EXPECT_EQ(text.nodes, binary.nodes);
    EXPECT_EQ(text.elementNodes, binary.elementNodes);
    ASSERT_GE(text.blocks.size(), 3u);
    ASSERT_EQ(text.blocks.size(), binary.blocks.size());
    for (std::size_t b = 0; b < text.blocks.size(); ++b) {
        EXPECT_EQ(text.blocks[b].name, binary.blocks[b].name);
        EXPECT_EQ(text.blocks[b].components, binary.blocks[b].components);
        ASSERT_EQ(text.blocks[b].nodes, binary.blocks[b].nodes);
        for (std::size_t c = 0; c < text.blocks[b].values.size(); ++c)
            for (std::size_t n = 0; n < text.blocks[b].nodes.size(); ++n) {
                const float printed = text.blocks[b].values[c][n];
                ASSERT_NEAR(binary.blocks[b].values[c][n], printed, 6e-6f * std::abs(printed) + 1e-30f);
            }
    }
}

} // namespace
