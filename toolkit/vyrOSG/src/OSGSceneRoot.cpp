// Forwards requests for visuals to the group that the application named.
#include <vyrOSG/OSGSceneRoot.h>

#include <vyrOSG/utils.h>

namespace vyrOSG {

OSGSceneRoot::OSGSceneRoot() {
  vyrUtil::SceneRoot::setInstance(this);
}

OSGSceneRoot::~OSGSceneRoot() {
  if (vyrUtil::SceneRoot::getInstance() == this)
    vyrUtil::SceneRoot::setInstance(nullptr);
}

OSGSceneRoot* OSGSceneRoot::instance() {
  static OSGSceneRoot s_instance;
  return &s_instance;
}

void OSGSceneRoot::create(vyrOSG::Group* root) {
  instance()->m_root = root;
}

vyrOSG::Group* OSGSceneRoot::get() {
  return instance()->m_root.get();
}

void OSGSceneRoot::set(vyrOSG::Group* root) {
  instance()->m_root = root;
}

bool OSGSceneRoot::createVisual(vyr::RigidBody* body, float detailRatio) {
  return m_root && vyrOSG::createVisual(body, m_root.get(), detailRatio) != nullptr;
}

bool OSGSceneRoot::createVisual(vyrCollide::Geometry* geometry, float detailRatio) {
  return m_root && vyrOSG::createVisual(geometry, m_root.get(), detailRatio) != nullptr;
}

} // namespace vyrOSG
