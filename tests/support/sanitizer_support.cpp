// Settings of the address sanitizer for the unit tests; without it nobody calls this.

extern "C" const char* __asan_default_options(); // NOLINT(bugprone-reserved-identifier): the sanitizer's name for it

// A directory in place of the boundary file claims to have as many bytes as a file can have at all. The XML library asks
// for that much memory and copes with the refusal.
extern "C" const char* __asan_default_options() { // NOLINT(bugprone-reserved-identifier)
    return "allocator_may_return_null=1";
}
