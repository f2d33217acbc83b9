#include "workbench/cli/CombineDialog.h"

#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "framework/windows/desktop/UserActions.h"
#include "host/MSGFunction.h"
#include "module/entry/VEXAGpsDialog.h"
#include "module/resources/resource.h"
#include "workbench/session/WindowFrame.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace workbench::cli {
namespace {

namespace user = framework::user;

/// The text that is read as this very number.
std::wstring exactText(double number) {
    char text[32];
    const auto end = std::to_chars(std::begin(text), std::end(text), number).ptr;
    return {std::begin(text), end};
}

/// Works the dialog; each function is false when the dialog did not take it.
class DialogUser {
  public:
    explicit DialogUser(HWND dialog)
        : dialog_(dialog) {}

    bool ask(const T_COMB_ENVL_RESULT_D& request) const {
        if (!chooseObject(IDC_COMB_ANALYSIS, request.analysis)) return false;
        for (std::size_t i = 0; i < request.cases.GetSize(); ++i)
            if (!add(request.cases[i], request.steps[i], request.factors[i])) return false;
        const bool isLinear = request.combinationType == CombinationType::Linear;
        return press(isLinear ? IDC_COMB_LINEAR : IDC_COMB_ENVELOPE) &&
               (isLinear ? user::choose(control(IDC_COMB_ACTION), request.action)
                         : user::choose(control(IDC_COMB_ENVELOPE_KIND), request.envelopeKind)) &&
               enter(IDC_COMB_NAME, request.name);
    }
    bool press(int id) const { return user::press(control(id)); }

  private:
    HWND control(int id) const { return GetDlgItem(dialog_, id); }

    bool add(CPOHCase* resultCase, CPOHVCase* step, double factor) const {
        const CPOHBase* object = step ? static_cast<const CPOHBase*>(step) : resultCase;
        return chooseObject(IDC_COMB_RESULT, object) && enter(IDC_COMB_FACTOR, exactText(factor)) &&
               press(IDC_COMB_ADD);
    }

    /// Items of the selectors hold the objects of the result tree.
    bool chooseObject(int id, const CPOHBase* object) const {
        const auto* record = framework::findWindow(control(id));
        if (!record) return false;
        const auto data = reinterpret_cast<DWORD_PTR>(object);
        const auto found = std::ranges::find(record->items, data, &framework::WindowItem::data);
        return found != record->items.end() &&
               user::choose(control(id), static_cast<int>(found - record->items.begin()));
    }

    /// An edit may refuse or cut a text.
    bool enter(int id, const std::wstring& text) const {
        return user::paste(control(id), text) && framework::windowText(control(id)) == text;
    }

    HWND dialog_;
};

} // namespace

bool combineInDialog(Document& document, const T_COMB_ENVL_RESULT_D& request) {
    WindowFrame frame(L"vexa");
    frame.showView(*document.GetActiveView());
    bool isAsked = false;
    framework::scriptedDesk().addStep([&] {
        const DialogUser dialog(GetActiveWindow());
        isAsked = dialog.ask(request);
        if (isAsked) dialog.press(IDOK);
    });
    // Where OK leaves the dialog open, the desk finds nothing more to do and cancels it.
    const auto answer = IVEXAGpsDialog::DoModal(&document, L"CVEXAGpsResultCombinationDlg", nullptr, nullptr);
    framework::scriptedDesk().clear();
    if (!isAsked) qmMsgOutError(L"The combination dialog did not take the items or the name of the set.");
    return answer == IDOK;
}

} // namespace workbench::cli
