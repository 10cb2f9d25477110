/// \file
/// Which polygons a point may lie in, out of many.
#pragma once

#include "boundary/index/indexed_polygon.hpp"
#include "boundary/index/uniform_cells.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace vadelclip {

/// A grid over the boxes of polygons, in levels of ever smaller cells. Each polygon stands in the cells of one level,
/// the finest in which it covers a few cells only, so that large polygons do not flood small cells: memory is linear in
/// the number of polygons. A cell of the finest level that holds many polygons all the same has a grid of its own.
///
/// The order in which polygons are visited is not the set's: whether any contains a point does not depend on it.
///
/// A polygon's box and a point in it always meet in a cell, because both are mapped by the same monotone functions.
class PolygonGrid {
public:
    PolygonGrid() = default;

    /// @param polygons all polygons; they are copied into the cells.
    /// @param members  numbers of the polygons that the grid is to hold.
    /// @param depth    how many grids this one stands in.
    PolygonGrid(std::span<const IndexedPolygon> polygons, const std::vector<std::uint32_t>& members, int depth = 0);

    /// Calls `visit` with polygons near a point, among them every one whose box does not reject it, each once, until
    /// `visit` returns true.
    ///
    /// @return whether `visit` did.
    template <typename Visit>
    bool anyNear(Point2D point, const Visit& visit) const {
        const PolygonGrid* grid = this;
        while (grid != nullptr) {
            const PolygonGrid* innerGrid = nullptr;
            for (const Level& level : grid->levels) {
                const std::size_t cell = level.cellAt(point);
                const IndexedPolygon* const members = level.members.data();
                for (std::uint32_t i = level.cellStarts[cell]; i < level.cellStarts[cell + 1]; ++i) {
                    if (visit(members[i])) {
                        return true;
                    }
                }
                if (!level.inner.empty()) {
                    innerGrid = level.inner[cell].get();
                }
            }
            grid = innerGrid;
        }
        return false;
    }

private:
    struct Level {
        UniformCells columns;
        UniformCells rows;
        std::uint32_t columnCount = 1;
        std::vector<std::uint32_t> cellStarts; ///< Of each cell in `members`, row by row, and the end.
        std::vector<IndexedPolygon> members;
        std::vector<std::unique_ptr<PolygonGrid>> inner; ///< Per cell, for crowded ones. Only in the finest level.

        Level(const WidenedBox& extent, std::uint32_t cellsPerSide);

        std::size_t cellAt(Point2D point) const {
            if (cellStarts.size() == 2) {
                return 0; // the only one
            }
            return std::size_t{rows.cellOf(point.y)} * columnCount + columns.cellOf(point.x);
        }

        /// Calls `visit` with the number of each cell that a box covers.
        template <typename Visit>
        void forEachCell(const WidenedBox& box, const Visit& visit) const;
        std::uint32_t countCells(const WidenedBox& box) const;
        void fill(std::span<const IndexedPolygon> polygons, std::vector<std::uint32_t> numbers, std::size_t gridSize,
                  int depth);
    };

    std::vector<Level> levels;
};

} // namespace vadelclip
