#include "boundary/index/ring_rows_builder.hpp"

#include "boundary/ring_walk.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace vadelclip {

namespace {

/// Chains per vertex that the rows of a ring may hold, apart from those of vertices at the rows' limits.
constexpr double chainsPerVertex = 2.0;

/// The same where chains are merged.
constexpr double mergedChainsPerVertex = 10.0;

/// Finer rows would only take more memory: by then a point hardly ever lies on a chain's range.
constexpr double mostRows = 8192.0;

constexpr double mostMergedEdges = 64.0;

/// Rows with more chains than this get columns.
constexpr std::size_t mostChainsWithoutColumns = 8;

/// Chains that a row's columns may list for each chain of the row.
constexpr std::uint64_t listedPerChain = 4;

float roundedDown(double value) {
    constexpr double largest = std::numeric_limits<float>::max();
    const auto rounded = static_cast<float>(std::clamp(value, -largest, largest));
    if (value < -largest) {
        return -std::numeric_limits<float>::infinity();
    }
    return static_cast<double>(rounded) > value ? std::nextafter(rounded, -std::numeric_limits<float>::infinity())
                                                : rounded;
}

float roundedUp(double value) {
    return -roundedDown(-value);
}

/// What an edge takes up of the line at one height, as `RingWalk` may see it.
struct XRange {
    double minX;
    double maxX;
};

XRange unite(XRange a, XRange b) {
    return {std::min(a.minX, b.minX), std::max(a.maxX, b.maxX)};
}

/// The range of all xi of an edge between the heights at which xi is `firstXi` and `secondXi`.
///
/// The walk compares x with both ends before it computes xi, so a range beyond the ends is brought back to them.
XRange rangeBetween(Point2D from, Point2D to, double firstXi, double secondXi) {
    const double smallerX = std::min(from.x, to.x);
    const double largerX = std::max(from.x, to.x);
    if (!std::isfinite(firstXi) || !std::isfinite(secondXi)) {
        return {smallerX, largerX};
    }
    return {std::clamp(std::min(firstXi, secondXi), smallerX, largerX),
            std::clamp(std::max(firstXi, secondXi), smallerX, largerX)};
}

} // namespace

std::optional<RingInRows> RingRowsBuilder::add(const std::vector<Point2D>& ring, double originX) {
    const Extent extent = measure(ring);
    chooseRows(ring.size(), extent);
    if (rows.count() < 2) {
        return std::nullopt;
    }
    findRows(ring);
    const auto ringSize = static_cast<std::uint32_t>(ring.size());
    for (std::uint32_t edge = 0; edge < ringSize; ++edge) {
        addEdge(ring, edge);
    }
    joinAcrossStart(ringSize);
    return store(ring, originX);
}

RingRowsBuilder::Extent RingRowsBuilder::measure(const std::vector<Point2D>& ring) {
    Extent extent{ring[0].x, ring[0].y, ring[0].x, ring[0].y, 0.0, 0.0};
    double travelledX = 0.0;
    double travelledY = 0.0;
    Point2D previous = ring.back();
    for (const Point2D point : ring) {
        extent.minX = std::min(extent.minX, point.x);
        extent.minY = std::min(extent.minY, point.y);
        extent.maxX = std::max(extent.maxX, point.x);
        extent.maxY = std::max(extent.maxY, point.y);
        travelledX += std::abs(point.x - previous.x);
        travelledY += std::abs(point.y - previous.y);
        previous = point;
    }
    extent.crossingsPerHeight = travelledY / (extent.maxY - extent.minY);
    extent.crossingsPerWidth = travelledX / (extent.maxX - extent.minX);
    return extent;
}

/// As many rows as the chains' memory allows. Where edges are so tall that this leaves few rows, neighbouring chains
/// are merged: then there is room for more rows, and a chain's range of x gets smaller with the rows, but more
/// edges are walked in each chain. The best merging balances the two.
void RingRowsBuilder::chooseRows(std::size_t vertexCount, const Extent& extent) {
    const double vertices = std::max(static_cast<double>(vertexCount), fewestRows);
    const double room = std::max(chainsPerVertex * vertices / extent.crossingsPerHeight, 2.0);
    double rowCount = std::min(std::max(vertices / 2.0, fewestRows), room);
    longestMergedChain = 0;
    // From here on the best merged chain has two edges or more.
    if (extent.crossingsPerWidth >= 8.0 * room) {
        // A merged chain ends after so many vertices, whether they meet the row or not.
        const double mergedRoom = std::min(room, mergedChainsPerVertex);
        const double merged = std::min(std::sqrt(extent.crossingsPerWidth / (2.0 * mergedRoom)), mostMergedEdges);
        longestMergedChain = static_cast<std::uint32_t>(merged);
        rowCount = mergedRoom * merged;
    }
    // A quotient that is no number means an extent that is none; the cells find out.
    rows =
        UniformCells(extent.minY, extent.maxY, static_cast<std::uint32_t>(rowCount < mostRows ? rowCount : mostRows));
}

