#pragma once

#include "framework/files/PathMap.h"
#include "module/fatigue/GpsFatigueSolver.h"
#include "tests/support/ChildProgram.h"
#include "tests/support/MemoryHost.h"
#include "tests/support/TemporaryFolder.h"

/// Lets a test call the stages of a run one by one.
class FatigueProbe : public CGpsFatigueSolver {
  public:
    using CGpsFatigueSolver::AddNodeMatl;
    using CGpsFatigueSolver::CalcTransformDataElem;
    using CGpsFatigueSolver::CheckData;
    using CGpsFatigueSolver::CheckExistResult;
    using CGpsFatigueSolver::ConvertNodeValUnitIn;
    using CGpsFatigueSolver::GetCasKey;
    using CGpsFatigueSolver::GetNodeMatl;
    using CGpsFatigueSolver::GetStepList;
    using CGpsFatigueSolver::GetStrainValue;
    using CGpsFatigueSolver::GetStressValue;
    using CGpsFatigueSolver::ImportFatigueResult;
    using CGpsFatigueSolver::IsValidCase;
    using CGpsFatigueSolver::m_materialIndex;
    using CGpsFatigueSolver::m_steps;
    using CGpsFatigueSolver::MakeWriteNodeElem;
    using CGpsFatigueSolver::RunFatigueExe;
    using CGpsFatigueSolver::WriteSolverInterface;

    /// What RunSolver does before it runs a definition.
    int prepare(CQMDocBase& doc, const tagTFatg& definition) {
        m_doc = &doc;
        ResetRun();
        m_fatigue = definition;
        m_analysisKey = definition.analysisKey;
        return SetDpoolPtr() && Init() && SetMapBuf();
    }
};

/// Two tetrahedra of two materials that share three of five nodes, with two cases of two steps. Corner values
/// of component c (1..6) at the n-th corner of the mesh are c * 100 + n, plus 1000 for each step before.
struct FatigueModel {
    static constexpr ItrKey kAnalysis = 61, kResultAnalysis = 62, kDefinition = 91;
    static constexpr ItrKey kSteel = 71, kCopper = 72, kSteelPart = 81, kCopperPart = 82;
    static constexpr ItrKey kCurve = 41, kRamp = 51, kWave = 52;

    TemporaryFolder folder;
    support::MemoryHost host;
    support::MemoryDocument doc;
    tagTFatg definition;
    std::vector<support::MemoryStep*> steps;

    FatigueModel() {
        doc.path = framework::widePath(folder / "model.wkm");
        host.programPath = framework::widePath(folder / "program") + L"/";
        doc.analyses.put({kAnalysis, L"Static", 106, 0});
        doc.analyses.put({kResultAnalysis, L"Life", 106, 0});
        doc.materials.put({kSteel, 4, L"Steel", 200000, 0.25, 0});
        doc.materials.put({kCopper, 9, L"Copper", 110000, 0.5, 0});
        doc.properties.put({kSteelPart, 1, L"Steel part", PropertyType::Solid, 0, 0, {kSteel}});
        doc.properties.put({kCopperPart, 2, L"Copper part", PropertyType::Solid, 0, 0, {kCopper}});
        doc.curves.put({kCurve, L"Curve", {{1000, 400}, {1e6, 150.5}}});
        doc.functions.put({kRamp, 7, L"Ramp", {{0, 0}, {2, 1}}});
        doc.functions.put({kWave, 3, L"Wave", {{0, 1}, {1, -1}, {2 + 1e-10, 1}}});
        for (const std::int32_t number : {10, 20, 50, 70, 90})
            doc.mesh.addNode(number);
        doc.mesh.addElement(11, ElementType::Tet4, kSteelPart, {0, 1, 2, 3});
        doc.mesh.addElement(12, ElementType::Tet4, kCopperPart, {1, 2, 3, 4});
        support::MemoryAnalysis& analysis = doc.results.addAnalysis(kAnalysis, L"Static");
        for (const wchar_t* name : {L"Dead", L"Live"}) {
            support::MemoryCase& resultCase = analysis.addCase(200 + steps.size(), name);
            for (const wchar_t* step : {L"1", L"2"}) {
                steps.push_back(&resultCase.addStep(300 + steps.size(), step));
                addSolidTables(*steps.back(), static_cast<float>(1000 * (steps.size() - 1)));
            }
        }
        defineMaterials();
    }

    static void addSolidTables(support::MemoryStep& step, float offset) {
        for (const unsigned family : {312100u, 311100u})
            for (const unsigned c : {1u, 2u, 3u, 4u, 5u, 6u, 14u}) {
                std::vector<float> values;
                for (int n = 0; n < 8; ++n)
                    values.push_back(static_cast<float>(100 * c + n) + offset);
                if (family == 311100u)
                    for (float& value : values)
                        value /= 8192;
                step.add(family + c, ResultLocation::ElementCorner, values);
            }
    }
    void defineMaterials() {
        definition.key = kDefinition;
        definition.analysisKey = kAnalysis;
        definition.resultAnalysisKey = kResultAnalysis;
        definition.stressLifeMaterials = {{kSteel, 0, 250, 400, {900, -0.125}, kCurve},
                                          {kCopper, 1, 70, 220, {}, kCurve}};
        definition.strainLifeMaterials = {{kSteel, 1, 0.5, 1, 7, 900, -0.09, 0.25, -0.6},
                                          {kCopper, 0, 0.15, 0, 560, 510, -0.1, 0.4, -0.5}};
        definition.loads = {{L"Live", L"", 1.5, kWave}, {L"Dead", L"1", 2, kRamp}, {L"Dead", L"", -1, kWave}};
        definition.loadCycleCount = 12;
        definition.infiniteLife = 1e8;
    }

    int run() {
        doc.fatigues.put(definition);
        std::vector<std::uint64_t> keys{definition.key};
        return CGpsFatigueSolver::Instance().RunSolver(&doc, keys);
    }
    std::filesystem::path interfaceFile() const { return folder / "FATIGUE.76"; }
    std::filesystem::path mirrorFile() const { return folder / "model_Static_FATIGUE_76.txt"; }

    std::filesystem::path solverProgram() const {
        return framework::nativePath(host.programPath) / "64bit Solver" / "FatigueSolver.exe";
    }
    /// Puts the tests' child program where the solver is looked for; it does what `commands` say.
    void installSolver(const std::string& commands) {
        std::filesystem::create_directories(solverProgram().parent_path());
        installChild(solverProgram(), commands);
    }
};
