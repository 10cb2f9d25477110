// Starts a program as a controlling process on Windows does, and returns its exit status:
//
//     win32_launcher <program> [arguments]
//
// VADELCLIP_CHANNEL names a file that becomes descriptor 3 of the program; or it is "read only" (open for reading),
// "text mode" (a file whose name is in VADELCLIP_CHANNEL_FILE, opened in text mode), "append" (the same file, opened
// for appending) or "no reader" (a pipe without a reader). If it is not set, descriptor 3 is closed.
// VADELCLIP_CLOSED contains the numbers of the descriptors to close, such as "12".

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <string>
#include <sys/stat.h>

namespace {

constexpr int channelDescriptor = 3;

/// The exit status if the launch fails. The tool never returns it.
constexpr int launchFailed = 99;

std::wstring setting(const wchar_t* name) {
    const wchar_t* const value = _wgetenv(name);
    return value == nullptr ? L"" : value;
}

int openFile(const std::wstring& name, int flags) {
    return _wopen(name.c_str(), _O_WRONLY | _O_CREAT | flags, _S_IREAD | _S_IWRITE);
}

int openPipeWithoutReader() {
    int ends[2] = {-1, -1};
    if (_pipe(ends, 4096, _O_BINARY) != 0) {
        return -1;
    }
    _close(ends[0]);
    return ends[1];
}

int openChannel(const std::wstring& channel) {
    const std::wstring file = setting(L"VADELCLIP_CHANNEL_FILE");
    if (channel == L"read only") {
        return _wopen(L"NUL", _O_RDONLY | _O_BINARY);
    }
    if (channel == L"text mode") {
        return openFile(file, _O_TEXT);
    }
    if (channel == L"append") {
        return openFile(file, _O_BINARY | _O_APPEND);
    }
    return channel == L"no reader" ? openPipeWithoutReader() : openFile(channel, _O_BINARY);
}

bool placeChannel(const std::wstring& channel) {
    const int descriptor = openChannel(channel);
    if (descriptor < 0) {
        return false;
    }
    if (descriptor != channelDescriptor) {
        _dup2(descriptor, channelDescriptor);
        _close(descriptor);
    }
    return true;
}

/// Returns the command line of this process without its name. The quoting is unchanged.
std::wstring commandLineOfProgram() {
    const std::wstring line = GetCommandLineW();
    const std::size_t end = line.starts_with(L'"') ? line.find(L'"', 1) + 1 : line.find(L' ');
    return line.substr(line.find_first_not_of(L' ', end));
}

} // namespace

int wmain(int argc, wchar_t* argv[]) {
    const std::wstring channel = setting(L"VADELCLIP_CHANNEL");
    if (argc < 2 || (!channel.empty() && !placeChannel(channel))) {
        return launchFailed;
    }
    for (const wchar_t digit : setting(L"VADELCLIP_CLOSED")) {
        _close(digit - L'0');
    }
    // The run-time joins the arguments with spaces and does not quote them, so all of them are passed as one.
    const std::wstring commandLine = commandLineOfProgram();
    const wchar_t* const arguments[] = {commandLine.c_str(), nullptr};
    const std::intptr_t status = _wspawnv(_P_WAIT, argv[1], arguments);
    return status < 0 ? launchFailed : static_cast<int>(status);
}
