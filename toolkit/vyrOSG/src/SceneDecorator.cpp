// Joins the decorator's parts and keeps the scene's children below them.
#include <vyrOSG/SceneDecorator.h>

#include "DataFile.h"
#include "DecoratorBackground.h"
#include "DecoratorHud.h"
#include "DecoratorLights.h"
#include "DecoratorShadows.h"

#include <vyr/Notify.h>
#include <vyrOSG/Conversions.h>
#include <vyrOSG/SceneLoops.h>

#include <osg/ComputeBoundsVisitor>

#include <cmath>

namespace vyrOSG {

namespace {

/// The bit of a shadow light as the number of the light, 0 to 2.
int lightNumber(int bit) {
  return bit == SceneDecorator::LIGHT2 ? 2 : bit == SceneDecorator::LIGHT1 ? 1 : 0;
}

} // namespace

SceneDecorator::SceneDecorator(int width, int height, int numLights)
    : m_enabled(true)
    , m_shadowsEnabled(false)
    , m_shaderStateEnabled(false)
    , m_shadowMethod(SOFT_SHADOWMAP)
    , m_shadowLight(LIGHT0)
    , m_lightMask(0)
    , m_stateSet(new osg::StateSet)
    , m_dress(new osg::Group)
    , m_litScene(new osg::Group)
    , m_nonShadowedScene(new osg::Group)
    , m_background(new DecoratorBackground)
    , m_lights(new DecoratorLights(m_stateSet.get()))
    , m_shadows(new DecoratorShadows(m_stateSet.get())) {
  if (width < 1 || height < 1) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SceneDecorator: a HUD of " << width << " by " << height
                                  << " pixels is impossible; 1280 by 720 is taken";
    width = 1280;
    height = 720;
  }
  m_hud.reset(new DecoratorHud(width, height));
  m_hudTransform = m_hud->getTransform();
  m_shadowedScene = m_shadows->getScene();

  osg::ref_ptr<osg::Group> lit = new osg::Group;
  lit->setStateSet(m_stateSet.get());
  lit->addChild(m_lights->getNode());
  lit->addChild(m_shadows->getNode());
  lit->addChild(m_nonShadowedScene.get());
  m_litScene->addChild(m_background->getNode());
  m_litScene->addChild(lit.get());
  m_dress->addChild(m_litScene.get());
  m_dress->addChild(m_hud->getNode());
  // The parts below are no children in the eyes of the scene-graph library, and want updates all the same.
  setNumChildrenRequiringUpdateTraversal(getNumChildrenRequiringUpdateTraversal() + 1);

  setBackgroundColor(vyr::Vec3(0.46, 0.57, 0.69), vyr::Vec3(0.86, 0.89, 0.92));
  createLights((1 << std::min(std::max(numLights, 0), 3)) - 1);
}

SceneDecorator::~SceneDecorator() = default;

void SceneDecorator::traverse(osg::NodeVisitor& visitor) {
  // What decorates the scene is no child: nothing else keeps the decorator from standing in its own decoration.
  const osg::NodePath& path = visitor.getNodePath();
  if (std::count(path.begin(), path.end(), this) > 1)
    return;
  if (!m_enabled) {
    osg::Group::traverse(visitor);
    return;
  }
  m_dress->accept(visitor);
  if (visitor.getVisitorType() == osg::NodeVisitor::UPDATE_VISITOR)
    m_shadows->update();
}

void SceneDecorator::resizeGLObjectBuffers(unsigned int maxSize) {
  m_dress->resizeGLObjectBuffers(maxSize);
  osg::Group::resizeGLObjectBuffers(maxSize);
}

void SceneDecorator::releaseGLObjects(osg::State* state) const {
  m_dress->releaseGLObjects(state);
  osg::Group::releaseGLObjects(state);
}

// Children

bool SceneDecorator::insertChild(unsigned int index, osg::Node* child) {
  if (wouldLoop(this, child) || wouldLoop(m_shadowedScene.get(), child) || !osg::Group::insertChild(index, child))
    return false;
  m_shadowedScene->insertChild(index, child);
  return true;
}

bool SceneDecorator::addChild(osg::Node* child) {
  return insertChild(getNumChildren(), child);
}

