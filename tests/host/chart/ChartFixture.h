#pragma once

#include "host/chart/ChartBars.h"
#include "host/chart/ChartCtrl.h"
#include "host/chart/ChartHits.h"
#include "host/chart/ChartPoints.h"
#include "host/chart/ChartSvg.h"
#include "tests/host/chart/ChartSetters.h"
#include "tests/support/DialogFixture.h"

#include <string>

/// A chart of 400 x 300 pixels in the view's window, and words of the host's language.
class ChartFixture : public DialogFixture {
  protected:
    ChartFixture() {
        host.texts[L"IDS_CHART_SUMMARY"] = L"%s: %d points, minimum %s, maximum %s";
        host.texts[L"IDS_CHART_MORE"] = L"... and %d more";
        EXPECT_TRUE(chart.Create({0, 0, 400, 300}, &view, 7));
    }
    ~ChartFixture() override { chart.DestroyWindow(); }

    static std::size_t count(const std::string& text, const std::string& part) {
        std::size_t found = 0;
        for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
            ++found;
        return found;
    }

    tqx::frx::MChartCtrl chart;
};
