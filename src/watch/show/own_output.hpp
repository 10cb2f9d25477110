/// \file
/// Writing to Vadelwatch's own standard output, standard error and log. Their readers may be slow, stop reading (a
/// terminal held with Ctrl-S) or disappear at any time.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace vadelwatch {

/// A descriptor and the text that is not written to it yet. After the first write that fails, every text is dropped.
class OwnOutput {
public:
    /// Does not take ownership of the descriptor. Without one every text is dropped.
    explicit OwnOutput(int outputDescriptor = -1) : descriptor(outputDescriptor) {}
    OwnOutput(const OwnOutput&) = delete;
    OwnOutput& operator=(const OwnOutput&) = delete;

    /// Waits until everything is written.
    ~OwnOutput();

    /// Creates or empties a file, and writes to it from now on.
    ///
    /// @return 0, or an errno if it cannot be opened.
    int open(const std::string& path);

    /// Waits until everything is written, and closes the file of `open`, if there is one.
    ///
    /// @return 0, or the errno of the first write or of the close that failed.
    int close();

    /// Appends a text and returns at once. A thread writes it.
    ///
    /// The first text starts the thread, which inherits the signal mask of the caller: signals that are blocked there
    /// never reach the thread.
    void keep(std::string_view text);

    /// Writes everything that is kept, then the text. Waits for a slow reader, so signals must be able to end the
    /// process.
    void write(std::string_view text);

    /// Returns the number of bytes that are kept and not written yet.
    std::size_t waitingBytes() const;

    /// Returns the errno of the first write that failed, 0 if none did.
    int failure() const;

    /// Returns true if the first write failed because the reader has gone. A full disk is another failure.
    bool readerHasGone() const;

private:
    void writeKeptTexts();

    int descriptor;
    bool isOwnFile = false;
    mutable std::mutex mutex;        ///< Protects all members below, except `thread`.
    std::condition_variable changed; ///< Notified after every change.
    std::string kept;                ///< The text that the thread has not begun to write.
    std::size_t bytesInWrite = 0;    ///< Length of the text that the thread is writing.
    int firstError = 0;
    bool ending = false;
    std::thread thread;
};

} // namespace vadelwatch
