// Gives visuals their default look and finds the materials that a colour reaches.
#include "Surface.h"

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Image>
#include <osg/NodeVisitor>
#include <osg/Program>
#include <osg/TexMat>
#include <osg/Texture2D>

#include <set>

namespace vyrOSG::surface {

namespace {

const char* const kDefaultMaterialName = "default look";
const char* const kFixedMaterialName = "fixed look";
constexpr unsigned int kTextureUnits = 8;

/// Collects the state sets of a node and below it, each once, whether hidden or not.
class StateSetCollector : public osg::NodeVisitor {
public:
  StateSetCollector()
      : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {
    setNodeMaskOverride(~0u);
  }

  void apply(osg::Node& node) override {
    if (osg::StateSet* stateSet = node.getStateSet()) {
      if (m_known.insert(stateSet).second)
        m_found.emplace_back(stateSet);
    }
    traverse(node);
  }

  std::vector<osg::ref_ptr<osg::StateSet>> m_found;

private:
  std::set<osg::StateSet*> m_known;
};

/// One tile pattern of two by two fields, light enough that shadows and objects show on it.
osg::ref_ptr<osg::Texture2D> checkerTexture() {
  static osg::observer_ptr<osg::Texture2D> s_texture;
  osg::ref_ptr<osg::Texture2D> texture;
  if (s_texture.lock(texture))
    return texture;
  constexpr int kSize = 128;
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->allocateImage(kSize, kSize, 1, GL_RGB, GL_UNSIGNED_BYTE);
  for (int y = 0; y < kSize; ++y) {
    for (int x = 0; x < kSize; ++x) {
      const bool light = (x < kSize / 2) == (y < kSize / 2);
      const bool joint = x % (kSize / 2) == 0 || y % (kSize / 2) == 0;
      const int grey = joint ? 205 : light ? 250 : 228;
      unsigned char* pixel = image->data(x, y);
      pixel[0] = pixel[1] = static_cast<unsigned char>(grey);
      pixel[2] = static_cast<unsigned char>(grey + 3);
    }
  }
  texture = new osg::Texture2D(image);
  texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
  texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
  texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
  texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  texture->setMaxAnisotropy(8);
  s_texture = texture;
  return texture;
}

} // namespace

osg::Vec4 paletteColor(unsigned int index) {
  static const osg::Vec4 s_colors[] = {
      {0.30f, 0.51f, 0.71f, 1}, {0.90f, 0.57f, 0.26f, 1}, {0.42f, 0.66f, 0.44f, 1}, {0.80f, 0.38f, 0.40f, 1},
      {0.58f, 0.48f, 0.74f, 1}, {0.87f, 0.76f, 0.37f, 1}, {0.34f, 0.68f, 0.69f, 1}, {0.84f, 0.55f, 0.66f, 1},
      {0.62f, 0.50f, 0.41f, 1}, {0.47f, 0.55f, 0.62f, 1},
  };
  return s_colors[index % (sizeof(s_colors) / sizeof(s_colors[0]))];
}

osg::Vec4 groundColor() {
  return osg::Vec4(0.74f, 0.75f, 0.76f, 1);
}

void setDefaultMaterial(osg::Node* node, const osg::Vec4& color) {
  osg::ref_ptr<osg::Material> material = new osg::Material;
  material->setName(kDefaultMaterialName);
  material->setDiffuse(osg::Material::FRONT_AND_BACK, color);
  material->setAmbient(osg::Material::FRONT_AND_BACK, color);
  material->setSpecular(osg::Material::FRONT_AND_BACK, osg::Vec4(0.18f, 0.18f, 0.18f, color.a()));
  material->setShininess(osg::Material::FRONT_AND_BACK, 24);
  osg::StateSet* stateSet = node->getOrCreateStateSet();
  stateSet->setAttributeAndModes(material);
  setTransparency(*stateSet, color.a());
}

bool isDefaultMaterial(const osg::Material* material) {
  return material && material->getName() == kDefaultMaterialName;
}

void setFixedLook(osg::Node* node, bool lit) {
  constexpr unsigned int kKept = osg::StateAttribute::PROTECTED;
  osg::StateSet* stateSet = node->getOrCreateStateSet();
  osg::ref_ptr<osg::Material> material = new osg::Material;
  material->setName(kFixedMaterialName);
  material->setColorMode(osg::Material::AMBIENT_AND_DIFFUSE);
  stateSet->setAttributeAndModes(material, osg::StateAttribute::ON | kKept);
  if (!lit)
    stateSet->setMode(GL_LIGHTING, osg::StateAttribute::OFF | kKept);
  for (unsigned int unit = 0; unit < kTextureUnits; ++unit) {
    for (GLenum mode : {GL_TEXTURE_2D, GL_TEXTURE_CUBE_MAP})
      stateSet->setTextureMode(unit, mode, osg::StateAttribute::OFF | kKept);
  }
  // An empty program is the fixed pipeline.
  stateSet->setAttribute(new osg::Program);
}

void setLineLook(osg::Node* node) {
  setFixedLook(node, false);
  // The decorator draws shadows from what has this bit.
  constexpr osg::Node::NodeMask kCastsShadow = 0x2;
  node->setNodeMask(node->getNodeMask() & ~kCastsShadow);
  constexpr double kForward = 1e-6;
  node->getOrCreateStateSet()->setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0, 1 - kForward));
}

void setPlaneChecker(osg::Node* node, double squareSize) {
  osg::StateSet* stateSet = node->getOrCreateStateSet();
  stateSet->setTextureAttributeAndModes(0, checkerTexture());
  const double tiles = squareSize / 2;
  stateSet->setTextureAttributeAndModes(0, new osg::TexMat(osg::Matrix::scale(tiles, tiles, 1)));
}

void changeMaterials(osg::Node* node, const std::function<void(osg::Material&, osg::StateSet&)>& change) {
  osg::StateSet* own = node->getOrCreateStateSet();
  if (!own->getAttribute(osg::StateAttribute::MATERIAL))
    setDefaultMaterial(node, groundColor());
  visitStateSets(node, [&](osg::StateSet& stateSet) {
    auto* material = static_cast<osg::Material*>(stateSet.getAttribute(osg::StateAttribute::MATERIAL));
    if (!material || material->getName() == kFixedMaterialName)
      return;
    if (material->getNumParents() > 1) {
      material = new osg::Material(*material);
      stateSet.setAttributeAndModes(material);
    }
    change(*material, stateSet);
  });
}

void visitStateSets(osg::Node* node, const std::function<void(osg::StateSet&)>& visit) {
  StateSetCollector collector;
  node->accept(collector);
  for (const osg::ref_ptr<osg::StateSet>& stateSet : collector.m_found)
    visit(*stateSet);
}

void setTransparency(osg::StateSet& stateSet, float alpha) {
  if (alpha < 1) {
    stateSet.setAttributeAndModes(
        new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA));
    stateSet.setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
  } else if (stateSet.getRenderingHint() == osg::StateSet::TRANSPARENT_BIN) {
    stateSet.removeAttribute(osg::StateAttribute::BLENDFUNC);
    stateSet.removeMode(GL_BLEND);
    stateSet.setRenderingHint(osg::StateSet::DEFAULT_BIN);
  }
}

} // namespace vyrOSG::surface
