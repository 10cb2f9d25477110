#include "process/run_directories.hpp"

#include <boost/filesystem/path.hpp>

namespace vadelclip {

// Uses the library of the tool, in the same version: two ways to split a path would differ somewhere.
RunDirectories runDirectories(const std::string& inputPath, const std::string& outputName) {
    const boost::filesystem::path input(inputPath);
    const boost::filesystem::path parent = input.parent_path();
    return {parent.string(), (parent / input.filename()).string(), (parent / outputName).string()};
}

} // namespace vadelclip
