// A shared library that has no entry point.
extern "C" __attribute__((visibility("default"))) int initPlugins() {
  return 1;
}
