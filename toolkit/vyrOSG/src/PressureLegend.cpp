// The colour scale of pressures on the heads-up display.
#include "PressureLegend.h"

#include "FontSearch.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osgText/Text>

#include <cmath>
#include <cstdio>
#include <string>

namespace vyrOSG {

namespace {

// In pixels.
constexpr float kBarWidth = 22;
constexpr float kBarHeight = 260;
constexpr float kFontSize = 15;
constexpr int kSteps = 64;
constexpr int kLabels = 6;

/// The largest of Pa, kPa, MPa and GPa in which the end of the scale is at least 1.
struct Unit {
  double factor = 1;
  const char* name = "Pa";

  explicit Unit(double largest) {
    for (const auto& [size, label] : {std::pair{1e3, "kPa"}, {1e6, "MPa"}, {1e9, "GPa"}}) {
      if (largest >= size) {
        factor = size;
        name = label;
      }
    }
  }
};

osg::ref_ptr<osgText::Text> makeText(const std::string& content, const osg::Vec3& place, osgText::Font* font,
                                     osgText::Text::AlignmentType alignment) {
  osg::ref_ptr<osgText::Text> text = new osgText::Text;
  text->setFont(font);
  text->setFontResolution(32, 32);
  text->setText(content);
  text->setPosition(place);
  text->setAlignment(alignment);
  text->setCharacterSize(kFontSize);
  text->setColor(osg::Vec4(1, 1, 1, 1));
  // Readable over any scene.
  text->setBackdropType(osgText::Text::OUTLINE);
  text->setBackdropColor(osg::Vec4(0, 0, 0, 0.8f));
  text->setDataVariance(osg::Object::DYNAMIC);
  return text;
}

osg::ref_ptr<osg::Geometry> makeBar(const osgSim::ColorRange& range) {
  osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
  osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
  for (int i = 0; i <= kSteps; ++i) {
    const float share = float(i) / kSteps;
    for (float x : {0.0f, kBarWidth}) {
      vertices->push_back(osg::Vec3(x, share * kBarHeight, 0));
      colors->push_back(range.getColor(range.getMin() + share * (range.getMax() - range.getMin())));
    }
  }
  osg::ref_ptr<osg::Geometry> bar = new osg::Geometry;
  bar->setVertexArray(vertices);
  bar->setColorArray(colors, osg::Array::BIND_PER_VERTEX);
  bar->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLE_STRIP, 0, GLsizei(vertices->size())));
  bar->setUseDisplayList(false);
  return bar;
}

osg::ref_ptr<osg::Geometry> makeFrame() {
  osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
  for (const osg::Vec3& corner : {osg::Vec3(0, 0, 0.1f), osg::Vec3(kBarWidth, 0, 0.1f),
                                  osg::Vec3(kBarWidth, kBarHeight, 0.1f), osg::Vec3(0, kBarHeight, 0.1f)})
    vertices->push_back(corner);
  osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
  colors->push_back(osg::Vec4(1, 1, 1, 1));
  osg::ref_ptr<osg::Geometry> frame = new osg::Geometry;
  frame->setVertexArray(vertices);
  frame->setColorArray(colors, osg::Array::BIND_OVERALL);
  frame->addPrimitiveSet(new osg::DrawArrays(GL_LINE_LOOP, 0, 4));
  frame->setUseDisplayList(false);
  return frame;
}

} // namespace

PressureLegend::PressureLegend(SceneDecorator* decorator, osgSim::ColorRange* range)
    : m_decorator(decorator)
    , m_range(range)
    , m_node(new osg::MatrixTransform)
    , m_position(28, 110) {
  m_node->setName("pressure legend");
  m_node->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  setPosition(m_position);
  build();
  if (decorator)
    decorator->getHud()->addChild(m_node);
}

PressureLegend::~PressureLegend() {
  osg::ref_ptr<SceneDecorator> decorator;
  if (m_decorator.lock(decorator))
    decorator->getHud()->removeChild(m_node);
}

void PressureLegend::setEnable(bool enable) {
  m_node->setNodeMask(enable ? ~0u : 0u);
}

void PressureLegend::setPosition(const vyr::Vec2& position) {
  m_position = position;
  m_node->setMatrix(osg::Matrix::translate(position.x(), position.y(), 0));
}

void PressureLegend::update() {
  if (m_min != m_range->getMin() || m_max != m_range->getMax() || m_colors != m_range->getColors())
    build();
}

void PressureLegend::build() {
  m_min = m_range->getMin();
  m_max = m_range->getMax();
  m_colors = m_range->getColors();
  m_node->removeChildren(0, m_node->getNumChildren());
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(makeBar(*m_range));
  geode->addDrawable(makeFrame());
  // The font of the decorator's own lines.
  std::string tried;
  osg::ref_ptr<osgText::Font> font = m_decorator.valid() ? findFont(m_decorator->getFontName(), tried) : nullptr;
  if (!font)
    font = osgText::Font::getDefaultFont();
  const Unit unit(std::abs(double(m_max)));
  geode->addDrawable(makeText(std::string("Pressure (") + unit.name + ")", osg::Vec3(0, kBarHeight + 14, 0), font,
                              osgText::Text::LEFT_BASE_LINE));
  for (int i = 0; i < kLabels; ++i) {
    const float share = float(i) / (kLabels - 1);
    char label[32];
    std::snprintf(label, sizeof label, "%.4g", double(m_min + share * (m_max - m_min)) / unit.factor);
    geode->addDrawable(
        makeText(label, osg::Vec3(kBarWidth + 8, share * kBarHeight, 0), font, osgText::Text::LEFT_CENTER));
  }
  m_node->addChild(geode);
}

} // namespace vyrOSG