void RingRowsBuilder::findRows(const std::vector<Point2D>& ring) {
    rowLimits.assign(rows.count(), 0.0);
    for (std::uint32_t row = 1; row < rows.count(); ++row) {
        rowLimits[row] = rows.firstCoordinateOf(row);
    }
    vertexRows.clear();
    for (const Point2D point : ring) {
        vertexRows.push_back(rows.cellOf(point.y));
    }
    lastChains.assign(rows.count(), 0);
    firstChains.assign(rows.count(), 0);
    growing.clear();
}

/// Gives the chain that an edge belongs to in a row. An edge that begins inside the row goes on with the chain that has
/// led there. Any other may begin a new one; within the limit of merging it is added to the last one.
RingRowsBuilder::GrowingChain& RingRowsBuilder::chainFor(std::uint32_t row, std::uint32_t edge) {
    if (lastChains[row] != 0) {
        GrowingChain& last = growing[lastChains[row] - 1];
        const std::uint32_t edgesToHere = edge - last.firstVertex;
        if (vertexRows[edge] == row || edgesToHere < longestMergedChain) {
            last.edgeCount = edgesToHere + 1;
            return last;
        }
    }
    constexpr double infinity = std::numeric_limits<double>::infinity();
    growing.push_back({row, edge, 1, infinity, -infinity});
    lastChains[row] = static_cast<std::uint32_t>(growing.size());
    if (firstChains[row] == 0) {
        firstChains[row] = lastChains[row];
    }
    return growing.back();
}

void RingRowsBuilder::addEdge(const std::vector<Point2D>& ring, std::uint32_t edge) {
    const std::size_t next = edge + 1 == ring.size() ? 0 : edge + 1;
    const Point2D from = ring[edge];
    const Point2D to = ring[next];
    const auto [lowestRow, highestRow] = std::minmax(vertexRows[edge], vertexRows[next]);
    const bool flat = from.y == to.y;
    const double topY = std::max(from.y, to.y);
    double xi = flat ? from.x : crossingX(from, to, std::min(from.y, to.y));
    for (std::uint32_t row = lowestRow; row <= highestRow; ++row) {
        XRange range{xi, xi};
        if (!flat) {
            const double nextXi = crossingX(from, to, row == highestRow ? topY : rowLimits[row + 1]);
            range = rangeBetween(from, to, xi, nextXi);
            xi = nextXi;
        }
        // The edge's first vertex is the last one of the edge before, in the same chain if it lies in this row.
        if (vertexRows[next] == row) {
            range = unite(range, {to.x, to.x});
        }
        GrowingChain& chain = chainFor(row, edge);
        chain.minX = std::min(chain.minX, range.minX);
        chain.maxX = std::max(chain.maxX, range.maxX);
    }
}

/// The ring's first vertex lies in the middle of a chain of its own row, which has been cut there: puts the two ends
/// together.
void RingRowsBuilder::joinAcrossStart(std::uint32_t ringSize) {
    const std::uint32_t row = vertexRows.front();
    GrowingChain& first = growing[firstChains[row] - 1];
    GrowingChain& last = growing[lastChains[row] - 1];
    if (&first != &last) {
        last.edgeCount += first.edgeCount;
        last.minX = std::min(last.minX, first.minX);
        last.maxX = std::max(last.maxX, first.maxX);
        first = growing.back();
        growing.pop_back();
        return;
    }
    // One chain takes in the whole ring: let it begin and end at a vertex outside the row. There is one, since no row
    // holds both the lowest and the highest vertex.
    const auto outside =
        std::find_if(vertexRows.begin(), vertexRows.end(), [row](std::uint32_t vertexRow) { return vertexRow != row; });
    first.firstVertex = static_cast<std::uint32_t>(outside - vertexRows.begin());
    first.edgeCount = ringSize;
}

