/// \file
/// Cuts rings into rows, once per run.
#pragma once

#include "boundary/index/ring_rows.hpp"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vadelclip {

/// Adds rings to a `RingRows`. Time and memory are linear in the number of vertices.
class RingRowsBuilder {
public:
    /// @param fewestRows_ that a ring gets if its edges are not too tall for it, however few vertices it has.
    RingRowsBuilder(RingRows& target_, double fewestRows_) : target(target_), fewestRows(fewestRows_) {}

    /// Adds a ring of three or more vertices, each listed once, without holes.
    ///
    /// @param originX where the chains' x is counted from; at most the smallest x of the ring.
    /// @return nothing, with nothing added, for a ring that is flat or too large or small for rows in doubles.
    std::optional<RingInRows> add(const std::vector<Point2D>& ring, double originX);

private:
    /// A chain while it grows.
    struct GrowingChain {
        std::uint32_t row;
        std::uint32_t firstVertex;
        std::uint32_t edgeCount;
        double minX;
        double maxX;
    };

    struct Extent {
        double minX;
        double minY;
        double maxX;
        double maxY;
        double crossingsPerHeight; ///< How many edges a height meets on average; likewise for the other.
        double crossingsPerWidth;
    };

    static Extent measure(const std::vector<Point2D>& ring);
    void chooseRows(std::size_t vertexCount, const Extent& extent);
    void findRows(const std::vector<Point2D>& ring);
    void addEdge(const std::vector<Point2D>& ring, std::uint32_t edge);
    GrowingChain& chainFor(std::uint32_t row, std::uint32_t edge);
    void joinAcrossStart(std::uint32_t ringSize);
    RingInRows store(const std::vector<Point2D>& ring, double originX);
    RingChain finished(const GrowingChain& chain, double originX, std::uint32_t ringSize) const;
    ChainList storeRow(std::span<const RingChain> rowChains);
    ChainList storeColumns(std::span<const RingChain> rowChains, const UniformCells& cells);

    RingRows& target;
    double fewestRows;
    UniformCells rows;
    std::uint32_t longestMergedChain = 0; ///< In edges; chains with a gap between them are joined up to here.
    std::vector<double> rowLimits;        ///< rowLimits[r] is the smallest double of row r; 0 is not used.
    std::vector<std::uint32_t> vertexRows;
    std::vector<std::uint32_t> lastChains; ///< For each row its last chain so far, as 1-based number; 0 for none.
    std::vector<std::uint32_t> firstChains;
    std::vector<GrowingChain> growing;
};

} // namespace vadelclip
