#include "workbench/import/FrdReader.h"

#include "tests/workbench/import/FrdText.h"

#include <gtest/gtest.h>

#include <algorithm>

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

std::string sampleFile(bool shortFormat) {
    const std::vector<int> nodes{1, 2, 5};
    return FrdText(shortFormat)
        .mesh(nodes, {7})
        .block("DISP", kDisplacement, nodes, sample, 1, 1, 0.5)
        .block("STRESS", kStress, nodes, sample, 1, 1, 0.5)
        .block("UNKNOWN", {"A"}, nodes, sample, 1, 1, 0.5)
        .block("SDV", {"1", "2", "3", "4", "5", "6", "7", "8"}, nodes, sample, 1, 2, 1)
        .block("DISP", kDisplacement, {5, 1}, sample, 2, 1, 123.5, 3)
        .end();
}

TEST(FrdReader, ReadsBlocksOfAllFormats) {
    const std::string rows[] = {sampleFile(false), sampleFile(true), withLineEnds(sampleFile(false))};
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
                    EXPECT_EQ(block.values[c][n], std::strtof(printed, nullptr)) << block.name << " " << c;
                }
    }
}

/// A file cut anywhere is told from a whole one; what is cut off may only be the last line's end.
TEST(FrdReader, RefusesEveryTruncation) {
    const std::string whole = sampleFile(false);
    for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
        const std::string message = readError(whole.substr(0, length));
        ASSERT_FALSE(message.empty()) << "cut to " << length << " of " << whole.size() << " bytes";
        ASSERT_TRUE(message.starts_with("x.frd:")) << message;
    }
    EXPECT_EQ(readError(whole), "");
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
    const std::string good = sampleFile(false);
    const Row rows[] = {
        {replaced(good, " 1\n -4  DISP", " 7\n -4  DISP"), "names no known format"},
        {replaced(good, " 1\n -4  DISP", " 2\n -4  DISP"), "the file is binary"},
        {replaced(good, " -4  DISP        4", " -4  DISP     9999"), "component count of DISP is broken"},
        {replaced(good, " -4  DISP        4", " -4  DISP        5"), "names too few components"},
        {replaced(good, "  100CL", "  200CL"), "begins no record of a result file"},
        {replaced(good, " -1         2 3", " -1         x 3"), "no line of values of block"},
        {replaced(good, "\n -1         5 7.5", "\n -3\n -1         5 7.5"), "announces 3 nodes and holds 2"},
        {replaced(good, " -2         1         2", " -2         1        2x"),
         "no line of the nodes of an element"},
        {replaced(good, " -1         7    1", " -1         0    1"), "no line of an element"},
        {replaced(good, " 5.00000E-01", "         NAN"), "NAN' is no time or frequency"},
        {replaced(good, "1PSTEP", "1PSTEP x"), "the numbers of the STEP line are broken"},
        {replaced(good, " 1.50000E+00-1.25000E+00 1.50000E+00\n",
                  " 1.50000E+00-1.25000E+00 1.50000E+00 1.50000E+00\n"),
         "has more than the 3 values of block DISP"},
        {"", "x.frd:0: the file ends without its end mark"},
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

} // namespace
