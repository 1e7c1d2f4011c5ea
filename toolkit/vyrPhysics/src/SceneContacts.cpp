/// The row of the engine's objects in a scene file, and the contacts between them.
#include "SceneReader.h"

#include "ContactJson.h"
#include "GeometryNative.h"
#include "ParticleSystemNative.h"
#include "RigidBodyNative.h"
#include "SimulationNative.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

namespace vyrSDK {

namespace {

using Object = std::tuple<OrderEntry::Kind, std::size_t, std::size_t>;

OrderEntry readEntry(const SceneValue& value) {
  constexpr int kMost = 1 << 28;
  const std::string kind = value[std::size_t(0)].text();
  OrderEntry entry{};
  if (kind != "body" && kind != "geometry" && kind != "particle") {
    value[std::size_t(0)].fail("must be \"body\", \"geometry\" or \"particle\", not \"" + kind + "\"");
  }
  entry.kind = kind == "body" ? OrderEntry::BODY : kind == "geometry" ? OrderEntry::GEOMETRY : OrderEntry::PARTICLE;
  entry.index = value[std::size_t(1)].count();
  entry.part = value[std::size_t(2)].count();
  entry.rank = static_cast<int>(value[std::size_t(3)].integer(1, kMost));
  return entry;
}

} // namespace

void SceneReader::readOrder(const SceneValue& root) {
  std::vector<Object> all;
  for (std::size_t i = 0; i < m_bodies.size(); ++i) {
    all.emplace_back(OrderEntry::BODY, i, 0);
  }
  for (std::size_t i = 0; i < m_geometries.size(); ++i) {
    if (m_geometries[i]->getEnableCollisions()) {
      all.emplace_back(OrderEntry::GEOMETRY, i, 0);
    }
  }
  for (std::size_t i = 0; i < m_particleSystems.size(); ++i) {
    for (std::size_t k = 0; k < m_particleSystems[i]->getNumParticles(); ++k) {
      all.emplace_back(OrderEntry::PARTICLE, i, k);
    }
  }
  std::set<Object> missing(all.begin(), all.end());
  std::set<int> ranks;
  const std::size_t count = root.has("order") ? root["order"].size() : 0;
  for (std::size_t i = 0; i < count; ++i) {
    const SceneValue value = root["order"][i];
    m_order.push_back(readEntry(value));
    const OrderEntry& entry = m_order.back();
    if (missing.erase(Object(entry.kind, entry.index, entry.part)) == 0) {
      value.fail("names a part that is not there, or a part again");
    }
    if (!ranks.insert(entry.rank).second) {
      value[std::size_t(3)].fail("names a rank again");
    }
  }
  // Parts that the row leaves out, as in a file written by hand, stand behind those that it names.
  int rank = ranks.empty() ? 0 : *ranks.rbegin();
  for (const Object& object : all) {
    if (missing.count(object) != 0) {
      m_order.push_back({std::get<0>(object), std::get<1>(object), std::get<2>(object), ++rank});
    }
  }
}

void SceneReader::readContacts(const SceneValue& root) {
  const std::size_t count = root.has("contacts") ? root["contacts"].size() : 0;
  for (std::size_t i = 0; i < count; ++i) {
    const SceneValue value = root["contacts"][i];
    ContactState contact;
    std::size_t* places[] = {&contact.first, &contact.second};
    for (std::size_t k = 0; k < 2; ++k) {
      *places[k] = value["objects"][k].count();
      if (*places[k] >= m_order.size()) {
        value["objects"][k].fail("there is no object " + std::to_string(*places[k]) + " in the order");
      }
    }
    const SceneValue points = value["points"];
    for (std::size_t k = 0; k < points.size(); ++k) {
      contact.points.push_back(toManifoldPoint(points[k]));
    }
    if (!contact.points.empty()) {
      m_contacts.push_back(std::move(contact));
    }
  }
}

btRigidBody* SceneReader::objectAt(std::size_t place) const {
  const OrderEntry& entry = m_order.at(place);
  if (entry.kind == OrderEntry::BODY) {
    return m_bodies[entry.index]->getNative()->body.get();
  }
  if (entry.kind == OrderEntry::GEOMETRY) {
    return m_geometries[entry.index]->getNative()->standalone.get();
  }
  return m_particleSystems[entry.index]->getNative()->bodies[entry.part].get();
}

void SceneReader::restoreContacts(Simulation& simulation) const {
  // Finding contacts makes the engine's places for them, which then get back what was in them.
  SimulationNative& native = *simulation.m_native;
  native.world.performDiscreteCollisionDetection();
  using Key = std::tuple<const btCollisionObject*, const btCollisionObject*, const void*>;
  std::map<Key, const ContactState*> saved;
  for (const ContactState& contact : m_contacts) {
    saved[Key(objectAt(contact.first), objectAt(contact.second), contact.points[0].m_userPersistentData)] = &contact;
  }
  const auto fill = [](btPersistentManifold& manifold, const ContactState& contact) {
    const int count = std::min(static_cast<int>(contact.points.size()), MANIFOLD_CACHE_SIZE);
    manifold.setNumContacts(count);
    for (int i = 0; i < count; ++i) {
      manifold.getContactPoint(i) = contact.points[static_cast<std::size_t>(i)];
    }
  };
  std::vector<btPersistentManifold*> empty;
  for (int m = 0; m < native.dispatcher.getNumManifolds(); ++m) {
    btPersistentManifold& manifold = *native.dispatcher.getManifoldByIndexInternal(m);
    const bool found = manifold.getNumContacts() > 0;
    const Key key(manifold.getBody0(), manifold.getBody1(),
                  found ? manifold.getContactPoint(0).m_userPersistentData : nullptr);
    manifold.clearManifold();
    const auto contact = found ? saved.find(key) : saved.end();
    if (contact != saved.end()) {
      fill(manifold, *contact->second);
      saved.erase(contact);
    } else {
      empty.push_back(&manifold);
    }
  }
  // Points that are about to open are kept for a step, though they would not be found anew.
  for (const auto& rest : saved) {
    const auto place = std::find_if(empty.begin(), empty.end(), [&rest](const btPersistentManifold* manifold) {
      return manifold->getNumContacts() == 0 && manifold->getBody0() == std::get<0>(rest.first) &&
             manifold->getBody1() == std::get<1>(rest.first);
    });
    if (place != empty.end()) {
      fill(**place, *rest.second);
    }
  }
}

} // namespace vyrSDK
