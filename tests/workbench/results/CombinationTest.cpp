#include "tests/support/RandomIntegers.h"
#include "tests/workbench/results/CombinationModel.h"
#include "workbench/results/Catalogue.h"

#include <cmath>
#include <functional>
#include <optional>

namespace {

using namespace workbench;
using Kind = CombinationKind;
using Model = CombinationModel;
using Location = resultfile::Location;
using Values = Model::Values;

constexpr unsigned kHead = 401, kStressXX = 312101, kStressYY = 312102, kStressZZ = 312103,
                   kStressXY = 312104, kStressYZ = 312105, kStressZX = 312106, kVonMises = 312114;

std::string joined(const std::vector<std::string>& sentences) {
    std::string text;
    for (const std::string& sentence : sentences)
        text += sentence + "\n";
    return text;
}

/// What one component of the result is.
struct Expected {
    unsigned id;
    Values values; ///< empty: the component is absent
};

struct Row {
    const char* what;
    std::vector<Model::Case> cases;
    Kind kind;
    std::vector<Model::Item> items;
    std::vector<Expected> expected;
    std::vector<std::string> sources = {};  ///< all of them, when there are any
    std::vector<std::string> warnings = {}; ///< a part of each, in order
};

Model::Case oneStep(const std::string& name, std::vector<Model::Table> tables, double value = 1) {
    return {name, {{"1", value, std::move(tables)}}};
}
/// A component at the nodes 1 to 3.
Model::Table at123(unsigned id, std::vector<float> values) {
    return {id, std::move(values), "123"};
}
/// A whole stress tensor at node 1, with its von Mises stress.
std::vector<Model::Table> tensor(const std::vector<float>& parts, float vonMises) {
    std::vector<Model::Table> tables;
    for (unsigned i = 0; i < 6; ++i)
        tables.push_back({kStressXX + i, {parts[i]}, "1"});
    tables.push_back({kVonMises, {vonMises}, "1"});
    return tables;
}

const std::vector<Model::Case> kThree{oneStep("A", {at123(kHead, {1, -7, 3})}),
                                      oneStep("B", {at123(kHead, {-4, 7, 3})}),
                                      oneStep("C", {at123(kHead, {4, 2, -3.5f})})};
const std::vector<Model::Item> kAll{{"A"}, {"B"}, {"C"}};

const Row kRows[] = {
    {"three items with factors",
     kThree,
     Kind::Linear,
     {{"A", "", 2}, {"B", "", -1}, {"C", "1", 0.5}},
     {{kHead, {{1, 8}, {2, -20}, {3, 1.25f}}}, {governingItemOf(kHead), {}}},
     {"A * 2", "B * -1", "C:1 * 0.5"}},
    {"cancelling large values keeps the small one",
     {oneStep("A", {at123(kHead, {1e8f, 0, 0})}), oneStep("B", {at123(kHead, {1, 0, 0})})},
     Kind::Linear,
     {{"A"}, {"B"}, {"A", "", -1}},
     {{kHead, {{1, 1}, {2, 0}, {3, 0}}}}},
    {"maximum, the first of equals governs",
     kThree,
     Kind::Maximum,
     kAll,
     {{kHead, {{1, 4}, {2, 7}, {3, 3}}}, {governingItemOf(kHead), {{1, 3}, {2, 2}, {3, 1}}}},
     {"A:1", "B:1", "C:1"}},
    {"minimum",
     kThree,
     Kind::Minimum,
     kAll,
     {{kHead, {{1, -4}, {2, -7}, {3, -3.5f}}}, {governingItemOf(kHead), {{1, 2}, {2, 1}, {3, 3}}}}},
    {"absolute maximum without sign",
     kThree,
     Kind::AbsoluteMaximum,
     kAll,
     {{kHead, {{1, 4}, {2, 7}, {3, 3.5f}}}, {governingItemOf(kHead), {{1, 2}, {2, 1}, {3, 3}}}}},
    {"absolute maximum with sign",
     kThree,
     Kind::SignedAbsoluteMaximum,
     kAll,
     {{kHead, {{1, -4}, {2, -7}, {3, -3.5f}}}, {governingItemOf(kHead), {{1, 2}, {2, 1}, {3, 3}}}}},
    {"envelope of scaled items",
     kThree,
     Kind::Maximum,
     {{"A", "", -1}, {"B", "", 0.5}},
     {{kHead, {{1, -1}, {2, 7}, {3, 1.5f}}}, {governingItemOf(kHead), {{1, 1}, {2, 1}, {3, 2}}}},
     {"A:1 * -1", "B:1 * 0.5"}},
    {"von Mises of a sum is not the sum",
     {oneStep("A", tensor({100, 0, 0, 0, 0, 0}, 100)),
      oneStep("B", tensor({0, 100, 0, 30, 40, 0}, 132.287566f))},
     Kind::Linear,
     {{"A"}, {"B"}},
     // Equal biaxial 100 with shears: sqrt(100^2 + 3 (30^2 + 40^2)).
     {{kStressXX, {{1, 100}}}, {kStressYY, {{1, 100}}}, {kVonMises, {{1, 132.287566f}}}}},
    {"opposite tensors leave nothing",
     {oneStep("A", tensor({100, 50, 20, 1, 2, 3}, 70.27f))},
     Kind::Linear,
     {{"A"}, {"A", "", -1}},
     {{kStressZX, {{1, 0}}}, {kVonMises, {{1, 0}}}}},
    {"von Mises is enveloped itself, and never negative",
     {oneStep("A", tensor({100, 0, 0, 0, 0, 0}, 100)),
      oneStep("B", tensor({0, 0, 0, 100, 0, 0}, 173.205078f))},
     Kind::Minimum,
     {{"A", "", -2}, {"B"}},
     {{kStressXX, {{1, -200}}}, {kVonMises, {{1, 173.205078f}}}, {governingItemOf(kVonMises), {{1, 2}}}}},
    {"length of a summed vector",
     {oneStep("A", {{101, {3}, "1"}, {102, {0}, "1"}, {103, {0}, "1"}, {104, {3}, "1"}}),
      oneStep("B", {{101, {0}, "1"}, {102, {4}, "1"}, {103, {-12}, "1"}, {104, {12.649f}, "1"}})},
     Kind::Linear,
     {{"A"}, {"B"}},
     {{104, {{1, 13}}}}},
    {"plane stress has no zz",
     {oneStep("A", {{422131, {100}, "1"}, {422132, {0}, "1"}, {422134, {0}, "1"}, {422184, {100}, "1"}})},
     Kind::Linear,
     {{"A", "", 3}},
     {{422184, {{1, 300}}}}},
    {"an axisymmetric equivalent strain has zz",
     {oneStep(
         "A",
         {{481101, {0.02f}, "1"}, {481102, {-0.01f}, "1"}, {481103, {-0.01f}, "1"}, {481104, {0}, "1"}})},
     Kind::Linear,
     {{"A", "", 0.5}},
     // A stretch e with -e/2 across has the equivalent e.
     {{481114, {{1, 0.01f}}}}},
    {"whole cases go step by step, a single step counts in each",
     {{"A", {{"t1", 1, {at123(kHead, {1, 2, 3})}}, {"t2", 2, {at123(kHead, {4, 5, 6})}}}},
      oneStep("B", {at123(kHead, {10, 20, 30})})},
     Kind::Linear,
     {{"A"}, {"B", "", 2}, {"A", "t2", -1}},
     {{kHead, {{1, 17}, {2, 37}, {3, 57}}}}, // the first of the steps; the second is tested below
     {"A", "B * 2", "A:t2 * -1"}},
    {"an envelope goes over all steps",
     {{"A", {{"t1", 1, {at123(kHead, {1, 9, 3})}}, {"t2", 2, {at123(kHead, {4, 5, 3})}}}},
      oneStep("B", {at123(kHead, {2, 2, 8})})},
     Kind::Maximum,
     {{"A"}, {"B"}},
     {{kHead, {{1, 4}, {2, 9}, {3, 8}}}, {governingItemOf(kHead), {{1, 2}, {2, 1}, {3, 3}}}},
     {"A:t1", "A:t2", "B:1"}},
    {"a component that one item lacks is absent",
     {oneStep("A", {at123(kHead, {1, 2, 3}), at123(402, {1, 1, 1})}),
      oneStep("B", {at123(kHead, {1, 1, 1})})},
     Kind::Maximum,
     {{"A"}, {"B"}},
     {{kHead, {{1, 1}, {2, 2}, {3, 3}}}, {402, {}}, {governingItemOf(402), {}}},
     {},
     {"Pressure head (402) is left out: missing in step \"1\" of case \"B\""}},
    {"without a tensor's part its equivalent is absent",
     {oneStep("A", tensor({100, 0, 0, 0, 0, 0}, 100)),
      oneStep("B", {{kStressXX, {5}, "1"}, {kVonMises, {5}, "1"}})},
     Kind::Linear,
     {{"A"}, {"B"}},
     {{kStressXX, {{1, 105}}}, {kStressYZ, {}}, {kVonMises, {}}},
     {},
     {"and 1 more are left out: missing in step \"1\" of case \"B\"",
      "von Mises (312114) is left out: not all"}},
    {"different lists of nodes are cut to what they share",
     {oneStep("A", {at123(kHead, {1, 2, 3})}), oneStep("B", {{kHead, {10, 20, 30, 40, 50, 60}}}),
      oneStep("C", {{kHead, {100, 200, 300}, "346"}})},
     Kind::Linear,
     {{"A"}, {"B"}, {"C"}},
     {{kHead, {{3, 133}}}},
     {},
     {"Total head (401) is restricted to where all items have values: 1 node"}},
    {"lists without a common node leave nothing, other components stay",
     {oneStep("A", {{kHead, {1}, "1"}, {402, {1}, "1"}}),
      oneStep("B", {{kHead, {1, 1, 1}, "346"}, {402, {4}, "1"}})},
     Kind::Maximum,
     {{"A"}, {"B"}},
     {{kHead, {}}, {402, {{1, 4}}}},
     {},
     {"Total head (401) is left out: no node has values in all items"}},
    {"corners of plates",
     {oneStep("A", {{412101, {1, 2, 3, 4, 5, 6, 7, 8}, "", Location::ElementCorner}}),
      oneStep("B", {{412101, {8, 7, 3, 1}, "e2", Location::ElementCorner}})},
     Kind::Maximum,
     {{"A"}, {"B"}},
     {{412101, {{21, 8}, {22, 7}, {23, 7}, {24, 8}}},
      {governingItemOf(412101), {{21, 2}, {22, 2}, {23, 1}, {24, 1}}}},
     {},
     {"restricted to where all items have values: 1 element"}},
    {"the same component at nodes and at corners",
     {oneStep("A", {{412101, {1}, "1"}, {kHead, {1}, "1"}}),
      oneStep("B", {{412101, {8, 7, 3, 1}, "e2", Location::ElementCorner}, {kHead, {1}, "1"}})},
     Kind::Linear,
     {{"A"}, {"B"}},
     {{412101, {}}, {kHead, {{1, 2}}}},
     {},
     {"(412101) is left out: it stands at nodes in one item and at element corners in another"}},
    {"strains across plates are not stored",
     {oneStep("A", {{411101, {1}, "1"}, {411102, {1}, "1"}, {411104, {1}, "1"}, {411114, {2}, "1"}})},
     Kind::Linear,
     {{"A"}},
     {{411101, {{1, 1}}}, {411114, {}}},
     {},
     {"(411114) is left out: it is not the sum of its parts"}},
    {"what does not follow the loads is not added",
     {oneStep(
         "A",
         {{kHead, {1}, "1"}, {311121, {1}, "1"}, {311131, {1}, "1"}, {76200, {9}, "1"}, {76100, {2}, "1"}})},
     Kind::Linear,
     {{"A", "", 2}},
     {{kHead, {{1, 2}}}, {76100, {{1, 4}}}, {311121, {}}, {311131, {}}, {76200, {}}},
     {},
     {"are left out: it does not grow with the loads, so that it cannot be added up"}},
    {"but is enveloped as it stands",
     {oneStep("A", {{311121, {1}, "1"}}), oneStep("B", {{311121, {2}, "1"}})},
     Kind::Maximum,
     {{"A"}, {"B"}},
     {{311121, {{1, 2}}}, {governingItemOf(311121), {{1, 2}}}}},
    {"labels mean nothing elsewhere",
     {oneStep("A", {{76400, {3}, "1"}, {9000101, {1}, "1"}, {kHead, {1}, "1"}})},
     Kind::Maximum,
     {{"A"}},
     {{76400, {}}, {9000101, {}}, {kHead, {{1, 1}}}}},
    {"steps that differ in time are told",
     {{"A", {{"t1", 1, {at123(kHead, {1, 2, 3})}}, {"t2", 2, {at123(kHead, {4, 5, 6})}}}},
      {"B", {{"t1", 1, {at123(kHead, {1, 1, 1})}}, {"t2", 2.5, {at123(kHead, {1, 1, 1})}}}}},
     Kind::Linear,
     {{"A"}, {"B"}},
     {{kHead, {{1, 2}, {2, 3}, {3, 4}}}},
     {},
     {"the steps of case \"A\" and case \"B\" have different values"}},
};

TEST(Combination, MakesHandComputedValues) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.what);
        Model model;
        model.lists = {{"1", {0}}, {"123", {0, 1, 2}}, {"346", {2, 3, 5}}, {"e2", {1}}};
        model.add(row.cases);
        const auto report = model.combine(model.request(row.kind, row.items));
        ASSERT_TRUE(report) << report.error().message;
        for (const Expected& expected : row.expected) {
            const Values found = model.values(expected.id);
            ASSERT_EQ(found.size(), expected.values.size()) << expected.id;
            for (const auto& [place, value] : expected.values) {
                ASSERT_TRUE(found.contains(place)) << expected.id << " at " << place;
                EXPECT_NEAR(found.at(place), value, 1e-6 * std::max(1.0f, std::fabs(value)))
                    << expected.id << " at " << place;
            }
        }
        if (!row.sources.empty()) {
            EXPECT_EQ(report->sources, row.sources);
        }
        ASSERT_EQ(report->warnings.size(), row.warnings.size()) << joined(report->warnings);
        for (std::size_t i = 0; i < row.warnings.size(); ++i)
            EXPECT_NE(report->warnings[i].find(row.warnings[i]), std::string::npos) << report->warnings[i];
    }
}

