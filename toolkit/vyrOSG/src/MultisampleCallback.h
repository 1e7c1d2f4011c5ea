/// Makes anti-aliased frame buffers work where the driver lacks a vendor's extension.
#pragma once

#include <osg/Camera>

namespace vyrOSG {

/**
 * An initial draw callback for cameras that draw into frame buffers with several samples.
 *
 * The scene-graph library takes a function's address for the proof that the driver has the function, and prefers a
 * vendor's way of making such buffers. The dispatch library of today's systems has an address for every name, so that
 * on other drivers the buffer would never be made. The callback takes the address away where the extension is missing.
 */
class MultisampleCallback : public osg::Camera::DrawCallback {
public:
  void operator()(osg::RenderInfo& renderInfo) const override;

protected:
  ~MultisampleCallback() override = default;
};

} // namespace vyrOSG
