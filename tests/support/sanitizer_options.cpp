// Sanitizer defaults for every test executable. Compiled into each test directly (not through a
// library) so the linker always keeps these hooks.

extern "C" {

// Oversized requests must come back as null so the out-of-memory handler's path is what runs.
const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}

// Leaks inside system libraries that we cannot fix; the same list lives in tests/lsan.supp.
const char* __lsan_default_suppressions()
{
    return "leak:libfontconfig.so\n"
           "leak:libdbus-1.so\n"
           "leak:libX11.so\n";
}
}
