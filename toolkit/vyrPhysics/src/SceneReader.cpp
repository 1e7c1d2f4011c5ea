/// Reads a scene file from its header to the row of its parts.
#include "SceneReader.h"

#include "SceneParse.h"
#include "SceneUpgrade.h"

namespace vyrSDK {

void SceneReader::readHeader(const SceneValue& root) {
  const Json& json = m_document.getJson();
  if (!json.is_object() || !root.has("format") || root["format"].text() != "vyr-scene") {
    throw SceneError("it is no scene: the member \"format\" is not \"vyr-scene\"");
  }
  const long long version = root["version"].integer(1, 1000000);
  if (version != kSceneVersion) {
    root["version"].fail("is " + std::to_string(version) + ", and only versions up to " +
                         std::to_string(kSceneVersion) + " are known");
  }
}

void SceneReader::readSettings(const SceneValue& root, const Simulation& usual) {
  m_settings.timeStep = usual.getTimeStep();
  m_settings.gravity = usual.getGravity();
  m_settings.solver = usual.getSolver();
  m_settings.iterations = usual.getNumIterations();
  m_settings.frictionModel = usual.getFrictionModel();
  m_settings.sleeping = usual.getEnableSleeping();
  if (!root.has("simulation")) {
    return;
  }
  const SceneValue value = root["simulation"];
  value.getPositive("timeStep", m_settings.timeStep);
  value.get("countStart", m_settings.countStart);
  value.get("countedSteps", m_settings.countedSteps);
  value.get("steps", m_settings.steps);
  value.get("gravity", m_settings.gravity);
  if (value.has("solver")) {
    const std::string solver = value["solver"].text();
    if (solver != "multi" && solver != "iterative") {
      value["solver"].fail("must be \"iterative\" or \"multi\", not \"" + solver + "\"");
    }
    m_settings.solver = solver == "multi" ? Simulation::MULTI : Simulation::ITERATIVE;
  }
  value.getInteger("iterations", m_settings.iterations, 1, 1000000);
  int model = m_settings.frictionModel;
  value.getInteger("frictionModel", model, 0, 4);
  m_settings.frictionModel = static_cast<vyr::FrictionModel::SolveType>(model);
  value.get("sleeping", m_settings.sleeping);
}

namespace {

template <class Visit>
void forEach(const SceneValue& root, const char* key, const Visit& visit) {
  if (!root.has(key)) {
    return;
  }
  const SceneValue list = root[key];
  for (std::size_t i = 0; i < list.size(); ++i) {
    visit(list[i]);
  }
}

} // namespace

void SceneReader::readParts(const SceneValue& root) {
  forEach(root, "materials", [this](const SceneValue& value) { m_materials.push_back(makeMaterial(value)); });
  forEach(root, "shapes", [this](const SceneValue& value) { m_shapes.push_back(makeShape(value)); });
  forEach(root, "bodies", [this](const SceneValue& value) { readBody(value); });
  forEach(root, "geometries", [this](const SceneValue& value) { m_geometries.push_back(readGeometry(value)); });
  forEach(root, "constraints", [this](const SceneValue& value) { readConstraint(value); });
  forEach(root, "particleSystems", [this](const SceneValue& value) { readParticles(value); });
  forEach(root, "spaces", [this](const SceneValue& value) { readSpace(value); });
  forEach(root, "assemblies", [this](const SceneValue& value) { m_assemblies.push_back(readAssembly(value)); });
  forEach(root, "listeners", [this](const SceneValue& value) { readListener(value); });
}

void SceneReader::readSpace(const SceneValue& value) {
  m_spaces.emplace_back(new vyrCollide::Space);
  for (std::size_t i = 0; i < value.size(); ++i) {
    m_spaces.back()->add(geometryAt(value[i]));
  }
}

vyr::ref_ptr<Assembly> SceneReader::readAssembly(const SceneValue& value) {
  vyr::ref_ptr<Assembly> assembly;
  std::string type = "assembly";
  value.get("type", type);
  SceneType* known = SceneType::find(type);
  if (known != nullptr) {
    assembly = known->readAssembly(value, *this);
  }
  if (assembly) {
    m_typedAssemblies.push_back({assembly, known, value});
  }
  if (!assembly) {
    if (type != "assembly") {
      value["type"].fail("there is no kind of assembly \"" + type + "\"");
    }
    assembly = new Assembly;
  }
  std::string name = assembly->getName();
  value.get("name", name);
  assembly->setName(name);
  forEach(value, "bodies", [&](const SceneValue& part) { assembly->add(bodyAt(part)); });
  forEach(value, "geometries", [&](const SceneValue& part) { assembly->add(geometryAt(part)); });
  forEach(value, "constraints", [&](const SceneValue& part) { assembly->add(constraintAt(part)); });
  if (value.has("frames")) {
    const SceneValue frames = value["frames"];
    for (std::size_t i = 0; i < frames.size(); ++i) {
      assembly->add(makeFrame(frames[i], *this, nullptr).get());
    }
  }
  forEach(value, "assemblies", [&](const SceneValue& part) { assembly->add(readAssembly(part).get()); });
  return assembly;
}

void SceneReader::readListener(const SceneValue& value) {
  const std::string name = value["type"].text();
  SceneType* type = SceneType::find(name);
  vyr::ref_ptr<StepEventListener> listener = type != nullptr ? type->readListener(value, *this) : nullptr;
  if (!listener) {
    value["type"].fail("there is no kind of listener \"" + name + "\"");
  }
  readLook(*listener, value);
  m_listeners.push_back({listener, type, value});
}

void SceneReader::parse(const std::string& text, const Simulation& usual) {
  m_document.parse(text);
  upgradeScene(m_document.getJson());
  const SceneValue root = m_document.getRoot();
  readHeader(root);
  readSettings(root, usual);
  readParts(root);
  readOrder(root);
  readContacts(root);
  m_unknown = m_document.findUnknown();
}

} // namespace vyrSDK
