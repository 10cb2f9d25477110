/// \file
/// Memory for a large parsed document.
#pragma once

#include <cstddef>

namespace vadelclip {

/// While it exists, pugixml allocates in huge pages. Each of them is released with its last block.
///
/// No document may exist when it is made or destroyed, and no other thread may use pugixml.
class DocumentMemory {
public:
    DocumentMemory();
    ~DocumentMemory();
    DocumentMemory(const DocumentMemory&) = delete;
    DocumentMemory& operator=(const DocumentMemory&) = delete;

private:
    void* (*allocate)(std::size_t size);
    void (*release)(void* block);
};

} // namespace vadelclip
