/// A source that lets bodies into a simulation at a given rate.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Material.h>
#include <vyr/RigidBody.h>
#include <vyr/Vec3.h>
#include <vyr/VyrString.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Bounds.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Shape.h>
#include <vyrPhysics/export.h>
#include <vyrSDK/StepEventListener.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

namespace vyrSDK {
class EmitterType;
}

namespace vyr {

/// Emits bodies before steps, at random places of a box with random orientation. Add it to a simulation as a step-event
/// listener. Two emitters with the same seed and settings emit the same bodies.
class VYRPHYSICS_EXPORT RigidBodyEmitter : public vyrSDK::StepEventListener {
public:
  /// Makes the geometry of a body; may draw numbers from 0 (included) to 1 (excluded) by calling its argument.
  using GeometryFactory = std::function<vyrCollide::Geometry*(const std::function<double()>& random)>;

  explicit RigidBodyEmitter(uint64_t seed = 1);

  void setName(const String& name) { m_name = name; }
  const String& getName() const { return m_name; }

  /// Makes all bodies from one shape (*retains*) with a material (*retains*, Nullable: the default one).
  void setShape(vyrCollide::Shape* shape, Material* material = nullptr);

  /// Makes each body from what the factory returns; a null or invalid geometry lets the place go empty.
  void setGeometryFactory(const GeometryFactory& factory);

  /// Bodies a second, at least 0. Default: 10.
  bool setRate(double rate);
  double getRate() const { return m_rate; }

  /// Bodies in all; emission ends there. Default: endless.
  void setMaximum(size_t count) { m_maximum = count; }
  size_t getMaximum() const { return m_maximum; }

  /// Life of a body in s, above 0; it leaves the simulation then. Default: endless.
  bool setLife(double life);
  double getLife() const { return m_life; }

  /// Box in the emitter's frame where bodies appear, in m. Default: a cube of 1 m around the origin.
  bool setRegion(const vyrCollide::Bounds& region);
  const vyrCollide::Bounds& getRegion() const { return m_region; }

  /// Emitter's frame to world, row vectors.
  void setTransform(const AffineMatrix4x4& transform);
  const AffineMatrix4x4& getTransform() const { return m_transform; }

  /// Velocity of new bodies in the emitter's frame, in m/s. Default: 0.
  void setVelocity(const Vec3& velocity);
  const Vec3& getVelocity() const { return m_velocity; }

  /// A pause in emission; lives run on. Default: true.
  void setEnable(bool enable) { m_enable = enable; }
  bool getEnable() const { return m_enable; }

  /// Starts the row of random numbers anew.
  void setSeed(uint64_t seed);

  /// Bodies that are in the simulation, oldest first.
  const std::vector<ref_ptr<RigidBody>>& getRigidBodies() const { return m_bodies; }

  /// Bodies emitted so far.
  size_t getNumEmitted() const { return m_emitted; }

  /// *returns inner*. Nullable: the simulation that the emitter is in.
  vyrSDK::Simulation* getSimulation() const { return m_simulation; }

  void pre(const TimeStamp& time) override;
  void simulationChanged(vyrSDK::Simulation* simulation) override;

protected:
  ~RigidBodyEmitter() override;

private:
  friend class vyrSDK::EmitterType;

  double random();
  void emitBody();
  void removeOldBodies();

  String m_name;
  GeometryFactory m_factory;
  ref_ptr<vyrCollide::Shape> m_shape; ///< of all bodies. Nullable: a function makes them
  ref_ptr<Material> m_material;
  double m_rate = 10.0;
  double m_life;
  double m_due = 0.0; ///< bodies that are due, fractions included
  size_t m_maximum;
  size_t m_emitted = 0;
  bool m_enable = true;
  vyrCollide::Bounds m_region{Vec3(-0.5, -0.5, -0.5), Vec3(0.5, 0.5, 0.5)};
  AffineMatrix4x4 m_transform;
  Vec3 m_velocity;
  std::mt19937_64 m_generator;
  std::vector<ref_ptr<RigidBody>> m_bodies;
  std::vector<double> m_births;
  vyrSDK::Simulation* m_simulation = nullptr;
};

} // namespace vyr
