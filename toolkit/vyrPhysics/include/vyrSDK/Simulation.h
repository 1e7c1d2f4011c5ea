/// The simulation: steps bodies, geometries and constraints through time.
#pragma once

#include <vyr/Constraint.h>
#include <vyr/FrictionModel.h>
#include <vyr/ParticleSystem.h>
#include <vyr/Referenced.h>
#include <vyr/RigidBody.h>
#include <vyr/TimeStamp.h>
#include <vyr/Vec3.h>
#include <vyr/VyrString.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Space.h>
#include <vyrPhysics/export.h>
#include <vyrSDK/Assembly.h>
#include <vyrSDK/Contact.h>
#include <vyrSDK/GuiEventListener.h>
#include <vyrSDK/RayHit.h>
#include <vyrSDK/StepEventListener.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vyrSDK {

class SceneReader;
class SceneVisuals;
struct SimulationNative;

/// A world of bodies with a clock. Every step has the same length, and two simulations that were given the same things
/// in the same order agree in every bit.
class VYRPHYSICS_EXPORT Simulation : public vyr::Referenced {
public:
  enum SolverType {
    MULTI = 0, ///< contacts and constraints as one mixed linear complementarity problem: exact, slow with many contacts
    ITERATIVE = 1 ///< sequential impulses: fast, as exact as the iterations allow
  };

  Simulation();

  /// Adds a part (*retains*). False, with one error message, for null, an invalid part or one that is in a simulation.
  /// Adding a constraint or an assembly adds the bodies that it names. A plane cannot be moved by forces.
  bool add(vyr::RigidBody* body);
  bool add(vyrCollide::Geometry* geometry);
  bool add(vyrCollide::Space* space);
  bool add(vyr::Constraint* constraint);
  bool add(vyr::ParticleSystem* particles);
  bool add(Assembly* assembly);
  bool add(StepEventListener* listener);
  bool add(GuiEventListener* listener);

  /// Takes a part out. False when the simulation does not have it. Safe in listeners. Removing a body also removes the
  /// constraints that hold it.
  bool remove(vyr::RigidBody* body);
  bool remove(vyrCollide::Geometry* geometry);
  bool remove(vyrCollide::Space* space);
  bool remove(vyr::Constraint* constraint);
  bool remove(vyr::ParticleSystem* particles);
  bool remove(Assembly* assembly);
  bool remove(StepEventListener* listener);
  bool remove(GuiEventListener* listener);

  /// Takes everything out and sets the clock to 0; settings stay.
  void clear();

  /// The parts in the order in which they were added; geometries: those without a body.
  const std::vector<vyr::ref_ptr<vyr::RigidBody>>& getRigidBodies() const { return m_bodies; }
  const std::vector<vyr::ref_ptr<vyrCollide::Geometry>>& getGeometries() const { return m_geometries; }
  const std::vector<vyr::ref_ptr<vyr::Constraint>>& getConstraints() const { return m_constraints; }
  const std::vector<vyr::ref_ptr<vyr::ParticleSystem>>& getParticleSystems() const { return m_particleSystems; }
  const std::vector<vyr::ref_ptr<vyrCollide::Space>>& getSpaces() const { return m_spaces; }
  const std::vector<vyr::ref_ptr<Assembly>>& getAssemblies() const { return m_assemblies; }
  const std::vector<vyr::ref_ptr<StepEventListener>>& getStepEventListeners() const { return m_stepListeners; }
  const std::vector<vyr::ref_ptr<GuiEventListener>>& getGuiEventListeners() const { return m_guiListeners; }

  /// *returns inner*. Never null: the simulation's own space; geometries added to it enter the simulation.
  vyrCollide::Space* getSpace() const { return m_space.get(); }

  /// *returns inner*. Nullable: the first of that name.
  vyr::RigidBody* findRigidBody(const vyr::String& name) const;

  /// Advances the clock by one time step: listeners' pre, motion, listeners' post and last.
  /// A step within a step (from a listener) is refused: false, with one error message.
  bool step();

  /// Steps until the clock shows `time` (s), to the nearest step.
  void stepTo(double time);

  /// Length of a step in s, above 0. Default: 1/60. Other values are refused with one error message.
  bool setTimeStep(double dt);
  double getTimeStep() const { return m_clock.getTimeStep(); }

  /// Acceleration of gravity in m/s^2. Default: (0, 0, -9.80665).
  void setGravity(const vyr::Vec3& gravity);
  const vyr::Vec3& getGravity() const { return m_gravity; }

  /// Time since the start; seconds() is the number of steps times the time step. The reference follows the clock.
  const vyr::TimeStamp& getTimeStamp() const { return m_clock; }

  /// The same in s, as a number.
  double getTime() const { return m_clock.seconds(); }

  /// Sets the clock to `time` (s) after `steps` steps, without a step.
  void setTime(double time, uint64_t steps = 0);

  /// Default: ITERATIVE. May be changed between steps.
  void setSolver(SolverType type);
  SolverType getSolver() const { return m_solver; }

  /// Iterations of the ITERATIVE solver, 1 to 100000. Default: 30.
  bool setNumIterations(int iterations);
  int getNumIterations() const { return m_iterations; }

