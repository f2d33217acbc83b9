#include "module/entry/VEXAGpsDialog.h"

#include "framework/system/Library.h"
#include "framework/text/CodePage.h"
#include "framework/windows/WinThread.h"
#include "module/combination/VEXAGpsResultCombinationDlg.h"
#include "module/graphs/VEXAGpsAnalResult.h"
#include "module/graphs/VEXAGpsDynamicResultsGraphDlg.h"
#include "module/graphs/VEXAGpsDynamicResultsPlotDlg.h"
#include "module/graphs/VEXAGpsDynamicResultsSelectDlg.h"
#include "module/graphs/VEXAGpsResultsGraphDlg.h"
#include "module/optimization/GpsGenerateOptModelDlg.h"
#include "module/optimization/GpsResponseSurfaceDlg.h"
#include "module/resources/Templates.h"
#include "module/stability/VEXAGpsSAMResultDlg.h"
#include "module/stability/VEXAGpsSafetyGraphDlg.h"
#include "module/stability/VEXAGpsStagewiseRelDispDlg.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace {

/// What every dialog is opened with.
struct Opening {
    CQMDocBase* doc;
    CWnd* main; ///< null without a main window
    CQMViewBase* view;
    int offset = 0; ///< of the view's upper edge below the main window's, in pixels
    void* p1;
    void* p2;
};

/// Nothing without a document or an active view.
std::optional<Opening> openingFor(CQMDocBase* doc, void* p1, void* p2) {
    if (!doc) return {};
    CWinThread* thread = AfxGetThread();
    CWnd* main = thread ? thread->GetMainWnd() : nullptr;
    CQMViewBase* view = doc->GetActiveView();
    if (!view) return {};
    CRect viewRect;
    CRect mainRect;
    view->GetWindowRect(&viewRect);
    if (main) main->GetWindowRect(&mainRect);
    return Opening{doc, main, view, viewRect.top - mainRect.top, p1, p2};
}

using NewDialog = std::unique_ptr<CQMDialog>;

template <class Dialog>
NewDialog makePlain(const Opening& opening) {
    return std::make_unique<Dialog>(opening.doc, opening.main);
}

NewDialog makeSlopeResult(const Opening& opening) {
    return std::make_unique<CVEXAGpsSAMResultDlg>(opening.doc, opening.p2);
}

NewDialog makeSafetyGraph(const Opening& opening) {
    const auto* name = static_cast<const wchar_t*>(opening.p1);
    auto dialog = std::make_unique<CVEXAGpsSafetyGraphDlg>(opening.doc, opening.main);
    dialog->SetName(name ? name : L"");
    return dialog;
}

NewDialog makeRelativeDisplacement(const Opening& opening) {
    auto dialog = std::make_unique<CVEXAGpsStagewiseRelDispDlg>(opening.doc, opening.main);
    dialog->SetView(static_cast<CQMViewBase*>(opening.p1));
    return dialog;
}

NewDialog makeOptimizedModel(const Opening& opening) {
    return std::make_unique<CGpsGenerateOptModelDlg>(opening.view, opening.doc, opening.main);
}

int createByClass(CQMDialog& dialog, const Opening&) {
    return dialog.Create(nullptr);
}

/// Whatever Create the class has.
int createSafetyGraph(CQMDialog& dialog, const Opening&) {
    return dialog.Create(IDD_SAFETY_GRAPH, nullptr);
}

/// The design reaches a dialog that could not be made and is about to go, never one that is shown: modeless,
/// this dialog takes none.
int createOptimizedModel(CQMDialog& dialog, const Opening& opening) {
    if (dialog.Create(nullptr)) return 1;
    if (const auto* design = static_cast<const tagTDgnaGUI*>(opening.p1))
        static_cast<CGpsGenerateOptModelDlg&>(dialog).SetDesign(*design);
    return 0;
}

struct ModelessRow {
    const char* name;
    NewDialog (*make)(const Opening& opening);
    int (*create)(CQMDialog& dialog, const Opening& opening);
};

