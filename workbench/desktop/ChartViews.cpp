#include "framework/windows/desktop/DesktopPort.h"
#include "host/MSGFunction.h"
#include "host/chart/ChartCtrl.h"
#include "workbench/desktop/ChartExport.h"
#include "workbench/desktop/ControlMakers.h"

namespace workbench::desktop {
namespace {

using namespace tqx::frx;

/// A chart of the host, zoomed and exported by its user.
class ChartControlView final : public ChartWidget, public ControlView {
  public:
    ChartControlView(HWND window, ViewKeeper& keeper, QWidget* parent)
        : ChartWidget([window] { return findChart(window); }, parent)
        , ControlView(window, keeper) {}

    QWidget& widget() override { return *this; }
    void follow(const framework::WindowRecord&, unsigned what) override {
        if (what & framework::change::kContent) showState();
    }

  protected:
    void zoomWanted(const ChartRange& x, const ChartRange& y) override {
        zoomChart(handle(), x, y);
        refresh();
    }
    void wholeWanted() override {
        resetChartZoom(handle());
        refresh();
    }
    void menuWanted(QPoint at) override {
        const ChartState* chart = state();
        auto* menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        if (chart->menuEntries != ChartMenu::Table)
            menu->addAction(text(L"IDS_WB_CHART_SAVE_PICTURE"), this,
                            [this] { save("PNG (*.png);;PDF (*.pdf);;SVG (*.svg)", ".png"); });
        if (chart->menuEntries != ChartMenu::Picture)
            menu->addAction(text(L"IDS_WB_CHART_SAVE_TABLE"), this, [this] { save("CSV (*.csv)", ".csv"); });
        if (chart->axes[0].zoomed || chart->axes[1].zoomed)
            menu->addAction(text(L"IDS_WB_CHART_SHOW_ALL"), this, [this] { wholeWanted(); });
        menu->popup(mapToGlobal(at));
    }

  private:
    static QString text(const wchar_t* key) { return qText(CMSGFunction::GetValue(key)); }

    void save(const QString& kinds, const QString& usual) {
        const QPointer<QWidget> alive = this; // the dialog may close while the user chooses
        QString path = chartFileChooser()(this, text(L"IDS_WB_CHART_SAVE"), kinds);
        if (path.isEmpty() || !alive) return;
        if (QFileInfo(path).suffix().isEmpty()) path += usual;
        const QString problem = exportChart(*this, path);
        if (!problem.isEmpty()) qmMsgOutError(wideText(problem));
    }
};

} // namespace

ControlView* makeChart(HWND window, ViewKeeper& keeper, QWidget* parent) {
    return new ChartControlView(window, keeper, parent);
}

} // namespace workbench::desktop
