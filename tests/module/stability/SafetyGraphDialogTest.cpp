#include "framework/files/PathMap.h"
#include "framework/windows/desktop/UserActions.h"
#include "host/chart/ChartCtrl.h"
#include "module/resources/resource.h"
#include "module/stability/VEXAGpsSafetyGraphDlg.h"
#include "tests/module/entry/EntryFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <fstream>

namespace {

using namespace tqx::frx;
namespace user = framework::user;

constexpr const char* kHistory = "SUBCASE : first\n"
                                 "ITERATION DISPLACEMENT FOS CONVERGED\n"
                                 "5 0.001 1.00 T\n3 0.002 1.10 F\n4 0.004 1.20 T\n"
                                 "\n"
                                 "SUBCASE : unfinished\n9 0.5 0.9 F\n\n"
                                 "SUBCASE : heading\nITERATION\n";

class SafetyGraph : public EntryFixture {
  protected:
    SafetyGraph() { document.path = framework::widePath(folder / "dam.wkm"); }

    void open(const wchar_t* name = L"slope") {
        openModeless(L"CVEXAGpsSafetyGraphDlg", const_cast<wchar_t*>(name));
        dialog = active<CVEXAGpsSafetyGraphDlg>();
        ASSERT_TRUE(dialog);
    }
    void write(const std::string& text) const {
        std::ofstream(folder / "dam_slope_fos.out", std::ios::binary) << text;
    }
    HWND control(int id) const { return GetDlgItem(dialog->m_hWnd, id); }
    void choose(int id, int item) const { EXPECT_TRUE(user::choose(control(id), item)); }
    const ChartState& chart() const { return *findChart(control(IDC_SAFETY_CHART)); }
    /// The points of the only series; "none" without one.
    std::string points() const {
        if (chart().series.size() != 1) return chart().series.empty() ? "none" : "many";
        std::ostringstream out;
        for (std::size_t i = 0; i < chart().series[0].y.size(); ++i)
            out << chart().series[0].x[i] << "," << chart().series[0].y[i] << " ";
        return out.str();
    }

