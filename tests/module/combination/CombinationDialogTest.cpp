#include "framework/files/PathMap.h"
#include "framework/windows/Keyboard.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "framework/windows/desktop/UserActions.h"
#include "host/dialogs/Notifications.h"
#include "module/combination/VEXAGpsResultCombinationDlg.h"
#include "module/resources/Templates.h"
#include "module/resources/resource.h"
#include "tests/support/MemoryHost.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace {

namespace user = framework::user;
using Texts = std::vector<std::wstring>;

/// A host whose calculator notes what it is asked for, and then does what a test says.
class CombiningHost : public support::MemoryHost {
  public:
    struct Asked {
        T_COMB_ENVL_RESULT_D request;
        CQMViewBase* view;
        bool registerSet;
    };
    std::vector<Asked> asked;
    std::function<int(const T_COMB_ENVL_RESULT_D&)> combine = [](const auto&) { return 1; };

    int GenerateSubCombResult(CQMDocBase&, CQMViewBase* view, const T_COMB_ENVL_RESULT_D& request,
                              bool registerSet) override {
        asked.push_back({request, view, registerSet});
        return combine(request);
    }
};

/// The dialog over two analyses: "Static" with the cases Dead (one step) and Water (Low, Full), "Quake" with
/// History (t=0, t=1).
class CombinationDialog : public testing::Test {
  protected:
    CombinationDialog() {
        framework::addTemplates(moduleTemplates());
        framework::scriptedDesk().clear();
        document.path = framework::widePath(folder / "dam.wkm");
        document.activeView = &view;
        host.texts = {{L"IDS_QMGPS_NEW_COMBINATION", L"Set"},
                      {L"IDS_QMGPS_SET_NAME_IS_ALREADY_USED", L"taken: %s"}};
        dead = &quiet->addCase(11, L"Dead");
        dead->addStep(12, L"1");
        water = &quiet->addCase(13, L"Water");
        low = &water->addStep(14, L"Low");
        full = &water->addStep(15, L"Full");
        auto& history = quake->addCase(21, L"History");
        history.addStep(22, L"t=0");
        history.addStep(23, L"t=1");
    }
    ~CombinationDialog() override { EXPECT_TRUE(framework::topLevelWindows().empty()); }

    /// Runs the dialog with a user who does these things, one after the other.
    INT_PTR run(const std::vector<std::function<void()>>& steps, CQMViewBase* given = nullptr) {
        for (const auto& step : steps)
            framework::scriptedDesk().addStep(step);
        CVEXAGpsResultCombinationDlg dialog(&document, given ? given : &view, nullptr);
        return dialog.DoModal();
    }
    std::function<void()> script(const std::wstring& text) {
        return [text] {
            for (const auto& step : framework::parseDeskScript(text).steps)
                EXPECT_EQ(framework::performDeskStep(step), L"");
        };
    }
    std::function<void()> add(const CPOHBase* object, const std::wstring& factor) {
        return [=, this] {
            const auto entries = dataOf(IDC_COMB_RESULT);
            const auto found = std::ranges::find(entries, object);
            ASSERT_NE(found, entries.end());
            EXPECT_TRUE(user::choose(control(IDC_COMB_RESULT), static_cast<int>(found - entries.begin())));
            EXPECT_TRUE(user::type(control(IDC_COMB_FACTOR), factor));
            EXPECT_TRUE(user::press(control(IDC_COMB_ADD)));
        };
    }
    std::function<void()> press(int id) {
        return [=, this] { EXPECT_TRUE(user::press(control(id))); };
    }

    static HWND control(int id) { return GetDlgItem(GetActiveWindow(), id); }
    static std::wstring text(int id) { return framework::windowText(control(id)); }
    static const framework::WindowRecord& record(int id) { return *framework::findWindow(control(id)); }
    static std::vector<const CPOHBase*> dataOf(int id) {
        std::vector<const CPOHBase*> objects;
        for (const auto& item : record(id).items)
            objects.push_back(reinterpret_cast<const CPOHBase*>(item.data));
        return objects;
    }
    static Texts rows() {
        Texts rows;
        for (const auto& item : record(IDC_COMB_ITEMS).items)
            rows.push_back(item.texts.at(0) + L" x " + item.texts.at(1));
        return rows;
    }
    void makeFile(const std::string& name) { writeBytes(folder / name, "result"); }

    TemporaryFolder folder;
    CombiningHost host;
    support::MemoryDocument document;
    support::MemoryView view{document};
    support::MemoryAnalysis* quiet = &document.results.addAnalysis(10, L"Static");
    support::MemoryAnalysis* quake = &document.results.addAnalysis(20, L"Quake");
    support::MemoryCase* dead = nullptr;
    support::MemoryCase* water = nullptr;
    support::MemoryStep* low = nullptr;
    support::MemoryStep* full = nullptr;
};

