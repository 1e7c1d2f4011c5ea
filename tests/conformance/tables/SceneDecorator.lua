-- The group that dresses a scene: lights, shadows, background, head-up display and logo.
types {
  "vyr::Vec3", "osg::LightSource", "vyr::Vec2d", "vyrOSG::SceneDecorator", "osg::Vec2", "vyr::Vec2f",
  "vyr::Constraint", "vyr::Vec2", "vyr::Quat", "vyr::FrictionModel", "vyr::Vec4f", "vyr::Vec4", "vyr::SPDMatrix3x3",
  "osg::BoundingSphere", "vyr::AffineMatrix4x4", "vyrOSG::LightSource", "vyr::Vec4d", "osg::StateSet",
  "osg::BoundingBox", "osg::Node", "vyr::Vec3f", "osg::MatrixTransform", "osg::Group", "vyr::Vec3d",
}
shared()
samples {
  other = function() return osg.Node() end,
  white = function() return vyr.Vec3(0.9, 0.8, 0.7) end,
  red = function() return vyr.Vec3(0.8, 0.1, 0.2) end,
  green = function() return vyr.Vec3(0.1, 0.7, 0.2) end,
  blue = function() return vyr.Vec3(0.1, 0.2, 0.6) end,
  -- A decorator with a child.
  parent = function(env)
    env.decorator:addChild(env.node)
    return env.decorator
  end,
}

namespace "vyrOSG"
class("SceneDecorator", { base = "osg::Group", collector = "drops" })
constructor { "SceneDecorator(int width, int height)", reaches = "vyrOSG::SceneDecorator::SceneDecorator(int, int, int = 3)", with = "64.7, 32.7" }
constructor { "SceneDecorator(int width, int height, int lights)", with = "64.7, 32.7, 2.7" }
row { "void setEnableShadows(bool enable)", seen = "self:getEnableShadows()" }
row "bool getEnableShadows() const"
row { "void setEnableShaderState(bool enable, bool flag = false)", seen = "self:getEnableShaderState()" }
row "bool getEnableShaderState() const"
row { "void setEnable(bool enable)", with = "false", seen = "not self:getEnable()" }
row "bool getEnable() const"
constants { "UPPER_LEFT", 1, "LOWER_LEFT", 2, "UPPER_RIGHT", 3, "LOWER_RIGHT", 4, "FREE", 5 }
row { "void setLogoLocation(enum vyrOSG::SceneDecorator::LogoLocation location)", with = "2.7", seen = "self:getLogoLocation() == 2" }
row "enum vyrOSG::SceneDecorator::LogoLocation getLogoLocation() const"
row "void setLogoPosition(float x, float y)"
row "void setEnableLogo(bool enable)"
row "bool getEnableLogo() const"
row { "bool setLogoFile(const std::string& file)", with = "'absent.png'", gives = "false, 'absent.png'" }
row { "void setText(int line, const vyr::VyrString<std::string>& text)", gives = "'text2'" }
row { "void setText(int line, const vyr::VyrString<std::string>& text, const vyr::Vec4& color)", gives = "'text2'" }
row "void clearText()"
row { "bool setBaseTexture(const std::string& file)", with = "'absent.png'", gives = "false, 'absent.png'" }
row "const osg::Vec2& getLogoDimension()"
row "osg::Vec2 getMaximumLogoDimension()"
row "void setMaximumLogoDimension(float width, float height)"
row "osg::Vec2 getDefaultLogoPosition()"
row "osg::MatrixTransform* getHud()"
row { "bool insertChild(unsigned int index, osg::Node* child)", with = "0.7", gives = "true" }
row { "bool addChild(osg::Node* child)", gives = "true" }
row { "bool removeChild(osg::Node* child)", on = "parent", with = "node", gives = "true" }
-- It is the same operation as removeChildren, also where its errors name it.
row { "bool removeChild(unsigned int position, unsigned int count = 1)", name = "removeChild", native = "removeChildren",
  reaches = "bool vyrOSG::SceneDecorator::removeChildren(unsigned int, unsigned int)", on = "parent", with = "0, 1.9" }
row { "bool replaceChild(osg::Node* old, osg::Node* new)", on = "parent", with = "node, other", gives = "true" }
row { "bool setChild(unsigned int index, osg::Node* child)", on = "parent", with = "0.7, other", gives = "true" }
row { "bool removeChildren(unsigned int position, unsigned int count)", on = "parent", with = "0, 1.9" }
row "void calculateLightPositions(osg::Node* node)"
row "void calculateLightPositions(const osg::BoundingBox& box)"
row "void calculateLightPositions(const osg::BoundingSphere& sphere)"
row "std::string getFontName() const"
row { "void setFontName(const std::string& name)", gives = "'text1'" }
row "float getFontSize() const"
row { "void setFontSize(const float& size)", with = "18.1", gives = "native.narrow(18.1)", seen = "self:getFontSize() == native.narrow(18.1)" }
row "osg::LightSource* getShadowLightSource()"
constants { "LIGHT0", 1, "LIGHT1", 2, "LIGHT2", 4, "ALL", 7 }
row "void setEnableCalculateLightPositions(enum vyrOSG::SceneDecorator::Lights lights, bool enable)"
row "bool getEnableCalculateLightPositions(enum vyrOSG::SceneDecorator::Lights lights) const"
row "bool setShadowLightSource(enum vyrOSG::SceneDecorator::Lights light)"
row "osg::StateSet* getDecoratorStateSet()"
row "osg::LightSource* getOSGLight(enum vyrOSG::SceneDecorator::Lights light)"
row "vyrOSG::LightSource getLightSource(enum vyrOSG::SceneDecorator::Lights light)"
constants {
  "SOFT_SHADOWMAP", 0, "SHADOWMAP", 1, "SHADOWVOLUME", 2, "PARALLELLSPLIT_SHADOWMAP", 3, "SHADOWTEXTURE", 4,
  "NO_SHADOWS", 5,
}
row { "void setShadowMethod(enum vyrOSG::SceneDecorator::ShadowMethod method)", seen = "self:getShadowMethod() == 1" }
row { "enum vyrOSG::SceneDecorator::ShadowMethod getShadowMethod() const", before = "self:setShadowMethod(5)", gives = "5" }
row { "void setBackgroundColor(vyr::Vec3 color)", with = "red" }
row { "void setBackgroundColor(vyr::Vec3 upper, vyr::Vec3 lower)", with = "red, blue" }
row { "void setBackgroundColor(vyr::Vec3 first, vyr::Vec3 second, vyr::Vec3 third, vyr::Vec3 fourth)", with = "red, green, blue, white" }
row "void createLights(int lights = 7)"
row "void resetHUD()"
row "osg::Group* getShadowedScene() const"
row "osg::Group* getNonShadowedScene() const"
