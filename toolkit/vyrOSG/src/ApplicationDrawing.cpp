// What the application draws beside the scene: debug lines, grid, axes, help.
#include "ApplicationKeys.h"
#include "ApplicationParts.h"
#include "FontSearch.h"
#include "GridVisual.h"

#include <vyr/Notify.h>
#include <vyrOSG/Conversions.h>

#include <osg/Depth>
#include <osg/Program>
#include <osgText/Text>

#include <cmath>

namespace vyrOSG {

namespace {

constexpr unsigned kMostCells = 10000;
constexpr double kAxesLength = 1.0;
constexpr float kHelpSize = 17.0f;
constexpr float kHelpMargin = 40.0f;

/// The determinant of the part that turns and scales: 0 for a transform that cannot be undone.
double determinant(const vyr::AffineMatrix4x4& m) {
  return vyr::Vec3(m(0, 0), m(0, 1), m(0, 2)) *
         (vyr::Vec3(m(1, 0), m(1, 1), m(1, 2)) ^ vyr::Vec3(m(2, 0), m(2, 1), m(2, 2)));
}

osg::ref_ptr<osg::Camera> makeHelp(int width, int height) {
  osg::ref_ptr<osg::Camera> camera = new osg::Camera;
  camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  camera->setRenderOrder(osg::Camera::POST_RENDER, 20);
  camera->setClearMask(0);
  camera->setAllowEventFocus(false);
  camera->setProjectionMatrixAsOrtho2D(0.0, width, 0.0, height);
  osg::StateSet* state = camera->getOrCreateStateSet();
  state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  state->setMode(GL_BLEND, osg::StateAttribute::ON);
  state->setAttributeAndModes(new osg::Depth(osg::Depth::ALWAYS, 0.0, 1.0, false));
  std::string text;
  for (const std::string& line : ApplicationKeys::getHelp())
    text += line + "\n";
  osg::ref_ptr<osgText::Text> label = new osgText::Text;
  std::string tried;
  const osg::ref_ptr<osgText::Font> font = findFont("DejaVuSans", tried);
  if (font.valid())
    label->setFont(font);
  label->setText(text);
  label->setCharacterSize(kHelpSize);
  label->setFontResolution(32, 32);
  label->setAlignment(osgText::Text::LEFT_TOP);
  label->setPosition(osg::Vec3(kHelpMargin, static_cast<float>(height) - kHelpMargin, 0.0f));
  label->setColor(osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f));
  label->setDrawMode(osgText::Text::TEXT | osgText::Text::FILLEDBOUNDINGBOX);
  label->setBoundingBoxColor(osg::Vec4(0.05f, 0.07f, 0.10f, 0.75f));
  label->setBoundingBoxMargin(12.0f);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(label.get());
  camera->addChild(geode.get());
  return camera;
}

} // namespace

bool ExampleApplication::setEnableDebugRenderer(bool enable) {
  m_parts->debugRenderer.setEnable(enable);
  if (enable)
    m_parts->debugRenderer.update(*m_simulation);
  return m_parts->debugRenderer.getEnable() == enable;
}

bool ExampleApplication::getEnableDebugRenderer() const {
  return m_parts->debugRenderer.getEnable();
}

void ExampleApplication::setEnableTextDebugRendering(bool enable) {
  m_parts->debugRenderer.setEnableText(enable);
}

bool ExampleApplication::getEnableTextDebugRendering() const {
  return m_parts->debugRenderer.getEnableText();
}

void ExampleApplication::setDebugRenderInverseMatrix(const vyr::AffineMatrix4x4& matrix) {
  if (!matrix.isFinite() || determinant(matrix) == 0.0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "setDebugRenderInverseMatrix: the matrix cannot be inverted";
    return;
  }
  m_parts->debugRenderer.getNode()->setMatrix(toOsg(matrix.inverse()));
}

void ExampleApplication::setEnableOSGRenderer(bool enable) {
  m_parts->osgRenderer = enable;
  m_sceneSwitch->setNodeMask(enable ? ~0u : 0u);
}

bool ExampleApplication::getEnableOSGRenderer() {
  return m_parts->osgRenderer;
}

// Grid and axes

void ExampleApplication::renewGrid() {
  if (m_parts->grid.valid())
    m_parts->overlay->removeChild(m_parts->grid.get());
  m_parts->grid = nullptr;
  if (!m_parts->gridEnabled)
    return;
  m_parts->grid = makeGrid(m_parts->gridSize, m_parts->gridResolution);
  m_parts->overlay->addChild(m_parts->grid.get());
}

void ExampleApplication::setEnableGrid(bool enable) {
  m_parts->gridEnabled = enable;
  renewGrid();
}

bool ExampleApplication::getEnableGrid() const {
  return m_parts->gridEnabled;
}

void ExampleApplication::setGridSize(const vyr::Vec2& size) {
  if (!(size.x() > 0.0) || !(size.y() > 0.0) || !std::isfinite(size.x()) || !std::isfinite(size.y())) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "setGridSize: " << size.x() << " m by " << size.y() << " m is no grid";
    return;
  }
  m_parts->gridSize = size;
  renewGrid();
}

vyr::Vec2 ExampleApplication::getGridSize() const {
  return m_parts->gridSize;
}

void ExampleApplication::setGridResolution(vyr::Vec2u resolution) {
  if (resolution.x() < 1 || resolution.y() < 1 || resolution.x() > kMostCells || resolution.y() > kMostCells) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "setGridResolution: " << resolution.x() << " by " << resolution.y()
                                  << " cells; each has to be from 1 to " << kMostCells;
    return;
  }
  m_parts->gridResolution = resolution;
  renewGrid();
}

vyr::Vec2u ExampleApplication::getGridResolution() const {
  return m_parts->gridResolution;
}

void ExampleApplication::setEnableCoordinateSystem(bool enable) {
  if (enable == m_parts->axesEnabled)
    return;
  m_parts->axesEnabled = enable;
  if (!m_parts->axes)
    m_parts->axes = makeAxesVisual(kAxesLength);
  if (enable)
    m_parts->overlay->addChild(m_parts->axes.get());
  else
    m_parts->overlay->removeChild(m_parts->axes.get());
}

bool ExampleApplication::getEnableCoordinateSystem() const {
  return m_parts->axesEnabled;
}

void ExampleApplication::setCoordinateSystemTransform(const vyr::AffineMatrix4x4& transform) {
  if (!transform.isFinite() || determinant(transform) == 0.0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "setCoordinateSystemTransform: the transform cannot be inverted";
    return;
  }
  m_parts->coordinateSystem = transform;
  const osg::Matrixd matrix = toOsg(transform);
  m_parts->sceneTransform->setMatrix(matrix);
  m_parts->overlay->setMatrix(matrix);
  m_parts->pickHandler->setTransform(matrix);
}

vyr::AffineMatrix4x4 ExampleApplication::getCoordinateSystemTransform() const {
  return m_parts->coordinateSystem;
}

void ExampleApplication::toggleHelp() {
  m_parts->helpShown = !m_parts->helpShown;
  if (m_parts->helpNode.valid())
    m_root->removeChild(m_parts->helpNode.get());
  m_parts->helpNode = nullptr;
  if (m_parts->helpShown) {
    m_parts->helpNode = makeHelp(m_parts->windowWidth, m_parts->windowHeight);
    m_root->addChild(m_parts->helpNode.get());
  }
}

} // namespace vyrOSG
