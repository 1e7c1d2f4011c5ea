// Finds and reads the data files that scripts name: images, height fields and meshes.
#pragma once

#include <vyr/ref_ptr.h>
#include <vyrCollide/Trimesh.h>

#include <osg/Image>
#include <osg/Node>

#include <string>
#include <vector>

namespace vyrOSG::datafile {

/// The path of a file; an empty string, after one Notify line that names every path tried, where there is none.
std::string find(const char* caller, const std::string& fileName);

/// Reads an image; one Notify line that begins with caller and names every path tried where that fails.
/// Nullable: result.
osg::ref_ptr<osg::Image> readImage(const char* caller, const std::string& fileName);

/// A regular grid of heights; the height of (column, row) at index row * columns + column, rows from -y to +y.
struct Heights {
  size_t columns = 0;
  size_t rows = 0;
  std::vector<double> values;
};

/// Reads heights from an image, a text file or raw 16-bit numbers and brings them between two heights (m).
/// False, with one Notify line that begins with caller and names the file, where that fails.
bool readHeights(const char* caller, const std::string& fileName, double minHeight, double maxHeight,
                 Heights& outHeights);

/// A model as it is drawn and as it collides.
struct Model {
  osg::ref_ptr<osg::Node> node;
  vyr::ref_ptr<vyrCollide::Trimesh> mesh;
  bool hasLook = false; ///< whether the model brings materials or textures of its own
};

/// Reads a model, its lengths multiplied by scale. False, with one Notify line, where that fails or where the file
/// holds no triangles.
bool readModel(const char* caller, const std::string& fileName, double scale, Model& outModel);

} // namespace vyrOSG::datafile
