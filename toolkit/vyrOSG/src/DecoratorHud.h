// The head-up display of the decorator: numbered text lines and a logo.
#pragma once

#include <vyrOSG/SceneDecorator.h>

#include <osg/Camera>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/MatrixTransform>
#include <osg/ref_ptr>
#include <osgText/Text>

#include <map>
#include <string>

namespace vyrOSG {

/// Text and logo over the finished picture, in pixels from the lower left.
class DecoratorHud {
public:
  DecoratorHud(int width, int height);

  /// The camera that draws the HUD last. *Returns inner*.
  osg::Camera* getNode() { return m_camera.get(); }
  /// The transform that everything of the HUD hangs under; it stays the same over `reset`. *Returns inner*.
  osg::MatrixTransform* getTransform() { return m_transform.get(); }

  void resize(int width, int height);
  void reset();

  void setText(int line, const std::string& text, const osg::Vec4& color);
  void clearText();
  std::string getText(int line) const;
  bool setFontName(const std::string& name);
  const std::string& getFontName() const { return m_fontName; }
  void setFontSize(float size);
  float getFontSize() const { return m_fontSize; }

  /// *Retains*.
  void setLogo(osg::Image* image);
  void setLogoLocation(SceneDecorator::LogoLocation location);
  SceneDecorator::LogoLocation getLogoLocation() const { return m_logoLocation; }
  void setLogoPosition(float x, float y);
  void setEnableLogo(bool enable);
  bool getEnableLogo() const { return m_logoEnabled; }
  void setMaximumLogoDimension(const osg::Vec2& maximum);
  const osg::Vec2& getMaximumLogoDimension() const { return m_maximumLogo; }
  const osg::Vec2& getLogoDimension() const { return m_logoDimension; }
  osg::Vec2 getDefaultLogoPosition() const;

private:
  void placeText(int line, osgText::Text* text);
  void placeAllText();
  void placeLogo();

  osg::Vec2 m_size;
  osg::ref_ptr<osg::Camera> m_camera;
  osg::ref_ptr<osg::MatrixTransform> m_transform;
  osg::ref_ptr<osg::Geode> m_textGeode;
  std::map<int, osg::ref_ptr<osgText::Text>> m_lines;
  osg::ref_ptr<osgText::Font> m_font;
  std::string m_fontName;
  float m_fontSize;
  osg::ref_ptr<osg::Geode> m_logo;
  osg::ref_ptr<osg::Image> m_logoImage;
  SceneDecorator::LogoLocation m_logoLocation;
  osg::Vec2 m_logoPosition;
  osg::Vec2 m_maximumLogo;
  osg::Vec2 m_logoDimension;
  bool m_logoEnabled;
};

} // namespace vyrOSG
