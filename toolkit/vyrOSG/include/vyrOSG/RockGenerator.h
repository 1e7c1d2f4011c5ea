// Fills assemblies with rocks.
#pragma once

#include <vyrOSG/Group.h>
#include <vyrOSG/export.h>

#include <vyr/Material.h>
#include <vyr/Referenced.h>
#include <vyr/RigidBody.h>
#include <vyrCollide/Space.h>
#include <vyrSDK/Assembly.h>

namespace vyrOSG {

/// Makes rock bodies of seven forms, with their visuals. A rock is one convex block or, for the composite forms, two to
/// five blocks grown together; no two rocks have the same faces.
class VYROSG_EXPORT RockGenerator : public vyr::Referenced {
public:
  enum RockType {
    COMPOSITE_ONE = 0,   ///< two blocks of different size
    COMPOSITE_TWO = 1,   ///< three blocks in a row
    COMPOSITE_THREE = 2, ///< four blocks around a middle
    COMPOSITE_FOUR = 3,  ///< five blocks, like rubble that stuck together
    MAYA_ROCK1 = 4,      ///< a round boulder
    MAYA_ROCK2 = 5,      ///< a flat slab
    MAYA_ROCK3 = 6,      ///< a long splinter
    NUM_ROCK_TYPES = 7   ///< the number of the forms before it
  };

  RockGenerator();

  /// Adds `count` rocks to an assembly (*retains*) and their geometries to a space (*retains*), the forms in turn, and
  /// draws them under a group. No rock touches another one or anything that the space holds: they stand in layers, as
  /// many as the room asks for, ready to fall.
  ///
  /// `minRadius`, `maxRadius`: radii of the balls around the rocks, in m. `material`: density and surface of the rocks.
  /// `baseHeight`: z of the lowest layer's lower side, m. `halfWidth`, `halfDepth`: the rocks' middles lie within
  /// [-halfWidth, halfWidth] along x and [-halfDepth, halfDepth] along y, m. `seed`: equal seeds give equal rocks.
  ///
  /// Nullable: assembly and space (the rocks are not added there, but without both there are none), group (nothing is
  /// drawn), material (2700 kg/m^3, friction 0.8). Numbers that no rock can have: one error message, and no rock.
  void generateRocks(vyrSDK::Assembly* assembly, vyrCollide::Space* space, int count, vyrOSG::Group* group,
                     double minRadius, double maxRadius, vyr::Material* material, double baseHeight = 0,
                     double halfWidth = 0.5, double halfDepth = 0.5, double seed = 0);

  /// One rock around the origin, not drawn; `radius` in m of the ball around it. *returns new*. Nullable: result, with
  /// one error message, for a form or radius that there is not; material as above.
  static vyr::RigidBody* createRock(RockType type, double radius, vyr::Material* material, unsigned int seed);

protected:
  ~RockGenerator() override;
};

} // namespace vyrOSG
