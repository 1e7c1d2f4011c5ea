// Draws the bodies of emitters as they come and go.
#include <vyrOSG/utils.h>

#include "GeometryVisual.h"

#include <vyr/RigidBodyEmitter.h>
#include <vyr/observer_ptr.h>

#include <osg/NodeVisitor>

#include <map>

namespace vyrOSG {

namespace {

/// Compares the emitter's bodies with those that are drawn, before the children are visited.
class EmitterCallback : public osg::NodeCallback {
public:
  explicit EmitterCallback(vyr::RigidBodyEmitter* emitter)
      : m_emitter(emitter) {}

  void operator()(osg::Node* node, osg::NodeVisitor* visitor) override {
    follow(static_cast<vyrOSG::Group*>(node));
    traverse(node, visitor);
  }

  void follow(vyrOSG::Group* group) {
    for (auto& entry : m_drawn)
      entry.second.isAlive = false;
    if (m_emitter) {
      for (const vyr::ref_ptr<vyr::RigidBody>& body : m_emitter->getRigidBodies()) {
        Drawn& drawn = m_drawn[body];
        drawn.isAlive = true;
        if (!drawn.visual)
          drawn.visual = createBodyVisual(body.get(), group, kDetailRatio, m_count++);
      }
    }
    for (auto i = m_drawn.begin(); i != m_drawn.end();) {
      if (i->second.isAlive) {
        ++i;
      } else {
        group->removeChild(i->second.visual);
        i = m_drawn.erase(i);
      }
    }
  }

private:
  static constexpr float kDetailRatio = 0.2f;

  struct Drawn {
    osg::ref_ptr<vyrOSG::Group> visual;
    bool isAlive = false;
  };

  vyr::observer_ptr<vyr::RigidBodyEmitter> m_emitter;
  // The bodies are held until their visuals leave, so that no new body comes to lie at the address of one that is
  // drawn.
  std::map<vyr::ref_ptr<vyr::RigidBody>, Drawn> m_drawn;
  unsigned int m_count = 0;
};

} // namespace

osg::Group* createVisual(vyr::RigidBodyEmitter* emitter, vyrOSG::Group* group) {
  if (!emitter || !group)
    return nullptr;
  osg::ref_ptr<vyrOSG::Group> bodies = new vyrOSG::Group;
  bodies->setName(emitter->getName());
  osg::ref_ptr<EmitterCallback> callback = new EmitterCallback(emitter);
  callback->follow(bodies.get());
  bodies->setUpdateCallback(callback);
  group->addChild(bodies.get());
  return bodies.get();
}

} // namespace vyrOSG
