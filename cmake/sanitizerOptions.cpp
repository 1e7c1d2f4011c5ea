/// The sanitizers' settings of every program that is built with them.

// Seen by the sanitizers' library, whatever the visibility of everything else in the program.
#define VYR_SANITIZER_OPTIONS extern "C" __attribute__((visibility("default")))

/// The script runtime's default collector frees with free() what C++ allocated with new: that is the bound behaviour.
/// Leaks are looked for only where a test asks for it (vyr_add_test, LEAKS): the graphics drivers keep memory until the
/// process ends, and what scripts make by `new` and give to nobody stays.
VYR_SANITIZER_OPTIONS const char* __asan_default_options();
const char* __asan_default_options() {
  return "alloc_dealloc_mismatch=0:detect_leaks=0";
}

VYR_SANITIZER_OPTIONS const char* __ubsan_default_options();
const char* __ubsan_default_options() {
  return "print_stacktrace=1";
}
