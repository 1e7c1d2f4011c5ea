// The form of a rock.
#include "RockShape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <utility>

namespace vyrOSG {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr unsigned int kCuts = 15;

vyr::Vec3 randomDirection(vyr::Random& random) {
  const double z = random.uniform(-1, 1);
  const double angle = random.uniform(0, 2 * kPi);
  const double r = std::sqrt(1 - z * z);
  return {r * std::cos(angle), r * std::sin(angle), z};
}

BallMesh icosahedron() {
  const double t = (1 + std::sqrt(5.0)) / 2;
  BallMesh mesh;
  for (const auto& [a, b] : {std::pair{-1.0, t}, {1.0, t}, {-1.0, -t}, {1.0, -t}})
    mesh.directions.push_back(vyr::Vec3(a, b, 0).normalized());
  for (const auto& [a, b] : {std::pair{-1.0, t}, {1.0, t}, {-1.0, -t}, {1.0, -t}})
    mesh.directions.push_back(vyr::Vec3(0, a, b).normalized());
  for (const auto& [a, b] : {std::pair{-1.0, t}, {1.0, t}, {-1.0, -t}, {1.0, -t}})
    mesh.directions.push_back(vyr::Vec3(b, 0, a).normalized());
  mesh.indices = {0, 11, 5, 0, 5, 1, 0, 1, 7, 0, 7, 10, 0, 10, 11, 1, 5, 9, 5, 11, 4,  11, 10, 2,  10, 7, 6, 7, 1, 8,
                  3, 9,  4, 3, 4, 2, 3, 2, 6, 3, 6, 8,  3, 8,  9,  4, 9, 5, 2, 4,  11, 6,  2,  10, 8,  6, 7, 9, 8, 1};
  return mesh;
}

BallMesh divided(const BallMesh& coarse) {
  BallMesh fine;
  fine.directions = coarse.directions;
  std::map<std::pair<unsigned int, unsigned int>, unsigned int> middles;
  auto middle = [&](unsigned int a, unsigned int b) {
    const auto [entry, isNew] = middles.emplace(std::minmax(a, b), static_cast<unsigned int>(fine.directions.size()));
    if (isNew)
      fine.directions.push_back((fine.directions[a] + fine.directions[b]).normalized());
    return entry->second;
  };
  for (size_t t = 0; t < coarse.indices.size(); t += 3) {
    const unsigned int a = coarse.indices[t];
    const unsigned int b = coarse.indices[t + 1];
    const unsigned int c = coarse.indices[t + 2];
    const unsigned int ab = middle(a, b);
    const unsigned int bc = middle(b, c);
    const unsigned int ca = middle(c, a);
    for (unsigned int corner : {a, ab, ca, b, bc, ab, c, ca, bc, ab, bc, ca})
      fine.indices.push_back(corner);
  }
  return fine;
}

} // namespace

const BallMesh& ballMesh(unsigned int level) {
  static const std::array<BallMesh, 5> s_meshes = [] {
    std::array<BallMesh, 5> meshes;
    meshes[0] = icosahedron();
    for (size_t i = 1; i < meshes.size(); ++i)
      meshes[i] = divided(meshes[i - 1]);
    return meshes;
  }();
  return s_meshes[std::min<size_t>(level, s_meshes.size() - 1)];
}

RockBlock::RockBlock(vyr::Random& random, const vyr::Vec3& centre, const vyr::Vec3& extent, double roundness)
    : m_centre(centre)
    , m_extent(extent)
    , m_sharpness(4 + 40 * (1 - roundness)) {
  // Turned by the golden angle from pole to pole and shaken, so that no side stays uncut.
  const double start = random.uniform(0, 2 * kPi);
  for (unsigned int i = 0; i < kCuts; ++i) {
    const double z = 1 - 2 * (i + 0.5) / kCuts;
    const double r = std::sqrt(1 - z * z);
    const double angle = start + kPi * (3 - std::sqrt(5.0)) * i;
    const vyr::Vec3 even(r * std::cos(angle), r * std::sin(angle), z);
    m_cuts.push_back({(even + randomDirection(random) * 0.35).normalized(), random.uniform(0.62, 0.95)});
  }
}

double RockBlock::radiusAt(const vyr::Vec3& direction) const {
  // A ball and the planes, joined by a mean that favours the nearest: 1/r^p is the sum of the parts' 1/r^p.
  double sum = 1;
  for (const Cut& cut : m_cuts) {
    const double cosine = cut.normal * direction;
    if (cosine > 0)
      sum += std::pow(cosine / cut.distance, m_sharpness);
  }
  return std::pow(sum, -1 / m_sharpness);
}

vyr::Vec3 RockBlock::pointAt(const vyr::Vec3& direction) const {
  // Where the direction meets the unit ball that the extents stretch.
  const vyr::Vec3 shrunk(direction.x() / m_extent.x(), direction.y() / m_extent.y(), direction.z() / m_extent.z());
  const vyr::Vec3 unit = shrunk.normalized();
  return m_centre + vyr::componentMultiply(unit * radiusAt(unit), m_extent);
}

bool RockBlock::contains(const vyr::Vec3& point) const {
  const vyr::Vec3 from = point - m_centre;
  const double distance = from.length();
  return distance < 1e-12 || distance <= (pointAt(from / distance) - m_centre).length();
}

double RockBlock::getReach() const {
  double reach = 0;
  for (const vyr::Vec3& direction : ballMesh(2).directions)
    reach = std::max(reach, (pointAt(direction) - m_centre).length());
  return reach;
}

} // namespace vyrOSG
