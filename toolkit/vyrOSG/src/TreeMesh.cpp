// The drawables of a tree.
#include "TreeMesh.h"

#include "TreeTextures.h"

#include <vyr/Random.h>
#include <vyrOSG/Conversions.h>

#include <osg/AlphaFunc>
#include <osg/CullFace>
#include <osg/Material>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

constexpr double kPi = 3.14159265358979323846;
/// Length of limb that one picture of bark covers, in m.
constexpr double kBarkLength = 0.9;
const size_t kNone = static_cast<size_t>(-1);

/// A body's place in single precision, laid out for many vertices.
struct Place {
  osg::Vec3 x, y, z, origin;

  explicit Place(const vyr::AffineMatrix4x4& m)
      : x(float(m(0, 0)), float(m(0, 1)), float(m(0, 2)))
      , y(float(m(1, 0)), float(m(1, 1)), float(m(1, 2)))
      , z(float(m(2, 0)), float(m(2, 1)), float(m(2, 2)))
      , origin(float(m(3, 0)), float(m(3, 1)), float(m(3, 2))) {}

  osg::Vec3 direction(const osg::Vec3& v) const { return x * v.x() + y * v.y() + z * v.z(); }
  osg::Vec3 point(const osg::Vec3& v) const { return direction(v) + origin; }
};

/// Places of the pieces, and after them those of the leaves that are bodies.
std::vector<Place> placesOf(const vyrModel::Tree& tree) {
  std::vector<Place> places;
  places.reserve(tree.getNumBranches() + tree.getNumLeafBodies());
  for (const vyrModel::TreeBranch& branch : tree.getBranches())
    places.emplace_back(branch.body->getTransform());
  for (const vyrModel::TreeLeafBody& leaves : tree.getLeafBodies())
    places.emplace_back(leaves.body->getTransform());
  return places;
}

size_t placeOf(const vyrModel::Tree& tree, const vyrModel::TreeLeaf& leaf) {
  return leaf.body < 0 ? leaf.branch : tree.getNumBranches() + static_cast<size_t>(leaf.body);
}

/// From the frame of a piece to that of its parent while the tree is at rest.
vyr::AffineMatrix4x4 restInParent(const vyrModel::TreeBranch& branch) {
  return branch.joint->getFrame1()->getLocalTransform().inverse() * branch.joint->getFrame2()->getLocalTransform();
}

/// The piece that goes on with the same limb; kNone at its end or where it broke.
size_t nextOf(const vyrModel::Tree& tree, size_t index) {
  const size_t next = index + 1;
  if (next >= tree.getNumBranches())
    return kNone;
  const vyrModel::TreeBranch& branch = tree.getBranches()[next];
  return branch.continues && !branch.broken && branch.parent == static_cast<int>(index) ? next : kNone;
}

osg::ref_ptr<osg::Geometry> makeDrawable() {
  osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
  geometry->setDataVariance(osg::Object::DYNAMIC);
  geometry->setUseDisplayList(false);
  geometry->setUseVertexBufferObjects(true);
  return geometry;
}

osg::ref_ptr<osg::Material> mattMaterial(const osg::Vec4& color) {
  osg::ref_ptr<osg::Material> material = new osg::Material;
  material->setDiffuse(osg::Material::FRONT_AND_BACK, color);
  material->setAmbient(osg::Material::FRONT_AND_BACK, color);
  material->setSpecular(osg::Material::FRONT_AND_BACK, osg::Vec4(0, 0, 0, 1));
  return material;
}

/// One circle of a piece, given before the tree moves.
struct Ring {
  double height; ///< along z of the piece, in m
  double radius;
};

