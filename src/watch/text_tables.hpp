/// \file
/// The tables behind `watchTexts`, one for each language. A new text has its place in both.
#pragma once

#include "watch/watch_texts.hpp"

extern const WatchTexts englishTexts;
extern const WatchTexts germanTexts;
