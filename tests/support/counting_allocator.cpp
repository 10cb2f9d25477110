#include "support/counting_allocator.hpp"

#include <cstdlib>
#include <new>

namespace {

long count = 0;

} // namespace

long vadelclip::allocationCount() {
    return count;
}

void* operator new(std::size_t size) {
    ++count;
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
