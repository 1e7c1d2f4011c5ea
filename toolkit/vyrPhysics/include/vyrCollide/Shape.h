/// The form of a piece of matter, without place, material or motion: what a geometry collides with.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/SPDMatrix3x3.h>
#include <vyr/Vec3.h>
#include <vyrCollide/Bounds.h>
#include <vyrPhysics/export.h>

#include <memory>

namespace vyrCollide {

class ShapeInstance;

/// What a form weighs per unit of density: volume, centre of mass and second moments.
struct MassProperties {
  double volume = 0.0;       ///< in m^3; 0 for forms without inside
  vyr::Vec3 center;          ///< centre of mass in the shape's frame, in m
  double inertia[3][3] = {}; ///< inertia about the centre, for density 1 kg/m^3, in m^5; row, column; symmetric
};

/// Base of all forms. A shape may be shared by any number of geometries.
///
/// Sizes that are negative, zero or not finite give an invalid shape: one error message, isValid() is false, and no
/// geometry is made from it.
class VYRPHYSICS_EXPORT Shape : public vyr::Referenced {
public:
  enum Type { BOX, SPHERE, CAPSULE, CYLINDER, PLANE, HEIGHT_FIELD, TRIMESH };

  /// Which of the forms this is; tells the class to cast to.
  virtual Type getType() const = 0;

  /// False when the constructor was given sizes that no body can have.
  bool isValid() const { return m_valid; }

  /// Smallest axis-aligned box around the form, in its frame, in m. A plane reports +-1e6 m.
  virtual Bounds getBounds() const = 0;

  /// Volume, centre of mass and inertia for unit density. All zero for planes, height fields and open meshes.
  virtual MassProperties getMassProperties() const = 0;

  /// Volume in m^3; 0 for forms without inside.
  double getVolume() const { return getMassProperties().volume; }

  /// Inertia about the centre of mass of a piece of this form with the mass `mass` (kg), in kg m^2.
  /// All zero for forms without volume.
  vyr::SPDMatrix3x3 getInertia(double mass) const;

  /// Counts the changes of the form since its construction, so that drawings know when to follow.
  unsigned int getRevision() const { return m_revision; }

  /// Makes the collision engine's own object for one geometry. For the library itself. *returns new*;
  /// Nullable: an invalid shape has none. `moving` is true for geometries of bodies that forces move.
  virtual std::unique_ptr<ShapeInstance> createInstance(bool moving) const = 0;

protected:
  Shape() = default;
  ~Shape() override;

  bool m_valid = true;
  unsigned int m_revision = 0;
};

} // namespace vyrCollide
