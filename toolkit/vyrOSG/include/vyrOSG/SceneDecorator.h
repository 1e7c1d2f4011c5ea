// The group above a scene that dresses it: background, lights, shadows, HUD text and logo.
#pragma once

#include <vyrOSG/LightSource.h>
#include <vyrOSG/export.h>

#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyr/VyrString.h>

#include <osg/BoundingBox>
#include <osg/BoundingSphere>
#include <osg/Group>
#include <osg/LightSource>
#include <osg/MatrixTransform>
#include <osg/StateSet>
#include <osg/Vec2>

#include <memory>
#include <string>

namespace vyrOSG {

class DecoratorBackground;
class DecoratorHud;
class DecoratorLights;
class DecoratorShadows;

/// An `osg::Group` whose children are the scene: they stand below the lights and, when shadows are on, below the shadow
/// technique. What shall neither cast nor receive shadows goes below `getNonShadowedScene()`.
///
/// Colours are red, green, blue (and alpha) from 0 to 1. HUD positions and sizes are in pixels of the constructor's
/// width and height, origin lower left, whatever size the window has.
class VYROSG_EXPORT SceneDecorator : public osg::Group {
public:
  /// Corners for the logo; FREE is where `setLogoPosition` put it.
  enum LogoLocation { UPPER_LEFT = 1, LOWER_LEFT = 2, UPPER_RIGHT = 3, LOWER_RIGHT = 4, FREE = 5 };

  /// The lights as bit flags.
  enum Lights { LIGHT0 = 1, LIGHT1 = 2, LIGHT2 = 4, ALL = 7 };

  /// How shadows are drawn; the table in docs/shadows.md names the technique behind each.
  enum ShadowMethod {
    SOFT_SHADOWMAP = 0,
    SHADOWMAP = 1,
    SHADOWVOLUME = 2,
    PARALLELLSPLIT_SHADOWMAP = 3,
    SHADOWTEXTURE = 4,
    NO_SHADOWS = 5
  };

  /// @param width,height size of the HUD in pixels; sizes below 1 are one error line and become 1280 by 720.
  /// @param numLights lights that are created at once, 0 to 3.
  SceneDecorator(int width, int height, int numLights = 3);

  /// Shadows on or off; default off. They are drawn by the method that is set.
  void setEnableShadows(bool enable);
  bool getEnableShadows() const { return m_shadowsEnabled; }

  /// Lights each pixel by a shader instead of each vertex by the fixed pipeline; default off.
  /// @param persistent whether the shader also overrides programs that nodes of the scene bring along.
  void setEnableShaderState(bool enable, bool persistent = false);
  bool getEnableShaderState() const { return m_shaderStateEnabled; }

  /// The whole dress on or off; default on. Off leaves the bare scene without background, decorator lights, shadows,
  /// HUD.
  void setEnable(bool enable);
  bool getEnable() const { return m_enabled; }

  /// Where the logo stands; default LOWER_RIGHT.
  void setLogoLocation(LogoLocation location);
  LogoLocation getLogoLocation() const;
  /// Puts the logo's lower left corner at (x, y) of the HUD in fractions 0 to 1, and sets the location FREE.
  void setLogoPosition(float x, float y);
  /// The logo on or off; default on, though there is nothing to see before `setLogoFile`.
  void setEnableLogo(bool enable);
  bool getEnableLogo() const;
  /// Reads the logo's image; false and one error line when it cannot be read.
  bool setLogoFile(const std::string& file);
  /// The size (pixels) at which the logo is drawn, (0, 0) without logo. *Returns inner*.
  const osg::Vec2& getLogoDimension();
  /// The logo is shrunk to fit into this size (pixels); default 256 by 128.
  osg::Vec2 getMaximumLogoDimension();
  void setMaximumLogoDimension(float width, float height);
  /// The lower left corner (pixels) that the logo's location gives it.
  osg::Vec2 getDefaultLogoPosition();

  /// Writes line @p line of the HUD, 0 being the uppermost; an empty text removes it. A negative line is one error
  /// line.
  void setText(int line, const vyr::VyrString<std::string>& text);
  /// As above in a colour of its own; without one lines are white.
  void setText(int line, const vyr::VyrString<std::string>& text, const vyr::Vec4& color);
  void clearText();
  /// The text of a line, "" where there is none.
  std::string getText(int line) const;

  /// The font file of the HUD, found as the scene-graph library finds its data; an unreadable one is one error line and
  /// leaves the font as it was. "" is the built-in font, the default.
  void setFontName(const std::string& name);
  std::string getFontName() const;
  /// Height of a character in pixels, default 18; what is not positive is one error line and changes nothing.
  void setFontSize(const float& size);
  float getFontSize() const;