/// Circles of a piece: a foot that swells into what it grows out of, and a tip that closes.
std::vector<Ring> ringsOf(const vyrModel::Tree& tree, size_t index, bool goesOn) {
  const vyrModel::TreeBranch& branch = tree.getBranches()[index];
  auto radiusAt = [&branch](double height) {
    return branch.radiusBegin + (branch.radiusEnd - branch.radiusBegin) * height / branch.length;
  };
  std::vector<Ring> rings;
  double begin = 0;
  if (branch.broken) {
    rings.push_back({0, 0});
    rings.push_back({0, radiusAt(0)});
  } else if (branch.parent < 0) {
    const double flare[] = {1.75, 1.4, 1.18, 1.05};
    for (int i = 0; i < 4; ++i) {
      begin = std::min(0.9 * i * branch.radiusBegin, 0.2 * i * branch.length);
      rings.push_back({begin, flare[i] * radiusAt(begin)});
    }
  } else if (!branch.continues) {
    const vyrModel::TreeBranch& parent = tree.getBranches()[static_cast<size_t>(branch.parent)];
    const double inside = parent.radiusBegin + (parent.radiusEnd - parent.radiusBegin) * branch.offset / parent.length;
    const double collar[][2] = {{0.55, 1.7}, {1.05, 1.35}, {1.6, 1.1}};
    for (const auto& step : collar) {
      begin = std::min(step[0] * inside, 0.4 * branch.length);
      rings.push_back({begin, std::min(step[1] * radiusAt(begin), 0.9 * inside)});
    }
  }
  const int count = branch.level < 2 ? 6 : 3;
  const bool joined = !rings.empty() && !branch.broken;
  for (int i = joined ? 1 : 0; i <= count; ++i) {
    const double height = begin + (branch.length - begin) * i / count;
    rings.push_back({height, radiusAt(height)});
  }
  if (!goesOn)
    rings.push_back({branch.length, 0});
  return rings;
}

unsigned int sidesOf(int level) {
  static const unsigned int s_sides[] = {16, 10, 7, 5};
  return s_sides[std::clamp(level, 0, 3)];
}

} // namespace

TreeMesh::TreeMesh(const vyrModel::Tree& tree)
    : m_bark(makeDrawable())
    , m_leaves(makeDrawable())
    , m_barkCoords(new osg::Vec2Array)
    , m_barkTriangles(new osg::DrawElementsUInt(GL_TRIANGLES))
    , m_leafColor(1, 1, 1, 1) {
  makeBark(tree);
  makeLeaves(tree);
  addDrawable(m_bark);
  addDrawable(m_leaves);
  follow(tree, 0);
}

void TreeMesh::makeBark(const vyrModel::Tree& tree) {
  double barkLength = 0;
  for (size_t i = 0; i < tree.getNumBranches(); ++i) {
    const vyrModel::TreeBranch& branch = tree.getBranches()[i];
    barkLength = branch.continues ? barkLength : 0;
    addPiece(tree, i, nextOf(tree, i), barkLength);
    barkLength += branch.length;
  }
  m_bark->setVertexArray(new osg::Vec3Array(static_cast<unsigned int>(m_barkVertices.size())));
  m_bark->setNormalArray(new osg::Vec3Array(static_cast<unsigned int>(m_barkVertices.size())),
                         osg::Array::BIND_PER_VERTEX);
  m_bark->setTexCoordArray(0, m_barkCoords);
  m_bark->addPrimitiveSet(m_barkTriangles);
  osg::StateSet* stateSet = m_bark->getOrCreateStateSet();
  stateSet->setTextureAttributeAndModes(0, barkTexture());
  stateSet->setAttributeAndModes(mattMaterial(osg::Vec4(0.46f, 0.36f, 0.28f, 1)));
}

