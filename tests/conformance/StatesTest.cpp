// What states hold after modules were opened alone, in any order, again, in several states and in a state that stands
// where a closed one stood; the tables say what that must be.
#include "Natives.h"
#include "Registration.h"

#include <vyrOSG_modules.h>

#include <lua.hpp>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using vyrOSGModules::kModules;
using vyrOSGModules::Module;

const std::string kFolder = VYR_SOURCE_DIR "/tests/conformance/";

/// Gives the first block of its size at the same place each time, so that each state stands where the last one stood.
class SamePlace {
public:
  static void* allocate(void* self, void* memory, std::size_t oldSize, std::size_t newSize) {
    return static_cast<SamePlace*>(self)->resize(memory, oldSize, newSize);
  }

private:
  void* resize(void* memory, std::size_t, std::size_t newSize) {
    if (newSize == 0) {
      if (memory == m_place.data()) {
        m_taken = false;
      } else {
        std::free(memory);
      }
      return nullptr;
    }
    // A state's first block is the state itself and never changes its size.
    if (memory == nullptr && !m_taken && newSize <= m_place.size() * sizeof(std::max_align_t)) {
      m_taken = true;
      return m_place.data();
    }
    return std::realloc(memory, newSize);
  }

  std::vector<std::max_align_t> m_place = std::vector<std::max_align_t>(256);
  bool m_taken = false;
};

