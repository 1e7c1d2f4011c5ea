// Maps the decorator's shadow methods to techniques and tells these about the scene.
#include "DecoratorShadows.h"

#include "OutlineShadows.h"
#include "ShadowScan.h"
#include "SplitShadows.h"

#include <osg/Image>
#include <osg/Program>
#include <osgShadow/ShadowMap>
#include <osgUtil/CullVisitor>
#include <osgUtil/RenderStage>

namespace vyrOSG {

namespace {

/// A map under cameras that are nested in the main one, as those that draw into textures. The library's technique looks
/// for the light, and leaves its texture coordinates, in the main camera's stage: here each camera has its own.
class NestedShadowMap : public osgShadow::ShadowMap {
public:
  void cull(osgUtil::CullVisitor& visitor) override {
    const osg::ref_ptr<osgUtil::RenderStage> root = visitor.getRenderStage();
    osgUtil::RenderBin* bin = visitor.getCurrentRenderBin();
    visitor.setRenderStage(bin->getStage());
    visitor.setCurrentRenderBin(bin);
    osgShadow::ShadowMap::cull(visitor);
    visitor.setRenderStage(root.get());
    visitor.setCurrentRenderBin(bin);
  }
};

osg::ref_ptr<osg::Texture2D> makeWhiteTexture() {
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->allocateImage(1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE);
  image->setColor(osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f), 0, 0, 0);
  return new osg::Texture2D(image.get());
}

} // namespace

DecoratorShadows::DecoratorShadows(osg::StateSet* state)
    : m_state(state)
    , m_above(new osg::Group)
    , m_scene(new osg::Group)
    , m_method(SceneDecorator::NO_SHADOWS)
    , m_shaderState(false) {
  m_above->addChild(m_scene.get());
  DecoratorShaders::addUniforms(state);
  // Surfaces with a shader of their own take the lights and the shadows from here too.
  state->setDefine("VYR_DECORATED");
  setBaseTexture(makeWhiteTexture().get());
}

DecoratorShadows::~DecoratorShadows() = default;

void DecoratorShadows::setBaseTexture(osg::Texture2D* texture) {
  texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
  texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
  m_state->setTextureAttributeAndModes(0, texture, osg::StateAttribute::ON);
}

void DecoratorShadows::apply(SceneDecorator::ShadowMethod method, osg::LightSource* light, int lightNumber) {
  if (m_shadowed.valid())
    m_shadowed->setShadowTechnique(nullptr);
  m_above->removeChildren(0, m_above->getNumChildren());
  m_shadowed = nullptr;
  m_splits = nullptr;
  m_outlines = nullptr;
  for (const char* define : {"VYR_SHADOW_TAPS", "VYR_SHADOW_SPLITS", "VYR_SHADOW_OUTLINE"})
    m_state->removeDefine(define);
  m_state->getOrCreateUniform("vyr_shadowLight", osg::Uniform::INT)->set(lightNumber);
  m_method = light ? method : SceneDecorator::NO_SHADOWS;
  if (m_method == SceneDecorator::NO_SHADOWS) {
    m_above->addChild(m_scene.get());
    return;
  }
  m_shadowed = new osgShadow::ShadowedScene;
  m_shadowed->setReceivesShadowTraversalMask(kReceivesShadow);
  m_shadowed->setCastsShadowTraversalMask(kCastsShadow);
  m_shadowed->addChild(m_scene.get());
  m_above->addChild(m_shadowed.get());

  switch (m_method) {
  case SceneDecorator::SOFT_SHADOWMAP:
    applyShadowMap("6", 2048, light);
    break;
  case SceneDecorator::SHADOWMAP:
    applyShadowMap("2", 2048, light);
    break;
  case SceneDecorator::SHADOWVOLUME:
    applyShadowMap("1", 4096, light);
    break;
  case SceneDecorator::PARALLELLSPLIT_SHADOWMAP:
    m_splits = new SplitShadows(light->getLight(), DecoratorShaders::kShadowUnit);
    m_shadowed->setShadowTechnique(m_splits.get());
    m_state->setDefine("VYR_SHADOW_SPLITS");
    setTexel(SplitShadows::kResolution);
    break;
  case SceneDecorator::SHADOWTEXTURE:
    m_outlines = new OutlineShadows(light->getLight(), DecoratorShaders::kShadowUnit);
    m_shadowed->setShadowTechnique(m_outlines.get());
    m_state->setDefine("VYR_SHADOW_OUTLINE");
    setTexel(OutlineShadows::kResolution);
    break;
  case SceneDecorator::NO_SHADOWS:
    break;
  }
  update();
}

void DecoratorShadows::applyShadowMap(const char* taps, int resolution, osg::LightSource* light) {
  osg::ref_ptr<osgShadow::ShadowMap> technique = new NestedShadowMap;
  technique->setTextureUnit(DecoratorShaders::kShadowUnit);
  technique->setTextureSize(osg::Vec2s(static_cast<short>(resolution), static_cast<short>(resolution)));
  technique->setLight(light);
  technique->addShader(DecoratorShaders::makeVertexShader());
  technique->addShader(DecoratorShaders::makeFragmentShader());
  m_shadowed->setShadowTechnique(technique.get());
  m_state->setDefine("VYR_SHADOW_TAPS", taps);
  setTexel(resolution);
}

void DecoratorShadows::setTexel(int resolution) {
  m_state->getOrCreateUniform("vyr_shadowTexel", osg::Uniform::FLOAT)->set(1.0f / static_cast<float>(resolution));
}

void DecoratorShadows::setShaderState(bool enable, bool persistent) {
  m_shaderState = enable;
  m_state->removeAttribute(osg::StateAttribute::PROGRAM);
  if (!enable)
    return;
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->setName("vyrOSG::SceneDecorator");
  program->addShader(DecoratorShaders::makeVertexShader().get());
  program->addShader(DecoratorShaders::makeFragmentShader().get());
  m_state->setAttributeAndModes(program.get(), persistent ? osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE
                                                          : osg::StateAttribute::ON);
  update();
}

void DecoratorShadows::setLights(int mask) {
  m_state->getOrCreateUniform("vyr_lightOn", osg::Uniform::FLOAT_VEC4)
      ->set(osg::Vec4((mask & 1) ? 1.0f : 0.0f, (mask & 2) ? 1.0f : 0.0f, (mask & 4) ? 1.0f : 0.0f, 0.0f));
}

void DecoratorShadows::update() {
  if (!m_shaderState && m_method == SceneDecorator::NO_SHADOWS)
    return;
  ShadowScan scan(m_outlines.valid());
  scan.run(*m_scene);
  if (m_splits.valid())
    m_splits->setBounds(scan.getBounds());
  if (m_outlines.valid())
    m_outlines->setBounds(scan.getBounds());
}

} // namespace vyrOSG
