/// Soft ground in scene files.
#include <vyrModel/Terrain.h>
#include <vyrSDK/SceneType.h>

namespace vyrModel {

/// A terrain with the soil of each of its columns. Its height field is a geometry of the scene.
class TerrainType : public vyrSDK::SceneType {
public:
  TerrainType()
      : SceneType("Terrain") {}

  bool owns(const vyrSDK::StepEventListener& listener) const override {
    const auto* terrain = dynamic_cast<const Terrain*>(&listener);
    return terrain != nullptr && terrain->isValid();
  }

  bool write(const vyrSDK::StepEventListener& listener, vyrSDK::SceneReferences& references,
             vyrSDK::SceneRecord& out) const override {
    const auto& terrain = static_cast<const Terrain&>(listener);
    const std::vector<int> place = references.placeOf(terrain.getGeometry());
    if (place.empty()) {
      return false;
    }
    const Soil& soil = terrain.m_parameters;
    out.set("geometry", place);
    out.set("modulus", soil.modulus);
    out.set("exponent", soil.exponent);
    out.set("looseDensity", soil.looseDensity);
    out.set("denseDensity", soil.denseDensity);
    out.set("compactionShare", soil.compactionShare);
    out.set("angleOfRepose", soil.angleOfRepose);
    out.set("sinkRate", soil.sinkRate);
    out.set("floors", terrain.m_floors);
    out.set("masses", terrain.m_soil->m_masses);
    out.set("densities", terrain.m_soil->m_densities);
    out.set("sinkages", terrain.m_soil->m_sinkages);
    out.set("pressed", toDoubles(terrain.m_soil->m_pressedIndices));
    out.set("steep", toDoubles(terrain.m_soil->m_steep));
    std::vector<double> pressures;
    for (const auto& [index, load] : terrain.m_loads) {
      pressures.push_back(static_cast<double>(index));
      pressures.push_back(load.pressure);
      pressures.push_back(load.mean);
    }
    out.set("pressures", pressures);
    return true;
  }

  vyr::ref_ptr<vyrSDK::StepEventListener> readListener(const vyrSDK::SceneValue& value,
                                                       vyrSDK::SceneParts& parts) const override {
    vyrCollide::Geometry* geometry = parts.geometryAt(value["geometry"]);
    auto* field = dynamic_cast<vyrCollide::HeightField*>(geometry->getShape());
    if (field == nullptr || geometry->getRigidBody() != nullptr) {
      value["geometry"].fail("must be a height field without a body");
    }
    vyr::RealVector heights;
    heights.assign(field->getHeights().begin(), field->getHeights().end());
    double depth = 0.5;
    value.getPositive("depth", depth);
    vyr::ref_ptr<Terrain> terrain = new Terrain(field->getNumColumns(), field->getNumRows(), field->getSizeX(),
                                                field->getSizeY(), heights, depth, readSoil(value));
    terrain->m_field = field;
    terrain->m_geometry = geometry;
    restore(*terrain, value, parts);
    return terrain;
  }

  void restore(vyrSDK::StepEventListener& listener, const vyrSDK::SceneValue& value,
               vyrSDK::SceneParts&) const override {
    auto& terrain = static_cast<Terrain&>(listener);
    SoilColumns& soil = *terrain.m_soil;
    const std::size_t count = soil.m_masses.size();
    if (!value.has("masses")) {
      return; // fresh soil
    }
    terrain.m_floors = value["floors"].numbers(count);
    soil.m_masses = value["masses"].numbers(count);
    soil.m_densities = value["densities"].numbers(count);
    soil.m_sinkages = value["sinkages"].numbers(count);
    for (std::size_t i = 0; i < count; ++i) {
      value["masses"][i].notNegative();
      value["densities"][i].positive();
    }
    soil.m_pressedIndices = readIndices(value["pressed"], count);
    soil.m_steep = readIndices(value["steep"], count);
    soil.m_pressed.assign(count, 0);
    for (const std::size_t index : soil.m_pressedIndices) {
      soil.m_pressed[index] = 1;
    }
    terrain.m_loads.clear();
    const vyrSDK::SceneValue pressures = value["pressures"];
    for (std::size_t i = 0; i + 2 < pressures.size(); i += 3) {
      terrain.m_loads[readIndex(pressures[i], count)] = {pressures[i + 1].number(), pressures[i + 2].number()};
    }
    // Drawings look at everything anew.
    ++terrain.m_revision;
    terrain.m_rowRevisions.assign(terrain.m_rowRevisions.size(), terrain.m_revision);
  }

protected:
  ~TerrainType() override = default;

private:
  static Soil readSoil(const vyrSDK::SceneValue& value) {
    Soil soil;
    value.getPositive("modulus", soil.modulus);
    value.getPositive("exponent", soil.exponent);
    value.getPositive("looseDensity", soil.looseDensity);
    value.getPositive("denseDensity", soil.denseDensity);
    value.getNotNegative("compactionShare", soil.compactionShare);
    value.getPositive("angleOfRepose", soil.angleOfRepose);
    value.getPositive("sinkRate", soil.sinkRate);
    if (!soil.isValid()) {
      value.fail("the soil has a number out of its range");
    }
    return soil;
  }

  static std::vector<double> toDoubles(const std::vector<std::size_t>& indices) {
    return std::vector<double>(indices.begin(), indices.end());
  }

  static std::size_t readIndex(const vyrSDK::SceneValue& value, std::size_t count) {
    const double index = value.notNegative();
    if (!(index < static_cast<double>(count))) {
      value.fail("there is no such sample");
    }
    return static_cast<std::size_t>(index);
  }

  static std::vector<std::size_t> readIndices(const vyrSDK::SceneValue& value, std::size_t count) {
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < value.size(); ++i) {
      indices.push_back(readIndex(value[i], count));
    }
    return indices;
  }
};

namespace {

const vyrSDK::SceneTypeEntry kEntry(new TerrainType);

} // namespace

} // namespace vyrModel
