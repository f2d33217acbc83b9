#include "framework/text/Format.h"

#include "tests/framework/GermanLocale.h"
#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>

using framework::formatWide;

namespace {

TEST(Format, TextsAndFormatsOfTheSystem) {
    const std::wstring name = L"댐";
    EXPECT_EQ(formatWide(L"%s64bit Solver\\%s", L"C:\\program folder\\", L"FatigueSolver.exe"),
              L"C:\\program folder\\64bit Solver\\FatigueSolver.exe");
    EXPECT_EQ(formatWide(L"%s_%d", name, 7), L"댐_7");
    EXPECT_EQ(formatWide(L"%ls|%S", name, name), L"댐|%S");
    EXPECT_EQ(formatWide(L"%d ; 절점 개수 \n", std::uint64_t{12}), L"12 ; 절점 개수 \n");
    EXPECT_EQ(formatWide(L"%5s|%-5s|%.2s|%5.1s", L"abc", L"abc", L"abc", L"abc"), L"  abc|abc  |ab|    a");
    EXPECT_EQ(formatWide(L"%*d|%-*d|%*d|%.*f", 5, 1, 5, 2, -5, 3, 2, 1.0), L"    1|2    |3    |1.00");
    EXPECT_EQ(formatWide(L"%I64d %lld %hu %zu", std::numeric_limits<std::int64_t>::min(), 1, 2, sizeof(char)),
              L"-9223372036854775808 1 2 1");
    EXPECT_EQ(formatWide(L"%u %x %X", -1, -1, std::int64_t{-4294967296}),
              L"4294967295 ffffffff FFFFFFFF00000000");
    EXPECT_EQ(formatWide(L"%c%c%3c", L'가', 'b', L'c'), L"가b  c");
    EXPECT_EQ(formatWide(L"%e %g %G", 1e8, 1e8, 1e-10), L"1.000000e+08 1e+08 1E-10");
    EXPECT_EQ(formatWide(L"%g", 0.1f), L"0.1");
}

TEST(Format, AlternateGeneralKeepsItsDigits) {
    const struct {
        const wchar_t* format;
        double value;
        const wchar_t* expected;
    } rows[] = {
        {L"%#g", 1, L"1.00000"},       {L"%#g", 0, L"0.00000"},        {L"%#g", 999999.5, L"1.00000e+06"},
        {L"%#g", 100000, L"100000."},  {L"%#g", 0.001, L"0.00100000"}, {L"%#.0g", 3, L"3."},
        {L"%#.3g", 1e-5, L"1.00e-05"}, {L"%#.3g", 99.95, L"100."},     {L"%#G", -1e10, L"-1.00000E+10"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(formatWide(row.format, row.value), row.expected) << row.value;
}

TEST(Format, WrongFormatsAndArgumentsAreVisible) {
    EXPECT_EQ(formatWide(L"%d %s"), L"? ?");
    EXPECT_EQ(formatWide(L"%d %f %s", 1.5, 2, 3), L"? ? ?");
    EXPECT_EQ(formatWide(L"%4d|%s", L"x", L"y"), L"   ?|y");
    EXPECT_EQ(formatWide(L"100%"), L"100%");
    EXPECT_EQ(formatWide(L"100%% %"), L"100% %");
    EXPECT_EQ(formatWide(L"%q %-5"), L"%q %-5");
    EXPECT_EQ(formatWide(L"%n", 1), L"%n");
    EXPECT_EQ(formatWide(L"%99999999999d", 1).size(), 4095u);
    EXPECT_EQ(formatWide(L"%.99999999999f", 0.0).size(), 4097u);
    EXPECT_EQ(formatWide(L"%*d", std::numeric_limits<std::int64_t>::min(), 1).size(), 4095u);
    EXPECT_EQ(formatWide(L"%*d", 1.5, 1), L"1");
    EXPECT_EQ(formatWide(L"plain", 1, 2), L"plain");
}

TEST(Format, IndependentOfTheLocale) {
    const GermanLocale german;
    if (!german.isActive()) GTEST_SKIP() << "localedef cannot make the locale here";
    EXPECT_EQ(formatWide(L"%g %.2f %e", 1.5, 1234567.5, 2.5), L"1.5 1234567.50 2.500000e+00");
}

std::string flagsFrom(RandomIntegers& random, std::string_view allowed) {
    std::string flags;
    for (const char flag : allowed)
        if (random.oneIn(4)) flags += flag;
    return flags;
}

std::string sizesFrom(RandomIntegers& random) {
    std::string sizes;
    if (random.oneIn(2)) sizes += std::to_string(1 + random.below(30));
    if (random.oneIn(2)) sizes += "." + (random.oneIn(6) ? std::string() : std::to_string(random.below(25)));
    return sizes;
}

double realFrom(RandomIntegers& random) {
    constexpr double special[] = {0.,
                                  -0.,
                                  1.,
                                  -1.,
                                  0.5,
                                  9.9999995,
                                  99999.95,
                                  999999.5,
                                  1e5,
                                  1e6,
                                  1e-4,
                                  1e-5,
                                  1e22,
                                  std::numeric_limits<double>::infinity(),
                                  std::numeric_limits<double>::quiet_NaN()};
    if (random.oneIn(4)) return special[random.below(std::size(special))];
    if (random.oneIn(2)) return random.real();
    return (static_cast<double>(random.below(2'000'000)) - 1e6) /
           std::pow(10., static_cast<double>(random.below(12)));
}

std::string narrowed(const std::wstring& text) {
    std::string out;
    for (const wchar_t c : text)
        out += static_cast<char>(c);
    return out;
}

template <class Value>
void expectAsC(const std::string& format, Value value) {
    char expected[2000];
    const int size = std::snprintf(expected, sizeof expected, format.c_str(), value);
    ASSERT_LT(size, static_cast<int>(sizeof expected));
    ASSERT_EQ(narrowed(formatWide(std::wstring(format.begin(), format.end()), value)), expected)
        << format << " of " << value;
}

TEST(Format, PrintsWhatTheCLibraryPrints) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    for (int round = 0; round < 15'000 && !HasFatalFailure(); ++round) {
        const auto integer =
            static_cast<std::int32_t>(random.next() >> (32 + random.below(32))) * (random.oneIn(2) ? 1 : -1);
        expectAsC("a%" + flagsFrom(random, "-+ 0") + sizesFrom(random) + "diu"[random.below(2)] + "b",
                  integer);
        expectAsC("a%" + flagsFrom(random, "-0") + sizesFrom(random) + "u" + "b",
                  static_cast<unsigned>(integer));
        expectAsC("%" + flagsFrom(random, "-0#") + sizesFrom(random) + "xX"[random.below(2)], integer);
        expectAsC("%" + flagsFrom(random, "-+ 0#") + sizesFrom(random) + "efFE"[random.below(4)],
                  realFrom(random));
#ifndef _WIN32 // where the C library loses a column of some numbers
        // Not with "#": the GNU library drops digits of numbers that round up to a power of ten.
        expectAsC("%" + flagsFrom(random, "-+ 0") + sizesFrom(random) + "gG"[random.below(2)],
                  realFrom(random));
#endif
    }
}

} // namespace
