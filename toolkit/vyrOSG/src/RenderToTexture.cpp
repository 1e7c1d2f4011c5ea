/// Renders a scene through an own camera into a texture.
#include <vyrOSG/RenderToTexture.h>

#include "FollowingCamera.h"
#include "MultisampleCallback.h"

#include <vyr/Notify.h>
#include <vyrOSG/FrameGrabber.h>
#include <vyrOSG/SceneLoops.h>

#include <osg/RenderInfo>

#include <algorithm>

namespace vyrOSG {

namespace {

constexpr std::size_t kMaximumSize = 16384;

/// Reads the texture back instead of the frame buffer, which by then is the window's again.
class TextureGrabber : public FrameGrabber {
public:
  explicit TextureGrabber(osg::Texture2D* texture)
      : m_texture(texture) {}

  void operator()(osg::RenderInfo& renderInfo) const override {
    if (!isRequested())
      return;
    osg::State& state = *renderInfo.getState();
    state.setActiveTextureUnit(0);
    state.applyTextureAttribute(0, m_texture.get());
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(m_texture->getTextureWidth(), m_texture->getTextureHeight(), 1, GL_RGB, GL_UNSIGNED_BYTE);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGB, GL_UNSIGNED_BYTE, image->data());
    deliver(image.get());
  }

private:
  osg::ref_ptr<osg::Texture2D> m_texture;
};

/// A usable side length; NaN and negative numbers of a script arrive here as huge ones.
int usable(std::size_t size) {
  return static_cast<int>(std::clamp<std::size_t>(size, 1, kMaximumSize));
}

} // namespace

RenderToTexture::RenderToTexture(std::size_t width, std::size_t height, std::size_t samples, int internalFormat) {
  if (width < 1 || height < 1 || width > kMaximumSize || height > kMaximumSize)
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Render to texture: the size " << width << " x " << height << " is not usable, "
                                  << usable(width) << " x " << usable(height) << " is taken";
  const int w = usable(width);
  const int h = usable(height);

  m_texture = new osg::Texture2D;
  m_texture->setTextureSize(w, h);
  m_texture->setInternalFormat(internalFormat);
  m_texture->setSourceFormat(GL_RGBA);
  m_texture->setSourceType(GL_UNSIGNED_BYTE);
  m_texture->setResizeNonPowerOfTwoHint(false);
  m_texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR);
  m_texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
  m_texture->setWrap(osg::Texture::WRAP_S, osg::Texture::CLAMP_TO_EDGE);
  m_texture->setWrap(osg::Texture::WRAP_T, osg::Texture::CLAMP_TO_EDGE);

  m_camera = new FollowingCamera(static_cast<double>(w) / h);
  m_camera->setName("RenderToTexture");
  m_camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
  m_camera->setRenderOrder(osg::Camera::PRE_RENDER);
  m_camera->setRenderTargetImplementation(osg::Camera::FRAME_BUFFER_OBJECT);
  m_camera->setClearMask(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
  m_camera->setViewport(0, 0, w, h);
  m_camera->setProjectionMatrixAsPerspective(45.0, static_cast<double>(w) / h, 0.1, 1000.0);
  m_camera->setAllowEventFocus(false);
  const unsigned int perPixel = samples > 1 ? static_cast<unsigned int>(std::min<std::size_t>(samples, 64)) : 0;
  m_camera->addInitialDrawCallback(new MultisampleCallback);
  m_camera->attach(osg::Camera::COLOR_BUFFER, m_texture.get(), 0, 0, false, perPixel, 0);

  m_grabber = new TextureGrabber(m_texture.get());
  m_camera->addFinalDrawCallback(m_grabber.get());
}

RenderToTexture::~RenderToTexture() = default;

void RenderToTexture::setReferenceCamera(const osg::Camera* camera) {
  m_camera->setReference(camera);
}

void RenderToTexture::setImageCapture(vyrOSG::ImageCapture* capture) {
  m_imageCapture = capture;
}

vyr::Vec2u RenderToTexture::getSize() const {
  return vyr::Vec2u(static_cast<unsigned int>(m_texture->getTextureWidth()),
                    static_cast<unsigned int>(m_texture->getTextureHeight()));
}

osg::Camera* RenderToTexture::getCamera() {
  return m_camera.get();
}

osg::Texture2D* RenderToTexture::getTexture() {
  return m_texture.get();
}

vyrOSG::ImageCapture* RenderToTexture::getImageCapture() {
  return m_imageCapture.get();
}

void RenderToTexture::setScene(osg::Node* scene) {
  m_camera->removeChildren(0, m_camera->getNumChildren());
  if (scene && !wouldLoop(m_camera.get(), scene))
    m_camera->addChild(scene);
}

void RenderToTexture::preFrame(double time) {
  if (m_imageCapture)
    m_imageCapture->preFrame(time, m_grabber.get());
}

bool RenderToTexture::postFrame() {
  return !m_imageCapture || m_imageCapture->postFrame(m_grabber.get());
}

} // namespace vyrOSG