bool SceneDecorator::removeChild(osg::Node* child) {
  const unsigned int index = getChildIndex(child);
  return index < getNumChildren() && removeChildren(index, 1);
}

bool SceneDecorator::removeChildren(unsigned int position, unsigned int count) {
  if (position >= getNumChildren() || count == 0)
    return false;
  for (unsigned int i = position; i < position + count && i < getNumChildren(); ++i)
    m_shadowedScene->removeChild(getChild(i));
  return osg::Group::removeChildren(position, std::min(count, getNumChildren() - position));
}

bool SceneDecorator::replaceChild(osg::Node* oldChild, osg::Node* newChild) {
  const unsigned int index = getChildIndex(oldChild);
  return newChild && index < getNumChildren() && setChild(index, newChild);
}

bool SceneDecorator::setChild(unsigned int index, osg::Node* child) {
  if (!child || index >= getNumChildren() || wouldLoop(this, child) || wouldLoop(m_shadowedScene.get(), child))
    return false;
  osg::ref_ptr<osg::Node> old = getChild(index);
  if (!osg::Group::setChild(index, child))
    return false;
  m_shadowedScene->replaceChild(old.get(), child);
  return true;
}

// Switches

void SceneDecorator::setEnable(bool enable) {
  m_enabled = enable;
}

void SceneDecorator::setEnableShadows(bool enable) {
  m_shadowsEnabled = enable;
  applyShadows();
}

void SceneDecorator::setShadowMethod(ShadowMethod method) {
  if (method < SOFT_SHADOWMAP || method > NO_SHADOWS) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SceneDecorator: there is no shadow method " << static_cast<int>(method);
    return;
  }
  m_shadowMethod = method;
  applyShadows();
}

void SceneDecorator::applyShadows() {
  m_lights->moveToEnd(m_lights->get(m_shadowLight));
  m_shadows->apply(m_shadowsEnabled ? m_shadowMethod : NO_SHADOWS, m_lights->get(m_shadowLight),
                   lightNumber(m_shadowLight));
}

void SceneDecorator::setEnableShaderState(bool enable, bool persistent) {
  m_shaderStateEnabled = enable;
  m_shadows->setShaderState(enable, persistent);
}

bool SceneDecorator::setBaseTexture(const std::string& file) {
  const osg::ref_ptr<osg::Image> image = datafile::readImage("SceneDecorator::setBaseTexture", file);
  if (!image)
    return false;
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D(image.get());
  texture->setResizeNonPowerOfTwoHint(false);
  m_shadows->setBaseTexture(texture.get());
  return true;
}

// Lights

void SceneDecorator::createLights(int lights) {
  m_lightMask = lights & ALL;
  m_lights->create(m_lightMask);
  m_shadows->setLights(m_lightMask);
  applyShadows();
}

osg::LightSource* SceneDecorator::getOSGLight(Lights light) {
  return m_lights->get(light);
}

vyrOSG::LightSource SceneDecorator::getLightSource(Lights light) {
  return vyrOSG::LightSource(m_lights->get(light));
}

bool SceneDecorator::setShadowLightSource(Lights light) {
  if (!m_lights->get(light))
    return false;
  m_shadowLight = light;
  applyShadows();
  return true;
}

osg::LightSource* SceneDecorator::getShadowLightSource() {
  return m_lights->get(m_shadowLight);
}

void SceneDecorator::setEnableCalculateLightPositions(Lights lights, bool enable) {
  m_lights->setPlaced(lights, enable);
}

bool SceneDecorator::getEnableCalculateLightPositions(Lights lights) const {
  return m_lights->isPlaced(lights);
}

void SceneDecorator::calculateLightPositions(osg::Node* node) {
  if (!node)
    return;
  osg::ComputeBoundsVisitor visitor;
  node->accept(visitor);
  calculateLightPositions(visitor.getBoundingBox());
}

void SceneDecorator::calculateLightPositions(const osg::BoundingBox& box) {
  if (box.valid())
    calculateLightPositions(osg::BoundingSphere(box));
}

