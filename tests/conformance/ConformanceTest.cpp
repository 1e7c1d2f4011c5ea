// The plugin's modules against tables that were written from the interface's description, one test a module.
#include "Natives.h"
#include "Registration.h"

#include <vyrModel_modules.h>
#include <vyrOSG/LaunchOptions.h>
#include <vyrOSG_modules.h>
#include <vyr_modules.h>

#include <lua.hpp>

#include <gtest/gtest.h>

#include <osg/Notify>
#include <vyr/Notify.h>
#include <vyr/ref_ptr.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using vyrOSGModules::kModules;
using vyrOSGModules::Module;

const std::string kFolder = VYR_SOURCE_DIR "/tests/conformance/";

/// Says where the tables' engine was when the process dies.
void reportCrash(int signal) {
  const char text[] = "\nconformance: crashed at ";
  const char* place = conformance::lastPlace();
  if (write(STDERR_FILENO, text, sizeof(text) - 1) < 0 || write(STDERR_FILENO, place, std::strlen(place)) < 0 ||
      write(STDERR_FILENO, "\n", 1) < 0) {
    _exit(1);
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

/// Wrong values make the toolkit complain on purpose; the failures are to be read.
class Silence : public vyr::NotifySink {
public:
  void message(vyr::NotifyLevel, const std::string&) override {}
};

class Conformance : public ::testing::Test {
protected:
  Conformance()
      : m_state(luaL_newstate()) {
    osg::setNotifyLevel(osg::ALWAYS);
    vyr::Notify::instance()->addSink(m_silence.get());
    luaL_openlibs(m_state);
    tolua_open(m_state);
    for (const auto& module : vyrModules::kModules) {
      module.open(m_state);
    }
    for (const auto& module : vyrModelModules::kModules) {
      module.open(m_state);
    }
    for (const auto& module : kModules) {
      module.open(m_state);
    }
    // Applications that run or take pictures do so without a window.
    vyrOSG::LaunchOptions::process().backend = vyrOSG::LaunchOptions::NONE;
    tolua_usertype(m_state, "conformance::Foreign");
    conformance::openNatives(m_state, kModules[0].open);
    lua_getglobal(m_state, "package");
    lua_pushstring(m_state, (kFolder + "engine/?.lua").c_str());
    lua_setfield(m_state, -2, "path");
    lua_pop(m_state, 1);
    std::signal(SIGSEGV, &reportCrash);
    std::signal(SIGABRT, &reportCrash);
  }

  ~Conformance() override {
    lua_close(m_state);
    conformance::closeNatives();
    vyr::Notify::instance()->removeSink(m_silence.get());
  }

  /// Registers a module once more and leaves the list of what it registered as the global `entries`.
  void recordEntries(const Module& module) {
    conformance::registration().clear();
    module.open(m_state);
    ASSERT_EQ(0, luaL_dostring(m_state, "entries = native.entries()")) << lua_tostring(m_state, -1);
  }

  /// What is wrong with a module by its table in `folder`; leaves the numbers in the global `stats`.
  std::vector<std::string> failuresOf(const std::string& module, const std::string& folder) {
    recordEntries(*std::find_if(kModules.begin(), kModules.end(), [&](const Module& m) { return module == m.name; }));
    return texts("local failures failures, stats = require('run').module('" + module + "', '" + folder +
                 "', entries, " + (VYR_EVERY_OPERATION ? "true" : "false") + ") return failures");
  }

  /// Runs a chunk; its one result is a list of texts.
  std::vector<std::string> texts(const std::string& chunk) {
    std::vector<std::string> list;
    if (luaL_dostring(m_state, chunk.c_str()) != 0) {
      list.push_back(lua_tostring(m_state, -1));
      return list;
    }
    for (int i = 1; i <= static_cast<int>(lua_objlen(m_state, -1)); ++i) {
      lua_rawgeti(m_state, -1, i);
      list.push_back(lua_tostring(m_state, -1));
      lua_pop(m_state, 1);
    }
    lua_settop(m_state, 0);
    return list;
  }

  /// A number of the global `stats`.
  int statistic(const char* name) {
    lua_getglobal(m_state, "stats");
    if (lua_istable(m_state, -1)) {
      lua_getfield(m_state, -1, name);
    }
    const int value = static_cast<int>(lua_tonumber(m_state, -1));
    lua_settop(m_state, 0);
    return value;
  }

  static bool hasTable(const std::string& module) {
    return access((kFolder + "tables/" + module + ".lua").c_str(), R_OK) == 0;
  }

  lua_State* m_state;

private:
  vyr::ref_ptr<Silence> m_silence{new Silence};
};

class Tables : public Conformance, public ::testing::WithParamInterface<std::string> {};

TEST_P(Tables, Module) {
  const std::string name = GetParam();
  ASSERT_TRUE(hasTable(name)) << "the module " << name << " has no table";
  const std::vector<std::string> failures = failuresOf(name, kFolder + "tables/");
  for (const std::string& failure : failures) {
    ADD_FAILURE() << failure;
  }
  EXPECT_GT(statistic("cases"), 0) << "nothing was tried";
  std::printf("%s: %d overloads, %d constructors, %d constants, %d variables; %d cases; %d operations seen\n",
              name.c_str(), statistic("overloads"), statistic("constructors"), statistic("constants"),
              statistic("variables"), statistic("cases"), statistic("observed"));
}

std::vector<std::string> moduleNames() {
  std::vector<std::string> names;
  for (const Module& module : kModules) {
    names.push_back(module.name);
  }
  return names;
}

// Two programs are made of this file, and their tests are listed together.
#if VYR_EVERY_OPERATION
INSTANTIATE_TEST_SUITE_P(Conformance, Tables, ::testing::ValuesIn(moduleNames()),
                         [](const auto& tested) { return tested.param; });

// The tables and their engine can fail: every kind of wrong statement is noticed.
TEST_F(Conformance, NoticesWrongStatements) {
  const char* const changes[][3] = {
      {"StateSet", "types { \"osg::State\", ", "types { "},
      {"StateSet", "\"BLENDCOLOR\", 29", "\"BLENDCOLOR\", 28"},
      {"StateSet", "bool compareAttributeContents = false) const", "bool compareAttributeContents = true) const"},
      {"StateSet", "bool compareAttributeContents = false) const", "bool compareAttributeContents) const"},
      {"StateSet", "unsigned int getMode(unsigned int mode) const", "unsigned int getMode(unsigned int mode)"},
      {"StateSet", "void clear()", "void setGlobalDefaults()"},
      {"StateSet", "void setMode(unsigned int mode, unsigned int value)", "void setMode(int mode, unsigned int value)"},
      {"StateSet", "int getBinNumber() const", "bool getBinNumber() const"},
      {"StateSet", "row \"void merge(const osg::StateSet& other)\"\n", ""},
      {"StateSet", "void setBinName(const std::string& name)", "void setBinName(const char* name)"},
      {"StateSet", "gives = \"nil, 'text1'\"", "gives = \"nil, 'text2'\""},
      {"Text", "collector = \"drops\"", "collector = \"deletes\""},
      {"Text", "vyr::Vec4(1, 1, 1, 1)", "vyr::Vec4(1, 1, 1, 0.5)"},
      {"Text", "base = \"osg::Group\"", "base = \"osg::Node\""},
      {"GeometryNode", "(vyrCollide::Geometry* geometry)\"\nrow", "(vyrCollide::Geometry& geometry)\"\nrow"},
      {"GeometryNode", "gives = \"geometry\"", "gives = \"nil\""},
      {"Tree", "class(\"Tree\",", "namespace \"vyrOSG\"\nclass(\"Tree\","},
      {"Tree", "const vyr::Vec4 getColor", "vyr::Vec4 getColor"},
      {"TerrainRenderer", "{ 2, 10 }", "{ 10, 2 }"},
      {"PressureFromContacts", "references = 1", "references = 2"},
  };
  namespace fs = std::filesystem;
  const fs::path folder = fs::path(::testing::TempDir()) / ("conformance-" + std::to_string(getpid()));
  fs::copy(kFolder + "tables", folder);
  std::string unchanged;
  for (const auto& change : changes) {
    const fs::path file = folder / (std::string(change[0]) + ".lua");
    std::ifstream stream(kFolder + "tables/" + change[0] + ".lua");
    const std::string text((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    if (unchanged != change[0]) {
      unchanged = change[0];
      EXPECT_TRUE(failuresOf(change[0], folder.string() + "/").empty()) << change[0];
    }
    const std::size_t at = text.find(change[1]);
    ASSERT_NE(std::string::npos, at) << change[0] << ": " << change[1];
    std::ofstream(file) << std::string(text).replace(at, std::strlen(change[1]), change[2]);
    EXPECT_FALSE(failuresOf(change[0], folder.string() + "/").empty()) << change[0] << ": " << change[2] << " passes";
    std::ofstream(file) << text;
  }
  fs::remove_all(folder);
}
#else
INSTANTIATE_TEST_SUITE_P(PluginConformance, Tables, ::testing::ValuesIn(moduleNames()),
                         [](const auto& tested) { return tested.param; });

TEST_F(Conformance, Complete) {
  std::string names;
  for (const Module& module : kModules) {
    recordEntries(module);
    names += std::string("'") + module.name + "',";
    EXPECT_TRUE(hasTable(module.name)) << module.name << " has no table";
    for (const std::string& text : texts(std::string("return require('run').missing('") + module.name + "', '" +
                                         kFolder + "tables/', entries)")) {
      ADD_FAILURE() << "no case: " << text;
    }
  }
  for (const std::string& text : texts("return { require('run').totals({" + names + "}, '" + kFolder + "tables/') }")) {
    std::printf("%s\n", text.c_str());
  }
}

#endif

} // namespace
