/// A form bounded by triangles, given directly or read from a file.
#pragma once

#include <vyr/Vec3.h>
#include <vyr/VyrString.h>
#include <vyrCollide/Shape.h>

#include <cstddef>
#include <vector>

namespace vyrSDK {
class Simulation;
}

namespace vyrCollide {

/// A triangle mesh. Triangles are counter-clockwise seen from outside.
///
/// A mesh that does not move collides with its exact triangles, from both sides. A mesh that forces or prescribed
/// velocities move collides as its convex hull: the collision engine resolves hulls robustly, while two moving
/// triangle soups sink into each other. Concave moving forms are put together from several geometries; one warning for
/// each mesh that is not convex says so when a body with it enters a simulation to move.
class VYRPHYSICS_EXPORT Trimesh : public Shape {
public:
  /// `indices`: three vertex indices a triangle; `vertices` in m. A triangle that names a vertex out of range, no
  /// triangle at all or a vertex that is not finite gives an invalid mesh.
  Trimesh(const std::vector<vyr::Vec3>& vertices, const std::vector<unsigned int>& indices);

  /// Reads a mesh from a Wavefront OBJ file or an STL file (text or binary), chosen by the ending `.obj` or `.stl`,
  /// whatever its case. OBJ files, which have y up, are turned to z up, (x, y, z) to (x, -z, y), as models are when
  /// they are drawn; STL files keep their axes. Lengths are multiplied with `scale`. *returns new*; Nullable: an
  /// unreadable or empty file gives null and one error message that names the file.
  static Trimesh* create(const vyr::String& fileName, double scale = 1.0);

  Type getType() const override { return TRIMESH; }

  const std::vector<vyr::Vec3>& getVertices() const { return m_vertices; }
  const std::vector<unsigned int>& getIndices() const { return m_indices; }
  size_t getNumVertices() const { return m_vertices.size(); }
  size_t getNumTriangles() const { return m_indices.size() / 3; }

  /// True when every edge is shared by exactly two triangles that run through it in opposite directions.
  bool isClosed() const { return m_closed; }

  /// True when no vertex stands out of the plane of a triangle by more than a fifth of the mesh's diagonal: the
  /// mesh is about its own convex hull. Large meshes are sampled. False for an invalid mesh.
  bool isConvex() const;

  Bounds getBounds() const override;

  /// Of a closed mesh, exact; all zero for an open one.
  /// Source: Eberly, Polyhedral Mass Properties (Revisited), Geometric Tools, 2002: volume integrals turned into sums
  /// over the triangles by the divergence theorem.
  MassProperties getMassProperties() const override { return m_massProperties; }
  std::unique_ptr<ShapeInstance> createInstance(bool moving) const override;

protected:
  ~Trimesh() override;

private:
  friend class vyrSDK::Simulation;
  struct Tree;

  std::vector<vyr::Vec3> m_vertices;
  std::vector<unsigned int> m_indices;
  bool m_closed = false;
  mutable bool m_warned = false; ///< that it moves as its hull
  MassProperties m_massProperties;
  mutable std::shared_ptr<Tree> m_tree; ///< search tree over the triangles, made on first use, shared by instances
};

} // namespace vyrCollide
