// Fills assemblies with rocks.
#include <vyrOSG/RockGenerator.h>

#include "RockShape.h"
#include "RockVisual.h"

#include <vyrOSG/utils.h>

#include <vyr/Notify.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Trimesh.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace vyrOSG {

namespace {

constexpr double kPi = 3.14159265358979323846;
/// Between rocks before they fall, as a share of the smallest radius.
constexpr double kGap = 0.02;
constexpr int kAttempts = 40;
constexpr int kMostRises = 500;
constexpr int kMostRocks = 100000;

/// A block of a composite form, in units of the rock's size: middle and half sizes.
struct Part {
  vyr::Vec3 centre;
  vyr::Vec3 extent;
};

/// The parts of a form; they overlap. Sizes are brought to the radius afterwards.
std::vector<Part> partsOf(RockGenerator::RockType type) {
  using vyr::Vec3;
  switch (type) {
  case RockGenerator::COMPOSITE_ONE:
    return {{Vec3(-0.25, 0, 0), Vec3(0.7, 0.6, 0.55)}, {Vec3(0.45, 0.1, 0.05), Vec3(0.45, 0.45, 0.4)}};
  case RockGenerator::COMPOSITE_TWO:
    return {{Vec3(0, 0, 0), Vec3(0.55, 0.5, 0.45)},
            {Vec3(-0.5, 0.1, -0.05), Vec3(0.45, 0.4, 0.4)},
            {Vec3(0.5, -0.1, 0.1), Vec3(0.42, 0.42, 0.36)}};
  case RockGenerator::COMPOSITE_THREE:
    return {{Vec3(0, 0, 0), Vec3(0.5, 0.5, 0.5)},
            {Vec3(0.4, 0.1, -0.1), Vec3(0.42, 0.36, 0.38)},
            {Vec3(-0.3, 0.38, 0), Vec3(0.4, 0.38, 0.36)},
            {Vec3(-0.15, -0.4, 0.12), Vec3(0.36, 0.42, 0.36)}};
  case RockGenerator::COMPOSITE_FOUR:
    return {{Vec3(0, 0, 0), Vec3(0.45, 0.42, 0.4)},
            {Vec3(0.42, 0.2, 0), Vec3(0.34, 0.3, 0.32)},
            {Vec3(-0.36, 0.28, 0.1), Vec3(0.34, 0.34, 0.3)},
            {Vec3(-0.2, -0.36, -0.05), Vec3(0.36, 0.32, 0.3)},
            {Vec3(0.15, -0.1, 0.4), Vec3(0.32, 0.3, 0.3)}};
  case RockGenerator::MAYA_ROCK1:
    return {{Vec3(), Vec3(1, 0.92, 0.82)}};
  case RockGenerator::MAYA_ROCK2:
    return {{Vec3(), Vec3(1, 0.8, 0.42)}};
  case RockGenerator::MAYA_ROCK3:
    return {{Vec3(), Vec3(1, 0.5, 0.44)}};
  case RockGenerator::NUM_ROCK_TYPES:
    break;
  }
  return {};
}

double roundnessOf(RockGenerator::RockType type) {
  return type == RockGenerator::MAYA_ROCK1 ? 0.75 : type == RockGenerator::MAYA_ROCK2 ? 0.55 : 0.6;
}

/// A rock's blocks, in m, around the middle of the ball of the radius that holds them all.
std::vector<RockBlock> makeBlocks(RockGenerator::RockType type, double radius, unsigned int seed) {
  const std::vector<Part> parts = partsOf(type);
  // Once to measure, once in the size that was asked for: the same numbers come again.
  double scale = 1;
  std::vector<RockBlock> blocks;
  for (int pass = 0; pass < 2; ++pass) {
    blocks.clear();
    vyr::Random random(seed * 7919ull + static_cast<unsigned int>(type));
    double reach = 0;
    for (const Part& part : parts) {
      const double grown = scale * random.uniform(0.88, 1.12);
      blocks.emplace_back(random, part.centre * scale, part.extent * grown, roundnessOf(type));
      for (const vyr::Vec3& direction : ballMesh(2).directions)
        reach = std::max(reach, blocks.back().pointAt(direction).length());
    }
    scale = radius / reach;
  }
  return blocks;
}

/// Volume of blocks that overlap, in m^3: the share of a fine grid of points that lie inside.
double volumeOf(const std::vector<RockBlock>& blocks, double radius) {
  const int cells = 24;
  int inside = 0;
  for (int i = 0; i < cells * cells * cells; ++i) {
    const vyr::Vec3 point(((i % cells) + 0.5) / cells * 2 - 1, ((i / cells % cells) + 0.5) / cells * 2 - 1,
                          ((i / cells / cells) + 0.5) / cells * 2 - 1);
    const bool hit = std::any_of(blocks.begin(), blocks.end(),
                                 [&](const RockBlock& block) { return block.contains(point * radius); });
    inside += hit ? 1 : 0;
  }
  return std::pow(2 * radius / cells, 3) * inside;
}

vyrCollide::Geometry* makeGeometry(const RockBlock& block, vyr::Material* material) {
  const BallMesh& ball = ballMesh(2);
  std::vector<vyr::Vec3> vertices;
  for (const vyr::Vec3& direction : ball.directions)
    vertices.push_back(block.pointAt(direction));
  auto* geometry = new vyrCollide::Geometry(new vyrCollide::Trimesh(vertices, ball.indices), "rock");
  geometry->setMaterial(material);
  return geometry;
}

vyr::RigidBody* makeBody(const std::vector<RockBlock>& blocks, double radius, vyr::Material* material) {
  auto* body = new vyr::RigidBody("rock");
  for (const RockBlock& block : blocks)
    body->add(makeGeometry(block, material));
  // The parts of a composite overlap: their volumes do not add up.
  if (blocks.size() > 1)
    body->setMass(material->getDensity() * volumeOf(blocks, radius));
  return body;
}

vyr::ref_ptr<vyr::Material> materialFor(vyr::Material* material) {
  static const vyr::ref_ptr<vyr::Material> s_stone(new vyr::Material("stone", 2700, 0.8, 0.05));
  return vyr::ref_ptr<vyr::Material>(material ? material : s_stone.get());
}

void draw(vyr::RigidBody* body, const std::vector<RockBlock>& blocks, vyrOSG::Group* group, std::uint64_t seed) {
  vyr::Random random(seed);
  const double light = random.uniform(0.8, 1.1);
  const double warmth = random.uniform(-0.02, 0.05);
  const osg::Vec4 color(float(0.52 * light + warmth), float(0.50 * light), float(0.47 * light - warmth), 1);
  const unsigned int level = blocks.size() > 1 ? 3 : 4;
  vyrOSG::Group* const visual = vyrOSG::createVisual(body, group);
  for (size_t i = 0; i < blocks.size(); ++i) {
    vyrOSG::GeometryNode* node = vyrOSG::findGeometryNode(body->getGeometries()[i].get(), visual);
    node->setRenderChild(vyrOSG::GeometryNode::RENDER_DATA,
                         static_cast<osg::Node*>(makeRockVisual(blocks[i], color, unsigned(i), level).get()));
  }
}

/// A ball that a rock fills, before it falls.
struct Ball {
  vyr::Vec3 centre;
  double radius;
};

/// Finds room for one ball after another.
class Placement {
public:
  Placement(const vyrCollide::Space* space, double baseHeight, double halfWidth, double halfDepth)
      : m_space(space)
      , m_height(baseHeight)
      , m_halfWidth(halfWidth)
      , m_halfDepth(halfDepth) {}

