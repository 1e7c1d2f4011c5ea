/// What a geometry is made of: density, friction and restitution.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/VyrString.h>
#include <vyrPhysics/export.h>

namespace vyr {

/// A material, shared by any number of geometries.
///
/// Where two geometries touch, the friction coefficient is the geometric mean of the two (two pieces of one material
/// rub as that material; ice makes any pair slippery), and the restitution is the larger of the two (a rubber ball
/// bounces on any floor).
class VYRPHYSICS_EXPORT Material : public Referenced {
public:
  /// `density` in kg/m^3, default that of water.
  explicit Material(const String& name = String(), double density = 1000.0, double friction = 0.5,
                    double restitution = 0.0);

  void setName(const String& name) { m_name = name; }
  const String& getName() const { return m_name; }

  /// Density in kg/m^3, above 0; other values are refused with one error message. Bodies that are already made of the
  /// material take the new value with RigidBody::updateMassProperties().
  bool setDensity(double density);
  double getDensity() const { return m_density; }

  /// Coulomb friction coefficient, at least 0; other values are refused with one error message.
  bool setFriction(double friction);
  double getFriction() const { return m_friction; }

  /// Speed after over speed before a head-on collision, 0 to 1; other values are refused with one error message.
  bool setRestitution(double restitution);
  double getRestitution() const { return m_restitution; }

  /// Coefficient of rolling friction in m (the lever arm of the resistance), at least 0. Default: 0.
  bool setRollingFriction(double arm);
  double getRollingFriction() const { return m_rollingFriction; }

  /// Friction coefficient of a contact between the two materials.
  static double combineFriction(const Material& first, const Material& second);

  /// Restitution of a contact between the two materials.
  static double combineRestitution(const Material& first, const Material& second);

  /// *returns inner*. The material of geometries that were given none. Never null.
  static Material* getDefault();

protected:
  ~Material() override;

private:
  String m_name;
  double m_density = 1000.0;
  double m_friction = 0.5;
  double m_restitution = 0.0;
  double m_rollingFriction = 0.0;
};

} // namespace vyr
