// Builds scenes by functions of Lua scripts.
#pragma once

#include "SceneScripts.h"

#include <vyrIO/CFGSceneLoader.h>

#include <osg/observer_ptr>

#include <string>

struct lua_State;

namespace osgViewer {
class Viewer;
}

namespace vyrHost {

/// Loads FILE and calls its function NAME(simulation, application, root).
class LuaSceneLoader : public vyrIO::CFGSceneLoader {
public:
  /// @param state *borrows*: the loader must not be asked after the state closed.
  /// @param mainScript the file of the running script; "" when there is none.
  LuaSceneLoader(lua_State* state, const std::string& mainScript);

  /// Whether a scene is loaded again when its file changes. Default off.
  void setWatching(bool watching) { m_watching = watching; }

  /// Whether the journal that the application was given is played back in each scene. Default off.
  void setPlayingJournal(bool playing) { m_playingJournal = playing; }

  bool loadScene(const std::string& file, const std::string& function, vyrSDK::Simulation* simulation,
                 vyrOSG::ExampleApplication* application, vyrOSG::Group* root, std::string& error) override;

  /// Whether a scene failed that nobody could mend while the program ran: without a window, or in a limited run that
  /// does not watch the files.
  bool hasFailedInBatch() const { return m_failedInBatch; }

  /// Whether a file that a scene came from has changed since.
  bool haveScriptsChanged() const { return m_scripts.haveChanged(); }

protected:
  ~LuaSceneLoader() override;

private:
  bool buildScene(const std::string& file, const std::string& function, vyrSDK::Simulation* simulation,
                  vyrOSG::ExampleApplication* application, vyrOSG::Group* root, std::string& error);
  void watch(vyrOSG::ExampleApplication* application);

  lua_State* m_state;
  SceneScripts m_scripts;
  bool m_watching;
  bool m_playingJournal;
  bool m_failedInBatch;
  osg::observer_ptr<osgViewer::Viewer> m_watchedViewer;
};

} // namespace vyrHost
