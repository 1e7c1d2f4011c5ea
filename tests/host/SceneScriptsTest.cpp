// How scene functions are found in script files.
#include "SceneScripts.h"

#include "Program.h"

#include <vyrLua/ProtectedCall.h>
#include <vyrLua/ScriptManager.h>

extern "C" {
#include <lauxlib.h>
#include <lua.h>
}

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace {

using testing::HasSubstr;
using vyrHost::SceneScripts;
using vyrTest::writeFile;

class SceneScriptsTest : public testing::Test {
protected:
  SceneScriptsTest()
      : m_folder(vyrTest::makeTestFolder())
      , m_state(vyrLua::ScriptManager::instance(true)->getLuaState()) {
    // A namespace and an application in plain Lua: only what is called on them matters here.
    run("calls = {}"
        "application = {setTimeStep = function(self, step) calls[#calls + 1] = 'setTimeStep ' .. step end,"
        "               run = function() calls[#calls + 1] = 'run' end,"
        "               init = function() calls[#calls + 1] = 'init' end}"
        "vyrOSG = {ExampleApplication = setmetatable({MULTI = 0}, {__call = function() error('made anew') end}), other "
        "= 5}");
  }
  ~SceneScriptsTest() override { vyrLua::ScriptManager::shutdown(); }

  void run(const std::string& chunk) {
    ASSERT_EQ(0, luaL_loadstring(m_state, chunk.c_str())) << lua_tostring(m_state, -1);
    ASSERT_EQ(0, vyrLua::protectedCall(m_state, 0, 0, 0)) << lua_tostring(m_state, -1);
  }

  /// Calls the function of the file and gives its result as text, or the reason why it cannot.
  std::string call(SceneScripts& scripts, const std::string& file, const std::string& function) {
    lua_settop(m_state, 0);
    lua_getglobal(m_state, "application");
    std::string text;
    if (!scripts.pushFunction(file, function, 1, text)) {
      EXPECT_EQ(1, lua_gettop(m_state));
      return text;
    }
    EXPECT_EQ(0, vyrLua::protectedCall(m_state, 0, 1, 0));
    const char* result = lua_tostring(m_state, -1);
    text = result != nullptr ? result : "(none)";
    lua_settop(m_state, 0);
    return text;
  }

  std::string write(const std::string& name, const std::string& text) { return writeFile(m_folder, name, text); }

  /// Writes a file anew, with a time that differs for certain.
  void rewrite(const std::string& name, const std::string& text) {
    const auto before = std::filesystem::last_write_time(m_folder + "/" + name);
    write(name, text);
    std::filesystem::last_write_time(m_folder + "/" + name, before + std::chrono::seconds(2));
  }

  std::string m_folder;
  lua_State* m_state;
};

TEST_F(SceneScriptsTest, RunsAFileOnceForItsFunctions) {
  const std::string file = write("a.lua", "count = (count or 0) + 1\nfunction scene() return 'scene ' .. count end");
  SceneScripts scripts(m_state, "");
  EXPECT_EQ("scene 1", call(scripts, file, "scene"));
  EXPECT_EQ("scene 1", call(scripts, file, "scene"));
}

TEST_F(SceneScriptsTest, RunsAgainAfterAChange) {
  const std::string file = write("a.lua", "function scene() return 'old' end");
  SceneScripts scripts(m_state, "");
  EXPECT_EQ("old", call(scripts, file, "scene"));
  EXPECT_FALSE(scripts.haveChanged());
  rewrite("a.lua", "function scene() return 'new' end");
  EXPECT_TRUE(scripts.haveChanged());
  EXPECT_EQ("new", call(scripts, file, "scene"));
  EXPECT_FALSE(scripts.haveChanged());
}

TEST_F(SceneScriptsTest, FunctionsOfOneNameDoNotMix) {
  const std::string first = write("a.lua", "function makeBox() return 'a' end function scene() return makeBox() end");
  const std::string second = write("b.lua", "function makeBox() return 'b' end function scene() return makeBox() end");
  SceneScripts scripts(m_state, "");
  EXPECT_EQ("a", call(scripts, first, "scene"));
  EXPECT_EQ("b", call(scripts, second, "scene"));
  EXPECT_EQ("a", call(scripts, first, "scene"));
}

TEST_F(SceneScriptsTest, VariablesAreShared) {
  const std::string file = write("a.lua", "function scene() seen = 7 return tostring(given) end");
  SceneScripts scripts(m_state, "");
  run("given = 3");
  EXPECT_EQ("3", call(scripts, file, "scene"));
  run("assert(seen == 7)");
}

TEST_F(SceneScriptsTest, TheRunningScriptIsNotRunAgain) {
  const std::string file = write("main.lua", "error('run again')");
  run("function scene() return 'global' end");
  SceneScripts scripts(m_state, file);
  EXPECT_EQ("global", call(scripts, file, "scene"));
}

TEST_F(SceneScriptsTest, AChangedProgramMeetsItsApplication) {
  const std::string file = write("main.lua", "");
  SceneScripts scripts(m_state, file);
  rewrite("main.lua", "function scene() return 'changed ' .. vyrOSG.other end\n"
                      "app = vyrOSG.ExampleApplication()\n"
                      "assert(app:init() and app:addScene(1, 2))\n"
                      "app:setTimeStep(vyrOSG.ExampleApplication.MULTI)\n"
                      "app:run()\n"
                      "error('went past run')\n");
  EXPECT_EQ("changed 5", call(scripts, file, "scene"));
  run("assert(#calls == 1 and calls[1] == 'setTimeStep 0', table.concat(calls, ', '))");
}

TEST_F(SceneScriptsTest, FailuresNameFileAndLine) {
  SceneScripts scripts(m_state, "");
  EXPECT_THAT(call(scripts, m_folder + "/none.lua", "scene"), HasSubstr("none.lua'"));
  const std::string syntax = write("syntax.lua", "x =\n= 2");
  EXPECT_THAT(call(scripts, syntax, "scene"), HasSubstr("syntax.lua:2:"));
  const std::string broken = write("broken.lua", "\nlocal function inner() error('no floor') end\ninner()");
  EXPECT_THAT(call(scripts, broken, "scene"), HasSubstr("broken.lua:2: no floor\nstack traceback:"));
  const std::string other = write("other.lua", "local function scene() end");
  EXPECT_EQ("scene file '" + other + "' defines no global function 'scene'", call(scripts, other, "scene"));
}

TEST_F(SceneScriptsTest, AFailedFileIsTriedAgainWhenAskedAgain) {
  const std::string file = write("a.lua", "if not given then error('not yet') end function scene() return 'now' end");
  SceneScripts scripts(m_state, "");
  EXPECT_THAT(call(scripts, file, "scene"), HasSubstr("not yet"));
  EXPECT_FALSE(scripts.haveChanged());
  run("given = 1");
  EXPECT_EQ("now", call(scripts, file, "scene"));
}

} // namespace
