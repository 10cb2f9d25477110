/// \file
/// Identifies the version of a file by its size and time. POSIX only.
#pragma once

#include <cstdint>
#include <sys/stat.h>

namespace vadelclip {

/// Size and time of a file at one moment.
struct FileState {
    std::uint64_t size = 0;
    std::int64_t modified = 0; ///< Nanoseconds since 1970.

    bool operator==(const FileState&) const = default;
};

inline FileState stateOf(const struct stat& status) {
    constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;
    return {static_cast<std::uint64_t>(status.st_size),
            status.st_mtim.tv_sec * nanosecondsPerSecond + status.st_mtim.tv_nsec};
}

} // namespace vadelclip