void TreeMesh::addPiece(const vyrModel::Tree& tree, size_t index, size_t next, double barkLength) {
  const vyrModel::TreeBranch& branch = tree.getBranches()[index];
  const bool goesOn = next != kNone;
  const bool cameFrom = branch.continues && !branch.broken;
  const vyr::AffineMatrix4x4 toNext =
      goesOn ? restInParent(tree.getBranches()[next]).inverse() : vyr::AffineMatrix4x4();
  const vyr::AffineMatrix4x4 toLast = cameFrom ? restInParent(branch) : vyr::AffineMatrix4x4();
  const unsigned int sides = sidesOf(branch.level);
  const double wraps = std::max(1.0, std::round(2 * kPi * branch.radiusBegin / 0.55));
  const std::vector<Ring> rings = ringsOf(tree, index, goesOn);
  const auto first = static_cast<unsigned int>(m_barkVertices.size());
  for (const Ring& ring : rings) {
    // Around a joint both neighbours move the bark, half and half at the joint itself.
    const double t = ring.height / branch.length;
    const bool nearNext = goesOn && t > 0.6;
    const bool nearLast = cameFrom && t < 0.4;
    const double share = nearNext ? 0.5 * (t - 0.6) / 0.4 : nearLast ? 0.5 * (0.4 - t) / 0.4 : 0.0;
    const vyr::AffineMatrix4x4& other = nearNext ? toNext : toLast;
    for (unsigned int side = 0; side <= sides; ++side) {
      const double angle = 2 * kPi * (side % sides) / sides;
      const vyr::Vec3 out(std::cos(angle), std::sin(angle), 0);
      // Roots show as ribs at the foot of the trunk.
      const double ribs = branch.parent < 0 ? std::max(0.0, 1 - 3 * t) * 0.16 * std::sin(5 * angle) : 0.0;
      const vyr::Vec3 place = out * (ring.radius * (1 + ribs)) + vyr::Vec3(0, 0, ring.height);
      BarkVertex vertex;
      vertex.branch = static_cast<unsigned int>(index);
      vertex.next = static_cast<unsigned int>(nearNext ? next : nearLast ? static_cast<size_t>(branch.parent) : index);
      vertex.share = float(share);
      vertex.place = osg::Vec3(toOsg(place));
      vertex.nextPlace = osg::Vec3(toOsg(place * other));
      vertex.normal = osg::Vec3(toOsg(out));
      vertex.nextNormal = osg::Vec3(toOsg(other.transform3x3(out)));
      m_barkVertices.push_back(vertex);
      m_barkCoords->push_back(osg::Vec2(float(wraps * side / sides), float((barkLength + ring.height) / kBarkLength)));
    }
  }
  for (unsigned int ring = 0; ring + 1 < rings.size(); ++ring) {
    for (unsigned int side = 0; side < sides; ++side) {
      const unsigned int a = first + ring * (sides + 1) + side;
      const unsigned int b = a + sides + 1;
      for (unsigned int corner : {a, a + 1, b + 1, a, b + 1, b})
        m_barkTriangles->push_back(corner);
    }
  }
}

