// What drawings need to know of particles.
#pragma once

#include <osg/Vec3>
#include <osg/Vec4>

#include <vector>

namespace vyr {
class ParticleSystem;
}

namespace vyrOSG {

/// One particle as it is drawn.
struct ParticleData {
  osg::Vec3 place;    ///< world, m
  osg::Vec4 rotation; ///< quaternion x, y, z, w
  osg::Vec4 color;
  float radius; ///< m
};

/// All particles of a system as they are now. Nullable: system (no particles).
std::vector<ParticleData> readParticles(vyr::ParticleSystem* system);

} // namespace vyrOSG