TEST(Combination, KeepsStepsAndSourcesInTheDocument) {
    Model model;
    model.lists = {{"123", {0, 1, 2}}};
    model.add({{"A", {{"t1", 0.5, {at123(kHead, {1, 2, 3})}}, {"t2", 2, {at123(kHead, {4, 5, 6})}}}},
               oneStep("B", {at123(kHead, {10, 20, 30})})});
    CPOHAnalysis* const before = model.tree.GetChild(model.analysis);
    CPOHCase* const caseBefore = before->GetChildList().front();
    const auto report = model.combine(model.request(Kind::Linear, {{"A"}, {"B", "", 2}}));
    ASSERT_TRUE(report) << report.error().message;
    EXPECT_EQ(model.values(kHead, "Set", 1), (Values{{1, 24}, {2, 45}, {3, 66}}));
    EXPECT_TRUE(std::filesystem::exists(model.folder / "_RCB_Set.lmop"));
    ASSERT_EQ(model.tree.GetChildList().size(), 2u);
    EXPECT_EQ(model.tree.GetChild(model.analysis), before) << "items of an open dialog stay valid";
    EXPECT_EQ(before->GetChildList().front(), caseBefore);
    CPOHAnalysis* const made = model.tree.GetChildList().back();
    const auto& steps = made->GetChildList().front()->GetVCaseList();
    EXPECT_EQ(steps.at(0)->GetName(), L"t1");
    EXPECT_EQ(steps.at(0)->GetStepValue(), 0.5);
    EXPECT_EQ(model.tree.sourcesOf(made->GetKey()), (std::vector<std::string>{"A", "B * 2"}));
    EXPECT_TRUE(model.tree.sourcesOf(model.analysis).empty());

    model.tree.rebuild();
    EXPECT_EQ(model.values(kHead, "Set", 1), (Values{{1, 24}, {2, 45}, {3, 66}}));
    EXPECT_TRUE(model.database.undo());
    model.tree.update();
    EXPECT_EQ(model.tree.GetChildList().size(), 1u);
}

