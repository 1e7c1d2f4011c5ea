// Looks through the scene for what the shadows have to know: casters, grounds and the origin of surface colours.
#pragma once

#include <osg/BoundingBox>
#include <osg/Group>
#include <osg/Matrixd>
#include <osg/NodeVisitor>

#include <vector>

namespace vyrOSG {

/// The bits of node masks that shadow techniques go by.
constexpr unsigned kReceivesShadow = 0x1;
constexpr unsigned kCastsShadow = 0x2;

/// Walks the scene once a frame while there are shadows or the decorator's shaders.
///
/// Endless planes receive shadows and cast none: as casters they would stretch every map over all the ground. With
/// `outlines` no ground casts: planes, height fields, and what is fixed, flat, wide and at the scene's bottom.
class ShadowScan : public osg::NodeVisitor {
public:
  explicit ShadowScan(bool outlines);

  /// @param scene what stands below the shadow technique.
  void run(osg::Group& scene);

  /// The box (m, the scene's frame) around everything but endless planes, with `outlines` around the casters alone. Not
  /// valid without any.
  const osg::BoundingBox& getBounds() const { return m_bounds; }

  void apply(osg::Node& node) override;

private:
  /// What casts as a whole or not at all: the visual of a geometry, or a node with drawables.
  struct Part {
    osg::Node* node;
    osg::BoundingBox bounds;
    bool plane;
    bool ground;
    bool fixed;
  };

  void beginPart(osg::Node& node);
  void findGrounds();
  static void setGround(osg::Node& node, bool ground);

  bool m_outlines;
  bool m_inPart;
  osg::Matrixd m_toScene;
  std::vector<Part> m_parts;
  osg::BoundingBox m_bounds;
};

} // namespace vyrOSG
