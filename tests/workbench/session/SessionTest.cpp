#include "framework/text/CodePage.h"
#include "host/QMMeshManager.h"
#include "host/QMUnitCtrl.h"
#include "host/TitleCtrlView.h"
#include "tests/support/TemporaryFolder.h"
#include "workbench/session/Document.h"
#include "workbench/session/TerminalProgress.h"
#include "workbench/session/UnitTable.h"
#include "workbench/session/WorkbenchHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

using namespace workbench;

TEST(Units, ConvertByDimension) {
    struct Row {
        int kind;
        UnitSystem from, to;
        double factor;
    };
    const Row rows[] = {
        {UnitKind::Stress, {"N", "mm"}, {"N", "m"}, 1e6},
        {UnitKind::Stress, {"N", "mm"}, {"kN", "m"}, 1e3},
        {UnitKind::Stress, {"lbf", "in"}, {"N", "m"}, 6894.757293168361}, // psi, NIST SP 811 table B.9
        {UnitKind::Force, {"tonf", "m"}, {"kN", "m"}, 9.80665},
        {UnitKind::Length, {"N", "ft"}, {"N", "mm"}, 304.8},
        {UnitKind::FlowRate, {"N", "m"}, {"N", "cm"}, 1e6},
        {UnitKind::None, {"N", "mm"}, {"kN", "m"}, 1},
        {UnitKind::Temperature, {"N", "mm"}, {"kN", "m"}, 1},
    };
    for (const Row& row : rows) {
        EXPECT_NEAR(unitFactor(row.kind, row.from, row.to) / row.factor, 1, 1e-12)
            << row.kind << " " << row.to.force;
        EXPECT_NEAR(unitFactor(row.kind, row.to, row.from) * row.factor, 1, 1e-12);
        EXPECT_EQ(unitFactor(row.kind, row.from, row.from), 1);
    }
    EXPECT_EQ(unitLabel(UnitKind::Stress, {"kN", "m"}), "kN/m²");
    EXPECT_EQ(unitLabel(UnitKind::None, {"kN", "m"}), "");
}

TEST(Units, RefusesTextThatIsNoPair) {
    for (const char* text : {"", "kN", "kN,", ",m", "kN;m", "kn,m", "kN,m,s"})
        EXPECT_TRUE(parseUnitSystem(text).force.empty()) << text;
    EXPECT_EQ(parseUnitSystem("kN,m"), (UnitSystem{"kN", "m"}));
}

TEST(TerminalProgress, PrintsPlainLinesWhenNobodyWatches) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
    {
        TerminalProgress progress(file.get());
        progress.Start();
        progress.SetRange(0, 3);
        for (const wchar_t* text : {L"part 1", L"part 2", L"part 10", L"end"}) {
            progress.SetText(text);
            progress.StepIt();
        }
        progress.End();
        progress.Close();
    }
    std::rewind(file.get());
    char text[64] = {};
    EXPECT_EQ(std::fread(text, 1, sizeof text - 1, file.get()), 11u);
    EXPECT_STREQ(text, "part 1\nend\n");
}

TEST(WorkbenchHost, AnswersUnitsLanguageEditionAndEnvironment) {
    SessionOptions options;
    options.edition = Edition::C;
    options.language = Language::Korean;
    options.programFolder = "/opt/a b";
    WorkbenchHost host(options);
    EXPECT_TRUE(IsEditionC());
    EXPECT_FALSE(IsEditionA());
    EXPECT_EQ(CQMAppBase::GetProgramPath(), L"/opt/a b/");
    EXPECT_EQ(CMSGFunction::GetValue(L"IDS_QM_LIB_ERROR"), L"오류");
    ::setenv("VEXA_TEST_VALUE", "yes", 1);
    EXPECT_EQ(CProduct::GetTestEnvValue(L"VEXA_TEST_VALUE"), L"yes");
    EXPECT_EQ(CProduct::GetTestEnvValue(L"VEXA_TEST_NONE"), L"");

    EXPECT_EQ(CQMUnitCtrl::GetConvertFactorCurrent(UnitKind::Stress), 1);
    host.setDatabaseUnits({"N", "mm"});
    host.setCurrentUnits({"kN", "m"});
    EXPECT_NEAR(CQMUnitCtrl::GetConvertFactorCurrent(UnitKind::Stress), 1e3, 1e-9);
    EXPECT_NEAR(CQMUnitCtrl::ConvertCurUnitData2TgtUnit(2, UnitKind::Stress, 0), 2e-3, 1e-15);
    EXPECT_NEAR(CQMUnitCtrl::ConvertTgtUnitData2CurUnit(2e-3, UnitKind::Stress, 0), 2, 1e-12);
    EXPECT_NEAR(CQMUnitCtrl::ConvertUnitDataOut(2, UnitKind::Stress), 2e3, 1e-9);
    EXPECT_EQ(forceUnits()[static_cast<std::size_t>(CQMUnitCtrl::GetUnitSystemForce())], "kN");
    EXPECT_EQ(lengthUnits()[static_cast<std::size_t>(CQMUnitCtrl::GetUnitSystemLength())], "m");
}

TEST(WorkbenchHost, KeepsWhatADocumentShowsAndNamesItsView) {
    const TemporaryFolder folder;
    WorkbenchHost host({});
    ItrKey sets[2];
    {
        ModelDatabase database;
        database.beginTransaction(L"sets");
        for (ItrKey& set : sets)
            set = database.Pool<DPoolMset>()->TR_Add({0, L"set", {}, {}});
        database.commitTransaction();
        ASSERT_TRUE(saveDocument(database, folder / "bracket.v2.wkm"));
    }
    auto opened = Document::open(folder / "bracket.v2.wkm");
    ASSERT_TRUE(opened);
    Document& document = **opened;
    const CQMMeshManager manager(document);
    EXPECT_EQ(manager.SetShowHideMset({sets[0], sets[1]}, 0), 1);
    EXPECT_EQ(manager.SetShowHideMset({sets[1]}, 1), 1);
    EXPECT_FALSE(document.isMeshSetShown(sets[0]));
    EXPECT_TRUE(document.isMeshSetShown(sets[1]));
    EXPECT_EQ(CTitleCtrlView::GetWindowTitleName(document.GetActiveView()), L"bracket.v2");
}

} // namespace