TEST_F(CombinationDialog, OpensWithTheFirstAnalysisALinearCombinationAndAFreeName) {
    makeFile("_RCB_Set.lmop");
    EXPECT_EQ(run({[&] {
                  EXPECT_EQ(framework::windowText(GetActiveWindow()), L"IDS_QMGPS_RESULT_COMBINATION");
                  EXPECT_EQ(dataOf(IDC_COMB_ANALYSIS), (std::vector<const CPOHBase*>{quiet, quake}));
                  EXPECT_EQ(record(IDC_COMB_ANALYSIS).current, 0);
                  EXPECT_EQ(dataOf(IDC_COMB_RESULT),
                            (std::vector<const CPOHBase*>{dead, dead->GetVCaseList()[0], water, low, full}));
                  EXPECT_EQ(text(IDC_COMB_FACTOR), L"1.0");
                  EXPECT_EQ(rows(), Texts{});
                  const auto& columns = record(IDC_COMB_ITEMS).columns;
                  ASSERT_EQ(columns.size(), 2u);
                  CRect client;
                  GetClientRect(control(IDC_COMB_ITEMS), &client);
                  EXPECT_EQ(columns[0].title, L"IDS_QMGPS_COMB_STEP");
                  EXPECT_EQ(columns[0].width, client.Width() * 7 / 10);
                  EXPECT_EQ(columns[1].width, client.Width() * 3 / 10);
                  EXPECT_EQ(record(IDC_COMB_LINEAR).check, 1);
                  EXPECT_EQ(record(IDC_COMB_ACTION).current, CombinationAction::Recalculate);
                  EXPECT_EQ(record(IDC_COMB_ENVELOPE_KIND).current, EnvelopeKind::Maximum);
                  EXPECT_TRUE(IsWindowEnabled(control(IDC_COMB_ACTION)));
                  EXPECT_FALSE(IsWindowEnabled(control(IDC_COMB_ENVELOPE_KIND)));
                  EXPECT_EQ(text(IDC_COMB_NAME), L"Set_0");
              }}),
              IDCANCEL);
    EXPECT_TRUE(host.asked.empty());
    EXPECT_TRUE(host.errors.empty());
}

TEST_F(CombinationDialog, ListsWhatIsAddedAndTakesItAway) {
    run({
        add(dead, L"1.35"),
        add(full, L"-2"),
        add(water, L"half"), // no number
        add(low, L"1.5x"),
        [&] {
            EXPECT_EQ(rows(), (Texts{L"Dead x 1.35", L"Water:Full x -2", L"Water x 0", L"Water:Low x 1.5"}));
        },
        press(IDC_COMB_DELETE), // nothing is selected
        [&] { EXPECT_EQ(rows().size(), 4u); },
        [&] {
            EXPECT_TRUE(user::select(control(IDC_COMB_ITEMS), {0, 2}));
        },
        press(IDC_COMB_DELETE),
        [&] {
            EXPECT_EQ(rows(), (Texts{L"Water:Full x -2", L"Water:Low x 1.5"}));
        },
        [&] { EXPECT_TRUE(user::choose(control(IDC_COMB_ANALYSIS), 1)); },
        [&] { EXPECT_EQ(dataOf(IDC_COMB_RESULT)[0], quake->GetChildList()[0]); },
        press(IDC_COMB_ADD),
        [&] { EXPECT_EQ(rows().back(), L"History x 1.5"); },
        press(IDC_COMB_DELETE_ALL),
        [&] { EXPECT_EQ(rows(), Texts{}); },
        press(IDOK),
    });
    EXPECT_EQ(host.errors, Texts{L"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO"});
}

TEST_F(CombinationDialog, AddsNothingWithoutResults) {
    document.results.remove(10);
    document.results.remove(20);
    run({press(IDC_COMB_ADD), [&] { EXPECT_EQ(rows(), Texts{}); }, press(ID_APPLY_NOW)});
    EXPECT_EQ(host.errors, Texts{L"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO"});
}

