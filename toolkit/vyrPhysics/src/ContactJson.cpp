/// Contact points in a scene file.
#include "ContactJson.h"

#include "SimulationNative.h"

#include <limits>

namespace vyrSDK {

namespace {

/// Calls `visit(name, field)` for each field, so that writing and reading cannot differ.
template <class Point, class Visitor>
void visitPoint(Point& point, const Visitor& visit) {
  visit("local1", point.m_localPointA);
  visit("local2", point.m_localPointB);
  visit("world1", point.m_positionWorldOnA);
  visit("world2", point.m_positionWorldOnB);
  visit("normal", point.m_normalWorldOnB);
  visit("direction1", point.m_lateralFrictionDir1);
  visit("direction2", point.m_lateralFrictionDir2);
  visit("distance", point.m_distance1);
  visit("friction", point.m_combinedFriction);
  visit("rollingFriction", point.m_combinedRollingFriction);
  visit("spinningFriction", point.m_combinedSpinningFriction);
  visit("restitution", point.m_combinedRestitution);
  visit("impulse", point.m_appliedImpulse);
  visit("previous", point.m_prevRHS);
  visit("impulse1", point.m_appliedImpulseLateral1);
  visit("impulse2", point.m_appliedImpulseLateral2);
  visit("motion1", point.m_contactMotion1);
  visit("motion2", point.m_contactMotion2);
  visit("softness", point.m_contactCFM);
  visit("correction", point.m_contactERP);
  visit("frictionSoftness", point.m_frictionCFM);
  visit("part1", point.m_partId0);
  visit("part2", point.m_partId1);
  visit("index1", point.m_index0);
  visit("index2", point.m_index1);
  visit("flags", point.m_contactPointFlags);
  visit("age", point.m_lifeTime);
}

struct Writer {
  Json& json;
  void operator()(const char* name, const btVector3& v) const { json[name] = toJson(v); }
  void operator()(const char* name, double v) const { json[name] = toJson(v); }
  void operator()(const char* name, int v) const { json[name] = v; }
};

struct Reader {
  const SceneValue& value;
  void operator()(const char* name, btVector3& v) const {
    const vyr::Vec3 read = value[name].vec3();
    v.setValue(read.x(), read.y(), read.z());
  }
  void operator()(const char* name, double& v) const { v = value[name].limit(); }
  void operator()(const char* name, int& v) const {
    v = static_cast<int>(value[name].integer(std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
  }
};

} // namespace

Json toJson(const btManifoldPoint& point) {
  Json json;
  visitPoint(point, Writer{json});
  int child1 = 0;
  int child2 = 0;
  decodeChildren(point.m_userPersistentData, child1, child2);
  json["geometry1"] = child1;
  json["geometry2"] = child2;
  return json;
}

btManifoldPoint toManifoldPoint(const SceneValue& value) {
  constexpr int kMostGeometries = 1 << 20;
  const btVector3 zero(0.0, 0.0, 0.0);
  btManifoldPoint point(zero, zero, zero, 0.0);
  visitPoint(point, Reader{value});
  point.m_userPersistentData = encodeChildren(static_cast<int>(value["geometry1"].integer(-1, kMostGeometries)),
                                              static_cast<int>(value["geometry2"].integer(-1, kMostGeometries)));
  return point;
}

} // namespace vyrSDK
