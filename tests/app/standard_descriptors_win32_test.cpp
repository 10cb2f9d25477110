#include "app/standard_descriptors.hpp"

#include "support/file_support.hpp"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

namespace vadelclip {

TEST(StandardDescriptors, opensClosedOneOnTheNullDevice) {
    const int kept = _dup(0);
    _close(0);
    guardStandardDescriptors();
    EXPECT_NE(-1, _get_osfhandle(0));
    EXPECT_EQ(1, _write(0, "a", 1));
    _dup2(kept, 0);
    _close(kept);
}

TEST(StandardDescriptors, keepsOpenOnes) {
    const TemporaryDirectory directory;
    const int kept = _dup(0);
    const int file = _open(directory.pathOf("file").c_str(), _O_WRONLY | _O_CREAT | _O_BINARY, _S_IREAD | _S_IWRITE);
    _dup2(file, 0);
    _close(file);
    guardStandardDescriptors();
    EXPECT_EQ(1, _write(0, "a", 1));
    _dup2(kept, 0);
    _close(kept);
    EXPECT_EQ("a", readFile(directory.pathOf("file")));
}

} // namespace vadelclip
