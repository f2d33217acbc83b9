#include "framework/text/CodePage.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "module/combination/VEXAGpsResultCombinationDlg.h"
#include "module/entry/VEXAGpsDialog.h"
#include "module/resources/resource.h"
#include "tests/workbench/results/CombinationModel.h"
#include "workbench/session/Document.h"
#include "workbench/session/WindowFrame.h"

#include <sys/resource.h>

#include <csignal>
#include <functional>

namespace {

using namespace workbench;
namespace fs = std::filesystem;
using Texts = std::vector<std::wstring>;

constexpr unsigned kHead = 401, kPressure = 402;

/// A document on the disk with the analysis "Static": Dead (one step), and Water (Low, which lacks the
/// pressure head, and Full). The user's actions are scripts.
class CombinationOnDisk : public testing::Test {
  protected:
    CombinationOnDisk() {
        framework::scriptedDesk().clear();
        model.add({{"Dead", {{"1", 1, {{kHead, {1, 2, 3, 4, 5, 6}}, {kPressure, {1, 1, 1, 1, 1, 1}}}}}},
                   {"Water",
                    {{"Low", 1, {{kHead, {10, 10, 10, 10, 10, 10}}}},
                     {"Full", 2, {{kHead, {0, 1, 0, -1, 0, 4}}, {kPressure, {2, 2, 2, 2, 2, 2}}}}}}});
        EXPECT_TRUE(saveDocument(model.database, model.folder / "dam.wkm"));
        auto opened = Document::open(model.folder / "dam.wkm");
        EXPECT_TRUE(opened);
        document = std::move(*opened);
        frame.showView(*document->GetActiveView());
    }

    static std::function<void()> script(const std::wstring& text) {
        return [text] {
            const auto read = framework::parseDeskScript(text);
            EXPECT_TRUE(read.problems.empty());
            for (const auto& step : read.steps)
                EXPECT_EQ(framework::performDeskStep(step), L"");
        };
    }
    std::int64_t run(const std::vector<std::function<void()>>& steps) {
        for (const auto& step : steps)
            framework::scriptedDesk().addStep(step);
        return IVEXAGpsDialog::DoModal(document.get(), L"CVEXAGpsResultCombinationDlg", nullptr, nullptr);
    }
    static std::size_t rows() {
        return framework::findWindow(GetDlgItem(GetActiveWindow(), IDC_COMB_ITEMS))->items.size();
    }
    /// Values at the nodes; empty where the set has no such component.
    std::vector<float> values(const std::wstring& set, unsigned id) const {
        for (CPOHAnalysis* analysis : document->results().GetChildList()) {
            if (analysis->GetName() != set) continue;
            const CVResultLease table(analysis->GetChildList().at(0)->GetVCaseList().at(0)->GetVResult(id));
            if (table) return {table->values.begin(), table->values.end()};
        }
        return {};
    }
    std::size_t analyses() const { return document->results().GetChildList().size(); }

    CombinationModel model;
    std::unique_ptr<Document> document;
    WindowFrame frame{L"test"};
};

const std::wstring kTwoItems = L"choose \"Analysis set\" Static\n"
                               L"choose \"From result\" Dead\n"
                               L"type \"Scale factor\" 1.5\n"
                               L"press Add\n"
                               L"choose \"From result\" Water:Full\n"
                               L"type \"Scale factor\" -2\n"
                               L"press Add\n";

TEST_F(CombinationOnDisk, AppliedSetsAreCombinedOn) {
    const auto answer = run({
        script(kTwoItems + L"type \"New set\" ULS\npress Apply\n"),
        [&] {
            // 1.5 x Dead - 2 x Full
            EXPECT_EQ(values(L"ULS", kHead), (std::vector<float>{1.5, 1, 4.5, 8, 7.5, 1}));
            EXPECT_EQ(values(L"ULS", kPressure), std::vector<float>(6, -2.5f));
            EXPECT_EQ(rows(), 2u);
        },
        script(L"choose \"Analysis set\" ULS\n"
               L"press Add\n"
               L"check Envelope\n"
               L"choose 1116 \"Absolute maximum with sign\"\n"
               L"type \"New set\" Peak\n"
               L"press OK\n"),
    });
    EXPECT_EQ(answer, IDOK);
    EXPECT_TRUE(model.host.errors().empty());
    // Of 1.5 x Dead {1.5 3 4.5 6 7.5 9}, -2 x Full {0 -2 0 2 0 -8} and -2 x ULS {-3 -2 -9 -16 -15 -2}.
    EXPECT_EQ(values(L"Peak", kHead), (std::vector<float>{-3, 3, -9, -16, -15, 9}));
    EXPECT_EQ(values(L"Peak", 9000000 + kHead), (std::vector<float>{3, 1, 3, 3, 3, 1}));
    EXPECT_TRUE(fs::exists(model.folder / "_RCB_ULS.lmop"));
    EXPECT_TRUE(fs::exists(model.folder / "_RCB_Peak.lmop"));

    // Both are there for whoever opens the saved document.
    EXPECT_TRUE(document->save());
    document = std::move(*Document::open(model.folder / "dam.wkm"));
    EXPECT_EQ(values(L"Peak", kHead)[3], -16);
    EXPECT_EQ(run({[] {
                  const auto* selector =
                      framework::findWindow(GetDlgItem(GetActiveWindow(), IDC_COMB_ANALYSIS));
                  ASSERT_EQ(selector->items.size(), 3u);
                  EXPECT_EQ(selector->items[1].texts[0], L"ULS");
              }}),
              IDCANCEL);
}

TEST_F(CombinationOnDisk, ComponentsThatAStepLacksAreLeftOutWithAWarning) {
    EXPECT_EQ(run({script(L"press Add\nchoose \"From result\" Water:Low\npress Add\ntype \"New set\" N\n"
                          L"press OK\n")}),
              IDOK);
    EXPECT_EQ(values(L"N", kHead), (std::vector<float>{11, 12, 13, 14, 15, 16}));
    EXPECT_TRUE(values(L"N", kPressure).empty());
    ASSERT_TRUE(model.host.lastCombination());
    const auto& warnings = model.host.lastCombination()->warnings;
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings[0].find("Pressure head"), std::string::npos) << warnings[0];
}

