/// \file
/// The one-time set-up of the gettext catalogues that lie beside the executable.
#pragma once

#include <string>

namespace vadelclip {

/// Makes a locale for `language` global, with the translations of
/// `<directory of the executable>/locale/<language folder>/LC_MESSAGES/VD2D.mo` where that file exists.
///
/// Absent catalogues are no error: every message keeps its English id. A catalogue whose bytes do not fit its
/// character set is reported as one console line, and the classic locale stays. Numbers keep the classic notation
/// under every locale made here.
///
/// @param language the value of the option "-lang=", any bytes, may be empty; ".utf8" is added to it.
/// @throws std::runtime_error for a catalogue that is not one (a corrupt file), or for a language value that names
///         an unknown character set and has a catalogue. Nothing above handles it: a broken installation ends the process abnormally.
void setUpMessageCatalogues(const std::string& language);

/// Gives the directory where catalogues are looked for: `locale` beside the executable. Whether it exists is not tested.
///
/// @param executable full path; where it is empty because the platform does not tell it, the result is empty too.
std::string catalogueSearchPath(const std::string& executable);

} // namespace vadelclip
