/// Takes away the address of a function that the driver does not have.
#include "MultisampleCallback.h"

#include <osg/GLExtensions>
#include <osg/RenderInfo>

namespace vyrOSG {

void MultisampleCallback::operator()(osg::RenderInfo& renderInfo) const {
  osg::State& state = *renderInfo.getState();
  if (!osg::isGLExtensionSupported(state.getContextID(), "GL_NV_framebuffer_multisample_coverage"))
    state.get<osg::GLExtensions>()->glRenderbufferStorageMultisampleCoverageNV = nullptr;
}

} // namespace vyrOSG
