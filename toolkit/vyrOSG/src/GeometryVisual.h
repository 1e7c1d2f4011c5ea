// Visuals whose colour the caller chooses.
#pragma once

#include <vyrOSG/Group.h>

#include <vyr/RigidBody.h>

namespace vyrOSG {

/// Draws a body under a group as createVisual does, moving geometries in the palette's colour number colorIndex.
/// Nullable: body, group, result (*returns inner*).
vyrOSG::Group* createBodyVisual(vyr::RigidBody* body, vyrOSG::Group* group, float detailRatio, unsigned int colorIndex);

} // namespace vyrOSG
