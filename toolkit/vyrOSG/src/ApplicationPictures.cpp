// The application's frames: what draws them, which are drawn, and the pictures and films that come out.
#include "ApplicationKeys.h"
#include "ApplicationParts.h"
#include "PictureBuffer.h"
#include "WindowHandle.h"

#include <vyr/Notify.h>
#include <vyrOSG/PictureFile.h>

#include <osg/GLExtensions>
#include <osgDB/FileUtils>
#include <osgGA/StateSetManipulator>
#include <osgViewer/GraphicsWindow>
#include <osgViewer/ViewerEventHandlers>

#include <algorithm>
#include <cstdio>

namespace vyrOSG {

namespace {

constexpr double kReached = 1.0e-9;
constexpr double kFieldOfView = 40.0;

bool isAnyCapturing(const std::vector<vyr::ref_ptr<RenderToTexture>>& targets) {
  return std::any_of(targets.begin(), targets.end(), [](const vyr::ref_ptr<RenderToTexture>& target) {
    return target->getImageCapture() && target->getImageCapture()->getCaptureStarted();
  });
}

} // namespace

bool ExampleApplication::setupViewer(bool createWindow, bool realize) {
  if (m_backend)
    return !m_backend->isFailure();
  const LaunchOptions& options = LaunchOptions::process();
  LaunchOptions::Backend wanted = options.backend;
  if (!createWindow && (wanted == LaunchOptions::AUTO || wanted == LaunchOptions::WINDOW))
    wanted = LaunchOptions::EGL;
  m_backend = GraphicsBackend::create(wanted, options.width, options.height, options.samples, m_parts->placement);
  VYR_NOTIFY(vyr::NOTIFY_INFO) << m_backend->describe();
  osg::GraphicsContext* context = m_backend->getContext();
  if (!context)
    return !m_backend->isFailure();

  m_viewer = new osgViewer::Viewer;
  m_viewer->setThreadingModel(osgViewer::Viewer::SingleThreaded);
  m_viewer->setLightingMode(osg::View::NO_LIGHT);
  osg::Camera* camera = m_viewer->getCamera();
  const int width = static_cast<int>(options.width);
  const int height = static_cast<int>(options.height);
  camera->setGraphicsContext(context);
  camera->setViewport(0, 0, width, height);
  camera->setDrawBuffer(GL_BACK);
  camera->setReadBuffer(GL_BACK);
  camera->setClearColor(osg::Vec4(0.5f, 0.55f, 0.6f, 1.0f));
  camera->setProjectionMatrixAsPerspective(kFieldOfView, static_cast<double>(width) / height, 0.1, 1000.0);
  m_parts->windowWidth = width;
  m_parts->windowHeight = height;
  m_parts->grabber = FrameGrabber::install(camera);
  m_parts->pickHandler->setCamera(camera);
  m_parts->manipulator = new osgGA::TrackballManipulator;
  m_parts->manipulator->setAutoComputeHomePosition(false);
  m_viewer->setCameraManipulator(m_parts->manipulator.get(), false);
  m_viewer->addEventHandler(new ApplicationKeys(this));
  if (m_backend->getKind() == LaunchOptions::WINDOW) {
    m_viewer->addEventHandler(new osgViewer::StatsHandler);
    m_viewer->addEventHandler(new osgViewer::WindowSizeHandler);
    osg::ref_ptr<osgGA::StateSetManipulator> wires = new osgGA::StateSetManipulator(camera->getOrCreateStateSet());
    wires->setKeyEventToggleTexturing(0);
    wires->setKeyEventToggleBackfaceCulling(0);
    wires->setKeyEventToggleLighting(0);
    m_viewer->addEventHandler(wires.get());
  }
  m_viewer->setSceneData(m_root.get());
  if (realize)
    m_viewer->realize();
  if (m_cameraHomeSet) {
    placeHome();
  } else {
    fitSceneIntoView();
    m_parts->viewWasChosen = false;
  }
  return true;
}

void ExampleApplication::addRenderToTexture(vyrOSG::RenderToTexture* target) {
  if (!target)
    return;
  target->setScene(m_sceneDecorator->getLitScene());
  m_root->addChild(target->getCamera()); // refuses a camera that stands above the root
  m_parts->targets.emplace_back(target);
}

void ExampleApplication::drawFrame() {
  const double time = getTimeStamp();
  if (!m_viewer.valid()) {
    // A capture without graphics says so and ends, as soon as it owes its first image.
    m_imageCapture->preFrame(time, nullptr);
    if (!m_imageCapture->postFrame(nullptr))
      fail(3);
    return;
  }
  const bool windowed = m_backend->getKind() == LaunchOptions::WINDOW;
  if (m_parts->recorder)
    m_parts->recorder->preFrame(time, m_parts->grabber);
  m_imageCapture->preFrame(m_parts->captureSynced ? time : m_parts->clock.time_s(), m_parts->grabber);
  // A texture is drawn in the same frame as what shows it: only a recorder of its own needs frames beyond these.
  if (!windowed && !m_parts->grabber->isRequested() && !isAnyCapturing(m_parts->targets))
    return;
  drawAndGrab();
  if (m_parts->recorder && !m_parts->recorder->postFrame(m_parts->grabber))
    fail(1);
  const osg::Viewport& view = *m_viewer->getCamera()->getViewport();
  if (m_imageCapture->wantsOtherSize(static_cast<int>(view.width()), static_cast<int>(view.height()))) {
    const vyr::Vec2u size = m_imageCapture->getImageResolution();
    drawAndGrab(static_cast<int>(size[0]), static_cast<int>(size[1]));
  }
  if (!m_imageCapture->postFrame(m_parts->grabber))
    fail(1);
}

bool ExampleApplication::isCapturingInLockStep() const {
  if (m_parts->captureSynced && m_imageCapture->getCaptureStarted())
    return true;
  return isAnyCapturing(m_parts->targets);
}

bool ExampleApplication::drawAndGrab() {
  const double time = getTimeStamp();
  // The view first: listeners see the camera of this frame, and may still move it.
  updateView();
  m_simulation->updateGui(m_parts->pointerX, m_parts->pointerY);
  if (m_parts->debugRenderer.getEnable())
    m_parts->debugRenderer.update(*m_simulation);
  for (const vyr::ref_ptr<RenderToTexture>& target : m_parts->targets)
    target->preFrame(time);
  m_viewer->frame(time);
  for (const vyr::ref_ptr<RenderToTexture>& target : m_parts->targets) {
    if (!target->postFrame())
      fail(1);
  }
  return m_parts->grabber->getImage() != nullptr;
}

bool ExampleApplication::drawAndGrab(int width, int height) {
  osg::GraphicsContext& context = *m_backend->getContext();
  PictureBuffer buffer;
  if (!context.makeCurrent() || buffer.make(context, width, height, LaunchOptions::process().samples) == 0)
    return false; // the picture of the other size is there, and will be scaled
  osg::Camera& camera = *m_viewer->getCamera();
  const osg::ref_ptr<osg::Viewport> view = camera.getViewport();
  const osg::Matrixd projection = camera.getProjectionMatrix();
  const GLenum drawBuffer = camera.getDrawBuffer();
  const GLenum readBuffer = camera.getReadBuffer();
  // The height of view stays; a wider picture shows more to the left and to the right.
  const double aspect = static_cast<double>(width) / height;
  camera.setProjectionMatrix(projection * osg::Matrixd::scale(view->aspectRatio() / aspect, 1.0, 1.0));
  camera.setViewport(new osg::Viewport(0, 0, width, height));
  camera.setDrawBuffer(GL_COLOR_ATTACHMENT0_EXT);
  camera.setReadBuffer(GL_COLOR_ATTACHMENT0_EXT);
  // The display keeps its share of the picture's height.
  const int displayHeight = static_cast<int>(view->height());
  m_sceneDecorator->resize(std::max(1, static_cast<int>(displayHeight * aspect + 0.5)), displayHeight);
  buffer.bind(context);
  m_parts->grabber->clear();
  m_parts->grabber->request();
  m_viewer->renderingTraversals();

  m_sceneDecorator->resize(static_cast<int>(view->width()), displayHeight);
  camera.setDrawBuffer(drawBuffer);
  camera.setReadBuffer(readBuffer);
  camera.setViewport(view.get());
  camera.setProjectionMatrix(projection);
  if (context.makeCurrent()) {
    buffer.release(context);
    context.releaseContext();
  }
  return m_parts->grabber->getImage() != nullptr;
}

bool ExampleApplication::writePicture(const std::string& file) {
  if (!m_viewer.valid()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot take the picture \"" << file << "\": there is no graphics";
    fail(3);
    return false;
  }
  m_parts->grabber->clear();
  m_parts->grabber->request();
  std::string reason = "cannot write '" + file + "': nothing was drawn";
  if (!drawAndGrab() || !PictureFile::write(*m_parts->grabber->getImage(), file, reason)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << reason;
    fail(1);
    return false;
  }
  VYR_NOTIFY(vyr::NOTIFY_INFO) << "wrote " << file;
  return true;
}

void ExampleApplication::takeScreenShot(const vyr::VyrString<std::string>& file) {
  std::string name = file;
  while (name.empty() || (file.empty() && osgDB::fileExists(name))) {
    char numbered[40];
    std::snprintf(numbered, sizeof(numbered), "screenshot_%04d.png", m_parts->screenShotNumber++);
    name = numbered;
  }
  writePicture(name);
}

bool ExampleApplication::startPictures() {
  const LaunchOptions& options = LaunchOptions::process();
  m_parts->shots.assign(options.shots.begin(), options.shots.end());
  std::stable_sort(m_parts->shots.begin(), m_parts->shots.end(),
                   [](const LaunchOptions::Shot& a, const LaunchOptions::Shot& b) { return a.time < b.time; });
  if (!options.record.empty() || !options.shots.empty()) {
    if (!m_viewer.valid()) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "pictures were asked for, but there is none to draw them: "
                                    << m_backend->describe();
      fail(3);
      return false;
    }
  }
  if (!m_parts->shots.empty() && !m_parts->limited && options.record.empty())
    stopAfter(m_parts->shots.back().time);
  if (!options.record.empty()) {
    m_parts->recorder = new FrameRecorder;
    if (!m_parts->recorder->open(options.record, options.fps, options.width, options.height)) {
      m_parts->recorder = nullptr;
      fail(1);
      return false;
    }
  }
  return true;
}

