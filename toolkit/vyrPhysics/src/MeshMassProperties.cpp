/// Volume, centre of mass and inertia of the inside of a closed triangle mesh.
#include "MeshMassProperties.h"

#include <map>
#include <utility>

namespace vyrPhysics {

bool isClosedMesh(const std::vector<unsigned int>& indices) {
  std::map<std::pair<unsigned int, unsigned int>, int> edges;
  for (size_t i = 0; i + 2 < indices.size(); i += 3) {
    for (size_t k = 0; k < 3; ++k) {
      ++edges[{indices[i + k], indices[i + (k + 1) % 3]}];
    }
  }
  for (const auto& edge : edges) {
    const auto opposite = edges.find({edge.first.second, edge.first.first});
    if (edge.second != 1 || opposite == edges.end() || opposite->second != 1) {
      return false;
    }
  }
  return !edges.empty();
}

namespace {

/// Terms of the integrals over one triangle for one axis.
/// Source: Eberly, Polyhedral Mass Properties (Revisited), section 2.5: f1 = w0 + w1 + w2, f2, f3 and g0, g1, g2.
struct Terms {
  Terms(double w0, double w1, double w2) {
    const double t0 = w0 + w1;
    f1 = t0 + w2;
    const double t1 = w0 * w0;
    const double t2 = t1 + w1 * t0;
    f2 = t2 + w2 * f1;
    f3 = w0 * t1 + w1 * t2 + w2 * f2;
    g0 = f2 + w0 * (f1 + w0);
    g1 = f2 + w1 * (f1 + w1);
    g2 = f2 + w2 * (f1 + w2);
  }

  double f1, f2, f3, g0, g1, g2;
};

} // namespace

vyrCollide::MassProperties computeMassProperties(const std::vector<vyr::Vec3>& vertices,
                                                 const std::vector<unsigned int>& indices) {
  // Integrals of 1, x, y, z, x^2, y^2, z^2, xy, yz, zx over the inside. The first vertex is the origin, which keeps
  // meshes far from the frame's origin exact.
  double sum[10] = {};
  const vyr::Vec3 origin = vertices[indices[0]];
  for (size_t i = 0; i + 2 < indices.size(); i += 3) {
    const vyr::Vec3 a = vertices[indices[i]] - origin;
    const vyr::Vec3 b = vertices[indices[i + 1]] - origin;
    const vyr::Vec3 c = vertices[indices[i + 2]] - origin;
    const vyr::Vec3 d = (b - a) ^ (c - a);
    const Terms x(a.x(), b.x(), c.x());
    const Terms y(a.y(), b.y(), c.y());
    const Terms z(a.z(), b.z(), c.z());
    sum[0] += d.x() * x.f1;
    sum[1] += d.x() * x.f2;
    sum[2] += d.y() * y.f2;
    sum[3] += d.z() * z.f2;
    sum[4] += d.x() * x.f3;
    sum[5] += d.y() * y.f3;
    sum[6] += d.z() * z.f3;
    sum[7] += d.x() * (a.y() * x.g0 + b.y() * x.g1 + c.y() * x.g2);
    sum[8] += d.y() * (a.z() * y.g0 + b.z() * y.g1 + c.z() * y.g2);
    sum[9] += d.z() * (a.x() * z.g0 + b.x() * z.g1 + c.x() * z.g2);
  }
  const double factors[10] = {6, 24, 24, 24, 60, 60, 60, 120, 120, 120};
  const double turn = sum[0] < 0.0 ? -1.0 : 1.0;
  for (int i = 0; i < 10; ++i) {
    sum[i] *= turn / factors[i];
  }

  vyrCollide::MassProperties result;
  if (!(sum[0] > 0.0)) {
    return result;
  }
  result.volume = sum[0];
  const vyr::Vec3 c = vyr::Vec3(sum[1], sum[2], sum[3]) / sum[0];
  result.center = c + origin;
  auto& inertia = result.inertia;
  inertia[0][0] = sum[5] + sum[6] - sum[0] * (c.y() * c.y() + c.z() * c.z());
  inertia[1][1] = sum[4] + sum[6] - sum[0] * (c.z() * c.z() + c.x() * c.x());
  inertia[2][2] = sum[4] + sum[5] - sum[0] * (c.x() * c.x() + c.y() * c.y());
  inertia[0][1] = inertia[1][0] = -(sum[7] - sum[0] * c.x() * c.y());
  inertia[1][2] = inertia[2][1] = -(sum[8] - sum[0] * c.y() * c.z());
  inertia[0][2] = inertia[2][0] = -(sum[9] - sum[0] * c.z() * c.x());
  return result;
}

} // namespace vyrPhysics
