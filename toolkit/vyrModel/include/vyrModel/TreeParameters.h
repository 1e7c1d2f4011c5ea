/// What a tree is grown from.
#pragma once

namespace vyrModel {

/// Form and wood of a tree. Lengths in m.
struct TreeParameters {
  double height = 6.0;        ///< length of the trunk
  double trunkRadius = 0.13;  ///< at the ground
  int levels = 3;             ///< 1 to 4: trunk, boughs, branches, twigs
  int trunkSegments = 4;      ///< bodies that the trunk is made of; each level has half of the one before, at least one
  int boughs = 12;            ///< that leave the trunk
  int branches = 5;           ///< that leave each bough, and that leave each branch
  double spread = 1.0;        ///< angle between a limb and what grows out of it, rad
  double lengthRatio = 0.5;   ///< length of a limb over that of the limb that it grows out of
  double leavesPerMeter = 40; ///< sprays of leaves on the outermost limbs
  double leafSize = 0.30;     ///< edge length of a spray
  int leafBodies = 0;     ///< 0 to 10 000: so many pieces, those with most leaves, carry theirs as bodies of their own
  double density = 850.0; ///< of the wood, kg/m^3
  double stiffness = 2.0e9; ///< Young's modulus of the wood, Pa
  double strength = 5.0e7;  ///< bending stress at which a limb breaks, Pa
  double damping = 0.08;    ///< of the bending, as a share of the critical damping
};

} // namespace vyrModel
