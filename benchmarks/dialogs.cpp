// What it costs to open a dialog of the module without a screen, and to close it, beside the limit of a
// millisecond for opening.
//
//   bench_dialogs [cases of the analysis = 100] [steps of each = 10]

#include "framework/text/CodePage.h"
#include "framework/windows/desktop/ScriptedDesk.h"
#include "framework/windows/dialogs/Dialog.h"
#include "module/entry/VEXAGpsDialog.h"
#include "tests/support/MemoryHost.h"
#include "workbench/session/WindowFrame.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr double kLimit = 1e-3;
constexpr int kRuns = 500;

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

struct Times {
    std::vector<double> opening;
    std::vector<double> closing;
};

/// The time that this part of the runs keeps within.
double quantile(std::vector<double>& times, double part) {
    const auto place =
        times.begin() + static_cast<std::ptrdiff_t>(part * static_cast<double>(times.size() - 1));
    std::nth_element(times.begin(), place, times.end());
    return *place;
}

void print(const char* name, Times times) {
    const double opening = quantile(times.opening, 0.5);
    const double most = quantile(times.opening, 0.95);
    std::printf(
        "%-32s opens in %6.1f us (95 %% within %6.1f), closes in %5.1f us: %.3f of the limit of 1 ms\n", name,
        opening * 1e6, most * 1e6, quantile(times.closing, 0.5) * 1e6, opening / kLimit);
}

void fill(support::MemoryResultTree& tree, int cases, int steps) {
    auto& analysis = tree.addAnalysis(1, L"Static");
    ItrKey key = 1;
    for (int i = 0; i < cases; ++i) {
        auto& owner = analysis.addCase(++key, L"Load case " + std::to_wstring(i));
        for (int j = 0; j < steps; ++j)
            owner.addStep(++key, L"Step " + std::to_wstring(j));
    }
}

Times openModeless(CQMDocBase& document, const wchar_t* name) {
    Times times;
    for (int run = 0; run < kRuns; ++run) {
        const double start = now();
        IVEXAGpsDialog::DoModeless(&document, name, nullptr, nullptr);
        const double open = now();
        DestroyWindow(GetActiveWindow());
        times.opening.push_back(open - start);
        times.closing.push_back(now() - open);
    }
    return times;
}

/// Until the dialog waits for its user.
Times openModal(CQMDocBase& document, const wchar_t* name) {
    Times times;
    for (int run = 0; run < kRuns; ++run) {
        double open = 0;
        framework::scriptedDesk().addStep([&] {
            open = now();
            dynamic_cast<CDialog&>(*CWnd::FromHandlePermanent(GetActiveWindow())).EndDialog(IDCANCEL);
        });
        const double start = now();
        IVEXAGpsDialog::DoModal(&document, name, nullptr, nullptr);
        times.opening.push_back(open - start);
        times.closing.push_back(now() - open);
    }
    return times;
}

} // namespace

int main(int argc, char** argv) {
    const int cases = argc > 1 ? std::atoi(argv[1]) : 100;
    const int steps = argc > 2 ? std::atoi(argv[2]) : 10;
    if (cases < 1 || steps < 1) return std::fprintf(stderr, "usage: bench_dialogs [cases] [steps]\n"), 1;
    support::MemoryHost host;
    support::MemoryDocument document;
    fill(document.results, cases, steps);
    support::MemoryView view(document);
    document.activeView = &view;
    workbench::WindowFrame frame(L"main");
    frame.showView(view);
    Init_VEXA_gpsdll();

    std::printf("the combination dialog lists %d cases of %d steps\n", cases, steps);
    for (const char* name :
         {"CVEXAGpsResultCombinationDlg", "CGpsGenerateOptModelDlg", "CGpsResponseSurfaceDlg"})
        print(name, openModal(document, framework::fromUtf8(name).c_str()));
    for (const char* name :
         {"CVEXAGpsSAMResultDlg", "CVEXAGpsDynamicResultsGraphDlg", "CVEXAGpsResultsGraphDlg",
          "CVEXAGpsDynamicResultsSelectDlg", "CVEXAGpsAnalResult", "CVEXAGpsDynamicResultsPlotDlg",
          "CVEXAGpsSafetyGraphDlg", "CVEXAGpsStagewiseRelDispDlg"})
        print(name, openModeless(document, framework::fromUtf8(name).c_str()));
    return 0;
}
