// Settings of the address sanitizer for the unit tests. Only the sanitizer calls this function.

extern "C" const char* __asan_default_options(); // NOLINT(bugprone-reserved-identifier): the sanitizer needs this name

// A directory in place of the boundary file reports the maximum size of a file. The XML library tries to allocate this
// much memory and handles the failure.
extern "C" const char* __asan_default_options() { // NOLINT(bugprone-reserved-identifier)
    return "allocator_may_return_null=1";
}
