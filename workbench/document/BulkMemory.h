#pragma once

#include <cstddef>
#include <vector>

namespace workbench {

/// Tells the system that the memory around `bytes` at `address` is about to be filled. A hint: without it all
/// works the same.
void adviseBulkFill(void* address, std::size_t bytes);

/// Reserves room for `items` that are about to be copied in bulk. Where the system has large pages, they
/// spare most of the page faults of fresh memory, which cost more than the copy itself; so blocks of whole
/// large pages are asked for, less what the allocator keeps for itself.
template <class T>
void reserveForBulkFill(std::vector<T>& column, std::size_t items) {
    constexpr std::size_t kLargePage = std::size_t{1} << 21;
    constexpr std::size_t kAllocatorShare = 64;
    std::size_t bytes = items * sizeof(T);
    if (bytes >= kLargePage)
        bytes = (bytes + kAllocatorShare + kLargePage - 1) / kLargePage * kLargePage - kAllocatorShare;
    column.reserve(bytes / sizeof(T));
    if (bytes >= kLargePage) adviseBulkFill(column.data(), bytes);
}

} // namespace workbench
