// Puts textures of every mode, and mirrored surroundings, on nodes.
#include <vyrOSG/utils.h>

#include "DataFile.h"
#include "Surface.h"
#include "SurfaceShader.h"

#include <vyr/Notify.h>
#include <vyr/RigidBody.h>
#include <vyrCollide/Geometry.h>

#include <osg/TexMat>
#include <osg/TextureCubeMap>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

constexpr float kDefaultReflection = 0.5f;

bool isMode(int mode) {
  return mode >= DIFFUSE_TEXTURE && mode <= SPHEREMAP_TEXTURE;
}

bool checkMode(int mode) {
  if (isMode(mode))
    return true;
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::setTexture: " << mode << " is no texture mode; they run from 0 to "
                                << int(SPHEREMAP_TEXTURE);
  return false;
}

osg::ref_ptr<osg::Texture2D> readTexture(const std::string& imagePath) {
  osg::ref_ptr<osg::Image> image = datafile::readImage("vyrOSG::setTexture", imagePath);
  if (!image)
    return nullptr;
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image);
  texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
  texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  texture->setResizeNonPowerOfTwoHint(false);
  texture->setMaxAnisotropy(8);
  return texture;
}

/// Lets the shader see the diffuse textures that a node and the nodes below it carry.
void announceDiffuseTextures(osg::Node* node) {
  surface::visitStateSets(node, [](osg::StateSet& stateSet) {
    if (stateSet.getTextureAttribute(DIFFUSE_TEXTURE, osg::StateAttribute::TEXTURE))
      stateSet.setDefine(surface::unitDefine(DIFFUSE_TEXTURE));
  });
}

/// Lets the shader draw a node, with the reflection that was set for it or the default one.
void useShader(osg::Node* node) {
  osg::StateSet* stateSet = node->getOrCreateStateSet();
  surface::useSurfaceShader(*stateSet);
  if (!stateSet->getUniform(surface::kReflectionUniform))
    stateSet->addUniform(new osg::Uniform(surface::kReflectionUniform, kDefaultReflection));
  announceDiffuseTextures(node);
}

/// Surfaces in the palette's colours turn white under a picture, which so keeps its own colours.
void whitenDefaultLook(osg::Node* node) {
  surface::changeMaterials(node, [](osg::Material& material, osg::StateSet&) {
    if (!surface::isDefaultMaterial(&material))
      return;
    const float alpha = material.getDiffuse(osg::Material::FRONT).a();
    material.setDiffuse(osg::Material::FRONT_AND_BACK, osg::Vec4(1, 1, 1, alpha));
    material.setAmbient(osg::Material::FRONT_AND_BACK, osg::Vec4(1, 1, 1, alpha));
    material.setName("");
  });
}

bool putTexture(osg::Node* node, osg::Texture2D* texture, bool repeat, TextureMode mode, float scaleU, float scaleV) {
  if (!std::isfinite(scaleU) || !std::isfinite(scaleV)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::setTexture: the scales " << scaleU << " and " << scaleV
                                  << " are not finite";
    return false;
  }
  const auto wrap = repeat || mode == SHADOW_JITTER_TEXTURE ? osg::Texture::REPEAT : osg::Texture::CLAMP_TO_EDGE;
  texture->setWrap(osg::Texture::WRAP_S, wrap);
  texture->setWrap(osg::Texture::WRAP_T, wrap);
  if (mode == SHADOW_JITTER_TEXTURE) {
    // The average of random numbers is none.
    texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::NEAREST);
    texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::NEAREST);
    texture->setMaxAnisotropy(1);
  }

  // What nodes below carry on this unit gives way, as it does for colours.
  surface::visitStateSets(node, [&](osg::StateSet& stateSet) {
    // Lines and axes have images switched off for good.
    constexpr unsigned int kOpen = osg::StateAttribute::ON | osg::StateAttribute::INHERIT;
    if ((stateSet.getTextureMode(mode, GL_TEXTURE_2D) & kOpen) != 0) {
      stateSet.removeTextureAttribute(mode, osg::StateAttribute::TEXTURE);
      stateSet.removeTextureAttribute(mode, osg::StateAttribute::TEXMAT);
      stateSet.removeTextureMode(mode, GL_TEXTURE_2D);
    }
  });
  osg::StateSet* stateSet = node->getOrCreateStateSet();
  stateSet->setTextureAttribute(mode, new osg::TexMat(osg::Matrix::scale(scaleU, scaleV, 1)));
  if (mode == DIFFUSE_TEXTURE) {
    stateSet->setTextureAttributeAndModes(mode, texture);
    whitenDefaultLook(node);
  } else {
    // Only the shader samples this unit: switched on for the fixed pipeline it would be mixed in as a second picture.
    stateSet->setTextureAttribute(mode, texture);
    useShader(node);
  }
  stateSet->setDefine(surface::unitDefine(mode));
  return true;
}

} // namespace

