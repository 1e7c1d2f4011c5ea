// Copies the particles into vertex arrays and chooses how they are shaded.
#include <vyrOSG/ParticleSystemDrawable.h>

#include "ParticleData.h"
#include "ParticleShader.h"

#include <vyr/Notify.h>
#include <vyr/ParticleSystem.h>

#include <osg/BlendFunc>
#include <osg/Depth>
#include <osg/Material>

#include <algorithm>
#include <array>

namespace vyrOSG {

namespace {

class ParticleCallback : public osg::DrawableUpdateCallback {
public:
  void update(osg::NodeVisitor*, osg::Drawable* drawable) override {
    static_cast<ParticleSystemDrawable*>(drawable)->update();
  }
};

constexpr unsigned int kSpriteCorners = 4;

/// The twelve corners of an icosahedron in the unit sphere: (0, 1, g) and its cyclic changes, g the golden ratio.
const std::array<osg::Vec3, 12>& icosahedronCorners() {
  static const std::array<osg::Vec3, 12> s_corners = [] {
    constexpr float g = 1.618034f;
    std::array<osg::Vec3, 12> corners;
    size_t count = 0;
    for (int axis = 0; axis < 3; ++axis) {
      for (float one : {-1.0f, 1.0f}) {
        for (float golden : {-g, g}) {
          osg::Vec3 corner;
          corner[(axis + 1) % 3] = one;
          corner[(axis + 2) % 3] = golden;
          corner.normalize();
          corners[count++] = corner;
        }
      }
    }
    return corners;
  }();
  return s_corners;
}

/// The twenty triples of neighbouring corners, counter-clockwise as seen from outside.
const std::vector<std::array<unsigned int, 3>>& icosahedronFaces() {
  static const std::vector<std::array<unsigned int, 3>> s_faces = [] {
    const auto& corners = icosahedronCorners();
    // Neighbours are 63.4 degrees apart (cosine 0.447), other corners 116.6 degrees or more.
    auto near = [&](unsigned int a, unsigned int b) { return corners[a] * corners[b] > 0.4f; };
    std::vector<std::array<unsigned int, 3>> faces;
    for (unsigned int a = 0; a < 12; ++a) {
      for (unsigned int b = a + 1; b < 12; ++b) {
        for (unsigned int c = b + 1; c < 12; ++c) {
          if (!near(a, b) || !near(b, c) || !near(c, a))
            continue;
          const bool outward = (corners[a] ^ corners[b]) * corners[c] > 0;
          faces.push_back(outward ? std::array<unsigned int, 3>{a, b, c} : std::array<unsigned int, 3>{a, c, b});
        }
      }
    }
    return faces;
  }();
  return s_faces;
}

} // namespace

ParticleSystemDrawable::ParticleSystemDrawable()
    : ParticleSystemDrawable(nullptr) {}

ParticleSystemDrawable::ParticleSystemDrawable(vyr::ParticleSystem* system, ParticleRenderingMode renderingMode,
                                               ParticleShaderMode shaderMode)
    : m_system(system)
    , m_renderingMode(renderingMode) {
  setDataVariance(osg::Object::DYNAMIC);
  setUseDisplayList(false);
  setUseVertexBufferObjects(true);
  setUpdateCallback(new ParticleCallback);
  createArrays();
  setParticleShaderMode(shaderMode);
  update();
}

ParticleSystemDrawable::~ParticleSystemDrawable() = default;

void ParticleSystemDrawable::createArrays() {
  setVertexArray(new osg::Vec3Array);
  setColorArray(new osg::Vec4Array, osg::Array::BIND_PER_VERTEX);
  if (m_renderingMode == SPRITES) {
    setVertexAttribArray(kSpriteCornerAttribute, new osg::Vec3Array, osg::Array::BIND_PER_VERTEX);
    setVertexAttribArray(kSpriteRotationAttribute, new osg::Vec4Array, osg::Array::BIND_PER_VERTEX);
  } else {
    setNormalArray(new osg::Vec3Array, osg::Array::BIND_PER_VERTEX);
  }
  addPrimitiveSet(new osg::DrawElementsUInt(GL_TRIANGLES));
}

void ParticleSystemDrawable::setParticleShaderMode(ParticleShaderMode mode) {
  if (mode < SIMPLE_SPRITES || mode > ALPHA_SPRITES) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::ParticleSystemDrawable::setParticleShaderMode: " << int(mode)
                                  << " is no shader mode; they run from 0 to " << int(ALPHA_SPRITES);
    return;
  }
  m_shaderMode = mode;
  applyShader();
}

