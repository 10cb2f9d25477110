/// \file
/// Writing to Vadelwatch's own standard output, standard error and log, whose readers may be slow, stop reading for good
/// (a terminal held with Ctrl-S), or go away at any time.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vadelwatch {

/// A descriptor and the text that has found no room in it yet. From the first write that fails on, every text is dropped.
class OwnOutput {
public:
    /// The descriptor is not closed here. -1 drops everything.
    explicit OwnOutput(int outputDescriptor) : descriptor(outputDescriptor) {}

    /// Takes a text, to be written later.
    void keep(std::string_view text);

    /// Writes of what has been kept as much as there is room for. What takes its time is interrupted, whether or not
    /// the descriptor blocks: the caller is free again within a small part of a second. See `guardOwnOutput`.
    void writeWhatFits();

    /// Writes what has been kept, and the text behind it. A slow reader is waited for as long as it takes, so signals
    /// must be able to end the process.
    void write(std::string_view text);

    /// How many bytes wait for room.
    std::size_t waitingBytes() const { return kept.size() - done; }

    /// Becomes writable, in the sense of poll, when there is room for what waits; -1 if nothing waits.
    int waitingDescriptor() const { return waitingBytes() > 0 ? descriptor : -1; }

    /// The errno of the first write that failed, 0 if none did.
    int failure() const { return firstError; }

    /// Whether that was because nobody reads any more, which is no fault of anybody. A full disk is none of these.
    bool readerHasGone() const;

private:
    bool writeOnce();

    int descriptor;
    std::string kept;     ///< What is to be written,
    std::size_t done = 0; ///< and how much of that has been.
    int firstError = 0;
};

/// Opens closed standard descriptors on the null device, makes writing to a vanished reader an error instead of the end
/// of the process, and prepares SIGALRM for `writeWhatFits`. Before any other file is opened.
void guardOwnOutput();

} // namespace vadelwatch
