// Which nodes draw a geometry, without a search through a scene.
#pragma once

#include <vyrOSG/GeometryNode.h>

namespace vyrOSG {

/// The geometry nodes of this process. With the first one, scene files begin to hold looks. Nodes may die in the
/// thread that draws.
class GeometryNodes {
public:
  static void add(const vyrCollide::Geometry* geometry, GeometryNode* node);
  static void remove(GeometryNode* node);

  /// A node that draws the geometry and stands in a scene. Nullable.
  static GeometryNode* find(const vyrCollide::Geometry* geometry);
};

} // namespace vyrOSG
