/// Reads triangle meshes from files, without any graphics library.
#pragma once

#include <vyr/Vec3.h>

#include <string>
#include <vector>

namespace vyrPhysics {

/// Reads a Wavefront OBJ or STL file. False, with one error message that names the file, when it cannot be read or
/// holds no triangle. OBJ files, which have y up, are turned to z up; STL files keep their axes. Polygons are cut into
/// fans; vertices that coincide bit by bit become one.
bool readMesh(const std::string& fileName, std::vector<vyr::Vec3>& outVertices, std::vector<unsigned int>& outIndices);

} // namespace vyrPhysics
