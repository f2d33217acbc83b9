#include "workbench/import/FixedField.h"

#include "tests/support/RandomIntegers.h"
#include "workbench/import/ColumnReader.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <string>
#include <vector>

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

/// Five fields in a row of sixteen bytes each: four that are read together and one alone.
struct Column {
    static constexpr std::size_t kCount = 5, kStride = 16;
    std::string text;
    std::vector<std::string> fields;

    void add(const std::string& field) {
        fields.push_back(field);
        text += field + " -1\n";
    }
};

/// What a reader takes for good is what the library reads. False when the reader left the column alone.
bool readsAsTheLibrary(ColumnReader reader, const Column& column) {
    float values[Column::kCount];
    if (!reader(column.text.data(), Column::kStride, Column::kCount, values)) return false;
    for (std::size_t i = 0; i < Column::kCount; ++i) {
        float expected = 0;
        EXPECT_TRUE(readByLibrary(column.fields[i], expected)) << column.fields[i];
        EXPECT_EQ(bits(values[i]), bits(expected)) << column.fields[i];
    }
    return true;
}

const ColumnReader kReaders[] = {readColumn, fastestColumnReader()};

TEST(FixedField, ReadsTheNearestFloat) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    constexpr int kColumns = 60000;
    int left[2] = {};
    for (int i = 0; i < kColumns && !testing::Test::HasFailure(); ++i) {
        Column column;
        while (column.fields.size() < Column::kCount) {
            column.add(randomField(random, i % 8 == 0 ? 100 : 32));
            float expected = 0, parsed = 0;
            if (!readByLibrary(column.fields.back(), expected)) continue;
            ASSERT_EQ(parseReal(column.fields.back(), parsed), RealStatus::Good) << column.fields.back();
            ASSERT_EQ(bits(parsed), bits(expected)) << column.fields.back();
        }
        for (int reader = 0; reader < 2; ++reader)
            left[reader] += !readsAsTheLibrary(kReaders[reader], column);
    }
    for (const int count : left)
        EXPECT_LT(count, kColumns / 6) << "the fast path hardly ever decides";
}

/// Whatever stands in a field, the fast paths read it as the library does or leave it alone.
TEST(FixedField, LeavesDamagedFieldsAlone) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    constexpr char kBytes[] = " -+.0123456789Ee*NnaIf\n\0x/:!,%";
    int read = 0;
    for (int i = 0; i < 200000 && !testing::Test::HasFailure(); ++i) {
        Column column;
        const std::size_t damaged = random.below(Column::kCount);
        while (column.fields.size() < Column::kCount) {
            std::string field = randomField(random, 30);
            if (column.fields.size() == damaged)
                for (std::uint64_t edits = 1 + random.below(2); edits > 0; --edits)
                    field[random.below(field.size())] = random.oneIn(4)
                                                            ? static_cast<char>(random.below(256))
                                                            : kBytes[random.below(sizeof kBytes - 1)];
            column.add(field);
        }
        for (const ColumnReader reader : kReaders)
            read += readsAsTheLibrary(reader, column);
    }
    EXPECT_GT(read, 0);
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
