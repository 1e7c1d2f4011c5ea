// Colours geometries by the pressure on them.
#pragma once

#include <vyrOSG/Group.h>
#include <vyrOSG/PressureAtlasManager.h>
#include <vyrOSG/PressureFromContacts.h>
#include <vyrOSG/SceneDecorator.h>
#include <vyrOSG/export.h>

#include <vyr/ByteAllocator.h>
#include <vyr/Referenced.h>
#include <vyr/Vec2.h>
#include <vyr/Vec4.h>
#include <vyr/Vector.h>
#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Trimesh.h>
#include <vyrRender/Color.h>
#include <vyrSDK/ExecuteFilter.h>
#include <vyrSDK/Simulation.h>

#include <osg/observer_ptr>
#include <osg/ref_ptr>
#include <osgSim/ColorRange>

#include <cstddef>
#include <memory>
#include <vector>

namespace vyrOSG {

class PressureLegend;
class PressureOverlay;
class PressureRecording;

/// Shows the contact pressure on the geometries that were added, after each step of the simulation, which keeps the
/// renderer alive. Geometries that have gone are dropped.
class VYROSG_EXPORT PressureRenderer : public vyr::Referenced {
public:
  /// @param group (*observes*) below which the coloured surfaces go. @param decorator (*observes*) whose heads-up
  /// display gets the legend. @param minPressure,maxPressure ends of the colour scale in Pa. @param colors from the
  /// lower to the upper end. @param resolution texels a metre. @param rangeFactor,forceType as `PressureFromContacts`.
  /// Nullable: group (nothing can be added), decorator (no legend), simulation (no pressure). A range that is empty or
  /// not finite, or no colours: one error message, and 0 to 10 kPa, or blue to red.
  PressureRenderer(vyrOSG::Group* group, vyrOSG::SceneDecorator* decorator, vyrSDK::Simulation* simulation,
                   double minPressure, double maxPressure,
                   const vyr::Vector<vyrRender::Color, vyr::ByteAllocator>& colors, double resolution = 50,
                   double rangeFactor = 2e-5,
                   PressureFromContacts::ForceType forceType = PressureFromContacts::TOTAL_FORCE);

  /// Adds every geometry of the simulation that has this shape. False when there is none that can be added.
  bool addTrimesh(vyrCollide::Trimesh* mesh, bool replaceVisual = true);

  /// Adds a geometry. @param replaceVisual hides the geometry's own visual; else the colours lie over it and are clear
  /// where nothing presses. Nullable: geometry. False for null, one that was added before, and one that has no surface
  /// to colour (with one error message).
  bool addGeometry(vyrCollide::Geometry* geometry, bool replaceVisual = true);

  /// Starts to record maximum and mean of all pressures. False when a recording runs.
  bool startMaxAvgRecording();

  /// Ends the recording and gives its index, from 0. Without a recording: one error message, and the largest index,
  /// which no recording has.
  unsigned int stopMaxAvgRecording();
  bool isRecording();
  /// Recordings that have ended.
  unsigned int getNumRecordings();

  /// Shows the maximum (or mean) of a recording, in place of the pressure of now. False, with one error message and the
  /// picture as it was, for an index that there is not.
  bool renderMaxPressure(unsigned long index);
  bool renderAvgPressure(unsigned long index);

  /// Shows the pressure of now again. False when it is shown already.
  bool restoreRendering();

  /// Default: enabled.
  void setEnableLegend(bool enable);

  /// Lower left corner of the legend in pixels of the decorator. A position that is not finite is refused with one
  /// error message.
  vyr::Vec2 getLegendPosition() const;
  void setLegendPosition(const vyr::Vec2& position);

  /// Range (Pa) and colours, to be read and changed (*returns inner*). Never null.
  osgSim::ColorRange* getColorRange() { return m_colorRange.get(); }

  /// The atlases of the geometries (*returns inner*). Never null.
  PressureAtlasManager* getPressureAtlasManager() { return m_atlases.get(); }

  /// Adds a filter (*retains*) as `PressureFromContacts`, for all geometries, also for those that are added later.
  /// Nullable: nothing happens.
  void addFilter(vyrSDK::ExecuteFilter* filter);

  /// Shows and records the pressures of now; called after each step.
  void update();

  /// Colour shown at a texel of a geometry; clear black for what was not added and outside.
  vyr::Vec4 getShownColor(const vyrCollide::Geometry* geometry, std::size_t texel) const;

protected:
  ~PressureRenderer() override;

private:
  enum Mode { NOW, MAX, AVG };

  /// A geometry's colours and what makes its pressures.
  struct Entry {
    std::unique_ptr<PressureOverlay> overlay;
    vyr::ref_ptr<PressureFromContacts> generator;
    std::size_t number = 0; ///< in recordings
  };

  bool renderRecording(unsigned long index, Mode mode);
  void dropGone();
  void show();

  osg::observer_ptr<vyrOSG::Group> m_group;
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
  osg::ref_ptr<osgSim::ColorRange> m_colorRange;
  vyr::ref_ptr<PressureAtlasManager> m_atlases;
  std::unique_ptr<PressureLegend> m_legend;
  std::vector<Entry> m_entries;
  std::size_t m_nextNumber = 0;
  std::vector<vyr::ref_ptr<vyrSDK::ExecuteFilter>> m_filters;
  double m_rangeFactor;
  PressureFromContacts::ForceType m_forceType;
  std::unique_ptr<PressureRecording> m_recording;
  std::vector<std::unique_ptr<PressureRecording>> m_recordings;
  Mode m_mode = NOW;
  std::size_t m_shownRecording = 0;
};

} // namespace vyrOSG
