/// Wires and ropes: chains of mass points that hang, swing and pull on bodies.
#pragma once

#include <vyr/RigidBody.h>
#include <vyr/Vec3.h>
#include <vyr/observer_ptr.h>
#include <vyrPhysics/export.h>
#include <vyrSDK/Simulation.h>
#include <vyrSDK/StepEventListener.h>

#include <cstddef>
#include <vector>

namespace vyrSDK {
class WireType;
}

namespace vyrWire {

/// A wire of constant length, cut into segments between mass points (nodes). It resists stretch, bending when it is
/// given a bending stiffness, and goes slack by folding. Each end hangs on a body, on the world, or free. Add the wire
/// to a simulation as a step-event listener; it does not collide.
///
/// The nodes go through each time step in several smaller ones. A small step moves the nodes freely and then brings
/// every segment back to its length along the directions that the segments had before it, all segments at once: the
/// forces of a chain's segments make a tridiagonal system.
/// Source: J.-P. Ryckaert, G. Ciccotti, H. Berendsen, "Numerical integration of the Cartesian equations of motion of a
/// system with constraints", J. Comp. Phys. 23 (1977), section 3 (the constraint along the old directions, which keeps
/// the energy); compliance as in M. Macklin et al., "XPBD", 2016, equation 18.
///
/// Segments that are too short for a tension T make the small steps whip: with m kg/m and a small step of h s a segment
/// should be longer than h sqrt(T / m). Shorter ones stay stable, but cost more and lose energy.
class VYRPHYSICS_EXPORT Wire : public vyrSDK::StepEventListener {
public:
  /// `length` in m, above 0; `segments` at least 1 and at most 16384; `massPerLength` in kg/m, above 0; `radius` in m,
  /// above 0, for the picture. Anything else: one error message, and a wire that isValid() denies and that does
  /// nothing. The nodes start along the x axis from the origin.
  Wire(double length, std::size_t segments, double massPerLength, double radius = 0.01);

  bool isValid() const { return m_valid; }
  double getLength() const { return m_length; }
  double getRadius() const { return m_radius; }
  double getMassPerLength() const { return m_massPerLength; }
  std::size_t getNumSegments() const { return m_lambdas.size(); }

  /// Fastens an end at `point`: in the frame of `body` (observed, not held), or in the world when `body` is null.
  /// Both ends fastened: the nodes are laid out between them, on a line when the wire is taut, else on a parabola that
  /// sags. A body that dies sets its end free.
  void attachBegin(vyr::RigidBody* body, const vyr::Vec3& point);
  void attachEnd(vyr::RigidBody* body, const vyr::Vec3& point);
  void detachBegin();
  void detachEnd();

  /// Places of the nodes in the world in m, getNumSegments() + 1 of them, from begin to end.
  const std::vector<vyr::Vec3>& getNodes() const { return m_places; }
  const std::vector<vyr::Vec3>& getNodeVelocities() const { return m_velocities; }
  /// Moves a node; false when there is no such node, the place is not finite, or the node is fastened.
  bool setNode(std::size_t index, const vyr::Vec3& place);

  /// Mean tension of a segment in the last step, in N; negative when it was pressed. 0 for no such segment.
  double getTension(std::size_t segment) const;
  double getBeginTension() const { return getTension(0); }
  double getEndTension() const { return m_lambdas.empty() ? 0 : getTension(m_lambdas.size() - 1); }

  /// Axial stiffness E A in N: the force that would double the length. 0 (default): the length does not give.
  /// Negative numbers and NaN are refused with one error message and false, here and below.
  bool setStretchStiffness(double newtons);
  double getStretchStiffness() const { return m_stretchStiffness; }
  /// Bending stiffness E I in N m^2. Default: 0. What exceeds the stability limit of the small steps acts as the limit.
  bool setBendStiffness(double newtonSquareMetres);
  double getBendStiffness() const { return m_bendStiffness; }
  /// Rate in 1/s at which the nodes lose velocity to the air. Default: 0.05.
  bool setDamping(double perSecond);
  double getDamping() const { return m_damping; }
  /// Small steps a time step, 1 to 200. Default: 16.
  bool setNumSubSteps(int count);
  int getNumSubSteps() const { return m_subSteps; }

  /// Kinetic and potential energy (against z = 0, gravity of the simulation) of the nodes, in J.
  double getEnergy() const;

  void pre(const vyr::TimeStamp& time) override;
  void post(const vyr::TimeStamp& time) override;
  void simulationChanged(vyrSDK::Simulation* simulation) override;

protected:
  ~Wire() override;

private:
  friend class vyrSDK::WireType;

  /// What an end hangs on. While a step is made, `inverseMass` above 0 marks an end on a body that forces move; the
  /// body then goes through the small steps as a copy.
  struct End {
    bool fastened = false;
    bool onBody = false;
    vyr::observer_ptr<vyr::RigidBody> body;
    vyr::Vec3 point; ///< in the body's frame or the world
    double inverseMass = 0;
    vyr::SPDMatrix3x3 inverseInertia; ///< about the centre of mass, in the body's axes
    vyr::Vec3 arm;                    ///< from the centre of mass to the end, in the body's axes
    vyr::Vec3 gravity;
    vyr::Vec3 place; ///< of the centre of mass
    vyr::Quat rotation;
    vyr::Vec3 velocity;
    vyr::Vec3 angularVelocity;
    vyr::Vec3 impulse; ///< of the small step, in N s times the small step
    vyr::Vec3 linear;  ///< of the whole step, in N s
    vyr::Vec3 angular; ///< of the whole step, in N m s
    vyr::Vec3 missedWay;
    vyr::Quat missedTurn;

    /// How far the end goes for a unit impulse along `direction`.
    vyr::Vec3 answer(const vyr::Vec3& direction) const;
    vyr::Vec3 endPlace() const { return place + rotation * arm; }
    vyr::Vec3 endVelocity() const { return velocity + (angularVelocity ^ (rotation * arm)); }
    void advance(double h);
  };

  void attach(End& end, vyr::RigidBody* body, const vyr::Vec3& point);
  vyr::Vec3 placeOf(const End& end) const;
  void layOut();
  void layOutBetween(const vyr::Vec3& from, const vyr::Vec3& to);
  void beginStep(End& end, std::size_t node);
  void endStep(End& end, const End& before, double dt);
  void absorbJumps();
  void subStep(double h);
  void addBending(double h);
  void project(double h);
  vyr::Vec3 answer(std::size_t node, const vyr::Vec3& direction) const;
  static void directions(const std::vector<vyr::Vec3>& places, std::vector<vyr::Vec3>& outDirections);
  double largestError(const std::vector<vyr::Vec3>& places, double give, const std::vector<double>& total) const;
  void correctLengths(std::vector<vyr::Vec3>& places, const std::vector<vyr::Vec3>& along, double give,
                      std::vector<double>& total);

  bool m_valid = false;
  double m_length = 0;
  double m_radius = 0;
  double m_massPerLength = 0;
  double m_segmentLength = 0;
  double m_restLength = 0; ///< of a segment in this step: longer than a segment while a taut wire is brought back
  double m_stretchStiffness = 0;
  double m_bendStiffness = 0;
  double m_damping = 0.05;
  int m_subSteps = 16;
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
  End m_begin;
  End m_end;
  std::vector<vyr::Vec3> m_places;
  std::vector<vyr::Vec3> m_velocities;
  std::vector<double> m_inverseMasses;
  std::vector<double> m_lambdas; ///< one a segment: impulse of the time step so far, in N s
};

} // namespace vyrWire
