#include "resultfile/Superblock.h"

#include "base/ReplaceFile.h"
#include "resultfile/ObjectHeader.h"

#include <array>
#include <cstring>

namespace resultfile {

namespace {

constexpr std::array<unsigned char, 8> kSignature{0x89, 'H', 'D', 'F', '\r', '\n', 0x1A, '\n'};
constexpr std::size_t kSuperblockSize = 48;

template <class T>
T number(const unsigned char* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

} // namespace

std::string superblockFault(hdf5::OpenFile& file) {
    if (!file.isRegular()) return "it is not a regular file";
    const std::uint64_t size = file.size();
    if (size == 0) return "it is empty";
    std::array<unsigned char, kSuperblockSize> head;
    if (!file.read(0, head.size(), head.data())) return systemErrorText(file.fault());
    if (std::memcmp(head.data(), kSignature.data(), std::min<std::uint64_t>(size, kSignature.size())) != 0)
        return "it is not an HDF5 file";
    if (size < head.size()) return "it is cut short";
    const unsigned version = head[8];
    if (version != 2 && version != 3) return "it is an HDF5 file, but not a result file";
    constexpr std::uint64_t nowhere = ~std::uint64_t{0};
    if (head[9] != 8 || head[10] != 8 || number<std::uint64_t>(&head[12]) != 0 ||
        number<std::uint64_t>(&head[20]) != nowhere)
        return "its superblock is damaged or not that of a result file";
    const std::uint64_t end = number<std::uint64_t>(&head[28]);
    if (end > size)
        return "it is cut short: " + std::to_string(size) + " of " + std::to_string(end) + " bytes are there";
    const auto checked = std::as_bytes(std::span(head)).first(kSuperblockSize - 4);
    if (lookup3(checked) != number<std::uint32_t>(&head[checked.size()])) return "its superblock is damaged";
    if (!headerIntact(file, size, number<std::uint64_t>(&head[36])))
        return "its root group is damaged or changed by another program";
    return {};
}

} // namespace resultfile
