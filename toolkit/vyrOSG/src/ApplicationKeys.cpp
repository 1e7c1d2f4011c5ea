// Maps keys to what the application can do.
#include "ApplicationKeys.h"

#include "ApplicationParts.h"

#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/SceneDecorator.h>

namespace vyrOSG {

namespace {

using Event = osgGA::GUIEventAdapter;

struct KeyAction {
  int key;
  const char* help;
  void (*run)(ExampleApplication& application);
};

const KeyAction kActions[] = {
    {'e', "e  run or pause", [](ExampleApplication& a) { a.setAutoStepping(!a.getAutoStepping()); }},
    {'r', "r  one step",
     [](ExampleApplication& a) {
       a.setAutoStepping(false);
       a.step();
     }},
    {Event::KEY_F5, "F5  reload the scene", [](ExampleApplication& a) { a.reloadScene(); }},
    {Event::KEY_Page_Down, "Page Down  next scene", [](ExampleApplication& a) { a.createNextScene(); }},
    {Event::KEY_Page_Up, "Page Up  previous scene", [](ExampleApplication& a) { a.createPreviousScene(); }},
    {'v', "v  fit the scene into the view", [](ExampleApplication& a) { a.fitSceneIntoView(); }},
    {'c', "c  look at the middle of the scene", [](ExampleApplication& a) { a.centerScene(); }},
    {'g', "g  contacts, forces, frames and bounds",
     [](ExampleApplication& a) { a.setEnableDebugRenderer(!a.getEnableDebugRenderer()); }},
    {'t', "t  names and numbers of them",
     [](ExampleApplication& a) { a.setEnableTextDebugRendering(!a.getEnableTextDebugRendering()); }},
    {'o', "o  visuals on or off", [](ExampleApplication& a) { a.setEnableOSGRenderer(!a.getEnableOSGRenderer()); }},
    {'n', "n  grid", [](ExampleApplication& a) { a.setEnableGrid(!a.getEnableGrid()); }},
    {'a', "a  axes", [](ExampleApplication& a) { a.setEnableCoordinateSystem(!a.getEnableCoordinateSystem()); }},
    {'y', "y  shadows",
     [](ExampleApplication& a) {
       SceneDecorator* decorator = a.getSceneDecorator();
       decorator->setEnableShadows(!decorator->getEnableShadows());
     }},
    {'m', "m  next solver", [](ExampleApplication& a) { a.changeSolver(); }},
    {'p', "p  auto-pause on touch on or off",
     [](ExampleApplication& a) { a.setEnableAutoPausing(!a.getEnableAutoPausing()); }},
    {Event::KEY_F12, "F12  screenshot", [](ExampleApplication& a) { a.takeScreenShot(vyr::String()); }},
    {'x', "x  save the state", [](ExampleApplication& a) { a.saveToFile(a.getSaveSceneFilename()); }},
    {'X', "X  restore the state", [](ExampleApplication& a) { a.restoreFromFile(a.getSaveSceneFilename()); }},
    {Event::KEY_F8, "F8  play the journal back", [](ExampleApplication& a) { a.journalPlayback(); }},
};

} // namespace

std::vector<std::string> ApplicationKeys::getHelp() {
  std::vector<std::string> lines;
  lines.push_back("h  this help");
  for (const KeyAction& action : kActions)
    lines.push_back(action.help);
  lines.push_back("Space  camera home");
  lines.push_back("f  full screen    s  statistics    w  wire frame    Esc  quit");
  return lines;
}

bool ApplicationKeys::handle(const Event& event, osgGA::GUIActionAdapter& action) {
  if (event.getEventType() == Event::RESIZE) {
    m_application->resized(event.getWindowX(), event.getWindowY(), event.getWindowWidth(), event.getWindowHeight());
    return false;
  }
  m_application->m_parts->pointerX = event.getX();
  m_application->m_parts->pointerY = event.getMouseYOrientation() == Event::Y_INCREASING_UPWARDS
                                         ? event.getY()
                                         : static_cast<float>(event.getWindowHeight()) - event.getY();
  if (passOn(event))
    return true;
  return event.getEventType() == Event::KEYDOWN && handleKey(event.getKey(), action);
}

bool ApplicationKeys::passOn(const Event& event) {
  vyrSDK::Simulation* simulation = m_application->getSimulation();
  const float x = m_application->m_parts->pointerX;
  const float y = m_application->m_parts->pointerY;
  switch (event.getEventType()) {
  case Event::KEYDOWN:
  case Event::KEYUP:
    return simulation->keyboard(event.getKey(), static_cast<unsigned>(event.getModKeyMask()), x, y,
                                event.getEventType() == Event::KEYDOWN);
  case Event::PUSH:
  case Event::RELEASE:
    return simulation->mouse(event.getButton(), x, y, event.getEventType() == Event::PUSH);
  case Event::MOVE:
  case Event::DRAG:
    return simulation->mouseMotion(event.getButtonMask(), x, y);
  default:
    return false;
  }
}

bool ApplicationKeys::handleKey(int key, osgGA::GUIActionAdapter& action) {
  if (m_application->hasSceneKey(key)) {
    m_application->createSceneByKey(key);
    action.requestRedraw();
    return true;
  }
  if (key == 'h') {
    m_application->toggleHelp();
    return true;
  }
  for (const KeyAction& entry : kActions) {
    if (entry.key == key) {
      entry.run(*m_application);
      action.requestRedraw();
      return true;
    }
  }
  return false;
}

} // namespace vyrOSG
