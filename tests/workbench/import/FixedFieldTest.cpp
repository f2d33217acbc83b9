#include "workbench/import/FixedField.h"

#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <string>

namespace {

using namespace workbench::fixedfield;

/// The reference: the float that the standard library reads, with out-of-range values left out.
bool readByLibrary(std::string text, float& value) {
    text.erase(0, text.find_first_not_of(' '));
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

std::uint32_t bits(float value) {
    return std::bit_cast<std::uint32_t>(value);
}

std::string randomField(RandomIntegers& random, unsigned exponents) {
    std::string field(1, random.below(2) ? '-' : ' ');
    field += static_cast<char>('0' + random.below(10));
    field += '.';
    for (int i = 0; i < 5; ++i)
        field += static_cast<char>('0' + random.below(10));
    const unsigned exponent = static_cast<unsigned>(random.below(exponents));
    field += random.below(2) ? "E-" : "E+";
    field += static_cast<char>('0' + exponent / 10);
    field += static_cast<char>('0' + exponent % 10);
    return field;
}

TEST(FixedField, ReadsTheNearestFloat) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    int left = 0;
    constexpr int kFields = 400000;
    for (int i = 0; i < kFields; ++i) {
        const std::string field = randomField(random, i % 4 == 0 ? 100 : 36);
        float expected = 0, parsed = 0;
        const bool inRange = readByLibrary(field, expected);
        RealReader fast;
        const float value = fast.read(field.data());
        if (!fast.allGood()) {
            ++left;
        } else {
            ASSERT_TRUE(inRange) << field;
            ASSERT_EQ(bits(value), bits(expected)) << field;
        }
        const RealStatus status = parseReal(field, parsed);
        if (inRange) {
            ASSERT_EQ(status, RealStatus::Good) << field;
            ASSERT_EQ(bits(parsed), bits(expected)) << field;
        }
    }
    EXPECT_LT(left, kFields / 4) << "the fast path hardly ever decides";
}

/// Whatever stands in the field, the fast path reads it as the library does or leaves it alone.
TEST(FixedField, LeavesDamagedFieldsAlone) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    constexpr char kBytes[] = " -+.0123456789Ee*NnaIf\n\0x/:";
    for (int i = 0; i < 200000; ++i) {
        std::string field = randomField(random, 30);
        for (std::uint64_t edits = 1 + random.below(2); edits > 0; --edits)
            field[random.below(field.size())] = kBytes[random.below(sizeof kBytes - 1)];
        RealReader fast;
        const float value = fast.read(field.data());
        if (!fast.allGood()) continue;
        float expected = 0;
        ASSERT_TRUE(readByLibrary(field, expected)) << field;
        ASSERT_EQ(bits(value), bits(expected)) << field;
    }
}

TEST(FixedField, ReadsIntegersOrLeavesThem) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    constexpr char kBytes[] = " -+0123456789(*/:\x10";
    for (int i = 0; i < 200000; ++i) {
        std::string field = std::to_string(random.below(i % 2 ? 100000000 : 1000));
        field.insert(0, 10 - field.size(), ' ');
        if (i % 3 == 0) field[random.below(10)] = kBytes[random.below(sizeof kBytes - 1)];
        const std::int32_t fast = readInteger(field.data());
        std::int32_t expected = 0;
        const bool isNumber = parseInteger(field, expected) && field.back() != ' ';
        if (fast >= 0) {
            ASSERT_TRUE(isNumber) << field;
            ASSERT_EQ(fast, expected) << field;
        } else if (isNumber && expected > 0) {
            ASSERT_NE(field.find_first_not_of(' '), std::string::npos);
            ASSERT_LT(field.find_first_not_of(' '), 2u) << field << " was left for no reason";
        }
    }
}

struct Row {
    const char* field;
    RealStatus status;
    float value;
};

TEST(FixedField, TellsNumbersFromTheRest) {
    const Row rows[] = {
        {" 1.00000E+00", RealStatus::Good, 1},       {"0", RealStatus::Good, 0},
        {"+2.5E+01", RealStatus::Good, 25},          {" 1.00000E-60", RealStatus::Good, 0},
        {" 1.40130E-45", RealStatus::Good, 1e-45f},  {" 1.00000E+39", RealStatus::TooLarge, 0},
        {"-9.99999E+99", RealStatus::TooLarge, 0},   {"         NAN", RealStatus::NotANumber, 0},
        {"         Inf", RealStatus::NotANumber, 0}, {"-Infinity", RealStatus::NotANumber, 0},
        {"************", RealStatus::NotANumber, 0}, {" 1.00000+100", RealStatus::NotANumber, 0},
        {"            ", RealStatus::NotANumber, 0}, {"1.0 2.0", RealStatus::NotANumber, 0},
        {"0x10", RealStatus::NotANumber, 0},         {"1e99999", RealStatus::TooLarge, 0}};
    for (const Row& row : rows) {
        float value = -1;
        EXPECT_EQ(parseReal(row.field, value), row.status) << row.field;
        EXPECT_TRUE(row.status != RealStatus::Good || value == row.value) << row.field << " gave " << value;
    }
}

} // namespace
