#include "resultfile/ObjectHeader.h"
#include "tests/resultfile/ReadEverything.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>

namespace {

/// Makes the checksum after `size` bytes at `start` match, where it lies inside the file.
void repair(std::string& bytes, std::size_t start, std::size_t size) {
    if (start > bytes.size() || size > bytes.size() - start || bytes.size() - start - size < 4) return;
    const std::uint32_t sum = resultfile::lookup3(std::as_bytes(std::span(bytes)).subspan(start, size));
    std::memcpy(bytes.data() + start + size, &sum, sizeof sum);
}

/// Lets mutations of the superblock and of object headers pass their checksums, so that they reach the
/// decoder.
void repairStructure(std::string& bytes) {
    repair(bytes, 0, 44);
    for (std::size_t at = bytes.find("OHDR"); at != bytes.npos; at = bytes.find("OHDR", at + 1)) {
        if (bytes.size() - at < 34) return;
        const unsigned flags = static_cast<unsigned char>(bytes[at + 5]);
        const std::size_t sizeAt = 6 + (flags & 0x20 ? 16 : 0) + (flags & 0x10 ? 4 : 0);
        const std::size_t sizeLength = std::size_t{1} << (flags & 3);
        std::uint64_t messages = 0;
        std::memcpy(&messages, bytes.data() + at + sizeAt, sizeLength);
        if (messages < bytes.size()) repair(bytes, at, sizeAt + sizeLength + messages);
    }
}

} // namespace

/// HDF5 forgets some of what it had decoded of an object when it refuses the rest.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libhdf5";
}

/// Any bytes: an error sentence or a whole file, never a crash. Files of the Writer make good seeds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string bytes(reinterpret_cast<const char*>(data), size);
    repairStructure(bytes);
    static const int file = ::memfd_create("fuzz", MFD_CLOEXEC);
    if (file < 0 || ::ftruncate(file, 0) != 0 ||
        ::pwrite(file, bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size()))
        std::abort();
    const auto read = readEverything("/proc/self/fd/" + std::to_string(file));
    if (!read && read.error().message.empty()) std::abort();
    return 0;
}
