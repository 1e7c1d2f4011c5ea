// Draws the pressure samples of models in the scene graph.
#include <vyrOSG/PressureFieldRenderer.h>

#include "ColorRamp.h"
#include "Surface.h"

#include <vyr/Notify.h>
#include <vyrOSG/Conversions.h>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

/// Width of a needle at its foot over its length.
constexpr double kSlenderness = 0.06;

/// Collects four-sided needles.
class Needles {
public:
  void add(const vyrModel::PressureSample& sample, double length, const osg::Vec4& color) {
    const osg::Vec3d foot = toOsg(sample.position);
    const osg::Vec3d up = toOsg(sample.normal.normalized());
    const osg::Vec3d helper = std::abs(up.z()) < 0.9 ? osg::Vec3d(0, 0, 1) : osg::Vec3d(1, 0, 0);
    osg::Vec3d x = helper ^ up;
    x.normalize();
    const osg::Vec3d y = up ^ x;
    const double width = kSlenderness * length + 1e-4;
    const osg::Vec3d corners[] = {x, y, -x, -y};
    for (int i = 0; i < 4; ++i) {
      const osg::Vec3d& a = corners[i];
      const osg::Vec3d& b = corners[(i + 1) % 4];
      osg::Vec3d normal = a + b;
      normal.normalize();
      for (const osg::Vec3d& place : {foot + a * width, foot + b * width, foot + up * length}) {
        m_vertices->push_back(osg::Vec3(place));
        m_normals->push_back(osg::Vec3(normal));
        m_colors->push_back(color);
      }
    }
  }

  osg::ref_ptr<osg::Geometry> make() const {
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(m_vertices);
    geometry->setNormalArray(m_normals, osg::Array::BIND_PER_VERTEX);
    geometry->setColorArray(m_colors, osg::Array::BIND_PER_VERTEX);
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, GLsizei(m_vertices->size())));
    geometry->setUseDisplayList(false);
    geometry->setUseVertexBufferObjects(true);
    return geometry;
  }

private:
  osg::ref_ptr<osg::Vec3Array> m_vertices{new osg::Vec3Array};
  osg::ref_ptr<osg::Vec3Array> m_normals{new osg::Vec3Array};
  osg::ref_ptr<osg::Vec4Array> m_colors{new osg::Vec4Array};
};

bool isShown(const vyrModel::PressureSample& sample) {
  return sample.pressure > 0 && std::isfinite(sample.pressure) && sample.position.isFinite() &&
         sample.normal.isFinite() && sample.normal.length() > 0;
}

} // namespace

PressureFieldRenderer::PressureFieldRenderer(osg::Group* parent, double scale)
    : m_parent(parent)
    , m_geode(new osg::Geode)
    , m_scale(scale) {
  if (!(scale > 0) || !std::isfinite(scale)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the longest needle of a pressure field must be longer than 0 m, not " << scale;
    m_scale = 1;
  }
  m_geode->setName("pressure field");
  surface::setFixedLook(m_geode.get(), true);
  if (parent)
    parent->addChild(m_geode);
}

PressureFieldRenderer::~PressureFieldRenderer() {
  osg::ref_ptr<osg::Group> parent;
  if (m_parent.lock(parent))
    parent->removeChild(m_geode);
}

void PressureFieldRenderer::update(const vyrModel::PressureField& field) {
  m_geode->removeDrawables(0, m_geode->getNumDrawables());
  double highest = 0;
  for (const vyrModel::PressureSample& sample : field) {
    if (isShown(sample))
      highest = std::max(highest, sample.pressure);
  }
  if (highest <= 0)
    return;
  Needles needles;
  for (const vyrModel::PressureSample& sample : field) {
    if (isShown(sample))
      needles.add(sample, m_scale * sample.pressure / highest, rampColor(sample.pressure / highest));
  }
  m_geode->addDrawable(needles.make());
}

} // namespace vyrOSG
