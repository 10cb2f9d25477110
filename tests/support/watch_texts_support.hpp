/// \file
/// Vadelwatch's texts in both of its languages.
#pragma once

#include "watch/watch_texts.hpp"

inline const WatchTexts& english = watchTexts("en");
inline const WatchTexts& german = watchTexts("de");
