#include "boundary/huge_pages.hpp"

#ifdef __linux__
#include <sys/mman.h>
#endif

#include <cstdint>
#include <memory>
#include <new>

namespace vadelclip {

#ifdef __linux__

// An aligned allocation of the C library would take twice the address space.
void* allocateHugePages(std::size_t size) {
    void* const mapped = mmap(nullptr, size + hugePageSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) {
        return nullptr;
    }
    auto* const start = static_cast<std::byte*>(mapped);
    const std::size_t before = (hugePageSize - reinterpret_cast<std::uintptr_t>(start) % hugePageSize) % hugePageSize;
    if (before > 0) {
        munmap(start, before);
    }
    munmap(start + before + size, hugePageSize - before);
    preferHugePages(start + before, size);
    return start + before;
}

void releaseHugePages(void* memory, std::size_t size) {
    munmap(memory, size);
}

void preferHugePages(void* block, std::size_t size) {
    if (std::align(hugePageSize, hugePageSize, block, size) != nullptr) {
        madvise(block, size - size % hugePageSize, MADV_HUGEPAGE);
    }
}

#else

void* allocateHugePages(std::size_t size) {
    return ::operator new (size, std::align_val_t{hugePageSize}, std::nothrow);
}

void releaseHugePages(void* memory, std::size_t) {
    ::operator delete (memory, std::align_val_t{hugePageSize});
}

void preferHugePages(void*, std::size_t) {}

#endif

} // namespace vadelclip
