/// The row in which the engine holds the objects of a simulation.
#include "SceneRow.h"

#include "GeometryNative.h"
#include "ParticleSystemNative.h"
#include "RigidBodyNative.h"

#include <algorithm>

namespace vyrSDK {

std::vector<RowEntry> rowOf(const Simulation& simulation) {
  std::vector<RowEntry> row;
  const auto add = [&row](const btCollisionObject* object, OrderEntry::Kind kind, std::size_t index, std::size_t part) {
    if (object != nullptr && object->getBroadphaseHandle() != nullptr) {
      row.push_back({object, {kind, index, part, 0}});
    }
  };
  for (std::size_t i = 0; i < simulation.getRigidBodies().size(); ++i) {
    add(simulation.getRigidBodies()[i]->getNative()->body.get(), OrderEntry::BODY, i, 0);
  }
  for (std::size_t i = 0; i < simulation.getGeometries().size(); ++i) {
    add(simulation.getGeometries()[i]->getNative()->standalone.get(), OrderEntry::GEOMETRY, i, 0);
  }
  for (std::size_t i = 0; i < simulation.getParticleSystems().size(); ++i) {
    const auto& bodies = simulation.getParticleSystems()[i]->getNative()->bodies;
    for (std::size_t k = 0; k < bodies.size(); ++k) {
      add(bodies[k].get(), OrderEntry::PARTICLE, i, k);
    }
  }
  std::sort(row.begin(), row.end(), [](const RowEntry& a, const RowEntry& b) {
    return a.object->getBroadphaseHandle()->m_uniqueId < b.object->getBroadphaseHandle()->m_uniqueId;
  });
  for (std::size_t rank = 0; rank < row.size(); ++rank) {
    row[rank].what.rank = static_cast<int>(rank) + 1;
  }
  std::sort(row.begin(), row.end(), [](const RowEntry& a, const RowEntry& b) {
    return a.object->getWorldArrayIndex() < b.object->getWorldArrayIndex();
  });
  return row;
}

} // namespace vyrSDK
