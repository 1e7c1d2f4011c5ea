// Loads the scene again when its script changes.
#include "ReloadOnChange.h"

#include "LuaSceneLoader.h"

#include <vyrOSG/ExampleApplication.h>

namespace vyrHost {

namespace {
constexpr double kInterval = 0.3; // s
}

ReloadOnChange::ReloadOnChange(vyrOSG::ExampleApplication* application, LuaSceneLoader* loader)
    : m_application(application)
    , m_loader(loader)
    , m_nextLook(0) {}

bool ReloadOnChange::handle(const osgGA::GUIEventAdapter& event, osgGA::GUIActionAdapter&) {
  if (event.getEventType() != osgGA::GUIEventAdapter::FRAME || event.getTime() < m_nextLook)
    return false;
  m_nextLook = event.getTime() + kInterval;
  if (m_application.valid() && m_loader.valid() && m_loader->haveScriptsChanged())
    m_application->reloadScene();
  return false;
}

} // namespace vyrHost
