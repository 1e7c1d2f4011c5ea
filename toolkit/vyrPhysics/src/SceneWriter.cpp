/// Turns a simulation into the text of a scene file.
#include "SceneWriter.h"

#include "ContactJson.h"
#include "SceneRow.h"
#include "SimulationNative.h"

#include <algorithm>
#include <tuple>

namespace vyrSDK {

int SceneWriter::indexOf(const vyr::RigidBody* body) const {
  const auto found = m_bodies.find(body);
  return found != m_bodies.end() ? found->second : -1;
}

int SceneWriter::indexOf(const vyr::Constraint* constraint) const {
  const auto found = m_constraints.find(constraint);
  return found != m_constraints.end() ? found->second : -1;
}

Json SceneWriter::settings() const {
  const vyr::TimeStamp& clock = m_simulation.getTimeStamp();
  return {{"timeStep", clock.getTimeStep()},
          {"countStart", clock.countStart()},
          {"countedSteps", clock.countedSteps()},
          {"steps", clock.steps()},
          {"gravity", toJson(m_simulation.getGravity())},
          {"solver", m_simulation.getSolver() == Simulation::MULTI ? "multi" : "iterative"},
          {"iterations", m_simulation.getNumIterations()},
          {"frictionModel", static_cast<int>(m_simulation.getFrictionModel())},
          {"sleeping", m_simulation.getEnableSleeping()}};
}

namespace {

/// Places of the parts that are in the simulation.
template <class Parts, class Place>
Json placesOf(const Parts& parts, const Place& place) {
  Json list = Json::array();
  for (const auto& part : parts) {
    const Json entry = place(part.get());
    if (entry != -1 && !entry.empty()) {
      list.push_back(entry);
    }
  }
  return list;
}

} // namespace

Json SceneWriter::assemblyJson(const Assembly& assembly) {
  Json json = {{"type", "assembly"}, {"name", std::string(assembly.getName())}};
  const auto index = [this](const auto* part) { return Json(indexOf(part)); };
  json["bodies"] = placesOf(assembly.getRigidBodies(), index);
  json["geometries"] = placesOf(assembly.getGeometries(), [this](const auto* part) { return Json(placeOf(part)); });
  json["constraints"] = placesOf(assembly.getConstraints(), index);
  json["frames"] = Json::array();
  for (const auto& frame : assembly.getFrames()) {
    json["frames"].push_back(frameJson(*frame));
  }
  json["assemblies"] = Json::array();
  for (const auto& part : assembly.getAssemblies()) {
    json["assemblies"].push_back(assemblyJson(*part));
  }
  if (SceneType* type = SceneType::of(assembly)) {
    Json typed = json;
    SceneRecord record(&typed);
    if (type->write(assembly, *this, record)) {
      typed["type"] = type->getName();
      return typed;
    }
  }
  return json;
}

void SceneWriter::addListener(const StepEventListener& listener) {
  SceneType* type = SceneType::of(listener);
  Json json = {{"type", type != nullptr ? type->getName() : std::string()}};
  SceneRecord record(&json);
  if (type != nullptr && type->write(listener, *this, record)) {
    Json look = Json::object();
    SceneRecord lookRecord(&look);
    if (m_visuals != nullptr && m_visuals->write(listener, m_simulation, lookRecord)) {
      json["visual"] = look;
    }
    m_json["listeners"].push_back(std::move(json));
  }
}

Json SceneWriter::order() {
  const char* const kinds[] = {"body", "geometry", "particle"};
  Json list = Json::array();
  for (const RowEntry& entry : rowOf(m_simulation)) {
    m_rowPlaces.emplace(entry.object, static_cast<int>(m_rowPlaces.size()));
    list.push_back({kinds[entry.what.kind], entry.what.index, entry.what.part, entry.what.rank});
  }
  return list;
}

Json SceneWriter::contacts() const {
  Json list = Json::array();
  const btCollisionDispatcher& dispatcher = m_simulation.getNative()->dispatcher;
  for (int m = 0; m < dispatcher.getNumManifolds(); ++m) {
    const btPersistentManifold& manifold = *dispatcher.getManifoldByIndexInternal(m);
    Json points = Json::array();
    for (int i = 0; i < manifold.getNumContacts(); ++i) {
      points.push_back(toJson(manifold.getContactPoint(i)));
    }
    const auto first = m_rowPlaces.find(manifold.getBody0());
    const auto second = m_rowPlaces.find(manifold.getBody1());
    if (!points.empty() && first != m_rowPlaces.end() && second != m_rowPlaces.end()) {
      list.push_back({{"objects", {first->second, second->second}}, {"points", points}});
    }
  }
  // The engine's own order depends on the history, and one state shall have one text.
  const auto key = [](const Json& entry) {
    const Json& point = entry["points"][0];
    return std::make_tuple(entry["objects"][0].get<int>(), entry["objects"][1].get<int>(),
                           point["geometry1"].get<int>(), point["geometry2"].get<int>());
  };
  std::sort(list.begin(), list.end(), [&key](const Json& a, const Json& b) { return key(a) < key(b); });
  return list;
}

std::string SceneWriter::write() {
  m_json["format"] = "vyr-scene";
  m_json["version"] = kSceneVersion;
  m_json["simulation"] = settings();
  for (const char* list : {"materials", "shapes", "bodies", "geometries", "constraints", "particleSystems", "spaces",
                           "assemblies", "listeners"}) {
    m_json[list] = Json::array();
  }
  countShapes();
  for (const auto& body : m_simulation.getRigidBodies()) {
    addBody(*body);
  }
  for (const auto& geometry : m_simulation.getGeometries()) {
    Json& list = m_json["geometries"];
    list.push_back(geometryJson(*geometry, -1, static_cast<int>(list.size())));
  }
  for (const auto& constraint : m_simulation.getConstraints()) {
    addConstraint(*constraint);
  }
  for (const auto& particles : m_simulation.getParticleSystems()) {
    addParticles(*particles);
  }
  for (const auto& space : m_simulation.getSpaces()) {
    m_json["spaces"].push_back(
        placesOf(space->getGeometries(), [this](const auto* part) { return Json(placeOf(part)); }));
  }
  for (const auto& assembly : m_simulation.getAssemblies()) {
    m_json["assemblies"].push_back(assemblyJson(*assembly));
  }
  for (const auto& listener : m_simulation.getStepEventListeners()) {
    addListener(*listener);
  }
  m_json["order"] = order();
  m_json["contacts"] = contacts();
  // Names may hold anything; what is no UTF-8 is replaced.
  return m_json.dump(1, ' ', false, Json::error_handler_t::replace);
}

} // namespace vyrSDK