constexpr ModelessRow kModeless[] = {
    {"CVEXAGpsSAMResultDlg", &makeSlopeResult, &createByClass},
    {"CVEXAGpsDynamicResultsGraphDlg", &makePlain<CVEXAGpsDynamicResultsGraphDlg>, &createByClass},
    {"CVEXAGpsResultsGraphDlg", &makePlain<CVEXAGpsResultsGraphDlg>, &createByClass},
    {"CVEXAGpsDynamicResultsSelectDlg", &makePlain<CVEXAGpsDynamicResultsSelectDlg>, &createByClass},
    {"CVEXAGpsAnalResult", &makePlain<CVEXAGpsAnalResult>, &createByClass},
    {"CVEXAGpsDynamicResultsPlotDlg", &makePlain<CVEXAGpsDynamicResultsPlotDlg>, &createByClass},
    {"CVEXAGpsSafetyGraphDlg", &makeSafetyGraph, &createSafetyGraph},
    {"CVEXAGpsStagewiseRelDispDlg", &makeRelativeDisplacement, &createByClass},
    {"CGpsGenerateOptModelDlg", &makeOptimizedModel, &createOptimizedModel},
};

std::int64_t runCombination(const Opening& opening) {
    auto* view = opening.p1 ? static_cast<CQMViewBase*>(opening.p1) : opening.view;
    CVEXAGpsResultCombinationDlg dialog(opening.doc, view, opening.main);
    return dialog.DoModal();
}

template <class Dialog>
std::int64_t runDesign(Dialog&& dialog, const void* design) {
    if (design) dialog.SetDesign(tagTDgnaGUI(*static_cast<const tagTDgnaGUI*>(design)));
    return dialog.DoModal();
}

std::int64_t runOptimizedModel(const Opening& opening) {
    return runDesign(CGpsGenerateOptModelDlg(opening.view, opening.doc, opening.main), opening.p1);
}

std::int64_t runResponseSurface(const Opening& opening) {
    return runDesign(CGpsResponseSurfaceDlg(opening.doc, opening.main), opening.p1);
}

struct ModalRow {
    const char* name;
    std::int64_t (*run)(const Opening& opening);
};

constexpr ModalRow kModal[] = {
    {"CVEXAGpsResultCombinationDlg", &runCombination},
    {"CGpsGenerateOptModelDlg", &runOptimizedModel},
    {"CGpsResponseSurfaceDlg", &runResponseSurface},
};

/// The row of a class name; null for null and for names that no row has.
template <class Row, std::size_t N>
const Row* findRow(const Row (&rows)[N], const wchar_t* className) {
    for (const Row& row : rows)
        if (className && framework::fromUtf8(row.name) == className) return &row;
    return nullptr;
}

} // namespace

std::int64_t IVEXAGpsDialog::DoModal(CQMDocBase* doc, const wchar_t* className, void* p1, void* p2) {
    const auto opening = openingFor(doc, p1, p2);
    if (!opening) return 0;
    const ModalRow* row = findRow(kModal, className);
    return row ? row->run(*opening) : 0;
}

std::int64_t IVEXAGpsDialog::DoModeless(CQMDocBase* doc, const wchar_t* className, void* p1, void* p2) {
    const auto opening = openingFor(doc, p1, p2);
    if (!opening) return 0;
    const ModelessRow* row = findRow(kModeless, className);
    if (!row) return 0;
    NewDialog dialog = row->make(*opening);
    dialog->SetInitPos(InitialPlace::MainWindow, 0, opening->offset);
    if (!row->create(*dialog, *opening)) return 0; // the object goes here
    // From here on it belongs to its window, which a handler may destroy.
    const HWND window = dialog.release()->m_hWnd;
    ShowWindow(window, SW_SHOW);
    SetActiveWindow(window);
    return 0;
}

std::int64_t IVEXAGpsDialog::DoModal(const wchar_t*, void*) {
    return -1;
}

std::int64_t IVEXAGpsDialog::DoModeless(const wchar_t*, void*) {
    AfxGetMainWnd();
    return 0;
}

extern "C" void Init_VEXA_gpsdll() {
    const auto templates = moduleTemplates();
    framework::addTemplates(templates);
    framework::keepLibrary(templates.data());
}
