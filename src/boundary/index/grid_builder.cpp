#include "boundary/index/grid_builder.hpp"

#include <algorithm>

namespace vadelclip {

namespace {

/// A grid with fewer cells than this does not help.
constexpr std::size_t minCells = 16;

/// The memory that a row or a column takes while a grid is built.
constexpr std::size_t bytesPerLine = 48;

constexpr int maxDepth = 4;
constexpr std::size_t innerSamples = 32;

} // namespace

bool GridBuilder::buildCoarseRoot(std::span<const CellEntry> entries, const GridMeasure& measure,
                                  const GridPlan& plan) {
    edgesLeft = plan.maxEdgesOfCoarseRoot;
    cut(plan.coarseRoot, plane);
    if (!spans.add(entries, measure, columns, rows, rootBytes())) {
        return false;
    }
    buildCells();
    return edgesLeft >= 0.0;
}

void GridBuilder::buildRoot(std::span<const CellEntry> entries, const GridMeasure& measure, double wantedCells) {
    double share = 1.0;
    cut(chooseRootSize(measure, wantedCells, share), plane);
    bool isComplete = spans.add(entries, measure, columns, rows, rootBytes());
    while (!isComplete) {
        if (cellCount() > minCells) {
            share /= 2.0;
            cut(chooseRootSize(measure, wantedCells, share), plane);
            isComplete = spans.add(entries, measure, columns, rows, rootBytes());
        } else {
            // Even few cells have a span or more for each edge, if many edges leave them. A single cell has one for each entry.
            const GridMeasure spanCount{measure.extent, static_cast<double>(entries.size())};
            cut({measure.extent, 1, 1}, plane);
            isComplete = spans.add(entries, spanCount, columns, rows, std::numeric_limits<double>::infinity());
        }
    }
    buildCells();
}

std::optional<std::uint32_t> GridBuilder::buildInner(std::span<const CellEntry> entries, const Region& region) {
    const GridMeasure measure = measureEntries(target, entries, set, region, innerSamples);
    for (double share = 1.0;; share /= 4.0) {
        cut(chooseInnerSize(measure, share), region);
        if (cellCount() < minCells) {
            return std::nullopt;
        }
        if (spans.add(entries, measure, columns, rows, budget.bytes - gridBytes() - axisBytes())) {
            return buildCells();
        }
    }
}

std::size_t GridBuilder::cellCount() const {
    return columns.cells.count() * std::size_t{rows.cells.count()};
}

/// Returns the memory that the grid takes without its lists. While the vector of grids grows, it takes three times its memory.
double GridBuilder::gridBytes() const {
    return static_cast<double>(cellCount() * sizeof(CellEntry) + 3 * sizeof(CellGrid));
}

/// Returns the memory for the spans of the root. The other quarter of the budget is for grids inside cells.
double GridBuilder::rootBytes() const {
    return budget.bytes * 0.75 - gridBytes() - axisBytes();
}

/// Returns the memory that the rows and columns take while the grid is built.
double GridBuilder::axisBytes() const {
    return static_cast<double>((columns.cells.count() + std::size_t{rows.cells.count()}) * bytesPerLine);
}

void GridBuilder::cut(const GridSize& size, const Region& region) {
    columns = GridAxis(size.extent.minX, size.extent.maxX, size.columns, region.firstX, region.lastX);
    rows = GridAxis(size.extent.minY, size.extent.maxY, size.rows, region.firstY, region.lastY);
}

std::uint32_t GridBuilder::buildCells() {
    budget.bytes -= gridBytes() + axisBytes() + spans.bytes();
    const auto number = static_cast<std::uint32_t>(target.grids.size());
    target.grids.emplace_back();
    cells.resize(cellCount());
    states.resize(columns.cells.count() + 1);
    items.reserve(spans.itemCount());
    lists.reserve(spans.entryCount());
    spans.sort();
    spans.prefetchRow(0);
    for (std::int32_t row = 0; row < rows.count() && edgesLeft >= 0.0; ++row) {
        const std::span<const std::uint32_t> rowSpans = spans.inRow(row);
        spans.prefetchRow(row + 1);
        for (std::uint32_t first = 0; first < rowSpans.size();) {
            std::uint32_t end = first + 1;
            while (end < rowSpans.size() &&
                   spans.polygonOf(spans[rowSpans[end]]) == spans.polygonOf(spans[rowSpans[first]])) {
                ++end;
            }
            if (spans[rowSpans[first]].entry.kind == CellEntry::Kind::piece) {
                countCrossings(rowSpans.subspan(first, end - first));
            }
            listSpans(rowSpans, first, end);
            first = end;
        }
        finishRow(row);
    }
    budget.bytes += spans.bytes(); // includes the reserved memory of the lists
    spans.clear();
    items = std::vector<CellItem>();
    if (static_cast<double>((lists.capacity() + lists.size()) * sizeof(CellEntry)) <= budget.bytes) {
        lists.shrink_to_fit(); // for a moment there are two copies
    }
    budget.bytes += axisBytes() - static_cast<double>(lists.capacity() * sizeof(CellEntry));
    target.grids[number] = {columns.cells, rows.cells, std::move(cells), std::move(lists)};
    return number;
}

/// Counts the crossings of a polygon right of each column. In a column without a span, the count decides if the cell is
/// inside. In other columns it is kept for the entries.
void GridBuilder::countCrossings(std::span<const std::uint32_t> polygonSpans) {
    spansByColumn.assign(polygonSpans.begin(), polygonSpans.end());
    std::sort(spansByColumn.begin(), spansByColumn.end(),
              [this](std::uint32_t a, std::uint32_t b) { return spans[a].firstColumn < spans[b].firstColumn; });
    bool odd = false;
    for (const std::uint32_t number : spansByColumn) {
        if (spans[number].entry.odd) {
            odd = !odd;
        }
    }
    std::int32_t column = 0;
    std::int32_t listedEnd = 0; // every column before this one is decided or has a span
    const auto goTo = [&](std::int32_t end) {
        for (; column < std::min(end, listedEnd); ++column) {
            states[static_cast<std::size_t>(column)].odd = odd;
        }
        if (odd && column < end) {
            isCovered = true;
            ++states[static_cast<std::size_t>(column)].coverChange;
            --states[static_cast<std::size_t>(end)].coverChange;
        }
        column = std::max(column, end);
    };
    for (const std::uint32_t number : spansByColumn) {
        goTo(spans[number].firstColumn);
        if (spans[number].entry.odd) {
            odd = !odd;
        }
        listedEnd = std::max(listedEnd, spans[number].lastColumn + 1);
    }
    goTo(listedEnd);
}

/// Adds the spans of a polygon to the cells that they cover.
void GridBuilder::listSpans(std::span<const std::uint32_t> rowSpans, std::uint32_t first, std::uint32_t end) {
    for (std::uint32_t place = first; place < end; ++place) {
        const RowSpan& span = spans[rowSpans[place]];
        for (std::int32_t column = span.firstColumn; column <= span.lastColumn; ++column) {
            const std::uint32_t last = states[static_cast<std::size_t>(column)].lastItem;
            if (last == ColumnState::none || !extendItem(last, rowSpans, place, column)) {
                addItem(span, place, column);
            }
        }
    }
}

/// Appends a span to an item if the gap between them is small. The edges of the gap are then walked, so they no longer
/// count as crossings right of the cell.
bool GridBuilder::extendItem(std::uint32_t number, std::span<const std::uint32_t> rowSpans, std::uint32_t place,
                             std::int32_t column) {
    const RowSpan& span = spans[rowSpans[place]];
    CellItem& item = items[number];
    if (item.piece != span.piece || span.entry.first > item.entry.end() + maxGap ||
        span.entry.end() - item.entry.first > CellEntry::maxEdges) {
        return false;
    }
    for (std::uint32_t between = item.lastSpan + 1; between < place; ++between) {
        const RowSpan& skipped = spans[rowSpans[between]];
        if (skipped.firstColumn > column && skipped.entry.odd) {
            item.entry.odd = !item.entry.odd;
        }
    }
    item.entry.edgeCount = static_cast<std::uint16_t>(span.entry.end() - item.entry.first);
    item.lastSpan = place;
    return true;
}

void GridBuilder::addItem(const RowSpan& span, std::uint32_t place, std::int32_t column) {
    ColumnState& state = states[static_cast<std::size_t>(column)];
    const auto number = static_cast<std::uint32_t>(items.size());
    const bool startsPolygon =
        state.lastItem == ColumnState::none || items[state.lastItem].polygon != spans.polygonOf(span);
    // Assigned in place: a processor would wait for a copy whose bytes were written one by one.
    CellItem& item = items.emplace_back();
    item.entry = span.entry;
    item.entry.odd = startsPolygon && span.entry.kind == CellEntry::Kind::piece && state.odd;
    item.piece = span.piece;
    item.polygon = spans.polygonOf(span);
    item.lastSpan = place;
    item.next = ColumnState::none;
    if (state.lastItem == ColumnState::none) {
        state.firstItem = number;
        listedColumns.push_back(column);
    } else {
        items[state.lastItem].next = number;
    }
    state.lastItem = number;
}

void GridBuilder::finishRow(std::int32_t row) {
    CellEntry* const rowCells = &cells[static_cast<std::size_t>(row) * columns.cells.count()];
    if (isCovered) {
        std::int32_t cover = 0;
        for (std::size_t column = 0; column < columns.cells.count(); ++column) {
            cover += states[column].coverChange;
            states[column].coverChange = 0;
            rowCells[column].odd = cover > 0;
        }
        states.back().coverChange = 0;
        isCovered = false;
    }
    for (const std::int32_t column : listedColumns) {
        if (!rowCells[column].odd) {
            rowCells[column] = finishCell(row, column);
        }
        ColumnState& state = states[static_cast<std::size_t>(column)];
        state.firstItem = ColumnState::none;
        state.lastItem = ColumnState::none;
    }
    listedColumns.clear();
    items.clear();
}

CellEntry GridBuilder::finishCell(std::int32_t row, std::int32_t column) {
    cellEntries.clear();
    std::size_t edges = 0;
    for (std::uint32_t i = states[static_cast<std::size_t>(column)].firstItem; i != ColumnState::none;
         i = items[i].next) {
        const std::uint32_t next = items[i].next;
        CellEntry entry = items[i].entry;
        if (entry.kind == CellEntry::Kind::piece) {
            entry.startsRight = isRight(entry.first, row, column);
            entry.endsRight = isRight(entry.end(), row, column);
        }
        entry.endsList = next == ColumnState::none;
        entry.endsPolygon = next == ColumnState::none || items[next].polygon != items[i].polygon;
        edges += std::max<std::size_t>(entry.edgeCount, 1);
        cellEntries.push_back(entry);
    }
    edgesLeft -= static_cast<double>(edges);
    CellEntry cell = cellEntries.front();
    if (static_cast<double>(edges) > maxEdgesOfCell && depth < maxDepth && edgesLeft >= 0.0) {
        const Region region{columns.firstOf(column), columns.lastOf(column), rows.firstOf(row), rows.lastOf(row)};
        const auto entryBytes = static_cast<double>(cellEntries.capacity() * sizeof(CellEntry));
        budget.bytes -= entryBytes;
        const auto number = GridBuilder(target, set, budget, maxEdgesOfCell, depth + 1).buildInner(cellEntries, region);
        budget.bytes += entryBytes;
        if (number) {
            cell.kind = CellEntry::Kind::grid;
            cell.first = *number;
            return cell;
        }
    }
    if (cellEntries.size() > 1) {
        cell.kind = CellEntry::Kind::list;
        cell.first = static_cast<std::uint32_t>(lists.size());
        lists.insert(lists.end(), cellEntries.begin(), cellEntries.end());
    }
    return cell;
}

/// Returns true if a vertex is in the row and right of the column. Without branches, because a processor could not predict
/// them.
bool GridBuilder::isRight(std::uint32_t vertex, std::int32_t row, std::int32_t column) const {
    const Point2D point = target.points[vertex];
    const auto notBelowRow = static_cast<unsigned>(point.y >= rows.firstOf(row));
    const auto notAboveRow = static_cast<unsigned>(point.y < rows.firstOf(row + 1));
    const auto afterColumn = static_cast<unsigned>(point.x >= columns.firstOf(column + 1));
    return (notBelowRow & notAboveRow & afterColumn) != 0;
}

} // namespace vadelclip
