/// The text node: checks what it is given and hands it to its one drawable.
#include <vyrOSG/Text.h>

#include "FontSearch.h"
#include "TextDecoration.h"

#include <vyr/Notify.h>

#include <osg/Geode>
#include <osgText/Text>

#include <cmath>

namespace vyrOSG {

namespace {

// The enumerations travel to the text library by value.
static_assert(int(Text::USER_DEFINED_ROTATION) == int(osgText::TextBase::USER_DEFINED_ROTATION), "axis alignments");
static_assert(int(Text::SCREEN) == int(osgText::TextBase::SCREEN), "axis alignments");
static_assert(int(Text::OUTLINE) == int(osgText::Text::OUTLINE), "backdrops");
static_assert(int(Text::NONE) == int(osgText::Text::NONE), "backdrops");
static_assert(int(Text::ALIGNMENT) == int(osgText::TextBase::ALIGNMENT), "draw modes");
static_assert(int(Text::LEFT_BASE_LINE) == int(osgText::TextBase::LEFT_BASE_LINE), "alignments");
static_assert(int(Text::RIGHT_BOTTOM_BASE_LINE) == int(osgText::TextBase::RIGHT_BOTTOM_BASE_LINE), "alignments");

constexpr float kDefaultSize = 1;
constexpr unsigned int kGlyphResolution = 64;

bool inRange(const char* setter, int value, int last) {
  if (value >= 0 && value <= last)
    return true;
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "text: " << setter << "(" << value << ") is not a value from 0 to " << last;
  return false;
}

template <class Vector>
bool isFinite(const char* setter, const Vector& value) {
  if (value.isFinite())
    return true;
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "text: " << setter << "(" << value << ") is not finite";
  return false;
}

} // namespace

Text::Text()
    : Text(vyr::String()) {}

Text::Text(const vyr::String& text, const vyr::Vec3& position, const vyr::Vec4& color)
    : m_text(new MeasuredText)
    , m_decoration(new TextDecoration(m_text.get())) {
  m_text->setDataVariance(osg::Object::DYNAMIC);
  m_text->setFontResolution(kGlyphResolution, kGlyphResolution);
  m_text->setCharacterSize(kDefaultSize);
  m_text->setAxisAlignment(osgText::TextBase::SCREEN);
  m_text->setAlignment(osgText::TextBase::LEFT_BASE_LINE);
  m_text->setColor(osg::Vec4(1, 1, 1, 1));
  m_text->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  // A geode between, so that scripts reach the drawable by asGeode() and getDrawable().
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(m_text);
  osg::Group::addChild(geode);
  setText(text);
  setPosition(position);
  setColor(color);
}

Text::~Text() = default;

osgText::Text* Text::getDrawable() {
  return m_text.get();
}

const osgText::Text* Text::getDrawable() const {
  return m_text.get();
}

void Text::setFont(const vyr::String& font) {
  std::string tried;
  if (osg::ref_ptr<osgText::Font> found = findFont(font, tried))
    m_text->setFont(found);
  else
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "font \"" << font << "\" cannot be read, tried: " << tried;
}

void Text::setCharacterSize(float size) {
  if (std::isfinite(size) && size > 0)
    m_text->setCharacterSize(size);
  else
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "text: setCharacterSize(" << size << ") is not a positive size";
}

void Text::setPosition(const vyr::Vec3& position) {
  if (isFinite("setPosition", position))
    m_text->setPosition(osg::Vec3(static_cast<float>(position.x()), static_cast<float>(position.y()),
                                  static_cast<float>(position.z())));
}

void Text::setAxisAlignment(AxisAlignment alignment) {
  if (inRange("setAxisAlignment", alignment, USER_DEFINED_ROTATION))
    m_text->setAxisAlignment(static_cast<osgText::TextBase::AxisAlignment>(alignment));
}

void Text::setBackdropType(BackdropType type) {
  if (inRange("setBackdropType", type, NONE))
    m_text->setBackdropType(static_cast<osgText::Text::BackdropType>(type));
}

void Text::setDrawMode(DrawModeMask mode) {
  if (!inRange("setDrawMode", mode, TEXT + BOUNDINGBOX + FILLEDBOUNDINGBOX + ALIGNMENT))
    return;
  m_drawMode = mode;
  m_text->setDrawMode(static_cast<unsigned int>(mode & TEXT));
  m_decoration->setMode(static_cast<unsigned int>(mode));
  // The text is the geode's first drawable, its decoration the second while there is one.
  osg::Geode* geode = getChild(0)->asGeode();
  const bool isDecorated = geode->getNumDrawables() > 1;
  if ((mode & ~TEXT) != 0 && !isDecorated)
    geode->addDrawable(m_decoration);
  else if ((mode & ~TEXT) == 0 && isDecorated)
    geode->removeDrawable(m_decoration);
}

void Text::setText(const vyr::String& text) {
  m_text->setText(text, osgText::String::ENCODING_UTF8);
}

void Text::setAlignment(AlignmentType alignment) {
  if (inRange("setAlignment", alignment, RIGHT_BOTTOM_BASE_LINE))
    m_text->setAlignment(static_cast<osgText::TextBase::AlignmentType>(alignment));
}

void Text::setColor(const vyr::Vec4& color) {
  if (isFinite("setColor", color))
    m_text->setColor(osg::Vec4(static_cast<float>(color.r()), static_cast<float>(color.g()),
                               static_cast<float>(color.b()), static_cast<float>(color.a())));
}

} // namespace vyrOSG
