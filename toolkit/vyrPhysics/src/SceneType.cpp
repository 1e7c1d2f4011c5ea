/// Kinds of objects that a scene file knows by name.
#include <vyrSDK/SceneType.h>

#include "Find.h"
#include "SceneTypes.h"

namespace vyrSDK {

namespace {

using Types = std::vector<vyr::ref_ptr<SceneType>>;

Types& types() {
  static Types s_types = {makeCarType(), makeEmitterType(), makeWireType()};
  return s_types;
}

} // namespace

SceneType::~SceneType() = default;

bool SceneType::owns(const StepEventListener&) const {
  return false;
}

bool SceneType::owns(const Assembly&) const {
  return false;
}

bool SceneType::write(const StepEventListener&, SceneReferences&, SceneRecord&) const {
  return false;
}

bool SceneType::write(const Assembly&, SceneReferences&, SceneRecord&) const {
  return false;
}

vyr::ref_ptr<StepEventListener> SceneType::readListener(const SceneValue&, SceneParts&) const {
  return nullptr;
}

vyr::ref_ptr<Assembly> SceneType::readAssembly(const SceneValue&, SceneParts&) const {
  return nullptr;
}

void SceneType::restore(StepEventListener&, const SceneValue&, SceneParts&) const {}

void SceneType::restore(Assembly&, const SceneValue&, SceneParts&) const {}

void SceneType::add(SceneType* type) {
  vyr::ref_ptr<SceneType> holder = type;
  if (type == nullptr) {
    return;
  }
  for (auto& known : types()) {
    if (known->getName() == type->getName()) {
      known = holder;
      return;
    }
  }
  types().insert(types().begin(), holder);
}

void SceneType::remove(SceneType* type) {
  vyrPhysics::erase(types(), type);
}

SceneType* SceneType::find(const std::string& name) {
  for (const auto& type : types()) {
    if (type->getName() == name) {
      return type.get();
    }
  }
  return nullptr;
}

SceneType* SceneType::of(const StepEventListener& listener) {
  for (const auto& type : types()) {
    if (type->owns(listener)) {
      return type.get();
    }
  }
  return nullptr;
}

SceneType* SceneType::of(const Assembly& assembly) {
  for (const auto& type : types()) {
    if (type->owns(assembly)) {
      return type.get();
    }
  }
  return nullptr;
}

} // namespace vyrSDK
