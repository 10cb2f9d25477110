/// \file
/// Memory for a large parsed document.
#pragma once

#include <cstddef>

namespace vadelclip {

/// While it exists, pugixml takes its memory in huge pages, and gives each back when no node is in it. No document that
/// exists at its start may be used, and no other thread may use pugixml.
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
