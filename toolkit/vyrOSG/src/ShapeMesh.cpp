// Builds the vertex arrays of the shapes.
#include "ShapeMesh.h"

#include <algorithm>
#include <cmath>

namespace vyrOSG::mesh {

namespace {

constexpr double kPi = 3.14159265358979323846;

/// Collects vertices and triangles, then makes the drawable from them.
class Builder {
public:
  Builder()
      : m_vertices(new osg::Vec3Array)
      , m_normals(new osg::Vec3Array)
      , m_texCoords(new osg::Vec2Array)
      , m_triangles(new osg::DrawElementsUInt(GL_TRIANGLES)) {}

  unsigned int vertex(const osg::Vec3d& position, const osg::Vec3d& normal, double u, double v) {
    m_vertices->push_back(osg::Vec3(position));
    m_normals->push_back(osg::Vec3(normal));
    m_texCoords->push_back(osg::Vec2(float(u), float(v)));
    return static_cast<unsigned int>(m_vertices->size()) - 1;
  }

  void triangle(unsigned int a, unsigned int b, unsigned int c) {
    m_triangles->push_back(a);
    m_triangles->push_back(b);
    m_triangles->push_back(c);
  }

  /// Two triangles for corners in counter-clockwise order as seen from outside.
  void quad(unsigned int a, unsigned int b, unsigned int c, unsigned int d) {
    triangle(a, b, c);
    triangle(a, c, d);
  }

