/// Reads finished frames back from the graphics card.
#include <vyrOSG/FrameGrabber.h>

#include <osg/GLExtensions>
#include <osg/RenderInfo>

namespace vyrOSG {

namespace {

/// Lets pixels be read from a frame buffer with several samples a pixel, which only copies of it can be.
class ReadableFrame {
public:
  ReadableFrame(const osg::GLExtensions& gl, int right, int top)
      : m_gl(gl)
      , m_source(0)
      , m_frame(0)
      , m_color(0) {
    GLint samples = 0;
    glGetIntegerv(GL_FRAMEBUFFER_BINDING_EXT, &m_source);
    glGetIntegerv(GL_SAMPLES_ARB, &samples);
    if (m_source == 0 || samples == 0)
      return;
    m_gl.glGenFramebuffers(1, &m_frame);
    m_gl.glGenRenderbuffers(1, &m_color);
    m_gl.glBindRenderbuffer(GL_RENDERBUFFER_EXT, m_color);
    m_gl.glRenderbufferStorage(GL_RENDERBUFFER_EXT, GL_RGBA8, right, top);
    m_gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER_EXT, m_frame);
    m_gl.glFramebufferRenderbuffer(GL_DRAW_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_RENDERBUFFER_EXT, m_color);
    m_gl.glBlitFramebuffer(0, 0, right, top, 0, 0, right, top, GL_COLOR_BUFFER_BIT, GL_NEAREST);
    m_gl.glBindFramebuffer(GL_FRAMEBUFFER_EXT, m_frame);
  }
  ~ReadableFrame() {
    if (m_frame == 0)
      return;
    m_gl.glBindFramebuffer(GL_FRAMEBUFFER_EXT, static_cast<GLuint>(m_source));
    m_gl.glDeleteFramebuffers(1, &m_frame);
    m_gl.glDeleteRenderbuffers(1, &m_color);
  }
  ReadableFrame(const ReadableFrame&) = delete;
  ReadableFrame& operator=(const ReadableFrame&) = delete;

private:
  const osg::GLExtensions& m_gl;
  GLint m_source;
  GLuint m_frame;
  GLuint m_color;
};

} // namespace

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
  const int x = static_cast<int>(viewport->x());
  const int y = static_cast<int>(viewport->y());
  const int width = static_cast<int>(viewport->width());
  const int height = static_cast<int>(viewport->height());
  const ReadableFrame readable(*renderInfo.getState()->get<osg::GLExtensions>(), x + width, y + height);
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->readPixels(x, y, width, height, GL_RGB, GL_UNSIGNED_BYTE);
  deliver(image.get());
}

void FrameGrabber::deliver(osg::Image* image) const {
  m_requested = false;
  m_image = image;
}

} // namespace vyrOSG
