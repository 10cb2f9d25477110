#include "watch/run/run_watcher.hpp"

#include "watch/show/messages.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <optional>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace vadelwatch {

namespace {

constexpr std::size_t pipeBlockSize = 65536;

/// The number of console blocks that are read before the messages of one block. They hold more than a pipe, so they
/// contain every console line that was written before one of these messages.
constexpr int consoleBlocks = 2;

/// When this many bytes of our own output are not written yet, Vadelwatch stops reading and the tool blocks. The limit
/// is higher after a signal, because the tool may report something before it ends.
constexpr std::size_t maxBacklog = 65536;
constexpr std::size_t maxBacklogAfterSignal = std::size_t{16} << 20U;

/// Keeps the clock in the bar moving.
constexpr int pollMilliseconds = 100;

/// Shorter, because the tool may be blocked until our own output is written.
constexpr int backlogMilliseconds = 5;

} // namespace

RunWatcher::Source::Source(int pipe) : descriptor(pipe), block(pipeBlockSize) {}

std::string_view RunWatcher::Source::readBlock() {
    if (!open) {
        return {};
    }
    // A read of 0 bytes is end of stream, also when `readable` is 0.
    const ssize_t size = TEMP_FAILURE_RETRY(read(descriptor, block.data(), std::min(block.size(), readable)));
    if (size > 0) {
        readable -= static_cast<std::size_t>(size);
        return {block.data(), static_cast<std::size_t>(size)};
    }
    open = size == -1 && errno == EAGAIN;
    return {};
}

void RunWatcher::Source::endAfterWrittenBytes() {
    int bytes = 0;
    ioctl(descriptor, FIONREAD, &bytes);
    readable = static_cast<std::size_t>(bytes);
}

RunWatcher::RunWatcher(ToolProcess& toolProcess, ProgressDisplay& progressDisplay, OwnOutput& displayOutput,
                       OwnOutput& messageLog, const NodeLineCount& nodeLineCount, const std::string& nodeDirectory)
    : tool(toolProcess), display(progressDisplay), shown(displayOutput), log(messageLog), lineCount(nodeLineCount),
      directory(nodeDirectory), channel(tool.channel()), console(tool.console()) {}

RunRecord RunWatcher::watch(const RunSignals& signals) {
    while (!ended) {
        showProgress();
        display.flush();
        waitForEvent(signals);
        takeSignals(signals);
        // `readMessages` reads the console too.
        if (mayRead() && !readMessages()) {
            readConsole();
        }
    }
    readTheRest();
    console.lines.finish([this](std::string_view line) { takeConsoleLine(line); });
    channel.lines.finish([this](std::string_view line) { takeMessageLine(line); });
    record.seconds = secondsSinceStart();
    display.clear();
    display.flush();
    return record;
}

bool RunWatcher::mayRead() const {
    const std::size_t limit = record.interruptedBy == 0 ? maxBacklog : maxBacklogAfterSignal;
    return shown.waitingBytes() + log.waitingBytes() < limit;
}

void RunWatcher::waitForEvent(const RunSignals& signals) {
    const bool reading = mayRead();
    // `poll` ignores negative descriptors.
    std::array<pollfd, 3> sources{{{signals.descriptor(), POLLIN, 0},
                                   {reading && channel.open ? channel.descriptor : -1, POLLIN, 0},
                                   {reading && console.open ? console.descriptor : -1, POLLIN, 0}}};
    poll(sources.data(), sources.size(), reading ? pollMilliseconds : backlogMilliseconds);
}

void RunWatcher::takeSignals(const RunSignals& signals) {
    // Called before the signals are read: Ctrl-C sends a signal to both processes, so if it has ended the tool, our signal
    // has arrived too.
    std::optional<ToolEnd> end = tool.pollEnd();
    for (const int number : signals.takeEndingSignals()) {
        const bool isFurther = record.interruptedBy != 0;
        if (isFurther && !end) {
            // The tool may have ended before this further signal was sent.
            end = tool.pollEnd();
        }
        if (isFurther && end) {
            // The tool cannot take it. It ends this process as soon as signals are no longer blocked.
            static_cast<void>(raise(number));
        } else {
            record.interruptedBy = number;
            tool.forward(number);
        }
    }
    if (end) {
        record.end = *end;
        ended = true;
    }
}

/// @return false if there was nothing to read.
bool RunWatcher::readMessages() {
    const std::string_view bytes = channel.readBlock();
    // The tool writes the console line of an error before its message, so the line can be read now and is shown first.
    for (int i = 0; i < consoleBlocks && readConsole(); ++i) {
    }
    channel.lines.feed(bytes, [this](std::string_view line) { takeMessageLine(line); });
    progress.endOfReports(secondsSinceStart());
    return !bytes.empty();
}

/// @return false if there was nothing to read.
bool RunWatcher::readConsole() {
    const std::string_view bytes = console.readBlock();
    console.lines.feed(bytes, [this](std::string_view line) { takeConsoleLine(line); });
    return !bytes.empty();
}

/// After the end of the tool: reads only the bytes that are in the pipes now. A child of the tool may keep the pipes
/// open and write to them for ever.
void RunWatcher::readTheRest() {
    channel.endAfterWrittenBytes();
    console.endAfterWrittenBytes();
    bool more = true;
    while (more) {
        more = readMessages();
        more = readConsole() || more;
        display.flush();
    }
}

void RunWatcher::takeConsoleLine(std::string_view line) {
    showLine(line);
    echo.shown(line);
}

/// Shows a line of the tool. A terminal would obey control characters in it, a file keeps them.
void RunWatcher::showLine(std::string_view line) {
    display.showLine(onTerminal ? shownName(line) : std::string(line));
}

void RunWatcher::takeMessageLine(std::string_view line) {
    const Message message = parseMessage(line);
    log.keep(logLine(secondsSinceStart(), line, message));
    switch (message.kind) {
    case MessageKind::error:
        record.errors.push_back(message.text);
        if (!echo.repeats(message.text)) {
            showLine(message.text);
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
        showLine(line);
        break;
    }
}

/// Draws nothing while earlier output is not written yet, because old progress is of no use.
void RunWatcher::showProgress() {
    const double seconds = secondsSinceStart();
    if (shown.waitingBytes() == 0 && display.isDue(seconds)) {
        display.update(figures(), seconds);
    }
}

ProgressFigures RunWatcher::figures() const {
    ProgressFigures figures;
    figures.elapsedSeconds = secondsSinceStart();
    figures.files = lineCount.files();
    if (record.passes == 0 && !progress.hasReports()) {
        figures.phase = translateMessage("counting");
        if (lineCount.bytes() > 0) {
            // The tool reads each node file once to count its lines, and sends no messages about that.
            const double share = static_cast<double>(tool.bytesRead()) / static_cast<double>(lineCount.bytes());
            figures.percent = 100.0 * std::min(1.0, share);
        }
        return figures;
    }
    figures.phase = translateMessage("clipping");
    figures.file = record.passes;
    figures.fileName = tool.openFileIn(directory);
    progress.addTo(figures, figures.elapsedSeconds, lineCount.nodeLines(), lineCount.bytes());
    return figures;
}

double RunWatcher::secondsSinceStart() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - startTime).count();
}

} // namespace vadelwatch
