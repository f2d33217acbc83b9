#pragma once

#include "framework/windows/dialogs/Dialog.h"
#include "module/graphs/GraphWnd.h"
#include "tests/framework/windows/TestTemplates.h"

#include <cmath>
#include <vector>

/// A dialog with a graph that notes the clicks on it, and snaps its mark to points when told to.
class GraphDialog : public CDialog {
  public:
    GraphDialog()
        : CDialog(IDD_GRAPH) {
        s_open = this;
    }
    ~GraphDialog() override { s_open = nullptr; }

    CGraphWnd graph;
    std::vector<double> clicks;

    /// A damped vibration of 10 seconds.
    void show(int count) {
        CArray<T_GRPH_D, T_GRPH_D&> points;
        for (int i = 0; i < count; ++i) {
            const double time = 10.0 * i / (count - 1);
            points.Add({time, 12 * std::exp(-0.25 * time) * std::sin(5 * time)});
        }
        graph.SetData(points);
    }

    int OnInitDialog() override {
        CDialog::OnInitDialog();
        graph.Init(this, IDC_PLACE);
        graph.SetLButtonDownFunc([](CWnd*, double x, IGrahpWndPos*) { s_open->clicks.push_back(x); });
        show(1000);
        return 1;
    }

  private:
    static inline GraphDialog* s_open = nullptr;
};
