// Settings of the leak sanitizer, for each executable of a sanitized build that draws maps.

// The libraries for fonts and text keep their tables until the process ends. The sanitizer prescribes the function's name.
// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming)
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\nleak:libpango\nleak:libglib\n";
}
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)