void ParticleSystemDrawable::applyShader() {
  osg::ref_ptr<osg::StateSet> look = new osg::StateSet;
  if (m_renderingMode == TRIANGLES) {
    osg::ref_ptr<osg::Material> material = new osg::Material;
    material->setColorMode(osg::Material::AMBIENT_AND_DIFFUSE);
    look->setAttributeAndModes(material);
  } else {
    look->setAttributeAndModes(spriteProgram());
    if (m_shaderMode == ROTATION_SPRITES)
      look->setDefine("VYR_BANDS");
    if (m_shaderMode == ALPHA_SPRITES) {
      look->setDefine("VYR_PUFF");
      look->setAttributeAndModes(
          new osg::BlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA));
      look->setAttributeAndModes(new osg::Depth(osg::Depth::LESS, 0, 1, false));
      look->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
    }
  }
  setStateSet(look);
}

void ParticleSystemDrawable::update() {
  const std::vector<ParticleData> particles = readParticles(m_system.get());
  auto& places = static_cast<osg::Vec3Array&>(*getVertexArray());
  auto& colors = static_cast<osg::Vec4Array&>(*getColorArray());
  auto& triangles = static_cast<osg::DrawElementsUInt&>(*getPrimitiveSet(0));
  places.clear();
  colors.clear();
  triangles.clear();
  m_largestRadius = 0;
  for (const ParticleData& particle : particles)
    m_largestRadius = std::max(m_largestRadius, particle.radius);

  if (m_renderingMode == SPRITES) {
    auto& corners = static_cast<osg::Vec3Array&>(*getVertexAttribArray(kSpriteCornerAttribute));
    auto& rotations = static_cast<osg::Vec4Array&>(*getVertexAttribArray(kSpriteRotationAttribute));
    corners.clear();
    rotations.clear();
    const float signs[kSpriteCorners][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
    for (const ParticleData& particle : particles) {
      const auto first = static_cast<unsigned int>(places.size());
      for (const auto& sign : signs) {
        places.push_back(particle.place);
        colors.push_back(particle.color);
        corners.push_back(osg::Vec3(sign[0], sign[1], particle.radius));
        rotations.push_back(particle.rotation);
      }
      for (unsigned int corner : {0u, 1u, 2u, 0u, 2u, 3u})
        triangles.push_back(first + corner);
    }
    corners.dirty();
    rotations.dirty();
  } else {
    auto& normals = static_cast<osg::Vec3Array&>(*getNormalArray());
    normals.clear();
    for (const ParticleData& particle : particles) {
      const auto first = static_cast<unsigned int>(places.size());
      const osg::Quat turn(particle.rotation);
      for (const osg::Vec3& corner : icosahedronCorners()) {
        const osg::Vec3 normal = turn * corner;
        places.push_back(particle.place + normal * particle.radius);
        normals.push_back(normal);
        colors.push_back(particle.color);
      }
      for (const auto& face : icosahedronFaces()) {
        for (unsigned int corner : face)
          triangles.push_back(first + corner);
      }
    }
    normals.dirty();
  }
  places.dirty();
  colors.dirty();
  triangles.dirty();
  dirtyBound();
}

osg::BoundingBox ParticleSystemDrawable::computeBoundingBox() const {
  osg::BoundingBox box = osg::Geometry::computeBoundingBox();
  if (box.valid()) {
    const osg::Vec3 margin(m_largestRadius, m_largestRadius, m_largestRadius);
    box._min -= margin;
    box._max += margin;
  }
  return box;
}

} // namespace vyrOSG
