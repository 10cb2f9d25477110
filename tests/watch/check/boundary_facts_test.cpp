#include "watch/check/boundary_facts.hpp"

#include "support/file_support.hpp"

#include <sys/stat.h>

#include <gtest/gtest.h>

#include <string>

namespace vadelwatch {

using vadelclip::TemporaryDirectory;

// Opening the FIFO to read it would wait for a writer.
TEST(WhyBoundaryNotFound, doesNotReadFifo) {
    const TemporaryDirectory directory;
    const std::string path = directory.pathOf("area.xml");
    ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
    EXPECT_EQ("", whyBoundaryNotFound(path));
}

} // namespace vadelwatch
