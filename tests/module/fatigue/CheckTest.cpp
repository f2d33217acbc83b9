#include "tests/module/fatigue/FatigueModel.h"

#include <gtest/gtest.h>

namespace {

using Texts = std::vector<std::wstring>;
const Texts kNone;

TEST(FatigueCheck, ReportsTheFirstFault) {
    const struct {
        const char* what;
        int type;
        void (*spoil)(tagTFatg&);
        Texts errors;
    } rows[] = {
        {"nothing", 0, [](tagTFatg&) {}, kNone},
        {"no load", 0, [](tagTFatg& d) { d.loads.clear(); }, {L"IDS_VEXAGPS_FATIGUE_NOT_EXIST_CURVE"}},
        {"no load comes before no cycle",
         1,
         [](tagTFatg& d) {
             d.loads.clear();
             d.loadCycleCount = 0;
         },
         {L"IDS_VEXAGPS_FATIGUE_NOT_EXIST_CURVE"}},
        {"no cycle",
         1,
         [](tagTFatg& d) { d.loadCycleCount = 0; },
         {L"IDS_VEXAGPS_FATIGUE_NOT_EXIST_LOAD_CYCLE"}},
        {"no step",
         2,
         [](tagTFatg& d) {
             d.loads = {{L"Wind", L"", 1, 0}};
         },
         {L"IDS_VEXAGPS_FATIGUE_NOT_EXIST_LOAD"}},
        {"no load of steps",
         4,
         [](tagTFatg& d) { d.loads.clear(); },
         {L"IDS_VEXAGPS_FATIGUE_NOT_EXIST_LOAD"}},
        {"no cycle over steps",
         3,
         [](tagTFatg& d) { d.loadCycleCount = -1; },
         {L"IDS_VEXAGPS_FATIGUE_NOT_EXIST_LOAD_CYCLE"}},
        {"unknown case",
         0,
         [](tagTFatg& d) { d.loads[0].caseName = L"Wind"; },
         {L"IDS_VEXAGPS_FATIGUE_ANALYSIS_RESULT_ERROR"}},
        {"unknown step",
         0,
         [](tagTFatg& d) { d.loads[0].stepName = L"3"; },
         {L"IDS_VEXAGPS_FATIGUE_ANALYSIS_RESULT_ERROR"}},
        {"no material in the model", 0,
         [](tagTFatg& d) {
             d.stressLifeMaterials = {{999, 0, 1, 2, {}, 41}};
         },
         kNone},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        FatigueModel model;
        model.definition.fatigueType = row.type;
        row.spoil(model.definition);
        EXPECT_EQ(model.run(), 0);
        EXPECT_EQ(model.host.errors, row.errors);
        EXPECT_EQ(std::filesystem::exists(model.interfaceFile()), row.what == std::string("nothing"));
        EXPECT_EQ(model.doc.postModes, std::vector<int>{0});
        EXPECT_EQ(model.host.waitCursor, (std::vector<bool>{true, false}));
    }
}

TEST(FatigueCheck, FindsMissingResults) {
    const struct {
        const char* what;
        int type;
        std::vector<int> steps; ///< of the model: Dead 1, Dead 2, Live 1, Live 2
        unsigned id;
        Texts errors;
    } rows[] = {
        {"case without a primary", 0, {3}, 312114, {L"IDS_VEXAGPS_FATIGUE_ANALYSIS_RESULT_ERROR"}},
        {"case whose pair is missing", 0, {3}, 311101, kNone},
        {"step of a case that is not read", 0, {2}, 312101, kNone},
        {"one step without a primary", 2, {2}, 312101, {L"Some results are not exist For fatigue analysis."}},
        {"one step without a pair", 2, {3}, 311114, {L"Some results are not exist For fatigue analysis."}},
        {"no step complete", 3, {0, 1, 2, 3}, 311102, {L"IDS_VEXAGPS_FATIGUE_ANALYSIS_RESULT_ERROR"}},
        {"group that is not in the model", 2, {0}, 412101, kNone},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        FatigueModel model;
        model.definition.fatigueType = row.type;
        model.definition.loads[1].stepName = L"2";
        for (const int step : row.steps)
            model.steps[static_cast<std::size_t>(step)]->remove(row.id);
        EXPECT_EQ(model.run(), 0);
        EXPECT_EQ(model.host.errors, row.errors);
        const bool works = row.errors.empty();
        EXPECT_EQ(model.host.boxes.size(), works ? 1u : 0u);
        if (!works) {
            // This failure alone takes the bar away without filling it.
            const Texts& events = model.host.progress.events;
            EXPECT_EQ(Texts(events.end() - 2, events.end()), (Texts{events[1], L"close"}));
        }
    }
}

TEST(FatigueCheck, RefusesPropertiesByName) {
    const struct {
        int type, plotOnly;
        const wchar_t* kind;
    } rows[] = {{PropertyType::Geogrid2D, 0, L"IDS_QM_DB_PROPTYPE_2D_GEOGRID"},
                {PropertyType::GaugingPlate2D, 0, L"IDS_QM_DB_PROPTYPE_2D_GAUGING_PLATE"},
                {PropertyType::Shell, 1, L"IDS_VEXA_LBC_2D_PLOTONLY"}};
    for (const auto& row : rows) {
        FatigueModel model;
        model.host.texts[L"IDS_VEXAGPS_FATIGUE_ANALYSIS_PROPERTY_TYPE"] = L"%s is %s";
        model.doc.properties.put({83, 3, L"Net", row.type, row.plotOnly, 1, {FatigueModel::kSteel}});
        model.doc.mesh.addElement(13, ElementType::Tri3, 83, {0, 1, 2});
        EXPECT_EQ(model.run(), 0);
        EXPECT_EQ(model.host.errors, (Texts{std::wstring(L"Net is ") + row.kind,
                                            L"IDS_VEXAGPS_FATIGUE_ANALYSIS_PROPERTY_TYPE_ERROR"}));
        // The same property without a material of the definition does not matter.
        model.host.errors.clear();
        model.doc.properties.put({83, 3, L"Net", row.type, row.plotOnly, 1, {74}});
        model.run();
        EXPECT_EQ(model.host.errors, kNone);
    }
}

TEST(FatigueCheck, AsksEditionCForItsOwnIdentifiers) {
    FatigueModel model;
    model.host.edition = Edition::C;
    EXPECT_EQ(model.run(), 0);
    EXPECT_EQ(model.host.errors, Texts{L"IDS_VEXAGPS_FATIGUE_ANALYSIS_RESULT_ERROR"});
    for (support::MemoryStep* step : model.steps)
        for (const unsigned id : {60010u, 60011u, 60012u, 60013u, 60014u, 60015u, 60031u})
            step->add(id, ResultLocation::Node, {1, 2, 3, 4, static_cast<float>(id)});
    model.host.errors.clear();
    EXPECT_EQ(model.run(), 0);
    EXPECT_EQ(model.host.errors, kNone);
    EXPECT_TRUE(std::filesystem::exists(model.interfaceFile()));
    // Elements whose results the edition does not know are not asked for, but have no values either.
    model.doc.properties.put({83, 3, L"Ring", PropertyType::Axisymmetric, 0, 0, {FatigueModel::kSteel}});
    model.doc.mesh.addElement(13, ElementType::Tri3, 83, {0, 1, 2});
    model.host.boxes.clear();
    EXPECT_EQ(model.run(), 0);
    EXPECT_EQ(model.host.errors, kNone);
    EXPECT_TRUE(model.host.boxes.empty());
}

TEST(FatigueCheck, ListsTheStepsThatLoadsName) {
    const struct {
        const char* what;
        std::vector<T_FATG_LOAD_D> loads;
        std::vector<int> steps;
    } rows[] = {
        {"in the order of the analysis", {{L"Live", L"", 1, 0}, {L"Dead", L"", 1, 0}}, {0, 1, 2, 3}},
        {"a step of one case", {{L"Live", L"1", 1, 0}}, {2}},
        {"each once", {{L"Live", L"2", 1, 0}, {L"Live", L"", 1, 0}, {L"Live", L"2", 1, 0}}, {2, 3}},
        {"none", {{L"Live", L"3", 1, 0}, {L"live", L"", 1, 0}}, {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        FatigueModel model;
        model.definition.loads = row.loads;
        FatigueProbe solver;
        ASSERT_TRUE(solver.prepare(model.doc, model.definition));
        std::vector<CPOHVCase*> steps, expected;
        for (const int step : row.steps)
            expected.push_back(model.steps[static_cast<std::size_t>(step)]);
        EXPECT_EQ(solver.GetStepList(steps), static_cast<int>(expected.size()));
        EXPECT_EQ(steps, expected);
    }
}

TEST(FatigueCheck, KeysOfCasesAndStepsDoNotCollide) {
    FatigueModel model;
    FatigueProbe solver;
    ASSERT_TRUE(solver.prepare(model.doc, model.definition));
    EXPECT_EQ(solver.GetCasKey(L"Dead", L""), 200u);
    EXPECT_EQ(solver.GetCasKey(L"Dead", L"1"), 300u);
    EXPECT_EQ(solver.GetCasKey(L"Live", L"1"), 302u);
    EXPECT_EQ(solver.GetCasKey(L"Live", L"3"), 0u);
    EXPECT_EQ(solver.GetCasKey(L"Wind", L""), 0u);
}

TEST(FatigueCheck, KnowsWhichAnalysesSuit) {
    const struct {
        Edition edition;
        int code, type;
        bool valid;
    } rows[] = {
        {Edition::A, 101, 0, true},  {Edition::A, 101, 1, false}, {Edition::A, 101, 2, false},
        {Edition::B, 106, 1, true},  {Edition::D, 109, 4, true},  {Edition::A, 112, 0, true},
        {Edition::A, 129, 2, true},  {Edition::A, 210, 3, true},  {Edition::A, 239, 0, true},
        {Edition::A, 102, 0, false}, {Edition::C, 101, 3, true},  {Edition::C, 106, 0, false},
    };
    for (const auto& row : rows) {
        FatigueModel model;
        model.host.edition = row.edition;
        model.definition.fatigueType = row.type;
        model.doc.analyses.put({FatigueModel::kAnalysis, L"Static", row.code, 0});
        FatigueProbe solver;
        ASSERT_TRUE(solver.prepare(model.doc, model.definition));
        EXPECT_EQ(solver.IsValidCase() != 0, row.valid) << row.code << " type " << row.type;
    }
}

TEST(FatigueRun, SkipsUnknownDefinitionsAndEndsAtAMissingAnalysis) {
    FatigueModel model;
    model.definition.loads.clear(); // each run leaves its message
    model.doc.fatigues.put(model.definition);
    tagTFatg orphan = model.definition;
    orphan.key = 92;
    orphan.analysisKey = 99;
    model.doc.fatigues.put(orphan);
    const struct {
        const char* what;
        std::vector<std::uint64_t> keys;
        std::size_t runs;
    } rows[] = {{"empty", {}, 0},
                {"null and unknown", {0, 12345}, 0},
                {"known", {0, 91, 12345, 91}, 2},
                {"analysis", {91, 92, 91}, 1}};
    for (auto row : rows) {
        SCOPED_TRACE(row.what);
        model.host.errors.clear();
        model.host.waitCursor.clear();
        model.doc.postModes.clear();
        EXPECT_EQ(CGpsFatigueSolver::Instance().RunSolver(&model.doc, row.keys), 0);
        EXPECT_EQ(model.host.errors.size(), row.runs);
        EXPECT_EQ(model.doc.postModes, std::vector<int>{0});
        EXPECT_EQ(model.host.waitCursor, (std::vector<bool>{true, false}));
    }
    std::vector<std::uint64_t> keys{91};
    EXPECT_EQ(CGpsFatigueSolver::Instance().RunSolver(nullptr, keys), 0);
}

TEST(FatigueRun, AnswersNodeMaterialsOfTheDefinitionOnly) {
    FatigueModel model;
    FatigueProbe solver;
    ASSERT_TRUE(solver.prepare(model.doc, model.definition));
    solver.m_materialIndex = {{71, 2}, {72, 1}};
    for (const ItrKey material : {71, 99, 72, 71})
        solver.AddNodeMatl(5001, material);
    solver.AddNodeMatl(5002, 99);
    TArray<long> indices;
    EXPECT_EQ(solver.GetNodeMatl(5001, indices), 2);
    EXPECT_EQ(indices[0], 1);
    EXPECT_EQ(indices[1], 2);
    EXPECT_EQ(solver.GetNodeMatl(5002, indices), 0);
    EXPECT_TRUE(indices.IsEmpty());
}

TEST(FatigueRun, ConvertsTheTablesInPlace) {
    support::MemoryHost host;
    host.unitFactors[UnitKind::Stress] = 1.0 / 3.0;
    FatigueProbe solver;
    fatigue::NodeTables tables(2, 6, 3);
    for (std::size_t load = 0; load < 2; ++load)
        for (int c = 0; c < 6; ++c)
            tables.load(load)[c][2] = static_cast<float>(c + 1);
    const int dims[3] = {2, 6, 3};
    solver.ConvertNodeValUnitIn(tables.loads(), dims);
    EXPECT_EQ(tables.load(1)[4][2], static_cast<float>(5.0 * (1.0 / 3.0)));
    EXPECT_EQ(tables.load(0)[0][0], 0.0f);
}

} // namespace
