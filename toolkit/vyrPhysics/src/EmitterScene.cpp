/// Emitters of bodies in scene files.
#include "SceneTypes.h"

#include <vyr/RigidBodyEmitter.h>

#include <limits>
#include <sstream>

namespace vyrSDK {

/// An emitter that makes all bodies from one shape, with its row of random numbers and the bodies that it made.
class EmitterType : public SceneType {
public:
  EmitterType()
      : SceneType("RigidBodyEmitter") {}

  bool owns(const StepEventListener& listener) const override {
    // What a function makes cannot be written.
    const auto* emitter = dynamic_cast<const vyr::RigidBodyEmitter*>(&listener);
    return emitter != nullptr && emitter->m_shape.valid();
  }

  bool write(const StepEventListener& listener, SceneReferences& references, SceneRecord& out) const override {
    const auto& emitter = static_cast<const vyr::RigidBodyEmitter&>(listener);
    std::ostringstream generator;
    generator << emitter.m_generator;
    out.set("name", std::string(emitter.m_name));
    out.set("shape", references.indexOf(emitter.m_shape.get()));
    out.set("material", references.indexOf(emitter.m_material.get()));
    out.set("rate", emitter.m_rate);
    out.set("life", emitter.m_life);
    if (emitter.m_maximum != kEndless) {
      out.set("maximum", static_cast<std::uint64_t>(emitter.m_maximum));
    }
    out.set("enable", emitter.m_enable);
    out.set("low", emitter.m_region.min);
    out.set("high", emitter.m_region.max);
    out.set("transform", emitter.m_transform);
    out.set("velocity", emitter.m_velocity);
    out.set("due", emitter.m_due);
    out.set("emitted", static_cast<std::uint64_t>(emitter.m_emitted));
    out.set("random", generator.str());
    std::vector<int> bodies;
    std::vector<double> births;
    for (std::size_t i = 0; i < emitter.m_bodies.size(); ++i) {
      if (references.indexOf(emitter.m_bodies[i].get()) >= 0) {
        bodies.push_back(references.indexOf(emitter.m_bodies[i].get()));
        births.push_back(emitter.m_births[i]);
      }
    }
    out.set("bodies", bodies);
    out.set("births", births);
    return true;
  }

  vyr::ref_ptr<StepEventListener> readListener(const SceneValue& value, SceneParts& parts) const override {
    vyr::ref_ptr<vyr::RigidBodyEmitter> emitter = new vyr::RigidBodyEmitter;
    std::string name;
    value.get("name", name);
    emitter->setName(name);
    emitter->setShape(parts.shapeAt(value["shape"]),
                      value.has("material") ? parts.materialAt(value["material"]) : nullptr);
    restore(*emitter, value, parts);
    return emitter;
  }

  void restore(StepEventListener& listener, const SceneValue& value, SceneParts& parts) const override {
    auto& emitter = static_cast<vyr::RigidBodyEmitter&>(listener);
    value.getNotNegative("rate", emitter.m_rate);
    value.getLimit("life", emitter.m_life);
    if (!(emitter.m_life > 0)) {
      value["life"].fail("must be above 0");
    }
    std::uint64_t maximum = kEndless;
    std::uint64_t emitted = 0;
    value.get("maximum", maximum);
    value.get("emitted", emitted);
    emitter.m_maximum = maximum;
    emitter.m_emitted = emitted;
    value.get("enable", emitter.m_enable);
    value.get("low", emitter.m_region.min);
    value.get("high", emitter.m_region.max);
    if (!emitter.m_region.isValid()) {
      value["low"].fail("must be below \"high\"");
    }
    value.get("transform", emitter.m_transform);
    value.get("velocity", emitter.m_velocity);
    value.getNotNegative("due", emitter.m_due);
    if (value.has("random")) {
      std::istringstream generator(value["random"].text());
      if (!(generator >> emitter.m_generator)) {
        value["random"].fail("is no state of the generator");
      }
    }
    readBodies(emitter, value, parts);
  }

protected:
  ~EmitterType() override = default;

private:
  static constexpr std::size_t kEndless = std::numeric_limits<std::size_t>::max();

  static void readBodies(vyr::RigidBodyEmitter& emitter, const SceneValue& value, SceneParts& parts) {
    emitter.m_bodies.clear();
    emitter.m_births.clear();
    if (!value.has("bodies")) {
      return;
    }
    const SceneValue bodies = value["bodies"];
    emitter.m_births = value["births"].numbers(bodies.size());
    for (std::size_t i = 0; i < bodies.size(); ++i) {
      vyr::RigidBody* body = parts.bodyAt(bodies[i]);
      if (body == nullptr) {
        bodies[i].fail("must be a body");
      }
      emitter.m_bodies.emplace_back(body);
    }
  }
};

vyr::ref_ptr<SceneType> makeEmitterType() {
  return new EmitterType;
}

} // namespace vyrSDK
