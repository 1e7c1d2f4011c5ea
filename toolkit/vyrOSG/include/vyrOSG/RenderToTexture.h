/// Renders a scene through an own camera into a 2D texture, and on request into image files.
#pragma once

#include <vyr/Object.h>
#include <vyr/Vec2u.h>
#include <vyr/ref_ptr.h>
#include <vyrOSG/FrameGrabber.h>
#include <vyrOSG/ImageCapture.h>
#include <vyrOSG/export.h>

#include <osg/Camera>
#include <osg/Texture2D>
#include <osg/ref_ptr>

#include <cstddef>

namespace vyrOSG {

class FollowingCamera;

/**
 * An extra camera whose picture is a texture.
 *
 * The camera draws before the main picture into a frame buffer of its own. With a reference camera it follows that
 * camera's view and field of view, with the aspect ratio of the texture; without one it keeps the matrices that it was
 * given. The application that owns the object gives it the scene, puts getCamera() below its root, and calls
 * preFrame() and postFrame() around each frame.
 */
class VYROSG_EXPORT RenderToTexture : public vyr::Object {
public:
  /**
   * @param width,height size of the texture in pixels, 1 to 16384; other sizes give one error line and the nearest
   *        size that can be used.
   * @param samples samples of a pixel for anti-aliasing; 0 and 1: none. The graphics card's limit applies.
   * @param internalFormat OpenGL's internal format of the texture, GL_RGBA (6408) by default.
   */
  RenderToTexture(std::size_t width, std::size_t height, std::size_t samples = 8, int internalFormat = 6408);

  /// Sets the camera to follow. Nullable: null ends following and keeps the last view. *Borrows* through a weak
  /// pointer.
  void setReferenceCamera(const osg::Camera* camera);

  /// Sets the recorder that writes the texture to files while it runs. Nullable. *Retains*.
  void setImageCapture(vyrOSG::ImageCapture* capture);

  /// Gets the size of the texture in pixels: width, height.
  vyr::Vec2u getSize() const;

  /// Gets the own camera. *Returns inner*.
  osg::Camera* getCamera();

  /// Gets the texture that is drawn into. *Returns inner*.
  osg::Texture2D* getTexture();

  /// Gets the recorder. Nullable. *Returns inner*.
  vyrOSG::ImageCapture* getImageCapture();

  /// Sets what the camera draws. Nullable. *Retains*. The scene must not contain the camera itself.
  void setScene(osg::Node* scene);

  /// Before a frame is drawn: follows the reference camera and moves the recorder's clock to a time in seconds.
  void preFrame(double time);

  /// After the frame was drawn: writes the picture if one was due. False if a file cannot be written.
  bool postFrame();

protected:
  ~RenderToTexture() override;

private:
  osg::ref_ptr<FollowingCamera> m_camera;
  osg::ref_ptr<osg::Texture2D> m_texture;
  osg::ref_ptr<FrameGrabber> m_grabber;
  vyr::ref_ptr<ImageCapture> m_imageCapture;
};

} // namespace vyrOSG
