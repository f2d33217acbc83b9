#include "framework/windows/desktop/UserActions.h"
#include "framework/windows/dialogs/DataExchange.h"
#include "framework/windows/dialogs/TextWidth.h"
#include "host/QSort.h"
#include "host/dialogs/DlgTabCtrl.h"
#include "host/dialogs/DlgUtil.h"
#include "host/dialogs/ListCtrlEx2.h"
#include "host/dialogs/QMEditUnit.h"
#include "tests/host/dialogs/ToolDialog.h"

#include <cmath>
#include <limits>

namespace {

using namespace framework;

class Helpers : public ToolTest {
  protected:
    Helpers()
        : dialog(log, &document) {
        dialog.exchange = [this](CDataExchange* run) {
            DDX_Control(run, IDC_TOOL_ANALYSIS, box);
            DDX_Control(run, IDC_TOOL_CHECKS, checks);
            DDX_Control(run, IDC_TOOL_TABLE, table);
            DDX_Control(run, IDC_TOOL_VALUE, value);
            DDX_Control(run, IDC_TOOL_TABS, tabs);
        };
        EXPECT_TRUE(dialog.CDialog::Create(IDD_TOOL));
        dialog.ShowWindow(SW_SHOW);
    }
    ToolDialog dialog;
    CComboBox box;
    CCheckListBox checks;
    CListCtrlEx2 table;
    CQMEditUnit value;
    CDlgTabCtrl tabs;
};

TEST_F(Helpers, ComboBoxesByData) {
    constexpr DWORD_PTR kNone = static_cast<DWORD_PTR>(CB_ERR);
    DWORD_PTR data = 77;
    EXPECT_EQ(CDlgUtil::CobxGetCurSelItemData(box), kNone);
    EXPECT_EQ(CDlgUtil::CobxGetItemDataByCurSel(box, data), 0);
    EXPECT_EQ(data, 77u);
    EXPECT_EQ(CDlgUtil::CobxAddItem(box, L"maximum", 10), 0);
    EXPECT_EQ(CDlgUtil::CobxAddItem(box, L"none", kNone), 1);
    const std::wstring longest = L"a text that is much wider than the box that it is listed in";
    EXPECT_EQ(CDlgUtil::CobxAddItem(box, longest, 10), 2);
    EXPECT_EQ(CDlgUtil::CobxSetCurSelItemData(box, 10), 0);
    EXPECT_EQ(CDlgUtil::CobxSetCurSelItemData(box, 11), CB_ERR);
    EXPECT_EQ(CDlgUtil::CobxGetCurSelItemData(box), 10u);
    EXPECT_EQ(CDlgUtil::CobxSetCurSelItemData(box, kNone), 1);
    EXPECT_EQ(CDlgUtil::CobxGetItemDataByCurSel(box, data), 1);
    EXPECT_EQ(data, kNone);
    CDlgUtil::CobxUpdateItemWidth(box);
    EXPECT_GT(box.GetDroppedWidth(), textWidth(longest));
}

TEST_F(Helpers, CheckListsRadiosAndGroupsOfControls) {
    for (DWORD_PTR i = 0; i < 4; ++i)
        CDlgUtil::CLBAddItem(checks, std::to_wstring(i), 10 * i, i == 2);
    EXPECT_EQ(CDlgUtil::CLBGetCheck(checks), std::vector<DWORD_PTR>{20});
    CDlgUtil::CLBSetCheck(checks, {30, 0, 99});
    EXPECT_EQ(CDlgUtil::CLBGetCheck(checks), (std::vector<DWORD_PTR>{0, 30}));

    EXPECT_EQ(CDlgUtil::CtrlRadioGetCheck(&dialog, IDC_TOOL_FIRST, IDC_TOOL_THIRD), -1);
    for (const int position : {2, 0, 1, -1}) {
        CDlgUtil::CtrlRadioSetCheck(&dialog, IDC_TOOL_FIRST, IDC_TOOL_THIRD, position);
        EXPECT_EQ(CDlgUtil::CtrlRadioGetCheck(&dialog, IDC_TOOL_FIRST, IDC_TOOL_THIRD), position);
    }
    CDlgUtil::CtrlEnableDisable(&dialog, {IDC_TOOL_FIRST, 999, IDC_TOOL_LAST}, 0);
    CDlgUtil::CtrlShowHide(&dialog, {IDC_TOOL_SECOND, 999}, 0);
    EXPECT_FALSE(dialog.GetDlgItem(IDC_TOOL_FIRST)->IsWindowEnabled() ||
                 dialog.GetDlgItem(IDC_TOOL_LAST)->IsWindowEnabled());
    EXPECT_TRUE(dialog.GetDlgItem(IDC_TOOL_SECOND)->IsWindowEnabled());
    EXPECT_FALSE(dialog.GetDlgItem(IDC_TOOL_SECOND)->IsWindowVisible());
    CDlgUtil::CtrlEnableDisable(&dialog, {IDC_TOOL_FIRST}, 1);
    CDlgUtil::CtrlShowHide(&dialog, {IDC_TOOL_SECOND}, 1);
    EXPECT_TRUE(dialog.GetDlgItem(IDC_TOOL_FIRST)->IsWindowEnabled() &&
                dialog.GetDlgItem(IDC_TOOL_SECOND)->IsWindowVisible());
}

/// The first column of a table in a line, selected rows with a star.
std::wstring column(const CListCtrl& table, int index = 0) {
    std::wstring line;
    for (int row = 0; row < table.GetItemCount(); ++row)
        line += table.GetItemText(row, index) + (table.GetItemState(row, LVIS_SELECTED) ? L"* " : L" ");
    return line;
}

TEST_F(Helpers, TablesTakeRowsAndSortByTheirHeadings) {
    table.InsertColumn(0, L"left over");
    table.Initialize();
    EXPECT_EQ(table.GetColumnCount(), 0);
    EXPECT_EQ(table.AddColInfo(L"Name", 100), 0);
    EXPECT_EQ(table.AddColInfo(L"Factor", 40, LVCFMT_RIGHT), 1);
    EXPECT_EQ(table.GetColumnWidth(1), 40);
    const wchar_t* rows[][2] = {{L"b", L"10"}, {L"a", L"-9.5"}, {L"c", L"1e1"}, {L"B", L"9"}};
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(CDlgUtil::SetListItem(table, i, {rows[i][0], rows[i][1]}));
        table.SetItemData(i, static_cast<DWORD_PTR>(i));
    }
    EXPECT_FALSE(CDlgUtil::SetListItem(table, 5, {L"x"}));
    EXPECT_FALSE(CDlgUtil::SetListItem(table, -1, {L"x"}));
    user::select(table.m_hWnd, {3, 0});
    EXPECT_EQ(CDlgUtil::GetSelectedListItemIndex(table), (std::vector<int>{0, 3}));

