// The graph window with a curve of 1,000,000 points in 800 x 400 pixels: taking the points and recording the
// curve, beside a pass that maps each point once and stores two integers; painting the recording on the
// desktop, beside drawing the extremes of each column of pixels; and what a move of the mouse costs on the
// screen, beside copying the picture and drawing the line.

#include "benchmarks/Stopwatch.h"
#include "framework/drawing/Surface.h"
#include "framework/windows/WindowRecord.h"
#include "framework/windows/desktop/UserActions.h"
#include "module/graphs/GraphWnd.h"
#include "tests/support/MemoryHost.h"
#include "workbench/desktop/RecordingPainter.h"

#include <QtWidgets/QtWidgets>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <vector>

namespace {

using Points = CArray<T_GRPH_D, T_GRPH_D&>;

constexpr int kPoints = 1000000;
constexpr int kWidth = 800, kHeight = 400;
constexpr int kRuns = 15;

/// A vibration with noise, so that every column has its extremes.
Points curve() {
    Points points;
    points.SetSize(kPoints);
    unsigned state = 1;
    for (int i = 0; i < kPoints; ++i) {
        state = state * 1664525u + 1013904223u;
        const double noise = static_cast<double>(state >> 8) / (1 << 24) - 0.5;
        points[static_cast<std::size_t>(i)] = {i * 1e-4, std::sin(i * 3e-5) + noise};
    }
    return points;
}

/// Maps each point once and stores two integers.
void mapOnce(const Points& points, std::vector<CPoint>& pixels) {
    const double middle = kPoints * 1e-4 / 2, scaleX = kWidth / (kPoints * 1e-4), scaleY = kHeight / 3.0;
    const T_GRPH_D* point = points.GetData();
    for (CPoint& pixel : pixels) {
        pixel.x = static_cast<int>((point->x - middle) * scaleX) + kWidth / 2;
        pixel.y = static_cast<int>(scaleY * -point->y) + kHeight / 2;
        ++point;
    }
}

/// Draws the extremes of each column of pixels.
void drawExtremes(QPainter& painter, const std::vector<CPoint>& pixels) {
    std::vector<std::pair<int, int>> columns(
        kWidth + 1, {std::numeric_limits<int>::max(), std::numeric_limits<int>::min()});
    for (const CPoint pixel : pixels) {
        auto& [low, high] = columns[static_cast<std::size_t>(pixel.x)];
        low = std::min(low, pixel.y);
        high = std::max(high, pixel.y);
    }
    painter.setPen(QColor(255, 0, 0));
    for (int x = 0; x <= kWidth; ++x) {
        const auto& [low, high] = columns[static_cast<std::size_t>(x)];
        painter.drawLine(x, low, x, high);
    }
}

/// The graph in a window that is shown.
class Window {
  public:
    Window() {
        owner_.CreateEx(0, nullptr, L"", WS_POPUP, CRect(0, 0, kWidth, kHeight), nullptr, 0);
        CWnd place;
        place.Create(L"Static", L"", WS_VISIBLE, CRect(0, 0, kWidth, kHeight), &owner_, 1);
        place.Detach();
        owner_.ShowWindow(SW_SHOW);
        graph.Init(&owner_, 1);
    }
    ~Window() { owner_.DestroyWindow(); }
    const framework::Recording& shown() const {
        return framework::findWindow(graph.m_hWnd)->presented->drawn();
    }

    CGraphWnd graph;

  private:
    support::MemoryHost host_;
    CWnd owner_;
};

/// The least of several runs in turns.
template <class Ours, class Limit>
std::pair<double, double> inTurns(Ours&& ours, Limit&& limit) {
    std::pair<double, double> best{1e30, 1e30};
    for (int run = 0; run < kRuns; ++run) {
        best.first = std::min(best.first, processorSecondsOf(ours));
        best.second = std::min(best.second, processorSecondsOf(limit));
    }
    return best;
}

void measureSetData(Window& window, std::vector<CPoint>& pixels) {
    Points points = curve();
    const auto [set, map] = inTurns(
        [&] {
            window.graph.SetData(points);
            framework::pumpMessages(); // so that the window holds on to the commands, as in use
        },
        [&] { mapOnce(points, pixels); });
    std::printf("  SetData with recording  %6.2f ms  %.2f x mapping each point once, %.2f ms (limit 4)\n",
                set * 1e3, set / map, map * 1e3);
}

void measurePainting(const Window& window, QImage& image, const std::vector<CPoint>& pixels) {
    QPainter painter(&image);
    const auto [paint, extremes] =
        inTurns([&] { workbench::desktop::RecordingPainter().paint(painter, window.shown()); },
                [&] { drawExtremes(painter, pixels); });
    std::printf("  painting it             %6.2f ms  %.2f x the extremes of each column, %.2f ms (limit 3)\n",
                paint * 1e3, paint / extremes, extremes * 1e3);
}

/// How often the curve was painted meanwhile.
int measureMoves(const Window& window, QImage& image) {
    const QImage picture = image;
    workbench::desktop::RecordingPainter pictures;
    QPainter painter(&image);
    int x = 100;
    const auto [move, copy] = inTurns(
        [&] {
            framework::user::mouse(window.graph.m_hWnd, WM_MOUSEMOVE, {++x, 50});
            framework::pumpMessages();
            pictures.paint(painter, window.shown());
        },
        [&] {
            painter.drawImage(0, 0, picture);
            painter.setPen(QColor(175, 175, 175));
            painter.drawLine(x, 0, x, kHeight);
        });
    std::printf("  a move of the mouse     %6.3f ms  %.2f x copying the picture and a line, %.3f ms; "
                "the curve was painted %d time(s)\n",
                move * 1e3, move / copy, copy * 1e3, pictures.painted());
    return pictures.painted();
}

} // namespace

int main(int count, char** arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(count, arguments);
    Window window;
    std::vector<CPoint> pixels(kPoints);
    QImage image(kWidth, kHeight, QImage::Format_RGB32);
    std::printf("graph of %d points in %d x %d pixels\n", kPoints, kWidth, kHeight);
    measureSetData(window, pixels);
    measurePainting(window, image, pixels);
    return measureMoves(window, image) == 1 ? 0 : 1;
}
