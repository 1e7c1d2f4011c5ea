/// Draws a curve as a round tube.
#pragma once

#include <vyr/Vec4.h>
#include <vyr/VectorPOD.h>
#include <vyr/ref_ptr.h>
#include <vyrOSG/export.h>
#include <vyrSDK/StepEventListener.h>
#include <vyrUtil/Spline.h>

#include <osg/Geode>
#include <osg/Group>
#include <osg/observer_ptr>
#include <osg/ref_ptr>

namespace vyrOSG {

/// Draws a spline as a tube under a group. Added to a simulation it follows the spline after every step; without one,
/// `update` shows what was changed. The drawing leaves the group with the renderer.
class VYROSG_EXPORT SplineRenderer : public vyrSDK::StepEventListener {
public:
  /// Nullable: spline (*retains*; nothing is drawn) and parent (*observes*; nothing is drawn).
  SplineRenderer(vyrUtil::Spline* spline, osg::Group* parent);

  /// Draws the spline as it is now, in the renderer's colour.
  virtual void update();
  /// Draws the spline with one value a control point shown as a colour: blue at the smallest value over green to red
  /// at the largest. Values that are missing at the end count as the last one; no values draw in the renderer's colour.
  virtual void update(const vyr::RealVector& values);

  /// The curve (*retains*). Nullable: nothing is drawn from the next update on.
  void setSplineModel(vyrUtil::Spline* spline) { m_spline = spline; }
  vyrUtil::Spline* getSplineModel() { return m_spline.get(); }

  /// Radius of the tube in m; default 0.02. Taken over at the next update; a tube without a positive radius is not
  /// drawn.
  void setRadius(double radius) { m_radius = radius; }
  double getRadius() const { return m_radius; }

  /// Samples along a metre of the curve; default 10. Taken over at the next update; a density that is not above 0
  /// draws straight pieces between the control points.
  void setNumSegmentsPerUnitLength(double density) { m_segmentsPerUnitLength = density; }
  double getNumSegmentsPerUnitLength() const { return m_segmentsPerUnitLength; }

  /// Colour of the tube, red, green, blue, opacity; taken over at once. Numbers that are not finite are refused with
  /// one error message.
  void setColor(const vyr::Vec4& color);
  vyr::Vec4 getColor() const { return m_color; }

  void last(const vyr::TimeStamp& time) override;

protected:
  ~SplineRenderer() override;

private:
  vyr::ref_ptr<vyrUtil::Spline> m_spline;
  double m_radius = 0.02;
  double m_segmentsPerUnitLength = 10;
  vyr::Vec4 m_color;
  osg::observer_ptr<osg::Group> m_parent;
  osg::ref_ptr<osg::Geode> m_geode;
};

} // namespace vyrOSG
