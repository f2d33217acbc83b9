#include "workbench/cli/SafetyGraph.h"

#include "framework/text/CodePage.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/UserActions.h"
#include "host/chart/ChartCtrl.h"
#include "host/chart/ChartSvg.h"
#include "module/entry/VEXAGpsDialog.h"
#include "module/resources/resource.h"
#include "module/stability/SafetyGraphType.h"
#include "workbench/session/WindowFrame.h"

namespace workbench::cli {
namespace {

using tqx::frx::ChartState;

} // namespace

struct SafetyGraph::State {
    WindowFrame frame{L"vexa"};
    HWND dialog = nullptr;

    HWND control(int id) const { return GetDlgItem(dialog, id); }
    const ChartState* chart(std::size_t subcase, int type) const {
        framework::user::choose(control(IDC_SAFETY_CASE), static_cast<int>(subcase));
        framework::user::choose(control(IDC_SAFETY_TYPE), type);
        return tqx::frx::findChart(control(IDC_SAFETY_CHART));
    }
};

SafetyGraph::SafetyGraph(Document& document, const std::string& name)
    : state_(std::make_unique<State>()) {
    state_->frame.showView(*document.GetActiveView());
    std::wstring wide = framework::fromUtf8(name);
    IVEXAGpsDialog::DoModeless(&document, L"CVEXAGpsSafetyGraphDlg", wide.data(), nullptr);
    const HWND opened = GetActiveWindow();
    if (GetDlgItem(opened, IDC_SAFETY_CHART)) state_->dialog = opened;
}

SafetyGraph::~SafetyGraph() {
    if (state_->dialog) DestroyWindow(state_->dialog);
}

std::vector<SafetyCurves> SafetyGraph::curves() {
    std::vector<SafetyCurves> all;
    const auto* box = framework::findWindow(state_->control(IDC_SAFETY_CASE));
    for (std::size_t i = 0; box && i < box->items.size(); ++i) {
        SafetyCurves curves;
        curves.name = framework::toUtf8(box->items[i].texts.front());
        const auto read = [&](int type, std::vector<double>& x, std::vector<double>& y) {
            const ChartState* chart = state_->chart(i, type);
            if (!chart || chart->series.empty()) return;
            x = chart->series[0].x;
            y = chart->series[0].y;
        };
        read(SafetyGraphType::Displacement, curves.displacements, curves.displacementFactors);
        read(SafetyGraphType::Iterations, curves.iterations, curves.iterationFactors);
        all.push_back(std::move(curves));
    }
    return all;
}

std::string SafetyGraph::svg(std::size_t subcase, int type, int width, int height) {
    const ChartState* chart = state_->chart(subcase, type);
    return chart ? tqx::frx::chartSvg(*chart, width, height, tqx::frx::hostChartTexts()) : std::string();
}

std::string SafetyGraph::script(std::size_t subcase, int type) {
    return "choose " + std::to_string(IDC_SAFETY_CASE) + " #" + std::to_string(subcase) + "\nchoose " +
           std::to_string(IDC_SAFETY_TYPE) + " #" + std::to_string(type) + "\n";
}

} // namespace workbench::cli
