/// Finds a font by file or by name on the scene-graph library's file path and in the system's font folders.
#pragma once

#include <osgText/Font>

#include <string>

namespace vyrOSG {

/// The font of that name; `outTried` gets every path tried, separated by commas. Nullable: there is none, or its file
/// holds no font.
osg::ref_ptr<osgText::Font> findFont(const std::string& name, std::string& outTried);

} // namespace vyrOSG
