#include "base/Checksum.h"
#include "solver/StrainLife.h"
#include "tests/solver/program/RunHarness.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using interfacefile::Content;
using resultfile::fatigue::kDamage;
using resultfile::fatigue::kEquivalentAmplitude;
using resultfile::fatigue::kLife;

using resultfile::fatigue::kGoodman, resultfile::fatigue::kNone;
constexpr double kFloat = 1.2e-7; // results are 32-bit floats

/// Steps whose one cycle has this amplitude and mean.
std::vector<double> cycle(double amplitude, double mean) {
    return {mean + amplitude, mean - amplitude, mean + amplitude};
}

void expectRatio(double found, double expected, double tolerance, const std::string& what) {
    EXPECT_NEAR(found / expected, 1, tolerance) << what << ": " << found << ", expected " << expected;
}

/// No file grows beyond a size while the object lives.
class LimitedFileSize {
  public:
    explicit LimitedFileSize(rlim_t bytes) {
        handler_ = std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~LimitedFileSize() {
        ::setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    LimitedFileSize(const LimitedFileSize&) = delete;
    LimitedFileSize& operator=(const LimitedFileSize&) = delete;

  private:
    rlimit before_{};
    void (*handler_)(int) = nullptr;
};

} // namespace

// One Basquin cycle a block: N = (amplitude / coefficient) ^ (1 / exponent).
TEST(FatigueSolver, ConstantAmplitudeGivesTheClosedForm) {
    for (const double amplitude : {600e6, 100e6, 37e6})
        for (const int type : {0, 2})
            for (const int stressOption : {1, 2}) {
                Content content = interfacefile::stepsOf({cycle(amplitude, 0)});
                content.infiniteLife = 1e30;
                content.stressOption = stressOption;
                content.blocks = 30;
                content.type = type;
                if (type == 0) {
                    content.functions = {{1, {{0, 1}, {1, -1}, {2, 1}}}};
                    content.axis = {0, 1, 2};
                    content.nodes[0].tensors = {{0, 0, 2 * amplitude, 0, 0, 0}};
                    content.loads[0].factor = 0.5;
                }
                SolverRun run;
                ASSERT_EQ(run.run(content), 0) << run.err;
                const double life = std::pow(amplitude / 1000e6, 1 / -0.1);
                expectRatio(run.values(kLife)[0], life, 1e-6, "life");
                expectRatio(run.values(kDamage)[0], 30 / life, 1e-6, "damage");
                expectRatio(run.values(kEquivalentAmplitude)[0], amplitude, kFloat, "equivalent amplitude");
            }
}

// A uniaxial history by every type and every measure: the same damage, since each measure of a uniaxial state
// is the stress or strain along it, and since the hysteresis is given to the type that reads stresses.
TEST(FatigueSolver, EveryTypeAndMeasureOfAUniaxialHistory) {
    const std::vector<double> strains{0.004, -0.001, 0.002, -0.003, 0.004};
    const auto model = solver::StrainLifeModel::make({2.1e11, 0.3, 0.15, 1200e6, 900e6, -0.09, 0.5, -0.6});
    ASSERT_TRUE(model);
    std::vector<solver::StressStrain> path;
    for (const double strain : strains)
        path.push_back({strain, 0});
    solver::HysteresisPath().follow(*model, path);
    Content content = interfacefile::stepsOf({strains});
    auto& node = content.nodes[0];
    for (std::size_t i = 0; i < strains.size(); ++i) {
        node.strains.push_back({strains[i], -0.3 * strains[i], -0.3 * strains[i], 0, 0, 0});
        node.tensors[i] = {path[i].stress, 0, 0, 0, 0, 0};
    }
    std::vector<float> expected[2];
    for (const int type : {2, 0, 4, 3, 1})
        for (int option = 1; option <= 4; ++option) {
            Content c = content;
            c.type = type;
            c.infiniteLife = 1e30;
            c.stressOption = c.strainOption = option;
            const bool stressLife = type == 0 || type == 2;
            c.flags = {1, 1, 1, 1, stressLife, stressLife, 1, 1, 1};
            if (type == 1 || type == 3) c.nodes[0].tensors = node.strains;
            if (type < 2) { // one case, and the history as its load function
                const auto& first = c.nodes[0].tensors[0];
                c.functions = {{1, {}}};
                c.axis.clear();
                for (std::size_t i = 0; i < strains.size(); ++i) {
                    c.axis.push_back(static_cast<double>(i));
                    c.functions[0].points.push_back(
                        {static_cast<double>(i), c.nodes[0].tensors[i][0] / first[0]});
                }
                c.nodes[0].tensors.resize(1);
            }
            SolverRun run;
            ASSERT_EQ(run.run(c), 0) << run.err;
            std::vector<float> found;
            const std::vector<unsigned> corrections =
                stressLife ? std::vector<unsigned>{0, 1, 2, 3, 4, 5} : std::vector<unsigned>{0, 4, 5, 6};
            for (const unsigned correction : corrections)
                for (const unsigned base : {kDamage, kLife, kEquivalentAmplitude})
                    found.push_back(run.values(base, correction)[0]);
            auto& reference = expected[stressLife];
            if (reference.empty()) reference = found;
            ASSERT_EQ(found.size(), reference.size());
            for (std::size_t i = 0; i < found.size(); ++i)
                expectRatio(found[i], reference[i], 1e-4,
                            "type " + std::to_string(type) + ", option " + std::to_string(option) +
                                ", value " + std::to_string(i));
            if (option == 4) {
                EXPECT_NEAR(run.values(resultfile::fatigue::kGoverningNormal[0], 0)[0], 1, 1e-5);
                EXPECT_NE(run.out.find("on the plane normal to"), std::string::npos) << run.out;
            }
        }
}

TEST(FatigueSolver, StrainOfSeveralMaterials) {
    Content content = interfacefile::stepsOf({{0.004, -0.004, 0.004}});
    content.type = 3;
    content.materials.resize(3, content.materials[0]);
    content.strainLife.resize(3, content.strainLife[0]);
    content.strainLife[1].ductility = 0.05; // fails first
    content.nodes[0].materials = {1, 2, 3};
    SolverRun run;
    ASSERT_EQ(run.run(content), 0) << run.err;
    EXPECT_EQ(run.values(resultfile::fatigue::kGoverningMaterial)[0], 2);
}

TEST(FatigueSolver, GoodmanAtItsLimits) {
    // Mean below zero, at zero, at the ultimate strength and above it.
    Content content = interfacefile::stepsOf(
        {cycle(100e6, -200e6), cycle(100e6, 0), cycle(100e6, 500e6), cycle(1e6, 900e6)});
    content.flags = {0, 1, 0, 0, 0, 0, 1, 1, 1};
    content.blocks = 3;
    SolverRun run;
    ASSERT_EQ(run.run(content), 0) << run.err;
    const auto damage = run.values(kDamage, kGoodman);
    const auto life = run.values(kLife, kGoodman);
    expectRatio(damage[0], 3e-10, 1e-6, "compressive mean");
    EXPECT_EQ(damage[1], damage[0]);
    for (const std::size_t broken : {2u, 3u}) {
        EXPECT_FLOAT_EQ(damage[broken], 6); // one a reversal
        EXPECT_FLOAT_EQ(life[broken], 0.5);
        EXPECT_TRUE(std::isfinite(run.values(kEquivalentAmplitude, kGoodman)[broken]));
    }
}

TEST(FatigueSolver, TabulatedCurveAndTheWorstOfSeveralMaterials) {
    Content content = interfacefile::stepsOf({cycle(200e6, 0), cycle(200e6, 0), cycle(200e6, 0)});
    content.materials.push_back(content.materials[0]); // 5^10 cycles at 200 MPa
    content.materials[1].curveType = 2;
    content.materials[1].points = {{1e3, 400e6}, {1e7, 100e6}}; // 1e5 at 200 MPa
    content.nodes[1].materials = {2};
    content.nodes[2].materials = {1, 2};
    SolverRun run;
    ASSERT_EQ(run.run(content), 0) << run.err;
    const auto life = run.values(kLife);
    expectRatio(life[0], std::pow(5.0, 10), 1e-6, "parametric");
    expectRatio(life[1], 1e5, 1e-6, "tabulated");
    EXPECT_EQ(life[2], life[1]);
}

TEST(FatigueSolver, CombinesLoadEntriesByTheirFunctions) {
    Content content;
    content.functions = {{4, {{0, 0}, {1, 1}}}, {2, {{0.5, 0}, {2, -1}}}};
    content.axis = {0, 0.5, 1, 2};
    content.infiniteLife = 1e30;
    content.loads = {{31, 1, 4}, {32, 2, 2}};
    content.nodes = {{5, {1}, {{150e6, 0, 0, 0, 0, 0}, {60e6, 0, 0, 0, 0, 0}}}};
    SolverRun run;
    ASSERT_EQ(run.run(content), 0) << run.err;
    // 0, 75, 150 - 2 * 60 / 3 = 110, 150 - 120 = 30 MPa, the end values held.
    const double damage = 0.5 * std::pow(55.0 / 1000, 10) + 0.5 * std::pow(40.0 / 1000, 10);
    expectRatio(run.values(kDamage)[0], damage, 1e-6, "damage");
}

// Many entries and times, so that weights go through in pieces: the same as the combined steps.
TEST(FatigueSolver, LongLoadFunctionsCountLikeTheirSteps) {
    RandomIntegers random;
    const std::size_t times = 700, entries = 40;
    Content byCases, bySteps;
    byCases.functions = {{1, {}}, {2, {}}};
    byCases.axis.clear();
    byCases.loads.clear();
    byCases.nodes = {{1, {1}, {}}, {2, {1}, {}}};
    for (std::size_t t = 0; t < times; ++t) {
        byCases.axis.push_back(static_cast<double>(t));
        for (auto& f : byCases.functions)
            f.points.push_back({static_cast<double>(t), static_cast<double>(random.below(2001)) / 1000 - 1});
    }
    for (std::size_t e = 0; e < entries; ++e) {
        byCases.loads.push_back({static_cast<int>(e), 0.25 * static_cast<double>(1 + random.below(4)),
                                 1 + static_cast<int>(e % 2)});
        for (auto& node : byCases.nodes) {
            node.tensors.emplace_back();
            for (double& component : node.tensors.back())
                component = 1e4 * static_cast<double>(random.below(2000));
        }
    }
    bySteps = byCases;
    bySteps.type = 2;
    bySteps.steps = static_cast<int>(times);
    for (std::size_t n = 0; n < 2; ++n) {
        auto& steps = bySteps.nodes[n].tensors;
        steps.assign(times, {});
        for (std::size_t t = 0; t < times; ++t)
            for (std::size_t e = 0; e < entries; ++e)
                for (std::size_t i = 0; i < 6; ++i)
                    steps[t][i] += byCases.loads[e].factor * byCases.functions[e % 2].points[t][1] *
                                   byCases.nodes[n].tensors[e][i];
    }
    SolverRun cases, steps;
    ASSERT_EQ(cases.run(byCases), 0) << cases.err;
    ASSERT_EQ(steps.run(bySteps), 0) << steps.err;
    for (const std::size_t node : {0u, 1u})
        expectRatio(cases.values(kDamage)[node], steps.values(kDamage)[node], 1e-6, random.seedText());
}

TEST(FatigueSolver, QuickCountingLeavesSmallCyclesOut) {
    const std::vector<double> history{200e6, -200e6, 0, -39.9e6, 200e6}; // one of 400 MPa, one of 39.9 MPa
    Content content = interfacefile::stepsOf({history});
    content.infiniteLife = 1e30;
    const double large = std::pow(0.2, 10), small = std::pow(0.01995, 10);
    struct Row {
        std::array<int, 2> quick;
        double cycles, damage;
    };
    for (const Row& row :
         {Row{{0, 100}, 2, large + small}, Row{{1, 9}, 2, large + small}, Row{{1, 10}, 1, large}}) {
        content.quick = row.quick;
        SolverRun run;
        ASSERT_EQ(run.run(content), 0) << run.err;
        const double equivalent = 1000e6 * std::pow(row.damage / row.cycles, 0.1);
        expectRatio(run.values(kEquivalentAmplitude)[0], equivalent, 2 * kFloat, "equivalent amplitude");
    }
}

TEST(FatigueSolver, InfiniteLifeCutsOff) {
    Content content = interfacefile::stepsOf({cycle(100e6, 0), cycle(99e6, 0), {7e6, 7e6, 7e6}});
    content.infiniteLife = 1.0001e10; // the first node's life is 1e10
    SolverRun run;
    ASSERT_EQ(run.run(content), 0) << run.err;
    expectRatio(run.values(kLife)[0], 1e10, 1e-6, "below the limit");
    for (const std::size_t node : {1u, 2u}) {
        EXPECT_EQ(run.values(kDamage)[node], 0);
        EXPECT_EQ(run.values(kLife)[node], static_cast<float>(content.infiniteLife));
    }
    expectRatio(run.values(kEquivalentAmplitude)[1], 99e6, kFloat, "an amplitude without damage");
    EXPECT_EQ(run.values(kEquivalentAmplitude)[2], 0);
}

TEST(FatigueSolver, WritesAResultThatSaysWhereItComesFrom) {
    Content content = interfacefile::stepsOf({cycle(1e8, 0), cycle(1e8, 0), cycle(2e8, 0)});
    content.nodes[0].materials = {};
    content.nodes[2].number = 40;
    content.flags = {1, 1, 0, 0, 0, 0, 0, 1, 0};
    content.blocks = 12;
    SolverRun run;
    ASSERT_EQ(run.run(content), 0) << run.err;
    EXPECT_EQ(run.leftBehind(), "model_Fatigue_Fatigue.lmop ");
    EXPECT_NE(run.out.find("left out: 1"), std::string::npos) << run.out;
    EXPECT_NE(run.out.find("Goodman: largest damage"), std::string::npos) << run.out;
    const auto reader = resultfile::Reader::open(run.resultFile());
    ASSERT_TRUE(reader) << reader.error().message;
    const auto& contents = reader->contents();
    const std::string input = bytesOf(run.interfaceFile());
    EXPECT_EQ(contents.inputChecksum, checksumText(Checksum::of(std::as_bytes(std::span(input)))));
    EXPECT_EQ(contents.producer.find("FatigueSolver "), 0u);
    ASSERT_EQ(contents.cases.size(), 1u);
    EXPECT_EQ(contents.cases[0].name, "Fatigue");
    ASSERT_EQ(contents.cases[0].steps.size(), 1u);
    const auto& step = contents.cases[0].steps[0];
    EXPECT_EQ(step.name, "Blocks 12");
    EXPECT_EQ(step.value, 12);
    ASSERT_EQ(step.components.size(), 2u); // life alone, None and Goodman
    EXPECT_EQ(step.components[0].id, kLife);
    EXPECT_EQ(step.components[1].id, kLife + 10);
    EXPECT_EQ(step.components[0].count, 2u);
    EXPECT_EQ(*reader->nodeNumbers(), (std::vector<std::int32_t>{1, 2, 40}));
    EXPECT_EQ(*reader->items(step.components[0].items), (std::vector<std::uint32_t>{1, 2}));
}

TEST(FatigueSolver, LeavesOutByNameWhatAMaterialCannotSupport) {
    Content content = interfacefile::stepsOf({cycle(1e8, 0)});
    content.materials.push_back(content.materials[0]);
    content.materials[1].ultimate = 0;
    content.flags[kGoodman] = 1;
    SolverRun run;
    ASSERT_EQ(run.run(content), 0) << run.err;
    EXPECT_NE(run.out.find("Goodman is left out: material 2 has no ultimate strength"), std::string::npos)
        << run.out;
    const auto reader = resultfile::Reader::open(run.resultFile());
    ASSERT_TRUE(reader);
    EXPECT_EQ(reader->contents().cases[0].steps[0].components.size(), 4u); // and the governing material

    content.flags[kNone] = 0;
    SolverRun nothingLeft;
    EXPECT_EQ(nothingLeft.run(content), 1);
    EXPECT_NE(nothingLeft.err.find("nothing is left to compute"), std::string::npos) << nothingLeft.err;
    EXPECT_EQ(nothingLeft.leftBehind(), "");

    content.flags = {0, 0, 0, 0, 0, 0, 1, 0, 0};
    SolverRun noneAsked;
    EXPECT_EQ(noneAsked.run(content), 0) << noneAsked.err;
    EXPECT_NE(noneAsked.out.find("No mean-stress correction is requested"), std::string::npos)
        << noneAsked.out;
    EXPECT_EQ(noneAsked.values(kDamage).size(), 1u);
}

TEST(FatigueSolver, RefusesByNameAndLeavesNothingBehind) {
    struct Row {
        std::function<void(Content&)> change;
        const char* words;
        int code = 1;
    };
    const Row rows[] = {
        {[](Content& c) {
             c.type = 4;
             c.steps = 1;
             c.strainOption = 4;
         },
         "must both be 4, or neither"},
        {[](Content& c) {
             c.type = 1;
             c.strainLife[0].poisson = 0.6;
             c.strainOption = 3;
         },
         "material 1: Poisson's ratio must lie between 0 and 0.5"},
        {[](Content& c) {
             c.type = 1;
             c.strainLife[0].b = 0.1;
         },
         "material 1: its fatigue strength exponent must lie"},
        {[](Content& c) {
             c.type = 1;
             c.strainLife[0].ductility = -1;
         },
         "its fatigue ductility coefficient must not be negative"},
        {[](Content& c) {
             c.type = 1;
             c.strainLife[0].hardeningCoefficient = 0;
             c.flags = {0, 1, 0, 0, 0, 0, 1, 0, 0};
         },
         "Morrow is left out: material 1 has no cyclic curve"},
        {[](Content& c) {
             c.materials[0].curveType = 2;
             c.materials[0].points = {{1e3, 4e8}, {1e6, 2e8}};
             c.flags = {0, 0, 0, 0, 1, 0, 1, 0, 0};
         },
         "Morrow is left out: material 1 has no parametric curve"},
        {[](Content& c) {
             c.materials[0].yield = 0;
             c.flags = {0, 0, 0, 1, 0, 0, 1, 0, 0};
         },
         "Soderberg is left out: material 1 has no yield strength above 0"},
        {[](Content& c) {
             c.stressOption = 4;
             c.loads[0].factor = 1e300;
         },
         "the load history of node 11 exceeds the range of numbers"},
        {[](Content& c) { c.flags = {1, 0, 0, 0, 0, 0, 0, 0, 0}; }, "no output is requested"},
        {[](Content& c) {
             c.materials[0].basquin = {1e9, 0.1};
         },
         "material 1: the exponent of its curve must be less than 0"},
        {[](Content& c) { c.materials[0].curveType = 2; }, "material 1: its curve has 0 points"},
        {[](Content& c) {
             for (auto& n : c.nodes)
                 n.materials = {};
         },
         "no node has a material"},
        {[](Content& c) { c.loads[0].factor = 1e308; },
         "the load history of node 11 exceeds the range of numbers"},
        {[](Content& c) { c.nodes[1].number = 11; }, "the numbers must ascend"},
        {[](Content& c) { c.name = "no/such/folder/model"; }, "cannot create a temporary file in", 3},
    };
    for (const Row& row : rows) {
        Content content;
        row.change(content);
        SolverRun run;
        EXPECT_EQ(run.run(content), row.code) << row.words;
        EXPECT_NE(run.err.find(row.words), std::string::npos) << run.err;
        EXPECT_EQ(run.err.find('\n'), run.err.size() - 1) << run.err;
        EXPECT_EQ(run.out, "") << row.words;
        EXPECT_EQ(run.leftBehind(), "") << row.words;
    }
}

TEST(FatigueSolver, KeepsTheEarlierResultWhenItFails) {
    SolverRun run;
    ASSERT_EQ(run.run(Content{}), 0) << run.err;
    const std::string before = bytesOf(run.resultFile());
    Content broken;
    broken.nodes[1].tensors[0][0] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(run.run(broken), 1);
    EXPECT_EQ(bytesOf(run.resultFile()), before);
    EXPECT_EQ(run.leftBehind(), "model_Fatigue_Fatigue.lmop ");
}

// Wherever the disk is full, in the temporary columns or in the result file, there is a sentence and the
// earlier result.
TEST(FatigueSolver, FullDiskLeavesTheEarlierResult) {
    Content content =
        interfacefile::stepsOf(std::vector<std::vector<double>>(20000, std::vector<double>{1e8, -1e8}));
    SolverRun run;
    ASSERT_EQ(run.run(Content{}), 0) << run.err;
    const std::string before = bytesOf(run.resultFile());
    ASSERT_EQ(run.run(content, {"--version"}), 0); // writes the input while there is room
    for (const rlim_t room : {rlim_t{1000}, rlim_t{66000}, rlim_t{200000}}) {
        const LimitedFileSize limit(room);
        EXPECT_EQ(run.call({run.interfaceFile().string()}), 3) << room;
        EXPECT_NE(run.err.find("cannot write"), std::string::npos) << run.err;
    }
    EXPECT_TRUE(bytesOf(run.resultFile()) == before);
    EXPECT_EQ(run.leftBehind(), "model_Fatigue_Fatigue.lmop ");
}

TEST(FatigueSolver, SameBytesForAnyNumberOfThreads) {
    RandomIntegers random;
    std::vector<std::vector<double>> histories(1500, std::vector<double>(64)); // several batches
    for (auto& history : histories)
        for (double& value : history)
            value = 1e5 * static_cast<double>(random.below(4000));
    Content content = interfacefile::stepsOf(histories);
    content.flags[kGoodman] = 1;
    for (std::size_t node = 0; node < content.nodes.size(); node += 7)
        content.nodes[node].materials = {};
    SolverRun run;
    ASSERT_EQ(run.run(content, {"--threads", "1"}), 0) << run.err;
    const std::string one = bytesOf(run.resultFile());
    for (const char* threads : {"2", "7"}) {
        ASSERT_EQ(run.run(content, {"--threads", threads}), 0) << run.err;
        EXPECT_TRUE(bytesOf(run.resultFile()) == one) << threads << " threads; " << random.seedText();
    }
}

TEST(FatigueSolver, ReadsTheNameInItsCodePage) {
    Content content;
    const std::string korean = "\xB8\xF0\xB5\xA8"; // two syllables in code page 949
    content.name = korean;
    for (const char* codePage : {"949", "CP949", "EUC-KR"}) {
        SolverRun run;
        run.codePage = codePage;
        ASSERT_EQ(run.run(content), 0) << run.err;
        EXPECT_EQ(run.leftBehind(), "\xEB\xAA\xA8\xEB\x8D\xB8_Fatigue.lmop ");
    }
    SolverRun utf8;
    EXPECT_EQ(utf8.run(content), 1);
    EXPECT_NE(utf8.err.find("is not text in the code page UTF-8; set VEXA_CODE_PAGE"), std::string::npos)
        << utf8.err;
    utf8.codePage = "12345";
    EXPECT_EQ(utf8.run(content), 1);
    EXPECT_NE(utf8.err.find("the code page \"12345\" is not known"), std::string::npos) << utf8.err;
}

TEST(FatigueSolver, Arguments) {
    SolverRun run;
    const std::string folder = run.interfaceFile().parent_path().string();
    struct Row {
        std::vector<std::string> arguments;
        int code;
        const char* words;
    };
    const Row rows[] = {
        {{}, 2, "an interface file is expected"},
        {{"a", "b"}, 2, "\"b\" follows a first one"},
        {{"--frob"}, 2, "--frob is not known"},
        {{"--threads"}, 2, "--threads needs a number"},
        {{"--threads", "0", "a"}, 2, "not \"0\""},
        {{"--threads", "2x", "a"}, 2, "not \"2x\""},
        {{"--help"}, 0, "Exit codes"},
        {{"--version"}, 0, "FatigueSolver 0."},
        {{folder}, 1, "not a regular file"},
        {{folder + "/missing"}, 1, "cannot open"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(run.call(row.arguments), row.code) << row.words;
        const std::string& text = row.code == 0 ? run.out : run.err;
        EXPECT_NE(text.find(row.words), std::string::npos) << text;
        EXPECT_EQ(row.code == 0 ? run.err : run.out, "");
    }
}
