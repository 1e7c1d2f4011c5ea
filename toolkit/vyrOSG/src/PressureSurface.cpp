// A shape's surface as triangles, and their layout in a texture.
#include "PressureSurface.h"

#include "ShapeNode.h"

#include <vyrCollide/HeightField.h>
#include <vyrCollide/Trimesh.h>
#include <vyrOSG/Conversions.h>

#include <osg/TriangleIndexFunctor>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <utility>

namespace vyrOSG {

namespace {

constexpr unsigned int kLargestTexture = 2048;
constexpr double kSharpCosine = 0.766;

struct IndexCollector {
  void operator()(unsigned int a, unsigned int b, unsigned int c) {
    for (unsigned int index : {a, b, c})
      indices.push_back(index);
  }
  std::vector<unsigned int> indices;
};

vyr::Vec3 areaNormal(const vyr::Vec3& a, const vyr::Vec3& b, const vyr::Vec3& c) {
  return (b - a) ^ (c - a);
}

/// Which of the six axis directions a normal is nearest to: 0, 1 for x, 2, 3 for y, 4, 5 for z.
int mainDirection(const vyr::Vec3& normal) {
  int axis = 0;
  for (int i = 1; i < 3; ++i) {
    // A little more than the axis before: equal parts must not flip by rounding.
    if (std::abs(normal[static_cast<size_t>(i)]) > std::abs(normal[static_cast<size_t>(axis)]) * 1.0001)
      axis = i;
  }
  return 2 * axis + (normal[static_cast<size_t>(axis)] < 0 ? 1 : 0);
}

/// Sets that grow together.
class UnionFind {
public:
  explicit UnionFind(size_t count)
      : m_parents(count) {
    std::iota(m_parents.begin(), m_parents.end(), size_t(0));
  }
  size_t find(size_t i) {
    while (m_parents[i] != i) {
      m_parents[i] = m_parents[m_parents[i]];
      i = m_parents[i];
    }
    return i;
  }
  void join(size_t a, size_t b) { m_parents[find(a)] = find(b); }

private:
  std::vector<size_t> m_parents;
};

} // namespace

PressureSurface::PressureSurface(const vyrCollide::Shape* shape) {
  read(shape);
  makeCharts();
}

void PressureSurface::read(const vyrCollide::Shape* shape) {
  m_vertices.clear();
  m_indices.clear();
  if (!shape || !shape->isValid() || shape->getType() == vyrCollide::Shape::PLANE)
    return;
  if (shape->getType() == vyrCollide::Shape::TRIMESH) {
    const auto* mesh = static_cast<const vyrCollide::Trimesh*>(shape);
    m_vertices = mesh->getVertices();
    m_indices = mesh->getIndices();
  } else if (shape->getType() == vyrCollide::Shape::HEIGHT_FIELD) {
    const auto* field = static_cast<const vyrCollide::HeightField*>(shape);
    const size_t columns = field->getNumColumns();
    for (size_t row = 0; row < field->getNumRows(); ++row) {
      for (size_t column = 0; column < columns; ++column) {
        m_vertices.push_back(field->getVertex(column, row));
        if (row + 1 == field->getNumRows() || column + 1 == columns)
          continue;
        const auto corner = static_cast<unsigned int>(row * columns + column);
        const auto up = static_cast<unsigned int>(columns);
        for (unsigned int index : {corner, corner + 1, corner + up, corner + 1, corner + up + 1, corner + up})
          m_indices.push_back(index);
      }
    }
  } else {
    readDrawing(shape);
  }
}

void PressureSurface::readDrawing(const vyrCollide::Shape* shape) {
  const osg::ref_ptr<osg::Geode> geode = makeShapeNode(shape, 0.5f);
  const osg::Geometry* drawing = geode && geode->getNumDrawables() > 0 ? geode->getDrawable(0)->asGeometry() : nullptr;
  if (!drawing)
    return;
  const auto& places = *static_cast<const osg::Vec3Array*>(drawing->getVertexArray());
  osg::TriangleIndexFunctor<IndexCollector> collector;
  drawing->accept(collector);
  // Drawings have a vertex for each normal; the surface needs one for each place.
  std::map<std::array<long, 3>, unsigned int> known;
  std::vector<unsigned int> welded;
  for (const osg::Vec3& place : places) {
    const std::array<long, 3> key = {std::lround(place.x() * 1e5), std::lround(place.y() * 1e5),
                                     std::lround(place.z() * 1e5)};
    const auto [entry, isNew] = known.emplace(key, static_cast<unsigned int>(m_vertices.size()));
    if (isNew)
      m_vertices.push_back(toVyr(osg::Vec3d(place)));
    welded.push_back(entry->second);
  }
  for (size_t i = 0; i + 2 < collector.indices.size(); i += 3) {
    const unsigned int corners[] = {welded[collector.indices[i]], welded[collector.indices[i + 1]],
                                    welded[collector.indices[i + 2]]};
    if (corners[0] != corners[1] && corners[1] != corners[2] && corners[2] != corners[0])
      m_indices.insert(m_indices.end(), std::begin(corners), std::end(corners));
  }
}

void PressureSurface::makeCharts() {
  const size_t count = getNumTriangles();
  std::vector<int> directions(count);
  UnionFind sets(count);
  std::map<std::pair<unsigned int, unsigned int>, std::vector<size_t>> trianglesOfEdge;
  for (size_t t = 0; t < count; ++t) {
    directions[t] = mainDirection(areaNormal(getCorner(t, 0), getCorner(t, 1), getCorner(t, 2)));
    for (size_t i = 0; i < 3; ++i) {
      auto& neighbours = trianglesOfEdge[std::minmax(m_indices[3 * t + i], m_indices[3 * t + (i + 1) % 3])];
      for (size_t other : neighbours) {
        if (directions[other] == directions[t])
          sets.join(other, t);
      }
      neighbours.push_back(t);
    }
  }
  std::map<size_t, size_t> chartOfSet;
  m_chartOf.resize(count);
  for (size_t t = 0; t < count; ++t) {
    const auto [entry, isNew] = chartOfSet.emplace(sets.find(t), m_charts.size());
    if (isNew) {
      const int axis = directions[t] / 2;
      m_charts.push_back({{(axis + 1) % 3, (axis + 2) % 3}, {1e300, 1e300}, {-1e300, -1e300}, 0, 0, 0, 0});
    }
    m_chartOf[t] = entry->second;
    Chart& chart = m_charts[entry->second];
    for (int corner = 0; corner < 3; ++corner) {
      for (size_t k = 0; k < 2; ++k) {
        const double value = getCorner(t, corner)[static_cast<size_t>(chart.axes[k])];
        chart.low[k] = std::min(chart.low[k], value);
        chart.high[k] = std::max(chart.high[k], value);
      }
    }
  }
}

bool PressureSurface::pack(double resolution) {
  double total = 0;
  double widest = 0;
  for (Chart& chart : m_charts) {
    const double columns = std::max(1.0, std::ceil((chart.high[0] - chart.low[0]) * resolution - 1e-6));
    const double rows = std::max(1.0, std::ceil((chart.high[1] - chart.low[1]) * resolution - 1e-6));
    if (!(columns + 2 <= kLargestTexture && rows + 2 <= kLargestTexture))
      return false;
    chart.columns = static_cast<unsigned int>(columns);
    chart.rows = static_cast<unsigned int>(rows);
    total += (columns + 2) * (rows + 2);
    widest = std::max(widest, columns + 2);
  }
  // Shelves, the highest charts first.
  const double wanted = std::max(widest, std::ceil(std::sqrt(total) * 1.05));
  if (!(wanted <= kLargestTexture))
    return false;
  m_width = static_cast<unsigned int>(wanted);
  std::vector<Chart*> order;
  for (Chart& chart : m_charts)
    order.push_back(&chart);
  std::stable_sort(order.begin(), order.end(), [](const Chart* a, const Chart* b) { return a->rows > b->rows; });
  unsigned int x = 0;
  unsigned int y = 0;
  unsigned int shelf = 0;
  for (Chart* chart : order) {
    if (x + chart->columns + 2 > m_width) {
      x = 0;
      y += shelf;
      shelf = 0;
    }
    chart->x = x;
    chart->y = y;
    x += chart->columns + 2;
    shelf = std::max(shelf, chart->rows + 2);
  }
  m_height = y + shelf;
  return m_height <= kLargestTexture;
}

std::array<double, 2> PressureSurface::toCells(const Chart& chart, const vyr::Vec3& place, double resolution) const {
  return {chart.x + 1 + (place[static_cast<size_t>(chart.axes[0])] - chart.low[0]) * resolution,
          chart.y + 1 + (place[static_cast<size_t>(chart.axes[1])] - chart.low[1]) * resolution};
}

bool PressureSurface::follow(const vyrCollide::Shape* shape) {
  PressureSurface now(nullptr);
  now.read(shape);
  if (now.m_indices != m_indices)
    return false;
  m_vertices.swap(now.m_vertices);
  return true;
}

osg::ref_ptr<osg::Geometry> PressureSurface::createMesh(double resolution) const {
  const size_t count = getNumTriangles();
  std::vector<vyr::Vec3> areaNormals(count);
  std::vector<std::vector<size_t>> trianglesOf(m_vertices.size());
  for (size_t t = 0; t < count; ++t) {
    areaNormals[t] = areaNormal(getCorner(t, 0), getCorner(t, 1), getCorner(t, 2));
    for (size_t i = 0; i < 3; ++i)
      trianglesOf[m_indices[3 * t + i]].push_back(t);
  }
  osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
  osg::ref_ptr<osg::Vec3Array> normals = new osg::Vec3Array;
  osg::ref_ptr<osg::Vec2Array> coords = new osg::Vec2Array;
  for (size_t t = 0; t < count; ++t) {
    const vyr::Vec3 own = areaNormals[t].normalized();
    for (int corner = 0; corner < 3; ++corner) {
      vyr::Vec3 normal;
      for (size_t other : trianglesOf[m_indices[3 * t + static_cast<size_t>(corner)]]) {
        if (areaNormals[other].normalized() * own > kSharpCosine)
          normal += areaNormals[other];
      }
      const std::array<double, 2> cells = toCells(getChart(t), getCorner(t, corner), resolution);
      vertices->push_back(osg::Vec3(toOsg(getCorner(t, corner))));
      normals->push_back(osg::Vec3(toOsg(normal.normalized())));
      coords->push_back(osg::Vec2(float(cells[0] / m_width), float(cells[1] / m_height)));
    }
  }
  osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
  geometry->setVertexArray(vertices);
  geometry->setNormalArray(normals, osg::Array::BIND_PER_VERTEX);
  geometry->setTexCoordArray(0, coords);
  geometry->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(vertices->size())));
  geometry->setUseDisplayList(false);
  geometry->setUseVertexBufferObjects(true);
  return geometry;
}

} // namespace vyrOSG
