/// A look at mesh files before the scene-graph library reads them: it trusts their indices and the order of their
/// lines.
#pragma once

#include <string>

namespace vyrOSG {

/// Whether a mesh file can be read without harm; `outProblem` says which line is wrong.
///
/// In an .obj file every face, line and point names vertices, texture coordinates and normals that the file has; in an
/// .stl file of text facets, loops and vertices follow each other as they must. Files of other formats are sound.
bool isSoundModel(const std::string& path, std::string& outProblem);

} // namespace vyrOSG
