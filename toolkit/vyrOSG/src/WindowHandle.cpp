// Kept apart from everything else: the window system's header defines common words as macros.
#include "WindowHandle.h"

#include <osgViewer/api/X11/GraphicsWindowX11>

namespace vyrOSG {

std::size_t getWindowHandle(osgViewer::Viewer& viewer) {
  osgViewer::GraphicsWindowX11* handle =
      dynamic_cast<osgViewer::GraphicsWindowX11*>(viewer.getCamera()->getGraphicsContext());
  return handle ? static_cast<std::size_t>(handle->getWindow()) : 0;
}

} // namespace vyrOSG
