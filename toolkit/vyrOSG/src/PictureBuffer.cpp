// Makes frame buffers through the driver's extensions.
#include "PictureBuffer.h"

#include <osg/GLExtensions>
#include <osg/State>

#include <algorithm>

namespace vyrOSG {

PictureBuffer::PictureBuffer()
    : m_replaced(0)
    , m_frame(0)
    , m_color(0)
    , m_depth(0) {}

unsigned PictureBuffer::make(osg::GraphicsContext& context, int width, int height, unsigned samples) {
  const osg::GLExtensions* gl = context.getState()->get<osg::GLExtensions>();
  if (!gl->isFrameBufferObjectSupported || !gl->glRenderbufferStorageMultisample)
    return 0;
  GLint most = 0;
  glGetIntegerv(GL_MAX_SAMPLES, &most);
  const GLsizei count = static_cast<GLsizei>(std::min(samples, static_cast<unsigned>(std::max(most, 0))));
  gl->glGenFramebuffers(1, &m_frame);
  gl->glGenRenderbuffers(1, &m_color);
  gl->glGenRenderbuffers(1, &m_depth);
  gl->glBindFramebuffer(GL_FRAMEBUFFER_EXT, m_frame);
  gl->glBindRenderbuffer(GL_RENDERBUFFER_EXT, m_color);
  gl->glRenderbufferStorageMultisample(GL_RENDERBUFFER_EXT, count, GL_RGBA8, width, height);
  gl->glBindRenderbuffer(GL_RENDERBUFFER_EXT, m_depth);
  gl->glRenderbufferStorageMultisample(GL_RENDERBUFFER_EXT, count, GL_DEPTH24_STENCIL8_EXT, width, height);
  gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER_EXT, GL_COLOR_ATTACHMENT0_EXT, GL_RENDERBUFFER_EXT, m_color);
  gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER_EXT, GL_DEPTH_ATTACHMENT_EXT, GL_RENDERBUFFER_EXT, m_depth);
  gl->glFramebufferRenderbuffer(GL_FRAMEBUFFER_EXT, GL_STENCIL_ATTACHMENT_EXT, GL_RENDERBUFFER_EXT, m_depth);
  if (gl->glCheckFramebufferStatus(GL_FRAMEBUFFER_EXT) == GL_FRAMEBUFFER_COMPLETE_EXT)
    return std::max(1u, static_cast<unsigned>(count));
  release(context);
  return 0;
}

void PictureBuffer::bind(osg::GraphicsContext& context) {
  m_replaced = context.getDefaultFboId();
  // The scene-graph library comes back to this one after each camera that draws into a texture.
  context.setDefaultFboId(m_frame);
  context.getState()->get<osg::GLExtensions>()->glBindFramebuffer(GL_FRAMEBUFFER_EXT, m_frame);
}

void PictureBuffer::release(osg::GraphicsContext& context) {
  const osg::GLExtensions* gl = context.getState()->get<osg::GLExtensions>();
  if (context.getDefaultFboId() == m_frame)
    context.setDefaultFboId(m_replaced);
  gl->glBindFramebuffer(GL_FRAMEBUFFER_EXT, context.getDefaultFboId());
  gl->glDeleteFramebuffers(1, &m_frame);
  gl->glDeleteRenderbuffers(1, &m_color);
  gl->glDeleteRenderbuffers(1, &m_depth);
  m_frame = m_color = m_depth = 0;
}

} // namespace vyrOSG
