#include "watch/run/run_directories.hpp"

#include <boost/filesystem/path.hpp>

namespace vadelwatch {

// The library and the version of its rules that the tool uses: two ways of splitting a path would differ somewhere.
RunDirectories runDirectories(const std::string& inputDirectoryPath, const std::string& outputDirectoryName) {
    const boost::filesystem::path inputPath(inputDirectoryPath);
    const boost::filesystem::path parent = inputPath.parent_path();
    return {(parent / inputPath.filename()).string(), (parent / outputDirectoryName).string()};
}

} // namespace vadelwatch
