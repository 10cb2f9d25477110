#include "messages/executable_path.hpp"

#include <boost/filesystem/operations.hpp>
#include <boost/system/error_code.hpp>

namespace vadelclip {

std::string executablePath() {
    boost::system::error_code error;
    const boost::filesystem::path path = boost::filesystem::read_symlink("/proc/self/exe", error);
    return error ? std::string() : path.string();
}

} // namespace vadelclip
