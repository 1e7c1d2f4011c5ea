// Draws the forces on bodies and in constraints as arrows.
#pragma once

#include <vyrOSG/ExponentialMovingAverageStatistic.h>
#include <vyrOSG/export.h>

#include <vyr/Constraint1DOF.h>
#include <vyr/RigidBody.h>
#include <vyr/Vec3.h>
#include <vyr/Vector.h>
#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrSDK/GuiEventListener.h>
#include <vyrSDK/Simulation.h>

#include <osg/Group>

#include <memory>
#include <utility>
#include <vector>

namespace vyrOSG {

/// Constraints that are observed together.
using Constraint1DOFObserverVector = vyr::Vector<vyr::observer_ptr<vyr::Constraint1DOF>, vyr::ByteAllocator>;
/// Sets of constraints, each with a vector of its own.
using Constraint1DOFObserverVectorVec3PairVector =
    vyr::Vector<std::pair<Constraint1DOFObserverVector, vyr::Vec3>, vyr::ByteAllocator>;
/// Observed geometries, each with a vector of its own.
using GeometryObserverVec3PairVector =
    vyr::Vector<std::pair<vyr::observer_ptr<vyrCollide::Geometry>, vyr::Vec3>, vyr::ByteAllocator>;
/// Averages, one a measured quantity.
using ExponentialMovingAverageStatisticVector = vyr::Vector<ExponentialMovingAverageStatistic, vyr::ByteAllocator>;

/// Measures forces after every step of the simulation and draws each as an arrow under the group of OSGSceneRoot.
///
/// An arrow points along its force; its length is the force times the scale. It works from the moment its bodies and
/// constraints are in a simulation; adding the renderer to the simulation as a listener makes it notice that in the
/// first frame. The arrows leave the scene with the renderer, and each one with its body or its last constraint.
class VYROSG_EXPORT ForceArrowRenderer : public vyrSDK::GuiEventListener {
public:
  ForceArrowRenderer();

  /// Draws the sum of the contact forces on a body and of the forces added to it, gravity left out. The arrow begins at
  /// position, in the body's frame (m). Nullable: body (nothing happens). A body that is drawn already gets the new
  /// position.
  void add(vyr::RigidBody* body, const vyr::Vec3& position);

  /// Draws the sum of the forces that constraints put on their first bodies. The arrow begins at position, in the first
  /// constraint's first frame (m). An empty set changes nothing.
  void add(Constraint1DOFObserverVector& constraints, const vyr::Vec3& position);

  /// Takes a body's arrow away. False if it had none.
  bool remove(vyr::RigidBody* body);

  /// Takes a constraint out of every set, and the arrow of a set that is empty then. False if it was in none.
  bool remove(vyr::Constraint1DOF* constraint);

  /// Takes the arrow of a set of the same constraints away. False if there was none.
  bool remove(Constraint1DOFObserverVector& constraints);

  /// Share of the newest step in the moving average that is drawn, above 0 and at most 1 (no smoothing); default 0.2.
  void setSmoothFactor(const double& factor);
  double getSmoothFactor() const { return m_smoothFactor; }

  /// Length of the arrow's tip (m); default 0.2. Shorter arrows are all tip.
  void setConeLength(const double& length);
  double getConeLength() const { return m_coneLength; }

  /// Radius of the arrow's shaft (m), half of the tip's; default 0.03.
  void setArrowRadius(const double& radius);
  double getArrowRadius() const { return m_arrowRadius; }

  /// Length of an arrow for a force of 1 N (m/N); default 0.0001, 1 m for 10 kN.
  void setScale(const double& scale);
  double getScale() const { return m_scale; }

  /// The group that holds the arrows (*returns inner*).
  osg::Group* getArrowGroup() { return m_group.get(); }

  /// Draws the arrows anew for a frame.
  void update(float x, float y) override;

protected:
  ~ForceArrowRenderer() override;

private:
  struct Arrow;
  class Sampler;

  void measureApplied(vyrSDK::Simulation* simulation);
  void measure(vyrSDK::Simulation* simulation);
  void watch(vyrSDK::Simulation* simulation);
  void watchAll();
  void redraw();
  bool set(const char* setter, double& member, double value, double limit);

  std::vector<std::unique_ptr<Arrow>> m_arrows;
  std::vector<vyr::ref_ptr<Sampler>> m_samplers;
  osg::ref_ptr<osg::Group> m_group;
  double m_smoothFactor = 0.2;
  double m_coneLength = 0.2;
  double m_arrowRadius = 0.03;
  double m_scale = 0.0001;
};

} // namespace vyrOSG
