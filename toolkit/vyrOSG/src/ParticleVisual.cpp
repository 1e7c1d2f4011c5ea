// Draws particle systems, their contacts and their paths.
#include <vyrOSG/utils.h>

#include "ParticleData.h"
#include "Surface.h"
#include "Trails.h"

#include <vyrOSG/Conversions.h>

#include <vyr/Notify.h>
#include <vyr/ParticleSystem.h>
#include <vyr/observer_ptr.h>

#include <osg/LineWidth>
#include <osg/NodeVisitor>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

/// Finds the first particle drawable below a node, whether it is hidden or not.
class ParticleFinder : public osg::NodeVisitor {
public:
  ParticleFinder()
      : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {
    setNodeMaskOverride(~0u);
  }

  void apply(osg::Node& node) override {
    if (!m_found)
      traverse(node);
  }

  void apply(osg::Drawable& drawable) override {
    if (!m_found)
      m_found = dynamic_cast<ParticleSystemDrawable*>(&drawable);
  }

  ParticleSystemDrawable* m_found = nullptr;
};

/// Blue for 0, over green, to red for 1.
osg::Vec4 rampColor(double share) {
  const auto s = float(std::clamp(share, 0.0, 1.0));
  const osg::Vec4 low(0.15f, 0.35f, 0.9f, 1);
  const osg::Vec4 middle(0.2f, 0.75f, 0.3f, 1);
  const osg::Vec4 high(0.9f, 0.2f, 0.15f, 1);
  return s < 0.5f ? low * (1 - 2 * s) + middle * (2 * s) : middle * (2 - 2 * s) + high * (2 * s - 1);
}

/// Draws the contacts of the last step anew in every update traversal.
class ContactGraphCallback : public osg::DrawableUpdateCallback {
public:
  ContactGraphCallback(vyr::ParticleSystem* system, double minForce, double maxForce)
      : m_system(system)
      , m_minForce(minForce)
      , m_maxForce(maxForce) {}

  void update(osg::NodeVisitor*, osg::Drawable* drawable) override {
    osg::Geometry& lines = *drawable->asGeometry();
    auto& vertices = static_cast<osg::Vec3Array&>(*lines.getVertexArray());
    auto& colors = static_cast<osg::Vec4Array&>(*lines.getColorArray());
    vertices.clear();
    colors.clear();
    if (m_system) {
      for (const vyr::ParticleContact& contact : m_system->getContacts()) {
        if (contact.particle2 == vyr::ParticleContact::kNone)
          continue;
        const double range = m_maxForce - m_minForce;
        const osg::Vec4 color = rampColor(range > 0 ? (contact.normalForce - m_minForce) / range : 1);
        for (size_t end : {contact.particle1, contact.particle2}) {
          vertices.push_back(osg::Vec3(toOsg(m_system->getPosition(end))));
          colors.push_back(color);
        }
      }
    }
    static_cast<osg::DrawArrays&>(*lines.getPrimitiveSet(0)).setCount(static_cast<int>(vertices.size()));
    vertices.dirty();
    colors.dirty();
    lines.getPrimitiveSet(0)->dirty();
    lines.dirtyBound();
  }

private:
  vyr::observer_ptr<vyr::ParticleSystem> m_system;
  double m_minForce;
  double m_maxForce;
};

/// The share of its size that a particle is drawn with: it shrinks away over the last part of its life.
float remainingSize(const vyr::ParticleSystem& system, size_t index) {
  constexpr double kLastPart = 0.15;
  const double life = system.getLife(index);
  const double initialLife = system.getInitialLife(index);
  if (!std::isfinite(initialLife) || initialLife <= 0)
    return 1;
  return float(std::clamp(life / (kLastPart * initialLife), 0.0, 1.0));
}

} // namespace

