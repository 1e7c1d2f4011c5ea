// Keeps the pressure atlases of many geometries.
#pragma once

#include <vyrOSG/PressureAtlas.h>
#include <vyrOSG/export.h>

#include <vyr/Referenced.h>
#include <vyr/ref_ptr.h>

#include <cstddef>
#include <vector>

namespace vyrOSG {

/// One atlas a geometry.
class VYROSG_EXPORT PressureAtlasManager : public vyr::Referenced {
public:
  /// @param resolution texels a metre of the atlases.
  explicit PressureAtlasManager(double resolution = 50);

  double getResolution() const { return m_resolution; }

  /// Makes an atlas (*returns inner*). Nullable: geometry, result: null for a geometry that has an atlas or cannot have
  /// one, with one error message from the atlas in the latter case.
  PressureAtlas* createAtlas(vyrCollide::Geometry* geometry);

  /// *returns inner*. Nullable: null where there is none.
  PressureAtlas* findAtlas(const vyrCollide::Geometry* geometry) const;

  std::size_t getNumAtlases() const { return m_atlases.size(); }
  /// In the order of their making (*returns inner*). Nullable: null outside.
  PressureAtlas* getAtlas(std::size_t index) const;

  /// Drops an atlas. False when it is not one of these.
  bool removeAtlas(const PressureAtlas* atlas);

protected:
  ~PressureAtlasManager() override;

private:
  double m_resolution;
  std::vector<vyr::ref_ptr<PressureAtlas>> m_atlases;
};

} // namespace vyrOSG
