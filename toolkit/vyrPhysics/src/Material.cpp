/// What a geometry is made of.
#include <vyr/Material.h>

#include <vyr/ref_ptr.h>

#include "Validate.h"

#include <algorithm>
#include <cmath>

namespace vyr {

Material::Material(const String& name, double density, double friction, double restitution)
    : m_name(name) {
  setDensity(density);
  setFriction(friction);
  setRestitution(restitution);
}

Material::~Material() = default;

bool Material::setDensity(double density) {
  if (!vyrPhysics::isPositive(density, "density of a material")) {
    return false;
  }
  m_density = density;
  return true;
}

bool Material::setFriction(double friction) {
  if (!vyrPhysics::isNotNegative(friction, "friction of a material")) {
    return false;
  }
  m_friction = friction;
  return true;
}

bool Material::setRestitution(double restitution) {
  if (!(restitution >= 0.0 && restitution <= 1.0)) {
    VYR_NOTIFY(NOTIFY_ERROR) << "restitution of a material must be from 0 to 1, not " << restitution;
    return false;
  }
  m_restitution = restitution;
  return true;
}

bool Material::setRollingFriction(double arm) {
  if (!vyrPhysics::isNotNegative(arm, "rolling friction of a material")) {
    return false;
  }
  m_rollingFriction = arm;
  return true;
}

double Material::combineFriction(const Material& first, const Material& second) {
  return std::sqrt(first.m_friction * second.m_friction);
}

double Material::combineRestitution(const Material& first, const Material& second) {
  return std::max(first.m_restitution, second.m_restitution);
}

Material* Material::getDefault() {
  static const ref_ptr<Material> material = new Material("default");
  return material.get();
}

} // namespace vyr
