// Forwards requests for visuals to the group that the application named.
#include <vyrOSG/OSGSceneRoot.h>

#include <vyrOSG/utils.h>

#include <vyr/ref_ptr.h>

namespace vyrOSG {

namespace {

/// The instance is made on first use and leaves with the process, after the groups that applications hold.
vyr::ref_ptr<OSGSceneRoot>& holder() {
  static vyr::ref_ptr<OSGSceneRoot> s_instance;
  return s_instance;
}

} // namespace

OSGSceneRoot::OSGSceneRoot() = default;
OSGSceneRoot::~OSGSceneRoot() = default;

OSGSceneRoot* OSGSceneRoot::instance() {
  if (!holder()) {
    holder() = new OSGSceneRoot;
    vyrUtil::SceneRoot::setInstance(holder().get());
  }
  return holder().get();
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
