// What scripts have made of a visual, as scene files describe it.
#pragma once

#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/utils.h>

#include <osg/Matrixd>
#include <osg/Vec4>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace vyrOSG {

/// An image on a surface.
struct TextureLook {
  TextureMode mode = DIFFUSE_TEXTURE;
  std::string file;
  bool repeat = false;
  float scaleU = 1;
  float scaleV = 1;
};

/// Colours, images and drawing modes of a node.
struct SurfaceLook {
  bool hasMaterial = false;
  bool untouched = false; ///< nobody coloured it: the nodes below keep colours of their own
  osg::Vec4 color{1, 1, 1, 1};
  osg::Vec4 ambient{1, 1, 1, 1};
  osg::Vec4 specular{0, 0, 0, 1};
  osg::Vec4 emission{0, 0, 0, 1};
  float shininess = 0;
  std::vector<TextureLook> textures;
  std::string cubeMap; ///< path and ending of the six images, as setCubeMapTexture takes them; empty: none
  std::string cubeMapType;
  float reflection = -1; ///< share of the mirrored surroundings; below 0: not set
  bool wireFrame = false;
  unsigned int mask = ~0u; ///< 0: not visible
  std::map<int, bool> lights;
  std::map<std::string, int> integers; ///< uniforms of shaders
  std::map<std::string, float> numbers;
};

struct TextLook {
  std::string text;
  vyr::Vec3 position;
  osg::Vec4 color;
  double size = 0;
};

struct AxesLook {
  osg::Matrixd matrix; ///< without the scale
  double scale = 1;
  osg::Vec4 color{0, 0, 0, 0};
};

/// A node that stands beside a visual or in its place: a model file, the wheel of a car, or a transform with more
/// nodes.
struct NodeLook {
  enum Kind { MODEL, WHEEL, TRANSFORM };

  Kind kind = TRANSFORM;
  std::string file;
  osg::Matrixd matrix;
  SurfaceLook surface;
  std::vector<NodeLook> children;
};

/// What moves with a geometry, or stands beside the visuals of a body.
struct CompanyLook {
  std::vector<NodeLook> nodes;
  std::vector<TextLook> texts;
  std::vector<AxesLook> axes;

  bool isEmpty() const { return nodes.empty() && texts.empty() && axes.empty(); }
};

struct GeometryLook {
  SurfaceLook surface;
  float detailRatio = 0.3f;
  bool showsShape = false;
  std::vector<NodeLook> model; ///< none or one: drawn in the place of the shape
  CompanyLook company;
};

/// The looks that nodes have now. What no scene file can hold is left out.
GeometryLook lookOf(GeometryNode& node);
/// What stands in the group of a body beside its geometries.
CompanyLook companyOf(vyrOSG::Group& bodyGroup);

/// Gives a new visual a look. Images and models that are missing cost one error line each. `folder`: where names of
/// files begin.
void dress(GeometryNode& node, const GeometryLook& look, const std::string& folder);
/// The same for what stands in the group of a body.
void addCompany(vyr::RigidBody& body, vyrOSG::Group& bodyGroup, const CompanyLook& company, const std::string& folder);

/// Remembers which file a node was read from.
void rememberFile(osg::Node& node, const std::string& path);

} // namespace vyrOSG
