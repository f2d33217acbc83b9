#include "framework/text/Numbers.h"

#include "framework/text/Print.h"
#include "tests/framework/GermanLocale.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <sstream>

using namespace framework;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::wstring widened(std::string_view text) {
    return {text.begin(), text.end()};
}

struct RealRow {
    std::string text;
    double value;
};

void expectReals() {
    const std::string manyZeros(2000, '0');
    const RealRow rows[] = {
        {"1.5x", 1.5},
        {"", 0},
        {"  -3", -3},
        {"\t\n\v\f\r 7", 7},
        {"+.5", 0.5},
        {"5.", 5},
        {"-.5e1,", -5},
        {"1e400", kInfinity},
        {"-1e400", -kInfinity},
        {"1e-400", 0},
        {"0e999999999999999999999", 0},
        {"1e999999999999999999999", kInfinity},
        {"1e-999999999999999999999", 0},
        {"0." + manyZeros + "1e2001", 1},
        {"1" + manyZeros + "e-2000", 1},
        {"0." + manyZeros + "1", 0},
        {"1" + manyZeros, kInfinity},
        {"4.9e-324", 4.9e-324},
        {"1e", 1},
        {"1e+", 1},
        {"1e+x", 1},
        {"1e5", 1e5},
        {"1E+05", 1e5},
        {"1d5", 1},
        {"0x10", 0},
        {",", 0},
        {"1,5", 1},
        {"1.234.5", 1.234},
        {"--1", 0},
        {"+-1", 0},
        {"-+1", 0},
        {"- 1", 0},
        {".", 0},
        {"-.e1", 0},
        {"inf", kInfinity},
        {"-INFINITY", -kInfinity},
        {"infinit", kInfinity},
        {"in", 0},
        {"e5", 0},
    };
    for (const RealRow& row : rows) {
        EXPECT_EQ(ntof(row.text), row.value) << row.text;
        EXPECT_EQ(wtof(widened(row.text)), row.value) << row.text;
    }
    for (const char* text : {"nan", "-NaN", "nan(1)x"}) {
        EXPECT_TRUE(std::isnan(ntof(text))) << text;
        EXPECT_TRUE(std::isnan(wtof(widened(text)))) << text;
    }
    EXPECT_TRUE(std::signbit(ntof("-0")));
    EXPECT_EQ(wtof(L"１２"), 0); // digits of another script
    EXPECT_EQ(wtof(L"1.5절"), 1.5);
}

TEST(Numbers, LeadingReal) {
    expectReals();
}

TEST(Numbers, LeadingRealInALocaleWithDecimalComma) {
    const GermanLocale german;
    if (!german.isActive()) GTEST_SKIP() << "localedef cannot make the locale here";
    expectReals();
    std::string text;
    appendGeneral(text, 1.5);
    appendScientific(text, 1.5, 1);
    appendFixed(text, 1.5, 1);
    EXPECT_EQ(text, "1.51.5e+001.5");
}

TEST(Numbers, LeadingInteger) {
    const struct {
        std::string text;
        int value;
    } rows[] = {
        {"", 0},
        {"12abc", 12},
        {" \t-7", -7},
        {"+8", 8},
        {"+-8", 0},
        {"- 8", 0},
        {"0x10", 0},
        {"1.9", 1},
        {"007", 7},
        {"2147483647", 2147483647},
        {"2147483648", 2147483647},
        {"-2147483648", std::numeric_limits<int>::min()},
        {"-2147483649", std::numeric_limits<int>::min()},
        {"99999999999999999999999999999", 2147483647},
        {"-99999999999999999999999999999", std::numeric_limits<int>::min()},
        {"x1", 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(ntoi(row.text), row.value) << row.text;
        EXPECT_EQ(wtoi(widened(row.text)), row.value) << row.text;
    }
}

TEST(Numbers, AgreeWithTheCLibraryOnRandomText) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    constexpr std::string_view likely = "0123456789012345678900..eE+- \tinfaz,";
    for (int round = 0; round < 40'000; ++round) {
        std::string text;
        for (std::size_t i = random.below(14); i > 0; --i)
            text += likely[random.below(likely.size())];
        char* end = nullptr;
        double expected = std::strtod(text.c_str(), &end);
        if (end == text.c_str()) expected = 0; // no number; some libraries keep the sign
        ASSERT_EQ(std::bit_cast<std::uint64_t>(ntof(text)), std::bit_cast<std::uint64_t>(expected)) << text;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(wtof(widened(text))), std::bit_cast<std::uint64_t>(expected))
            << text;
        const long integer =
            std::clamp<long>(std::strtol(text.c_str(), nullptr, 10), std::numeric_limits<int>::min(),
                             std::numeric_limits<int>::max());
        ASSERT_EQ(ntoi(text), integer) << text;
    }
}

/// Doubles of every size, and the short decimals that people write.
double randomReal(RandomIntegers& random) {
    if (random.oneIn(2)) return random.real();
    return (static_cast<double>(random.below(2'000'000)) - 1e6) /
           std::pow(10., static_cast<double>(random.below(9)));
}

TEST(Numbers, PrintedAsTheCLibraryPrints) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    for (int round = 0; round < 20'000; ++round) {
        const double value = randomReal(random);
        const int precision = static_cast<int>(random.below(round % 100 == 0 ? 400 : 20));
        char expected[3][800];
        std::snprintf(expected[0], sizeof expected[0], "%.*g", precision, value);
        std::snprintf(expected[1], sizeof expected[1], "%.*e", precision, value);
        std::snprintf(expected[2], sizeof expected[2], "%.*f", precision, value);
        std::string general = "<", scientific = "<", fixed = "<";
        appendGeneral(general, value, precision);
        appendScientific(scientific, value, precision);
        appendFixed(fixed, value, precision);
        ASSERT_EQ(general, std::string("<") + expected[0]);
        ASSERT_EQ(scientific, std::string("<") + expected[1]);
        ASSERT_EQ(fixed, std::string("<") + expected[2]);
    }
}

TEST(Numbers, GeneralIsTheDefaultOfStreams) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    for (int round = 0; round < 5'000; ++round) {
        const double value = randomReal(random);
        const auto integer = static_cast<std::int64_t>(random.next() >> random.below(64));
        std::ostringstream stream;
        stream << value << ' ' << integer << ' ' << -integer;
        std::string text;
        appendGeneral(text, value);
        text += ' ';
        appendInteger(text, integer);
        text += ' ';
        appendInteger(text, -integer);
        ASSERT_EQ(text, stream.str());
    }
}

} // namespace
