/// A viewer that draws without a window, for tests that look at pixels.
#pragma once

#include <osg/Camera>
#include <osg/Image>
#include <osgViewer/Viewer>
#include <vyrOSG/FrameGrabber.h>
#include <vyrOSG/GraphicsBackend.h>

/// Draws a scene through a context that needs no display server. `isReady` is false where the machine has none.
class OffscreenViewer {
public:
  OffscreenViewer(int width, int height)
      : m_backend(vyrOSG::GraphicsBackend::create(vyrOSG::LaunchOptions::EGL, static_cast<unsigned>(width),
                                                  static_cast<unsigned>(height), 0)) {
    if (!isReady())
      return;
    m_viewer = new osgViewer::Viewer;
    m_viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
    osg::Camera* camera = m_viewer->getCamera();
    camera->setGraphicsContext(m_backend->getContext());
    camera->setViewport(0, 0, width, height);
    camera->setProjectionMatrixAsPerspective(40, static_cast<double>(width) / height, 0.1, 1000);
    camera->setClearColor(osg::Vec4(0, 0, 1, 1));
    m_grabber = vyrOSG::FrameGrabber::install(camera);
  }

  bool isReady() const { return m_backend->getContext() != nullptr; }
  std::string describe() const { return m_backend->describe(); }
  osgViewer::Viewer* viewer() { return m_viewer.get(); }
  osg::Camera* camera() { return m_viewer->getCamera(); }
  vyrOSG::FrameGrabber* grabber() { return m_grabber.get(); }

  /// Draws one frame. @return its picture.
  osg::ref_ptr<osg::Image> draw() {
    m_grabber->request();
    m_viewer->frame();
    return m_grabber->getImage();
  }

private:
  vyr::ref_ptr<vyrOSG::GraphicsBackend> m_backend;
  osg::ref_ptr<osgViewer::Viewer> m_viewer;
  osg::ref_ptr<vyrOSG::FrameGrabber> m_grabber;
};