  /// Puts a ball where it touches nothing, higher and higher where there is no room; false when there is none up to
  /// the sky.
  bool place(double radius, vyr::Random& random, vyr::Vec3& outCentre) {
    for (int rise = 0; rise < kMostRises; ++rise) {
      for (int attempt = 0; attempt < kAttempts; ++attempt) {
        outCentre.set(random.uniform(-m_halfWidth, m_halfWidth), random.uniform(-m_halfDepth, m_halfDepth),
                      m_height + radius);
        if (isFree(outCentre, radius)) {
          m_balls.push_back({outCentre, radius});
          return true;
        }
      }
      m_height += radius;
    }
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "no room for a rock of the radius " << radius << " over the given area";
    return false;
  }

private:
  bool isFree(const vyr::Vec3& centre, double radius) const {
    for (const Ball& ball : m_balls) {
      if ((ball.centre - centre).length() < (ball.radius + radius) * (1 + kGap))
        return false;
    }
    if (!m_space)
      return true;
    const auto& others = m_space->getGeometries();
    return std::all_of(others.begin(), others.end(), [&](const vyr::ref_ptr<vyrCollide::Geometry>& other) {
      return isClear(*other, centre, radius * (1 + kGap));
    });
  }

  static bool isClear(const vyrCollide::Geometry& other, const vyr::Vec3& centre, double radius) {
    if (!other.isValid())
      return true;
    if (other.getShape()->getType() == vyrCollide::Shape::PLANE)
      return (centre * other.getTransform().inverse()).z() > radius;
    const vyrCollide::Bounds box = other.getWorldBounds();
    vyr::Vec3 nearest;
    for (size_t i = 0; i < 3; ++i)
      nearest[i] = std::clamp(centre[i], box.min[i], box.max[i]);
    return (nearest - centre).length() > radius;
  }

