// Draws a simulated wire as a round tube.
#include <vyrOSG/WireRenderer.h>

namespace vyrOSG {

WireRenderer::WireRenderer(vyrWire::Wire* wire, osg::Group* parent)
    : SplineRenderer(new vyrUtil::Spline, parent)
    , m_wire(wire) {
  if (wire)
    setRadius(wire->getRadius());
  setColor(vyr::Vec4(0.28, 0.30, 0.33, 1));
  WireRenderer::update();
}

WireRenderer::~WireRenderer() = default;

void WireRenderer::takeNodes() {
  vyrUtil::Spline* spline = getSplineModel();
  if (!spline)
    return;
  const size_t count = m_wire ? m_wire->getNodes().size() : 0;
  if (spline->getNumPoints() != count)
    spline->clear();
  for (size_t i = 0; i < count; ++i) {
    if (i == spline->getNumPoints())
      spline->add(m_wire->getNodes()[i]);
    else
      spline->setPoint(i, m_wire->getNodes()[i]);
  }
}

void WireRenderer::update() {
  takeNodes();
  SplineRenderer::update(vyr::RealVector());
}

void WireRenderer::update(const vyr::RealVector& values) {
  takeNodes();
  SplineRenderer::update(values);
}

} // namespace vyrOSG
