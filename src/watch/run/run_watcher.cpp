#include "watch/run/run_watcher.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace vadelwatch {

namespace {

constexpr std::size_t pipeBlockSize = 65536;

/// At most this much of the console goes before the messages of a block: more than a pipe holds, so every line that was
/// written before one of these messages is among it.
constexpr int consoleBlocks = 2;

/// How much may wait for room in our own output before the tool has to wait too. Once it has been asked to end it is
/// listened to for longer, since it may want to say something first.
constexpr std::size_t usualBacklog = 65536;
constexpr std::size_t lastBacklog = std::size_t{16} << 20U;

/// Keeps the clock in the bar moving.
constexpr int pollMilliseconds = 100;

/// Soon enough after our own output has been written: the tool waits meanwhile.
constexpr int backlogMilliseconds = 5;

} // namespace

RunWatcher::Source::Source(int pipe) : descriptor(pipe), block(pipeBlockSize) {}

std::string_view RunWatcher::Source::readBlock() {
    if (!open) {
        return {};
    }
    // Nothing is left to be read: that looks like the end of the stream, and is taken for it.
    ssize_t size = 0;
    do {
        size = read(descriptor, block.data(), std::min(block.size(), readable));
    } while (size == -1 && errno == EINTR);
    if (size > 0) {
        readable -= static_cast<std::size_t>(size);
        return {block.data(), static_cast<std::size_t>(size)};
    }
    if (size == 0 || errno != EAGAIN) {
        open = false;
    }
    return {};
}

void RunWatcher::Source::endBehindWhatIsThere() {
    int bytes = 0;
    ioctl(descriptor, FIONREAD, &bytes);
    readable = static_cast<std::size_t>(bytes);
}

RunWatcher::RunWatcher(ToolProcess& toolProcess, ProgressDisplay& progressDisplay, OwnOutput& displayOutput,
                       MessageLog& messageLog, const NodeLineCount& nodeLineCount)
    : tool(toolProcess), display(progressDisplay), shown(displayOutput), log(messageLog), lineCount(nodeLineCount),
      channel(tool.channel()), console(tool.console()) {}

RunRecord RunWatcher::watch(const RunSignals& signals) {
    while (!ended) {
        showProgress();
        display.flush();
        waitForSomething(signals);
        takeSignals(signals);
        // Messages and their console lines; without messages, the console alone.
        if (mayRead() && !readMessages()) {
            readConsole();
        }
    }
    readTheRest();
    finishLines();
    record.seconds = secondsSinceStart();
    display.update(figures(), record.seconds);
    display.clear();
    display.flush();
    return record;
}

bool RunWatcher::mayRead() const {
    const std::size_t limit = record.interruptedBy == 0 ? usualBacklog : lastBacklog;
    return shown.waitingBytes() + log.waitingBytes() < limit;
}

void RunWatcher::waitForSomething(const RunSignals& signals) {
    const bool reading = mayRead();
    // `poll` ignores negative descriptors.
    std::array<pollfd, 3> sources{{{signals.descriptor(), POLLIN, 0},
                                   {reading && channel.open ? channel.descriptor : -1, POLLIN, 0},
                                   {reading && console.open ? console.descriptor : -1, POLLIN, 0}}};
    poll(sources.data(), sources.size(), reading ? pollMilliseconds : backlogMilliseconds);
}

void RunWatcher::takeSignals(const RunSignals& signals) {
    // Asked before the signals are: Ctrl-C goes to the tool as well, and by the time it has ended of that, ours is there.
    const std::optional<ToolEnd> end = tool.pollEnd();
    for (const int number : signals.take()) {
        if (asksForEnd(number)) {
            record.interruptedBy = number;
            tool.forward(number);
        }
        // SIGWINCH is for the wait to end: the next drawing asks for the width.
    }
    if (end) {
        record.end = *end;
        ended = true;
    }
}

/// @return whether there was anything.
bool RunWatcher::readMessages() {
    const std::string_view bytes = channel.readBlock();
    // The console line of an error is written before its message. So it is there by now, and is shown first.
    for (int i = 0; i < consoleBlocks && readConsole(); ++i) {
    }
    channel.lines.feed(bytes, [this](std::string_view line) { takeMessageLine(line); });
    progress.endOfReports(secondsSinceStart());
    return !bytes.empty();
}

/// @return whether there was anything.
bool RunWatcher::readConsole() {
    const std::string_view bytes = console.readBlock();
    console.lines.feed(bytes, [this](std::string_view line) { takeConsoleLine(line); });
    return !bytes.empty();
}

/// After the end of the tool: only what is there now. A process that the tool left behind may hold the pipes open, and
/// write into them, for ever.
void RunWatcher::readTheRest() {
    channel.endBehindWhatIsThere();
    console.endBehindWhatIsThere();
    bool more = true;
    while (more) {
        more = readMessages();
        more = readConsole() || more;
        display.flush();
    }
}

void RunWatcher::finishLines() {
    console.lines.finish([this](std::string_view line) { takeConsoleLine(line); });
    channel.lines.finish([this](std::string_view line) { takeMessageLine(line); });
}

void RunWatcher::takeConsoleLine(std::string_view line) {
    display.showLine(line);
    echo.shown(line);
}

void RunWatcher::takeMessageLine(std::string_view line) {
    const Message message = parseMessage(line);
    log.add(secondsSinceStart(), line, message);
    takeMessage(message, line);
}

void RunWatcher::takeMessage(const Message& message, std::string_view line) {
    switch (message.kind) {
    case MessageKind::error:
        record.errors.push_back(message.text);
        if (!echo.repeats(message.text)) {
            display.showLine(message.text);
        }
        break;
    case MessageKind::progress:
        progress.report(message.percent);
        showProgress();
        break;
    case MessageKind::state:
        ++record.passes;
        break;
    case MessageKind::failed:
    case MessageKind::finish:
        record.closingText = message.text;
        break;
    case MessageKind::other:
        break;
    case MessageKind::unreadable:
        display.showLine(line);
        break;
    }
}

/// Not where earlier output waits for room: progress is worth nothing when it is no longer new.
void RunWatcher::showProgress() {
    if (shown.waitingBytes() == 0) {
        display.update(figures(), secondsSinceStart());
    }
}

ProgressFigures RunWatcher::figures() const {
    return progress.figures(secondsSinceStart(), lineCount.nodeLines());
}

double RunWatcher::secondsSinceStart() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - startTime).count();
}

} // namespace vadelwatch
