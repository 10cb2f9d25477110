#include "messages/executable_path.hpp"

#include <boost/filesystem/path.hpp>
#include <windows.h>

namespace vadelclip {

namespace {

/// The maximum length of a path on Windows, unless it has the extended form.
constexpr DWORD pathCapacity = 260;

} // namespace

std::string executablePath() {
    // One character more than the size in the call, so that a path that was cut ends with a zero too.
    wchar_t path[pathCapacity + 1] = {};
    // Only 0 counts as failure. A path that does not fit is cut and used: unless only the file name is cut, no catalogue
    // is found there and the messages stay English.
    const DWORD length = GetModuleFileNameW(nullptr, path, pathCapacity);
    return length == 0 ? std::string() : boost::filesystem::path(path).string();
}

} // namespace vadelclip
