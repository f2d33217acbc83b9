#include "tests/resultfile/Sample.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <limits>

using namespace resultfile;

namespace {

struct Shape {
    std::string name;
    std::function<void(Sample&)> change;
};

/// Names a test after its row.
struct RowName {
    template <class Row>
    std::string operator()(const testing::TestParamInfo<Row>& row) const {
        return row.param.name;
    }
};

std::vector<std::int32_t> counted(std::size_t size, std::int32_t first) {
    std::vector<std::int32_t> numbers(size);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

const std::vector<Shape> kShapes{
    {"OneOfEverything", [](Sample&) {}},
    {"NoElements",
     [](Sample& s) {
         s.elements.clear();
         s.corners.clear();
         s.lists[1].positions.clear();
     }},
    {"EmptyMesh",
     [](Sample& s) {
         s.nodes.clear();
         s.elements.clear();
         s.corners.clear();
         for (auto& list : s.lists)
             list.positions.clear();
     }},
    {"NoCases", [](Sample& s) { s.cases.clear(); }},
    {"NoSteps", [](Sample& s) { s.steps.clear(); }},
    {"NoTables", [](Sample& s) { s.tables.clear(); }},
    {"NoSources", [](Sample& s) { s.sources.clear(); }},
    {"ManySources", [](Sample& s) { s.sources.assign(300, "Wind * -0.9"); }},
    {"NoLists",
     [](Sample& s) {
         s.lists.clear();
         s.tables.resize(2);
     }},
    {"EmptyTexts",
     [](Sample& s) {
         s.analysis.clear();
         s.inputChecksum.clear();
         s.cases = {""};
     }},
    {"LongestTexts",
     [](Sample& s) {
         s.analysis.assign(4096, 'a');
         s.lists[0].name.assign(4095, 'b');
         s.tables[2].items = s.lists[0].name;
     }},
    {"EveryUtf8Length",
     [](Sample& s) {
         s.cases = {"a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"};
     }},
    {"ExtremeNumbers",
     [](Sample& s) {
         s.nodes.front() = std::numeric_limits<std::int32_t>::min();
         s.nodes.back() = std::numeric_limits<std::int32_t>::max();
         s.corners = {0, 0, 1000};
     }},
    {"ManySteps", // more than a group keeps in its header, and past a change of digits
     [](Sample& s) {
         s.steps.clear();
         for (int i = 0; i < 120; ++i)
             s.steps.push_back("t" + std::to_string(i));
     }},
    {"ManyTables",
     [](Sample& s) {
         for (unsigned i = 0; i < 100; ++i)
             s.tables.push_back({i * 1009 % 100 + 1000, Location::Node, ""});
     }},
    {"LargerThanGathered",
     [](Sample& s) {
         s.nodes = counted(300'000, 1);
         s.steps.resize(1);
     }},
    {"LargerThanBlock",
     [](Sample& s) {
         s.nodes = counted(1024 * 1024 + 1, -5);
         s.steps.resize(1);
         s.cases.resize(1);
     }},
};

class RoundTrip : public testing::TestWithParam<Shape> {};

void compareContents(const Contents& contents, const Sample& sample) {
    EXPECT_EQ(contents.analysis, sample.analysis);
    EXPECT_EQ(contents.producer, "test 1.0");
    EXPECT_EQ(contents.inputChecksum, sample.inputChecksum);
    EXPECT_EQ(contents.sources, sample.sources);
    EXPECT_EQ(contents.nodeCount, sample.nodes.size());
    EXPECT_EQ(contents.elementCount, sample.elements.size());
    EXPECT_EQ(contents.cornerCount, sample.count({0, Location::ElementCorner, ""}));
    ASSERT_EQ(contents.cases.size(), sample.cases.size());
    for (std::size_t c = 0; c < contents.cases.size(); ++c) {
        EXPECT_EQ(contents.cases[c].name, sample.cases[c]);
        ASSERT_EQ(contents.cases[c].steps.size(), sample.steps.size());
        for (std::size_t s = 0; s < sample.steps.size(); ++s) {
            const Step& step = contents.cases[c].steps[s];
            EXPECT_EQ(step.name, sample.steps[s]);
            EXPECT_EQ(step.value, static_cast<double>(s) * 0.1);
            EXPECT_EQ(step.components.size(), sample.tables.size());
            EXPECT_TRUE(std::is_sorted(step.components.begin(), step.components.end(),
                                       [](const auto& a, const auto& b) { return a.id < b.id; }));
        }
    }
}

void compareTables(const Reader& reader, const Sample& sample, std::size_t c, std::size_t s) {
    for (const Sample::Table& table : sample.tables) {
        SCOPED_TRACE(table.id);
        const auto expected = sample.values(c, s, table);
        const auto values = reader.values(c, s, table.id);
        ASSERT_OK(values);
        EXPECT_EQ(*values, expected);
        std::vector<float> whole(expected.size());
        EXPECT_OK(reader.valuesInto(c, s, table.id, 0, whole));
        EXPECT_EQ(whole, expected);
        const std::size_t first = expected.size() / 3;
        std::vector<float> part(expected.size() / 2);
        EXPECT_OK(reader.valuesInto(c, s, table.id, first, part));
        EXPECT_TRUE(
            std::equal(part.begin(), part.end(), expected.begin() + static_cast<std::ptrdiff_t>(first)));
        EXPECT_FALSE(reader.valuesInto(c, s, table.id, first + 1, whole)) << "beyond the end";
    }
}

TEST_P(RoundTrip, GivesBackWhatWasWritten) {
    Sample sample;
    GetParam().change(sample);
    const TemporaryFolder folder;
    EXPECT_OK(sample.writeTo(folder / "결과.lmop"));
    const auto reader = Reader::open(folder / "결과.lmop");
    ASSERT_OK(reader);
    compareContents(reader->contents(), sample);
    EXPECT_EQ(*reader->nodeNumbers(), sample.nodes);
    EXPECT_EQ(*reader->elementNumbers(), sample.elements);
    EXPECT_EQ(*reader->elementCornerCounts(), sample.corners);
    for (const auto& list : sample.lists)
        EXPECT_EQ(*reader->items(list.name), list.positions) << list.name;
    for (std::size_t c = 0; c < sample.cases.size(); ++c)
        for (std::size_t s = 0; s < sample.steps.size(); ++s)
            compareTables(*reader, sample, c, s);
}

TEST_P(RoundTrip, IsTheSameInPieces) {
    Sample sample;
    GetParam().change(sample);
    const TemporaryFolder folder;
    EXPECT_OK(sample.writeTo(folder / "whole.lmop"));
    const auto whole = readEverything(folder / "whole.lmop");
    ASSERT_OK(whole);
    const std::size_t smallest = std::max<std::size_t>(1, sample.nodes.size() / 100);
    for (const std::size_t piece :
         {smallest, std::size_t{7} * smallest, std::size_t{65536}, std::size_t{65537}}) {
        EXPECT_OK(sample.writeTo(folder / "pieces.lmop", piece));
        const auto pieces = readEverything(folder / "pieces.lmop");
        ASSERT_OK(pieces);
        EXPECT_EQ(*pieces, *whole) << "in pieces of " << piece;
    }
}

INSTANTIATE_TEST_SUITE_P(Shapes, RoundTrip, testing::ValuesIn(kShapes), RowName());

TEST(ResultFile, IsReproducible) {
    const TemporaryFolder folder;
    EXPECT_OK(Sample().writeTo(folder / "a.lmop"));
    EXPECT_OK(Sample().writeTo(folder / "b.lmop"));
    EXPECT_EQ(bytesOf(folder / "a.lmop"), bytesOf(folder / "b.lmop"));
}

TEST(ResultFile, AskingForWhatIsMissingIsAnError) {
    const TemporaryFolder folder;
    EXPECT_OK(Sample().writeTo(folder / "a.lmop"));
    const auto reader = Reader::open(folder / "a.lmop");
    ASSERT_OK(reader);
    EXPECT_FALSE(reader->values(2, 0, 9));
    EXPECT_FALSE(reader->values(0, 3, 9));
    EXPECT_FALSE(reader->values(0, 0, 10));
    EXPECT_FALSE(reader->items("missing"));
    std::vector<float> two(2);
    EXPECT_FALSE(reader->valuesInto(0, 0, 9, std::numeric_limits<std::uint64_t>::max(), two));
    EXPECT_TRUE(reader->values(0, 0, 9)) << "the reader goes on after an error";
}

struct Misuse {
    std::string name;
    std::function<void(Writer&)> act; ///< after mesh, list "surface", case "A", step "1" and its table 5
    std::string message;
};

void PrintTo(const Misuse& misuse, std::ostream* out) {
    *out << misuse.name;
}

const float kNan = std::numeric_limits<float>::quiet_NaN();
const float kInfinity = std::numeric_limits<float>::infinity();

std::vector<float> tenWith(std::size_t position, float value) {
    std::vector<float> values(10, 1.0f);
    values[position] = value;
    return values;
}

#define ACT(call) [](Writer& w) { (void)(call); }
const std::vector<Misuse> kMisuses{
    {"SecondMesh", ACT(w.setMesh({})), "the mesh is set twice"},
    {"SameCase", ACT(w.beginCase("A")), "case \"A\" is there twice"},
    {"SameStep", ACT(w.beginStep("1", 0)), "step \"1\" of case \"A\" is there twice"},
    {"SameTable", ACT(w.writeTable(5, Location::Node, tenWith(0, 0))),
     "component 5 of step \"1\" of case \"A\" is there twice"},
    {"SameList", ACT(w.addItems("surface", Location::Node, {})), "item list \"surface\" is there twice"},
    {"UnnamedList", ACT(w.addItems("", Location::Node, {})), "has no name"},
    {"ListOutOfRange", ACT(w.addItems("x", Location::Node, std::vector<std::uint32_t>{3, 10})),
     "positions below 10"},
    {"ListDescending", ACT(w.addItems("x", Location::Node, std::vector<std::uint32_t>{3, 3})),
     "ascending positions"},
    {"ListOfElementsOutOfRange", ACT(w.addItems("x", Location::ElementCorner, std::vector<std::uint32_t>{3})),
     "below 3"},
    {"MissingList", ACT(w.writeTable(6, Location::Node, {}, "x")), "item list \"x\", which is missing"},
    {"ListElsewhere", ACT(w.writeTable(6, Location::ElementCorner, {}, "surface")), "different locations"},
    {"WrongCount", ACT(w.writeTable(6, Location::ElementCorner, tenWith(0, 0))),
     "has 10 values where the mesh has 18"},
    {"NotANumber", ACT(w.writeTable(6, Location::Node, tenWith(9, kNan))),
     "component 6 of step \"1\" of case \"A\" is not finite at value 10 of 10"},
    {"MinusInfinity", ACT(w.writeTable(6, Location::Node, tenWith(0, -kInfinity))), "at value 1 of 10"},
    {"NotANumberInAPiece",
     [](Writer& w) {
         auto table = w.openTable(6, Location::Node, 10);
         (void)table->append(std::vector<float>(4, 0.0f));
         (void)table->append(std::vector<float>{0.0f, kInfinity});
     },
     "at value 6 of 10"},
    {"StepValue", ACT(w.beginStep("2", kNan)), "has a value that is not finite"},
    {"TooMany", [](Writer& w) { (void)w.openTable(6, Location::Node, 10)->append(std::vector<float>(11)); },
     "gets more than its 10 values"},
    {"TooFew",
     [](Writer& w) {
         (void)w.openTable(6, Location::Node, 10)->append(std::vector<float>(9));
         (void)w.beginStep("2", 0);
     },
     "component 6 of step \"1\" of case \"A\" has 9 of its 10 values"},
    {"TooFewAtTheEnd", [](Writer& w) { (void)w.openTable(6, Location::Node, 10); }, "has 0 of its 10 values"},
    {"StaleTable",
     [](Writer& w) {
         auto table = w.openTable(6, Location::Node, 10);
         (void)table->append(std::vector<float>(10));
         (void)w.beginStep("2", 0);
         (void)w.openTable(7, Location::Node, 10);
         (void)table->append(std::vector<float>(1));
     },
     "a table whose step has ended"},
    {"BrokenName", ACT(w.beginCase("\xED\xA0\x80")), "is not UTF-8"},
    {"CutName", ACT(w.beginCase("\xE0\xA0")), "is not UTF-8"},
    {"OverlongName", ACT(w.beginCase("\xC0\xAF")), "is not UTF-8"},
    {"ZeroByte", ACT(w.beginStep(std::string("a\0b", 3), 0)), "zero bytes"},
    {"LongName", ACT(w.beginCase(std::string(4097, 'x'))), "longer than 4096 bytes"},
    {"StepWithoutCase",
     [](Writer& w) {
         (void)w.beginCase("B");
         (void)w.writeTable(6, Location::Node, tenWith(0, 0));
     },
     "before the first step"},
};

class WriterRefuses : public testing::TestWithParam<Misuse> {};

TEST_P(WriterRefuses, AndLeavesNothing) {
    const Sample sample;
    const TemporaryFolder folder;
    auto writer = Writer::create(folder / "a.lmop", "A", "test");
    ASSERT_OK(writer);
    EXPECT_OK(writer->setMesh({sample.nodes, sample.elements, sample.corners}));
    EXPECT_OK(writer->addItems("surface", Location::Node, sample.lists[0].positions));
    EXPECT_OK(writer->beginCase("A"));
    EXPECT_OK(writer->beginStep("1", 0));
    EXPECT_OK(writer->writeTable(5, Location::Node, tenWith(0, 0)));
    GetParam().act(*writer);
    const auto committed = writer->commit();
    ASSERT_FALSE(committed);
    EXPECT_NE(committed.error().message.find(GetParam().message), std::string::npos)
        << committed.error().message;
    EXPECT_NE(committed.error().message.find((folder / "a.lmop").string()), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

INSTANTIATE_TEST_SUITE_P(Misuses, WriterRefuses, testing::ValuesIn(kMisuses), RowName());

TEST(ResultFile, MeshIsChecked) {
    const std::vector<std::int32_t> twice{1, 1}, two{1, 2}, one{1}, negative{-1};
    for (const Mesh& mesh :
         {Mesh{twice, {}, {}}, Mesh{one, twice, two}, Mesh{one, two, one}, Mesh{one, one, negative}}) {
        const TemporaryFolder folder;
        auto writer = Writer::create(folder / "a.lmop", "A", "test");
        ASSERT_OK(writer);
        EXPECT_FALSE(writer->setMesh(mesh));
        EXPECT_FALSE(writer->commit());
    }
}

} // namespace
