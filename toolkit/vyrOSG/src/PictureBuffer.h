// A frame buffer of any size that takes the place of a context's own.
#pragma once

#include <osg/GraphicsContext>

namespace vyrOSG {

/// Colour, depth and stencil with several samples a pixel.
///
/// All calls need the context to be current.
class PictureBuffer {
public:
  PictureBuffer();

  /// Makes the buffer, with fewer samples where the driver has no more. @return the samples, 1 or more; 0 when the
  /// driver cannot.
  unsigned make(osg::GraphicsContext& context, int width, int height, unsigned samples);

  /// Frames of the context go here from now on.
  void bind(osg::GraphicsContext& context);

  /// Frames of the context go where they went before bind(); frees the buffer.
  void release(osg::GraphicsContext& context);

  bool isMade() const { return m_frame != 0; }

private:
  unsigned m_replaced;
  unsigned m_frame;
  unsigned m_color;
  unsigned m_depth;
};

} // namespace vyrOSG
