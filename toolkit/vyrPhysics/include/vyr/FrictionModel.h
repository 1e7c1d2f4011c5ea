/// The ways in which a solver may treat friction, with their fixed values.
#pragma once

namespace vyr {

/// Names for how friction is solved. The values count up, unlike the flags of Constraint::SolveType.
/// See vyrSDK::Simulation::setFrictionModel for what each of them does.
class FrictionModel {
public:
  enum SolveType { NOT_DEFINED = 0, DIRECT = 1, ITERATIVE = 2, SPLIT = 3, DIRECT_AND_ITERATIVE = 4 };
};

} // namespace vyr