TEST(Combination, AddsToASetOrMakesItAnew) {
    Model model;
    model.lists = {{"123", {0, 1, 2}}};
    model.add(kThree);
    auto request = model.request(Kind::Linear, {{"A", "", 2}});
    ASSERT_TRUE(model.combine(request));
    request = model.request(Kind::Linear, {{"A"}, {"B"}});
    request.merge = true;
    const auto added = model.combine(request);
    ASSERT_TRUE(added) << added.error().message;
    EXPECT_EQ(added->caseName, "Set_1");
    EXPECT_EQ(added->firstSource, 2u);
    EXPECT_EQ(model.values(kHead, "Set", 0, 0), (Values{{1, 2}, {2, -14}, {3, 6}}));
    EXPECT_EQ(model.values(kHead, "Set", 0, 1), (Values{{1, -3}, {2, 0}, {3, 6}}));
    EXPECT_EQ(model.database.resultFiles().size(), 2u);

    request = model.request(Kind::Linear, {{"C"}});
    ASSERT_TRUE(model.combine(request));
    EXPECT_EQ(model.values(kHead, "Set", 0, 0), (Values{{1, 4}, {2, 2}, {3, -3.5f}}));
    EXPECT_EQ(model.tree.GetChildList().size(), 2u);
    EXPECT_EQ(model.tree.GetChildList().back()->GetChildList().size(), 1u);
}