void TreeMesh::makeLeaves(const vyrModel::Tree& tree) {
  const auto count = static_cast<unsigned int>(tree.getNumLeaves());
  osg::ref_ptr<osg::Vec2Array> coords = new osg::Vec2Array;
  osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array(4 * count);
  osg::ref_ptr<osg::DrawElementsUInt> triangles = new osg::DrawElementsUInt(GL_TRIANGLES);
  for (unsigned int i = 0; i < count; ++i) {
    for (const osg::Vec2& corner : {osg::Vec2(0, 0), osg::Vec2(1, 0), osg::Vec2(1, 1), osg::Vec2(0, 1)})
      coords->push_back(corner);
    for (unsigned int corner : {0u, 1u, 2u, 0u, 2u, 3u})
      triangles->push_back(4 * i + corner);
  }
  m_leaves->setVertexArray(new osg::Vec3Array(4 * count));
  m_leaves->setNormalArray(new osg::Vec3Array(4 * count), osg::Array::BIND_PER_VERTEX);
  m_leaves->setColorArray(colors, osg::Array::BIND_PER_VERTEX);
  m_leaves->setTexCoordArray(0, coords);
  m_leaves->addPrimitiveSet(triangles);
  osg::StateSet* stateSet = m_leaves->getOrCreateStateSet();
  osg::ref_ptr<osg::Material> material = mattMaterial(osg::Vec4(1, 1, 1, 1));
  material->setColorMode(osg::Material::AMBIENT_AND_DIFFUSE);
  stateSet->setAttributeAndModes(material, osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
  stateSet->setTextureAttributeAndModes(0, leafTexture());
  // Tested, not blended: leaves need no sorting.
  stateSet->setAttributeAndModes(new osg::AlphaFunc(osg::AlphaFunc::GREATER, 0.4f));
  stateSet->setMode(GL_CULL_FACE, osg::StateAttribute::OFF);
}

void TreeMesh::setLeafColor(const osg::Vec4& color) {
  m_leafColor = color;
  auto* colors = static_cast<osg::Vec4Array*>(m_leaves->getColorArray());
  const auto* vertices = static_cast<const osg::Vec3Array*>(m_leaves->getVertexArray());
  osg::BoundingBox crown;
  for (const osg::Vec3& vertex : *vertices)
    crown.expandBy(vertex);
  const osg::Vec3 middle = crown.center();
  const osg::Vec3 half = (crown._max - crown._min) * 0.5f;
  // Light shines through leaves: they are never black, not even in the shade.
  auto* material = static_cast<osg::Material*>(m_leaves->getStateSet()->getAttribute(osg::StateAttribute::MATERIAL));
  material->setEmission(osg::Material::FRONT_AND_BACK,
                        osg::Vec4(0.24f * color.r(), 0.24f * color.g(), 0.20f * color.b(), 1));
  vyr::Random random(5);
  for (unsigned int i = 0; i + 3 < vertices->size(); i += 4) {
    // Leaves inside the crown and under it stand in the shade of the others.
    const osg::Vec3 from = (*vertices)[i + 2] - middle;
    const osg::Vec3 relative(from.x() / std::max(half.x(), 1e-3f), from.y() / std::max(half.y(), 1e-3f),
                             from.z() / std::max(half.z(), 1e-3f));
    const double outside = std::min(1.0, double(relative.length()));
    const double light = (0.62 + 0.55 * outside + 0.2 * relative.z()) * random.uniform(0.82, 1.18);
    const double warmth = random.uniform(-0.05, 0.10);
    const osg::Vec4 shade(float(std::clamp(color.r() * (light + 1.6 * warmth), 0.0, 1.0)),
                          float(std::clamp(color.g() * (light + 0.5 * warmth), 0.0, 1.0)),
                          float(std::clamp(color.b() * (light - warmth), 0.0, 1.0)), color.a());
    for (unsigned int corner = 0; corner < 4; ++corner)
      (*colors)[i + corner] = shade;
  }
  colors->dirty();
}

void TreeMesh::follow(const vyrModel::Tree& tree, double time) {
  const std::vector<Place> places = placesOf(tree);
  auto* vertices = static_cast<osg::Vec3Array*>(m_bark->getVertexArray());
  auto* normals = static_cast<osg::Vec3Array*>(m_bark->getNormalArray());
  for (size_t i = 0; i < m_barkVertices.size(); ++i) {
    const BarkVertex& vertex = m_barkVertices[i];
    osg::Vec3 place = places[vertex.branch].point(vertex.place);
    osg::Vec3 normal = places[vertex.branch].direction(vertex.normal);
    if (vertex.share > 0) {
      place = place * (1 - vertex.share) + places[vertex.next].point(vertex.nextPlace) * vertex.share;
      normal = normal * (1 - vertex.share) + places[vertex.next].direction(vertex.nextNormal) * vertex.share;
    }
    (*vertices)[i] = place;
    (*normals)[i] = normal;
  }

  auto* leafVertices = static_cast<osg::Vec3Array*>(m_leaves->getVertexArray());
  auto* leafNormals = static_cast<osg::Vec3Array*>(m_leaves->getNormalArray());
  osg::Vec3 middle;
  for (const vyrModel::TreeLeaf& leaf : tree.getLeaves())
    middle += places[leaf.branch].origin / float(tree.getNumLeaves());
  const double windSpeed = tree.getWind().length();
  const double flutter = 0.35 * windSpeed / (windSpeed + 8);
  for (size_t i = 0; i < tree.getNumLeaves(); ++i) {
    const vyrModel::TreeLeaf& leaf = tree.getLeaves()[i];
    const Place& place = places[placeOf(tree, leaf)];
    const osg::Vec3 foot = place.point(osg::Vec3(toOsg(leaf.position)));
    const osg::Vec3 normal = place.direction(osg::Vec3(toOsg(leaf.normal)));
    const double phase = 2.39996 * double(i);
    const auto lift = float(flutter * std::sin((6 + 0.5 * std::sin(phase)) * time + phase));
    osg::Vec3 along = place.direction(osg::Vec3(toOsg(leaf.direction))) + normal * lift;
    along.normalize();
    const osg::Vec3 across = (along ^ normal) * float(0.5 * leaf.size);
    along *= float(leaf.size);
    osg::Vec3* corner = &(*leafVertices)[4 * i];
    corner[0] = foot - across;
    corner[1] = foot + across;
    corner[2] = foot + across + along;
    corner[3] = foot - across + along;
    // The light falls on the crown as on a ball, with leaves as its grain.
    osg::Vec3 out = foot - middle;
    out.normalize();
    osg::Vec3 lit = out + normal * 0.5f + osg::Vec3(0, 0, 0.6f);
    lit.normalize();
    for (unsigned int k = 0; k < 4; ++k)
      (*leafNormals)[4 * i + k] = lit;
  }
  for (const osg::ref_ptr<osg::Geometry>& geometry : {m_bark, m_leaves}) {
    geometry->getVertexArray()->dirty();
    geometry->getNormalArray()->dirty();
    geometry->dirtyBound();
  }
}

} // namespace vyrOSG
