// Turns the simulation's state into lines and texts.
#include "DebugRenderer.h"

#include "FontSearch.h"

#include <vyrCollide/Geometry.h>
#include <vyrCollide/Shape.h>
#include <vyrOSG/Conversions.h>

#include <osg/Depth>
#include <osg/Program>

#include <algorithm>
#include <cstdio>
#include <map>
#include <utility>

namespace vyrOSG {

namespace {

const osg::Vec4 kPointColor(1.0f, 0.85f, 0.1f, 1.0f);
const osg::Vec4 kNormalColor(0.1f, 0.85f, 0.95f, 1.0f);
const osg::Vec4 kForceColor(0.95f, 0.15f, 0.12f, 1.0f);
const osg::Vec4 kBoundsColor(0.25f, 0.25f, 0.3f, 0.8f);
const osg::Vec4 kStillColor(0.15f, 0.15f, 0.2f, 0.35f);
const osg::Vec4 kAxisColors[] = {osg::Vec4(0.9f, 0.15f, 0.15f, 1.0f), osg::Vec4(0.15f, 0.75f, 0.15f, 1.0f),
                                 osg::Vec4(0.2f, 0.3f, 0.95f, 1.0f)};

// Shares of the size of the heaviest body.
constexpr double kCross = 0.03;
constexpr double kNormalLength = 0.25;
constexpr double kFrameLength = 0.40;
constexpr float kTextSize = 15.0f;

double sizeOf(const vyr::RigidBody& body) {
  double size = 0.0;
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body.getGeometries())
    size = std::max(size, geometry->getWorldBounds().getSize().length());
  return size;
}

std::string format(double value, const char* unit) {
  char text[64];
  std::snprintf(text, sizeof(text), "%.2f %s", value, unit);
  return text;
}

} // namespace

DebugRenderer::DebugRenderer()
    : m_node(new osg::MatrixTransform)
    , m_lines(1.5f, true)
    , m_textGeode(new osg::Geode)
    , m_length(1.0)
    , m_metresPerNewton(0.01)
    , m_numTexts(0)
    , m_enabled(false)
    , m_textEnabled(false) {
  m_node->addChild(m_lines.getNode());
  m_node->addChild(m_textGeode.get());
  osg::StateSet* state = m_textGeode->getOrCreateStateSet();
  state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false));
  std::string tried;
  m_font = findFont("DejaVuSans", tried);
  m_node->setNodeMask(0);
  // Lines come and go within a frame; culling against last frame's bound would drop new ones.
  m_node->setCullingActive(false);
}

void DebugRenderer::setEnable(bool enable) {
  m_enabled = enable;
  m_node->setNodeMask(enable ? ~0u : 0u);
}

void DebugRenderer::setEnableText(bool enable) {
  m_textEnabled = enable;
}

void DebugRenderer::clear() {
  m_lines.clear();
  m_lines.finish();
  m_numTexts = 0;
  m_textGeode->removeDrawables(0, m_textGeode->getNumDrawables());
}

void DebugRenderer::update(const vyrSDK::Simulation& simulation) {
  m_lines.clear();
  m_numTexts = 0;
  chooseScale(simulation);
  for (const vyr::ref_ptr<vyr::RigidBody>& body : simulation.getRigidBodies())
    drawBody(*body);
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : simulation.getGeometries())
    drawGeometry(*geometry, true);
  drawContacts(simulation);
  m_lines.finish();
  if (m_textGeode->getNumDrawables() > m_numTexts)
    m_textGeode->removeDrawables(m_numTexts, m_textGeode->getNumDrawables() - m_numTexts);
}

void DebugRenderer::chooseScale(const vyrSDK::Simulation& simulation) {
  double heaviest = 0.0;
  m_length = 1.0;
  for (const vyr::ref_ptr<vyr::RigidBody>& body : simulation.getRigidBodies()) {
    const double size = sizeOf(*body);
    if (body->getMotionControl() != vyr::RigidBody::DYNAMICS || size == 0.0 || body->getMass() <= heaviest)
      continue;
    heaviest = body->getMass();
    m_length = size;
  }
  const double weight = heaviest * simulation.getGravity().length();
  m_metresPerNewton = weight > 0.0 ? m_length / weight : 0.01;
}

void DebugRenderer::drawContacts(const vyrSDK::Simulation& simulation) {
  for (const vyrSDK::Contact& contact : simulation.getContacts()) {
    const osg::Vec3d point = toOsg(contact.point);
    for (int axis = 0; axis < 3; ++axis) {
      osg::Vec3d arm;
      arm[axis] = kCross * m_length;
      m_lines.add(point - arm, point + arm, kPointColor);
    }
    m_lines.add(point, point + toOsg(contact.normal) * (kNormalLength * m_length), kNormalColor);
    m_lines.add(point, point + toOsg(contact.getForce()) * m_metresPerNewton, kForceColor);
  }
  if (m_textEnabled)
    writeForces(simulation);
}

