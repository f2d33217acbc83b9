#pragma once

#include "base/Checksum.h"
#include "base/Result.h"
#include "solver/ByteSource.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace solver {

/// Reads framed records: a 32-bit byte count, that many bytes, the same count again, all little-endian.
///
/// The caller says what each record is and how long it must be; everything else is a failure. Failures are
/// sticky: after the first one every call fails and `error()` keeps its sentence, which names the file, the
/// record and its byte offset. The buffer grows only for records that the rest of the file can hold.
class RecordReader {
  public:
    explicit RecordReader(ByteSource& source, std::size_t blockBytes = 1 << 18);

    /// Goes to the next record, which must have `length` bytes. `what` names it in messages and must be a
    /// literal.
    bool open(std::string_view what, std::uint32_t length);
    /// The next value of the open record, which must still hold one.
    std::int32_t integer();
    double real();
    std::string_view bytes(std::size_t count);

    /// Goes past the next records of one kind, at least one and at most `wanted` of them, as many as are
    /// buffered. Returns their number, 0 after a failure; the payload of record i starts at
    /// `payloads + i * (length + 8)` and stays there until the next call.
    std::size_t openRun(std::string_view what, std::uint32_t length, std::size_t wanted,
                        const std::byte*& payloads);

    /// The leading count of the next record, without going to it; none at the end or after a failure.
    std::optional<std::int32_t> peekLength();

    /// False, with a failure, when `count` records of `length` bytes cannot fit into the rest of the file.
    bool fits(std::string_view whatCount, std::uint64_t count, std::uint64_t length);
    /// False, with a failure, unless the file ends here.
    bool atEnd();

    /// Makes `text` the failure, unless there is one already, with file, record and offset; returns false.
    bool fail(const std::string& text);
    bool failed() const { return error_.has_value(); }
    const Error& error() const { return *error_; }

    /// Checksum of all bytes read so far: after atEnd() that of the file.
    std::uint64_t checksum() const { return checksum_.value(); }

  private:
    std::uint64_t bytesLeft() const;
    bool ensure(std::uint64_t count);
    bool refill(std::uint64_t count);
    bool checkFrame(const std::byte* frame, std::uint32_t length);
    bool failFrame(const char* which, std::int32_t found, std::uint32_t expected);

    ByteSource& source_;
    std::vector<std::byte> buffer_;
    std::size_t begin_ = 0; ///< first byte in the buffer that no record has taken
    std::size_t end_ = 0;
    std::size_t cursor_ = 0;          ///< next value of the open record
    std::size_t payloadEnd_ = 0;      ///< end of the open record's payload
    std::uint64_t bufferOffset_ = 0;  ///< byte of the file at the buffer's start
    std::uint64_t recordOffset_ = 0;  ///< byte of the file at the open record's start
    std::uint64_t recordNumber_ = 0;  ///< counted from 1
    std::string_view what_ = "start"; ///< the open record
    Checksum checksum_;
    std::optional<Error> error_;
};

/// Little-endian values at `at`.
template <class T>
T loadLittleEndian(const std::byte* at) {
    T bits;
    std::memcpy(&bits, at, sizeof bits);
    if constexpr (std::endian::native == std::endian::big) {
        auto* bytes = reinterpret_cast<std::byte*>(&bits);
        std::reverse(bytes, bytes + sizeof bits);
    }
    return bits;
}
inline std::int32_t loadInteger(const std::byte* at) {
    return loadLittleEndian<std::int32_t>(at);
}
inline double loadReal(const std::byte* at) {
    return loadLittleEndian<double>(at);
}

} // namespace solver
