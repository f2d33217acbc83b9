#include "resultfile/Superblock.h"

#include "base/ReplaceFile.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>

namespace resultfile {

namespace {

constexpr std::array<unsigned char, 8> kSignature{0x89, 'H', 'D', 'F', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t kSuperblockSize = 48;

std::uint64_t littleEndian64(const unsigned char* bytes) {
    std::uint64_t value = 0;
    for (int i = 7; i >= 0; --i)
        value = value << 8 | bytes[i];
    return value;
}

} // namespace

Result<Superblock> checkSuperblock(const std::filesystem::path& path) {
    const auto unusable = [&](const std::string& reason) {
        return Error{"cannot read " + path.string() + ": " + reason};
    };
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (error) return unusable(systemErrorText(error.value()));
    if (!std::filesystem::is_regular_file(status)) return unusable("it is not a regular file");
    const std::uint64_t size = std::filesystem::file_size(path, error);
    if (error) return unusable(systemErrorText(error.value()));

    std::array<unsigned char, kSuperblockSize> head{};
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    if (!stream) return unusable(systemErrorText(errno));
    stream.read(reinterpret_cast<char*>(head.data()), head.size());
    if (stream.bad()) return unusable("its first bytes cannot be read");
    const auto length = static_cast<std::size_t>(stream.gcount());
    if (length == 0) return unusable("it is empty");
    if (std::memcmp(head.data(), kSignature.data(), std::min(length, kSignature.size())) != 0)
        return unusable("it is not an HDF5 file");
    if (length < head.size()) return unusable("it is cut short");
    const unsigned version = head[8];
    if (version != 2 && version != 3) return unusable("it is an HDF5 file, but not a result file");
    if (head[9] != 8 || head[10] != 8 || littleEndian64(&head[12]) != 0)
        return unusable("its superblock is damaged or not that of a result file");
    const std::uint64_t end = littleEndian64(&head[28]);
    if (end > size)
        return unusable("it is cut short: " + std::to_string(size) + " of " + std::to_string(end) +
                        " bytes are there");
    return Superblock{size};
}

} // namespace resultfile
