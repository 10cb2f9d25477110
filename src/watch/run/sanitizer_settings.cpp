// Settings of the leak sanitizer, for every executable of a sanitized build that draws maps. Other builds leave this out.

// The library that finds the fonts keeps what it has found until the process ends. The name is the sanitizer's.
// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming)
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)
