// Sanitizer defaults for every fuzz target, compiled into each one directly so that the linker
// keeps the hook.

extern "C" {

// The framework replaces the plain operator new and delete with malloc and free (for its
// out-of-memory report) and leaves the nothrow forms to the sanitizer's runtime, which libFuzzer
// uses: its buffers are then freed by our delete. That is a mismatch between two allocators
// that both end in malloc, not a fault of the code under test.
const char* __asan_default_options()
{
    return "alloc_dealloc_mismatch=0";
}
}
