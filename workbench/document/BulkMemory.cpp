#include "workbench/document/BulkMemory.h"

#include <cstdint>

#ifdef __linux__
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace workbench {

void adviseBulkFill([[maybe_unused]] void* address, [[maybe_unused]] std::size_t bytes) {
#ifdef __linux__
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(address) / page * page;
    const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(address) + bytes + page - 1) / page * page;
    ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#endif
}

} // namespace workbench