  /// Reads the texture of surfaces that bring none of their own; false and one error line when it cannot be read.
  bool setBaseTexture(const std::string& file);

  /// The transform that the HUD's text and logo hang under: further 2-D nodes go here. *Returns inner*.
  osg::MatrixTransform* getHud() { return m_hudTransform.get(); }
  /// Builds the HUD anew: no text, no logo, built-in font.
  void resetHUD();

  bool insertChild(unsigned int index, osg::Node* child) override;
  bool addChild(osg::Node* child) override;
  bool removeChild(osg::Node* child) override;
  bool replaceChild(osg::Node* oldChild, osg::Node* newChild) override;
  bool setChild(unsigned int index, osg::Node* child) override;
  bool removeChildren(unsigned int position, unsigned int count) override;

  /// Places the lights whose placement is on around the bounds (m, frame of this group) and renews the shadows' bounds.
  /// An empty bound changes nothing. Nullable: node.
  void calculateLightPositions(osg::Node* node);
  void calculateLightPositions(const osg::BoundingBox& box);
  void calculateLightPositions(const osg::BoundingSphere& sphere);
  /// Whether `calculateLightPositions` moves these lights; default on for all. The getter is true when it is on for all
  /// that are asked for.
  void setEnableCalculateLightPositions(Lights lights, bool enable);
  bool getEnableCalculateLightPositions(Lights lights) const;

  /// Makes the lights of the mask @p lights (`Lights`, or-ed) and removes the others.
  void createLights(int lights = ALL);
  /// The light's node; Nullable: null when it was not created, or for more than one flag. *Returns inner*.
  osg::LightSource* getOSGLight(Lights light);
  /// A handle of the light; without the light it is inert.
  vyrOSG::LightSource getLightSource(Lights light);
  /// Chooses the light that casts the shadows, LIGHT0 at first; false when it was not created.
  bool setShadowLightSource(Lights light);
  /// Nullable: null when it is gone. *Returns inner*.
  osg::LightSource* getShadowLightSource();

  /// The state set above the scene. *Returns inner*.
  osg::StateSet* getDecoratorStateSet() { return m_stateSet.get(); }

  void setShadowMethod(ShadowMethod method);
  ShadowMethod getShadowMethod() const { return m_shadowMethod; }

  /// One colour, or a gradient from @p lower to @p upper edge, or one colour a corner in the order lower left, lower
  /// right, upper right, upper left.
  void setBackgroundColor(vyr::Vec3 color);
  void setBackgroundColor(vyr::Vec3 upper, vyr::Vec3 lower);
  void setBackgroundColor(vyr::Vec3 lowerLeft, vyr::Vec3 lowerRight, vyr::Vec3 upperRight, vyr::Vec3 upperLeft);

  /// The group that holds the children, above which shadows are put. *Returns inner*.
  osg::Group* getShadowedScene() const { return m_shadowedScene.get(); }
  /// The group for what takes no part in shadows. *Returns inner*.
  osg::Group* getNonShadowedScene() const { return m_nonShadowedScene.get(); }

  /// Background, lights and scene without the HUD: what a further camera has to draw. *Returns inner*.
  osg::Group* getLitScene() { return m_litScene.get(); }

  void traverse(osg::NodeVisitor& visitor) override;
  void resizeGLObjectBuffers(unsigned int maxSize) override;
  void releaseGLObjects(osg::State* state = nullptr) const override;

  /// The HUD keeps its corners when the window changes its size (pixels).
  void resize(int width, int height);

protected:
  ~SceneDecorator() override;

private:
  void applyShadows();

  bool m_enabled;
  bool m_shadowsEnabled;
  bool m_shaderStateEnabled;
  ShadowMethod m_shadowMethod;
  int m_shadowLight;
  int m_lightMask;
  osg::ref_ptr<osg::StateSet> m_stateSet;
  osg::ref_ptr<osg::Group> m_dress;
  osg::ref_ptr<osg::Group> m_litScene;
  osg::ref_ptr<osg::MatrixTransform> m_hudTransform;
  osg::ref_ptr<osg::Group> m_shadowedScene;
  osg::ref_ptr<osg::Group> m_nonShadowedScene;
  std::unique_ptr<DecoratorBackground> m_background;
  std::unique_ptr<DecoratorHud> m_hud;
  std::unique_ptr<DecoratorLights> m_lights;
  std::unique_ptr<DecoratorShadows> m_shadows;
};

} // namespace vyrOSG