/// Many blocks of values on lists that differ, against the plain formula.
TEST(Combination, AgreesWithThePlainFormulaOnManyValues) {
    constexpr std::size_t nodes = 50000, items = 5;
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    for (const Kind kind :
         {Kind::Linear, Kind::Maximum, Kind::Minimum, Kind::AbsoluteMaximum, Kind::SignedAbsoluteMaximum}) {
        Model model(nodes);
        std::vector<Model::Case> cases;
        std::vector<Model::Item> wanted;
        std::vector<std::map<std::uint32_t, float>> tables(items);
        for (std::size_t i = 0; i < items; ++i) {
            const std::string list = "list " + std::to_string(i);
            std::vector<float> values;
            for (std::uint32_t node = 0; node < nodes; ++node) {
                // One item has gaps longer than a block, one has every node.
                if (i == 1 ? node / 20000 == 1 : i != 2 && random.below(10) == 0) continue;
                model.lists[list].push_back(node);
                values.push_back(static_cast<float>(static_cast<int>(random.below(41)) - 20));
                tables[i][node] = values.back();
            }
            cases.push_back({"C" + std::to_string(i), {{"1", 1, {{kHead, std::move(values), list}}}}});
            wanted.push_back({"C" + std::to_string(i), "", 0.5 * (double(i) - 1.0)});
        }
        model.add(cases);
        const auto report = model.combine(model.request(kind, wanted));
        ASSERT_TRUE(report) << report.error().message;
        const Values found = model.values(kHead), governing = model.values(governingItemOf(kHead));
        std::size_t count = 0;
        for (std::uint32_t node = 0; node < nodes; ++node) {
            std::optional<float> expected;
            float governs = 1;
            for (std::size_t i = 0; i < items; ++i) {
                const auto stored = tables[i].find(node);
                if (stored == tables[i].end()) {
                    expected.reset();
                    break;
                }
                float value = static_cast<float>(stored->second * wanted[i].factor);
                if (kind == Kind::AbsoluteMaximum) value = std::fabs(value);
                const bool beyond = !expected               ? true
                                    : kind == Kind::Minimum ? value < *expected
                                    : kind == Kind::SignedAbsoluteMaximum
                                        ? std::fabs(value) > std::fabs(*expected)
                                        : value > *expected;
                if (kind == Kind::Linear)
                    expected = expected.value_or(0) + value;
                else if (beyond) {
                    expected = value;
                    governs = static_cast<float>(i + 1);
                }
            }
            const int number = static_cast<int>(node + 1);
            ASSERT_EQ(found.contains(number), expected.has_value()) << "node " << number;
            if (!expected) continue;
            ++count;
            ASSERT_EQ(found.at(number), *expected) << "node " << number;
            if (kind != Kind::Linear) {
                ASSERT_EQ(governing.at(number), governs) << "node " << number;
            }
        }
        EXPECT_GT(count, 1000u);
    }
}

