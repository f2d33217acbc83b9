#include "solver/SvgMatrix.h"

#include "solver/NumberText.h"
#include "solver/SvgAxis.h"
#include "solver/SvgPicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>
#include <vector>

namespace solver {
namespace {

constexpr double kWidth = 900, kHeight = 560;
constexpr double kTop = 70, kBottom = 64, kRight = 190;
constexpr double kTickSize = 12;
constexpr std::size_t kMostBins = 12;
constexpr std::string_view kGrid = "#e2e2e2", kFrame = "#666666", kInk = "#222222";

/// A class of damage shares and how it looks.
struct ShareClass {
    double atLeast;
    std::string_view name;
    std::string_view fill;
    std::string_view ink; ///< of a count on the fill
};

/// Light to dark, told apart by colour-blind readers and in grey: ColorBrewer's five-class YlGnBu
/// (https://colorbrewer2.org).
constexpr std::array<ShareClass, 6> kShares{{
    {0.5, "50 % and more", "#253494", "#ffffff"},
    {0.1, "10 to 50 %", "#2c7fb8", "#ffffff"},
    {0.01, "1 to 10 %", "#41b6c4", kInk},
    {0.0001, "0.01 to 1 %", "#a1dab4", kInk},
    {std::numeric_limits<double>::min(), "below 0.01 %", "#ffffcc", kInk},
    {0, "no damage", "#eeeeee", kInk},
}};

const ShareClass& classOf(double share) {
    return *std::find_if(kShares.begin(), kShares.end() - 1,
                         [&](const ShareClass& c) { return share >= c.atLeast; });
}

struct Bin {
    double count = 0;
    double damage = 0;
};

struct Matrix {
    SvgAxis means, amplitudes;
    std::vector<Bin> bins; ///< amplitude by amplitude
    double damage = 0;

    std::size_t columns() const { return means.ticks.size() - 1; }
    std::size_t rows() const { return amplitudes.ticks.size() - 1; }
};

Matrix sortIntoBins(std::span<const MatrixEntry> entries) {
    const auto [lowest, highest] = std::minmax_element(
        entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.mean < b.mean; });
    double largest = 0;
    for (const MatrixEntry& entry : entries)
        largest = std::max(largest, entry.amplitude);
    Matrix matrix;
    matrix.amplitudes = makeAxis(0, largest, kMostBins);
    // Means that hardly differ stand in one bin of a width that the amplitudes suggest.
    double low = lowest->mean, high = highest->mean;
    if (high - low < 0.1 * largest) {
        low -= 0.25 * largest;
        high += 0.25 * largest;
    }
    matrix.means = makeAxis(low, high, kMostBins);
    matrix.bins.resize(matrix.columns() * matrix.rows());
    for (const MatrixEntry& entry : entries) {
        Bin& bin = matrix.bins[matrix.amplitudes.gap(entry.amplitude) * matrix.columns() +
                               matrix.means.gap(entry.mean)];
        bin.count += entry.count;
        bin.damage += entry.damage;
        matrix.damage += entry.damage;
    }
    return matrix;
}

/// At most six characters.
std::string countText(double count) {
    if (count < 1e4) return shortNumber(std::round(count * 10) / 10, 5);
    if (count < 1e6) return shortNumber(count / 1e3, 3) + "k";
    return shortNumber(count / 1e6, 3) + "M";
}

/// Where the matrix lies on the sheet.
struct Area {
    double left, right, top, bottom;
};

void drawAxes(SvgPicture& picture, const Matrix& matrix, const Area& area, const std::string& quantity) {
    const double columnWidth = (area.right - area.left) / static_cast<double>(matrix.columns());
    const double rowHeight = (area.bottom - area.top) / static_cast<double>(matrix.rows());
    for (std::size_t i = 0; i <= matrix.columns(); ++i) {
        const double x = area.left + columnWidth * static_cast<double>(i);
        picture.line({x, area.top}, {x, area.bottom + 5}, kGrid);
        picture.text({x, area.bottom + 20}, matrix.means.label(i),
                     {.size = kTickSize, .anchor = SvgAnchor::Middle});
    }
    for (std::size_t i = 0; i <= matrix.rows(); ++i) {
        const double y = area.bottom - rowHeight * static_cast<double>(i);
        picture.line({area.left - 5, y}, {area.right, y}, kGrid);
        picture.text({area.left - 9, y + 4}, matrix.amplitudes.label(i),
                     {.size = kTickSize, .anchor = SvgAnchor::End});
    }
    picture.text({(area.left + area.right) / 2, kHeight - 16}, matrix.means.title("mean " + quantity),
                 {.size = 13, .anchor = SvgAnchor::Middle});
    picture.text({20, (area.top + area.bottom) / 2}, matrix.amplitudes.title(quantity + " amplitude"),
                 {.size = 13, .anchor = SvgAnchor::Middle, .upwards = true});
}

void drawBins(SvgPicture& picture, const Matrix& matrix, const Area& area) {
    const double columnWidth = (area.right - area.left) / static_cast<double>(matrix.columns());
    const double rowHeight = (area.bottom - area.top) / static_cast<double>(matrix.rows());
    for (std::size_t row = 0; row < matrix.rows(); ++row)
        for (std::size_t column = 0; column < matrix.columns(); ++column) {
            const Bin& bin = matrix.bins[row * matrix.columns() + column];
            if (bin.count == 0) continue;
            const ShareClass& share = classOf(matrix.damage > 0 ? bin.damage / matrix.damage : 0);
            const double x = area.left + columnWidth * static_cast<double>(column);
            const double y = area.bottom - rowHeight * static_cast<double>(row + 1);
            picture.rectangle({x, y}, columnWidth, rowHeight, share.fill, kFrame);
            picture.text({x + columnWidth / 2, y + rowHeight / 2 + 4}, countText(bin.count),
                         {.size = kTickSize, .anchor = SvgAnchor::Middle, .fill = share.ink});
        }
}

void drawLegend(SvgPicture& picture, double left, double top) {
    picture.text({left, top + 4}, "share of the damage", {.size = 13, .bold = true});
    double y = top + 20;
    for (const ShareClass& share : kShares) {
        picture.rectangle({left, y}, 22, 18, share.fill, kFrame);
        picture.text({left + 30, y + 13}, share.name, {.size = kTickSize});
        y += 26;
    }
    picture.text({left, y + 16}, "numbers: cycles", {.size = kTickSize});
}

} // namespace

std::string matrixPicture(const MatrixPlot& plot) {
    SvgPicture picture(kWidth, kHeight, plot.title);
    picture.text({20, 26}, plot.title, {.size = 16, .bold = true});
    picture.text({20, 45}, plot.subtitle, {.size = 12, .fill = "#555555"});
    if (plot.entries.empty()) {
        picture.text({kWidth / 2, kHeight / 2}, "no cycle was counted",
                     {.size = 16, .anchor = SvgAnchor::Middle});
        return std::move(picture).finish();
    }
    const Matrix matrix = sortIntoBins(plot.entries);
    const Area area{44 + matrix.amplitudes.labelWidth(kTickSize), kWidth - kRight, kTop, kHeight - kBottom};
    drawAxes(picture, matrix, area, plot.quantity);
    drawBins(picture, matrix, area);
    drawLegend(picture, area.right + 24, area.top);
    return std::move(picture).finish();
}

} // namespace solver
