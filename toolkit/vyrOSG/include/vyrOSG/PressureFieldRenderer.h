// Draws the pressure samples of models in the scene graph.
#pragma once

#include <vyrOSG/export.h>

#include <vyrModel/PressureFieldRenderer.h>

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Group>
#include <osg/observer_ptr>
#include <osg/ref_ptr>

namespace vyrOSG {

/// Draws each sample as a needle that stands on the surface: its length and colour, blue over green to red, say the
/// pressure.
class VYROSG_EXPORT PressureFieldRenderer : public vyrModel::PressureFieldRenderer {
public:
  /// @param parent (*observes*) below which the needles go. Nullable: nothing is drawn. @param scale length in m of the
  /// needle of the highest pressure, above 0; otherwise one error message, and 1.
  explicit PressureFieldRenderer(osg::Group* parent, double scale = 1);

  /// Shows a field, of which the highest pressure gives the scale. Samples without pressure and those with numbers that
  /// are not finite are left out.
  void update(const vyrModel::PressureField& field) override;

  /// What is drawn (*returns inner*). Never null.
  osg::Geode* getNode() { return m_geode.get(); }

protected:
  ~PressureFieldRenderer() override;

private:
  osg::observer_ptr<osg::Group> m_parent;
  osg::ref_ptr<osg::Geode> m_geode;
  double m_scale;
};

} // namespace vyrOSG
