/// \file
/// Finds the lines of a node file that are to be kept.
#pragma once

#include "boundary/index/boundary_index.hpp"
#include "text/line_reader.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vadelclip {

/// Reads node lines and compares them with a boundary. It is a few lines ahead of its caller, so that the boundary
/// answers for many points at once. It never waits for a line before the caller needs it: it is ahead only in lines
/// that are in the buffer of the reader already.
class NodeLineFilter {
public:
    /// @param input_    the header has been read. The filter and not its caller reads from it from now on.
    /// @param boundary_ must outlive the filter, as `input_` must.
    NodeLineFilter(LineReader& input_, char separator_, const BoundaryIndex& boundary_)
        : input(input_), boundary(boundary_), separator(separator_) {}

    /// Reads the next line.
    ///
    /// @param number of the line, from 0. Each line must be asked for, in order.
    /// @return the line with a line feed if it is to be kept, otherwise an empty view. A line that does not parse is
    ///         dropped silently, like a point outside. The view is valid until the next call.
    std::string_view lineIfKept(std::int64_t number) {
        if (number == end) {
            readAhead();
        }
        if (number != kept[next].number) {
            return {};
        }
        return kept[next++].text;
    }

private:
    struct Line {
        std::int64_t number;
        std::string_view text;
    };
    static constexpr Line noLine{-1, {}};

    void readAhead();

    LineReader& input;
    const BoundaryIndex& boundary;
    char separator;
    std::int64_t end = 0;                                  ///< The number of lines that have been read.
    std::array<Line, BoundaryIndex::maxPoints + 1> kept{}; ///< Lines read ahead that are to be kept, then `noLine`.
    std::size_t next = 0;                                  ///< The next line of `kept`.
};

} // namespace vadelclip
