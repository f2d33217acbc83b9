#include "resultfile/HeaderMessages.h"

#include <algorithm>
#include <cstring>

namespace resultfile {

namespace {

constexpr std::uint64_t kNowhere = ~std::uint64_t{0};

/// Takes fields from the front. After a field that is not there everything is zero and `sound` is false.
class Fields {
  public:
    explicit Fields(std::span<const std::byte> bytes)
        : bytes_(bytes) {}

    std::uint64_t number(std::size_t size) {
        const auto field = take(size);
        return field.empty() ? 0 : littleEndian(field, size);
    }
    std::span<const std::byte> take(std::uint64_t size) {
        sound_ = sound_ && size <= bytes_.size();
        if (!sound_) return {};
        const auto field = bytes_.first(size);
        bytes_ = bytes_.subspan(size);
        return field;
    }
    bool sound() const { return sound_; }
    /// All bytes were taken and all fields were there.
    bool finished() const { return sound_ && bytes_.empty(); }
    std::size_t left() const { return bytes_.size(); }

  private:
    std::span<const std::byte> bytes_;
    bool sound_ = true;
};

/// Scalar, one dimension or none at all; the number of elements goes to `count`.
bool plainDataspace(std::span<const std::byte> body, std::uint64_t& count) {
    Fields fields(body);
    const auto version = fields.number(1), rank = fields.number(1), flags = fields.number(1),
               kind = fields.number(1);
    count = rank == 1 ? fields.number(8) : kind == 0;
    if (rank == 1 && flags == 1) fields.number(8); // largest size
    return version == 2 && flags <= 1 && kind <= 2 && rank == (kind == 1) && fields.finished();
}

/// A number or a text of fixed length; its bytes go to `size`.
bool plainDatatype(std::span<const std::byte> body, std::uint64_t& size) {
    constexpr std::uint64_t integer = 0, real = 1, text = 3;
    Fields fields(body);
    const auto head = fields.number(1);
    fields.number(3); // byte order, sign, padding: compared with the type that is expected
    size = fields.number(4);
    const auto kind = head & 15;
    if (kind == integer) fields.take(4);
    if (kind == real) fields.take(12);
    const bool known = kind == text ? size > 0 : (kind == integer || kind == real) && size > 0 && size <= 8;
    return known && head >> 4 >= 1 && head >> 4 <= 3 && fields.finished();
}

bool plainAttribute(std::span<const std::byte> body) {
    Fields fields(body);
    const auto version = fields.number(1), flags = fields.number(1);
    const auto nameSize = fields.number(2), typeSize = fields.number(2), spaceSize = fields.number(2);
    fields.number(1); // character set
    const auto name = fields.take(nameSize);
    const auto type = fields.take(typeSize), space = fields.take(spaceSize);
    std::uint64_t size = 0, count = 0;
    if (version != 3 || flags != 0 || !fields.sound() || name.empty()) return false;
    if (std::find(name.begin(), name.end(), std::byte{0}) != name.end() - 1) return false;
    if (!plainDatatype(type, size) || !plainDataspace(space, count)) return false;
    return count <= fields.left() && count * size == fields.left();
}

bool plainLink(std::span<const std::byte> body) {
    Fields fields(body);
    const auto version = fields.number(1), flags = fields.number(1);
    const bool hard = !(flags & 8) || fields.number(1) == 0;
    if (flags & 4) fields.number(8);  // order of creation
    if (flags & 16) fields.number(1); // character set
    const auto length = fields.number(std::size_t{1} << (flags & 3));
    const auto name = fields.take(length);
    fields.number(8); // address
    return version == 1 && flags < 32 && hard && !name.empty() && fields.finished();
}

/// Information about links or attributes in heaps, of which there must be none.
bool plainInfo(std::span<const std::byte> body, std::size_t orderSize) {
    Fields fields(body);
    const auto version = fields.number(1), flags = fields.number(1);
    if (flags & 1) fields.number(orderSize);
    const auto heap = fields.number(8), names = fields.number(8);
    const auto orders = flags & 2 ? fields.number(8) : kNowhere;
    return version == 0 && flags <= 3 && heap == kNowhere && names == kNowhere && orders == kNowhere &&
           fields.finished();
}

bool plainGroupInfo(std::span<const std::byte> body) {
    Fields fields(body);
    const auto version = fields.number(1), flags = fields.number(1);
    fields.take((flags & 1 ? 4 : 0) + (flags & 2 ? 4 : 0));
    return version == 0 && flags <= 3 && fields.finished();
}

bool plainFillValue(std::span<const std::byte> body) {
    Fields fields(body);
    const auto version = fields.number(1), flags = fields.number(1);
    return version == 3 && !(flags & 0x20) && fields.finished();
}

bool plainLayout(std::span<const std::byte> body) {
    Fields fields(body);
    const auto version = fields.number(1), kind = fields.number(1);
    fields.take(16); // address and size
    return (version == 3 || version == 4) && kind == 1 && fields.finished();
}

} // namespace

std::uint64_t littleEndian(std::span<const std::byte> bytes, std::size_t size) {
    std::uint64_t value = 0;
    std::memcpy(&value, bytes.data(), size);
    return value;
}

bool plainMessage(unsigned type, std::span<const std::byte> body) {
    std::uint64_t ignored = 0;
    switch (type) {
    case kNothing:
        return true;
    case kDataspace:
        return plainDataspace(body, ignored);
    case kDatatype:
        return plainDatatype(body, ignored);
    case kFillValue:
        return plainFillValue(body);
    case kLink:
        return plainLink(body);
    case kLayout:
        return plainLayout(body);
    case kGroupInfo:
        return plainGroupInfo(body);
    case kAttribute:
        return plainAttribute(body);
    case kContinuation:
        return body.size() == 16;
    case kLinkInfo:
        return plainInfo(body, 8);
    case kAttributeInfo:
        return plainInfo(body, 2);
    default:
        return false;
    }
}

} // namespace resultfile
