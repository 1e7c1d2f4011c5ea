/// Reads finished frames back from the graphics card.
#include <vyrOSG/FrameGrabber.h>

#include <osg/RenderInfo>

namespace vyrOSG {

FrameGrabber* FrameGrabber::install(osg::Camera* camera) {
  if (!camera)
    return nullptr;
  osg::ref_ptr<FrameGrabber> grabber = new FrameGrabber;
  camera->addFinalDrawCallback(grabber.get());
  return grabber.get();
}

void FrameGrabber::operator()(osg::RenderInfo& renderInfo) const {
  if (!m_requested)
    return;
  const osg::Camera* camera = renderInfo.getCurrentCamera();
  const osg::Viewport* viewport = camera ? camera->getViewport() : nullptr;
  if (!viewport)
    return;
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->readPixels(static_cast<int>(viewport->x()), static_cast<int>(viewport->y()),
                    static_cast<int>(viewport->width()), static_cast<int>(viewport->height()), GL_RGB,
                    GL_UNSIGNED_BYTE);
  deliver(image.get());
}

void FrameGrabber::deliver(osg::Image* image) const {
  m_requested = false;
  m_image = image;
}

} // namespace vyrOSG
