/// Listener for keys, mouse and frames of whatever shows the simulation.
#pragma once

#include <vyr/Referenced.h>
#include <vyrPhysics/export.h>

namespace vyrSDK {

class Simulation;

/// Called by the application for each event of the user, in the order in which the listeners were added, until one of
/// them returns true. Coordinates are in window pixels from the lower left.
class VYRPHYSICS_EXPORT GuiEventListener : public vyr::Referenced {
public:
  GuiEventListener() = default;

  /// A key went down or up. `key`: character code or the window system's symbol; `modifiers`: the window system's mask.
  /// True: the event is used up.
  virtual bool keyboard(int key, unsigned int modifiers, float x, float y, bool down);

  /// A mouse button went down or up. `button`: 1 left, 2 middle, 4 right. True: the event is used up.
  virtual bool mouse(int button, float x, float y, bool down);

  /// The mouse moved. `buttons`: mask of the buttons held. True: the event is used up.
  virtual bool mouseMotion(int buttons, float x, float y);

  /// A frame is about to be drawn, also while the simulation is paused.
  virtual void update(float x, float y);

  /// Called when the listener enters a simulation and when it leaves (with null). *borrows*
  virtual void simulationChanged(Simulation* simulation);

protected:
  ~GuiEventListener() override;
};

} // namespace vyrSDK
