/// \file
/// Large memory with fewer page faults and address translations.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace vadelclip {

/// The size and alignment of a huge page of the usual processors.
constexpr std::size_t hugePageSize = std::size_t{2} << 20;

/// Returns memory that begins at a huge page, or a null pointer if there is none.
///
/// @param size a multiple of `hugePageSize`.
void* allocateHugePages(std::size_t size);

/// Releases the memory of one call of `allocateHugePages` with the same size.
void releaseHugePages(void* memory, std::size_t size);

/// Asks the system for huge pages in a block of memory that is not in use yet. Only speed depends on it. Does nothing for
/// a block without a whole huge page, and on systems without them.
void preferHugePages(void* block, std::size_t size);

/// Reserves room for `count` elements in huge pages.
template <class Element>
void reserveLarge(std::vector<Element>& elements, std::size_t count) {
    std::vector<Element> larger;
    larger.reserve(count);
    preferHugePages(larger.data(), count * sizeof(Element));
    std::move(elements.begin(), elements.end(), std::back_inserter(larger));
    elements = std::move(larger);
}

/// Appends an element and doubles the room, in huge pages, if there is none.
template <class Element>
void appendLarge(std::vector<Element>& elements, Element element) {
    if (elements.size() == elements.capacity()) {
        reserveLarge(elements, std::max<std::size_t>(2 * elements.size(), 1));
    }
    elements.push_back(std::move(element));
}

} // namespace vadelclip
