// Maps the decorator's shadow methods to techniques of the scene-graph library and scans the scene for them.
#include "DecoratorShadows.h"

#include <vyrCollide/Geometry.h>
#include <vyrCollide/Shape.h>
#include <vyrOSG/GeometryNode.h>

#include <osg/Image>
#include <osg/Material>
#include <osg/NodeVisitor>
#include <osg/PolygonOffset>
#include <osg/Program>
#include <osgShadow/ParallelSplitShadowMap>
#include <osgShadow/ShadowMap>
#include <osgShadow/ShadowTexture>
#include <osgUtil/CullVisitor>
#include <osgUtil/RenderStage>

#include <sstream>
#include <string>

namespace vyrOSG {

namespace {

constexpr unsigned kReceives = 0x1;
constexpr unsigned kCasts = 0x2;

/// Takes endless planes out of the casters and marks state sets whose colours come from a material.
class SceneScan : public osg::NodeVisitor {
public:
  SceneScan()
      : osg::NodeVisitor(osg::NodeVisitor::TRAVERSE_ALL_CHILDREN) {
    setNodeMaskOverride(~0u);
  }

  void apply(osg::Node& node) override {
    if (osg::StateSet* state = node.getStateSet())
      mark(*state);
    if (node.asTransform()) {
      if (GeometryNode* geometryNode = dynamic_cast<GeometryNode*>(&node)) {
        const vyrCollide::Geometry* geometry = geometryNode->getGeometry();
        const vyrCollide::Shape* shape = geometry ? geometry->getShape() : nullptr;
        if (shape && shape->getType() == vyrCollide::Shape::PLANE && (node.getNodeMask() & kCasts))
          node.setNodeMask(node.getNodeMask() & ~kCasts);
      }
    }
    traverse(node);
  }

private:
  static void mark(osg::StateSet& state) {
    const osg::StateAttribute* attribute = state.getAttribute(osg::StateAttribute::MATERIAL);
    if (!attribute || state.getUniform("vyr_useMaterial"))
      return;
    // Said either way: what colours its vertices may stand below what does not.
    if (static_cast<const osg::Material*>(attribute)->getColorMode() == osg::Material::OFF)
      state.addUniform(DecoratorShaders::makeMaterialUniform().get());
    else
      state.addUniform(new osg::Uniform("vyr_useMaterial", false));
  }
};

/// A technique under cameras that are nested in the main one, as those that draw into textures. The library's
/// techniques look for the light, and leave their texture coordinates, in the main camera's stage: here each camera has
/// its own.
template <typename Technique>
class NestedTechnique : public Technique {
public:
  using Technique::Technique;

