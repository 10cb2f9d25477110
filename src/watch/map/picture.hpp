/// \file
/// The map of a run: outlines, kept and dropped nodes, axes and legend.
#pragma once

#include "watch/check/node_files.hpp"
#include "watch/map/layout.hpp"

#include <cstdint>
#include <functional>
#include <string>

namespace vadelwatch {

struct MapRequest {
    NodeFiles nodeFiles; ///< As they were when the run began.
    std::string inputDirectory;
    std::string outputDirectory;
    std::string boundaryFile;
    /// See `isPictureFileName`. An existing file is removed before anything is drawn.
    std::string pictureFile;
    /// Why the output of the run is not reliable: drawn in a red banner. Empty for none.
    std::string warning = {};
    /// Colours kept nodes by their elevation, not by their density.
    bool showsElevation = false;
    PictureSize size = {};
    /// Date and time for the subtitle.
    std::string date = {};
    /// Of all node files, for the percentage. 0 if unknown.
    std::uint64_t nodes = 0;
    std::function<void(double percent)> showPercent = {};
};

/// Draws the map of a finished run in bounded memory. Reads the node files once up to a million nodes, otherwise twice.
///
/// @return an error message if no picture was written, empty on success.
/// @throws std::exception if the picture cannot be drawn.
std::string drawMap(const MapRequest& request);

} // namespace vadelwatch
