/// Interface through which things of the simulation get their drawings.
#include <vyrUtil/SceneRoot.h>

namespace vyrUtil {

namespace {

SceneRoot* g_instance = nullptr;

} // namespace

SceneRoot::~SceneRoot() {
  if (g_instance == this) {
    g_instance = nullptr;
  }
}

SceneRoot* SceneRoot::getInstance() {
  return g_instance;
}

void SceneRoot::setInstance(SceneRoot* root) {
  g_instance = root;
}

} // namespace vyrUtil
