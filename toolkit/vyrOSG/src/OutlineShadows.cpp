// Draws the outline of the casters and hands it to the shaders.
#include "OutlineShadows.h"

#include "DecoratorShaders.h"

#include <osg/Program>
#include <osg/Uniform>

namespace vyrOSG {

namespace {

// A caster's colour does not matter, its alpha does: the fixed pipeline's tests and blending go on working with it.
const char* const kOutlineVertex = R"(#version 120
uniform bool vyr_useMaterial;
varying float alpha;
void main()
{
  alpha = vyr_useMaterial ? gl_FrontMaterial.diffuse.a : gl_Color.a;
  gl_TexCoord[0] = gl_TextureMatrix[0] * gl_MultiTexCoord0;
  gl_Position = ftransform();
}
)";

const char* const kOutlineFragment = R"(#version 120
uniform sampler2D vyr_baseTexture;
varying float alpha;
void main()
{
  gl_FragColor = vec4(vec3(0.0), alpha * texture2D(vyr_baseTexture, gl_TexCoord[0].xy).a);
}
)";

osg::ref_ptr<osg::Texture2D> makePicture() {
  osg::ref_ptr<osg::Texture2D> picture = new osg::Texture2D;
  picture->setTextureSize(OutlineShadows::kResolution, OutlineShadows::kResolution);
  picture->setInternalFormat(GL_RGBA);
  picture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
  picture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  picture->setBorderColor(osg::Vec4d(1.0, 1.0, 1.0, 1.0));
  for (const osg::Texture::WrapParameter side : {osg::Texture::WRAP_S, osg::Texture::WRAP_T})
    picture->setWrap(side, osg::Texture::CLAMP_TO_BORDER);
  return picture;
}

} // namespace

OutlineShadows::OutlineShadows(osg::Light* light, unsigned int unit)
    : m_light(light)
    , m_unit(unit) {}

void OutlineShadows::build() {
  m_camera.reset(new LightCamera(getShadowedScene(), makePicture().get(), osg::Camera::COLOR_BUFFER));
  osg::ref_ptr<osg::Program> outline = new osg::Program;
  outline->setName("vyrOSG::OutlineShadows outline");
  outline->addShader(new osg::Shader(osg::Shader::VERTEX, kOutlineVertex));
  outline->addShader(new osg::Shader(osg::Shader::FRAGMENT, kOutlineFragment));
  osg::StateSet* casters = m_camera->get()->getOrCreateStateSet();
  casters->setAttributeAndModes(outline.get(), osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
  // Nothing of an outline hides anything.
  casters->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE);

  m_state = new osg::StateSet;
  m_state->setDataVariance(osg::Object::DYNAMIC);
  osg::ref_ptr<osg::Program> program = new osg::Program;
  program->setName("vyrOSG::OutlineShadows");
  program->addShader(DecoratorShaders::makeVertexShader().get());
  program->addShader(DecoratorShaders::makeFragmentShader().get());
  m_state->setAttributeAndModes(program.get());
  m_state->setTextureAttribute(m_unit, m_camera->getTexture());
  m_state->addUniform(new osg::Uniform("vyr_outlineMap", static_cast<int>(m_unit)));
  m_state->addUniform(new osg::Uniform("vyr_outlineMatrix", osg::Matrixf()));
}

void OutlineShadows::update(osg::NodeVisitor& visitor) {
  getShadowedScene()->osg::Group::traverse(visitor);
}

void OutlineShadows::cull(osgUtil::CullVisitor& visitor) {
  osgShadow::ShadowedScene* scene = getShadowedScene();
  if (!m_camera)
    build();
  osg::Matrixd toMap = osg::Matrixd::scale(0.0, 0.0, 0.0) * osg::Matrixd::translate(-1.0, -1.0, -1.0);
  const unsigned int mask = visitor.getTraversalMask();
  if (m_bounds.valid()) {
    const osg::Matrixd toLight = LightCamera::view(*m_light, m_bounds);
    osg::BoundingBoxd box = boundsIn(toLight, corners(m_bounds));
    // Room for the looks beside an edge.
    const double margin = 0.002 * box.radius();
    box.expandBy(box._min - osg::Vec3d(margin, margin, 0.0));
    box.expandBy(box._max + osg::Vec3d(margin, margin, 0.0));
    toMap = m_camera->aim(toLight, box);
    visitor.setTraversalMask(mask & scene->getCastsShadowTraversalMask());
    m_camera->get()->accept(visitor);
  }
  const osg::Matrixd toScene = osg::Matrixd::inverse(*visitor.getModelViewMatrix());
  // A stage for each camera: one that draws into a texture looks from another place.
  osg::ref_ptr<osg::StateSet> state = new osg::StateSet(*m_state);
  state->removeUniform("vyr_outlineMatrix");
  state->addUniform(new osg::Uniform("vyr_outlineMatrix", osg::Matrixf(toScene * toMap)));
  visitor.setTraversalMask(mask & scene->getReceivesShadowTraversalMask());
  visitor.pushStateSet(state.get());
  scene->osg::Group::traverse(visitor);
  visitor.popStateSet();
  visitor.setTraversalMask(mask);
}

void OutlineShadows::resizeGLObjectBuffers(unsigned int maxSize) {
  if (!m_camera)
    return;
  m_camera->get()->resizeGLObjectBuffers(maxSize);
  m_state->resizeGLObjectBuffers(maxSize);
}

void OutlineShadows::releaseGLObjects(osg::State* state) const {
  if (!m_camera)
    return;
  m_camera->get()->releaseGLObjects(state);
  m_state->releaseGLObjects(state);
}

} // namespace vyrOSG
