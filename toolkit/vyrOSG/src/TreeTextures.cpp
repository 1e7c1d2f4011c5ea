// Pictures of bark and leaves, painted in memory.
#include "TreeTextures.h"

#include <vyr/Random.h>

#include <osg/Image>
#include <osg/Vec2d>

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace vyrOSG {

namespace {

constexpr double kPi = 3.14159265358979323846;

/// Smooth noise over a grid of random values that repeats after its cells.
class TiledNoise {
public:
  TiledNoise(int columns, int rows, unsigned int seed)
      : m_columns(columns)
      , m_rows(rows) {
    vyr::Random random(seed);
    for (int i = 0; i < columns * rows; ++i)
      m_values.push_back(random.uniform());
  }

  /// 0 to 1; u and v repeat after 1.
  double at(double u, double v) const {
    const double x = u * m_columns;
    const double y = v * m_rows;
    const double fx = smooth(x - std::floor(x));
    const double fy = smooth(y - std::floor(y));
    const int i = static_cast<int>(std::floor(x));
    const int j = static_cast<int>(std::floor(y));
    const double low = value(i, j) * (1 - fx) + value(i + 1, j) * fx;
    const double high = value(i, j + 1) * (1 - fx) + value(i + 1, j + 1) * fx;
    return low * (1 - fy) + high * fy;
  }

private:
  static double smooth(double t) { return t * t * (3 - 2 * t); }
  double value(int i, int j) const {
    return m_values[((j % m_rows + m_rows) % m_rows) * m_columns + (i % m_columns + m_columns) % m_columns];
  }

  int m_columns;
  int m_rows;
  std::vector<double> m_values;
};

osg::ref_ptr<osg::Texture2D> makeTexture(int size, const std::function<osg::Vec4d(double u, double v)>& paint,
                                         osg::Texture::WrapMode wrap) {
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->allocateImage(size, size, 1, GL_RGBA, GL_UNSIGNED_BYTE);
  for (int y = 0; y < size; ++y) {
    for (int x = 0; x < size; ++x) {
      const osg::Vec4d color = paint((x + 0.5) / size, (y + 0.5) / size);
      for (int i = 0; i < 4; ++i)
        image->data(x, y)[i] = static_cast<unsigned char>(std::clamp(color[i], 0.0, 1.0) * 255 + 0.5);
    }
  }
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
  texture->setWrap(osg::Texture::WRAP_S, wrap);
  texture->setWrap(osg::Texture::WRAP_T, wrap);
  texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
  texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  texture->setMaxAnisotropy(4);
  return texture;
}

/// One leaf of the spray: from its foot along its axis.
struct Leaflet {
  osg::Vec2d foot;
  osg::Vec2d axis;
  double length;
  double width;
  double shade;
};

std::vector<Leaflet> makeLeaflets() {
  std::vector<Leaflet> leaflets;
  vyr::Random random(11);
  for (int i = 0; i < 9; ++i) {
    const double along = 0.12 + 0.66 * i / 8.0;
    const double side = i % 2 == 0 ? 1 : -1;
    const double angle = i == 8 ? 0.0 : side * random.uniform(0.75, 1.2) * (1 - 0.35 * along);
    leaflets.push_back({osg::Vec2d(0.5, along), osg::Vec2d(std::sin(angle), std::cos(angle)),
                        i == 8 ? 0.24 : random.uniform(0.36, 0.44) * (1 - 0.3 * along), random.uniform(0.075, 0.09),
                        random.uniform(0.8, 1.0)});
  }
  return leaflets;
}

osg::Vec4d paintLeaflet(const Leaflet& leaf, const osg::Vec2d& place) {
  const osg::Vec2d from = place - leaf.foot;
  const double along = (from * leaf.axis) / leaf.length;
  const double across = std::abs(from.x() * leaf.axis.y() - from.y() * leaf.axis.x());
  if (along <= 0 || along >= 1)
    return osg::Vec4d(0, 0, 0, 0);
  const double edge = leaf.width * std::pow(std::sin(kPi * std::pow(along, 0.8)), 0.8);
  const double cover = std::clamp((edge - across) / 0.006 + 0.5, 0.0, 1.0);
  const double rib = across < 0.006 ? 1.18 : 1.0;
  const double vein = 1 - 0.08 * std::abs(std::sin((along * 9 + across * 30) * kPi));
  const double shade = leaf.shade * rib * vein * (0.82 + 0.18 * across / std::max(edge, 1e-3));
  return osg::Vec4d(shade, shade, shade, cover);
}

} // namespace

osg::ref_ptr<osg::Texture2D> barkTexture() {
  static const osg::ref_ptr<osg::Texture2D> s_texture = [] {
    const TiledNoise wide(6, 2, 1);
    const TiledNoise ridges(22, 5, 2);
    const TiledNoise grain(90, 40, 3);
    return makeTexture(
        256,
        [&](double u, double v) {
          const double bent = u + 0.05 * wide.at(u, v);
          const double ridge = std::abs(ridges.at(bent, v) - 0.5) * 2;
          const double shade =
              0.42 + 0.45 * std::sqrt(ridge) + 0.16 * (grain.at(u, v) - 0.5) + 0.2 * (wide.at(v, u) - 0.5);
          return osg::Vec4d(shade, shade, shade, 1);
        },
        osg::Texture::REPEAT);
  }();
  return s_texture;
}

osg::ref_ptr<osg::Texture2D> leafTexture() {
  static const osg::ref_ptr<osg::Texture2D> s_texture = [] {
    const std::vector<Leaflet> leaflets = makeLeaflets();
    return makeTexture(
        256,
        [&leaflets](double u, double v) {
          // Clear pixels keep a leaf's grey: smaller pictures of the texture would have dark rims otherwise.
          osg::Vec4d color(0.75, 0.75, 0.75, 0);
          if (std::abs(u - 0.5) < 0.007 && v < 0.8)
            color.set(0.6, 0.6, 0.6, 1);
          for (const Leaflet& leaf : leaflets) {
            const osg::Vec4d leafColor = paintLeaflet(leaf, osg::Vec2d(u, v));
            if (leafColor.w() >= 0.5 || leafColor.w() > color.w())
              color = leafColor;
          }
          return color;
        },
        osg::Texture::CLAMP_TO_EDGE);
  }();
  return s_texture;
}

} // namespace vyrOSG
