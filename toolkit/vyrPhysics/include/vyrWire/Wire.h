/// Wires and ropes: chains of mass points that hang, swing and pull on bodies.
#pragma once

#include <vyr/RigidBody.h>
#include <vyr/Vec3.h>
#include <vyr/observer_ptr.h>
#include <vyrPhysics/export.h>
#include <vyrSDK/Simulation.h>
#include <vyrSDK/StepEventListener.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace vyrSDK {
class WireType;
}

namespace vyrWire {

class WireChain;

/// A wire of constant length, cut into segments between mass points (nodes). It resists stretch, bending when it is
/// given a bending stiffness, and goes slack by folding. Each end hangs on a body, on the world, or free. Add the wire
/// to a simulation as a step-event listener; it does not collide.
///
/// The nodes go through each time step in several smaller ones. A small step finds the places of all nodes and the
/// pulls of all segments at once, from one block tridiagonal system; the directions of the pulls are a mean of those
/// before, at and after the small step, so that a light wire under any tension is stable for any number of small steps,
/// and waves too fast for the small step die out. Source: N. M. Newmark, "A method of computation for structural
/// dynamics", ASCE J. Eng. Mech. Div. 85 (1959); J.-P. Ryckaert, G. Ciccotti, H. Berendsen, "Numerical integration of
/// the Cartesian equations of motion of a system with constraints", J. Comp. Phys. 23 (1977), section 3; compliance as
/// in M. Macklin et al., "XPBD", 2016, equation 18.
///
/// A body on an end is a point mass in that system: the mass that its point of fastening opposes to a force there,
/// turning included. Its copy goes through the small steps under gravity, under the forces that it already carries
/// (those of wires that came before in the simulation among them), and under what else moved it in the last step:
/// contacts, constraints and later wires. What the wire adds is then handed to the body as one force and one torque.
/// Source of the mass at a point: D. Baraff, "Fast contact force computation for nonpenetrating rigid bodies", SIGGRAPH
/// 1994, appendix A.
///
/// Without bending stiffness a wire does not push: segments may get shorter than they are, and then do not pull. A load
/// that falls into a wire without give is caught within a step, so that the mean tension of that step is about m v /
/// dt; set the stretch stiffness for the true peak.
///
/// A body that is fixed to a much heavier one (a hook to its load) tells the wire of the other's weight only step by
/// step: fasten the wire to the heavy one.
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

  /// Mean tension of a segment in the last step, in N; 0 when it was slack, negative when a wire with a bending
  /// stiffness was pressed. 0 for no such segment.
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
    vyr::Vec3 place;                  ///< of the centre of mass
    vyr::Quat rotation;
    vyr::Vec3 velocity;
    vyr::Vec3 angularVelocity;
    vyr::Vec3 gravity;      ///< m/s^2
    vyr::Vec3 known;        ///< m/s^2: gravity and the forces that were on the body before the step
    vyr::Vec3 knownTurn;    ///< rad/s^2
    vyr::Vec3 acceleration; ///< m/s^2: the known one and what the last two steps agreed on
    vyr::Vec3 turning;      ///< rad/s^2
    vyr::Vec3 others[2];    ///< m/s^2, newest first: what else moved the body in the last steps
    vyr::Vec3 otherTurns[2];
    vyr::Vec3 impulse; ///< of the small step, in N s times the small step
    vyr::Vec3 linear;  ///< of the whole step, in N s
    vyr::Vec3 angular; ///< of the whole step, in N m s
    vyr::Vec3 startPlace;
    vyr::Quat startRotation;
    vyr::Vec3 startVelocity;
    vyr::Vec3 startAngular;

    /// How far the end goes for a unit impulse along `direction`.
    vyr::Vec3 answer(const vyr::Vec3& direction) const;
    /// The angular acceleration for a torque, both in the world.
    vyr::Vec3 turned(const vyr::Vec3& torque) const;
    /// Where the end is after h s in which the wire does not pull.
    vyr::Vec3 freePlace(double h) const;
    vyr::Vec3 endPlace() const { return place + rotation * arm; }
    vyr::Vec3 endVelocity() const { return velocity + (angularVelocity ^ (rotation * arm)); }
    void advance(double h);
  };

  void attach(End& end, vyr::RigidBody* body, const vyr::Vec3& point);
  vyr::Vec3 placeOf(const End& end) const;
  void layOut();
  void layOutBetween(const vyr::Vec3& from, const vyr::Vec3& to);
  void beginStep(End& end, std::size_t node);
  static void endStep(End& end, double dt);
  static void finishStep(End& end, double dt);
  void absorbJumps();
  bool isSlack(std::size_t segment, double length) const;
  void subStep(double h);
  void addBending(double h);
  void project(double h);
  static void directions(const std::vector<vyr::Vec3>& places, std::vector<vyr::Vec3>& outDirections);
  static vyr::SPDMatrix3x3 massAt(const End& end);
  double largestError() const;
  void correctLengths();

  bool m_valid = false;
  double m_length = 0;
  double m_radius = 0;
  double m_massPerLength = 0;
  double m_segmentLength = 0;
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
  std::vector<double> m_lambdas;      ///< one a segment: impulse of the time step so far, in N s
  std::vector<double> m_pulls;        ///< one a segment: impulse of the last small step times the small step, in N s^2
  std::vector<vyr::Vec3> m_before;    ///< one a segment: its direction at the start of the last small step
  std::vector<double> m_startLengths; ///< one a segment: its length at the start of the time step, in m
  std::unique_ptr<WireChain> m_chain;
};

} // namespace vyrWire
