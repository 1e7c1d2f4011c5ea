// The window system's own number of a viewer's window.
#pragma once

#include <osgViewer/Viewer>

#include <cstddef>

namespace vyrOSG {

/// The X window of the viewer's first window, 0 when it has none.
std::size_t getWindowHandle(osgViewer::Viewer& viewer);

} // namespace vyrOSG
