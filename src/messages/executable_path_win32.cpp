#include "messages/executable_path.hpp"

#include <boost/filesystem/path.hpp>
#include <windows.h>

namespace vadelclip {

namespace {

/// As many characters as a path has on Windows unless it is written in the extended form.
constexpr DWORD pathCapacity = 260;

} // namespace

std::string executablePath() {
    // One more than Windows is told of, so that a path that did not fit is ended too.
    wchar_t path[pathCapacity + 1] = {};
    // Only 0 counts as failure. A path that does not fit is cut and used as it stands: no catalogue is found there,
    // and the messages stay English, unless only the file name is cut.
    const DWORD length = GetModuleFileNameW(nullptr, path, pathCapacity);
    return length == 0 ? std::string() : boost::filesystem::path(path).string();
}

} // namespace vadelclip