bool setTexture(osg::Node* node, osg::Texture2D* texture, bool repeat, vyrOSG::TextureMode mode, float scaleU,
                float scaleV) {
  if (!node || !texture || !checkMode(mode))
    return false;
  return putTexture(node, texture, repeat, mode, scaleU, scaleV);
}

bool setTexture(osg::Node* node, const std::string& imagePath, bool repeat, vyrOSG::TextureMode mode, float scaleU,
                float scaleV) {
  if (!node || !checkMode(mode))
    return false;
  osg::ref_ptr<osg::Texture2D> texture = readTexture(imagePath);
  return texture && putTexture(node, texture.get(), repeat, mode, scaleU, scaleV);
}

bool setTexture(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, const std::string& imagePath, bool repeat,
                vyrOSG::TextureMode mode) {
  GeometryNode* node = findGeometryNode(geometry, group);
  return node && setTexture(node, imagePath, repeat, mode);
}

bool setTexture(const vyr::RigidBody* body, vyrOSG::Group* group, const std::string& imagePath, bool repeat,
                vyrOSG::TextureMode mode) {
  if (!body || !group || !checkMode(mode))
    return false;
  std::vector<GeometryNode*> nodes;
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body->getGeometries()) {
    if (GeometryNode* node = findGeometryNode(geometry.get(), group))
      nodes.push_back(node);
  }
  if (nodes.empty())
    return false;
  osg::ref_ptr<osg::Texture2D> texture = readTexture(imagePath);
  if (!texture)
    return false;
  for (GeometryNode* node : nodes)
    putTexture(node, texture.get(), repeat, mode, 1, 1);
  return true;
}

bool setCubeMapTexture(osg::Node* node, const std::string& path, const std::string& imageType) {
  if (!node)
    return false;
  static const std::pair<osg::TextureCubeMap::Face, const char*> s_sides[] = {
      {osg::TextureCubeMap::POSITIVE_X, "posx"}, {osg::TextureCubeMap::NEGATIVE_X, "negx"},
      {osg::TextureCubeMap::POSITIVE_Y, "posy"}, {osg::TextureCubeMap::NEGATIVE_Y, "negy"},
      {osg::TextureCubeMap::POSITIVE_Z, "posz"}, {osg::TextureCubeMap::NEGATIVE_Z, "negz"}};
  osg::ref_ptr<osg::TextureCubeMap> cube = new osg::TextureCubeMap;
  for (const auto& side : s_sides) {
    osg::ref_ptr<osg::Image> image = datafile::readImage("vyrOSG::setCubeMapTexture", path + side.second + imageType);
    if (!image)
      return false;
    // The rows of a cube map run from the top down, those of a read image from the bottom up.
    image->flipVertical();
    cube->setImage(side.first, image);
  }
  cube->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
  cube->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  for (auto axis : {osg::Texture::WRAP_S, osg::Texture::WRAP_T, osg::Texture::WRAP_R})
    cube->setWrap(axis, osg::Texture::CLAMP_TO_EDGE);
  cube->setResizeNonPowerOfTwoHint(false);
  osg::StateSet* stateSet = node->getOrCreateStateSet();
  stateSet->setTextureAttribute(surface::kCubeMapUnit, cube);
  useShader(node);
  stateSet->setDefine(surface::unitDefine(surface::kCubeMapUnit));
  return true;
}

void setEnvMapReflectionCoefficient(osg::Node* node, float coefficient) {
  if (!node)
    return;
  if (!std::isfinite(coefficient)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::setEnvMapReflectionCoefficient: " << coefficient << " is not finite";
    return;
  }
  const float inRange = std::clamp(coefficient, 0.0f, 1.0f);
  node->getOrCreateStateSet()->addUniform(new osg::Uniform(surface::kReflectionUniform, inRange));
  // A coefficient that a node below got together with its map would hide this one.
  surface::visitStateSets(node, [&](osg::StateSet& stateSet) {
    if (osg::Uniform* uniform = stateSet.getUniform(surface::kReflectionUniform))
      uniform->set(inRange);
  });
}

} // namespace vyrOSG