    TemporaryFolder folder;
    CVEXAGpsSafetyGraphDlg* dialog = nullptr;
};

TEST_F(SafetyGraph, BothCurvesOfEverySubcase) {
    write(kHistory);
    open();
    EXPECT_TRUE(host.warnings.empty());
    const auto& cases = framework::findWindow(control(IDC_SAFETY_CASE))->items;
    ASSERT_EQ(cases.size(), 3u);
    EXPECT_EQ(cases[1].texts[0], L"unfinished");
    EXPECT_EQ(cases[2].data, 2u);
    EXPECT_EQ(points(), "0.001,1 0.004,1.2 ");
    const struct {
        int subcase;
        int type;
        const char* points;
    } rows[] = {{0, 1, "5,1 8,1.1 12,1.2 "}, {1, 1, "9,0.9 "}, {1, 0, "none"}, {2, 0, "none"}, {2, 1, "none"},
                {0, 0, "0.001,1 0.004,1.2 "}};
    for (const auto& row : rows) {
        choose(IDC_SAFETY_CASE, row.subcase);
        choose(IDC_SAFETY_TYPE, row.type);
        EXPECT_EQ(points(), row.points) << row.subcase << " " << row.type;
    }
    dynamic_cast<CComboBox&>(*CWnd::FromHandlePermanent(control(IDC_SAFETY_TYPE))).SetCurSel(-1);
    choose(IDC_SAFETY_CASE, 1);
    choose(IDC_SAFETY_CASE, 0);
    EXPECT_EQ(points(), "0.001,1 0.004,1.2 ") << "no type counts as the first";
    dialog->DestroyWindow();
}

TEST_F(SafetyGraph, TheChartIsSetUpForItsType) {
    write(kHistory);
    host.texts[L"IDS_VEXAGPS_SAFETY_GRAPH_Y_AXIS"] = L"Factor";
    open();
    for (const int type : {1, 0}) {
        choose(IDC_SAFETY_TYPE, type);
        const std::wstring kind = type ? L"ITER" : L"DISP";
        const ChartState& state = chart();
        EXPECT_EQ(state.title, L"IDS_VEXAGPS_" + kind + L"_SAFETY_GRAPH_TITLE");
        EXPECT_EQ(state.axes[0].title, L"IDS_VEXAGPS_" + kind + L"_SAFETY_GRAPH_X_AXIS");
        EXPECT_EQ(state.axes[0].format, type ? L"%.0f" : L"%.4le");
        EXPECT_EQ(state.axes[1].title, L"Factor");
        EXPECT_EQ(state.axes[1].format, L"%.4le");
        EXPECT_EQ(state.axes[0].titleSize, 12.0);
        EXPECT_EQ(state.axes[1].titleSize, 12.0);
        EXPECT_TRUE(state.menu && state.toolTip && state.markers && state.minorGrid);
        EXPECT_FALSE(state.summary || state.legend || state.dirty);
        EXPECT_EQ(state.zoomMode, 1);
        EXPECT_EQ(state.zoomAxes, 3);
        EXPECT_EQ(state.series[0].name, L"Factor");
        EXPECT_EQ(state.series[0].width, 2.0);
    }
    dialog->DestroyWindow();
}

TEST_F(SafetyGraph, AFileThatCannotBeReadIsOneWarning) {
    host.texts[L"IDS_VEXAGPS_NO_SAFETY_GRAPH_FILE"] = L"no %s";
    for (const bool isFolder : {false, true}) {
        if (isFolder) std::filesystem::create_directory(folder / "dam__fos.out");
        host.warnings.clear();
        open(nullptr);
        EXPECT_EQ(host.warnings, std::vector{L"no " + framework::widePath(folder / "dam__fos.out")})
            << isFolder;
        EXPECT_TRUE(framework::findWindow(control(IDC_SAFETY_CASE))->items.empty());
        EXPECT_EQ(points(), "none");
        choose(IDC_SAFETY_TYPE, 1);
        EXPECT_EQ(points(), "none");
        dialog->DestroyWindow();
    }
}

TEST_F(SafetyGraph, RowsThatAreTooShortAreNamed) {
    host.texts[L"IDS_VEXAGPS_SAFETY_GRAPH_SHORT_LINE"] = L"%s:%d";
    host.texts[L"IDS_VEXAGPS_SAFETY_GRAPH_SHORT_LINES"] = L"%s:%d more";
    write("SUBCASE : a\n1\n2\n3\n4\n5\n6\n7\n1 1 1 T\n");
    open();
    ASSERT_EQ(host.warnings.size(), 6u);
    EXPECT_TRUE(host.warnings[0].ends_with(L"_fos.out:2"));
    EXPECT_TRUE(host.warnings[5].ends_with(L"_fos.out:2 more"));
    EXPECT_EQ(points(), "1,1 ");
    dialog->DestroyWindow();
}

TEST_F(SafetyGraph, ChoicesAreDisabledWhileTheDocumentLocksThem) {
    write(kHistory);
    for (const int locked : {1, 0}) {
        document.m_bChoicesLocked = locked;
        open();
        for (const int id : {IDC_SAFETY_CASE, IDC_SAFETY_TYPE})
            EXPECT_EQ(IsWindowEnabled(control(id)), !locked) << id;
        dialog->DestroyWindow();
    }
}

TEST_F(SafetyGraph, TheFileIsReadOnce) {
    write(kHistory);
    open();
    write("SUBCASE : other\n1 1 1 T\n");
    choose(IDC_SAFETY_TYPE, 1);
    EXPECT_EQ(points(), "5,1 8,1.1 12,1.2 ");
    host.texts[L"IDS_VEXA_GPS_ANALYSIS_CASE"] = L"Fall";
    dialog->OnChangeLanguage();
    EXPECT_EQ(points(), "5,1 8,1.1 12,1.2 ") << "the selection stays";
    EXPECT_EQ(framework::findWindow(control(IDC_SAFETY_CASE_LABEL))->text, L"Fall");
    dialog->DestroyWindow();
}

} // namespace
