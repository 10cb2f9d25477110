/// \file
/// Vadelwatch's texts in both of its languages.
#pragma once

#include "watch/show/watch_texts.hpp"

namespace vadelwatch {

inline const WatchTexts& english = watchTexts("en");
inline const WatchTexts& german = watchTexts("de");

} // namespace vadelwatch
