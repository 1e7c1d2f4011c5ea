/// How the looks of things get into scene files and out of them.
#include <vyrSDK/SceneVisuals.h>

namespace vyrSDK {

namespace {

SceneVisuals* g_writer = nullptr;

} // namespace

SceneVisuals::~SceneVisuals() {
  if (g_writer == this) {
    g_writer = nullptr;
  }
}

SceneVisuals* SceneVisuals::getWriter() {
  return g_writer;
}

void SceneVisuals::setWriter(SceneVisuals* writer) {
  g_writer = writer;
}

} // namespace vyrSDK
