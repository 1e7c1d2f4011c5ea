/// Prints the simulation's time on the heads-up display.
#pragma once

#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrOSG/HudTextManager.h>
#include <vyrOSG/export.h>
#include <vyrSDK/GuiEventListener.h>
#include <vyrSDK/Simulation.h>

namespace vyrOSG {

/// A listener that keeps one line, "Time: 1.250 s", on the display: the time of the simulation that it was added to.
class VYROSG_EXPORT SimulationTimePrinter : public vyrSDK::GuiEventListener {
public:
  /// Nullable: manager; without one nothing is printed. *Retains*.
  explicit SimulationTimePrinter(vyrOSG::HudTextManager* manager);

  /// Writes the line through the manager. Before the printer is in a simulation, the simulation of the manager
  /// counts; without either there is no line.
  virtual void updateHud();

  /// Once a frame: writes the line. The position of the pointer does not matter.
  void update(float x, float y) override;
  void simulationChanged(vyrSDK::Simulation* simulation) override;

protected:
  ~SimulationTimePrinter() override;

private:
  vyr::ref_ptr<HudTextManager> m_manager;
  vyr::ref_ptr<HudTextManager::ReferencedText> m_text;
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
};

} // namespace vyrOSG