RingChain RingRowsBuilder::finished(const GrowingChain& chain, double originX, std::uint32_t ringSize) const {
    const std::uint32_t lastVertex = (chain.firstVertex + chain.edgeCount) % ringSize;
    const bool startsBelow = vertexRows[chain.firstVertex] < chain.row;
    const bool endsBelow = vertexRows[lastVertex] < chain.row;
    return {roundedDown(chain.minX - originX), roundedUp(chain.maxX - originX), chain.firstVertex,
            chain.edgeCount * 2 + (startsBelow != endsBelow ? 1U : 0U)};
}

RingInRows RingRowsBuilder::store(const std::vector<Point2D>& ring, double originX) {
    const auto ringSize = static_cast<std::uint32_t>(ring.size());
    const RingInRows result{rows, static_cast<std::uint32_t>(target.rows.size()),
                            static_cast<std::uint32_t>(target.rings.size())};
    target.rings.push_back({static_cast<std::uint32_t>(target.points.size()), ringSize});
    target.points.insert(target.points.end(), ring.begin(), ring.end());

    std::vector<std::vector<RingChain>::size_type> rowStarts(rows.count() + 1, 0);
    for (const GrowingChain& chain : growing) {
        ++rowStarts[chain.row + 1];
    }
    std::partial_sum(rowStarts.begin(), rowStarts.end(), rowStarts.begin());
    std::vector<RingChain> sorted(growing.size());
    auto positions = rowStarts;
    for (const GrowingChain& chain : growing) {
        sorted[positions[chain.row]++] = finished(chain, originX, ringSize);
    }
    for (std::uint32_t row = 0; row < rows.count(); ++row) {
        target.rows.push_back(storeRow(std::span(sorted).subspan(rowStarts[row], rowStarts[row + 1] - rowStarts[row])));
    }
    return result;
}

ChainList RingRowsBuilder::storeRow(std::span<const RingChain> rowChains) {
    if (rowChains.size() > mostChainsWithoutColumns) {
        double minX = rowChains.front().minX;
        double maxX = rowChains.front().maxX;
        for (const RingChain& chain : rowChains) {
            minX = std::min<double>(minX, chain.minX);
            maxX = std::max<double>(maxX, chain.maxX);
        }
        for (std::size_t count = rowChains.size(); count > 1; count /= 2) {
            const UniformCells cells(minX, maxX, static_cast<std::uint32_t>(count));
            std::uint64_t listed = 0;
            for (const RingChain& chain : rowChains) {
                listed += cells.cellOf(chain.maxX) - cells.cellOf(chain.minX) + 1;
            }
            // Columns that list nearly everything would only take memory.
            const bool shortLists = listed * 2 <= rowChains.size() * count;
            if (shortLists && listed <= listedPerChain * rowChains.size()) {
                return storeColumns(rowChains, cells);
            }
        }
    }
    const auto first = static_cast<std::uint32_t>(target.chains.size());
    target.chains.insert(target.chains.end(), rowChains.begin(), rowChains.end());
    return {first, static_cast<std::uint32_t>(rowChains.size()) * 4};
}

/// Each column lists the chains that reach into it and knows the crossings of those wholly right of it.
ChainList RingRowsBuilder::storeColumns(std::span<const RingChain> rowChains, const UniformCells& cells) {
    std::vector<std::uint32_t> counts(cells.count(), 0);
    std::vector<std::uint32_t> oddRight(cells.count() + 1, 0);
    for (const RingChain& chain : rowChains) {
        const std::uint32_t firstColumn = cells.cellOf(chain.minX);
        for (std::uint32_t column = firstColumn; column <= cells.cellOf(chain.maxX); ++column) {
            ++counts[column];
        }
        oddRight[firstColumn] ^= chain.crossing();
    }
    for (std::uint32_t column = cells.count(); column > 0; --column) {
        oddRight[column - 1] ^= oddRight[column];
    }

    target.columns.push_back({cells, static_cast<std::uint32_t>(target.columnLists.size())});
    auto position = static_cast<std::uint32_t>(target.chains.size());
    std::vector<std::uint32_t> positions;
    for (std::uint32_t column = 0; column < cells.count(); ++column) {
        target.columnLists.push_back({position, counts[column] * 4 + oddRight[column + 1] * ChainList::oddRight});
        positions.push_back(position);
        position += counts[column];
    }
    target.chains.resize(position);
    for (const RingChain& chain : rowChains) {
        for (std::uint32_t column = cells.cellOf(chain.minX); column <= cells.cellOf(chain.maxX); ++column) {
            target.chains[positions[column]++] = chain;
        }
    }
    return {static_cast<std::uint32_t>(target.columns.size() - 1), ChainList::hasColumns};
}

} // namespace vadelclip
