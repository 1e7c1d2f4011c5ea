/// Cars in scene files.
#include "SceneTypes.h"

#include <vyrUtil/SimpleCar.h>

namespace vyrSDK {

/// An assembly that says which of its parts are chassis, wheels and suspensions, and how the car is driven.
class CarType : public SceneType {
public:
  CarType()
      : SceneType("SimpleCar") {}

  bool owns(const Assembly& assembly) const override {
    const auto* car = dynamic_cast<const vyrUtil::SimpleCar*>(&assembly);
    return car != nullptr && car->isValid();
  }

  bool write(const Assembly& assembly, SceneReferences& references, SceneRecord& out) const override {
    const auto& car = static_cast<const vyrUtil::SimpleCar&>(assembly);
    std::vector<int> wheels;
    std::vector<int> suspensions;
    for (std::size_t i = 0; i < vyrUtil::SimpleCar::NUM_WHEELS; ++i) {
      wheels.push_back(references.indexOf(car.getWheel(i)));
      suspensions.push_back(references.indexOf(car.getSuspension(i)));
      if (wheels.back() < 0 || suspensions.back() < 0) {
        return false; // what is left of a car that was taken apart
      }
    }
    if (references.indexOf(car.getChassis()) < 0) {
      return false;
    }
    out.set("chassis", references.indexOf(car.getChassis()));
    out.set("wheels", wheels);
    out.set("suspensions", suspensions);
    out.set("wheelRadius", car.m_wheelRadius);
    out.set("throttle", car.m_throttle);
    out.set("steering", car.m_steering);
    out.set("brake", car.m_brake);
    out.set("maxSteeringAngle", car.m_maxSteeringAngle);
    out.set("maxTorque", car.m_maxTorque);
    out.set("maxBrakeTorque", car.m_maxBrakeTorque);
    out.set("maxSpeed", car.m_maxSpeed);
    return true;
  }

  vyr::ref_ptr<Assembly> readAssembly(const SceneValue& value, SceneParts& parts) const override {
    vyr::ref_ptr<vyrUtil::SimpleCar> car = new vyrUtil::SimpleCar;
    car->m_chassis = parts.bodyAt(value["chassis"]);
    if (!car->m_chassis) {
      value["chassis"].fail("must be a body");
    }
    for (std::size_t i = 0; i < vyrUtil::SimpleCar::NUM_WHEELS; ++i) {
      const SceneValue wheel = value["wheels"][i];
      const SceneValue suspension = value["suspensions"][i];
      car->m_wheels[i] = parts.bodyAt(wheel);
      car->m_suspensions[i] = dynamic_cast<vyr::Suspension*>(parts.constraintAt(suspension));
      if (!car->m_wheels[i]) {
        wheel.fail("must be a body");
      }
      if (!car->m_suspensions[i]) {
        suspension.fail("must be a suspension");
      }
    }
    car->m_wheelRadius = value["wheelRadius"].positive();
    restore(*car, value, parts);
    return car;
  }

  void restore(Assembly& assembly, const SceneValue& value, SceneParts&) const override {
    auto& car = static_cast<vyrUtil::SimpleCar&>(assembly);
    value.get("throttle", car.m_throttle);
    value.get("steering", car.m_steering);
    value.get("brake", car.m_brake);
    value.getPositive("maxSteeringAngle", car.m_maxSteeringAngle);
    value.getNotNegative("maxTorque", car.m_maxTorque);
    value.getNotNegative("maxBrakeTorque", car.m_maxBrakeTorque);
    value.getPositive("maxSpeed", car.m_maxSpeed);
  }

protected:
  ~CarType() override = default;
};

vyr::ref_ptr<SceneType> makeCarType() {
  return new CarType;
}

} // namespace vyrSDK