void DebugRenderer::writeForces(const vyrSDK::Simulation& simulation) {
  // One number for each pair that touches: numbers at each of its points would hide one another.
  struct PairForce {
    vyr::Vec3 middle;
    double force = 0.0;
    int points = 0;
  };
  std::map<std::pair<const vyrCollide::Geometry*, const vyrCollide::Geometry*>, std::size_t> places;
  std::vector<PairForce> pairs;
  for (const vyrSDK::Contact& contact : simulation.getContacts()) {
    const auto added = places.insert({{contact.geometry1, contact.geometry2}, pairs.size()});
    if (added.second)
      pairs.emplace_back();
    PairForce& pair = pairs[added.first->second];
    pair.middle += contact.point;
    pair.force += contact.normalForce;
    ++pair.points;
  }
  for (const PairForce& pair : pairs) {
    if (pair.force > 0.0)
      addText(pair.middle / pair.points, format(pair.force, "N"), kForceColor);
  }
}

void DebugRenderer::drawGeometry(const vyrCollide::Geometry& geometry, bool still) {
  const vyrCollide::Shape* shape = geometry.getShape();
  if (!shape || shape->getType() == vyrCollide::Shape::PLANE)
    return;
  const vyrCollide::Bounds bounds = geometry.getWorldBounds();
  if (!bounds.isValid())
    return;
  const vyr::Vec3 corners[] = {bounds.min, bounds.max};
  const osg::Vec4& color = still ? kStillColor : kBoundsColor;
  for (int axis = 0; axis < 3; ++axis) {
    const int second = (axis + 1) % 3;
    const int third = (axis + 2) % 3;
    for (int edge = 0; edge < 4; ++edge) {
      osg::Vec3d from = toOsg(bounds.min);
      from[second] = corners[edge & 1][static_cast<std::size_t>(second)];
      from[third] = corners[edge >> 1][static_cast<std::size_t>(third)];
      osg::Vec3d to = from;
      to[axis] = bounds.max[static_cast<std::size_t>(axis)];
      m_lines.add(from, to, color);
    }
  }
}

void DebugRenderer::drawBody(const vyr::RigidBody& body) {
  const bool still = body.getMotionControl() != vyr::RigidBody::DYNAMICS;
  for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body.getGeometries())
    drawGeometry(*geometry, still);
  drawFrame(body.getTransform(), kFrameLength * m_length);
  if (m_textEnabled) {
    std::string text = body.getName();
    if (!still)
      text += (text.empty() ? "" : "  ") + format(body.getVelocity().length(), "m/s");
    if (!text.empty())
      addText(body.getPosition(), text, osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f));
  }
}

void DebugRenderer::drawFrame(const vyr::AffineMatrix4x4& frame, double length) {
  const osg::Vec3d origin = toOsg(frame.getTranslate());
  for (int axis = 0; axis < 3; ++axis) {
    vyr::Vec3 direction;
    direction[static_cast<std::size_t>(axis)] = length;
    m_lines.add(origin, origin + toOsg(frame.transform3x3(direction)), kAxisColors[axis]);
  }
}

void DebugRenderer::addText(const vyr::Vec3& place, const std::string& text, const osg::Vec4& color) {
  if (m_numTexts == m_texts.size()) {
    osg::ref_ptr<osgText::Text> label = new osgText::Text;
    label->setDataVariance(osg::Object::DYNAMIC);
    label->setFont(m_font.valid() ? m_font : osgText::Font::getDefaultFont());
    label->setAutoRotateToScreen(true);
    label->setCharacterSizeMode(osgText::Text::SCREEN_COORDS);
    label->setCharacterSize(kTextSize);
    label->setBackdropType(osgText::Text::OUTLINE);
    label->setBackdropColor(osg::Vec4(0.0f, 0.0f, 0.0f, 0.8f));
    m_texts.push_back(label);
  }
  osgText::Text* label = m_texts[m_numTexts].get();
  if (label->getText().createUTF8EncodedString() != text)
    label->setText(text, osgText::String::ENCODING_UTF8);
  label->setPosition(toOsg(place));
  label->setColor(color);
  if (m_numTexts >= m_textGeode->getNumDrawables())
    m_textGeode->addDrawable(label);
  ++m_numTexts;
}

} // namespace vyrOSG
