#include "text/line_reader.hpp"

#include <ios>

namespace vadelclip {

namespace {

/// A file buffer reads one byte less than its size.
constexpr std::size_t bufferSize = 65536 + 1;

} // namespace

LineReader::LineReader(const std::string& path) : block(bufferSize), stream(&buffer) {
    buffer.pubsetbuf(block.data(), static_cast<std::streamsize>(block.size()));
    if (buffer.open(path, std::ios_base::in) == nullptr) {
        stream.setstate(std::ios_base::failbit);
    }
}

std::string_view LineReader::nextLine() {
    if (!takeBufferedLine()) {
        collectLine();
    }
    return line();
}

std::string_view LineReader::lineWithLineFeed() {
    // The byte after the line is always writable: it is its line feed, its dropped carriage return, or the line feed
    // that `collectLine` appends.
    lineStart[lineLength] = '\n';
    return {lineStart, lineLength + 1};
}

void LineReader::close() {
    buffer.close();
}

/// Reads more bytes when the buffer is used up. After a failure or end of file it does not try again.
bool LineReader::refill() {
    if (!stream.good()) {
        return false;
    }
    stream.peek();
    return stream.good();
}

/// Assembles a line that does not end in the buffer.
void LineReader::collectLine() {
    collected.clear();
    bool ended = false;
    while (!ended) {
        collected.append(buffer.position(), buffer.limit());
        buffer.setPosition(buffer.limit());
        if (!refill()) {
            break;
        }
        if (char* const lineFeed = findLineFeed()) {
            collected.append(buffer.position(), lineFeed);
            buffer.setPosition(lineFeed + 1);
            collected.resize(collected.size() - carriageReturnsToDrop(collected));
            ended = true;
        }
    }
    lineLength = collected.size();
    collected.push_back('\n');
    lineStart = collected.data();
}

} // namespace vadelclip
