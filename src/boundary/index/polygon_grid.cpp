#include "boundary/index/polygon_grid.hpp"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace vadelclip {

namespace {

/// A box stands in the finest level where it covers no more cells than this.
constexpr std::uint32_t mostCellsOfABox = 9;

/// A cell of the finest level with more polygons gets a grid of its own.
constexpr std::size_t crowd = 16;

/// Grids in grids. Each depth may copy a crowd at a cell's corner four times, so this bounds the memory.
constexpr int deepestGrid = 2;

constexpr std::uint32_t mostCellsPerSide = 2048;

WidenedBox extentOf(std::span<const IndexedPolygon> polygons, const std::vector<std::uint32_t>& members) {
    WidenedBox extent = polygons[members.front()].box;
    for (const std::uint32_t member : members) {
        const WidenedBox& box = polygons[member].box;
        extent.minX = std::min(extent.minX, box.minX);
        extent.minY = std::min(extent.minY, box.minY);
        extent.maxX = std::max(extent.maxX, box.maxX);
        extent.maxY = std::max(extent.maxY, box.maxY);
    }
    return extent;
}

} // namespace

PolygonGrid::Level::Level(const WidenedBox& extent, std::uint32_t cellsPerSide)
    : columns(extent.minX, extent.maxX, cellsPerSide), rows(extent.minY, extent.maxY, cellsPerSide),
      columnCount(columns.count()) {}

template <typename Visit>
void PolygonGrid::Level::forEachCell(const WidenedBox& box, const Visit& visit) const {
    for (std::uint32_t row = rows.cellOf(box.minY); row <= rows.cellOf(box.maxY); ++row) {
        for (std::uint32_t column = columns.cellOf(box.minX); column <= columns.cellOf(box.maxX); ++column) {
            visit(std::size_t{row} * columnCount + column);
        }
    }
}

std::uint32_t PolygonGrid::Level::countCells(const WidenedBox& box) const {
    return (rows.cellOf(box.maxY) - rows.cellOf(box.minY) + 1) *
           (columns.cellOf(box.maxX) - columns.cellOf(box.minX) + 1);
}

/// Distributes polygons over the cells. A crowded cell gets a grid of its own, unless it holds all there is: then
/// nothing would be gained.
void PolygonGrid::Level::fill(std::span<const IndexedPolygon> polygons, std::vector<std::uint32_t> numbers,
                              std::size_t gridSize, int depth) {
    const std::size_t cellCount = std::size_t{rows.count()} * columnCount;
    std::vector<std::vector<std::uint32_t>::size_type> starts(cellCount + 1, 0);
    for (const std::uint32_t number : numbers) {
        forEachCell(polygons[number].box, [&starts](std::size_t cell) { ++starts[cell + 1]; });
    }
    std::partial_sum(starts.begin(), starts.end(), starts.begin());
    std::vector<std::uint32_t> sorted(starts.back());
    auto positions = starts;
    for (const std::uint32_t number : numbers) {
        forEachCell(polygons[number].box, [&](std::size_t cell) { sorted[positions[cell]++] = number; });
    }

    cellStarts = {0};
    for (std::size_t cell = 0; cell < cellCount; ++cell) {
        const std::vector<std::uint32_t> inCell(sorted.begin() + static_cast<std::ptrdiff_t>(starts[cell]),
                                                sorted.begin() + static_cast<std::ptrdiff_t>(starts[cell + 1]));
        if (depth < deepestGrid && inCell.size() > crowd && inCell.size() < gridSize) {
            inner.resize(cellCount);
            inner[cell] = std::make_unique<PolygonGrid>(polygons, inCell, depth + 1);
        } else {
            for (const std::uint32_t number : inCell) {
                members.push_back(polygons[number]);
            }
        }
        cellStarts.push_back(static_cast<std::uint32_t>(members.size()));
    }
}

PolygonGrid::PolygonGrid(std::span<const IndexedPolygon> polygons, const std::vector<std::uint32_t>& members,
                         int depth) {
    if (members.empty()) {
        return;
    }
    const WidenedBox extent = extentOf(polygons, members);
    std::uint32_t cellsPerSide = 1;
    do {
        levels.emplace_back(extent, cellsPerSide);
        cellsPerSide *= 2;
    } while (cellsPerSide <= mostCellsPerSide && std::size_t{cellsPerSide} * cellsPerSide <= members.size());

    std::vector<std::vector<std::uint32_t>> numbers(levels.size());
    for (const std::uint32_t member : members) {
        std::size_t level = levels.size() - 1;
        while (level > 0 && levels[level].countCells(polygons[member].box) > mostCellsOfABox) {
            --level;
        }
        numbers[level].push_back(member);
    }
    for (std::size_t level = 0; level < levels.size(); ++level) {
        const bool finest = level + 1 == levels.size();
        levels[level].fill(polygons, std::move(numbers[level]), members.size(), finest ? depth : deepestGrid);
    }
    std::erase_if(levels, [](const Level& level) { return level.members.empty() && level.inner.empty(); });
}

} // namespace vadelclip
