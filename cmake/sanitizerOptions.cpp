/// The sanitizers' settings of every program that is built with them.

// Seen by the sanitizers' library, whatever the visibility of everything else in the program.
#define VYR_SANITIZER_OPTIONS extern "C" __attribute__((visibility("default")))

/// The script runtime's default collector frees with free() what C++ allocated with new: that is the bound behaviour.
/// Leaks are looked for where a test asks for it (vyr_add_test, LEAKS).
VYR_SANITIZER_OPTIONS const char* __asan_default_options();
const char* __asan_default_options() {
  return "alloc_dealloc_mismatch=0:detect_leaks=0";
}

VYR_SANITIZER_OPTIONS const char* __ubsan_default_options();
const char* __ubsan_default_options() {
  return "print_stacktrace=1";
}

VYR_SANITIZER_OPTIONS const char* __lsan_default_options();
const char* __lsan_default_options() {
  return "print_suppressions=0";
}

/// What stays on purpose, and what others leave behind. A line names a function or a library of the allocation's stack.
VYR_SANITIZER_OPTIONS const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() {
  return
      // The graphics driver keeps its contexts' memory until the process ends.
      "leak:swrast_dri.so\n"
      "leak:libgallium\n"
      "leak:libEGL_mesa.so\n"
      "leak:libGLX_mesa.so\n"
      "leak:libLLVM\n"
      // The scene-graph library's readers and writers of file formats lose memory with some files.
      "leak:osgdb_\n"
      // The library behind the reader of Inventor files fills tables of its own once.
      "leak:libCoin.so\n"
      // What a script makes by Class:new() and gives to nobody stays: Lua does not own it. The names are the wrappers',
      // whose last digit ends the name; a pattern's star takes as little as it can, so doubled digits stand for
      // themselves.
      "leak:tolua_*_new00$\n"
      "leak:tolua_*_new11$\n"
      "leak:tolua_*_new22$\n"
      "leak:tolua_*_new*0$\n"
      "leak:tolua_*_new*1$\n"
      "leak:tolua_*_new*2$\n"
      "leak:tolua_*_new*3$\n"
      "leak:tolua_*_new*4$\n"
      "leak:tolua_*_new*5$\n"
      "leak:tolua_*_new*6$\n"
      "leak:tolua_*_new*7$\n"
      "leak:tolua_*_new*8$\n"
      "leak:tolua_*_new*9$\n"
      // Uniforms made by a call are freed without a destructor: the runtime's default collector knows none.
      "leak:osg::Uniform::allocateDataArray\n";
}