  osg::ref_ptr<osg::Geometry> make() {
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(m_vertices);
    geometry->setNormalArray(m_normals, osg::Array::BIND_PER_VERTEX);
    geometry->setTexCoordArray(0, m_texCoords);
    geometry->addPrimitiveSet(m_triangles);
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    return geometry;
  }

private:
  osg::ref_ptr<osg::Vec3Array> m_vertices;
  osg::ref_ptr<osg::Vec3Array> m_normals;
  osg::ref_ptr<osg::Vec2Array> m_texCoords;
  osg::ref_ptr<osg::DrawElementsUInt> m_triangles;
};

/// One circle of a surface of revolution about z.
struct Ring {
  double radius;
  double z;
  double normalRadial;
  double normalZ;
  double v;
};

/// Joins circles, listed from the bottom up, to a surface of revolution.
void addRevolution(Builder& builder, const std::vector<Ring>& rings, unsigned int segments) {
  std::vector<unsigned int> previous;
  for (const Ring& ring : rings) {
    std::vector<unsigned int> current;
    for (unsigned int i = 0; i <= segments; ++i) {
      const double angle = 2 * kPi * (i % segments) / segments;
      const double c = std::cos(angle);
      const double s = std::sin(angle);
      current.push_back(builder.vertex(osg::Vec3d(c * ring.radius, s * ring.radius, ring.z),
                                       osg::Vec3d(c * ring.normalRadial, s * ring.normalRadial, ring.normalZ),
                                       double(i) / segments, ring.v));
    }
    for (unsigned int i = 0; i < segments && !previous.empty(); ++i)
      builder.quad(previous[i], previous[i + 1], current[i + 1], current[i]);
    previous = current;
  }
}

/// A disc at height z that looks up (direction 1) or down (direction -1).
void addDisc(Builder& builder, double radius, double z, double direction, unsigned int segments) {
  const osg::Vec3d normal(0, 0, direction);
  const unsigned int centre = builder.vertex(osg::Vec3d(0, 0, z), normal, 0.5, 0.5);
  unsigned int previous = 0;
  for (unsigned int i = 0; i <= segments; ++i) {
    const double angle = direction * 2 * kPi * (i % segments) / segments;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const unsigned int current =
        builder.vertex(osg::Vec3d(c * radius, s * radius, z), normal, 0.5 + c / 2, 0.5 + direction * s / 2);
    if (i > 0)
      builder.triangle(centre, previous, current);
    previous = current;
  }
}

/// The circles of a half sphere, from its lower to its upper end; lower: the one that bulges down.
void appendHalfSphere(std::vector<Ring>& rings, double radius, double z, bool lower, unsigned int segments,
                      double vBegin, double vEnd) {
  const unsigned int steps = std::max(2u, segments / 4);
  for (unsigned int i = 0; i <= steps; ++i) {
    const double t = double(i) / steps;
    const double latitude = (lower ? t - 1 : t) * kPi / 2;
    const double c = i == (lower ? 0u : steps) ? 0 : std::cos(latitude);
    const double s = std::sin(latitude);
    rings.push_back({radius * c, z + radius * s, c, s, vBegin + t * (vEnd - vBegin)});
  }
}

} // namespace

unsigned int circleSegments(float detailRatio) {
  if (!(detailRatio > 0))
    return 8;
  return 8 + 4 * static_cast<unsigned int>(std::ceil(std::min(detailRatio, 3.0f) * 25));
}

osg::ref_ptr<osg::Geometry> makeBox(const osg::Vec3d& halfExtents) {
  Builder builder;
  for (int axis = 0; axis < 3; ++axis) {
    for (double side : {-1.0, 1.0}) {
      osg::Vec3d normal, right, up;
      normal[axis] = side;
      // The side faces carry their texture upright, z being up; the two others lie along x and y.
      right[axis == 0 ? 1 : 0] = axis == 1 ? -side : side;
      up = normal ^ right;
      unsigned int corner[4];
      const double signs[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
      for (int i = 0; i < 4; ++i) {
        osg::Vec3d position = normal + right * signs[i][0] + up * signs[i][1];
        position = osg::componentMultiply(position, halfExtents);
        corner[i] = builder.vertex(position, normal, (signs[i][0] + 1) / 2, (signs[i][1] + 1) / 2);
      }
      builder.quad(corner[0], corner[1], corner[2], corner[3]);
    }
  }
  return builder.make();
}

osg::ref_ptr<osg::Geometry> makeSphere(double radius, unsigned int segments) {
  Builder builder;
  std::vector<Ring> rings;
  appendHalfSphere(rings, radius, 0, true, segments, 0, 0.5);
  rings.pop_back();
  appendHalfSphere(rings, radius, 0, false, segments, 0.5, 1);
  addRevolution(builder, rings, segments);
  return builder.make();
}

osg::ref_ptr<osg::Geometry> makeCapsule(double radius, double height, unsigned int segments) {
  Builder builder;
  std::vector<Ring> rings;
  const double capShare = radius / (2 * radius + height);
  appendHalfSphere(rings, radius, -height / 2, true, segments, 0, capShare);
  appendHalfSphere(rings, radius, height / 2, false, segments, 1 - capShare, 1);
  addRevolution(builder, rings, segments);
  return builder.make();
}

osg::ref_ptr<osg::Geometry> makeCylinder(double radius, double height, unsigned int segments) {
  Builder builder;
  addRevolution(builder, {{radius, -height / 2, 1, 0, 0}, {radius, height / 2, 1, 0, 1}}, segments);
  addDisc(builder, radius, height / 2, 1, segments);
  addDisc(builder, radius, -height / 2, -1, segments);
  return builder.make();
}

osg::ref_ptr<osg::Geometry> makeCone(double radius, double height, unsigned int segments) {
  Builder builder;
  const double slant = std::hypot(radius, height);
  addRevolution(builder,
                {{radius, 0, height / slant, radius / slant, 0}, {0, height, height / slant, radius / slant, 1}},
                segments);
  addDisc(builder, radius, 0, -1, segments);
  return builder.make();
}

osg::ref_ptr<osg::Geometry> makePlane(double halfSize, unsigned int divisions) {
  Builder builder;
  const unsigned int side = divisions + 1;
  for (unsigned int row = 0; row < side; ++row) {
    for (unsigned int column = 0; column < side; ++column) {
      const double x = (2.0 * column / divisions - 1) * halfSize;
      const double y = (2.0 * row / divisions - 1) * halfSize;
      builder.vertex(osg::Vec3d(x, y, 0), osg::Vec3d(0, 0, 1), double(column) / divisions, double(row) / divisions);
    }
  }
  for (unsigned int row = 0; row < divisions; ++row) {
    for (unsigned int column = 0; column < divisions; ++column) {
      const unsigned int corner = row * side + column;
      builder.quad(corner, corner + 1, corner + side + 1, corner + side);
    }
  }
  return builder.make();
}

osg::ref_ptr<osg::Geometry> makeHeightField(size_t columns, size_t rows, double sizeX, double sizeY,
                                            const std::vector<double>& heights) {
  Builder builder;
  const double dx = sizeX / double(columns - 1);
  const double dy = sizeY / double(rows - 1);
  auto height = [&](size_t column, size_t row) { return heights[row * columns + column]; };
  for (size_t row = 0; row < rows; ++row) {
    for (size_t column = 0; column < columns; ++column) {
      const size_t left = column > 0 ? column - 1 : 0;
      const size_t right = std::min(column + 1, columns - 1);
      const size_t below = row > 0 ? row - 1 : 0;
      const size_t above = std::min(row + 1, rows - 1);
      osg::Vec3d normal(-(height(right, row) - height(left, row)) / (double(right - left) * dx),
                        -(height(column, above) - height(column, below)) / (double(above - below) * dy), 1);
      normal.normalize();
      const double u = double(column) / double(columns - 1);
      const double v = double(row) / double(rows - 1);
      builder.vertex(osg::Vec3d((u - 0.5) * sizeX, (v - 0.5) * sizeY, height(column, row)), normal, u, v);
    }
  }
  for (size_t row = 0; row + 1 < rows; ++row) {
    for (size_t column = 0; column + 1 < columns; ++column) {
      const unsigned int corner = static_cast<unsigned int>(row * columns + column);
      const unsigned int up = static_cast<unsigned int>(columns);
      // The same diagonal as the collision shape's, so that nothing sinks into the drawing or floats over it.
      builder.triangle(corner, corner + 1, corner + up);
      builder.triangle(corner + 1, corner + up + 1, corner + up);
    }
  }
  return builder.make();
}

osg::ref_ptr<osg::Geometry> makeTrimesh(const std::vector<osg::Vec3d>& vertices, const std::vector<uint32_t>& indices) {
  const size_t triangleCount = indices.size() / 3;
  std::vector<osg::Vec3d> areaNormals(triangleCount);
  std::vector<osg::Vec3d> faceNormals(triangleCount);
  std::vector<std::vector<uint32_t>> facesOf(vertices.size());
  osg::BoundingBoxd bounds;
  for (size_t t = 0; t < triangleCount; ++t) {
    const osg::Vec3d& a = vertices[indices[3 * t]];
    areaNormals[t] = (vertices[indices[3 * t + 1]] - a) ^ (vertices[indices[3 * t + 2]] - a);
    faceNormals[t] = areaNormals[t];
    faceNormals[t].normalize();
    for (int i = 0; i < 3; ++i) {
      facesOf[indices[3 * t + i]].push_back(static_cast<uint32_t>(t));
      bounds.expandBy(vertices[indices[3 * t + i]]);
    }
  }

  constexpr double kSharpCosine = 0.766;
  const osg::Vec3d extent = bounds._max - bounds._min;
  Builder builder;
  std::vector<std::vector<std::pair<osg::Vec3, unsigned int>>> made(vertices.size());
  for (size_t t = 0; t < triangleCount; ++t) {
    unsigned int corner[3];
    for (int i = 0; i < 3; ++i) {
      const uint32_t index = indices[3 * t + i];
      osg::Vec3d normal;
      for (uint32_t other : facesOf[index]) {
        if (faceNormals[other] * faceNormals[t] > kSharpCosine)
          normal += areaNormals[other];
      }
      if (normal.normalize() == 0)
        normal = faceNormals[t].length2() > 0 ? faceNormals[t] : osg::Vec3d(0, 0, 1);
      const osg::Vec3 rounded(normal);
      auto& known = made[index];
      auto found = std::find_if(known.begin(), known.end(),
                                [&](const auto& entry) { return (entry.first - rounded).length2() < 1e-6f; });
      if (found == known.end()) {
        const osg::Vec3d local = vertices[index] - bounds._min;
        const double u = extent.x() > 0 ? local.x() / extent.x() : 0;
        const double v = extent.y() > 0 ? local.y() / extent.y() : 0;
        known.emplace_back(rounded, builder.vertex(vertices[index], normal, u, v));
        found = known.end() - 1;
      }
      corner[i] = found->second;
    }
    builder.triangle(corner[0], corner[1], corner[2]);
  }
  return builder.make();
}

} // namespace vyrOSG::mesh
