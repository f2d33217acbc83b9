#include "framework/windows/dialogs/DataExchange.h"

#include "framework/text/CodePage.h"
#include "framework/text/Format.h"
#include "framework/windows/WindowState.h"
#include "framework/windows/controls/Button.h"
#include "framework/windows/controls/ComboBox.h"
#include "framework/windows/controls/ListBox.h"
#include "framework/windows/desktop/DesktopPort.h"
#include "framework/windows/dialogs/Navigation.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <utility>

using framework::findWindow;
using framework::formatWide;

namespace {

/// Drops what the controls notify of while they are filled.
class NotificationLock {
  public:
    explicit NotificationLock(HWND dialog)
        : before_(std::exchange(framework::windowState().lockedOut, dialog)) {}
    ~NotificationLock() { framework::windowState().lockedOut = before_; }
    NotificationLock(const NotificationLock&) = delete;
    NotificationLock& operator=(const NotificationLock&) = delete;

  private:
    HWND before_;
};

/// A number that makes up a whole text, blanks around it aside.
template <class Number>
std::optional<Number> parseWhole(const std::wstring& text) {
    const auto first = text.find_first_not_of(L" \t");
    if (first == std::wstring::npos) return {};
    const auto last = text.find_last_not_of(L" \t");
    std::string narrow = framework::toUtf8(text.substr(first, last - first + 1));
    if (narrow.size() > 1 && narrow[0] == '+' && narrow[1] != '-') narrow.erase(0, 1);
    Number value{};
    const auto [end, error] = std::from_chars(narrow.data(), narrow.data() + narrow.size(), value);
    if (error != std::errc() || end != narrow.data() + narrow.size()) return {};
    return value;
}

void setText(HWND control, const std::wstring& text) {
    // An edit that shows the text already keeps its caret.
    if (framework::windowText(control) != text)
        SendMessage(control, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

template <class Number>
void exchangeNumber(CDataExchange* exchange, int id, Number& value, const wchar_t* format,
                    const std::wstring& complaint) {
    const HWND control = exchange->PrepareEditCtrl(id);
    if (!exchange->m_bSaveAndValidate) {
        setText(control, formatWide(format, value));
        return;
    }
    const auto read = parseWhole<Number>(framework::windowText(control));
    if (!read || !std::isfinite(static_cast<double>(*read))) exchange->Fail(complaint);
    value = *read;
}

void exchangeIndex(CDataExchange* exchange, int id, int& value) {
    auto* record = findWindow(exchange->PrepareCtrl(id));
    if (exchange->m_bSaveAndValidate)
        value = record->current;
    else if (auto* combo = dynamic_cast<CComboBox*>(CWnd::FromHandle(record->handle)))
        combo->SetCurSel(value);
    else if (auto* list = dynamic_cast<CListBox*>(CWnd::FromHandle(record->handle)))
        list->SetCurSel(value);
}

} // namespace

DataExchangeTexts& dataExchangeTexts() {
    static DataExchangeTexts texts;
    return texts;
}

int CWnd::UpdateData(int saveAndValidate) {
    if (!m_hWnd) return 0;
    CDataExchange exchange(this, saveAndValidate);
    const NotificationLock lock(m_hWnd);
    try {
        DoDataExchange(&exchange);
        return 1;
    } catch (const CUserException&) {
        return 0;
    }
}

HWND CDataExchange::PrepareCtrl(int id) {
    m_hWndLast = ::GetDlgItem(m_pDlgWnd->m_hWnd, id);
    m_bEditLast = false;
    if (!m_hWndLast) throw CNotSupportedException("the dialog has no control of id " + std::to_string(id));
    return m_hWndLast;
}

HWND CDataExchange::PrepareEditCtrl(int id) {
    PrepareCtrl(id);
    m_bEditLast = true;
    return m_hWndLast;
}

void CDataExchange::Fail() {
    if (m_hWndLast && m_bSaveAndValidate) {
        SetFocus(m_hWndLast);
        if (m_bEditLast) SendMessage(m_hWndLast, EM_SETSEL, 0, -1);
    }
    throw CUserException();
}

void CDataExchange::Fail(const std::wstring& message) {
    framework::desktop().ShowMessageBox(m_pDlgWnd->m_hWnd, message, framework::windowText(m_pDlgWnd->m_hWnd),
                                        MB_OK | MB_ICONWARNING);
    Fail();
}

void CDataExchange::LimitText(std::size_t characters) {
    if (auto* record = findWindow(m_hWndLast); record && m_bEditLast) record->textLimit = characters;
}

void DDX_Control(CDataExchange* exchange, int id, CWnd& control) {
    const HWND window = exchange->PrepareCtrl(id);
    if (control.m_hWnd == window && CWnd::FromHandlePermanent(window) == &control) return;
    if (!control.SubclassWindow(window))
        throw CNotSupportedException("the control of id " + std::to_string(id) +
                                     " is bound to another object");
}

void DDX_Text(CDataExchange* exchange, int id, std::wstring& value) {
    const HWND control = exchange->PrepareEditCtrl(id);
    if (exchange->m_bSaveAndValidate)
        value = framework::windowText(control);
    else
        setText(control, value);
}

void DDX_Text(CDataExchange* exchange, int id, int& value) {
    exchangeNumber(exchange, id, value, L"%d", dataExchangeTexts().integer);
}

void DDX_Text(CDataExchange* exchange, int id, UINT& value) {
    exchangeNumber(exchange, id, value, L"%u", dataExchangeTexts().integer);
}

void DDX_Text(CDataExchange* exchange, int id, double& value) {
    exchangeNumber(exchange, id, value, L"%.15g", dataExchangeTexts().number);
}

void DDX_Check(CDataExchange* exchange, int id, int& value) {
    const HWND button = exchange->PrepareCtrl(id);
    if (exchange->m_bSaveAndValidate)
        value = static_cast<int>(SendMessage(button, BM_GETCHECK));
    else
        SendMessage(button, BM_SETCHECK, static_cast<WPARAM>(value));
}

void DDX_Radio(CDataExchange* exchange, int id, int& value) {
    const HWND first = exchange->PrepareCtrl(id);
    if (exchange->m_bSaveAndValidate) value = -1;
    int position = 0;
    bool reached = false;
    for (const HWND button : framework::groupOf(first)) {
        reached = reached || button == first;
        if (!reached || !framework::isRadioButton(button)) continue;
        if (!exchange->m_bSaveAndValidate)
            framework::setCheck(button, position == value);
        else if (findWindow(button)->check)
            value = position;
        ++position;
    }
}

void DDX_CBIndex(CDataExchange* exchange, int id, int& value) {
    exchangeIndex(exchange, id, value);
}

void DDX_LBIndex(CDataExchange* exchange, int id, int& value) {
    exchangeIndex(exchange, id, value);
}

void DDX_CBString(CDataExchange* exchange, int id, std::wstring& value) {
    const HWND control = exchange->PrepareCtrl(id);
    if (exchange->m_bSaveAndValidate) {
        value = framework::windowText(control);
        return;
    }
    auto* combo = dynamic_cast<CComboBox*>(CWnd::FromHandle(control));
    if (!combo) return;
    if (framework::hasEdit(control))
        setText(control, value);
    else
        combo->SetCurSel(combo->FindStringExact(-1, value));
}

void DDX_LBString(CDataExchange* exchange, int id, std::wstring& value) {
    const HWND control = exchange->PrepareCtrl(id);
    auto* list = dynamic_cast<CListBox*>(CWnd::FromHandle(control));
    if (!list) return;
    if (!exchange->m_bSaveAndValidate)
        list->SetCurSel(list->FindStringExact(-1, value));
    else if (list->GetText(list->GetCurSel(), value) == LB_ERR)
        value.clear();
}

void DDV_MinMaxInt(CDataExchange* exchange, int value, int smallest, int largest) {
    if (!exchange->m_bSaveAndValidate || (value >= smallest && value <= largest)) return;
    exchange->Fail(
        formatWide(dataExchangeTexts().range, std::to_wstring(smallest), std::to_wstring(largest)));
}

void DDV_MinMaxDouble(CDataExchange* exchange, double value, double smallest, double largest) {
    if (!exchange->m_bSaveAndValidate || (value >= smallest && value <= largest)) return;
    exchange->Fail(
        formatWide(dataExchangeTexts().range, formatWide(L"%g", smallest), formatWide(L"%g", largest)));
}

void DDV_MaxChars(CDataExchange* exchange, const std::wstring& value, int most) {
    if (exchange->m_bSaveAndValidate && value.size() > static_cast<std::size_t>(most))
        exchange->Fail(formatWide(dataExchangeTexts().length, std::to_wstring(most)));
    if (!exchange->m_bSaveAndValidate) exchange->LimitText(static_cast<std::size_t>(most));
}
