// Compares the contacts of a step with the pairs that are watched.
#include "AutoPause.h"

#include <algorithm>

namespace vyrOSG {

namespace {

template <class Pointers, class Thing>
bool holds(const Pointers& pair, const Thing* first, const Thing* second) {
  return (pair[0].get() == first && pair[1].get() == second) || (pair[0].get() == second && pair[1].get() == first);
}

} // namespace

void AutoPause::add(const vyr::RigidBody* first, const vyr::RigidBody* second) {
  if (!first || !second)
    return;
  remove(first, second);
  Pair pair;
  pair.ofBodies = true;
  pair.bodies[0] = first;
  pair.bodies[1] = second;
  m_pairs.push_back(pair);
}

void AutoPause::add(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second) {
  if (!first || !second)
    return;
  remove(first, second);
  Pair pair;
  pair.geometries[0] = first;
  pair.geometries[1] = second;
  m_pairs.push_back(pair);
}

void AutoPause::remove(const vyr::RigidBody* first, const vyr::RigidBody* second) {
  m_pairs.erase(std::remove_if(m_pairs.begin(), m_pairs.end(),
                               [&](const Pair& pair) { return pair.ofBodies && holds(pair.bodies, first, second); }),
                m_pairs.end());
}

void AutoPause::remove(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second) {
  m_pairs.erase(
      std::remove_if(m_pairs.begin(), m_pairs.end(),
                     [&](const Pair& pair) { return !pair.ofBodies && holds(pair.geometries, first, second); }),
      m_pairs.end());
}

bool AutoPause::matches(const Pair& pair, const vyrSDK::Contact& contact) {
  // A gap still lies between the surfaces of a contact with a negative depth.
  if (contact.depth < 0.0)
    return false;
  if (pair.ofBodies)
    return holds(pair.bodies, static_cast<const vyr::RigidBody*>(contact.geometry1->getRigidBody()),
                 static_cast<const vyr::RigidBody*>(contact.geometry2->getRigidBody()));
  return holds(pair.geometries, static_cast<const vyrCollide::Geometry*>(contact.geometry1),
               static_cast<const vyrCollide::Geometry*>(contact.geometry2));
}

bool AutoPause::isGone(const Pair& pair) {
  return pair.ofBodies ? !pair.bodies[0] || !pair.bodies[1] : !pair.geometries[0] || !pair.geometries[1];
}

bool AutoPause::check(const vyrSDK::Simulation& simulation, std::string& who) {
  m_pairs.erase(std::remove_if(m_pairs.begin(), m_pairs.end(), isGone), m_pairs.end());
  if (m_pairs.empty())
    return false;
  const std::vector<vyrSDK::Contact>& contacts = simulation.getContacts();
  bool begun = false;
  for (Pair& pair : m_pairs) {
    const bool touching = std::any_of(contacts.begin(), contacts.end(),
                                      [&](const vyrSDK::Contact& contact) { return matches(pair, contact); });
    if (touching && !pair.touching && !begun) {
      begun = true;
      who = pair.ofBodies ? "\"" + pair.bodies[0]->getName() + "\" and \"" + pair.bodies[1]->getName() + "\""
                          : "\"" + pair.geometries[0]->getName() + "\" and \"" + pair.geometries[1]->getName() + "\"";
    }
    pair.touching = touching;
  }
  return begun;
}

} // namespace vyrOSG
