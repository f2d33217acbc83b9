#include "framework/windows/desktop/DeskScript.h"
#include "framework/windows/desktop/UserActions.h"
#include "framework/windows/dialogs/DataExchange.h"
#include "host/dialogs/CobxPOHM.h"
#include "host/dialogs/CobxPOHM2.h"
#include "host/dialogs/CobxPOHS.h"
#include "host/dialogs/CobxPOHS2.h"
#include "tests/host/dialogs/ToolDialog.h"

namespace {

using namespace framework;

/// An analysis selector with the step selector below it, over the results of a test.
class Selectors : public ToolTest {
  protected:
    Selectors()
        : dialog(log, &document) {
        fill(document.results);
        dialog.exchange = [this](CDataExchange* run) {
            DDX_Control(run, IDC_TOOL_ANALYSIS, analyses);
            DDX_Control(run, IDC_TOOL_RESULT, results);
        };
        EXPECT_TRUE(dialog.CDialog::Create(IDD_TOOL));
        dialog.ShowWindow(SW_SHOW);
        analyses.SetChild(&results);
    }
    static void fill(support::MemoryResultTree& tree) {
        auto& statics = tree.addAnalysis(10, L"Static");
        auto& dead = statics.addCase(11, L"Dead");
        dead.addStep(12, L"1");
        auto& water = statics.addCase(13, L"Water");
        water.addStep(14, L"half");
        water.addStep(15, L"full");
        tree.addAnalysis(20, L"Without results");
        tree.addAnalysis(30, L"Modes").addCase(31, L"Free").addStep(32, L"1");
    }
    /// The entries in a line, the selected one in brackets.
    static std::wstring shown(const CComboBox& box) {
        std::wstring line, text;
        for (int i = 0; i < box.GetCount(); ++i) {
            box.GetLBText(i, text);
            line += i == box.GetCurSel() ? L"[" + text + L"]|" : text + L"|";
        }
        return line;
    }
    ToolDialog dialog;
    CCobxPOHM2 analyses;
    CCobxPOHS2 results;
};

TEST_F(Selectors, ChildrenFollowTheChoice) {
    EXPECT_EQ(analyses.Initialize(nullptr, 0), 0);
    ASSERT_EQ(analyses.Initialize(&document, 0), 1);
    EXPECT_EQ(shown(analyses), L"Static|Modes|");
    EXPECT_EQ(shown(results), L"");
    EXPECT_EQ(analyses.GetSelectedPOHM(), nullptr);
    EXPECT_EQ(results.GetSelectedPOHS(), nullptr);

    analyses.SelectEntry(0);
    EXPECT_EQ(analyses.GetSelectedPOHM(), document.results.GetChildList()[0]);
    EXPECT_EQ(shown(results), L"[Dead]|    Dead:1|Water|    Water:half|    Water:full|");
    EXPECT_EQ(results.GetSelectedPOHS()->GetObjectKind(), POHKind::Case);
    ASSERT_TRUE(user::choose(results.m_hWnd, 4));
    ASSERT_EQ(results.GetSelectedPOHS()->GetObjectKind(), POHKind::Step);
    EXPECT_EQ(results.GetSelectedPOHS()->GetName(), L"full");
    EXPECT_EQ(results.GetSelectedPOHS()->GetParent()->GetName(), L"Water");
    EXPECT_EQ(results.GetCombBoxList().size(), 5u);

    ASSERT_TRUE(user::choose(analyses.m_hWnd, 1));
    EXPECT_EQ(shown(results), L"[Free]|    Free:1|");
    analyses.SelectEntry(7);
    EXPECT_EQ(shown(results), L"");

    // A user names an entry as it reads, without its indentation.
    analyses.SelectEntry(0);
    const DeskScript script = parseDeskScript(L"choose 1003 \"water:HALF\"");
    EXPECT_EQ(performDeskStep(script.steps.at(0)), L"");
    EXPECT_EQ(results.GetSelectedPOHS()->GetName(), L"half");
}

TEST_F(Selectors, AnEntryForNone) {
    ASSERT_EQ(analyses.Initialize(&document, 1), 1);
    EXPECT_EQ(shown(analyses), L"|Static|Modes|");
    analyses.SelectEntry(0);
    EXPECT_EQ(analyses.GetSelectedPOHM(), nullptr);
    EXPECT_EQ(shown(results), L"");
    EXPECT_EQ(analyses.GetCombBoxList().size(), 2u);
}

TEST_F(Selectors, TheSelectionOutlivesAChangeOfTheTree) {
    const struct {
        const char* name;
        int chosenAnalysis, chosenResult;
        void (*change)(support::MemoryResultTree& tree);
        const wchar_t* analyses;
        const wchar_t* results;
    } rows[] = {
        {"the same again", 0, 3, [](support::MemoryResultTree& tree) { fill(tree); }, L"[Static]|Modes|",
         L"Dead|    Dead:1|Water|    [Water:half]|    Water:full|"},
        {"another one in front", 1, 1,
         [](support::MemoryResultTree& tree) {
             tree.addAnalysis(5, L"First").addCase(6, L"A");
             fill(tree);
         },
         L"First|Static|[Modes]|", L"Free|    [Free:1]|"},
        {"renamed, the step gone", 1, 1,
         [](support::MemoryResultTree& tree) { tree.addAnalysis(30, L"Modes 2").addCase(90, L"Free"); },
         L"[Modes 2]|", L"[Free]|"},
        {"the analysis gone", 1, 0,
         [](support::MemoryResultTree& tree) { tree.addAnalysis(10, L"Static").addCase(11, L"Dead"); },
         L"[Static]|", L"[Dead]|"},
        {"nothing left", 1, 0, [](support::MemoryResultTree&) {}, L"", L""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        document.results = support::MemoryResultTree();
        fill(document.results);
        analyses.Initialize(&document, 0);
        analyses.SelectEntry(row.chosenAnalysis);
        results.SelectEntry(row.chosenResult);
        document.results = support::MemoryResultTree(); // every pointer is stale now
        row.change(document.results);
        analyses.AddComboBoxList();
        EXPECT_EQ(shown(analyses), row.analyses);
        std::wstring expected = row.results; // the brackets go around the indentation
        if (const auto at = expected.find(L"    ["); at != std::wstring::npos)
            expected.replace(at, 5, L"[    ");
        EXPECT_EQ(shown(results), expected);
    }
}

TEST_F(Selectors, TheFilterTellsCombinedSetsByTheirFiles) {
    class File : public support::MemoryAnalysis {
      public:
        using MemoryAnalysis::MemoryAnalysis;
        std::wstring path;
        std::wstring GetResultFilePath() const override { return path; }
    };
    // A tree whose analyses have result files.
    class Tree : public support::MemoryResultTree {
      public:
        Tree() {
            for (const wchar_t* path : {L"/m/dam_Static.lmop", L"/m/_RCB_ULS.lmop", L"/_RCB_m/dam.lmop"}) {
                files.push_back(std::make_unique<File>(this, files.size() + 1, path));
                files.back()->path = path;
                files.back()->addCase(50, L"c");
                list.push_back(files.back().get());
            }
        }
        const std::vector<CPOHAnalysis*>& GetChildList() const override { return list; }
        std::vector<std::unique_ptr<File>> files;
        std::vector<CPOHAnalysis*> list;
    };
    class TreeDocument : public support::MemoryDocument {
      public:
        Tree tree;
        CPOHManager* GetPOHManager() override { return &tree; }
    } files;
    const struct {
        std::vector<int> filter;
        std::vector<int> expected;
    } rows[] = {
        {{}, {0, 1, 2}},
        {{AnalysisFilter::Combined, AnalysisFilter::Solved}, {0, 1, 2}},
        {{AnalysisFilter::Solved}, {0, 2}},
        {{AnalysisFilter::Combined}, {1}},
        {{7}, {}},
    };
    for (const auto& row : rows) {
        analyses.SetAnalysisTypes(row.filter);
        analyses.Initialize(&files, 0);
        std::vector<CPOHBase*> expected;
        for (const int i : row.expected)
            expected.push_back(files.tree.list[static_cast<std::size_t>(i)]);
        EXPECT_EQ(analyses.GetCombBoxList(), expected);
    }
}

TEST_F(Selectors, CasesOfEveryAnalysisAndTheirSteps) {
    auto& cases = *new CCobxPOHM;
    auto& steps = *new CCobxPOHS;
    ASSERT_TRUE(analyses.Detach() && results.Detach());
    ASSERT_TRUE(cases.SubclassDlgItem(IDC_TOOL_ANALYSIS, &dialog) &&
                steps.SubclassDlgItem(IDC_TOOL_STEPS, &dialog));
    cases.SetChild(&steps);
    document.meshSets.put({4, L"wall", {}, {}});
    cases.Initialize(&document, 0);
    EXPECT_TRUE(cases.GetMeshSetList().empty());
    cases.SelectEntry(1);
    EXPECT_EQ(shown(cases), L"Static:Dead|[Static:Water]|Modes:Free|");
    EXPECT_EQ(cases.GetSelectedPOHM()->GetName(), L"Water");
    EXPECT_EQ(cases.GetMeshSetList(), std::vector<ItrKey>{4});
    EXPECT_EQ(shown(steps), L"[Water:half]|Water:full|");
    user::choose(steps.m_hWnd, 1);
    EXPECT_EQ(steps.GetSelectedPOHS()->GetName(), L"full");
    // A selector that goes first leaves the other one alone.
    delete &cases;
    steps.AddComboBoxList();
    EXPECT_EQ(shown(steps), L"Dead:1|Water:half|[Water:full]|Free:1|");
    delete &steps;
}

} // namespace
