/// Wires in scene files.
#include "SceneTypes.h"

#include <vyrWire/Wire.h>

#include <algorithm>

namespace vyrSDK {

/// A wire with what its ends hang on, and with places and velocities of its nodes.
class WireType : public SceneType {
public:
  WireType()
      : SceneType("Wire") {}

  bool owns(const StepEventListener& listener) const override {
    const auto* wire = dynamic_cast<const vyrWire::Wire*>(&listener);
    return wire != nullptr && wire->isValid();
  }

  bool write(const StepEventListener& listener, SceneReferences& references, SceneRecord& out) const override {
    const auto& wire = static_cast<const vyrWire::Wire&>(listener);
    out.set("length", wire.m_length);
    out.set("segments", static_cast<std::uint64_t>(wire.getNumSegments()));
    out.set("massPerLength", wire.m_massPerLength);
    out.set("radius", wire.m_radius);
    out.set("stretchStiffness", wire.m_stretchStiffness);
    out.set("bendStiffness", wire.m_bendStiffness);
    out.set("damping", wire.m_damping);
    out.set("subSteps", wire.m_subSteps);
    writeEnd(wire.m_begin, references, "begin", out);
    writeEnd(wire.m_end, references, "end", out);
    out.set("nodes", wire.m_places);
    out.set("velocities", wire.m_velocities);
    out.set("impulses", wire.m_lambdas);
    out.set("pulls", wire.m_pulls);
    out.set("directions", wire.m_before);
    return true;
  }

  vyr::ref_ptr<StepEventListener> readListener(const SceneValue& value, SceneParts& parts) const override {
    const auto segments = static_cast<std::size_t>(value["segments"].integer(1, 16384));
    double radius = 0.01;
    value.getPositive("radius", radius);
    vyr::ref_ptr<vyrWire::Wire> wire =
        new vyrWire::Wire(value["length"].positive(), segments, value["massPerLength"].positive(), radius);
    restore(*wire, value, parts);
    return wire;
  }

  void restore(StepEventListener& listener, const SceneValue& value, SceneParts& parts) const override {
    auto& wire = static_cast<vyrWire::Wire&>(listener);
    const std::size_t nodes = wire.m_places.size();
    value.getNotNegative("stretchStiffness", wire.m_stretchStiffness);
    value.getNotNegative("bendStiffness", wire.m_bendStiffness);
    value.getNotNegative("damping", wire.m_damping);
    value.getInteger("subSteps", wire.m_subSteps, 1, 200);
    wire.m_begin = readEnd(value, "begin", parts);
    wire.m_end = readEnd(value, "end", parts);
    if (value.has("nodes")) {
      wire.m_places = readVectors(value["nodes"], nodes);
    } else {
      wire.layOut();
    }
    if (value.has("velocities")) {
      wire.m_velocities = readVectors(value["velocities"], nodes);
    }
    if (value.has("impulses")) {
      wire.m_lambdas = value["impulses"].numbers(nodes - 1);
    }
    wire.m_pulls = value.has("pulls") ? value["pulls"].numbers(nodes - 1) : std::vector<double>(nodes - 1);
    if (value.has("directions")) {
      wire.m_before = readVectors(value["directions"], nodes - 1);
    } else {
      vyrWire::Wire::directions(wire.m_places, wire.m_before);
    }
  }

protected:
  ~WireType() override = default;

private:
  static void writeEnd(const vyrWire::Wire::End& end, SceneReferences& references, const char* key, SceneRecord& out) {
    const int body = references.indexOf(end.body.get());
    if (!end.fastened || (end.onBody && body < 0)) {
      return; // free, or its body has gone
    }
    SceneRecord record = out.add(key);
    record.set("body", body);
    record.set("point", end.point);
    if (end.onBody) {
      record.set("others", std::vector<vyr::Vec3>(end.others, end.others + 2));
      record.set("otherTurns", std::vector<vyr::Vec3>(end.otherTurns, end.otherTurns + 2));
    }
  }

  static vyrWire::Wire::End readEnd(const SceneValue& value, const char* key, SceneParts& parts) {
    vyrWire::Wire::End end;
    if (value.has(key)) {
      vyr::RigidBody* body = value[key].has("body") ? parts.bodyAt(value[key]["body"]) : nullptr;
      end.fastened = true;
      end.onBody = body != nullptr;
      end.body = body;
      end.point = value[key]["point"].vec3();
      if (value[key].has("others")) {
        const std::vector<vyr::Vec3> others = readVectors(value[key]["others"], 2);
        std::copy(others.begin(), others.end(), end.others);
      }
      if (value[key].has("otherTurns")) {
        const std::vector<vyr::Vec3> turns = readVectors(value[key]["otherTurns"], 2);
        std::copy(turns.begin(), turns.end(), end.otherTurns);
      }
    }
    return end;
  }

  static std::vector<vyr::Vec3> readVectors(const SceneValue& value, std::size_t count) {
    const std::vector<double> row = value.numbers(3 * count);
    std::vector<vyr::Vec3> vectors;
    for (std::size_t i = 0; i < count; ++i) {
      vectors.emplace_back(row[3 * i], row[3 * i + 1], row[3 * i + 2]);
    }
    return vectors;
  }
};

vyr::ref_ptr<SceneType> makeWireType() {
  return new WireType;
}

} // namespace vyrSDK
