#include "boundary/document_memory.hpp"

#include "boundary/huge_pages.hpp"

#include <pugixml.hpp>

#include <cstddef>
#include <cstdint>
#include <new>

namespace vadelclip {

namespace {

/// The start of a part of the memory. Every block begins in the first huge page of its part, so the part of a block is
/// found from the address of the block.
struct alignas(std::max_align_t) Part {
    std::size_t size;       ///< Of the part: more than one huge page only if it has one block.
    std::size_t end;        ///< Bytes of this record and of all blocks, also of released ones.
    std::size_t blockCount; ///< Blocks in use.
};

Part* currentPart = nullptr;

std::size_t roundedUp(std::size_t size, std::size_t unit) {
    return (size + unit - 1) / unit * unit;
}

Part* makePart(std::size_t blockSize) {
    const std::size_t size = roundedUp(sizeof(Part) + blockSize, hugePageSize);
    void* const memory = allocateHugePages(size);
    return memory == nullptr ? nullptr : new (memory) Part{size, sizeof(Part), 0};
}

/// Returns a null pointer if there is no memory, as pugixml expects.
void* allocateBlock(std::size_t size) {
    const std::size_t blockSize = roundedUp(size, alignof(Part));
    if (currentPart == nullptr || currentPart->end + blockSize > hugePageSize) {
        Part* const part = makePart(blockSize);
        if (part == nullptr) {
            return nullptr;
        }
        currentPart = part;
    }
    void* const block = reinterpret_cast<std::byte*>(currentPart) + currentPart->end;
    currentPart->end += blockSize;
    ++currentPart->blockCount;
    return block;
}

void releaseBlock(void* block) {
    const std::uintptr_t offset = reinterpret_cast<std::uintptr_t>(block) % hugePageSize;
    auto* const part = reinterpret_cast<Part*>(static_cast<std::byte*>(block) - offset);
    --part->blockCount;
    if (part->blockCount == 0) {
        currentPart = part == currentPart ? nullptr : currentPart;
        releaseHugePages(part, part->size);
    }
}

} // namespace

DocumentMemory::DocumentMemory()
    : allocate(pugi::get_memory_allocation_function()), release(pugi::get_memory_deallocation_function()) {
    pugi::set_memory_management_functions(allocateBlock, releaseBlock);
}

DocumentMemory::~DocumentMemory() {
    pugi::set_memory_management_functions(allocate, release);
}

} // namespace vadelclip
