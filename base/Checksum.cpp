#include "base/Checksum.h"

#define XXH_STATIC_LINKING_ONLY // for the size of the state
#include <xxhash.h>
#if defined(__x86_64__) && !defined(XXH_INLINE_ALL)
#include <xxh_x86dispatch.h> // the widest registers that the processor has
#endif

struct Checksum::State {
    XXH3_state_t xxh;
};

Checksum::Checksum()
    : state_(std::make_unique<State>()) {
    XXH3_64bits_reset(&state_->xxh);
}
Checksum::~Checksum() = default;
Checksum::Checksum(Checksum&&) noexcept = default;
Checksum& Checksum::operator=(Checksum&&) noexcept = default;

void Checksum::add(std::span<const std::byte> bytes) {
    if (!bytes.empty()) XXH3_64bits_update(&state_->xxh, bytes.data(), bytes.size());
}

std::uint64_t Checksum::value() const {
    return XXH3_64bits_digest(&state_->xxh);
}

std::uint64_t Checksum::of(std::span<const std::byte> bytes) {
    return XXH3_64bits(bytes.data(), bytes.size());
}

std::string checksumText(std::uint64_t checksum) {
    constexpr char digits[] = "0123456789abcdef";
    std::string text(16, '0');
    for (int i = 15; i >= 0; --i, checksum >>= 4)
        text[static_cast<std::size_t>(i)] = digits[checksum & 15];
    return text;
}
