#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace resultfile {

/// Types of the messages in an object header (HDF5 File Format Specification 3.0, IV.A.2).
enum MessageType : unsigned {
    kNothing = 0x00,
    kDataspace = 0x01,
    kLinkInfo = 0x02,
    kDatatype = 0x03,
    kFillValue = 0x05,
    kLink = 0x06,
    kLayout = 0x08,
    kGroupInfo = 0x0A,
    kAttribute = 0x0C,
    kContinuation = 0x10,
    kAttributeInfo = 0x15,
};

/// Whether the body of a message has a form that the Writer makes, with sizes that add up: at most one
/// dimension, plain numbers and fixed texts, hard links, contiguous data. Links and attributes in heaps and
/// trees, shared messages, filters and data elsewhere have none: they lead through decoders of HDF5 that
/// trust what they read.
bool plainMessage(unsigned type, std::span<const std::byte> body);

/// `size` bytes (up to 8) as a number, lowest byte first.
std::uint64_t littleEndian(std::span<const std::byte> bytes, std::size_t size);

} // namespace resultfile
