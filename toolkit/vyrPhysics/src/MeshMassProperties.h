/// Volume, centre of mass and inertia of the inside of a closed triangle mesh.
#pragma once

#include <vyrCollide/Shape.h>

#include <vector>

namespace vyrPhysics {

/// True when every edge is run through exactly once in each direction.
bool isClosedMesh(const std::vector<unsigned int>& indices);

/// Properties for density 1; a mesh that is turned inside out counts as turned right.
vyrCollide::MassProperties computeMassProperties(const std::vector<vyr::Vec3>& vertices,
                                                 const std::vector<unsigned int>& indices);

} // namespace vyrPhysics
