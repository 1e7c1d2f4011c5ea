// Draws a curve as a round tube.
#include <vyrOSG/SplineRenderer.h>

#include "ColorRamp.h"
#include "Surface.h"
#include "TubeMesh.h"

#include <vyr/Notify.h>
#include <vyrOSG/Conversions.h>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

SplineRenderer::SplineRenderer(vyrUtil::Spline* spline, osg::Group* parent)
    : m_spline(spline)
    , m_color(0.85, 0.45, 0.15, 1)
    , m_parent(parent)
    , m_geode(new osg::Geode) {
  m_geode->setName("SplineRenderer");
  surface::setFixedLook(m_geode, true);
  if (parent)
    parent->addChild(m_geode);
  SplineRenderer::update();
}

SplineRenderer::~SplineRenderer() {
  osg::ref_ptr<osg::Group> parent;
  if (m_parent.lock(parent))
    parent->removeChild(m_geode);
}

void SplineRenderer::update() {
  update(vyr::RealVector());
}

void SplineRenderer::update(const vyr::RealVector& values) {
  m_geode->removeDrawables(0, m_geode->getNumDrawables());
  if (!m_spline)
    return;
  std::vector<double> parameters;
  std::vector<osg::Vec3d> places;
  for (const vyr::Vec3& place : m_spline->sample(m_segmentsPerUnitLength, &parameters))
    places.push_back(toOsg(place));

  std::vector<osg::Vec4> colors;
  if (values.empty()) {
    colors.push_back(toOsg(m_color));
  } else {
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    const double span = *high - *low;
    const auto valueAt = [&values](size_t i) { return values[std::min(i, values.size() - 1)]; };
    for (const double t : parameters) {
      const auto i = static_cast<size_t>(t);
      const double value = valueAt(i) + (valueAt(i + 1) - valueAt(i)) * (t - std::floor(t));
      colors.push_back(rampColor(span > 0 ? (value - *low) / span : 0));
    }
  }
  if (osg::ref_ptr<osg::Geometry> tube = mesh::makeTube(places, m_radius, colors))
    m_geode->addDrawable(tube);
}

void SplineRenderer::setColor(const vyr::Vec4& color) {
  if (!color.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "SplineRenderer: the colour (" << color << ") is not finite and was left out";
    return;
  }
  m_color = color;
  for (unsigned int i = 0; i < m_geode->getNumDrawables(); ++i) {
    auto* colors = static_cast<osg::Vec4Array*>(m_geode->getDrawable(i)->asGeometry()->getColorArray());
    std::fill(colors->begin(), colors->end(), toOsg(color));
    colors->dirty();
  }
  surface::setTransparency(*m_geode->getOrCreateStateSet(), static_cast<float>(color.a()));
}

void SplineRenderer::last(const vyr::TimeStamp&) {
  update();
}

} // namespace vyrOSG