  const vyrCollide::Space* m_space;
  double m_height;
  double m_halfWidth;
  double m_halfDepth;
  std::vector<Ball> m_balls;
};

bool areUsable(int count, double minRadius, double maxRadius, double baseHeight, double halfWidth, double halfDepth,
               double seed) {
  const bool counted = count >= 0 && count <= kMostRocks;
  const bool sized = minRadius > 0 && minRadius <= maxRadius && std::isfinite(maxRadius);
  const bool placed = std::isfinite(baseHeight) && halfWidth >= 0 && std::isfinite(halfWidth) && halfDepth >= 0 &&
                      std::isfinite(halfDepth) && std::isfinite(seed);
  if (counted && sized && placed)
    return true;
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << "rocks need a count from 0 to " << kMostRocks
                                << ", radii above 0 with the smaller one first, and a finite area; got " << count
                                << ", " << minRadius << " to " << maxRadius << ", " << baseHeight << ", " << halfWidth
                                << ", " << halfDepth << ", " << seed;
  return false;
}

vyr::Quat randomRotation(vyr::Random& random) {
  // Source: Shoemake, Uniform Random Rotations, Graphics Gems III, 1992.
  const double u = random.uniform();
  const double a = 2 * kPi * random.uniform();
  const double b = 2 * kPi * random.uniform();
  return vyr::Quat(std::sqrt(1 - u) * std::sin(a), std::sqrt(1 - u) * std::cos(a), std::sqrt(u) * std::sin(b),
                   std::sqrt(u) * std::cos(b));
}

} // namespace

RockGenerator::RockGenerator() = default;

RockGenerator::~RockGenerator() = default;

vyr::RigidBody* RockGenerator::createRock(RockType type, double radius, vyr::Material* material, unsigned int seed) {
  if (type < COMPOSITE_ONE || type >= NUM_ROCK_TYPES || !(radius > 0) || !std::isfinite(radius)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "there is no rock of the form " << int(type) << " with the radius " << radius;
    return nullptr;
  }
  return makeBody(makeBlocks(type, radius, seed), radius, materialFor(material).get());
}

void RockGenerator::generateRocks(vyrSDK::Assembly* assembly, vyrCollide::Space* space, int count, vyrOSG::Group* group,
                                  double minRadius, double maxRadius, vyr::Material* material, double baseHeight,
                                  double halfWidth, double halfDepth, double seed) {
  if ((!assembly && !space) || !areUsable(count, minRadius, maxRadius, baseHeight, halfWidth, halfDepth, seed))
    return;
  const vyr::ref_ptr<vyr::Material> stone = materialFor(material);
  vyr::Random random(static_cast<std::uint64_t>(static_cast<std::int64_t>(std::clamp(seed, -9e18, 9e18))));
  Placement placement(space, baseHeight, halfWidth, halfDepth);
  std::vector<vyr::ref_ptr<vyr::RigidBody>> rocks;
  for (int i = 0; i < count; ++i) {
    const auto type = static_cast<RockType>(i % NUM_ROCK_TYPES);
    const double radius = random.uniform(minRadius, maxRadius);
    const std::vector<RockBlock> blocks = makeBlocks(type, radius, static_cast<unsigned int>(random.next()));
    const vyr::Quat rotation = randomRotation(random);
    vyr::Vec3 centre;
    if (!placement.place(radius, random, centre))
      break;
    vyr::ref_ptr<vyr::RigidBody> body(makeBody(blocks, radius, stone.get()));
    body->setTransform(vyr::AffineMatrix4x4(rotation, centre));
    // Rocks that are not drawn stand where drawn ones do.
    const std::uint64_t look = random.next();
    if (group)
      draw(body.get(), blocks, group, look);
    rocks.push_back(body);
  }
  // All rocks have their places: only now may they stand in each other's way.
  for (const vyr::ref_ptr<vyr::RigidBody>& body : rocks) {
    if (assembly)
      assembly->add(body.get());
    for (const vyr::ref_ptr<vyrCollide::Geometry>& geometry : body->getGeometries()) {
      if (space)
        space->add(geometry.get());
    }
  }
}

} // namespace vyrOSG
