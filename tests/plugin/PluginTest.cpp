// The entry point and the plugin object: versions, requirements, opening order, second calls.
#include "../binding/RegistrationTrace.h"

#include <vyrOSG_modules.h>

#include <vyr/Notify.h>
#include <vyr/observer_ptr.h>
#include <vyrLua/ScriptManager.h>

#include <lua.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

extern "C" void initPlugin(vyrLua::ScriptManager* manager);
extern vyr::ref_ptr<vyrLua::ScriptManager::ScriptPlugin> g_luavyr_vyrosg_plugin;

namespace {

using bindingtest::registrationTrace;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using vyrLua::ScriptManager;

class Messages : public vyr::NotifySink {
public:
  void message(vyr::NotifyLevel level, const std::string& text) override {
    if (level == vyr::NOTIFY_ERROR) {
      errors.push_back(text);
    } else if (level == vyr::NOTIFY_DEBUG) {
      debug.push_back(text);
    }
  }
  std::vector<std::string> errors;
  std::vector<std::string> debug;
};

/// Puts files that are no libraries where the required plugins are looked for first.
class Plugin : public ::testing::Test {
protected:
  Plugin()
      : m_folder(std::filesystem::temp_directory_path() / ("vyrosg-plugin-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(m_folder);
    for (const char* name : {"vyr", "vyrModel"}) {
      std::ofstream(m_folder / (std::string("lib") + name + "_luaplugin.so")) << "no library";
    }
    setenv("VYR_PLUGIN_PATH", m_folder.c_str(), 1);
    vyr::Notify::instance()->setNotifyLevel(vyr::NOTIFY_DEBUG);
    vyr::Notify::instance()->addSink(messages.get());
    manager = ScriptManager::instance(true);
  }
  ~Plugin() override {
    ScriptManager::shutdown();
    g_luavyr_vyrosg_plugin = nullptr;
    vyr::Notify::instance()->removeSink(messages.get());
    vyr::Notify::instance()->setNotifyLevel(vyr::NOTIFY_WARNING);
    std::filesystem::remove_all(m_folder);
  }

  /// The error messages of the plugin itself, without those of the manager.
  std::vector<std::string> ownErrors() const {
    std::vector<std::string> own;
    for (const std::string& text : messages->errors) {
      for (const char* start : {"Plugin version (", "Error loading plugin: "}) {
        const std::size_t at = text.find(start);
        if (at != std::string::npos) {
          own.push_back(text.substr(at));
        }
      }
    }
    return own;
  }

  vyr::ref_ptr<Messages> messages = new Messages;
  ScriptManager* manager;

private:
  std::filesystem::path m_folder;
};

TEST_F(Plugin, ANullManagerIsIgnored) {
  initPlugin(nullptr);
  EXPECT_EQ(nullptr, g_luavyr_vyrosg_plugin.get());
  EXPECT_TRUE(messages->errors.empty());
  EXPECT_TRUE(messages->debug.empty());
}

TEST_F(Plugin, MissingRequirementsAreReportedAndTheStartGoesOn) {
  initPlugin(manager);
  EXPECT_THAT(ownErrors(), ElementsAre("Error loading plugin: vyr", "Error loading plugin: vyrModel"));
  ASSERT_NE(nullptr, g_luavyr_vyrosg_plugin.get());
  EXPECT_EQ(g_luavyr_vyrosg_plugin.get(), manager->getScriptPlugin("vyrOSG"));
  lua_getglobal(manager->m_state, "vyrOSG");
  EXPECT_TRUE(lua_istable(manager->m_state, -1));
  lua_pop(manager->m_state, 1);
}

TEST_F(Plugin, AnotherVersionIsReportedAndTheStartGoesOn) {
  for (const char* version : {"1.0 ", "1", "", "1.00"}) {
    messages->errors.clear();
    manager->m_version = version;
    initPlugin(manager);
    ASSERT_EQ(3u, ownErrors().size()) << version;
    EXPECT_EQ(std::string("Plugin version (1.0) does not match required version (") + version + ")", ownErrors()[0]);
    EXPECT_NE(nullptr, manager->getScriptPlugin("vyrOSG"));
  }
}

TEST_F(Plugin, TheConstructorSaysWhenItWasBuilt) {
  initPlugin(manager);
  ASSERT_FALSE(messages->debug.empty());
  EXPECT_THAT(messages->debug[0],
              MatchesRegex(".*LuaPluginVyrOSG::LuaPluginVyrOSG\\(\\): [A-Z][a-z][a-z] [ 0-9][0-9] [0-9][0-9][0-9][0-9] "
                           "[0-9][0-9]:[0-9][0-9]:[0-9][0-9]"));
}

TEST_F(Plugin, NameAndRequirements) {
  initPlugin(manager);
  EXPECT_EQ("vyrOSG", g_luavyr_vyrosg_plugin->getName());
  EXPECT_THAT(g_luavyr_vyrosg_plugin->getRequiredPlugins(), ElementsAre("vyr", "vyrModel"));
}

TEST_F(Plugin, ModulesOpenInTheListedOrder) {
  initPlugin(manager);
  registrationTrace().clear();
  g_luavyr_vyrosg_plugin->init(manager->m_state);
  // A module begins with its types; its first one and their number tell it apart.
  std::vector<std::size_t> counts;
  std::vector<std::string> firsts;
  bool inTypes = false;
  for (const std::string& entry : registrationTrace()) {
    const bool isType = entry.compare(0, 9, "usertype ") == 0;
    if (isType && !inTypes) {
      firsts.push_back(entry.substr(9));
      counts.push_back(0);
    }
    if (isType) {
      ++counts.back();
    }
    inTypes = isType;
  }
  ASSERT_EQ(std::size(vyrOSGModules::kModules), firsts.size());
  for (std::size_t i = 0; i < firsts.size(); ++i) {
    const std::string name = vyrOSGModules::kModules[i].name;
    std::ifstream manifest(VYR_SOURCE_DIR "/binding/manifests/vyrOSG/" + name + ".txt");
    std::string line;
    std::vector<std::string> types;
    while (std::getline(manifest, line)) {
      if (line.compare(0, 5, "type ") == 0) {
        types.push_back(line.substr(10));
      }
    }
    ASSERT_FALSE(types.empty()) << name;
    EXPECT_EQ(types[0], firsts[i]) << name;
    EXPECT_EQ(types.size(), counts[i]) << name;
  }
}

TEST_F(Plugin, ASecondCallReplacesAndReleasesTheFirstObject) {
  initPlugin(manager);
  vyr::observer_ptr<ScriptManager::ScriptPlugin> first = g_luavyr_vyrosg_plugin.get();
  EXPECT_EQ(2, g_luavyr_vyrosg_plugin->getReferenceCount());
  initPlugin(manager);
  EXPECT_EQ(nullptr, first.get());
  EXPECT_EQ(g_luavyr_vyrosg_plugin.get(), manager->getScriptPlugin("vyrOSG"));
}

TEST_F(Plugin, ReleasingGoesThroughTheDeleteHandler) {
  struct Handler : vyr::DeleteHandler {
    void requestDelete(const vyr::Referenced* object) override {
      last = object;
      vyr::Referenced::destroy(object);
    }
    const vyr::Referenced* last = nullptr;
  } handler;
  initPlugin(manager);
  const vyr::Referenced* first = g_luavyr_vyrosg_plugin.get();
  vyr::Referenced::setDeleteHandler(&handler);
  initPlugin(manager);
  vyr::Referenced::setDeleteHandler(nullptr);
  EXPECT_EQ(first, handler.last);
}

TEST_F(Plugin, ClosingDoesNothing) {
  initPlugin(manager);
  g_luavyr_vyrosg_plugin->close();
  lua_getglobal(manager->m_state, "osg");
  EXPECT_TRUE(lua_istable(manager->m_state, -1));
}

} // namespace