TEST_F(CombinationOnDisk, AFailureLeavesNothingAndTheDialogOpen) {
    const fs::path results = model.folder / "a.lmop";
    const std::string bytes = bytesOf(results);
    const auto type = [](const std::wstring& name) { return script(L"type \"New set\" \"" + name + L"\""); };
    rlimit unlimited{};
    getrlimit(RLIMIT_FSIZE, &unlimited);
    std::signal(SIGXFSZ, SIG_IGN);
    const struct {
        const char* what;
        std::function<void()> before; ///< between adding and applying
        std::function<void()> after;  ///< what makes it good again
        const char* error;            ///< a part of it
    } table[] = {
        {"gone", [&] { fs::rename(results, model.folder / "away"); },
         [&] { fs::rename(model.folder / "away", results); }, "are gone"},
        {"cut", [&] { fs::resize_file(results, 500); }, [&] { writeBytes(results, bytes); }, "a.lmop"},
        {"full disk", // the limit of the size of a file stands for it
         [] {
             const rlimit small{1000, RLIM_INFINITY};
             setrlimit(RLIMIT_FSIZE, &small);
         },
         [&] { setrlimit(RLIMIT_FSIZE, &unlimited); }, "_RCB_New.lmop"},
        {"infinite", script(L"type \"Scale factor\" inf\npress Add"), script(L"select 1109 #2\npress Delete"),
         "is not finite"},
        {"too large", script(L"type \"Scale factor\" 1e99\npress Add"),
         script(L"select 1109 #2\npress Delete"), "is not finite"},
        {"no file name", type(L"a/b"), type(L"New"), "holds '/'"},
        {"too long", type(std::wstring(65, L'x')), type(L"New"), "more than 64 characters"},
        {"a blank", type(L" "), type(L"New"), "begins or ends with a blank"},
        {"an analysis", type(L"Static"), type(L"New"), "already used"},
        {"no name", type(L""), type(L"New"), "The name of the new set is empty"},
        {"no items", script(L"press \"Delete All\""), script(kTwoItems), "nothing to combine"},
    };
    for (const auto& row : table) {
        SCOPED_TRACE(row.what);
        const auto answer = run({
            script(kTwoItems + L"type \"New set\" New"),
            row.before,
            [&] {
                const auto listed = model.listing();
                const std::size_t errors = model.host.errors().size(), items = rows(), known = analyses();
                for (const wchar_t* press : {L"press Apply", L"press OK"})
                    script(press)();
                ASSERT_EQ(model.host.errors().size(), errors + 2);
                EXPECT_NE(model.host.errors().back().find(row.error), std::string::npos)
                    << model.host.errors().back();
                EXPECT_EQ(rows(), items);
                EXPECT_EQ(analyses(), known);
                EXPECT_EQ(model.listing(), listed);
            },
            row.after,
            script(L"press OK"),
        });
        EXPECT_EQ(answer, IDOK);
        EXPECT_EQ(values(L"New", kHead), (std::vector<float>{1.5, 1, 4.5, 8, 7.5, 1}));
        ASSERT_TRUE(model.host.ExecuteCommand(document.get(), L"Undo", {}));
        fs::remove(model.folder / "_RCB_New.lmop");
    }
}

} // namespace
