/// The sanitizers' settings of every program that is built with them.

extern "C" {

/// The script runtime's default collector frees with free() what C++ allocated with new: that is the bound behaviour.
/// Leaks are not looked for: the graphics drivers keep memory until the process ends.
const char* __asan_default_options();
const char* __asan_default_options() {
  return "alloc_dealloc_mismatch=0:detect_leaks=0";
}

const char* __ubsan_default_options();
const char* __ubsan_default_options() {
  return "print_stacktrace=1";
}
}
