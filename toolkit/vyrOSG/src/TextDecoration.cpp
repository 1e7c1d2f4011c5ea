/// The decorations of a text, as plain lines and a plain rectangle.
#include "TextDecoration.h"

#include <osg/BlendFunc>
#include <osg/PolygonOffset>
#include <osg/Program>
#include <osg/RenderInfo>
#include <osg/State>
#include <osg/StateSet>

namespace vyrOSG {

namespace {

// Shares of the character height.
constexpr float kMargin = 0.15f;
constexpr float kCrossArm = 0.25f;

constexpr int kBin = 9;

const osg::Vec4 kFill(0, 0, 0, 0.5f);

} // namespace

MeasuredText::~MeasuredText() = default;

osg::Matrix MeasuredText::getPlacement(osg::State* state) const {
  osg::Matrix placement;
  computeMatrix(placement, state);
  return placement;
}

TextDecoration::TextDecoration() = default;

TextDecoration::TextDecoration(const MeasuredText* text)
    : m_text(text) {
  setDataVariance(osg::Object::DYNAMIC);
  setUseDisplayList(false);
  setCullingActive(false);
  osg::StateSet* stateSet = getOrCreateStateSet();
  stateSet->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  stateSet->setTextureMode(0, GL_TEXTURE_2D, osg::StateAttribute::OFF);
  stateSet->setAttributeAndModes(new osg::BlendFunc);
  // Behind the glyphs, which lie in the same plane.
  stateSet->setAttributeAndModes(new osg::PolygonOffset(1, 1));
  // An empty program is the fixed pipeline.
  stateSet->setAttribute(new osg::Program);
  // Just before the bin of transparent things, where the glyphs are: sorting by depth cannot tell the two apart.
  stateSet->setRenderBinDetails(kBin, "DepthSortedBin");
}

TextDecoration::TextDecoration(const TextDecoration& other, const osg::CopyOp& copyOp)
    : osg::Drawable(other, copyOp)
    , m_text(other.m_text)
    , m_mode(other.m_mode) {}

TextDecoration::~TextDecoration() = default;

osg::BoundingBox TextDecoration::computeBoundingBox() const {
  return m_text ? m_text->getBoundingBox() : osg::BoundingBox();
}

void TextDecoration::drawImplementation(osg::RenderInfo& renderInfo) const {
  osg::State& state = *renderInfo.getState();
  if (!m_text || !m_text->getGlyphBox().valid())
    return;
  const osg::Matrix before = state.getModelViewMatrix();
  state.applyModelViewMatrix(new osg::RefMatrix(m_text->getPlacement(&state) * before));

  const float margin = kMargin * m_text->getCharacterHeight();
  const osg::BoundingBox& box = m_text->getGlyphBox();
  const float left = box.xMin() - margin, right = box.xMax() + margin;
  const float bottom = box.yMin() - margin, top = box.yMax() + margin;
  const auto outline = [&](GLenum mode) {
    glBegin(mode);
    glVertex3f(left, bottom, 0);
    glVertex3f(right, bottom, 0);
    glVertex3f(right, top, 0);
    glVertex3f(left, top, 0);
    glEnd();
  };
  if ((m_mode & osgText::TextBase::FILLEDBOUNDINGBOX) != 0) {
    glColor4fv(kFill.ptr());
    outline(GL_QUADS);
  }
  glColor4fv(m_text->getColor().ptr());
  if ((m_mode & osgText::TextBase::BOUNDINGBOX) != 0)
    outline(GL_LINE_LOOP);
  if ((m_mode & osgText::TextBase::ALIGNMENT) != 0) {
    const osg::Vec3& at = m_text->getAlignmentPoint();
    const float arm = kCrossArm * m_text->getCharacterHeight();
    glBegin(GL_LINES);
    glVertex3f(at.x() - arm, at.y(), 0);
    glVertex3f(at.x() + arm, at.y(), 0);
    glVertex3f(at.x(), at.y() - arm, 0);
    glVertex3f(at.x(), at.y() + arm, 0);
    glEnd();
  }
  state.applyModelViewMatrix(before);
}

} // namespace vyrOSG
