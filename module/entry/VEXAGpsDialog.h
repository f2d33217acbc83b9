#pragma once

#include "module/Export.h"

#include <cstdint>

class CQMDocBase;

/// The way to every dialog of the module. Call from the thread of windows, with a host registered, after
/// Init_VEXA_gpsdll. Class names are compared as they are; unknown ones open nothing and answer 0.
///
/// p1 and p2 by class:
/// - "CVEXAGpsResultCombinationDlg" (modal): p1 a CQMViewBase* in place of the document's active view, or
/// null
/// - "CGpsGenerateOptModelDlg" (modal), "CGpsResponseSurfaceDlg" (modal): p1 a const tagTDgnaGUI*, copied, or
/// null
/// - "CVEXAGpsSAMResultDlg": p2 is kept as it is
/// - "CVEXAGpsSafetyGraphDlg": p1 a const wchar_t*, copied; null is an empty name
/// - "CVEXAGpsStagewiseRelDispDlg": p1 a CQMViewBase*, kept
/// - "CGpsGenerateOptModelDlg" (modeless), "CVEXAGpsDynamicResultsGraphDlg", "CVEXAGpsResultsGraphDlg",
///   "CVEXAGpsDynamicResultsSelectDlg", "CVEXAGpsAnalResult", "CVEXAGpsDynamicResultsPlotDlg": none
class VEXA_GPS_API IVEXAGpsDialog {
  public:
    virtual ~IVEXAGpsDialog() = default;
    IVEXAGpsDialog() = default;
    IVEXAGpsDialog(const IVEXAGpsDialog&) = default;
    IVEXAGpsDialog& operator=(const IVEXAGpsDialog&) = default;

    /// Runs a modal dialog and passes its answer on; 0 without a document or an active view.
    static std::int64_t DoModal(CQMDocBase* doc, const wchar_t* className, void* p1, void* p2);
    /// Opens a new modeless dialog, as far below the main window's corner as the active view stands, and
    /// makes it active; it belongs to its window then. Always 0.
    static std::int64_t DoModeless(CQMDocBase* doc, const wchar_t* className, void* p1, void* p2);

    // For callers without a document: they open nothing.
    static std::int64_t DoModal(const wchar_t* className, void* p);    ///< -1
    static std::int64_t DoModeless(const wchar_t* className, void* p); ///< 0
};

/// Makes the resources of the module known. The host calls it once, before anything else of the module.
extern "C" VEXA_GPS_API void Init_VEXA_gpsdll();