  /// How friction is solved: SPLIT (default) solves all normal forces of an iteration and then all friction;
  /// ITERATIVE takes them in turn, contact by contact; DIRECT takes the MULTI solver; DIRECT_AND_ITERATIVE takes the
  /// ITERATIVE solver with normal and friction forces in turn and twice the iterations; NOT_DEFINED is SPLIT.
  void setFrictionModel(vyr::FrictionModel::SolveType model);
  vyr::FrictionModel::SolveType getFrictionModel() const { return m_frictionModel; }

  /// Lets bodies at rest sleep until something touches them. Default: false: contact forces stay exact.
  void setEnableSleeping(bool enable);
  bool getEnableSleeping() const { return m_sleeping; }

  /// Contacts of the last step, forces included, in a repeatable order; the first call after a step gathers them. The
  /// reference holds until the next step or change of the simulation.
  const std::vector<Contact>& getContacts() const;

  /// First thing that a ray meets. `direction` need not be a unit vector; `length` in m. Sensors let rays through.
  RayHit rayTest(const vyr::Vec3& origin, const vyr::Vec3& direction, double length = 1.0e5) const;

  /// A number that two simulations share exactly when their clocks, poses and velocities agree in every bit.
  /// Source: Fowler, Noll, Vo, The FNV Non-Cryptographic Hash Algorithm (FNV-1a, 64 bits).
  uint64_t stateHash() const;

  /// Writes clock, settings, all parts and their looks as a scene file (docs/scene-format.md says what it holds). What
  /// reads it goes on as this simulation does, bit by bit with the ITERATIVE solver. Of the listeners, those are
  /// written that a SceneType knows: wires, emitters of one shape, terrains, trees. False, with one error message that
  /// names the file, when it cannot be written.
  bool write(const vyr::String& fileName) const;

  /// Replaces clock, settings and all parts by what a scene file holds; other listeners stay. `visuals` learns the
  /// looks of the parts (*borrows*). Nullable: no visuals. False, with one error message that names the file and the
  /// place in it, and without any change, when it cannot be read or says something impossible. Members that are not
  /// known cost one warning that names them; the rest is read.
  bool read(const vyr::String& fileName, SceneVisuals* visuals = nullptr);

  /// Gives the parts themselves the state in a scene file: clock, settings, motion, particles, constraints' controls.
  /// The file must have the same parts by number, name and kind. False, with one error message and without any change,
  /// when it has not or cannot be read.
  bool restore(const vyr::String& fileName);

  /// The same as write and read without a file. `source` names the text in the error message.
  std::string toText() const;
  bool fromText(const std::string& text, const std::string& source = "text", SceneVisuals* visuals = nullptr);

  /// Pass an event of the user on to the listeners; true when one of them used it up.
  bool keyboard(int key, unsigned int modifiers, float x, float y, bool down);
  bool mouse(int button, float x, float y, bool down);
  bool mouseMotion(int buttons, float x, float y);
  void updateGui(float x, float y);

  /// The engine's side of the simulation. For the library itself.
  SimulationNative* getNative() const { return m_native.get(); }

protected:
  ~Simulation() override;

private:
  friend class SceneReader;
  friend class vyr::RigidBody;
  friend class vyrCollide::Geometry;

  void insertBody(vyr::RigidBody* body);
  static void warnOfHulls(const vyr::RigidBody& body);
  void withdrawBody(vyr::RigidBody* body);
  void insertGeometry(vyrCollide::Geometry* geometry);
  void withdrawGeometry(vyrCollide::Geometry* geometry);
  void refresh(vyrCollide::Geometry* geometry);
  void insertConstraint(vyr::Constraint* constraint);
  void withdrawConstraint(vyr::Constraint* constraint);
  void refreshConstraints(const vyr::RigidBody* body);
  void moveKinematicBodies();
  void wakeBodies();
  void wakeDrivenBodies();
  void advance();
  void updateSolver();
  void clearParts();

  std::unique_ptr<SimulationNative> m_native;
  vyr::ref_ptr<vyrCollide::Space> m_space;
  std::vector<vyr::ref_ptr<vyr::RigidBody>> m_bodies;
  std::vector<vyr::ref_ptr<vyrCollide::Geometry>> m_geometries;
  std::vector<vyr::ref_ptr<vyrCollide::Space>> m_spaces;
  std::vector<vyr::ref_ptr<vyr::Constraint>> m_constraints;
  std::vector<vyr::ref_ptr<vyr::ParticleSystem>> m_particleSystems;
  std::vector<vyr::ref_ptr<Assembly>> m_assemblies;
  std::vector<vyr::ref_ptr<StepEventListener>> m_stepListeners;
  std::vector<vyr::ref_ptr<GuiEventListener>> m_guiListeners;
  vyr::Vec3 m_gravity;
  vyr::TimeStamp m_clock;
  SolverType m_solver = ITERATIVE;
  vyr::FrictionModel::SolveType m_frictionModel = vyr::FrictionModel::SPLIT;
  int m_iterations = 30;
  bool m_sleeping = false;
  bool m_stepping = false;
};

} // namespace vyrSDK