void ExampleApplication::finishPictures() {
  takeDueShots();
  for (const LaunchOptions::Shot& shot : m_parts->shots) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the picture \"" << shot.file << "\" of " << shot.time
                                  << " s was not taken: the run ended at " << getTimeStamp() << " s";
    fail(1);
  }
  m_parts->shots.clear();
  if (m_parts->recorder && !m_parts->recorder->close())
    fail(1);
  m_parts->recorder = nullptr;
  if (m_imageCapture)
    m_imageCapture->stopCapture();
  m_parts->journal.close();
}

void ExampleApplication::takeDueShots() {
  while (!m_parts->shots.empty() && getTimeStamp() >= m_parts->shots.front().time - kReached) {
    const std::string file = m_parts->shots.front().file;
    m_parts->shots.pop_front();
    writePicture(file);
  }
}

// Window

void ExampleApplication::resized(int x, int y, int width, int height) {
  if (width <= 0 || height <= 0)
    return;
  if (!m_parts->allowResizing && (width != m_parts->windowWidth || height != m_parts->windowHeight)) {
    osgViewer::ViewerBase::Windows windows;
    m_viewer->getWindows(windows);
    for (osgViewer::GraphicsWindow* window : windows)
      window->setWindowRectangle(x, y, m_parts->windowWidth, m_parts->windowHeight);
    return;
  }
  m_parts->windowWidth = width;
  m_parts->windowHeight = height;
  m_sceneDecorator->resize(width, height);
}

void ExampleApplication::setAllowWindowResizing(bool allow) {
  m_parts->allowResizing = allow;
}

bool ExampleApplication::getAllowWindowResizing() const {
  return m_parts->allowResizing;
}

std::size_t ExampleApplication::getHWND() const {
  return m_viewer.valid() ? getWindowHandle(*m_viewer) : 0;
}

void ExampleApplication::setOsgNotifyLevel(osg::NotifySeverity level) const {
  osg::setNotifyLevel(level);
}

void ExampleApplication::setEnableCaptureSyncWithSimulation(bool enable) {
  if (enable != m_parts->captureSynced)
    m_imageCapture->resetTime();
  m_parts->captureSynced = enable;
}

bool ExampleApplication::getEnableCaptureSyncWithSimulation() const {
  return m_parts->captureSynced;
}

} // namespace vyrOSG