void SceneDecorator::calculateLightPositions(const osg::BoundingSphere& sphere) {
  if (sphere.valid() && std::isfinite(sphere.radius()) && sphere.center().valid())
    m_lights->place(sphere);
}

// Background

void SceneDecorator::setBackgroundColor(vyr::Vec3 color) {
  setBackgroundColor(color, color, color, color);
}

void SceneDecorator::setBackgroundColor(vyr::Vec3 upper, vyr::Vec3 lower) {
  setBackgroundColor(lower, lower, upper, upper);
}

void SceneDecorator::setBackgroundColor(vyr::Vec3 lowerLeft, vyr::Vec3 lowerRight, vyr::Vec3 upperRight,
                                        vyr::Vec3 upperLeft) {
  for (const vyr::Vec3* color : {&lowerLeft, &lowerRight, &upperRight, &upperLeft}) {
    if (!color->isFinite()) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SceneDecorator: a background colour is not a number";
      return;
    }
  }
  m_background->setColors(lowerLeft, lowerRight, upperRight, upperLeft);
}

// HUD

void SceneDecorator::resize(int width, int height) {
  if (width > 0 && height > 0)
    m_hud->resize(width, height);
}

void SceneDecorator::resetHUD() {
  m_hud->reset();
}

void SceneDecorator::setText(int line, const vyr::VyrString<std::string>& text) {
  setText(line, text, vyr::Vec4(1.0, 1.0, 1.0, 1.0));
}

void SceneDecorator::setText(int line, const vyr::VyrString<std::string>& text, const vyr::Vec4& color) {
  if (line < 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SceneDecorator: there is no text line " << line;
    return;
  }
  m_hud->setText(line, text, toOsg(color));
}

void SceneDecorator::clearText() {
  m_hud->clearText();
}

std::string SceneDecorator::getText(int line) const {
  return m_hud->getText(line);
}

void SceneDecorator::setFontName(const std::string& name) {
  if (!m_hud->setFontName(name))
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SceneDecorator: cannot read the font \"" << name << "\"";
}

std::string SceneDecorator::getFontName() const {
  return m_hud->getFontName();
}

void SceneDecorator::setFontSize(const float& size) {
  if (!(size > 0.0f) || !std::isfinite(size)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SceneDecorator: " << size << " is no font size";
    return;
  }
  m_hud->setFontSize(size);
}

float SceneDecorator::getFontSize() const {
  return m_hud->getFontSize();
}

bool SceneDecorator::setLogoFile(const std::string& file) {
  const osg::ref_ptr<osg::Image> image = datafile::readImage("SceneDecorator::setLogoFile", file);
  if (image.valid())
    m_hud->setLogo(image.get());
  return image.valid();
}

void SceneDecorator::setLogoLocation(LogoLocation location) {
  if (location < UPPER_LEFT || location > FREE) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SceneDecorator: there is no logo location " << static_cast<int>(location);
    return;
  }
  m_hud->setLogoLocation(location);
}

SceneDecorator::LogoLocation SceneDecorator::getLogoLocation() const {
  return m_hud->getLogoLocation();
}

void SceneDecorator::setLogoPosition(float x, float y) {
  if (!std::isfinite(x) || !std::isfinite(y)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SceneDecorator: a logo position is not a number";
    return;
  }
  m_hud->setLogoPosition(x, y);
}

void SceneDecorator::setEnableLogo(bool enable) {
  m_hud->setEnableLogo(enable);
}

bool SceneDecorator::getEnableLogo() const {
  return m_hud->getEnableLogo();
}

const osg::Vec2& SceneDecorator::getLogoDimension() {
  return m_hud->getLogoDimension();
}

osg::Vec2 SceneDecorator::getMaximumLogoDimension() {
  return m_hud->getMaximumLogoDimension();
}

void SceneDecorator::setMaximumLogoDimension(float width, float height) {
  if (!(width > 0.0f) || !(height > 0.0f)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SceneDecorator: a logo of " << width << " by " << height << " is impossible";
    return;
  }
  m_hud->setMaximumLogoDimension(osg::Vec2(width, height));
}

osg::Vec2 SceneDecorator::getDefaultLogoPosition() {
  return m_hud->getDefaultLogoPosition();
}

} // namespace vyrOSG
