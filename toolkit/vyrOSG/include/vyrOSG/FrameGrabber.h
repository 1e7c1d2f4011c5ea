/// Reads the finished picture of a camera, heads-up display included, whenever somebody asked for it.
#pragma once

#include <vyrOSG/export.h>

#include <osg/Camera>
#include <osg/Image>

namespace vyrOSG {

/**
 * A final draw callback that copies the camera's finished picture into an image.
 *
 * It reads only the frames that were asked for with request(), so an idle grabber costs nothing. One grabber can serve
 * screenshots, an ImageCapture and a FrameRecorder at the same time: each asks before the frame and takes the image
 * after it.
 */
class VYROSG_EXPORT FrameGrabber : public osg::Camera::DrawCallback {
public:
  FrameGrabber() = default;

  /// Puts a new grabber behind the camera's other final draw callbacks. *Returns inner*: the camera retains it.
  /// Nullable: camera; a null camera gives null.
  static FrameGrabber* install(osg::Camera* camera);

  /// Asks for the picture of the next frame that the camera draws.
  void request() { m_requested = true; }

  /// Whether a frame was asked for and not yet drawn.
  bool isRequested() const { return m_requested; }

  /**
   * The picture that was read last: 8 bits a channel, red, green, blue, rows from the bottom to the top.
   * *Returns inner*: hold it by reference to keep it; the next picture is a new image. Nullable: null until a requested
   * frame was drawn.
   */
  osg::Image* getImage() { return m_image.get(); }

  /// Forgets the picture, so that getImage() tells whether the next requested frame came.
  void clear() { m_image = nullptr; }

  /// Called by the scene-graph library in the graphics context of the camera.
  void operator()(osg::RenderInfo& renderInfo) const override;

protected:
  ~FrameGrabber() override = default;

  /// Hands over the picture that was asked for; for grabbers that read elsewhere.
  void deliver(osg::Image* image) const;

private:
  mutable bool m_requested = false;
  mutable osg::ref_ptr<osg::Image> m_image;
};

} // namespace vyrOSG
