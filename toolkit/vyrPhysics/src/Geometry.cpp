/// A shape with a place, a material and a name.
#include <vyrCollide/Geometry.h>

#include <vyr/Material.h>
#include <vyr/Notify.h>
#include <vyr/RigidBody.h>
#include <vyrCollide/Shape.h>
#include <vyrSDK/Simulation.h>

#include "BulletConvert.h"
#include "GeometryNative.h"
#include "Validate.h"

#include <algorithm>

namespace vyrCollide {

Geometry::Geometry(Shape* shape, const vyr::String& name)
    : m_name(name)
    , m_native(std::make_unique<GeometryNative>()) {
  vyr::ref_ptr<Shape> holder = shape;
  if (shape != nullptr && shape->isValid()) {
    m_shape = shape;
  } else {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the geometry '" << name << "' has no valid shape";
  }
}

Geometry::~Geometry() = default;

bool Geometry::isValid() const {
  return m_shape.valid();
}

Shape* Geometry::getShape() const {
  return m_shape.get();
}

vyrSDK::Simulation* Geometry::getSimulation() const {
  return m_body != nullptr ? m_body->getSimulation() : m_simulation;
}

vyr::AffineMatrix4x4 Geometry::getTransform() const {
  return m_body != nullptr ? m_localTransform * m_body->getTransform() : m_localTransform;
}

void Geometry::setLocalTransform(const vyr::AffineMatrix4x4& transform) {
  if (!vyrPhysics::isFinite(transform, "transform of a geometry")) {
    return;
  }
  m_localTransform = vyrPhysics::fromBullet(vyrPhysics::toBullet(transform));
  changed();
}

void Geometry::setMaterial(vyr::Material* material) {
  m_material = material;
  changed();
}

vyr::Material* Geometry::getMaterial() const {
  return m_material ? m_material.get() : vyr::Material::getDefault();
}

void Geometry::setSensor(bool sensor) {
  if (sensor != m_sensor) {
    m_sensor = sensor;
    changed();
  }
}

void Geometry::setEnableCollisions(bool enable) {
  if (enable != m_collides) {
    m_collides = enable;
    changed();
  }
}

Bounds Geometry::getWorldBounds() const {
  Bounds world;
  if (!m_shape) {
    return world;
  }
  const Bounds local = m_shape->getBounds();
  const vyr::AffineMatrix4x4 transform = getTransform();
  for (int corner = 0; corner < 8; ++corner) {
    const vyr::Vec3 point =
        vyr::Vec3((corner & 1) != 0 ? local.max.x() : local.min.x(), (corner & 2) != 0 ? local.max.y() : local.min.y(),
                  (corner & 4) != 0 ? local.max.z() : local.min.z()) *
        transform;
    for (size_t axis = 0; axis < 3; ++axis) {
      world.min[axis] = corner == 0 ? point[axis] : std::min(world.min[axis], point[axis]);
      world.max[axis] = corner == 0 ? point[axis] : std::max(world.max[axis], point[axis]);
    }
  }
  return world;
}

void Geometry::createInstance(bool moving, int index) {
  if (!m_native->instance || m_native->moving != moving) {
    m_native->instance = m_shape->createInstance(moving);
    m_native->moving = moving;
  }
  m_native->instance->getShape()->setUserPointer(this);
  m_native->instance->getShape()->setUserIndex(index);
}

void Geometry::changed() {
  if (m_body != nullptr) {
    m_body->rebuild();
  } else if (m_simulation != nullptr) {
    m_simulation->refresh(this);
  }
}

} // namespace vyrCollide
