/// A shape with a place, a material and a name: what bodies are made of and what touches.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Referenced.h>
#include <vyr/VyrString.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Bounds.h>
#include <vyrPhysics/export.h>

#include <memory>

namespace vyr {
class Material;
class RigidBody;
} // namespace vyr

namespace vyrSDK {
class SceneReader;
class Simulation;
} // namespace vyrSDK

namespace vyrCollide {

class Shape;
struct GeometryNative;

/// A piece of matter. It belongs to at most one body; added to a simulation without a body, it stands still.
class VYRPHYSICS_EXPORT Geometry : public vyr::Referenced {
public:
  /// Makes a geometry of the given shape (*retains*). Nullable: a null or invalid shape gives an invalid geometry and
  /// one error message; no body and no simulation takes it.
  explicit Geometry(Shape* shape, const vyr::String& name = vyr::String());

  /// True when the geometry has a valid shape.
  bool isValid() const;

  /// *returns inner*. Nullable: the shape, null for an invalid geometry.
  Shape* getShape() const;

  /// *returns inner*. Nullable: the body that carries the geometry.
  vyr::RigidBody* getRigidBody() const { return m_body; }

  /// *returns inner*. Nullable: the simulation that the geometry or its body is in.
  vyrSDK::Simulation* getSimulation() const;

  /// Place in the world: local to world, row vectors.
  vyr::AffineMatrix4x4 getTransform() const;

  /// Place in the frame of the body, or in the world when there is no body. Rotation and translation only.
  const vyr::AffineMatrix4x4& getLocalTransform() const { return m_localTransform; }

  /// Moves the geometry in the frame of its body (or in the world). Mass properties of the body follow.
  void setLocalTransform(const vyr::AffineMatrix4x4& transform);

  /// Surface and density (*retains*); null stands for the default material. The body's mass properties follow.
  void setMaterial(vyr::Material* material);

  /// *returns inner*. Never null.
  vyr::Material* getMaterial() const;

  /// A sensor reports its contacts, but pushes nothing and weighs nothing. Default: false.
  void setSensor(bool sensor);
  bool isSensor() const { return m_sensor; }

  /// A geometry that is not enabled touches nothing. Default: true.
  void setEnableCollisions(bool enable);
  bool getEnableCollisions() const { return m_collides; }

  void setName(const vyr::String& name) { m_name = name; }
  const vyr::String& getName() const { return m_name; }

  /// Axis-aligned box in the world, in m.
  Bounds getWorldBounds() const;

  /// Where a ray first meets this geometry alone: the distance from `origin` in m along `direction` (need not be a
  /// unit vector), at most `length`. False when it does not.
  bool rayTest(const vyr::Vec3& origin, const vyr::Vec3& direction, double length, double& outDistance) const;

  /// The collision engine's side of the geometry. For the library itself.
  GeometryNative* getNative() const { return m_native.get(); }

protected:
  ~Geometry() override;

private:
  friend class vyr::RigidBody;
  friend class vyrSDK::SceneReader;
  friend class vyrSDK::Simulation;

  /// Makes the engine's shape again, for a body that moves or not; `index`: place among the body's geometries.
  void createInstance(bool moving, int index);
  void changed();

  vyr::ref_ptr<Shape> m_shape;
  vyr::ref_ptr<vyr::Material> m_material;
  vyr::RigidBody* m_body = nullptr;
  vyrSDK::Simulation* m_simulation = nullptr; ///< of a geometry without a body
  vyr::AffineMatrix4x4 m_localTransform;
  vyr::String m_name;
  bool m_sensor = false;
  bool m_collides = true;
  std::unique_ptr<GeometryNative> m_native;
};

} // namespace vyrCollide
