#include "app/executable_path.hpp"

#include <boost/filesystem/operations.hpp>
#include <boost/system/error_code.hpp>

boost::filesystem::path executablePath() {
    boost::system::error_code error;
    boost::filesystem::path path = boost::filesystem::read_symlink("/proc/self/exe", error);
    return error ? boost::filesystem::path() : path;
}
