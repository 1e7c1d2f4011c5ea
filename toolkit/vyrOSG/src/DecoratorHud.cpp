// Lays out the head-up display.
#include "DecoratorHud.h"

#include "FontSearch.h"

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Image>
#include <osg/Program>
#include <osg/Texture2D>
#include <osgText/Font>

#include <algorithm>

namespace vyrOSG {

namespace {

constexpr float kMargin = 16.0f;
constexpr float kLineSpacing = 1.3f;
constexpr float kDefaultFontSize = 18.0f;

} // namespace

DecoratorHud::DecoratorHud(int width, int height)
    : m_camera(new osg::Camera)
    , m_transform(new osg::MatrixTransform) {
  m_camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  m_camera->setViewMatrix(osg::Matrixd::identity());
  m_camera->setRenderOrder(osg::Camera::POST_RENDER, 10);
  m_camera->setClearMask(0);
  m_camera->setAllowEventFocus(false);
  m_camera->addChild(m_transform.get());
  m_camera->setCullingActive(false);
  osg::StateSet* state = m_camera->getOrCreateStateSet();
  const osg::StateAttribute::GLModeValue off = osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED;
  state->setMode(GL_LIGHTING, off);
  state->setMode(GL_FOG, off);
  state->setMode(GL_BLEND, osg::StateAttribute::ON);
  state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false), off);
  resize(width, height);
  reset();
}

void DecoratorHud::resize(int width, int height) {
  m_size.set(static_cast<float>(width), static_cast<float>(height));
  m_camera->setProjectionMatrixAsOrtho2D(0.0, width, 0.0, height);
  placeAllText();
  placeLogo();
}

void DecoratorHud::reset() {
  m_transform->removeChildren(0, m_transform->getNumChildren());
  m_transform->setMatrix(osg::Matrixd::identity());
  m_lines.clear();
  m_textGeode = new osg::Geode;
  m_transform->addChild(m_textGeode.get());
  m_fontSize = kDefaultFontSize;
  m_fontName = "DejaVuSans";
  std::string tried;
  m_font = findFont(m_fontName, tried);
  if (!m_font.valid())
    m_fontName.clear();
  m_logo = nullptr;
  m_logoImage = nullptr;
  m_logoLocation = SceneDecorator::LOWER_RIGHT;
  m_logoPosition.set(0.0f, 0.0f);
  m_maximumLogo.set(256.0f, 128.0f);
  m_logoDimension.set(0.0f, 0.0f);
  m_logoEnabled = true;
}

void DecoratorHud::setText(int line, const std::string& text, const osg::Vec4& color) {
  const auto found = m_lines.find(line);
  if (text.empty()) {
    if (found != m_lines.end()) {
      m_textGeode->removeDrawable(found->second.get());
      m_lines.erase(found);
    }
    return;
  }
  osg::ref_ptr<osgText::Text> label = found != m_lines.end() ? found->second : nullptr;
  if (!label) {
    label = new osgText::Text;
    label->setDataVariance(osg::Object::DYNAMIC);
    label->setBackdropType(osgText::Text::OUTLINE);
    label->setBackdropColor(osg::Vec4(0.0f, 0.0f, 0.0f, 0.75f));
    label->setBackdropOffset(0.05f);
    label->setAlignment(osgText::Text::LEFT_BASE_LINE);
    placeText(line, label.get());
    m_lines[line] = label;
    m_textGeode->addDrawable(label.get());
  }
  label->setColor(color);
  label->setText(text, osgText::String::ENCODING_UTF8);
}

void DecoratorHud::clearText() {
  for (const auto& entry : m_lines)
    m_textGeode->removeDrawable(entry.second.get());
  m_lines.clear();
}

std::string DecoratorHud::getText(int line) const {
  const auto found = m_lines.find(line);
  return found == m_lines.end() ? std::string() : found->second->getText().createUTF8EncodedString();
}