    ASSERT_TRUE(user::clickColumn(table.m_hWnd, 1)); // as numbers, equal ones in their order
    EXPECT_EQ(column(table), L"a B* b* c ");
    EXPECT_EQ(table.GetItemData(0), 1u);
    user::clickColumn(table.m_hWnd, 1);
    EXPECT_EQ(column(table), L"b* c B* a ");
    EXPECT_EQ(table.GetNextItem(-1, LVNI_FOCUSED), 0); // the row that was selected last went along
    user::clickColumn(table.m_hWnd, 0);
    EXPECT_EQ(column(table), L"B* a b* c ");
    table.SetItemText(0, 1, L"nine"); // one text makes it a column of texts
    user::clickColumn(table.m_hWnd, 1);
    EXPECT_EQ(column(table, 1), L"-9.5 10* 1e1 nine* ");
    EXPECT_FALSE(table.SortByColumn(2, true));
}

TEST_F(Helpers, TabsShowOnePage) {
    CWnd pages[2];
    for (CWnd& page : pages) {
        ASSERT_TRUE(page.Create(nullptr, L"", 0, CRect(), &dialog, 0));
        EXPECT_GE(tabs.AddPage(L"tab", page), 0);
    }
    const auto visible = [&] {
        return std::pair(pages[0].IsWindowVisible() != 0, pages[1].IsWindowVisible() != 0);
    };
    EXPECT_EQ(visible(), std::pair(true, false));
    user::select(tabs.m_hWnd, {1});
    EXPECT_EQ(visible(), std::pair(false, true));
    tabs.ShowPage(0);
    EXPECT_EQ(visible(), std::pair(true, false));
    EXPECT_EQ(tabs.GetPage(1), &pages[1]);
    EXPECT_EQ(tabs.GetPage(2), nullptr);
    CRect area, page;
    tabs.GetWindowRect(&area);
    pages[1].GetWindowRect(&page);
    tabs.AdjustRect(0, &area);
    EXPECT_EQ(page, area);
}

TEST_F(Helpers, AnEditKeepsItsValueAcrossUnits) {
    const auto text = [&] {
        std::wstring shown;
        value.GetWindowText(shown);
        return shown;
    };
    host.unitFactors[UnitKind::Length] = 0.001;
    value.SetEditUnit(UnitKind::Length);
    EXPECT_EQ(text(), L"");
    EXPECT_EQ(value.GetEditNUValue(), 0);
    const double third = 1000.0 / 3;
    value.SetEditNUValue(third);
    EXPECT_EQ(text(), L"0.3333333333");
    EXPECT_EQ(value.GetEditNUValue(), third); // not what the text would give
    host.unitFactors[UnitKind::Length] = 0.01;
    EXPECT_EQ(value.GetEditNUValue(), third); // the text is still in the unit before
    value.UpdateUnit();
    EXPECT_EQ(text(), L"3.333333333");
    EXPECT_EQ(value.GetEditNUValue(), third);
    user::type(value.m_hWnd, L"2.5 cm");
    EXPECT_DOUBLE_EQ(value.GetEditNUValue(), 250);
    host.unitFactors[UnitKind::Length] = 1;
    value.UpdateUnit();
    EXPECT_EQ(text(), L"250");
    value.SetEditText(L"none");
    EXPECT_EQ(value.GetEditNUValue(), 0);
}

TEST(QSort, NumbersWithTheirCompanions) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    std::vector<double> values = {3, kNan, -kInf, 3, kNan, kInf, -0.5};
    std::vector<std::int32_t> positions = {0, 1, 2, 3, 4, 5, 6};
    EXPECT_TRUE(CQSort::QSortDbl(values, positions));
    EXPECT_EQ(positions, (std::vector<std::int32_t>{2, 6, 0, 3, 5, 1, 4}));
    EXPECT_EQ(values[1], -0.5);
    EXPECT_TRUE(std::isnan(values[5]) && std::isnan(values[6]));
    std::vector<std::int32_t> numbers = {5, -2, 5, 0};
    EXPECT_FALSE(CQSort::QSortLong(numbers, std::span(positions).first(3)));
    EXPECT_EQ(numbers, (std::vector<std::int32_t>{5, -2, 5, 0}));
    EXPECT_TRUE(CQSort::QSortLong(numbers));
    EXPECT_EQ(numbers, (std::vector<std::int32_t>{-2, 0, 5, 5}));
}

} // namespace
