#include "support/file_support.hpp"

#include <stdexcept>

namespace vadelclip {

// Windows has no FIFOs in its file system. tests/left-out-on-windows.txt lists the tests that need one.

ServedFile::ServedFile(const std::string& path_, std::vector<std::vector<ServingStep>>) : path(path_) {
    throw std::logic_error("a file that changes from one opening to the next needs a FIFO");
}

ServedFile::~ServedFile() = default;

} // namespace vadelclip
