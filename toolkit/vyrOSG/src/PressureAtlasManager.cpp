// Keeps the pressure atlases of many geometries.
#include <vyrOSG/PressureAtlasManager.h>

#include <algorithm>

namespace vyrOSG {

PressureAtlasManager::PressureAtlasManager(double resolution)
    : m_resolution(resolution) {}

PressureAtlasManager::~PressureAtlasManager() = default;

PressureAtlas* PressureAtlasManager::createAtlas(vyrCollide::Geometry* geometry) {
  if (!geometry || findAtlas(geometry))
    return nullptr;
  const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(geometry, m_resolution));
  if (!atlas->isValid())
    return nullptr;
  m_atlases.push_back(atlas);
  return atlas.get();
}

PressureAtlas* PressureAtlasManager::findAtlas(const vyrCollide::Geometry* geometry) const {
  for (const vyr::ref_ptr<PressureAtlas>& atlas : m_atlases) {
    if (geometry && atlas->getGeometry() == geometry)
      return atlas.get();
  }
  return nullptr;
}

PressureAtlas* PressureAtlasManager::getAtlas(std::size_t index) const {
  return index < m_atlases.size() ? m_atlases[index].get() : nullptr;
}

bool PressureAtlasManager::removeAtlas(const PressureAtlas* atlas) {
  const auto found = std::find_if(m_atlases.begin(), m_atlases.end(),
                                  [atlas](const vyr::ref_ptr<PressureAtlas>& known) { return known.get() == atlas; });
  if (found == m_atlases.end())
    return false;
  m_atlases.erase(found);
  return true;
}

} // namespace vyrOSG
