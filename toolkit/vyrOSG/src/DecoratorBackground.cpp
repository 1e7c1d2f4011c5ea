// Builds the background as one quad in clip space.
#include "DecoratorBackground.h"

#include <osg/Depth>
#include <osg/Geode>
#include <osg/MatrixTransform>
#include <osg/Program>
#include <osg/StateSet>

namespace vyrOSG {

namespace {

constexpr int kBehindEverything = -1000;

} // namespace

DecoratorBackground::DecoratorBackground()
    : m_projection(new osg::Projection(osg::Matrixd::ortho2D(0.0, 1.0, 0.0, 1.0)))
    , m_quad(new osg::Geometry)
    , m_colors(new osg::Vec4Array(osg::Array::BIND_PER_VERTEX, 4)) {
  osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
  corners->push_back(osg::Vec3(0.0f, 0.0f, 0.0f));
  corners->push_back(osg::Vec3(1.0f, 0.0f, 0.0f));
  corners->push_back(osg::Vec3(1.0f, 1.0f, 0.0f));
  corners->push_back(osg::Vec3(0.0f, 1.0f, 0.0f));
  m_quad->setVertexArray(corners.get());
  m_quad->setColorArray(m_colors.get());
  m_quad->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_FAN, 0, 4));
  m_quad->setDataVariance(osg::Object::DYNAMIC);
  m_quad->setUseDisplayList(false);
  m_quad->setUseVertexBufferObjects(true);

  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(m_quad.get());
  osg::ref_ptr<osg::MatrixTransform> transform = new osg::MatrixTransform;
  transform->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  transform->addChild(geode.get());
  m_projection->addChild(transform.get());
  m_projection->setCullingActive(false);
  transform->setCullingActive(false);
  geode->setCullingActive(false);

  osg::StateSet* state = m_projection->getOrCreateStateSet();
  const osg::StateAttribute::GLModeValue off = osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED;
  state->setMode(GL_LIGHTING, off);
  state->setMode(GL_FOG, off);
  state->setTextureMode(0, GL_TEXTURE_2D, off);
  state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false),
                              osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
  state->setAttributeAndModes(new osg::Program, osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
  state->setRenderBinDetails(kBehindEverything, "RenderBin");
}

void DecoratorBackground::setColors(const vyr::Vec3& lowerLeft, const vyr::Vec3& lowerRight,
                                    const vyr::Vec3& upperRight, const vyr::Vec3& upperLeft) {
  const vyr::Vec3* corners[] = {&lowerLeft, &lowerRight, &upperRight, &upperLeft};
  for (unsigned i = 0; i < 4; ++i) {
    const vyr::Vec3& color = *corners[i];
    (*m_colors)[i].set(static_cast<float>(color.x()), static_cast<float>(color.y()), static_cast<float>(color.z()),
                       1.0f);
  }
  m_colors->dirty();
}

} // namespace vyrOSG