std::vector<ParticleData> readParticles(vyr::ParticleSystem* system) {
  std::vector<ParticleData> particles;
  if (!system)
    return particles;
  const size_t count = system->getNumParticles();
  particles.reserve(count);
  for (size_t i = 0; i < count; ++i) {
    const vyr::Quat rotation = system->getRotation(i);
    particles.push_back({osg::Vec3(toOsg(system->getPosition(i))),
                         osg::Vec4(float(rotation.x()), float(rotation.y()), float(rotation.z()), float(rotation.w())),
                         toOsg(system->getColor(i)), float(system->getRadius(i)) * remainingSize(*system, i)});
  }
  return particles;
}

osg::Geode* createVisual(vyr::ParticleSystem* particleSystem, vyrOSG::Group* group,
                         ParticleSystemDrawable::ParticleRenderingMode renderingMode,
                         ParticleSystemDrawable::ParticleShaderMode shaderMode) {
  if (!particleSystem || !group)
    return nullptr;
  if (renderingMode < ParticleSystemDrawable::SPRITES || renderingMode > ParticleSystemDrawable::TRIANGLES) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::createVisual: " << int(renderingMode)
                                  << " is no rendering mode for particles; they run from 0 to "
                                  << int(ParticleSystemDrawable::TRIANGLES);
    return nullptr;
  }
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->setName(particleSystem->getName());
  geode->addDrawable(new ParticleSystemDrawable(particleSystem, renderingMode, shaderMode));
  group->addChild(geode);
  return geode.get();
}

vyrOSG::ParticleSystemDrawable* findParticleSystemDrawable(osg::Group* group) {
  if (!group)
    return nullptr;
  ParticleFinder finder;
  group->accept(finder);
  return finder.m_found;
}

osg::Geode* createParticleContactGraph(vyr::ParticleSystem* particleSystem, vyrOSG::Group* group, double minForce,
                                       double maxForce) {
  if (!particleSystem || !group)
    return nullptr;
  if (!std::isfinite(minForce) || !std::isfinite(maxForce) || minForce > maxForce) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::createParticleContactGraph: from " << minForce << " N to " << maxForce
                                  << " N is no range";
    return nullptr;
  }
  osg::ref_ptr<osg::Geometry> lines = new osg::Geometry;
  lines->setVertexArray(new osg::Vec3Array);
  lines->setColorArray(new osg::Vec4Array, osg::Array::BIND_PER_VERTEX);
  lines->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, 0));
  lines->setUseDisplayList(false);
  lines->setUseVertexBufferObjects(true);
  lines->setDataVariance(osg::Object::DYNAMIC);
  lines->setUpdateCallback(new ContactGraphCallback(particleSystem, minForce, maxForce));
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->setName("particle contacts");
  geode->addDrawable(lines);
  surface::setLineLook(geode);
  geode->getOrCreateStateSet()->setAttribute(new osg::LineWidth(2));
  group->addChild(geode);
  return geode.get();
}

osg::Geode* createParticleTrajectoriesVisual(vyr::ParticleSystem* particleSystem, vyrOSG::Group* group,
                                             double timeInterval, size_t maxPoints) {
  if (!particleSystem || !group)
    return nullptr;
  const vyr::observer_ptr<vyr::ParticleSystem> observed(particleSystem);
  TrailSource source;
  source.simulation = [observed] { return observed ? observed->getSimulation() : nullptr; };
  source.points = [observed] {
    std::vector<TrailPoint> points;
    const size_t count = observed ? observed->getNumParticles() : 0;
    for (size_t i = 0; i < count; ++i)
      points.push_back({observed->getId(i), osg::Vec3(toOsg(observed->getPosition(i))), toOsg(observed->getColor(i))});
    return points;
  };
  osg::ref_ptr<osg::Geode> geode =
      makeTrails("vyrOSG::createParticleTrajectoriesVisual", source, timeInterval, maxPoints);
  if (!geode)
    return nullptr;
  geode->setName("particle trajectories");
  group->addChild(geode);
  return geode.get();
}

} // namespace vyrOSG
