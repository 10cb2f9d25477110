/// Compares the whole run with a plain one on random jobs. Any difference is a wrong result.

#include "support/boundary_file_support.hpp"
#include "support/plain_run_support.hpp"
#include "support/workload.hpp"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace vadelclip {

namespace {

class RandomJobs {
public:
    explicit RandomJobs(unsigned int seed) : random(seed) {}

    /// Returns a boundary file of up to five polygons with few different coordinates.
    std::string boundaryFile() {
        std::string polygons;
        for (unsigned int count = below(6); count > 0; --count) {
            polygons += "<polygon id=\"1\">";
            for (unsigned int vertices = below(9); vertices > 0; --vertices) {
                polygons += "<point x=\"" + coordinate() + "\" y=\"" + coordinate() + "\"/>";
            }
            polygons += "</polygon>\n";
        }
        return inBoundaries(polygons);
    }

    /// Returns the name of a node file, or sometimes another name.
    std::string nodeFileName() {
        static const char* const suffixes[] = {".xyz", ".txt", ".csv", ".xyz", ".XYZ", ".dat"};
        return std::to_string(below(100)) + suffixes[below(6)];
    }

    /// Returns a node file, sometimes with a bad header.
    std::string nodeFile() {
        if (below(12) == 0) {
            return below(2) == 0 ? "x;y;z" : junk();
        }
        const char separator = "\t ,;"[below(4)];
        std::string columns = below(8) == 0 ? "xyZ" : below(2) == 0 ? "xyz" : "XYZG";
        std::string content = below(4) == 0 ? "\xEF\xBB\xBF" : "";
        for (const char column : columns) {
            content += (column == columns.front() ? "" : std::string(1, separator)) + column;
        }
        const std::string lineEnd = below(2) == 0 ? "\n" : "\r\n";
        content += lineEnd;
        for (unsigned int lines = below(60); lines > 0; --lines) {
            content += line(separator) + (below(20) == 0 ? "\r\r\n" : lineEnd);
        }
        return below(4) == 0 ? content + "5" + separator + "5" + separator + "unterminated" : content;
    }

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random()) % limit; }

private:
    std::string coordinate() {
        static const char* const texts[] = {"0",   "1",  "2.5",          "-3", "4",
                                            "1e1", " 7", "7.0000000001", "+5", "9.99999999999999999"};
        return texts[below(10)];
    }

    std::string line(char separator) {
        switch (below(12)) {
        case 0:
            return junk();
        case 1:
            return coordinate() + std::string(below(103), 'q') + separator + coordinate() + separator + junk();
        case 2:
            return coordinate() + separator + coordinate();
        case 3:
            return coordinate() + separator + coordinate() + separator + std::string(70000, 'z');
        case 4:
            return std::string(below(2) == 0 ? "-90" : "250.5") + separator + junk();
        case 5:
            return coordinate() + separator + (below(2) == 0 ? "-90" : "250.5") + junk();
        default:
            return coordinate() + separator + coordinate() + separator + junk();
        }
    }

    std::string junk() {
        static const std::string bytes = std::string("0123456789.-+eE;, \t\rxyz") + '\0' + "\xFF";
        std::string text;
        for (unsigned int size = below(12); size > 0; --size) {
            text += bytes[below(static_cast<unsigned int>(bytes.size()))];
        }
        return text;
    }

    std::mt19937 random;
};

} // namespace

TEST(ClipElevationData, agreesWithPlainRunOnRandomJobs) {
    RandomJobs jobs(1);
    for (int round = 0; round < workload(1500); ++round) {
        ClipRun job;
        const std::string boundaryFile = jobs.boundaryFile();
        job.directory.write("area.xml", boundaryFile);
        for (unsigned int file = 0; file <= jobs.below(4); ++file) {
            job.directory.write("base/data/" + jobs.nodeFileName(), jobs.nodeFile());
        }
        const Reading boundary = readBoundaryBytes(boundaryFile);
        ASSERT_TRUE(boundary.succeeded);
        const RunOutcome expected = plainRun(job, boundary.set);
        ASSERT_EQ(job.run(), expected) << "round " << round << '\n' << boundaryFile;
    }
}

} // namespace vadelclip
