/// Listener for keys, mouse and frames.
#include <vyrSDK/GuiEventListener.h>

namespace vyrSDK {

GuiEventListener::~GuiEventListener() = default;

bool GuiEventListener::keyboard(int, unsigned int, float, float, bool) {
  return false;
}

bool GuiEventListener::mouse(int, float, float, bool) {
  return false;
}

bool GuiEventListener::mouseMotion(int, float, float) {
  return false;
}

void GuiEventListener::update(float, float) {}

void GuiEventListener::simulationChanged(Simulation*) {}

} // namespace vyrSDK
