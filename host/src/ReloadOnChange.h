// Loads the scene again when its script changes.
#pragma once

#include <vyr/observer_ptr.h>

#include <osgGA/GUIEventHandler>

namespace vyrOSG {
class ExampleApplication;
}

namespace vyrHost {

class LuaSceneLoader;

/// Looks at the script files a few times a second, between frames, where a scene may be replaced.
class ReloadOnChange : public osgGA::GUIEventHandler {
public:
  /// Both are *borrowed*, weakly.
  ReloadOnChange(vyrOSG::ExampleApplication* application, LuaSceneLoader* loader);

  bool handle(const osgGA::GUIEventAdapter& event, osgGA::GUIActionAdapter& action) override;

protected:
  ~ReloadOnChange() override = default;

private:
  vyr::observer_ptr<vyrOSG::ExampleApplication> m_application;
  vyr::observer_ptr<LuaSceneLoader> m_loader;
  double m_nextLook;
};

} // namespace vyrHost