TEST_F(CombinationDialog, AsksTheCalculatorInTheOrderOfTheItems) {
    document.analyses.put({20, L"Quake", 101, 31});
    document.outputControls.put({31, L"output", 7});
    support::MemoryView other{document};
    const auto answer = run({
                                add(full, L"1e-3"),
                                add(dead, L"-1"),
                                [&] { EXPECT_TRUE(user::choose(control(IDC_COMB_ANALYSIS), 1)); },
                                [&] { EXPECT_TRUE(user::choose(control(IDC_COMB_ACTION), 0)); },
                                [&] { EXPECT_TRUE(user::check(control(IDC_COMB_ENVELOPE), true)); },
                                [&] {
                                    EXPECT_FALSE(IsWindowEnabled(control(IDC_COMB_ACTION)));
                                    EXPECT_EQ(record(IDC_COMB_ACTION).current, 0);
                                    EXPECT_TRUE(user::choose(control(IDC_COMB_ENVELOPE_KIND), 3));
                                },
                                [&] { EXPECT_TRUE(user::type(control(IDC_COMB_NAME), L"ULS 1")); },
                                press(IDOK),
                            },
                            &other);
    EXPECT_EQ(answer, IDOK);
    ASSERT_EQ(host.asked.size(), 1u);
    const auto& [request, given, registerSet] = host.asked[0];
    EXPECT_EQ(given, &other);
    EXPECT_TRUE(registerSet);
    EXPECT_EQ(request.analysis, quake);
    EXPECT_EQ(request.name, L"ULS 1");
    EXPECT_EQ(request.combinationType, CombinationType::Envelope);
    EXPECT_EQ(request.action, CombinationAction::Add);
    EXPECT_EQ(request.envelopeKind, EnvelopeKind::AbsoluteMaximum);
    EXPECT_EQ(request.outputControl, 7);
    ASSERT_EQ(request.cases.GetSize(), 2u);
    EXPECT_EQ(request.cases[0], water);
    EXPECT_EQ(request.steps[0], full);
    EXPECT_EQ(request.factors[0], 1e-3);
    EXPECT_EQ(request.cases[1], dead);
    EXPECT_EQ(request.steps[1], nullptr);
    EXPECT_EQ(request.factors[1], -1);
}

TEST_F(CombinationDialog, TakesTheOutputControlOnlyWhereThereIsOne) {
    const struct {
        const char* what;
        ItrKey analysisKey, controlKey, named;
        int expected;
    } table[] = {
        {"both", 10, 31, 31, 5},
        {"no record of the analysis", 99, 31, 31, 0},
        {"no output control named", 10, 31, 0, 0},
        {"the named one is missing", 10, 31, 32, 0},
    };
    for (const auto& row : table) {
        document.analyses.records.clear();
        document.outputControls.records.clear();
        host.asked.clear();
        document.analyses.put({row.analysisKey, L"a", 101, row.named});
        document.outputControls.put({row.controlKey, L"o", 5});
        EXPECT_EQ(run({add(dead, L"1"), press(IDOK)}), IDOK);
        ASSERT_EQ(host.asked.size(), 1u);
        EXPECT_EQ(host.asked[0].request.outputControl, row.expected) << row.what;
    }
}

TEST_F(CombinationDialog, RefusesBadInputAndStaysOpenWithItsItems) {
    makeFile("_RCB_Old.lmop");
    makeFile("_RCB_a.b.lmop");
    std::filesystem::create_directory(folder / "_RCB_Folder.lmop");
    const struct {
        const wchar_t* name;
        int items;
        const wchar_t* error; ///< null: the calculator is asked
        bool focusOnName;
    } table[] = {
        {L"New", 0, L"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO", false},
        {L"", 0, L"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO", false},
        {L"Old", 0, L"IDS_QMGPS_THERE_IS_NO_COMBINATION_INFO", false},
        {L"", 1, L"IDS_QMGPS_NEW_SET_NAME_IS_EMPTY", false},
        {L"Old", 1, L"taken: Old", true},
        {L"a.b", 1, L"taken: a.b", true},
        {L"a", 1, nullptr, false},
        {L"Folder", 1, nullptr, false}, // no file
    };
    host.combine = [](const auto&) { return 0; };
    for (const auto& row : table)
        for (const int button : {int(ID_APPLY_NOW), int(IDOK)}) {
            host.errors.clear();
            host.asked.clear();
            bool isOpen = false;
            std::vector<std::function<void()>> steps(static_cast<std::size_t>(row.items), add(dead, L"2"));
            steps.push_back([&] { EXPECT_TRUE(user::paste(control(IDC_COMB_NAME), row.name)); });
            steps.push_back([&] { SetFocus(control(IDC_COMB_FACTOR)); });
            steps.push_back(press(button));
            steps.push_back([&] {
                isOpen = IsWindowVisible(control(IDC_COMB_NAME));
                EXPECT_EQ(rows(), row.items ? Texts{L"Dead x 2"} : Texts{});
                EXPECT_EQ(text(IDC_COMB_NAME), row.name);
                EXPECT_EQ(GetFocus() == control(IDC_COMB_NAME), row.focusOnName);
            });
            EXPECT_EQ(run(steps), IDCANCEL);
            EXPECT_TRUE(isOpen);
            EXPECT_EQ(host.errors, row.error ? Texts{row.error} : Texts{}) << row.error;
            EXPECT_EQ(host.asked.size(), row.error ? 0u : 1u);
        }
}

