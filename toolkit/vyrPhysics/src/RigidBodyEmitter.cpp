/// A source that lets bodies into a simulation at a given rate.
#include <vyr/RigidBodyEmitter.h>

#include <vyr/Material.h>
#include <vyr/Notify.h>
#include <vyrSDK/Simulation.h>

#include "Find.h"
#include "Validate.h"

#include <cmath>
#include <limits>

namespace vyr {

RigidBodyEmitter::RigidBodyEmitter(uint64_t seed)
    : m_life(std::numeric_limits<double>::infinity())
    , m_maximum(std::numeric_limits<size_t>::max())
    , m_generator(seed) {}

RigidBodyEmitter::~RigidBodyEmitter() = default;

void RigidBodyEmitter::setSeed(uint64_t seed) {
  m_generator.seed(seed);
}

double RigidBodyEmitter::random() {
  // The upper 53 bits as a fraction: the standard library's distributions differ between libraries.
  return static_cast<double>(m_generator() >> 11) / 9007199254740992.0;
}

void RigidBodyEmitter::setShape(vyrCollide::Shape* shape, Material* material) {
  m_shape = shape;
  m_material = material;
  m_factory = [shapeHolder = m_shape, materialHolder = m_material](const std::function<double()>&) {
    auto* geometry = new vyrCollide::Geometry(shapeHolder.get());
    geometry->setMaterial(materialHolder.get());
    return geometry;
  };
}

void RigidBodyEmitter::setGeometryFactory(const GeometryFactory& factory) {
  m_factory = factory;
  m_shape = nullptr;
  m_material = nullptr;
}

bool RigidBodyEmitter::setRate(double rate) {
  if (!vyrPhysics::isNotNegative(rate, "rate of an emitter")) {
    return false;
  }
  m_rate = rate;
  return true;
}

bool RigidBodyEmitter::setLife(double life) {
  if (!(life > 0.0)) {
    VYR_NOTIFY(NOTIFY_ERROR) << "life of emitted bodies must be above 0, not " << life;
    return false;
  }
  m_life = life;
  return true;
}

bool RigidBodyEmitter::setRegion(const vyrCollide::Bounds& region) {
  if (!region.isValid() || !region.min.isFinite() || !region.max.isFinite()) {
    VYR_NOTIFY(NOTIFY_ERROR) << "region of an emitter must not reach from " << region.min << " to " << region.max;
    return false;
  }
  m_region = region;
  return true;
}

void RigidBodyEmitter::setTransform(const AffineMatrix4x4& transform) {
  if (vyrPhysics::isFinite(transform, "transform of an emitter")) {
    m_transform = transform;
  }
}

void RigidBodyEmitter::setVelocity(const Vec3& velocity) {
  if (vyrPhysics::isFinite(velocity, "velocity of emitted bodies")) {
    m_velocity = velocity;
  }
}

void RigidBodyEmitter::simulationChanged(vyrSDK::Simulation* simulation) {
  m_simulation = simulation;
}

void RigidBodyEmitter::emitBody() {
  const Vec3 size = m_region.getSize();
  const double x = random();
  const double y = random();
  const double z = random();
  const Vec3 place = (m_region.min + Vec3(x * size.x(), y * size.y(), z * size.z())) * m_transform;
  // Source: Shoemake, Uniform random rotations, Graphics Gems III, 1992: three numbers give a rotation evenly spread.
  const double u1 = random();
  const double u2 = random() * 2.0 * std::acos(-1.0);
  const double u3 = random() * 2.0 * std::acos(-1.0);
  const double a = std::sqrt(1.0 - u1);
  const double b = std::sqrt(u1);
  const Quat rotation(a * std::sin(u2), a * std::cos(u2), b * std::sin(u3), b * std::cos(u3));
  // It may put another factory in its own place.
  const GeometryFactory factory = m_factory;
  ref_ptr<vyrCollide::Geometry> geometry = factory([this] { return random(); });
  ++m_emitted;
  if (!geometry || !geometry->isValid()) {
    return;
  }
  ref_ptr<RigidBody> body = new RigidBody(m_name);
  if (!body->add(geometry.get())) {
    return;
  }
  body->setTransform(AffineMatrix4x4(rotation, place));
  body->setVelocity(m_transform.transform3x3(m_velocity));
  if (m_simulation->add(body.get())) {
    m_bodies.push_back(body);
    m_births.push_back(m_simulation->getTime());
  }
}

void RigidBodyEmitter::removeOldBodies() {
  for (size_t i = 0; i < m_bodies.size();) {
    const bool gone = m_bodies[i]->getSimulation() != m_simulation;
    if (gone || m_simulation->getTime() - m_births[i] >= m_life) {
      m_simulation->remove(m_bodies[i].get());
      m_bodies.erase(m_bodies.begin() + static_cast<std::ptrdiff_t>(i));
      m_births.erase(m_births.begin() + static_cast<std::ptrdiff_t>(i));
    } else {
      ++i;
    }
  }
}

void RigidBodyEmitter::pre(const TimeStamp&) {
  if (m_simulation == nullptr) {
    return;
  }
  removeOldBodies();
  if (!m_enable || !m_factory) {
    return;
  }
  m_due += m_rate * m_simulation->getTimeStep();
  // A hair of slack, so that a rate of 60 at 60 steps a second gives one body a step in spite of rounding.
  for (; m_due >= 1.0 - 1.0e-9 && m_emitted < m_maximum; m_due -= 1.0) {
    emitBody();
  }
}

} // namespace vyr