/// A state with the tables' engine, that closes with the object.
class State {
public:
  State()
      : State(luaL_newstate()) {}
  explicit State(lua_State* state)
      : m_state(state) {
    luaL_openlibs(m_state);
    tolua_open(m_state);
    conformance::openNatives(m_state, kModules[0].open);
    run("package.path = '" + kFolder + "engine/?.lua'");
  }
  ~State() {
    lua_close(m_state);
    conformance::closeNatives();
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void open(const Module& module) {
    EXPECT_EQ(1, module.open(m_state)) << module.name;
    lua_settop(m_state, 0);
  }

  /// The error of a chunk; "" without one.
  std::string run(const std::string& chunk) {
    const std::string error = luaL_dostring(m_state, chunk.c_str()) != 0 ? lua_tostring(m_state, -1) : "";
    lua_settop(m_state, 0);
    return error;
  }

  /// What of the open modules' tables is missing or too much, from the first difference on.
  std::string differences(const std::vector<std::string>& modules) {
    std::string list;
    for (const std::string& name : modules) {
      list += "'" + name + "',";
    }
    return run("local text = require('union').compare({" + list + "}, '" + kFolder +
               "tables/') if text then error(text, 0) end");
  }

  lua_State* get() const { return m_state; }

private:
  lua_State* m_state;
};

/// Those modules that have a table.
std::vector<Module> tabled() {
  std::vector<Module> modules;
  for (const Module& module : kModules) {
    if (access((kFolder + "tables/" + module.name + ".lua").c_str(), R_OK) == 0) {
      modules.push_back(module);
    }
  }
  return modules;
}

std::vector<std::string> names(const std::vector<Module>& modules) {
  std::vector<std::string> list;
  for (const Module& module : modules) {
    list.push_back(module.name);
  }
  return list;
}

/// A script that uses what several modules bind together.
constexpr const char* kUse = "local group = osg.Group:new() local node = osg.Node() node:setName('n') "
                             "assert(group:addChild(node) and group:getChild(0):getNumParents() == 1) "
                             "assert(vyr.FrictionModel.DIRECT == 1 and vyr.lerp(2, 4, 0.25) == 2.5) "
                             "assert(osg.Uniform('u', 4):getInt(0)) "
                             "collectgarbage() collectgarbage() assert(group:getChild(0):getNumParents() == 1)";

TEST(States, AModuleAloneHoldsWhatItsTableSays) {
  for (const Module& module : tabled()) {
    State state;
    conformance::registration().clear();
    state.open(module);
    EXPECT_EQ("", state.differences({module.name})) << module.name;
    EXPECT_EQ("", state.run(std::string("local list = require('run').registration('") + module.name + "', '" + kFolder +
                            "tables/', native.entries()) if list[1] then error(list[1], 0) end"))
        << module.name;
  }
}

/// An exported function of a module, by the name that carries its parameter.
lua_CFunction exported(const std::string& name) {
  const std::string mangled = "_Z" + std::to_string(name.size()) + name + "P9lua_State";
  return reinterpret_cast<lua_CFunction>(dlsym(RTLD_DEFAULT, mangled.c_str()));
}

/// What a function registers in a fresh state, functions included, one line a call of the runtime.
std::vector<std::string> registeredBy(lua_CFunction function) {
  State state;
  conformance::registration().clear();
  EXPECT_EQ(1, function(state.get()));
  EXPECT_EQ(0, lua_gettop(state.get()));
  std::vector<std::string> lines;
  for (const conformance::Entry& entry : conformance::registration()) {
    std::ostringstream line;
    line << entry.table << ' ' << entry.kind << ' ' << entry.name << ' ' << entry.type << ' ' << entry.base << ' '
         << entry.value << ' ' << reinterpret_cast<void*>(entry.function) << ' '
         << reinterpret_cast<void*>(entry.setter);
    lines.push_back(line.str());
  }
  return lines;
}

TEST(States, BothExportedFunctionsOpenAModule) {
  for (const Module& module : kModules) {
    const lua_CFunction open = exported(std::string("tolua_vyrOSG_") + module.name + "_open");
    const lua_CFunction luaopen = exported(std::string("luaopen_vyrOSG_") + module.name);
    ASSERT_NE(nullptr, open) << module.name;
    ASSERT_NE(nullptr, luaopen) << module.name;
    const std::vector<std::string> lines = registeredBy(open);
    EXPECT_LT(10U, lines.size()) << module.name;
    EXPECT_EQ(lines, registeredBy(luaopen)) << module.name;
  }
}

TEST(States, OrderDoesNotMatter) {
  std::vector<Module> modules = tabled();
  const std::vector<std::string> all = names(modules);
  for (int round = 0; round < 4; ++round) {
    State state;
    for (const Module& module : modules) {
      state.open(module);
    }
    EXPECT_EQ("", state.differences(all)) << "round " << round;
    EXPECT_EQ("", state.run(kUse)) << "round " << round;
    if (round == 0) {
      std::reverse(modules.begin(), modules.end());
    } else {
      std::rotate(modules.begin(), modules.begin() + static_cast<std::ptrdiff_t>(modules.size() / 3), modules.end());
    }
  }
}

TEST(States, OpeningAgainChangesNothing) {
  State state;
  const std::vector<Module> modules = tabled();
  for (int round = 0; round < 3; ++round) {
    for (const Module& module : modules) {
      state.open(module);
      state.open(module);
    }
    EXPECT_EQ("", state.differences(names(modules))) << "round " << round;
    EXPECT_EQ("", state.run(kUse)) << "round " << round;
  }
}

TEST(States, SeveralAtOnceKeepTheirOwn) {
  const std::vector<Module> modules = tabled();
  auto first = std::make_unique<State>();
  State second;
  State third;
  // By turns, so that nothing may be kept from one call to the next.
  for (const Module& module : modules) {
    first->open(module);
    second.open(module);
  }
  third.open(modules.front());
  EXPECT_EQ("", first->run("group = osg.Group:new() mark = 1 rawset(osg.Group, 'mine', 7)"));
  EXPECT_EQ("", second.run("assert(group == nil and mark == nil and rawget(osg.Group, 'mine') == nil)"));
  EXPECT_EQ("", first->run(kUse));
  EXPECT_EQ("", second.run(kUse));
  first.reset();
  EXPECT_EQ("", second.run(kUse));
  EXPECT_EQ("", second.differences(names(modules)));
  EXPECT_EQ("", third.differences({modules.front().name}));
}

TEST(States, ANewOneAtTheAddressOfAClosedOneStartsAfresh) {
  const std::vector<Module> modules = tabled();
  SamePlace place;
  const void* address = nullptr;
  for (int round = 0; round < 5; ++round) {
    lua_State* raw = lua_newstate(&SamePlace::allocate, &place);
    ASSERT_TRUE(address == nullptr || address == raw) << "the states stand at different places";
    address = raw;
    State state(raw);
    // Every second one opens one module only.
    const std::vector<Module> opened = round % 2 == 0 ? modules : std::vector<Module>{modules.front()};
    for (const Module& module : opened) {
      state.open(module);
    }
    EXPECT_EQ("", state.differences(names(opened))) << "round " << round;
    if (round % 2 == 0) {
      EXPECT_EQ("", state.run(kUse)) << "round " << round;
      // Objects that live on past the state's end, and such that end with it.
      EXPECT_EQ("", state.run("kept = {} for i = 1, 50 do kept[i] = osg.Node() osg.Group:new():addChild(kept[i]) end"));
    }
  }
}

} // namespace