struct Refusal {
    const char* what;
    std::function<void(Model&, CombinationRequest&)> spoil;
    const char* message;
};

const Refusal kRefusals[] = {
    {"empty name", [](Model&, auto& r) { r.name.clear(); }, "the name of the new set is empty"},
    {"name with a folder", [](Model&, auto& r) { r.name = "../x"; }, "holds '/'"},
    {"long name", [](Model&, auto& r) { r.name.assign(65, 'x'); }, "more than 64 characters"},
    {"blank at the end", [](Model&, auto& r) { r.name = "x "; }, "ends with a blank"},
    {"name of another analysis", [](Model&, auto& r) { r.name = "Static"; }, "already used by an analysis"},
    {"file of another model", [](Model& m, auto&) { writeBytes(m.folder / "_RCB_Set.lmop", "foreign"); },
     "_RCB_Set.lmop is there; choose another name"},
    {"no items", [](Model&, auto& r) { r.items.clear(); }, "name at least one case or step"},
    {"infinite factor", [](Model&, auto& r) { r.items[1].factor = INFINITY; },
     "factor of case \"B\" is not finite"},
    {"factor beyond floats", [](Model&, auto& r) { r.items[1].factor = 1e300; }, "is not finite at value"},
    {"case without steps", [](Model& m, auto& r) { r = m.request(Kind::Linear, {{"Empty"}}); },
     "case \"Empty\" has no steps"},
    {"cases of two and three steps",
     [](Model& m, auto& r) {
         r = m.request(Kind::Linear, {{"Two"}, {"Three"}});
     },
     "case \"Two\" has 2 steps and case \"Three\" has 3"},
    {"nothing in common",
     [](Model& m, auto& r) {
         r = m.request(Kind::Maximum, {{"A"}, {"Other"}});
     },
     "no component that can be combined; Total head (401) is left out: missing in"},
    {"open transaction", [](Model& m, auto&) { m.database.beginTransaction(L"other"); }, "another change"},
    {"deleted results", [](Model& m, auto&) { std::filesystem::remove(m.folder / "a.lmop"); },
     "a.lmop is not there any more; restore it"},
    {"truncated results", [](Model& m, auto&) { std::filesystem::resize_file(m.folder / "a.lmop", 1000); },
     "cannot read"},
    {"damaged values",
     [](Model& m, auto&) {
         std::string bytes = bytesOf(m.folder / "a.lmop");
         const float value = -3.5f;
         bytes[bytes.rfind(std::string_view(reinterpret_cast<const char*>(&value), 4))] ^= 1;
         std::ofstream(m.folder / "a.lmop", std::ios::binary | std::ios::in | std::ios::out) << bytes;
     },
     "component 401 of step \"1\" of case \"C\" is damaged"},
    {"no folder any more",
     [](Model& m, auto&) { std::filesystem::rename(m.folder.path(), m.folder.path().string() + "-gone"); },
     "not there any more"},
};

