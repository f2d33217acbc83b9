#include "solver/RecordReader.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace solver {

namespace {
constexpr std::size_t kFrameBytes = 8; ///< both counts of a record
} // namespace

RecordReader::RecordReader(ByteSource& source, std::size_t blockBytes)
    : source_(source)
    , buffer_(std::max<std::size_t>(blockBytes, 64)) {}

std::uint64_t RecordReader::bytesLeft() const {
    const std::uint64_t position = bufferOffset_ + begin_;
    return source_.size() > position ? source_.size() - position : 0;
}

/// Makes `count` bytes from begin_ on contiguous in the buffer.
bool RecordReader::ensure(std::uint64_t count) {
    if (failed()) return false;
    if (end_ - begin_ >= count) return true;
    return refill(count);
}

bool RecordReader::refill(std::uint64_t count) {
    const auto tooShort = [&] {
        const std::string there = std::to_string(
            end_ - begin_ +
            (bufferOffset_ + end_ < source_.size() ? source_.size() - bufferOffset_ - end_ : 0));
        return fail("the file ends too early: " + std::to_string(count) + " bytes expected, " + there +
                    " found");
    };
    if (count > bytesLeft()) return tooShort();
    std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(begin_),
              buffer_.begin() + static_cast<std::ptrdiff_t>(end_), buffer_.begin());
    bufferOffset_ += begin_;
    end_ -= std::exchange(begin_, 0);
    if (count > buffer_.size()) buffer_.resize(static_cast<std::size_t>(count));
    const auto got = source_.read(std::span(buffer_).subspan(end_));
    if (!got) {
        error_ = got.error();
        return false;
    }
    checksum_.add(std::span(buffer_).subspan(end_, *got));
    end_ += *got;
    return end_ >= count || tooShort();
}

bool RecordReader::fail(const std::string& text) {
    if (!error_)
        error_ = Error{source_.name() + ": record " + std::to_string(recordNumber_) + " (" +
                       std::string(what_) + ") at byte " + std::to_string(recordOffset_) + ": " + text};
    return false;
}

bool RecordReader::failFrame(const char* which, std::int32_t found, std::uint32_t expected) {
    return fail("its " + std::string(which) + " byte count is " + std::to_string(found) + ", expected " +
                std::to_string(expected));
}

bool RecordReader::checkFrame(const std::byte* frame, std::uint32_t length) {
    const auto expected = static_cast<std::int32_t>(length);
    const std::int32_t leading = loadInteger(frame);
    if (leading != expected) return failFrame("leading", leading, length);
    const std::int32_t trailing = loadInteger(frame + 4 + length);
    return trailing == expected || failFrame("trailing", trailing, length);
}

bool RecordReader::open(std::string_view what, std::uint32_t length) {
    const std::byte* payload = nullptr;
    if (openRun(what, length, 1, payload) == 0) return false;
    cursor_ = static_cast<std::size_t>(payload - buffer_.data());
    payloadEnd_ = cursor_ + length;
    return true;
}

std::size_t RecordReader::openRun(std::string_view what, std::uint32_t length, std::size_t wanted,
                                  const std::byte*& payloads) {
    if (failed()) return 0;
    const std::size_t stride = length + kFrameBytes;
    what_ = what;
    recordOffset_ = bufferOffset_ + begin_;
    ++recordNumber_;
    // The leading count first: a wrong one says more than a file that is too short for the right one.
    if (!ensure(4)) return 0;
    if (const std::int32_t leading = loadInteger(buffer_.data() + begin_);
        leading != static_cast<std::int32_t>(length)) {
        failFrame("leading", leading, length);
        return 0;
    }
    if (!ensure(stride)) return 0;
    const std::size_t count = std::min(wanted, (end_ - begin_) / stride);
    const std::byte* frame = buffer_.data() + begin_;
    for (std::size_t i = 0; i < count; ++i, frame += stride) {
        if (!checkFrame(frame, length)) return 0;
        if (i + 1 == count) break;
        recordOffset_ += stride;
        ++recordNumber_;
    }
    payloads = buffer_.data() + begin_ + 4;
    begin_ += count * stride;
    return count;
}

std::int32_t RecordReader::integer() {
    assert(cursor_ + 4 <= payloadEnd_);
    return loadInteger(buffer_.data() + std::exchange(cursor_, cursor_ + 4));
}

double RecordReader::real() {
    assert(cursor_ + 8 <= payloadEnd_);
    return loadReal(buffer_.data() + std::exchange(cursor_, cursor_ + 8));
}

std::string_view RecordReader::bytes(std::size_t count) {
    assert(cursor_ + count <= payloadEnd_);
    const std::byte* at = buffer_.data() + std::exchange(cursor_, cursor_ + count);
    return {reinterpret_cast<const char*>(at), count};
}

std::optional<std::int32_t> RecordReader::peekLength() {
    if (failed() || bytesLeft() < 4 || !ensure(4)) return std::nullopt;
    return loadInteger(buffer_.data() + begin_);
}

bool RecordReader::fits(std::string_view whatCount, std::uint64_t count, std::uint64_t length) {
    if (failed()) return false;
    const std::uint64_t room = bytesLeft() / (length + kFrameBytes);
    if (count <= room) return true;
    return fail("it announces " + std::to_string(count) + " " + std::string(whatCount) +
                ", but the rest of the file has room for " + std::to_string(room) + " at most");
}

bool RecordReader::atEnd() {
    if (failed()) return false;
    // One byte more than the file had when it was opened would show that it is still being written.
    std::byte extra{};
    const auto grown = source_.read(std::span(&extra, 1));
    if (!grown) {
        error_ = grown.error();
        return false;
    }
    const std::uint64_t rest = end_ - begin_ + *grown;
    if (rest == 0) return true;
    return fail("at least " + std::to_string(std::max(rest, bytesLeft())) +
                " bytes follow behind this record, which must be the last one");
}

} // namespace solver
