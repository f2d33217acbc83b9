#include "host/dialogs/ListCtrlEx2.h"

#include "framework/text/Numbers.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/DesktopPort.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

using Row = framework::WindowItem;

std::wstring textAt(const Row& row, std::size_t column) {
    return column < row.texts.size() ? row.texts[column] : std::wstring();
}

bool isNumber(const std::wstring& text) {
    return !text.empty() && text.find_first_not_of(L"0123456789+-.eE ") == std::wstring::npos &&
           text.find_first_of(L"0123456789") != std::wstring::npos;
}

} // namespace

int CListCtrlEx2::SortByColumn(int column, bool ascending) {
    auto* record = Record();
    if (!record || column < 0 || column >= GetColumnCount()) return 0;
    const auto place = static_cast<std::size_t>(column);
    auto& rows = record->items;
    const bool numeric =
        std::ranges::all_of(rows, [&](const Row& row) { return isNumber(textAt(row, place)); });
    const auto isLess = [&](const Row& a, const Row& b) {
        if (numeric) return framework::wtof(textAt(a, place)) < framework::wtof(textAt(b, place));
        return textAt(a, place) < textAt(b, place);
    };
    std::vector<std::size_t> order(rows.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, [&](std::size_t a, std::size_t b) {
        return ascending ? isLess(rows[a], rows[b]) : isLess(rows[b], rows[a]);
    });
    std::vector<Row> sorted;
    int current = -1;
    for (const std::size_t from : order) {
        if (record->current == static_cast<int>(from)) current = static_cast<int>(sorted.size());
        sorted.push_back(std::move(rows[from]));
    }
    rows = std::move(sorted);
    record->current = current;
    m_nSortColumn = column;
    m_bAscending = ascending;
    framework::windowChanged(m_hWnd, framework::change::kContent);
    return 1;
}

int CListCtrlEx2::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    const auto* notice = message == WM_NOTIFY ? reinterpret_cast<const NMHDR*>(lParam) : nullptr;
    if (notice && notice->code == LVN_COLUMNCLICK) {
        const int column = reinterpret_cast<const NMLISTVIEW*>(notice)->iSubItem;
        SortByColumn(column, column != m_nSortColumn || !m_bAscending);
    }
    return CExtListCtrl::OnChildNotify(message, wParam, lParam, result);
}
