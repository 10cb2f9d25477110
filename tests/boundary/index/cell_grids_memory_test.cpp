/// Memory of a boundary and its index, in a program that counts the allocated bytes of its process.

#include "boundary/boundary_reader.hpp"
#include "boundary/index/cell_grids.hpp"

#include "support/boundary_support.hpp"
#include "support/file_support.hpp"

#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace {

std::size_t allocatedBytes = 0;
std::size_t peakBytes = 0;

/// Each block has its size in front of it.
constexpr std::size_t header = alignof(std::max_align_t);

} // namespace

void* operator new(std::size_t size) {
    void* const memory = std::malloc(size + header);
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    *static_cast<std::size_t*>(memory) = size;
    allocatedBytes += size;
    peakBytes = std::max(peakBytes, allocatedBytes);
    return static_cast<std::byte*>(memory) + header;
}

void operator delete(void* memory) noexcept {
    if (memory != nullptr) {
        void* const start = static_cast<std::byte*>(memory) - header;
        allocatedBytes -= *static_cast<std::size_t*>(start);
        std::free(start);
    }
}

void operator delete(void* memory, std::size_t) noexcept {
    operator delete(memory);
}

namespace vadelclip {

namespace {

using Random = std::mt19937_64;

double uniform(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

/// Builds an index and compares its peak memory with the bound that docs/performance.md states.
void expectWithinBound(const std::vector<Outline>& outlines) {
    const BoundarySet set = setOf(outlines);
    const std::size_t bound = 64 * set.vertices.size() + 200 * set.polygons.size() + 64 * 1024 * 1024;
    for (const double pointCount : {1.0, 1e5, 1e9}) {
        const std::size_t before = allocatedBytes;
        peakBytes = allocatedBytes;
        const CellGrids grids = buildCellGrids(set, pointCount);
        EXPECT_LE(peakBytes - before, bound)
            << pointCount << " points, " << set.vertices.size() << " vertices, " << set.polygons.size() << " polygons";
    }
}

/// Vertices anywhere: nearly every edge crosses a large part of the plane.
Outline tangle(Random& random, std::size_t size) {
    Outline ring;
    for (std::size_t i = 0; i < size; ++i) {
        const double x = uniform(random, -1.0, 1.0);
        ring.push_back({x, uniform(random, -1.0, 1.0)});
    }
    return ring;
}

/// Writes a ring as a boundary file, reads and indexes it, and returns the peak memory in bytes for each vertex.
///
/// @param maxSize cuts the ring into polygons of this size. Each is in a separate group, with another group before it.
std::size_t bytesPerVertex(const Outline& ring, std::size_t maxSize) {
    const TemporaryDirectory directory;
    std::string content = "<VADELSIM><VadeDGM>";
    for (std::size_t i = 0; i < ring.size(); ++i) {
        if (i % maxSize == 0) {
            content += i == 0 ? "" : "</polygon></group>";
            content += "<group type=\"other\"/><group type=\"boundaries\"><polygon id=\"1\">\n";
        }
        char line[80];
        std::snprintf(line, sizeof line, "<point x=\"%.3f\" y=\"%.3f\"/>\n", 400000.0 + ring[i].x,
                      5650000.0 + ring[i].y);
        content += line;
    }
    const std::string path = directory.write("area.xml", content + "</polygon></group></VadeDGM></VADELSIM>\n");
    const auto allocate = pugi::get_memory_allocation_function();
    const auto free = pugi::get_memory_deallocation_function();
    pugi::set_memory_management_functions(&operator new, [](void* memory) { operator delete(memory); });
    const std::size_t before = allocatedBytes;
    peakBytes = allocatedBytes;
    {
        BoundarySet set;
        EXPECT_TRUE(readBoundaryFile(set, path));
        EXPECT_EQ(set.vertices.size(), ring.size());
        const CellGrids grids = buildCellGrids(set, 1e9);
    }
    pugi::set_memory_management_functions(allocate, free);
    return (peakBytes - before) / ring.size();
}

} // namespace

TEST(CellGridsMemory, isBoundedForTangles) {
    Random random(1);
    for (const std::size_t size : {1000U, 30000U, 300000U}) {
        expectWithinBound({tangle(random, size)});
    }
}

TEST(CellGridsMemory, isBoundedForJumpsBetweenTwoSides) {
    Random random(2);
    Outline rising;
    Outline sideways;
    for (int i = 0; i < 300000; ++i) {
        const double side = i % 2 + uniform(random, 0.0, 0.1);
        rising.push_back({side, static_cast<double>(i)});
        sideways.push_back({static_cast<double>(i), side});
    }
    expectWithinBound({rising});
    expectWithinBound({sideways});
    rising.push_back({1e9, 1e9});
    expectWithinBound({rising});
}

TEST(CellGridsMemory, isBoundedForManyOverlappingPolygons) {
    Random random(3);
    for (const std::size_t corners : {2U, 3U, 8U}) {
        std::vector<Outline> outlines;
        for (int i = 0; i < 20000; ++i) {
            outlines.push_back(tangle(random, corners));
        }
        expectWithinBound(outlines);
    }
}

TEST(CellGridsMemory, isBoundedForCrowdsInOneRowAndOneColumn) {
    Random random(4);
    std::vector<Outline> segments;
    for (int i = 0; i < 10000; ++i) {
        segments.push_back({{uniform(random, 990.0, 1000.0), uniform(random, 500.0, 500.1)},
                            {uniform(random, 0.0, 10.0), uniform(random, 500.0, 500.1)}});
        segments.push_back({{uniform(random, 500.0, 500.1), uniform(random, 0.0, 10.0)},
                            {uniform(random, 500.0, 500.1), uniform(random, 990.0, 1000.0)}});
    }
    expectWithinBound(segments);
}

TEST(CellGridsMemory, isBoundedForOutlinesOfAllScales) {
    Outline spiral;
    for (int i = 0; i < 200000; ++i) {
        const double radius = std::pow(10.0, -i / 1000.0);
        spiral.push_back({radius * std::cos(i), radius * std::sin(i)});
    }
    expectWithinBound({spiral});
}

// The box of an edge this long overflows, so most cells list most edges: the lists are large, and few of their entries
// are in finer grids.
TEST(CellGridsMemory, isBoundedForEdgesThatOverflow) {
    Random random(6);
    for (const int count : {110, 120, 230}) {
        std::vector<Outline> triangles;
        for (int i = 0; i < count; ++i) {
            triangles.push_back(tangle(random, 3));
            for (Point2D& vertex : triangles.back()) {
                vertex = {vertex.x * 1.7e308, vertex.y * 1.7e308};
            }
        }
        expectWithinBound(triangles);
    }
}

// A boundary file of a million vertices takes at most 250 MiB, and 400 MiB if its edges cross all of the plane.
TEST(BoundaryMemory, isBoundedForReadAndIndexedFile) {
    Outline round;
    Outline jumping;
    for (int i = 0; i < 250000; ++i) {
        round.push_back({500.0 * std::cos(i * 2.5e-5), 500.0 * std::sin(i * 2.5e-5)});
        jumping.push_back({i % 2 * 900.0, i / 250.0});
    }
    EXPECT_LE(bytesPerVertex(round, round.size()), 262U);
    EXPECT_LE(bytesPerVertex(round, 5000), 262U);
    EXPECT_LE(bytesPerVertex(jumping, jumping.size()), 419U);
}

} // namespace vadelclip
