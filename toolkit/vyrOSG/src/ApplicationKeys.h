// The keys of the viewer and the resizing of its window.
#pragma once

#include <osgGA/GUIEventHandler>

#include <string>
#include <vector>

namespace vyrOSG {

class ExampleApplication;

/// Hands events to the simulation's listeners first, then to the scene keys, then to the viewer's own keys.
class ApplicationKeys : public osgGA::GUIEventHandler {
public:
  /// @param application outlives the handler, which its viewer holds.
  explicit ApplicationKeys(ExampleApplication* application)
      : m_application(application) {}

  bool handle(const osgGA::GUIEventAdapter& event, osgGA::GUIActionAdapter& action) override;

  /// The lines of the help, one a key.
  static std::vector<std::string> getHelp();

private:
  bool handleKey(int key, osgGA::GUIActionAdapter& action);
  bool passOn(const osgGA::GUIEventAdapter& event);

  ExampleApplication* m_application;
};

} // namespace vyrOSG
