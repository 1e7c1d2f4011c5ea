// The modules of the plugin: alone, in order, reversed and twice; names, order, types, bases, collectors.
#include "LuaState.h"
#include "RegistrationTrace.h"

#include <vyrOSG_modules.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

namespace {

using bindingtest::LuaState;
using bindingtest::registrationTrace;
using vyrOSGModules::kModules;
using vyrOSGModules::Module;

std::vector<std::string> traceOf(const Module& module, LuaState& lua) {
  // The runtime's own table comes first, once a state.
  tolua_open(lua.get());
  registrationTrace().clear();
  EXPECT_EQ(1, module.open(lua.get()));
  return registrationTrace();
}

const Module& moduleNamed(const std::string& name) {
  for (const Module& module : kModules) {
    if (name == module.name) {
      return module;
    }
  }
  ADD_FAILURE() << "no module " << name;
  return kModules[0];
}

#ifdef VYROSG_EXPLICIT_COLLECTORS
constexpr bool kExplicitCollectors = true;
#else
constexpr bool kExplicitCollectors = false;
#endif

/// The trace that a module's manifest promises.
std::vector<std::string> promisedBy(const std::string& module) {
  std::ifstream file(std::string(VYR_SOURCE_DIR "/binding/manifests/vyrOSG/") + module + ".txt");
  EXPECT_TRUE(file.good()) << module;
  std::vector<std::string> entries;
  std::string line;
  while (std::getline(file, line)) {
    std::istringstream words(line);
    std::string kind;
    std::string path;
    words >> kind >> path;
    if (kind == "type") {
      entries.push_back("usertype " + line.substr(10));
      continue;
    }
    // The last name of the path; operators and ".call" keep their own point.
    const std::size_t twoPoints = path.rfind("..");
    const std::string name =
        twoPoints != std::string::npos ? path.substr(twoPoints + 1) : path.substr(path.rfind('.') + 1);
    if (kind == "function" || kind == "variable" || kind == "array") {
      entries.push_back(kind + " " + name + (line.find(" read-only") != std::string::npos ? " read-only" : ""));
    } else if (kind == "constant") {
      entries.push_back("constant " + name + " " + line.substr(line.find(" = ") + 3));
    } else if (kind == "class") {
      const std::size_t type = line.find("type \"") + 6;
      const std::size_t base = line.find("base \"") + 6;
      entries.push_back("class " + name + " type=" + line.substr(type, line.find('"', type) - type) +
                        " base=" + line.substr(base, line.find('"', base) - base) +
                        (line.find("collector yes") != std::string::npos ||
                                 (kExplicitCollectors && line.find("collector explicit-mode") != std::string::npos)
                             ? " collector"
                             : ""));
    } else if (kind == "table") {
      entries.push_back("module " + name + " 0");
    }
  }
  return entries;
}

class EachModule : public ::testing::TestWithParam<Module> {};

TEST_P(EachModule, RegistersWhatItsManifestPromisesInThatOrder) {
  LuaState lua;
  std::vector<std::string> entries;
  for (std::string entry : traceOf(GetParam(), lua)) {
    entry.erase(0, entry.find_first_not_of(' '));
    if (entry != "end" && entry.compare(0, 6, "begin ") != 0 && entry != "module (global) 0") {
      entries.push_back(entry);
    }
  }
  EXPECT_EQ(promisedBy(GetParam().name), entries);
}

TEST_P(EachModule, DeclaresEveryTypeOnceAndBeforeAnythingElse) {
  LuaState lua;
  const std::vector<std::string> trace = traceOf(GetParam(), lua);
  const auto isType = [](const std::string& entry) { return entry.compare(0, 9, "usertype ") == 0; };
  const auto firstOther = std::find_if_not(trace.begin(), trace.end(), isType);
  ASSERT_NE(trace.end(), firstOther);
  EXPECT_EQ("module (global) 0", *firstOther);
  EXPECT_TRUE(std::none_of(firstOther, trace.end(), isType));
  EXPECT_EQ(static_cast<std::size_t>(firstOther - trace.begin()),
            std::set<std::string>(trace.begin(), firstOther).size());
}

TEST_P(EachModule, HasNoModuleVariablesAndClosesWhatItOpens) {
  LuaState lua;
  int open = 0;
  for (std::string entry : traceOf(GetParam(), lua)) {
    entry.erase(0, entry.find_first_not_of(' '));
    if (entry.compare(0, 7, "module ") == 0) {
      EXPECT_EQ('0', entry.back()) << entry;
    }
    open += entry.compare(0, 6, "begin ") == 0 ? 1 : entry == "end" ? -1 : 0;
  }
  EXPECT_EQ(0, open);
  EXPECT_EQ(0, lua_gettop(lua.get()));
}

TEST_P(EachModule, MayBeOpenedTwice) {
  LuaState lua;
  const std::vector<std::string> first = traceOf(GetParam(), lua);
  EXPECT_EQ(first, traceOf(GetParam(), lua));
  lua.collect();
}

TEST_P(EachModule, EveryConstructorHasItsThreeNames) {
  LuaState lua;
  const std::vector<std::string> trace = traceOf(GetParam(), lua);
  for (std::size_t i = 0; i < trace.size(); ++i) {
    const std::size_t start = trace[i].find_first_not_of(' ');
    if (trace[i].substr(start) == "function new") {
      ASSERT_LT(i + 2, trace.size());
      EXPECT_EQ("function new_local", trace[i + 1].substr(start));
      EXPECT_EQ("function .call", trace[i + 2].substr(start));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Registration, EachModule, ::testing::ValuesIn(kModules),
                         [](const auto& tested) { return std::string(tested.param.name); });

TEST(Registration, TheOpeningOrderIsFixed) {
  const std::vector<std::string> order = {"ExampleApplication",
                                          "ImageCapture",
                                          "Node",
                                          "RenderToTexture",
                                          "GeometryNode",
                                          "Shape",
                                          "TerrainRenderer",
                                          "ReaderWriter",
                                          "SceneDecorator",
                                          "HudTextManager",
                                          "SimulationPausedPrinter",
                                          "SimulationTimePrinter",
                                          "SimulationObject",
                                          "RenderStateManager",
                                          "utils",
                                          "SplineRenderer",
                                          "RockGenerator",
                                          "WireRenderer",
                                          "PressureRenderer",
                                          "PressureFromContacts",
                                          "Tree",
                                          "Uniform",
                                          "StateSet",
                                          "DeformableHeightFieldRenderer",
                                          "Text",
                                          "LightSource",
                                          "PressureFieldRenderer"};
  std::vector<std::string> listed;
  std::ifstream file(VYR_SOURCE_DIR "/binding/vyrOSG/modules.txt");
  for (std::string line; std::getline(file, line);) {
    if (!line.empty() && line[0] != '#') {
      listed.push_back(line);
    }
  }
  EXPECT_EQ(order, listed);
  // The plugin opens what has a description, in that order.
  std::vector<std::string> described;
  for (const std::string& name : listed) {
    if (std::ifstream(VYR_SOURCE_DIR "/binding/vyrOSG/" + name + ".pkg").good()) {
      described.push_back(name);
    }
  }
  std::vector<std::string> opened;
  for (const Module& module : kModules) {
    opened.push_back(module.name);
  }
  EXPECT_EQ(described, opened);
}

TEST(Registration, ShapeInFull) {
  LuaState lua;
  const std::vector<std::string> expected = {
      "usertype osg::Shape",
      "usertype osg::HeightField",
      "module (global) 0",
      "begin (global)",
      "  module osg 0",
      "  begin osg",
      std::string("    class HeightField type=osg::HeightField base=osg::Shape") +
          (kExplicitCollectors ? " collector" : ""),
      "    begin HeightField",
      "      function new",
      "      function new_local",
      "      function .call",
      "      function setHeight",
      "    end",
      "  end",
      "end"};
  EXPECT_EQ(expected, traceOf(moduleNamed("Shape"), lua));
}

TEST(Registration, TheSharedBlockStandsFirst) {
  const std::vector<std::string> expected = {
      "  module vyr 0",
      "  begin vyr",
      "    function lerp",
      "    function random",
      "    function logInterpolate",
      "    class FrictionModel type=vyr::FrictionModel base=",
      "    begin FrictionModel",
      "      constant NOT_DEFINED 0",
      "      constant DIRECT 1",
      "      constant ITERATIVE 2",
      "      constant SPLIT 3",
      "      constant DIRECT_AND_ITERATIVE 4",
      "    end",
      "    class Constraint type=vyr::Constraint base=",
      "    begin Constraint",
      "      constant DIRECT 1",
      "      constant ITERATIVE 4",
      "      constant DIRECT_AND_ITERATIVE 5",
      "    end",
  };
  const std::set<std::string> carriers = {"Tree",
                                          "SimulationObject",
                                          "RockGenerator",
                                          "SplineRenderer",
                                          "PressureFromContacts",
                                          "ExampleApplication",
                                          "WireRenderer",
                                          "SceneDecorator",
                                          "LightSource",
                                          "Node",
                                          "ImageCapture",
                                          "PressureFieldRenderer",
                                          "ReaderWriter",
                                          "PressureRenderer",
                                          "RenderToTexture",
                                          "Text",
                                          "utils"};
  for (const Module& module : kModules) {
    LuaState lua;
    const std::vector<std::string> trace = traceOf(module, lua);
    auto at = std::find(trace.begin(), trace.end(), "begin (global)");
    ASSERT_NE(trace.end(), at);
    ++at;
    const bool carries = static_cast<std::size_t>(trace.end() - at) >= expected.size() + 19 &&
                         std::equal(expected.begin(), expected.end(), at);
    EXPECT_EQ(carriers.count(module.name) == 1, carries) << module.name;
    if (carries) {
      std::vector<std::string> rest(at + static_cast<std::ptrdiff_t>(expected.size()),
                                    at + static_cast<std::ptrdiff_t>(expected.size() + 19));
      EXPECT_EQ(10, std::count(rest.begin(), rest.end(), "    function equivalent")) << module.name;
      EXPECT_EQ(7, std::count(rest.begin(), rest.end(), "    function absolute")) << module.name;
      EXPECT_EQ("    function clamp", rest[17]) << module.name;
      EXPECT_EQ("    function sign", rest[18]) << module.name;
    }
  }
}

TEST(Registration, AllModulesInOrderReversedAndTwice) {
  LuaState lua;
  for (const Module& module : kModules) {
    EXPECT_EQ(1, module.open(lua.get())) << module.name;
  }
  for (auto module = std::rbegin(kModules); module != std::rend(kModules); ++module) {
    EXPECT_EQ(1, module->open(lua.get())) << module->name;
  }
  EXPECT_EQ("1 1", lua.eval("vyr.FrictionModel.DIRECT, vyr.Constraint.DIRECT"));
  lua.collect();
}

TEST(Registration, ReversedFromTheStart) {
  LuaState lua;
  for (auto module = std::rbegin(kModules); module != std::rend(kModules); ++module) {
    EXPECT_EQ(1, module->open(lua.get())) << module->name;
  }
  EXPECT_EQ("osg::Geode", lua.eval("osg.Geode:new()"));
}

TEST(Registration, AModuleAloneOpensOnlyItsOwnTables) {
  LuaState lua;
  moduleNamed("Shape").open(lua.get());
  EXPECT_EQ("table nil nil nil", lua.eval("type(osg), vyr, vyrOSG, vyrSDK"));
  EXPECT_EQ("nil", lua.eval("osg.Node"));
}

TEST(Registration, ACollectorStaysWhenAModuleRegistersTheClassWithoutOne) {
  LuaState lua;
  moduleNamed("ExampleApplication").open(lua.get());
  if (!kExplicitCollectors) {
    EXPECT_EQ("nil", lua.eval("rawget(osg.Camera, '.collector')"));
  }
  moduleNamed("RenderToTexture").open(lua.get());
  EXPECT_EQ("function", lua.eval("type(rawget(osg.Camera, '.collector'))"));
  moduleNamed("ExampleApplication").open(lua.get());
  EXPECT_EQ("function", lua.eval("type(rawget(osg.Camera, '.collector'))"));
}

TEST(Registration, ModulesShareTheirClassTables) {
  LuaState lua;
  moduleNamed("Node").open(lua.get());
  lua.run("group = osg.Group node = osg.Node");
  moduleNamed("GeometryNode").open(lua.get());
  moduleNamed("ExampleApplication").open(lua.get());
  EXPECT_EQ("true true", lua.eval("group == osg.Group, node == osg.Node"));
}

} // namespace
