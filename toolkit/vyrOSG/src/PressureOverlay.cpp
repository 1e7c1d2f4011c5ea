// Shows the pressures of one atlas on its geometry.
#include "PressureOverlay.h"

#include <vyrCollide/Shape.h>
#include <vyrOSG/utils.h>

#include <osg/BlendFunc>
#include <osg/Material>
#include <osg/PolygonOffset>
#include <osg/Texture2D>

#include <algorithm>

namespace vyrOSG {

namespace {

const osg::Vec4 kBareSurface(0.80f, 0.81f, 0.83f, 1);

void setLook(osg::StateSet* stateSet, osg::Texture2D* texture, bool clear) {
  constexpr unsigned int kOn = osg::StateAttribute::ON | osg::StateAttribute::PROTECTED;
  osg::ref_ptr<osg::Material> material = new osg::Material;
  material->setDiffuse(osg::Material::FRONT_AND_BACK, osg::Vec4(1, 1, 1, 1));
  material->setAmbient(osg::Material::FRONT_AND_BACK, osg::Vec4(1, 1, 1, 1));
  material->setSpecular(osg::Material::FRONT_AND_BACK, osg::Vec4(0, 0, 0, 1));
  stateSet->setAttributeAndModes(material, kOn);
  stateSet->setTextureAttributeAndModes(0, texture, kOn);
  // Over a visual that somebody adds later.
  stateSet->setAttributeAndModes(new osg::PolygonOffset(-1, -1), kOn);
  if (clear) {
    stateSet->setAttributeAndModes(new osg::BlendFunc, kOn);
    stateSet->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
  }
}

} // namespace

PressureOverlay::PressureOverlay(PressureAtlas* atlas, vyrOSG::Group* group, bool replaceVisual)
    : m_atlas(atlas)
    , m_group(group)
    , m_geode(new osg::Geode)
    , m_image(new osg::Image)
    , m_bare(kBareSurface) {
  if (!replaceVisual)
    m_bare.a() = 0;
  m_image->allocateImage(int(atlas->getWidth()), int(atlas->getHeight()), 1, GL_RGBA, GL_UNSIGNED_BYTE);
  m_image->setDataVariance(osg::Object::DYNAMIC);
  makePixelLists();
  for (std::size_t texel = 0; texel < atlas->getNumTexels(); ++texel)
    paint(texel, m_bare);

  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(m_image);
  texture->setResizeNonPowerOfTwoHint(false);
  texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
  texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
  texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);
  m_geode->addDrawable(atlas->createMesh());
  setLook(m_geode->getOrCreateStateSet(), texture, !replaceVisual);

  vyrCollide::Geometry* geometry = atlas->getGeometry();
  m_revision = geometry->getShape()->getRevision();
  if (replaceVisual)
    m_hidden = vyrOSG::findGeometryNode(geometry, group);
  if (m_hidden.valid())
    m_hidden->setNodeMask(0);
  m_node = new vyrOSG::GeometryNode(geometry);
  m_node->setName("pressure");
  m_node->setRenderChild(vyrOSG::GeometryNode::RENDER_DATA, static_cast<osg::Node*>(m_geode.get()));
  group->addChild(m_node);
}

PressureOverlay::~PressureOverlay() {
  if (m_hidden.valid())
    m_hidden->setNodeMask(~0u);
  osg::ref_ptr<vyrOSG::Group> group;
  if (m_group.lock(group))
    group->removeChild(m_node);
}

void PressureOverlay::makePixelLists() {
  const std::size_t count = m_atlas->getNumTexels();
  const unsigned int width = m_atlas->getWidth();
  const unsigned int height = m_atlas->getHeight();
  m_pixelBegin.assign(count + 1, 0);
  for (int pass = 0; pass < 2; ++pass) {
    std::vector<std::size_t> next = m_pixelBegin;
    for (unsigned int y = 0; y < height; ++y) {
      for (unsigned int x = 0; x < width; ++x) {
        const std::size_t texel = m_atlas->getTexelOfPixel(x, y);
        if (texel >= count)
          continue;
        if (pass == 0)
          ++m_pixelBegin[texel + 1];
        else
          m_pixels[next[texel]++] = static_cast<std::size_t>(y) * width + x;
      }
    }
    if (pass == 0) {
      for (std::size_t i = 0; i < count; ++i)
        m_pixelBegin[i + 1] += m_pixelBegin[i];
      m_pixels.resize(m_pixelBegin[count]);
    }
  }
}

void PressureOverlay::paint(std::size_t texel, const osg::Vec4& color) {
  unsigned char bytes[4];
  for (int i = 0; i < 4; ++i)
    bytes[i] = static_cast<unsigned char>(std::clamp(color[i], 0.0f, 1.0f) * 255 + 0.5f);
  for (std::size_t k = m_pixelBegin[texel]; k < m_pixelBegin[texel + 1]; ++k)
    std::copy(bytes, bytes + 4, m_image->data() + 4 * m_pixels[k]);
}

void PressureOverlay::erase() {
  for (std::size_t texel : m_painted)
    paint(texel, m_bare);
  m_painted.clear();
}

void PressureOverlay::followForm() {
  const vyrCollide::Geometry* geometry = m_atlas->getGeometry();
  if (!geometry || geometry->getShape()->getRevision() == m_revision)
    return;
  m_revision = geometry->getShape()->getRevision();
  m_geode->removeDrawables(0, m_geode->getNumDrawables());
  m_geode->addDrawable(m_atlas->createMesh());
}

void PressureOverlay::showAtlas(const osgSim::ColorRange& range) {
  followForm();
  erase();
  for (std::size_t texel : m_atlas->getPressedTexels()) {
    paint(texel, range.getColor(float(m_atlas->getPressure(texel))));
    m_painted.push_back(texel);
  }
  m_image->dirty();
}

void PressureOverlay::showValues(const std::vector<double>& values, const osgSim::ColorRange& range) {
  followForm();
  erase();
  for (std::size_t texel = 0; texel < std::min(values.size(), m_atlas->getNumTexels()); ++texel) {
    if (values[texel] > 0) {
      paint(texel, range.getColor(float(values[texel])));
      m_painted.push_back(texel);
    }
  }
  m_image->dirty();
}

osg::Vec4 PressureOverlay::getColor(std::size_t texel) const {
  if (texel >= m_atlas->getNumTexels())
    return osg::Vec4();
  const PressureAtlas::Texel& place = m_atlas->getTexels()[texel];
  return m_image->getColor(place.x, place.y);
}

} // namespace vyrOSG
