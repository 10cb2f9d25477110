#include "messages/executable_path.hpp"

#include <boost/filesystem/operations.hpp>
#include <boost/system/error_code.hpp>

namespace vadelclip {

boost::filesystem::path executablePath() {
    boost::system::error_code error;
    boost::filesystem::path path = boost::filesystem::read_symlink("/proc/self/exe", error);
    return error ? boost::filesystem::path() : path;
}

} // namespace vadelclip
