#include "boundary/index/row_spans.hpp"

#include "boundary/index/prefetch.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace vadelclip {

namespace {

/// An edge takes time in each row between its ends, also where it is left or right of all columns.
constexpr double maxVisitsPerSpan = 3.0;

} // namespace

bool RowSpans::add(std::span<const CellEntry> entries, const GridMeasure& measure, const GridAxis& columns_,
                   const GridAxis& rows_, double maxBytes_) {
    columns = &columns_;
    rows = &rows_;
    maxBytes = maxBytes_;
    clear();
    isFull = false;
    const double expected = measure.edgeCount + measure.crossingsPerHeight * rows->count();
    rowVisits = 0;
    maxRowVisits = expected * maxVisitsPerSpan;
    spans.reserve(static_cast<std::size_t>(std::clamp(maxBytes / (2 * sizeof(RowSpan)), 0.0, expected)));
    lastOfRow.assign(rows->cells.count(), 0);
    itemsOfRow.assign(rows->cells.count(), 0);
    polygons.clear();
    polygons.reserve(entries.size());
    std::uint32_t polygon = 0;
    maxEntries = 0;
    maxItems = 0;
    for (const CellEntry& entry : entries) {
        polygons.push_back(polygon);
        polygon += entry.endsPolygon ? 1 : 0;
        firstOfPiece = spans.size();
        if (entry.kind == CellEntry::Kind::piece) {
            addPiece(entry);
        } else {
            addThin(entry);
        }
        if (!fits()) {
            return false;
        }
    }
    return true;
}

double RowSpans::bytes() const {
    return static_cast<double>(spans.capacity() * sizeof(RowSpan) + spans.size() * sizeof(std::uint32_t) +
                               polygons.capacity() * sizeof(std::uint32_t) + maxEntries * sizeof(CellEntry) +
                               maxItems * (sizeof(CellItem) + 2 * sizeof(std::uint32_t)));
}

bool RowSpans::fits() const {
    return !isFull && bytes() <= maxBytes && static_cast<double>(rowVisits) <= maxRowVisits;
}

void RowSpans::sort() {
    rowStarts.assign(rows->cells.count() + 1, 0);
    for (const RowSpan& span : spans) {
        ++rowStarts[static_cast<std::size_t>(span.row) + 1];
    }
    std::partial_sum(rowStarts.begin(), rowStarts.end(), rowStarts.begin());
    std::vector<std::uint32_t> places = rowStarts;
    sorted.resize(spans.size());
    for (std::uint32_t number = 0; number < spans.size(); ++number) {
        sorted[places[static_cast<std::size_t>(spans[number].row)]++] = number;
    }
}

void RowSpans::clear() {
    spans = std::vector<RowSpan>(); // an empty list in braces would keep the memory
    sorted = std::vector<std::uint32_t>();
}

std::span<const std::uint32_t> RowSpans::inRow(std::int32_t row) const {
    const auto place = static_cast<std::size_t>(row);
    return std::span(sorted).subspan(rowStarts[place], rowStarts[place + 1] - rowStarts[place]);
}

void RowSpans::prefetchRow(std::int32_t row) const {
    if (rows->has(row)) {
        for (const std::uint32_t number : inRow(row)) {
            PREFETCH(&spans[number]);
        }
    }
}

void RowSpans::addPiece(const CellEntry& entry) {
    if (entry.odd) {
        addCrossings(0);
    }
    std::uint32_t edge = entry.first;
    std::int32_t row = rows->place(grids.points[edge].y);
    std::int32_t column = columns->place(grids.points[edge].x);
    if (entry.startsRight) {
        addCrossings(row + 1);
    }
    while (edge != entry.end() && fits()) {
        const std::uint32_t stayEnd = endOfStay(edge, entry.end(), row, column);
        if (stayEnd != edge) {
            CellEntry stay;
            stay.first = edge;
            stay.edgeCount = static_cast<std::uint16_t>(stayEnd - edge);
            addEdges(row, column, column, stay);
            edge = stayEnd;
        }
        if (edge != entry.end()) {
            const Point2D next = grids.points[edge + 1];
            const std::int32_t nextRow = rows->place(next.y);
            addEdge(edge, row, nextRow);
            row = nextRow;
            column = columns->place(next.x);
            ++edge;
        }
    }
    if (entry.endsRight) {
        addCrossings(row + 1);
    }
}

