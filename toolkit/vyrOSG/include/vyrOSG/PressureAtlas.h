// The surface of a geometry, cut into small patches that each have a pressure and a place in a texture.
#pragma once

#include <vyrOSG/export.h>

#include <vyr/Referenced.h>
#include <vyr/Vec3.h>
#include <vyr/observer_ptr.h>
#include <vyrCollide/Geometry.h>

#include <osg/Geometry>
#include <osg/ref_ptr>

#include <cstddef>
#include <memory>
#include <vector>

namespace vyrOSG {

class PressureSurface;

/// A texture atlas over the surface of a geometry. The surface is cut into charts, parts that are seen from one of the
/// six axis directions without a fold; each chart is covered by square cells in its plane. A cell that the surface
/// passes is a texel: it has a place, a normal and an area on the surface, and a pressure.
class VYROSG_EXPORT PressureAtlas : public vyr::Referenced {
public:
  /// A patch of the surface, in the frame of the geometry.
  struct Texel {
    vyr::Vec3 position; ///< m
    vyr::Vec3 normal;   ///< unit vector out of the surface
    double area = 0;    ///< m^2
    unsigned int x = 0; ///< column of the texture
    unsigned int y = 0; ///< row of the texture
  };

  /// @param geometry (*observes*) to cover. Nullable: an atlas without texels, as for an invalid geometry and, with one
  /// error message, for a plane, which has no end.
  /// @param resolution texels a metre, above 0 (otherwise one error message and no texels); lowered where the texture
  /// would be larger than 2048 by 2048.
  explicit PressureAtlas(vyrCollide::Geometry* geometry, double resolution = 50);

  /// *returns inner*. Nullable: null when it has gone.
  vyrCollide::Geometry* getGeometry() const { return m_geometry.get(); }

  /// False for an atlas without texels.
  bool isValid() const { return !m_texels.empty(); }

  const std::vector<Texel>& getTexels() const { return m_texels; }
  std::size_t getNumTexels() const { return m_texels.size(); }

  /// Texels a metre after any lowering.
  double getResolution() const { return m_resolution; }

  /// Size of the texture.
  unsigned int getWidth() const { return m_width; }
  unsigned int getHeight() const { return m_height; }

  /// The texel that a pixel of the texture shows; getNumTexels() where it shows none. Pixels next to a chart repeat its
  /// border, so that filtering does not mix in what is not surface.
  std::size_t getTexelOfPixel(unsigned int x, unsigned int y) const { return m_pixels[y * m_width + x]; }

  /// Pressure of a texel in Pa; 0 outside.
  double getPressure(std::size_t texel) const;
  /// Adds to the pressure of a texel, in Pa. Nothing happens outside and for what is not finite.
  void addPressure(std::size_t texel, double pressure);
  /// Sets all pressures to 0.
  void clear();
  /// Texels with a pressure, in the order in which they got it.
  const std::vector<std::size_t>& getPressedTexels() const { return m_pressed; }

  /// Force in N that the pressures add up to, over the area of the texels.
  double getForce() const;

  /// Area of all texels in m^2.
  double getArea() const;

  /// The texels whose place (frame of the geometry, m) is within a box. The cost follows the box, not the surface.
  void findTexels(const vyr::Vec3& low, const vyr::Vec3& high, std::vector<std::size_t>& outTexels) const;

  /// A mesh of the surface with texture coordinates into the atlas. *Returns new*. Nullable: null without texels.
  osg::ref_ptr<osg::Geometry> createMesh() const;

  /// Follows a surface that changed its form, such as a height field: places, normals and areas are renewed, texels and
  /// pressures stay. True when there was something to follow.
  bool refresh();

protected:
  ~PressureAtlas() override;

private:
  void makeTexels();
  void coverTriangle(std::size_t triangle, bool create);
  void finishTexels();
  void spreadBorders();
  void buildGrid();

  vyr::observer_ptr<vyrCollide::Geometry> m_geometry;
  double m_resolution;
  unsigned int m_revision = 0;
  std::unique_ptr<PressureSurface> m_surface;
  unsigned int m_width = 0;
  unsigned int m_height = 0;
  std::vector<Texel> m_texels;
  std::vector<std::size_t> m_pixels;
  std::vector<double> m_pressures;
  std::vector<std::size_t> m_pressed;
  // Texels sorted by the cells of a coarse grid over the bounds: those of cell c are from m_cellBegin[c] on.
  vyr::Vec3 m_gridLow;
  double m_gridSize = 1;
  int m_gridCount[3] = {0, 0, 0};
  std::vector<std::size_t> m_cellBegin;
  std::vector<std::size_t> m_cellTexels;
};

} // namespace vyrOSG
