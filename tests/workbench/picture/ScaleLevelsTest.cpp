#include "workbench/picture/ScaleLevels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace workbench;

namespace {

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts)
        all += (all.empty() ? "" : " ") + text;
    return all;
}

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

} // namespace

TEST(ScaleLevels, LabelsAreRoundAndTellTheBandsApart) {
    struct Row {
        std::vector<float> values;
        ValueScale scale;
        std::optional<ValueRange> range;
        const char* labels;
    };
    constexpr auto kLinear = ValueScale::Linear;
    constexpr auto kLog = ValueScale::Logarithmic;
    const Row rows[] = {
        {{0, 10}, kLinear, {}, "0 1 2 3 4 5 6 7 8 9 10"},
        {{-0.97f, 0.99f}, kLinear, {}, "-1.00 -0.75 -0.50 -0.25 0 0.25 0.50 0.75 1.00"},
        {{5, 317}, kLinear, {}, "0 25 50 75 100 125 150 175 200 225 250 275 300 325"},
        {{kNaN, 1e6f, 0, kInfinity},
         kLinear,
         {},
         "0 1e+05 2e+05 3e+05 4e+05 5e+05 6e+05 7e+05 8e+05 9e+05 1e+06"},
        {{0, 3e-9f},
         kLinear,
         {},
         "0 2.50e-10 5.00e-10 7.50e-10 1.00e-09 1.25e-09 1.50e-09 1.75e-09 2.00e-09 2.25e-09 2.50e-09 "
         "2.75e-09 3.00e-09"},
        {{7, 7}, kLinear, {}, "6.65 6.70 6.75 6.80 6.85 6.90 6.95 7.00 7.05 7.10 7.15 7.20 7.25 7.30 7.35"},
        {{0, 0}, kLinear, {}, "-1.00 -0.75 -0.50 -0.25 0 0.25 0.50 0.75 1.00"},
        {{-3e38f, 3e38f},
         kLinear,
         {},
         "-3.0e+38 -2.5e+38 -2.0e+38 -1.5e+38 -1.0e+38 -5.0e+37 0 5.0e+37 1.0e+38 "
         "1.5e+38 2.0e+38 2.5e+38 3.0e+38"},
        {{0, 1},
         kLinear,
         ValueRange{12.3, 117},
         "12.3 20.0 30.0 40.0 50.0 60.0 70.0 80.0 90.0 100.0 110.0 117.0"},
        {{1e-8f, 0, -4, 0.1f}, kLog, {}, "1e-08 1e-07 1e-06 1e-05 1e-04 1e-03 1e-02 1e-01"},
        {{0.003f, 0.9f}, kLog, {}, "0.002 0.005 0.01 0.02 0.05 0.1 0.2 0.5 1"},
        {{2e6f, 4e6f},
         kLog,
         {},
         "2.00e+06 2.25e+06 2.50e+06 2.75e+06 3.00e+06 3.25e+06 3.50e+06 3.75e+06 4.00e+06"},
        {{1},
         kLog,
         ValueRange{1e-20, 1e20},
         "1e-20 1e-16 1e-13 1e-10 1e-07 1e-04 1e-01 1e+02 1e+05 1e+08 1e+11 1e+14 1e+17 1e+20"},
    };
    for (const Row& row : rows) {
        const auto levels = ScaleLevels::make(extentOf(row.values), row.scale, row.range);
        ASSERT_TRUE(levels) << row.labels;
        EXPECT_EQ(joined(levels->labels()), row.labels);
        EXPECT_DOUBLE_EQ(levels->positionOf(levels->low()), 0.0);
        EXPECT_DOUBLE_EQ(levels->positionOf(levels->high()), 1.0);
        for (std::size_t band = 0; band < levels->bandCount(); ++band) {
            const double middle = 0.5 * (levels->positionOf(levels->values()[band]) +
                                         levels->positionOf(levels->values()[band + 1]));
            EXPECT_EQ(levels->bandOf(middle), band) << row.labels;
        }
    }
}

TEST(ScaleLevels, ValuesWithoutAPlaceLieAtTheNearerEnd) {
    const std::vector<float> values{0.01f, 100};
    const auto levels = ScaleLevels::make(extentOf(values), ValueScale::Logarithmic, {});
    ASSERT_TRUE(levels);
    EXPECT_EQ(levels->positionOf(0.0), 0.0);
    EXPECT_EQ(levels->positionOf(-5.0), 0.0);
    EXPECT_EQ(levels->positionOf(kInfinity), 1.0);
    EXPECT_TRUE(std::isnan(levels->positionOf(kNaN)));
    EXPECT_NEAR(levels->positionOf(1.0), 0.5, 1e-9);
    EXPECT_EQ(levels->bandOf(-3.0), 0u);
    EXPECT_EQ(levels->bandOf(3.0), levels->bandCount() - 1);
}

TEST(ScaleLevels, RangesThatCannotBeDrawnAreRefused) {
    const ValueExtent negative = extentOf(std::vector<float>{-2, 0});
    const ValueExtent usual = extentOf(std::vector<float>{1, 2});
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(ScaleLevels::make(negative, ValueScale::Logarithmic, {}));
    EXPECT_FALSE(ScaleLevels::make(usual, ValueScale::Logarithmic, ValueRange{0, 1}));
    for (const ValueRange& range : {ValueRange{1, 1}, ValueRange{2, 1}, ValueRange{nan, 1},
                                    ValueRange{0, nan}, ValueRange{-1.7e308, 1.7e308}})
        EXPECT_FALSE(ScaleLevels::make(usual, ValueScale::Linear, range)) << range.low << " " << range.high;
}
