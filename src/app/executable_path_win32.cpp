#include "app/executable_path.hpp"

#include <windows.h>

boost::filesystem::path executablePath() {
    wchar_t buffer[260];
    // Only 0 counts as failure. A path that does not fit is cut and used as it stands: no catalogue is found there,
    // and the messages stay English.
    const DWORD length = GetModuleFileNameW(nullptr, buffer, 260);
    return length == 0 ? boost::filesystem::path() : boost::filesystem::path(buffer, buffer + length);
}