bool DecoratorHud::setFontName(const std::string& name) {
  osg::ref_ptr<osgText::Font> font;
  if (!name.empty()) {
    std::string tried;
    font = findFont(name, tried);
    if (!font)
      return false;
  }
  m_font = font;
  m_fontName = name;
  placeAllText();
  return true;
}

void DecoratorHud::setFontSize(float size) {
  m_fontSize = size;
  placeAllText();
}

void DecoratorHud::placeText(int line, osgText::Text* text) {
  text->setFont(m_font.valid() ? m_font : osgText::Font::getDefaultFont());
  const unsigned resolution = static_cast<unsigned>(std::clamp(m_fontSize * 2.0f, 16.0f, 128.0f));
  text->setFontResolution(resolution, resolution);
  text->setCharacterSize(m_fontSize);
  text->setPosition(
      osg::Vec3(kMargin, m_size.y() - kMargin - m_fontSize * (1.0f + kLineSpacing * static_cast<float>(line)), 0.0f));
}

void DecoratorHud::placeAllText() {
  for (const auto& entry : m_lines)
    placeText(entry.first, entry.second.get());
}

void DecoratorHud::setLogo(osg::Image* image) {
  m_logoImage = image;
  placeLogo();
}

void DecoratorHud::setLogoLocation(SceneDecorator::LogoLocation location) {
  m_logoLocation = location;
  placeLogo();
}

void DecoratorHud::setLogoPosition(float x, float y) {
  m_logoPosition.set(x, y);
  setLogoLocation(SceneDecorator::FREE);
}

void DecoratorHud::setEnableLogo(bool enable) {
  m_logoEnabled = enable;
  if (m_logo.valid())
    m_logo->setNodeMask(enable ? ~0u : 0u);
}

void DecoratorHud::setMaximumLogoDimension(const osg::Vec2& maximum) {
  m_maximumLogo = maximum;
  placeLogo();
}

osg::Vec2 DecoratorHud::getDefaultLogoPosition() const {
  const float right = m_size.x() - kMargin - m_logoDimension.x();
  const float top = m_size.y() - kMargin - m_logoDimension.y();
  switch (m_logoLocation) {
  case SceneDecorator::UPPER_LEFT:
    return osg::Vec2(kMargin, top);
  case SceneDecorator::LOWER_LEFT:
    return osg::Vec2(kMargin, kMargin);
  case SceneDecorator::UPPER_RIGHT:
    return osg::Vec2(right, top);
  case SceneDecorator::FREE:
    return osg::Vec2(m_logoPosition.x() * m_size.x(), m_logoPosition.y() * m_size.y());
  case SceneDecorator::LOWER_RIGHT:
    break;
  }
  return osg::Vec2(right, kMargin);
}

void DecoratorHud::placeLogo() {
  if (!m_logoImage)
    return;
  const osg::Vec2 image(static_cast<float>(m_logoImage->s()), static_cast<float>(m_logoImage->t()));
  const float scale = std::min({1.0f, m_maximumLogo.x() / image.x(), m_maximumLogo.y() / image.y()});
  m_logoDimension = image * scale;
  const osg::Vec2 corner = getDefaultLogoPosition();
  if (m_logo.valid())
    m_transform->removeChild(m_logo.get());

  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(m_logoImage.get());
  texture->setResizeNonPowerOfTwoHint(false);
  texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
  const float top = m_logoImage->getOrigin() == osg::Image::BOTTOM_LEFT ? 1.0f : 0.0f;
  osg::ref_ptr<osg::Geometry> quad =
      osg::createTexturedQuadGeometry(osg::Vec3(corner, 0.0f), osg::Vec3(m_logoDimension.x(), 0.0f, 0.0f),
                                      osg::Vec3(0.0f, m_logoDimension.y(), 0.0f), 0.0f, 1.0f - top, 1.0f, top);
  m_logo = new osg::Geode;
  m_logo->addDrawable(quad.get());
  m_logo->getOrCreateStateSet()->setTextureAttributeAndModes(0, texture.get());
  m_logo->setNodeMask(m_logoEnabled ? ~0u : 0u);
  m_transform->addChild(m_logo.get());
}

} // namespace vyrOSG
