// Draws the paths of things that move, as lines that fade towards their old ends.
#pragma once

#include <vyrSDK/Simulation.h>

#include <osg/Geode>
#include <osg/Vec3>
#include <osg/Vec4>

#include <cstdint>
#include <functional>
#include <vector>

namespace vyrOSG {

/// A place on the path of one thing; equal keys are the same thing.
struct TrailPoint {
  uint64_t key;
  osg::Vec3 place;
  osg::Vec4 color;
};

/// What paths are made from.
struct TrailSource {
  /// The simulation whose steps are followed. Nullable: it may come later.
  std::function<vyrSDK::Simulation*()> simulation;
  /// Where everything is now; what is missing here loses its path.
  std::function<std::vector<TrailPoint>()> points;
};

/// Draws paths: a point every timeInterval (s), 0 meaning every step; the latest maxPoints of each, 0 meaning all.
/// Nullable: result (*returns new*), after one Notify line that begins with caller, if timeInterval is negative or no
/// number.
osg::ref_ptr<osg::Geode> makeTrails(const char* caller, const TrailSource& source, double timeInterval,
                                    size_t maxPoints);

} // namespace vyrOSG