TEST_F(CombinationDialog, RefusesTheLastProposedNameWhenAllAreTaken) {
    makeFile("_RCB_Set.lmop");
    for (int k = 0; k < 100; ++k)
        makeFile("_RCB_Set_" + std::to_string(k) + ".lmop");
    run({[&] { EXPECT_EQ(text(IDC_COMB_NAME), L"Set_99"); }, add(dead, L"1"), press(ID_APPLY_NOW)});
    EXPECT_EQ(host.errors, Texts{L"taken: Set_99"});
    EXPECT_TRUE(host.asked.empty());
}

TEST_F(CombinationDialog, GoesOnWithTheSetThatApplyMade) {
    const support::MemoryAnalysis* made = nullptr;
    host.combine = [&](const T_COMB_ENVL_RESULT_D& request) {
        if (made) return 1;
        makeFile("_RCB_New.lmop");
        auto& added = document.results.addAnalysis(30, request.name);
        added.addCase(31, request.name).addStep(32, L"Combination");
        made = &added;
        NotifyPostUpdate(&view, PostUpdate::Tree);
        return 1;
    };
    EXPECT_EQ(
        run({
            [&] { EXPECT_TRUE(user::type(control(IDC_COMB_NAME), L"New")); },
            [&] { EXPECT_TRUE(user::choose(control(IDC_COMB_ANALYSIS), 1)); },
            press(IDC_COMB_ADD),
            press(ID_APPLY_NOW),
            [&] {
                EXPECT_EQ(dataOf(IDC_COMB_ANALYSIS), (std::vector<const CPOHBase*>{quiet, quake, made}));
                EXPECT_EQ(record(IDC_COMB_ANALYSIS).current, 1);
                EXPECT_EQ(rows(), Texts{L"History x 1"});
                EXPECT_TRUE(user::choose(control(IDC_COMB_ANALYSIS), 2));
            },
            press(IDC_COMB_ADD),
            press(ID_APPLY_NOW), // the name is taken now
            [&] {
                EXPECT_EQ(rows(), (Texts{L"History x 1", L"New x 1"}));
            },
            [&] { EXPECT_TRUE(user::type(control(IDC_COMB_NAME), L"Newer")); },
            press(IDOK),
        }),
        IDOK);
    EXPECT_EQ(host.errors, Texts{L"taken: New"});
    ASSERT_EQ(host.asked.size(), 2u);
    EXPECT_EQ(host.asked[1].request.cases[1], made->GetChildList()[0]);
}

TEST_F(CombinationDialog, ItemsGoWithTheirResults) {
    EXPECT_EQ(run({
                  add(full, L"1"),
                  [&] { EXPECT_TRUE(user::choose(control(IDC_COMB_ANALYSIS), 1)); },
                  press(IDC_COMB_ADD),
                  [&] {
                      document.results.remove(10);
                      NotifyPostUpdate(&view, PostUpdate::Display); // the tree is not asked about
                      EXPECT_EQ(rows().size(), 2u);
                      NotifyPostUpdate(&view, PostUpdate::Tree);
                      EXPECT_EQ(rows(), Texts{L"History x 1"});
                      EXPECT_EQ(dataOf(IDC_COMB_ANALYSIS), std::vector<const CPOHBase*>{quake});
                  },
                  press(IDOK),
              }),
              IDOK);
    EXPECT_EQ(host.asked[0].request.cases.GetSize(), 1u);
}

TEST_F(CombinationDialog, TheKeyboardReachesEverything) {
    run({
        [&] { EXPECT_EQ(GetFocus(), control(IDC_COMB_ANALYSIS)); },
        script(L"key Tab\nkey Tab"),
        [&] { EXPECT_EQ(GetFocus(), control(IDC_COMB_FACTOR)); },
        script(L"key Tab\nkey Space"), // Add
        [&] { EXPECT_EQ(rows(), Texts{L"Dead x 1"}); },
        script(L"key Tab\nkey Tab\nkey Tab\nkey Tab\nkey Down"), // list, Delete, Delete All, type
        [&] {
            EXPECT_EQ(GetFocus(), control(IDC_COMB_ENVELOPE));
            EXPECT_TRUE(IsWindowEnabled(control(IDC_COMB_ENVELOPE_KIND)));
        },
        script(L"key Tab\nkey Down"), // the action is disabled and passed over
        [&] { EXPECT_EQ(record(IDC_COMB_ENVELOPE_KIND).current, EnvelopeKind::Minimum); },
        script(L"key Tab\nkey Enter"),
    });
    ASSERT_EQ(host.asked.size(), 1u);
    EXPECT_EQ(host.asked[0].request.envelopeKind, EnvelopeKind::Minimum);
    EXPECT_EQ(run({script(L"key Escape")}), IDCANCEL);
}

} // namespace
