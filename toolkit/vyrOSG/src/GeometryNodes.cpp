// Which nodes draw a geometry, without a search through a scene.
#include "GeometryNodes.h"

#include "SceneVisualWriter.h"

#include <mutex>
#include <unordered_map>

namespace vyrOSG {

namespace {

struct Nodes {
  std::mutex mutex;
  std::unordered_multimap<const vyrCollide::Geometry*, GeometryNode*> of;
  std::unordered_map<GeometryNode*, const vyrCollide::Geometry*> geometryOf;
};

/// Never destroyed: nodes that scripts hold may outlive everything else.
Nodes& nodes() {
  static auto* s_nodes = new Nodes;
  return *s_nodes;
}

} // namespace

void GeometryNodes::add(const vyrCollide::Geometry* geometry, GeometryNode* node) {
  static const bool s_writesLooks = SceneVisualWriter::install();
  static_cast<void>(s_writesLooks);
  const std::lock_guard<std::mutex> lock(nodes().mutex);
  nodes().of.emplace(geometry, node);
  nodes().geometryOf[node] = geometry;
}

void GeometryNodes::remove(GeometryNode* node) {
  const std::lock_guard<std::mutex> lock(nodes().mutex);
  const auto entry = nodes().geometryOf.find(node);
  if (entry == nodes().geometryOf.end())
    return;
  const auto range = nodes().of.equal_range(entry->second);
  for (auto i = range.first; i != range.second; ++i) {
    if (i->second == node) {
      nodes().of.erase(i);
      break;
    }
  }
  nodes().geometryOf.erase(entry);
}

GeometryNode* GeometryNodes::find(const vyrCollide::Geometry* geometry) {
  const std::lock_guard<std::mutex> lock(nodes().mutex);
  GeometryNode* found = nullptr;
  const auto range = nodes().of.equal_range(geometry);
  for (auto i = range.first; i != range.second; ++i) {
    // Where a geometry died, another may have come to its address.
    if (i->second->getGeometry() == geometry && i->second->getNumParents() > 0 && !found)
      found = i->second;
  }
  return found;
}

} // namespace vyrOSG
