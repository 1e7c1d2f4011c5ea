/// A form bounded by triangles.
#include <vyrCollide/Trimesh.h>

#include <vyr/Notify.h>
#include <vyr/ref_ptr.h>

#include "BulletConvert.h"
#include "MeshMassProperties.h"
#include "MeshReader.h"
#include "ShapeInstance.h"
#include "Validate.h"

#include <BulletCollision/CollisionShapes/btBvhTriangleMeshShape.h>
#include <BulletCollision/CollisionShapes/btConvexHullShape.h>
#include <BulletCollision/CollisionShapes/btScaledBvhTriangleMeshShape.h>
#include <BulletCollision/CollisionShapes/btTriangleMesh.h>

#include <algorithm>

namespace vyrCollide {

namespace {

/// Contacts are kept this far (m) off the surface; wider margins let things float visibly.
const double kMargin = 0.001;

} // namespace

/// The triangles in the engine's form with the search tree over them.
struct Trimesh::Tree {
  btTriangleMesh triangles;
  std::unique_ptr<btBvhTriangleMeshShape> shape;
};

namespace {

/// A scaled view of a shared search tree: each geometry needs a shape of its own to be told apart.
class SharedTreeInstance : public ShapeInstance {
public:
  SharedTreeInstance(std::shared_ptr<void> tree, btBvhTriangleMeshShape* shape)
      : ShapeInstance(std::make_unique<btScaledBvhTriangleMeshShape>(shape, btVector3(1.0, 1.0, 1.0)))
      , m_tree(std::move(tree)) {
    m_shape->setMargin(kMargin);
  }

private:
  std::shared_ptr<void> m_tree;
};

/// How far a vertex may stand out of a triangle's plane in a mesh that counts as convex, as a share of its diagonal.
constexpr double kBulge = 0.2;
/// Pairs of triangle and vertex that the test for it goes through at most, about.
constexpr size_t kMostTests = 20000000;

} // namespace

Trimesh::Trimesh(const std::vector<vyr::Vec3>& vertices, const std::vector<unsigned int>& indices)
    : m_vertices(vertices)
    , m_indices(indices) {
  const size_t count = vertices.size();
  m_valid = !indices.empty() && indices.size() % 3 == 0 &&
            std::all_of(indices.begin(), indices.end(), [count](unsigned int i) { return i < count; }) &&
            std::all_of(vertices.begin(), vertices.end(), [](const vyr::Vec3& v) { return v.isFinite(); });
  if (!m_valid) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "a mesh cannot be made from " << count << " vertices and " << indices.size()
                                  << " indices: the indices must be triples of vertex numbers, the vertices finite";
    return;
  }
  m_closed = vyrPhysics::isClosedMesh(m_indices);
  if (m_closed) {
    m_massProperties = vyrPhysics::computeMassProperties(m_vertices, m_indices);
  }
}

Trimesh::~Trimesh() = default;

Trimesh* Trimesh::create(const vyr::String& fileName, double scale) {
  std::vector<vyr::Vec3> vertices;
  std::vector<unsigned int> indices;
  if (!vyrPhysics::isPositive(scale, ("scale of the mesh '" + fileName + "'").c_str()) ||
      !vyrPhysics::readMesh(fileName, vertices, indices)) {
    return nullptr;
  }
  for (vyr::Vec3& vertex : vertices) {
    vertex *= scale;
  }
  vyr::ref_ptr<Trimesh> mesh = new Trimesh(vertices, indices);
  return mesh->isValid() ? mesh.release() : nullptr;
}

bool Trimesh::isConvex() const {
  if (!m_valid) {
    return false;
  }
  const Bounds bounds = getBounds();
  const double tolerance = kBulge * (bounds.max - bounds.min).length();
  const size_t triangles = getNumTriangles();
  const size_t stride = 1 + triangles * m_indices.size() / kMostTests;
  for (size_t i = 0; i < triangles; i += stride) {
    const vyr::Vec3& a = m_vertices[m_indices[3 * i]];
    const vyr::Vec3 normal =
        ((m_vertices[m_indices[3 * i + 1]] - a) ^ (m_vertices[m_indices[3 * i + 2]] - a)).normalized();
    // Vertices that no triangle names do not count.
    if (std::any_of(m_indices.begin(), m_indices.end(),
                    [&](unsigned int index) { return (m_vertices[index] - a) * normal > tolerance; })) {
      return false;
    }
  }
  return true;
}

Bounds Trimesh::getBounds() const {
  Bounds bounds;
  if (!m_valid) {
    return bounds;
  }
  bounds.min = bounds.max = m_vertices[m_indices[0]];
  for (unsigned int index : m_indices) {
    for (size_t axis = 0; axis < 3; ++axis) {
      bounds.min[axis] = std::min(bounds.min[axis], m_vertices[index][axis]);
      bounds.max[axis] = std::max(bounds.max[axis], m_vertices[index][axis]);
    }
  }
  return bounds;
}

std::unique_ptr<ShapeInstance> Trimesh::createInstance(bool moving) const {
  if (!m_valid) {
    return nullptr;
  }
  if (moving) {
    auto hull = std::make_unique<btConvexHullShape>();
    for (unsigned int index : m_indices) {
      hull->addPoint(vyrPhysics::toBullet(m_vertices[index]), false);
    }
    hull->recalcLocalAabb();
    hull->optimizeConvexHull();
    hull->setMargin(kMargin);
    return std::make_unique<ShapeInstance>(std::move(hull));
  }
  if (!m_tree) {
    m_tree = std::make_shared<Tree>();
    for (size_t i = 0; i < m_indices.size(); i += 3) {
      m_tree->triangles.addTriangle(vyrPhysics::toBullet(m_vertices[m_indices[i]]),
                                    vyrPhysics::toBullet(m_vertices[m_indices[i + 1]]),
                                    vyrPhysics::toBullet(m_vertices[m_indices[i + 2]]));
    }
    m_tree->shape = std::make_unique<btBvhTriangleMeshShape>(&m_tree->triangles, true);
    m_tree->shape->setMargin(kMargin);
  }
  return std::make_unique<SharedTreeInstance>(m_tree, m_tree->shape.get());
}

} // namespace vyrCollide
