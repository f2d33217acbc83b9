#include "resultfile/ObjectHeader.h"

#include "resultfile/HeaderMessages.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <vector>

namespace resultfile {

namespace {

/// More than any header that holds our texts, few enough to read without a second thought.
constexpr std::uint64_t kLargestHeader = 1 << 20;
constexpr std::size_t kChecksumSize = 4;

/// A piece of the file that ends in its checksum.
struct Chunk {
    std::uint64_t address;
    std::uint64_t size;
};

/// The chunks of one header that are still to be looked at, and how much was looked at.
struct Walk {
    hdf5::OpenFile& file;
    std::uint64_t fileSize;
    std::vector<Chunk> pending;
    std::uint64_t seen = 0;
    bool ordered = false; ///< messages carry their order of creation

    bool read(const Chunk& chunk, std::vector<std::byte>& bytes) {
        if (chunk.size < kChecksumSize || chunk.address > fileSize || chunk.size > fileSize - chunk.address)
            return false;
        if (chunk.size > kLargestHeader - seen) return false;
        seen += chunk.size;
        bytes.resize(chunk.size);
        if (!file.read(chunk.address, chunk.size, bytes.data())) return false;
        const auto content = std::span(bytes).first(bytes.size() - kChecksumSize);
        return lookup3(content) == littleEndian(std::span(bytes).last(kChecksumSize), kChecksumSize);
    }

    /// Notes the continuations; false for messages that the Writer never makes.
    bool follow(std::span<const std::byte> messages) {
        const std::size_t head = ordered ? 6 : 4;
        while (messages.size() >= head) {
            const auto type = static_cast<unsigned>(messages[0]);
            const std::size_t size = littleEndian(messages.subspan(1), 2);
            const bool shared = static_cast<unsigned>(messages[3]) & 2;
            if (shared || size > messages.size() - head || !plainMessage(type, messages.subspan(head, size)))
                return false;
            if (type == kContinuation)
                pending.push_back(
                    {littleEndian(messages.subspan(head), 8), littleEndian(messages.subspan(head + 8), 8)});
            messages = messages.subspan(head + size);
        }
        return true;
    }
};

} // namespace

std::uint32_t lookup3(std::span<const std::byte> bytes) {
    std::uint32_t a = 0xDEADBEEF + static_cast<std::uint32_t>(bytes.size()), b = a, c = a;
    const auto take = [&](std::span<const std::byte> part) {
        std::array<std::uint32_t, 3> words{};
        std::memcpy(words.data(), part.data(), part.size());
        a += words[0];
        b += words[1];
        c += words[2];
    };
    const auto stir = [](std::uint32_t& x, std::uint32_t& y, std::uint32_t& z, int turn) {
        x = (x - z) ^ std::rotl(z, turn);
        z += y;
    };
    const auto finish = [](std::uint32_t& x, std::uint32_t y, int turn) { x = (x ^ y) - std::rotl(y, turn); };

    if (bytes.empty()) return c;
    for (; bytes.size() > 12; bytes = bytes.subspan(12)) {
        take(bytes.first(12));
        stir(a, b, c, 4);
        stir(b, c, a, 6);
        stir(c, a, b, 8);
        stir(a, b, c, 16);
        stir(b, c, a, 19);
        stir(c, a, b, 4);
    }
    take(bytes);
    finish(c, b, 14);
    finish(a, c, 11);
    finish(b, a, 25);
    finish(c, b, 16);
    finish(a, c, 4);
    finish(b, a, 14);
    finish(c, b, 24);
    return c;
}

bool headerIntact(hdf5::OpenFile& file, std::uint64_t fileSize, std::uint64_t address) {
    // Signature, version, flags, times, attribute limits, size of the first chunk: at most 34 bytes.
    std::array<std::byte, 34> prefix;
    if (address >= fileSize || !file.read(address, prefix.size(), prefix.data())) return false;
    if (std::memcmp(prefix.data(), "OHDR\x02", 5) != 0) return false;
    const auto flags = static_cast<unsigned>(prefix[5]);
    const std::size_t sizeAt = 6 + (flags & 0x20 ? 16 : 0) + (flags & 0x10 ? 4 : 0);
    const std::size_t sizeLength = std::size_t{1} << (flags & 3);
    const std::size_t start = sizeAt + sizeLength;
    const std::uint64_t messages = littleEndian(std::span(prefix).subspan(sizeAt), sizeLength);
    if (messages > kLargestHeader) return false;

    Walk walk{file, fileSize, {{address, start + messages + kChecksumSize}}};
    walk.ordered = flags & 4;
    std::vector<std::byte> bytes;
    for (bool first = true; !walk.pending.empty(); first = false) {
        const Chunk chunk = walk.pending.back();
        walk.pending.pop_back();
        if (!walk.read(chunk, bytes)) return false;
        const std::size_t skipped = first ? start : 4;
        if (bytes.size() < skipped + kChecksumSize || (!first && std::memcmp(bytes.data(), "OCHK", 4) != 0))
            return false;
        if (!walk.follow(std::span(bytes).subspan(skipped, bytes.size() - skipped - kChecksumSize)))
            return false;
    }
    return true;
}

} // namespace resultfile
