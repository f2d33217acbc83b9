#include "workbench/picture/PictureColors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>

using namespace workbench;

namespace {

/// Lightness 0 to 100 (CIE 1976 L*, from sRGB by IEC 61966-2-1).
double lightness(const Rgb& color) {
    constexpr double kWeights[] = {0.2126, 0.7152, 0.0722};
    double luminance = 0.0;
    for (std::size_t c = 0; c < 3; ++c) {
        const double v = color[c] / 255.0;
        luminance += kWeights[c] * (v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4));
    }
    return luminance > 216.0 / 24389 ? 116 * std::cbrt(luminance) - 16 : luminance * 24389 / 27;
}

ScaleLevels levelsOf(double low, double high, ValueScale scale = ValueScale::Linear) {
    return *ScaleLevels::make({low, high, 1.0, 2}, scale, ValueRange{low, high});
}

} // namespace

TEST(Colors, ReadWithoutHueTheScalesStillHaveAnOrder) {
    struct Row {
        const char* name;
        int direction; ///< of the lightness along the scale; of its first half on a diverging one
    };
    for (const Row& row : {Row{"viridis", 1}, Row{"cividis", 1}, Row{"grey", -1}, Row{"blue-red", 1}}) {
        const ColorScale& scale = *ColorScale::find(row.name);
        for (double at = 0.0; at < 0.999; at += 0.05) {
            const bool back = scale.diverging && at >= 0.4999;
            const double step = lightness(scale.at(at + 0.05)) - lightness(scale.at(at));
            EXPECT_GT(step * row.direction * (back ? -1 : 1), 1.0) << row.name << " at " << at;
        }
        // What lies beyond an end, and what has no value, is told from the end next to it.
        const auto apart = [](const Rgb& a, const Rgb& b) { return std::abs(lightness(a) - lightness(b)); };
        EXPECT_GT(apart(scale.below, scale.at(0.0)), 7.0) << row.name;
        EXPECT_GT(apart(scale.above, scale.at(1.0)), 7.0) << row.name;
        EXPECT_NE(scale.noValue, scale.below) << row.name;
        EXPECT_NE(scale.noValue, scale.above) << row.name;
    }
    EXPECT_EQ(ColorScale::find("rainbow"), nullptr);
}

TEST(Colors, OfADivergingScaleHaveTheirMiddleAtZero) {
    const ColorScale& scale = *ColorScale::find("blue-red");
    for (const auto& [low, high] : {std::pair{-100.0, 300.0}, {-300.0, 100.0}, {-50.0, 50.0}}) {
        const ScaleLevels levels = levelsOf(low, high);
        const PictureColors colors = *PictureColors::make(scale, levels, false);
        const double largest = std::max(-low, high);
        EXPECT_EQ(colors.at(levels.positionOf(0.0)), scale.at(0.5)) << low;
        for (const double value : {low, high, 0.5 * low})
            EXPECT_EQ(colors.at(levels.positionOf(value)), scale.at(0.5 + 0.5 * value / largest)) << value;
        const PictureColors bands = *PictureColors::make(scale, levels, true);
        for (std::size_t band = 0; band < levels.bandCount(); ++band) {
            const Rgb color = bands.ofBand(band);
            EXPECT_EQ(color[0] > color[2], levels.values()[band] >= 0.0) << low << " band " << band;
        }
    }
    const ScaleLevels log = levelsOf(1.0, 100.0, ValueScale::Logarithmic);
    EXPECT_FALSE(PictureColors::make(scale, log, true));
}

TEST(Colors, TheTableHasTheEndsOfAGivenRangeInsideAndTheRestOutside) {
    const ColorScale& scale = *ColorScale::find("viridis");
    const auto lookUp = [](const ColorTable& table, double position) {
        const double at = (position - table.low) / (table.high - table.low) * double(table.colors.size());
        return table.colors[static_cast<std::size_t>(std::clamp(at, 0.0, double(table.colors.size() - 1)))];
    };
    const ScaleLevels given = levelsOf(0.0, 100.0);
    const ColorTable table = PictureColors::make(scale, given, true)->table();
    EXPECT_EQ(lookUp(table, -1e-7), scale.at(0.0));
    EXPECT_EQ(lookUp(table, 0.0), scale.at(0.0));
    EXPECT_EQ(lookUp(table, 1.0 + 1e-7), scale.at(1.0));
    EXPECT_EQ(lookUp(table, -0.01), scale.below);
    EXPECT_EQ(lookUp(table, 1.01), scale.above);
    EXPECT_EQ(lookUp(table, given.positionOf(-std::numeric_limits<double>::infinity())), scale.below);

    const ScaleLevels own = *ScaleLevels::make({1.0, 100.0, 1.0, 2}, ValueScale::Logarithmic, {});
    const ColorTable plain = PictureColors::make(scale, own, true)->table();
    EXPECT_EQ(lookUp(plain, own.positionOf(0.0)), scale.at(0.0));
    EXPECT_EQ(lookUp(plain, 5.0), scale.at(1.0));
}
