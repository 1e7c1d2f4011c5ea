/// Draws a simulated wire as a round tube.
#pragma once

#include <vyr/observer_ptr.h>
#include <vyrOSG/SplineRenderer.h>
#include <vyrWire/Wire.h>

namespace vyrOSG {

/// A spline renderer whose curve goes through the wire's nodes. It starts with the wire's radius and a steel grey. A
/// wire that has gone, is null or invalid draws nothing.
class VYROSG_EXPORT WireRenderer : public SplineRenderer {
public:
  /// Nullable: wire (*observes*), parent (*observes*).
  WireRenderer(vyrWire::Wire* wire, osg::Group* parent);

  void update() override;
  void update(const vyr::RealVector& values) override;

  /// *returns inner*. Nullable.
  vyrWire::Wire* getWire() { return m_wire.get(); }

protected:
  ~WireRenderer() override;

private:
  void takeNodes();

  vyr::observer_ptr<vyrWire::Wire> m_wire;
};

} // namespace vyrOSG
