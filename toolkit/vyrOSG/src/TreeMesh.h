// The drawables of a tree: one for all bark, one for all leaves.
#pragma once

#include <vyrModel/Tree.h>

#include <osg/Geode>
#include <osg/Geometry>

#include <vector>

namespace vyrOSG {

/// Meshes whose vertices are fixed to the branches of a tree and follow them.
class TreeMesh : public osg::Geode {
public:
  explicit TreeMesh(const vyrModel::Tree& tree);

  /// Moves all vertices to where the branches are. @param time in s: leaves flutter in the wind.
  void follow(const vyrModel::Tree& tree, double time);

  void setLeafColor(const osg::Vec4& color);

protected:
  ~TreeMesh() override = default;

private:
  /// A vertex in the frames of a branch and, where its limb goes on, of the next piece, mixed.
  struct BarkVertex {
    unsigned int branch;
    unsigned int next;
    float share; ///< of the next
    osg::Vec3 place;
    osg::Vec3 nextPlace;
    osg::Vec3 normal;
    osg::Vec3 nextNormal;
  };

  void makeBark(const vyrModel::Tree& tree);
  void addPiece(const vyrModel::Tree& tree, size_t index, size_t next, double barkLength);
  void makeLeaves(const vyrModel::Tree& tree);

  std::vector<BarkVertex> m_barkVertices;
  osg::ref_ptr<osg::Geometry> m_bark;
  osg::ref_ptr<osg::Geometry> m_leaves;
  osg::ref_ptr<osg::Vec2Array> m_barkCoords;
  osg::ref_ptr<osg::DrawElementsUInt> m_barkTriangles;
  osg::Vec4 m_leafColor;
};

} // namespace vyrOSG
