// The look of rocks.
#include "RockVisual.h"

#include <vyrOSG/Conversions.h>

#include <osg/Geometry>
#include <osg/Material>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vyrOSG {

namespace {

/// A random value for a point of a grid, 0 to 1.
double valueAt(int x, int y, int z, unsigned int seed) {
  const auto key = (static_cast<std::uint64_t>(static_cast<std::uint32_t>(x)) * 73856093u) ^
                   (static_cast<std::uint64_t>(static_cast<std::uint32_t>(y)) * 19349663u) ^
                   (static_cast<std::uint64_t>(static_cast<std::uint32_t>(z)) * 83492791u) ^ seed;
  return vyr::Random(key).uniform();
}

double smooth(double t) {
  return t * t * (3 - 2 * t);
}

/// Smooth noise in space, 0 to 1, with features of size 1.
double noiseAt(const vyr::Vec3& place, unsigned int seed) {
  const int cell[3] = {static_cast<int>(std::floor(place.x())), static_cast<int>(std::floor(place.y())),
                       static_cast<int>(std::floor(place.z()))};
  const double f[3] = {smooth(place.x() - cell[0]), smooth(place.y() - cell[1]), smooth(place.z() - cell[2])};
  double sum = 0;
  for (int corner = 0; corner < 8; ++corner) {
    const int dx = corner & 1;
    const int dy = (corner >> 1) & 1;
    const int dz = corner >> 2;
    sum += valueAt(cell[0] + dx, cell[1] + dy, cell[2] + dz, seed) * (dx ? f[0] : 1 - f[0]) * (dy ? f[1] : 1 - f[1]) *
           (dz ? f[2] : 1 - f[2]);
  }
  return sum;
}

/// Coarse to fine noise, -1 to 1. @param size of the rock in m.
double grainAt(const vyr::Vec3& place, double size, unsigned int seed) {
  double sum = 0;
  double weight = 0.5;
  double scale = 3 / size;
  for (unsigned int octave = 0; octave < 4; ++octave) {
    sum += weight * (2 * noiseAt(place * scale, seed + octave) - 1);
    weight *= 0.55;
    scale *= 2.3;
  }
  return sum;
}

} // namespace

osg::ref_ptr<osg::Geode> makeRockVisual(const RockBlock& block, const osg::Vec4& color, unsigned int seed,
                                        unsigned int level) {
  const BallMesh& ball = ballMesh(level);
  const double size = block.getReach();
  const auto count = static_cast<unsigned int>(ball.directions.size());
  osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
  osg::ref_ptr<osg::Vec3Array> normals = new osg::Vec3Array(count);
  osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
  osg::ref_ptr<osg::Vec2Array> coords = new osg::Vec2Array;
  for (const vyr::Vec3& direction : ball.directions) {
    const vyr::Vec3 place = block.pointAt(direction);
    const double grain = grainAt(place, size, seed);
    // Little enough that rocks on rocks show no gap.
    vertices->push_back(osg::Vec3(toOsg(place + direction * (0.022 * size * grain))));
    const double speckle = valueAt(int(1e4 * place.x()), int(1e4 * place.y()), int(1e4 * place.z()), seed) - 0.5;
    const auto light = static_cast<float>(1 + 0.30 * grain + 0.10 * speckle);
    colors->push_back(osg::Vec4(color.r() * light, color.g() * light, color.b() * light, color.a()));
    coords->push_back(osg::Vec2(float(std::atan2(direction.y(), direction.x()) / 6.283185307 + 0.5),
                                float(0.5 + 0.5 * direction.z())));
  }
  osg::ref_ptr<osg::DrawElementsUInt> triangles =
      new osg::DrawElementsUInt(GL_TRIANGLES, ball.indices.begin(), ball.indices.end());
  for (size_t t = 0; t < ball.indices.size(); t += 3) {
    const osg::Vec3& a = (*vertices)[ball.indices[t]];
    const osg::Vec3 normal = ((*vertices)[ball.indices[t + 1]] - a) ^ ((*vertices)[ball.indices[t + 2]] - a);
    for (size_t i = 0; i < 3; ++i)
      (*normals)[ball.indices[t + i]] += normal;
  }
  for (osg::Vec3& normal : *normals)
    normal.normalize();

  osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
  geometry->setVertexArray(vertices);
  geometry->setNormalArray(normals, osg::Array::BIND_PER_VERTEX);
  geometry->setColorArray(colors, osg::Array::BIND_PER_VERTEX);
  geometry->setTexCoordArray(0, coords);
  geometry->addPrimitiveSet(triangles);
  geometry->setUseDisplayList(false);
  geometry->setUseVertexBufferObjects(true);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(geometry);
  osg::ref_ptr<osg::Material> material = new osg::Material;
  material->setColorMode(osg::Material::AMBIENT_AND_DIFFUSE);
  material->setSpecular(osg::Material::FRONT_AND_BACK, osg::Vec4(0.05f, 0.05f, 0.05f, 1));
  material->setShininess(osg::Material::FRONT_AND_BACK, 8);
  geode->getOrCreateStateSet()->setAttributeAndModes(material);
  return geode;
}

} // namespace vyrOSG
