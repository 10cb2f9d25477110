/// \file
/// The tables behind `watchTexts`, one for each language. A new text has its place in both.
#pragma once

#include "watch/show/watch_texts.hpp"

namespace vadelwatch {

extern const WatchTexts englishTexts;
extern const WatchTexts germanTexts;

} // namespace vadelwatch
