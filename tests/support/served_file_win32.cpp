#include "support/file_support.hpp"

#include <stdexcept>

namespace vadelclip {

// There is no FIFO in the file system here. The tests that need one are named in tests/left-out-on-windows.txt.

ServedFile::ServedFile(const std::string& path_, std::vector<std::vector<ServingStep>>) : path(path_) {
    throw std::logic_error("a file that changes from one opening to the next needs a FIFO");
}

ServedFile::~ServedFile() = default;

} // namespace vadelclip
