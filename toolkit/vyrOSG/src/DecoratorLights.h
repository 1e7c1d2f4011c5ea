// The three lights of the decorator and their places around the scene.
#pragma once

#include <osg/BoundingSphere>
#include <osg/Group>
#include <osg/LightSource>
#include <osg/StateSet>
#include <osg/ref_ptr>

namespace vyrOSG {

/// A key light, a fill light and a back light over a soft ambient. They shine like lights far away: every surface sees
/// them from the same direction, and the length of a position is the distance at which the light stands.
class DecoratorLights {
public:
  static constexpr int kNumLights = 3;

  /// @param state the state set (*retains*) that switches the lights on and carries the ambient light.
  explicit DecoratorLights(osg::StateSet* state);

  /// The group of the light nodes, to be traversed before the scene. *Returns inner*.
  osg::Group* getNode() { return m_group.get(); }

  /// Makes the lights of the bit mask and removes the others.
  void create(int mask);

  /// The node of the light with exactly this bit. Nullable.
  osg::LightSource* get(int bit) const;

  /// Lets the light be met last: techniques that are told no light take that one. Nullable.
  void moveToEnd(osg::LightSource* light);

  /// Places the lights of the mask around the sphere.
  void place(const osg::BoundingSphere& sphere);
  void setPlaced(int mask, bool enable) { m_placed = enable ? m_placed | mask : m_placed & ~mask; }
  bool isPlaced(int mask) const { return (m_placed & mask) == mask; }

private:
  osg::ref_ptr<osg::StateSet> m_state;
  osg::ref_ptr<osg::Group> m_group;
  osg::ref_ptr<osg::LightSource> m_lights[kNumLights];
  int m_placed;
};

} // namespace vyrOSG
