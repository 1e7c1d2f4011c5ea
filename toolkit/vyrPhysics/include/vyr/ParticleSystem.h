/// Many small balls in a simulation.
#pragma once

#include <vyr/Material.h>
#include <vyr/Quat.h>
#include <vyr/Referenced.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyr/VyrString.h>
#include <vyr/ref_ptr.h>
#include <vyrPhysics/export.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

namespace vyrCollide {
class Geometry;
}
namespace vyrSDK {
class SceneReader;
class SceneWriter;
class Simulation;
} // namespace vyrSDK

namespace vyr {

struct ParticleSystemNative;

/// A contact of a particle after a step.
struct ParticleContact {
  /// Value of `particle2` when the particle touches a geometry.
  static constexpr size_t kNone = static_cast<size_t>(-1);

  size_t particle1 = 0;                     ///< index
  size_t particle2 = kNone;                 ///< index, or kNone
  vyrCollide::Geometry* geometry = nullptr; ///< *borrows*. Nullable: what is touched, null for a particle
  Vec3 point;                               ///< world, m
  Vec3 normal;                              ///< towards particle1, world, unit vector
  double depth = 0.0;                       ///< overlap in m
  double normalForce = 0.0;                 ///< N on particle1 along normal, mean over the step
};

/// Balls that fall, collide with each other and with the geometries of their simulation, and fade away with their life.
/// Particles are addressed by index, 0 to getNumParticles() - 1; removal moves the later ones up, the id stays.
class VYRPHYSICS_EXPORT ParticleSystem : public Referenced {
public:
  explicit ParticleSystem(const String& name = String());

  void setName(const String& name) { m_name = name; }
  const String& getName() const { return m_name; }

  /// Adds a ball and returns its index. `position` m, `velocity` m/s, `radius` m above 0, `mass` kg above 0, `life` s
  /// above 0 (default: endless). ParticleContact::kNone, with one error message, when a number is none of these.
  size_t add(const Vec3& position, const Vec3& velocity, double radius, double mass,
             double life = std::numeric_limits<double>::infinity());

  /// Takes a particle out. False for an index out of range.
  bool remove(size_t index);
  void clear();

  size_t getNumParticles() const { return m_particles.size(); }

  /// Number that no other particle of this system has or had; 0 for an index out of range, as all following are then.
  uint64_t getId(size_t index) const;

  /// Index of the particle of that id, kNone when it has gone.
  size_t findParticle(uint64_t id) const;

  /// World, m.
  Vec3 getPosition(size_t index) const;
  bool setPosition(size_t index, const Vec3& position);

  /// World, m/s.
  Vec3 getVelocity(size_t index) const;
  bool setVelocity(size_t index, const Vec3& velocity);

  /// World, rad/s.
  Vec3 getAngularVelocity(size_t index) const;

  /// Orientation: particles roll.
  Quat getRotation(size_t index) const;

  /// m and kg.
  double getRadius(size_t index) const;
  double getMass(size_t index) const;

  /// Red, green, blue, opacity, 0 to 1. Default: the system's colour when the particle was added.
  Vec4 getColor(size_t index) const;
  bool setColor(size_t index, const Vec4& color);

  /// Colour of particles that are added from now on. Default: (0.8, 0.7, 0.5, 1).
  void setDefaultColor(const Vec4& color) { m_defaultColor = color; }
  const Vec4& getDefaultColor() const { return m_defaultColor; }

  /// Time left in s, and the time that it had when it was added; infinity without end.
  double getLife(size_t index) const;
  double getInitialLife(size_t index) const;

  /// Adds a force (N, world) for the next step.
  bool addForce(size_t index, const Vec3& force);

  /// Surface of the particles (*retains*); its density has no effect. Null: the default material.
  void setMaterial(Material* material);
  Material* getMaterial() const;

  /// Contacts of the last step. The reference holds until the next step or change.
  const std::vector<ParticleContact>& getContacts() const;

  /// *returns inner*. Nullable: the simulation that the system is in.
  vyrSDK::Simulation* getSimulation() const { return m_simulation; }

  /// The engine's side. For the library itself.
  ParticleSystemNative* getNative() const { return m_native.get(); }

protected:
  ~ParticleSystem() override;

private:
  friend class vyrSDK::SceneReader;
  friend class vyrSDK::SceneWriter;
  friend class vyrSDK::Simulation;

  struct Particle {
    uint64_t id;
    double radius;
    double mass;
    double life;
    double initialLife;
    Vec4 color;
  };

  void enter(vyrSDK::Simulation* simulation);
  void leave();
  /// Lets lives run down by `dt` s and removes the particles whose life is over.
  void age(double dt);

  String m_name;
  ref_ptr<Material> m_material;
  std::vector<Particle> m_particles;
  Vec4 m_defaultColor{0.8, 0.7, 0.5, 1.0};
  uint64_t m_nextId = 1;
  vyrSDK::Simulation* m_simulation = nullptr;
  std::unique_ptr<ParticleSystemNative> m_native;
};

} // namespace vyr
