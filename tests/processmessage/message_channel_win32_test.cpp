#include "processmessage/message_channel.hpp"

#include "support/file_support.hpp"

#include <windows.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <io.h>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace vadelclip {

// The channel alone, on descriptors of this process. The acceptance tests test it in the tool.

namespace {

constexpr int channelDescriptor = 3;

/// Makes an open descriptor the channel for its lifetime. No test uses this number for anything else.
class ChannelDescriptor {
public:
    explicit ChannelDescriptor(int descriptor) {
        if (descriptor != channelDescriptor) {
            EXPECT_EQ(0, _dup2(descriptor, channelDescriptor));
            _close(descriptor);
        }
    }
    ChannelDescriptor(const ChannelDescriptor&) = delete;
    ChannelDescriptor& operator=(const ChannelDescriptor&) = delete;
    ~ChannelDescriptor() { _close(channelDescriptor); }
};

/// Opens a file for writing, with further flags.
int openFile(const std::string& path, int flags) {
    return _open(path.c_str(), _O_WRONLY | _O_CREAT | flags, _S_IREAD | _S_IWRITE);
}

/// Returns what a channel on a descriptor with these flags writes into the file.
std::string sent(const std::string& path, int flags, const std::vector<std::string>& lines) {
    {
        const ChannelDescriptor descriptor(openFile(path, flags));
        MessageChannel channel;
        channel.open();
        EXPECT_TRUE(channel.isOpen());
        for (const std::string& line : lines) {
            channel.send(line);
        }
        EXPECT_TRUE(channel.isOpen());
        channel.close();
        EXPECT_FALSE(channel.isOpen());
    }
    return readFile(path);
}

struct Pipe {
    HANDLE reading = nullptr;
    int writing = -1; ///< Descriptor.
};

/// Opens a pipe with the smallest buffer that preserves the boundaries of writes.
Pipe openPacketPipe(const std::string& name) {
    const std::string path = "\\\\.\\pipe\\vadelclip-" + name + "-" + std::to_string(GetCurrentProcessId());
    const HANDLE reading =
        CreateNamedPipeA(path.c_str(), PIPE_ACCESS_INBOUND, PIPE_TYPE_MESSAGE | PIPE_READMODE_MESSAGE | PIPE_WAIT, 1, 0,
                         4096, 0, nullptr);
    EXPECT_NE(INVALID_HANDLE_VALUE, reading);
    return {reading, _open(path.c_str(), _O_WRONLY | _O_BINARY)};
}

/// Reads until the last writer has closed the pipe. Appends "|" after the bytes of each write.
std::string readPackets(HANDLE reading) {
    std::string result;
    std::string block(1 << 20, '\0');
    DWORD count = 0;
    while (ReadFile(reading, block.data(), static_cast<DWORD>(block.size()), &count, nullptr)) {
        result += block.substr(0, count) + "|";
    }
    return result;
}

bool isInherited(int descriptor) {
    DWORD flags = 0;
    EXPECT_TRUE(GetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), &flags));
    return (flags & HANDLE_FLAG_INHERIT) != 0;
}

} // namespace

TEST(MessageChannel, endsLinesInALineFeedInEveryMode) {
    const TemporaryDirectory directory;
    EXPECT_EQ("a\nb\n", sent(directory.pathOf("binary"), _O_BINARY, {"a\n", "b\n"}));
    EXPECT_EQ("a\nb\n", sent(directory.pathOf("text"), _O_TEXT, {"a\n", "b\n"}));
}

TEST(MessageChannel, appendsToAFileOpenedForAppending) {
    const TemporaryDirectory directory;
    EXPECT_EQ("earlier\na\n", sent(directory.write("file", "earlier\n"), _O_BINARY | _O_APPEND, {"a\n"}));
}

TEST(MessageChannel, writesNothingToAClosedDescriptor) {
    _close(channelDescriptor);
    MessageChannel channel;
    channel.open();
    EXPECT_FALSE(channel.isOpen());
    channel.send("must not arrive\n");
    channel.close();
}

TEST(MessageChannel, writesNothingToAReadOnlyDescriptor) {
    const TemporaryDirectory directory;
    const std::string path = directory.write("file", "content");
    {
        const ChannelDescriptor descriptor(_open(path.c_str(), _O_RDONLY | _O_BINARY));
        MessageChannel channel;
        channel.open();
        channel.send("must not arrive\n");
        EXPECT_FALSE(channel.isOpen());
    }
    EXPECT_EQ("content", readFile(path));
}

TEST(MessageChannel, noFileOfTheToolBecomesTheChannel) {
    const TemporaryDirectory directory;
    const std::string path = directory.pathOf("channel");
    {
        const ChannelDescriptor descriptor(openFile(path, _O_BINARY));
        MessageChannel channel;
        channel.open();
        const int other = openFile(directory.pathOf("other"), _O_BINARY);
        _dup2(other, channelDescriptor);
        _close(other);
        channel.send("still there\n");
        channel.close();
    }
    EXPECT_EQ("still there\n", readFile(path));
    EXPECT_EQ("", readFile(directory.pathOf("other")));
}

TEST(MessageChannel, noProgramInheritsTheChannel) {
    const TemporaryDirectory directory;
    const ChannelDescriptor descriptor(openFile(directory.pathOf("channel"), _O_BINARY));
    // The lowest free number, which the channel will use.
    const int expected = _dup(channelDescriptor);
    EXPECT_TRUE(isInherited(expected));
    _close(expected);
    MessageChannel channel;
    channel.open();
    EXPECT_FALSE(isInherited(expected));
    EXPECT_TRUE(isInherited(channelDescriptor));
    channel.close();
}

TEST(MessageChannel, writesEachLineAtOnce) {
    const Pipe pipe = openPacketPipe("packets");
    std::string received;
    std::thread reader([&] { received = readPackets(pipe.reading); });
    {
        const ChannelDescriptor descriptor(pipe.writing);
        MessageChannel channel;
        channel.open();
        channel.send("a\n");
        channel.send(std::string(20000, 'b') + "\n");
        channel.send("c\n");
        channel.close();
    }
    reader.join();
    CloseHandle(pipe.reading);
    EXPECT_TRUE("a\n|" + std::string(20000, 'b') + "\n|c\n|" == received)
        << received.size() << " bytes, the first of them " << received.substr(0, 20);
}

TEST(MessageChannel, waitsForASlowReader) {
    const Pipe pipe = openPacketPipe("slow");
    std::string received;
    std::thread reader([&] {
        // The pipe is full after this time.
        Sleep(200);
        received = readPackets(pipe.reading);
    });
    std::string expected;
    {
        const ChannelDescriptor descriptor(pipe.writing);
        MessageChannel channel;
        channel.open();
        for (int i = 0; i < 200; ++i) {
            const std::string line = std::to_string(i) + std::string(5000, 'a') + "\n";
            channel.send(line);
            expected += line + "|";
        }
        channel.close();
    }
    reader.join();
    CloseHandle(pipe.reading);
    EXPECT_TRUE(expected == received) << received.size() << " bytes of " << expected.size();
}

TEST(MessageChannel, missingReaderSilencesTheChannelForGood) {
    const Pipe pipe = openPacketPipe("vanished");
    const ChannelDescriptor descriptor(pipe.writing);
    MessageChannel channel;
    channel.open();
    CloseHandle(pipe.reading);
    channel.send("a\n");
    EXPECT_FALSE(channel.isOpen());
    channel.send("b\n");
    EXPECT_FALSE(channel.isOpen());
}

} // namespace vadelclip