/// Returns the first edge, from `edge` on, that leaves the cell in which `edge` starts.
std::uint32_t RowSpans::endOfStay(std::uint32_t edge, std::uint32_t end, std::int32_t row, std::int32_t column) const {
    if (!rows->has(row) || !columns->has(column)) {
        return edge;
    }
    const double firstX = columns->firstOf(column);
    const double limitX = columns->firstOf(column + 1);
    const double firstY = rows->firstOf(row);
    const double limitY = rows->firstOf(row + 1);
    for (; edge != end; ++edge) {
        const Point2D next = grids.points[edge + 1];
        if (next.x < firstX || next.x >= limitX || next.y < firstY || next.y >= limitY) {
            break;
        }
    }
    return edge;
}

/// Adds the part of an edge in each row.
void RowSpans::addEdge(std::uint32_t edge, std::int32_t fromRow, std::int32_t toRow) {
    const Point2D from = grids.points[edge];
    const Point2D to = grids.points[edge + 1];
    const std::int32_t lowestRow = std::max(std::min(fromRow, toRow), 0);
    const std::int32_t highestRow = std::min(std::max(fromRow, toRow), rows->count() - 1);
    if (lowestRow > highestRow || std::max(from.x, to.x) < columns->first) {
        return;
    }
    rowVisits += static_cast<std::size_t>(highestRow - lowestRow + 1);
    const bool flat = from.y == to.y;
    const double topY = std::max(from.y, to.y);
    double xi = from.x;
    if (!flat) {
        xi = crossingX(from, to, std::max(std::min(from.y, to.y), rows->firstOf(lowestRow)));
    }
    for (std::int32_t row = lowestRow; row <= highestRow; ++row) {
        XRange range{xi, xi};
        if (!flat) {
            const double nextXi = crossingX(from, to, std::min(topY, rows->firstOf(row + 1)));
            range = rangeBetween(from, to, xi, nextXi);
            xi = nextXi;
        }
        if (fromRow == row) {
            range = {std::min(range.minX, from.x), std::max(range.maxX, from.x)};
        }
        if (toRow == row) {
            range = {std::min(range.minX, to.x), std::max(range.maxX, to.x)};
        }
        addRange(row, edge, range, (fromRow < row) != (toRow < row));
    }
}

void RowSpans::addRange(std::int32_t row, std::uint32_t edge, XRange range, bool crosses) {
    const std::int32_t lastColumn = std::min(columns->place(range.maxX), columns->count() - 1);
    if (lastColumn < 0) {
        return; // left of every cell
    }
    CellEntry entry;
    entry.first = edge;
    entry.edgeCount = 1;
    entry.odd = crosses;
    addEdges(row, std::max(columns->place(range.minX), 0), lastColumn, entry);
}

void RowSpans::addEdges(std::int32_t row, std::int32_t firstColumn, std::int32_t lastColumn, const CellEntry& edges) {
    const std::size_t last = lastOfRow[static_cast<std::size_t>(row)];
    if (last > firstOfPiece) {
        RowSpan& span = spans[last - 1];
        if (span.firstColumn == firstColumn && span.lastColumn == lastColumn && span.entry.edgeCount > 0 &&
            edges.first <= span.entry.end() + maxGap && edges.end() - span.entry.first <= CellEntry::maxEdges) {
            span.entry.edgeCount = static_cast<std::uint16_t>(edges.end() - span.entry.first);
            span.entry.odd = span.entry.odd != edges.odd;
            return;
        }
    }
    addSpan(edges, row, firstColumn, lastColumn);
}

/// Adds one crossing, right of all columns, to a row and all rows above it.
void RowSpans::addCrossings(std::int32_t firstRow) {
    CellEntry crossing;
    crossing.odd = true;
    rowVisits += static_cast<std::size_t>(std::max(rows->count() - firstRow, 0));
    for (std::int32_t row = firstRow; row < rows->count(); ++row) {
        addSpan(crossing, row, columns->count(), columns->count() - 1);
    }
}

void RowSpans::addSpan(const CellEntry& entry, std::int32_t row, std::int32_t firstColumn, std::int32_t lastColumn) {
    // While a vector grows, it takes three times its memory.
    if (spans.size() == spans.capacity() && static_cast<double>(3 * spans.size() * sizeof(RowSpan)) > maxBytes) {
        isFull = true;
        return;
    }
    // Assigned in place, as the items of GridBuilder are.
    RowSpan& span = spans.emplace_back();
    span.entry = entry;
    span.piece = static_cast<std::uint32_t>(polygons.size() - 1);
    span.row = row;
    span.firstColumn = firstColumn;
    span.lastColumn = lastColumn;
    lastOfRow[static_cast<std::size_t>(row)] = spans.size();
    const std::size_t columnCount = span.columnCount();
    maxEntries += columnCount;
    maxItems = std::max(maxItems, itemsOfRow[static_cast<std::size_t>(row)] += columnCount);
}

} // namespace vadelclip
