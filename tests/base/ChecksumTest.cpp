#include "base/Checksum.h"

#include "tests/support/RandomIntegers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

TEST(Checksum, PiecesOfAnySizeGiveTheSame) {
    RandomIntegers random;
    SCOPED_TRACE(random.seedText());
    for (const std::size_t size : {0u, 1u, 16u, 240u, 241u, 1024u, 100'000u}) {
        std::vector<std::byte> bytes(size);
        for (std::byte& b : bytes)
            b = static_cast<std::byte>(random.next() >> 32);
        Checksum pieces;
        for (std::size_t at = 0; at < size;) {
            const std::size_t part = std::min(size - at, 1 + random.below(2 * size / 3 + 1));
            pieces.add(std::span(bytes).subspan(at, part));
            at += part;
        }
        EXPECT_EQ(pieces.value(), Checksum::of(bytes)) << size;
        if (size == 0) continue;
        bytes[random.below(size)] ^= std::byte{1};
        EXPECT_NE(pieces.value(), Checksum::of(bytes)) << size;
    }
}

// Stored checksums outlive a version of the library. Values: `xxhsum -H3` of the same bytes.
TEST(Checksum, KnownValues) {
    EXPECT_EQ(checksumText(Checksum::of({})), "2d06800538d394c2");
    const char text[] = "abc";
    EXPECT_EQ(checksumText(Checksum::of(std::as_bytes(std::span(text, 3)))), "78af5f94892f3950");
}

TEST(Checksum, TextHasSixteenDigits) {
    EXPECT_EQ(checksumText(0), "0000000000000000");
    EXPECT_EQ(checksumText(0xFEDCBA9876543210u), "fedcba9876543210");
    EXPECT_EQ(checksumText(10), "000000000000000a");
}

} // namespace