TEST(Combination, RefusesWithOneSentenceAndLeavesNothing) {
    for (const Refusal& row : kRefusals) {
        SCOPED_TRACE(row.what);
        Model model;
        model.lists = {{"123", {0, 1, 2}}};
        auto cases = kThree;
        cases.push_back({"Empty", {}});
        const auto head = [](const char* name) { return Model::Step{name, 1, {at123(kHead, {1, 1, 1})}}; };
        cases.push_back({"Two", {head("1"), head("2")}});
        cases.push_back({"Three", {head("1"), head("2"), head("3")}});
        cases.push_back(oneStep("Other", {at123(402, {1, 1, 1})}));
        model.add(cases);
        auto request = model.request(Kind::Linear, kAll);
        row.spoil(model, request);
        std::set<std::string> before;
        std::error_code error;
        const bool hasFolder = std::filesystem::exists(model.folder.path(), error);
        if (hasFolder) before = model.listing();
        const auto report = model.combine(request);
        ASSERT_FALSE(report);
        EXPECT_NE(report.error().message.find(row.message), std::string::npos) << report.error().message;
        EXPECT_EQ(report.error().message.find('\n'), std::string::npos);
        if (hasFolder) {
            EXPECT_EQ(model.listing(), before);
        }
        EXPECT_EQ(model.database.resultFiles().size(), 1u);
        EXPECT_EQ(model.tree.GetChildList().size(), 1u);
        std::filesystem::remove_all(model.folder.path().string() + "-gone", error);
    }
}

