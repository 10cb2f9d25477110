/// \file
/// The picture of a run: outlines, kept and dropped points, with everything a map needs around them.
#pragma once

#include <string>
#include <string_view>

namespace vadelwatch {

struct MapRequest {
    std::string inputDirectory;
    std::string outputDirectory;
    std::string boundaryFile;
    /// Ends in ".png" or ".svg" (see `isPictureFileName`); an existing file is replaced.
    std::string pictureFile;
};

/// Tells whether a name ends in ".png" or ".svg", so that a wrong one can be refused before a run.
bool isPictureFileName(std::string_view name);

/// Draws the map of a finished run. The node files are read twice, in memory that does not grow with them.
///
/// @return empty on success, else a sentence that says why no picture was written.
std::string drawMap(const MapRequest& request);

} // namespace vadelwatch
