// Turns the contacts of a simulation into pressure.
#pragma once

#include <vyrOSG/PressureGenerator.h>
#include <vyrOSG/export.h>

#include <vyr/ref_ptr.h>
#include <vyrSDK/ExecuteFilter.h>

#include <vector>

namespace vyrOSG {

/// Spreads the contact forces on a geometry over its surface.
///
/// The contact points with one other geometry bound a patch: their convex hull in the plane across their normal. Over
/// the patch the pressure is linear, with the sum and the moments of the points' forces, as under a stiff body on a
/// soft layer; where it would pull, there is none. The pressures of a patch always add up to its force.
/// Source: bearing pressure under an eccentric load, p = N / A + M x / I; Terzaghi and Peck, Soil Mechanics in
/// Engineering Practice, article 54.
class VYROSG_EXPORT PressureFromContacts : public PressureGenerator {
public:
  /// Which part of a contact's force counts.
  enum ForceType {
    TANGENTIAL_FORCE = 0, ///< friction
    NORMAL_FORCE = 1,
    TOTAL_FORCE = 2 ///< length of the sum of both
  };

  /// @param rangeFactor area in m^2 that a newton takes at least (the inverse of a pressure in Pa): a patch whose hull
  /// is smaller, such as a point or a line, grows around its rim to this area. At least 0; otherwise one error message
  /// and the default. A force type that there is not is TOTAL_FORCE. Nullable: simulation, atlas, as the base.
  PressureFromContacts(vyrSDK::Simulation* simulation, PressureAtlas* atlas, double rangeFactor = 2e-5,
                       ForceType forceType = TOTAL_FORCE);

  void setRangeFactor(double rangeFactor);
  double getRangeFactor() const { return m_rangeFactor; }

  ForceType getForceType() const { return m_forceType; }

  /// Adds a filter (*retains*): contacts count that at least one of the filters passes. Without filters all count.
  /// Nullable: nothing happens.
  void addFilter(vyrSDK::ExecuteFilter* filter);

  void generate() override;
  /// The same for the contacts of any simulation. Nullable: no contacts.
  void generate(vyrSDK::Simulation* simulation);

protected:
  ~PressureFromContacts() override;

private:
  double forceOf(const vyrSDK::Contact& contact) const;
  bool passes(const vyrSDK::Contact& contact) const;

  double m_rangeFactor;
  ForceType m_forceType;
  std::vector<vyr::ref_ptr<vyrSDK::ExecuteFilter>> m_filters;
};

} // namespace vyrOSG