TEST(Combination, CalculatorTakesRequestsOfTheHost) {
    Model model;
    model.lists = {{"123", {0, 1, 2}}};
    model.add(kThree);
    const auto& cases = model.tree.GetChild(model.analysis)->GetChildList();
    struct RequestRow {
        const char* what;
        std::function<void(T_COMB_ENVL_RESULT_D&)> change;
        std::optional<Kind> kind; ///< none: refused
    };
    const RequestRow rows[] = {
        {"as it is", [](auto&) {}, Kind::Linear},
        {"envelope kinds count for envelopes alone", [](auto& r) { r.envelopeKind = 7; }, Kind::Linear},
        {"minimum", [](auto& r) { r.combinationType = 1, r.envelopeKind = 1; }, Kind::Minimum},
        {"unsigned", [](auto& r) { r.combinationType = 1, r.envelopeKind = 2; }, Kind::AbsoluteMaximum},
        {"signed", [](auto& r) { r.combinationType = 1, r.envelopeKind = 3; }, Kind::SignedAbsoluteMaximum},
        {"unknown kind", [](auto& r) { r.combinationType = 1, r.envelopeKind = 4; }, {}},
        {"unknown type", [](auto& r) { r.combinationType = 2; }, {}},
        {"no analysis", [](auto& r) { r.analysis = nullptr; }, {}},
        {"an array too short", [](auto& r) { r.factors.RemoveAt(0); }, {}},
        {"a null case", [](auto& r) { r.cases.SetAt(0, nullptr); }, {}},
        {"a case that is gone", [](auto& r) { r.cases.SetAt(0, reinterpret_cast<CPOHCase*>(&r)); }, {}},
        {"a step of another case", [&](auto& r) { r.steps.SetAt(0, cases[1]->GetVCaseList()[0]); }, {}},
    };
    for (const RequestRow& row : rows) {
        T_COMB_ENVL_RESULT_D request;
        request.analysis = model.tree.GetChild(model.analysis);
        request.cases.Add(cases[0]);
        request.steps.Add(nullptr);
        request.factors.Add(1);
        row.change(request);
        const auto checked = combinationRequest(model.tree, request);
        ASSERT_EQ(bool(checked), row.kind.has_value()) << row.what;
        if (checked) {
            EXPECT_EQ(checked->kind, *row.kind) << row.what;
        }
    }
}

} // namespace
