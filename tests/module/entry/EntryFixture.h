#pragma once

#include "host/dialogs/QMDialog.h"
#include "module/entry/VEXAGpsDialog.h"
#include "module/resources/Templates.h"
#include "tests/support/DialogFixture.h"

#include <string>
#include <vector>

inline const std::vector<std::wstring> kModelessNames = {
    L"CVEXAGpsSAMResultDlg",    L"CVEXAGpsDynamicResultsGraphDlg",
    L"CVEXAGpsResultsGraphDlg", L"CVEXAGpsDynamicResultsSelectDlg",
    L"CVEXAGpsAnalResult",      L"CVEXAGpsDynamicResultsPlotDlg",
    L"CVEXAGpsSafetyGraphDlg",  L"CVEXAGpsStagewiseRelDispDlg",
    L"CGpsGenerateOptModelDlg",
};
inline const std::vector<std::wstring> kModalNames = {
    L"CVEXAGpsResultCombinationDlg",
    L"CGpsGenerateOptModelDlg",
    L"CGpsResponseSurfaceDlg",
};

/// The module is initialised; the document's observers are the dialogs that live.
class EntryFixture : public DialogFixture {
  protected:
    EntryFixture() { Init_VEXA_gpsdll(); }

    std::int64_t openModeless(const std::wstring& name, void* p1 = nullptr, void* p2 = nullptr) {
        return IVEXAGpsDialog::DoModeless(&document, name.c_str(), p1, p2);
    }
    std::int64_t runModal(const std::wstring& name, void* p1 = nullptr) {
        return IVEXAGpsDialog::DoModal(&document, name.c_str(), p1, nullptr);
    }
    /// The active window as the dialog that it is; null for others.
    template <class Dialog = CQMDialog>
    static Dialog* active() {
        return dynamic_cast<Dialog*>(CWnd::FromHandlePermanent(GetActiveWindow()));
    }
    static std::wstring textOf(const CWnd* window) {
        std::wstring text;
        if (window) window->GetWindowText(text);
        return text;
    }
};
