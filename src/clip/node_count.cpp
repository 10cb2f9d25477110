#include "clip/node_count.hpp"

#include <ProcessMessage.h>

#include <boost/filesystem/path.hpp>

#include <fstream>

namespace vadelclip {

namespace {

/// The range starts at 1.0, not at 0.0, because controlling processes expect this.
void reportRunComplete() {
    ProgressMessage progress(1.0, 100.0, 100);
    progress.OnProgress(100, false);
}

} // namespace

void writeNodeCount(const std::string& outputDirectory, std::int32_t totalKeptNodes) {
    reportRunComplete();
    std::ofstream output((boost::filesystem::path(outputDirectory) / "total_node_count.txt").string());
    output << totalKeptNodes << '\n';
    output.flush();
    output.close();
}

} // namespace vadelclip
