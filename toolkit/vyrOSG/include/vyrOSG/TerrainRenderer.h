/// Draws soft ground.
#pragma once

#include <vyr/Range.h>
#include <vyr/observer_ptr.h>
#include <vyrModel/Terrain.h>
#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrSDK/StepEventListener.h>

#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <cstdint>

namespace vyrOSG {

class GroundMesh;

/// Draws a terrain under a group and follows it after every step: only the rows that changed are computed anew. Add it
/// to the simulation after the terrain.
///
/// The range is that of the heights (m, over the terrain's origin) that the colours go through, from dark earth at the
/// lower bound over sand to grass at the upper one; bounds upside down are put in order. Soil that was compacted looks
/// darker, so that ruts show. A terrain that has gone is no longer drawn from the next step on.
class VYROSG_EXPORT TerrainRenderer : public vyrSDK::StepEventListener {
public:
  /// Nullable: terrain (*observes*) and group: without them nothing is drawn. The group holds the drawing, which leaves
  /// it with the renderer.
  TerrainRenderer(vyrModel::Terrain* terrain, vyr::Range<double> range, vyrOSG::Group* group);

  void post(const vyr::TimeStamp& time) override;

  /// The node that draws the terrain (*returns inner*). Nullable: an invalid terrain has none.
  vyrOSG::GeometryNode* getTerrainNode() { return m_node.get(); }

  /// The terrain that is drawn (*returns inner*). Nullable.
  vyrModel::Terrain* getTerrain() const { return m_terrain.get(); }

  const vyr::Range<double>& getRange() const { return m_range; }

protected:
  ~TerrainRenderer() override;

private:
  void drawRows();

  osg::ref_ptr<vyrOSG::GeometryNode> m_node;
  osg::ref_ptr<GroundMesh> m_mesh;
  vyr::observer_ptr<vyrModel::Terrain> m_terrain;
  vyr::Range<double> m_range;
  osg::observer_ptr<vyrOSG::Group> m_group;
  std::uint64_t m_revision = 0;
};

} // namespace vyrOSG
