/// How the looks of things get into scene files and out of them.
#pragma once

#include <vyrPhysics/export.h>
#include <vyrSDK/SceneRecord.h>
#include <vyrSDK/SceneValue.h>

#include <string>

namespace vyr {
class ParticleSystem;
class RigidBody;
} // namespace vyr
namespace vyrCollide {
class Geometry;
}

namespace vyrSDK {

class Simulation;
class StepEventListener;

/// Writes and reads the member "visual" of entries; the visualisation layer implements it.
class VYRPHYSICS_EXPORT SceneVisuals {
public:
  /// Whether anything of a simulation is drawn. Of one that is not drawn no looks are written.
  virtual bool draws(const Simulation& simulation) = 0;

  /// Describes the look of a thing; false: it is not drawn, which the file then says. `folder`: where the file will be,
  /// so that files beside it are named without their place; empty: there is no file.
  virtual bool write(const vyrCollide::Geometry& geometry, const std::string& folder, SceneRecord& out) = 0;
  /// The same for what may have nothing to say: false leaves the member out.
  virtual bool write(const vyr::RigidBody& body, const std::string& folder, SceneRecord& out) = 0;
  virtual bool write(const vyr::ParticleSystem& particles, const std::string& folder, SceneRecord& out) = 0;
  virtual bool write(const StepEventListener& listener, const Simulation& simulation, SceneRecord& out) = 0;

  /// Takes in a look (throws SceneError), or, with null, that there is none. Called before the simulation is changed.
  virtual void read(vyrCollide::Geometry& geometry, const SceneValue* value) = 0;
  virtual void read(vyr::RigidBody& body, const SceneValue* value) = 0;
  virtual void read(vyr::ParticleSystem& particles, const SceneValue* value) = 0;
  virtual void read(StepEventListener& listener, const SceneValue* value) = 0;

  /// *returns inner*. Nullable: what Simulation::write asks for looks; without it files have none.
  static SceneVisuals* getWriter();
  /// Installs a writer (*borrows*).
  static void setWriter(SceneVisuals* writer);

protected:
  SceneVisuals() = default;
  SceneVisuals(const SceneVisuals&) = default;
  SceneVisuals& operator=(const SceneVisuals&) = default;
  virtual ~SceneVisuals();
};

} // namespace vyrSDK
