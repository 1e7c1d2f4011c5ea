/// Prints on the heads-up display that the simulation is paused.
#pragma once

#include <vyr/observer_ptr.h>
#include <vyr/ref_ptr.h>
#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/HudTextManager.h>
#include <vyrOSG/export.h>
#include <vyrSDK/GuiEventListener.h>

namespace vyrOSG {

/// A listener that shows the line "Paused" for as long as the application does not step by itself.
class VYROSG_EXPORT SimulationPausedPrinter : public vyrSDK::GuiEventListener {
public:
  /// Nullable: manager, application; without either nothing is printed. *Retains* the manager, *borrows* the
  /// application through a weak pointer.
  SimulationPausedPrinter(vyrOSG::HudTextManager* manager, vyrOSG::ExampleApplication* application);

  /// Writes or removes the line through the manager.
  virtual void updateHud();

  /// Once a frame: brings the line up to date. The position of the pointer does not matter.
  void update(float x, float y) override;

protected:
  ~SimulationPausedPrinter() override;

private:
  vyr::ref_ptr<HudTextManager> m_manager;
  vyr::ref_ptr<HudTextManager::ReferencedText> m_text;
  vyr::observer_ptr<ExampleApplication> m_application;
};

} // namespace vyrOSG
