/// \file
/// The map of a run: outlines, kept and dropped nodes, axes and legend.
#pragma once

#include "watch/map/layout.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vadelwatch {

struct MapRequest {
    std::string inputDirectory;
    std::string outputDirectory;
    std::string boundaryFile;
    /// Ends in ".png" or ".svg" (see `isPictureFileName`). An existing file is removed before anything is drawn.
    std::string pictureFile;
    /// Why the output of the run is not reliable: drawn in a red banner. Empty for none.
    std::string warning = {};
    /// Colours kept nodes by their elevation, not by their density.
    bool showsElevation = false;
    PictureSize size = {};
    /// Date and time for the subtitle.
    std::string date = {};
};

/// Returns true if a name ends in ".png" or ".svg". Another name is refused before a run.
bool isPictureFileName(std::string_view name);

/// Returns the name of the world file that places a PNG picture in the coordinates of the data: ".pgw" in place of ".png".
/// Empty for another picture.
std::string worldFileOf(const std::string& pictureFile);

/// Reads "1200x900", from 800x600 to 4096x4096. Returns nothing for anything else.
std::optional<PictureSize> readPictureSize(std::string_view text);

/// Draws the map of a finished run in bounded memory. Reads the node files once up to a million nodes, otherwise twice.
///
/// @return an error message if no picture was written, empty on success.
std::string drawMap(const MapRequest& request);

} // namespace vadelwatch
