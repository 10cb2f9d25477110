/// \file
/// Finds the lines of a node file that are to be kept.
#pragma once

#include "boundary/index/boundary_index.hpp"
#include "text/line_reader.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <string_view>

namespace vadelclip {

/// Reads node lines and compares them with a boundary. It reads a few lines ahead of its caller, so that the accesses to
/// the memory of the boundary overlap.
///
/// The caller cannot see that. The filter reads ahead only lines that are in the buffer of the reader already, so it
/// never waits for a line before the caller needs it. An exception is thrown when the caller needs the line that
/// caused it.
class NodeLineFilter {
public:
    /// @param input_    the header has been read. From now on only the filter reads from it.
    /// @param boundary_ must outlive the filter, as `input_` must.
    NodeLineFilter(LineReader& input_, char separator_, const BoundaryIndex& boundary_)
        : input(input_), boundary(boundary_), separator(separator_) {}

    /// Reads the next line.
    ///
    /// @param number of the line: 0 in the first call, 1 in the second, and so on.
    /// @return the line with a line feed if it is to be kept, otherwise an empty view. A line that does not parse is
    ///         dropped silently, like a point outside. The view is valid until the next call.
    std::string_view lineIfKept(std::int64_t number) {
        if (number == end) {
            readAhead();
        }
        if (number != lines[next].number) {
            return {};
        }
        const std::size_t place = next++;
        return boundary.anyContains(*cells[place], points[place]) ? lines[place].text : std::string_view();
    }

private:
    struct Line {
        std::int64_t number;
        std::string_view text;
    };
    static constexpr std::size_t maxLines = 16;
    static constexpr Line noLine{-1, {}};

    void readAhead();

    LineReader& input;
    const BoundaryIndex& boundary;
    char separator;
    std::int64_t end = 0;                           ///< The number of lines that have been read.
    std::exception_ptr failure;                     ///< What reading line `end` has thrown.
    std::array<Line, maxLines + 1> lines{};         ///< Lines read ahead whose points are in the extent, then `noLine`.
    std::array<Point2D, maxLines> points{};         ///< The points of `lines`.
    std::array<const CellEntry*, maxLines> cells{}; ///< The cells of `points`.
    std::size_t next = 0;                           ///< The next line of `lines`.
};

} // namespace vadelclip
