/// \file
/// The one-time set-up of the gettext catalogues next to the executable.
#pragma once

#include <string>

namespace vadelclip {

/// Makes a locale for `language` global, with the translations of
/// `<directory of the executable>/locale/<language folder>/LC_MESSAGES/<domain>.mo` if that file exists.
///
/// A missing catalogue is no error: every message keeps its English id. Numbers keep the classic notation under every
/// locale made here.
///
/// @param language name of a locale without its character set; any bytes, may be empty. ".utf8" is added to it.
/// @throws boost::locale::conv::conversion_error if the bytes of the catalogue do not fit its character set.
/// @throws std::runtime_error if the file is not a catalogue, or if `language` names an unknown character set and has a
///         catalogue.
void setUpCatalogue(const std::string& language, const std::string& domain);

/// Sets up the catalogue `VD2D` of the tool, also for `std::cout`.
///
/// Reports a catalogue whose bytes do not fit its character set as one console line, and keeps the classic locale.
///
/// @param language the value of the option "-lang=".
/// @throws std::runtime_error as `setUpCatalogue` does. The callers do not handle it: a broken installation ends the
///         process abnormally.
void setUpMessageCatalogues(const std::string& language);

/// Returns the directory of the catalogues: `locale` in the directory of the executable. Does not check if it exists.
///
/// @param executable full path. If it is empty because the platform does not provide it, the result is empty too.
std::string catalogueSearchPath(const std::string& executable);

} // namespace vadelclip