  void cull(osgUtil::CullVisitor& visitor) override {
    const osg::ref_ptr<osgUtil::RenderStage> root = visitor.getRenderStage();
    osgUtil::RenderBin* bin = visitor.getCurrentRenderBin();
    visitor.setRenderStage(bin->getStage());
    visitor.setCurrentRenderBin(bin);
    Technique::cull(visitor);
    visitor.setRenderStage(root.get());
    visitor.setCurrentRenderBin(bin);
  }
};

/// What is left of the light in the shadows of techniques that darken finished colours.
constexpr float kShadowShare = 0.52f;

/// Looks the fragment up in the map of its slice of the view. The colour comes lit from the fixed pipeline.
class SplitShader : public osgShadow::ParallelSplitShadowMap::FragmentShaderGenerator {
public:
  std::string generateGLSL_FragmentShader_BaseTex(bool, unsigned int splitCount, double textureRes, bool, unsigned int,
                                                  unsigned int textureOffset) override {
    std::ostringstream source;
    source << "#version 120\nuniform sampler2D baseTexture;\n";
    for (unsigned i = 0; i < splitCount; ++i)
      source << "uniform sampler2DShadow shadowTexture" << i << ";\nuniform float zShadow" << i << ";\n";
    source << "float lookUp(sampler2DShadow map, vec4 place) {\n  float sum = 0.0;\n"
              "  for (int row = -1; row <= 1; ++row)\n    for (int column = -1; column <= 1; ++column)\n"
              "      sum += shadow2DProj(map, place + vec4(vec2(float(column), float(row)) * place.w / "
           << textureRes << ", -0.0005 * place.w, 0.0)).r;\n  return sum / 9.0;\n}\n"
           << "void main() {\n  float depth = gl_FragCoord.z;\n  float lit = 1.0;\n";
    for (unsigned i = 0; i < splitCount; ++i)
      source << (i > 0 ? "  else " : "  ") << "if (depth <= zShadow" << i << ")\n    lit = lookUp(shadowTexture" << i
             << ", gl_TexCoord[" << i + textureOffset << "]);\n";
    source << "  vec4 color = gl_Color * texture2D(baseTexture, gl_TexCoord[0].xy);\n"
              "  gl_FragColor = vec4(color.rgb * mix("
           << kShadowShare << ", 1.0, lit) + gl_SecondaryColor.rgb * lit, color.a);\n}\n";
    return source.str();
  }
};

/// Keeps the projected shadows from being black.
class SoftenedShadowTexture : public NestedTechnique<osgShadow::ShadowTexture> {
public:
  void init() override {
    osgShadow::ShadowTexture::init();
    _material->setEmission(osg::Material::FRONT_AND_BACK, osg::Vec4(kShadowShare, kShadowShare, kShadowShare, 1.0f));
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
    , m_mapped(false)
    , m_shaderState(false) {
  m_above->addChild(m_scene.get());
  DecoratorShaders::addUniforms(state);
  // Surfaces with a shader of their own take the lights and the shadows from here too.
  state->setDefine("VYR_DECORATED");
  setBaseTexture(makeWhiteTexture().get());
}

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
  m_mapped = false;
  m_state->removeDefine("VYR_SHADOW_TAPS");
  m_state->getOrCreateUniform("vyr_shadowLight", osg::Uniform::INT)->set(lightNumber);
  if (!light || method == SceneDecorator::NO_SHADOWS) {
    m_above->addChild(m_scene.get());
    return;
  }
  m_shadowed = new osgShadow::ShadowedScene;
  m_shadowed->setReceivesShadowTraversalMask(kReceives);
  m_shadowed->setCastsShadowTraversalMask(kCasts);
  m_shadowed->addChild(m_scene.get());
  m_above->addChild(m_shadowed.get());
  update();

  switch (method) {
  case SceneDecorator::SOFT_SHADOWMAP:
    applyShadowMap(ShadowFilter::SOFT, 2048, light);
    break;
  case SceneDecorator::SHADOWMAP:
    applyShadowMap(ShadowFilter::SMOOTH, 2048, light);
    break;
  case SceneDecorator::SHADOWVOLUME:
    applyShadowMap(ShadowFilter::CRISP, 4096, light);
    break;
  case SceneDecorator::PARALLELLSPLIT_SHADOWMAP: {
    osg::ref_ptr<osgShadow::ParallelSplitShadowMap> technique =
        new NestedTechnique<osgShadow::ParallelSplitShadowMap>(nullptr, 3);
    technique->setTextureResolution(2048);
    technique->setFragmentShaderGenerator(new SplitShader);
    technique->setUserLight(light->getLight());
    technique->setPolygonOffset(osg::Vec2f(6.0f, 12.0f));
    m_shadowed->setShadowTechnique(technique.get());
    break;
  }
  case SceneDecorator::SHADOWTEXTURE: {
    osg::ref_ptr<SoftenedShadowTexture> technique = new SoftenedShadowTexture;
    technique->setTextureUnit(1);
    m_shadowed->setShadowTechnique(technique.get());
    break;
  }
  case SceneDecorator::NO_SHADOWS:
    break;
  }
}

void DecoratorShadows::applyShadowMap(ShadowFilter filter, int resolution, osg::LightSource* light) {
  m_mapped = true;
  osg::ref_ptr<osgShadow::ShadowMap> technique = new NestedTechnique<osgShadow::ShadowMap>;
  technique->setTextureUnit(DecoratorShaders::kShadowUnit);
  technique->setTextureSize(osg::Vec2s(static_cast<short>(resolution), static_cast<short>(resolution)));
  technique->setLight(light);
  technique->addShader(DecoratorShaders::makeVertexShader());
  technique->addShader(DecoratorShaders::makeFragmentShader(filter));
  m_state->getOrCreateUniform("vyr_shadowTexel", osg::Uniform::FLOAT)->set(1.0f / static_cast<float>(resolution));
  m_shadowed->setShadowTechnique(technique.get());
  const char* taps = filter == ShadowFilter::SOFT ? "5" : filter == ShadowFilter::SMOOTH ? "2" : "1";
  m_state->setDefine("VYR_SHADOW_TAPS", taps);
  update();
}

void DecoratorShadows::setShaderState(bool enable, bool persistent) {
  m_shaderState = enable;
  m_state->removeAttribute(osg::StateAttribute::PROGRAM);
  if (!enable)
    return;
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->setName("vyrOSG::SceneDecorator");
  program->addShader(DecoratorShaders::makeVertexShader().get());
  program->addShader(DecoratorShaders::makeFragmentShader(ShadowFilter::NONE).get());
  m_state->setAttributeAndModes(program.get(), persistent ? osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE
                                                          : osg::StateAttribute::ON);
  update();
}

void DecoratorShadows::setLights(int mask) {
  m_state->getOrCreateUniform("vyr_lightOn", osg::Uniform::FLOAT_VEC4)
      ->set(osg::Vec4((mask & 1) ? 1.0f : 0.0f, (mask & 2) ? 1.0f : 0.0f, (mask & 4) ? 1.0f : 0.0f, 0.0f));
}

bool DecoratorShadows::needsScan() const {
  return m_mapped || m_shaderState || m_shadowed.valid();
}

void DecoratorShadows::update() {
  if (!needsScan())
    return;
  SceneScan scan;
  m_scene->accept(scan);
}

} // namespace vyrOSG
