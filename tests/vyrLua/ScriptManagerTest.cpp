// Loads good plugins and deliberately broken ones.
#include <vyrLua/ProtectedCall.h>
#include <vyrLua/ScriptManager.h>

#include <vyr/Notify.h>

#include <tolua++.h>

#include <dlfcn.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <string>
#include <unistd.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using vyrLua::ScriptManager;

class Messages : public vyr::NotifySink {
public:
  void message(vyr::NotifyLevel level, const std::string& text) override {
    if (level == vyr::NOTIFY_ERROR)
      errors.push_back(text);
  }
  std::vector<std::string> errors;
};

class ScriptManagerTest : public testing::Test {
protected:
  ScriptManagerTest()
      : m_messages(new Messages) {
    vyr::Notify::instance()->addSink(m_messages.get());
    manager().addSearchPath(PLUGIN_DIRECTORY);
  }
  ~ScriptManagerTest() override {
    ScriptManager::shutdown();
    vyr::Notify::instance()->removeSink(m_messages.get());
  }

  ScriptManager& manager() { return *ScriptManager::instance(true); }
  std::vector<std::string>& errors() { return m_messages->errors; }

  /// Runs a chunk and gives its result, or its error, as a string.
  std::string run(const std::string& chunk) {
    lua_State* state = manager().getLuaState();
    if (luaL_loadstring(state, chunk.c_str()) == 0)
      vyrLua::protectedCall(state, 0, 1, 0);
    const char* text = lua_tostring(state, -1);
    const std::string result = text != nullptr ? text : "(no string)";
    lua_settop(state, 0);
    return result;
  }

  vyr::ref_ptr<Messages> m_messages;
};

TEST_F(ScriptManagerTest, InstanceIsMadeOnlyWhenAskedFor) {
  ScriptManager::shutdown();
  EXPECT_EQ(nullptr, ScriptManager::instance(false));
  ScriptManager* made = ScriptManager::instance(true);
  ASSERT_NE(nullptr, made);
  EXPECT_EQ(made, ScriptManager::instance(false));
  EXPECT_EQ("1.0", made->m_version);
  EXPECT_EQ(made->m_state, made->getLuaState());
  EXPECT_EQ("Lua 5.1", run("return _VERSION"));
}

TEST_F(ScriptManagerTest, TheRuntimeComesFromTheLibraryAlone) {
  Dl_info runtime = {};
  ASSERT_NE(0, dladdr(dlsym(RTLD_DEFAULT, "tolua_pushusertype"), &runtime));
  EXPECT_THAT(runtime.dli_fname, HasSubstr("libvyrLua.so"));
  EXPECT_EQ(dlsym(RTLD_DEFAULT, "tolua_open"), reinterpret_cast<void*>(&tolua_open));
}

TEST_F(ScriptManagerTest, LoadsAPluginOnce) {
  EXPECT_TRUE(manager().requestScriptPlugin("good"));
  EXPECT_TRUE(manager().requestScriptPlugin("good"));
  EXPECT_EQ("good ", run("return loaded"));
  ASSERT_NE(nullptr, manager().getScriptPlugin("good"));
  EXPECT_EQ("good", manager().getScriptPlugin("good")->getName());
  EXPECT_EQ(std::string(PLUGIN_DIRECTORY) + "/libgood_luaplugin.so", manager().getScriptPluginFile("good"));
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(ScriptManagerTest, LoadsRequirementsFirst) {
  EXPECT_TRUE(manager().requestScriptPlugin("needsGood"));
  EXPECT_EQ("good needsGood ", run("return loaded"));
  EXPECT_THAT(manager().getScriptPluginNames(), ElementsAre("good", "needsGood"));
  EXPECT_THAT(errors(), IsEmpty());
}

TEST_F(ScriptManagerTest, MissingFileNamesItAndTheDirectories) {
  EXPECT_FALSE(manager().requestScriptPlugin("missing"));
  ASSERT_EQ(1u, errors().size());
  EXPECT_THAT(errors()[0], HasSubstr("'missing'"));
  EXPECT_THAT(errors()[0], HasSubstr("libmissing_luaplugin.so"));
  EXPECT_THAT(errors()[0], HasSubstr(PLUGIN_DIRECTORY));
}

TEST_F(ScriptManagerTest, FileThatIsNoLibrary) {
  const std::string directory = testing::TempDir() + "vyrLua_garbage" + std::to_string(getpid());
  std::filesystem::create_directories(directory);
  std::ofstream(directory + "/libgarbage_luaplugin.so") << "this is no library";
  manager().addSearchPath(directory);
  EXPECT_FALSE(manager().requestScriptPlugin("garbage"));
  ASSERT_EQ(1u, errors().size());
  EXPECT_THAT(errors()[0], HasSubstr("cannot load " + directory + "/libgarbage_luaplugin.so"));
}

TEST_F(ScriptManagerTest, LibraryWithoutEntryPoint) {
  EXPECT_FALSE(manager().requestScriptPlugin("noEntry"));
  ASSERT_EQ(1u, errors().size());
  EXPECT_THAT(errors()[0], HasSubstr("libnoEntry_luaplugin.so has no entry point initPlugin"));
}

TEST_F(ScriptManagerTest, EntryPointOfAnotherLibraryDoesNotCount) {
  EXPECT_FALSE(manager().requestScriptPlugin("borrowedEntry"));
  ASSERT_EQ(1u, errors().size());
  EXPECT_THAT(errors()[0], HasSubstr("has no entry point initPlugin"));
  EXPECT_EQ("(no string)", run("return loaded"));
}

TEST_F(ScriptManagerTest, MissingRequirementIsReportedAndThePluginStays) {
  EXPECT_TRUE(manager().requestScriptPlugin("needsMissing"));
  ASSERT_EQ(3u, errors().size());
  EXPECT_THAT(errors()[0], HasSubstr("libmissing_luaplugin.so"));
  EXPECT_THAT(errors()[1], HasSubstr("Error loading plugin: missing"));
  EXPECT_THAT(errors()[2], HasSubstr("'needsMissing' requires script plugin 'missing', which is not loaded"));
  EXPECT_EQ("needsMissing ", run("return loaded"));
}

TEST_F(ScriptManagerTest, WrongVersionIsReportedAndThePluginStays) {
  EXPECT_TRUE(manager().requestScriptPlugin("wrongVersion"));
  ASSERT_EQ(1u, errors().size());
  EXPECT_THAT(errors()[0], HasSubstr("Plugin version (0.9) does not match required version (1.0)"));
}

TEST_F(ScriptManagerTest, VersionsAreComparedByteByByte) {
  manager().m_version = "1.0 ";
  EXPECT_TRUE(manager().requestScriptPlugin("good"));
  ASSERT_EQ(1u, errors().size());
  EXPECT_THAT(errors()[0], HasSubstr("Plugin version (1.0) does not match required version (1.0 )"));
}

TEST_F(ScriptManagerTest, PluginThatCallsItselfOtherwise) {
  EXPECT_FALSE(manager().requestScriptPlugin("wrongName"));
  ASSERT_EQ(1u, errors().size());
  EXPECT_THAT(errors()[0], HasSubstr("added no plugin of that name"));
}

TEST_F(ScriptManagerTest, CycleIsNamed) {
  EXPECT_TRUE(manager().requestScriptPlugin("cycleOne"));
  ASSERT_LE(1u, errors().size());
  EXPECT_THAT(errors()[0], HasSubstr("cycle (cycleOne -> cycleTwo -> cycleOne)"));
  EXPECT_EQ("cycleTwo cycleOne ", run("return loaded"));
}

TEST_F(ScriptManagerTest, NullPluginIsReported) {
  manager().addScriptPlugin(nullptr);
  manager().startScriptPlugin(nullptr, "1.0");
  EXPECT_EQ(2u, errors().size());
}

TEST_F(ScriptManagerTest, EnvironmentComesFirstAndEachDirectoryOnce) {
  const char* before = std::getenv("VYR_PLUGIN_PATH");
  const std::string saved = before != nullptr ? before : "";
  setenv("VYR_PLUGIN_PATH", "/first:/second::/first", 1);
  const std::vector<std::string> paths = manager().getSearchPaths();
  setenv("VYR_PLUGIN_PATH", saved.c_str(), 1);
  ASSERT_LE(3u, paths.size());
  EXPECT_EQ("/first", paths[0]);
  EXPECT_EQ("/second", paths[1]);
  EXPECT_EQ(PLUGIN_DIRECTORY, paths[2]);
  EXPECT_EQ(1, std::count(paths.begin(), paths.end(), "/first"));
  EXPECT_THAT(paths, testing::Contains(testing::EndsWith("lib/vyr/plugins")));
}

TEST_F(ScriptManagerTest, ListsWhatTheDirectoriesOffer) {
  EXPECT_THAT(manager().findAvailablePlugins(), testing::IsSupersetOf({"good", "needsGood", "recorder"}));
}

TEST_F(ScriptManagerTest, ShutdownClosesThenCollectsThenUnloads) {
  std::vector<std::string> events;
  lua_pushlightuserdata(manager().getLuaState(), &events);
  lua_setglobal(manager().getLuaState(), "events");
  ASSERT_TRUE(manager().requestScriptPlugin("recorder"));
  ScriptManager::shutdown();
  EXPECT_THAT(events, ElementsAre("close", "collect", "destroy", "unload"));
}

int throwException(lua_State*) {
  throw std::runtime_error("no such wheel");
}
int throwNumber(lua_State*) {
  throw 7;
}

TEST_F(ScriptManagerTest, ExceptionBecomesAnErrorWithItsText) {
  lua_register(manager().getLuaState(), "throw", &throwException);
  EXPECT_EQ("C++ exception: no such wheel", run("throw()"));
  EXPECT_EQ("C++ exception: no such wheel", run("local ok, text = pcall(throw) return text"));
  EXPECT_EQ("<C++ exception: no such wheel>",
            run("return select(2, xpcall(throw, function(m) return '<' .. m .. '>' end))"));
  EXPECT_EQ("true 1 nil 3", run("local t = {pcall(function(...) return ... end, 1, nil, 3)}"
                                "return tostring(t[1]) .. ' ' .. t[2] .. ' ' .. tostring(t[3]) .. ' ' .. t[4]"));
  EXPECT_EQ("true 2", run("local ok, v = xpcall(function() return 2 end, print) return tostring(ok) .. ' ' .. v"));
}

TEST_F(ScriptManagerTest, ExceptionInACoroutineIsAnError) {
  lua_register(manager().getLuaState(), "throw", &throwException);
  run("function body() throw() end");
  EXPECT_EQ("C++ exception in a coroutine", run("return select(2, coroutine.resume(coroutine.create(body)))"));
  EXPECT_EQ("[string \"return coroutine.wrap(body)(), 1\"]:1: C++ exception in a coroutine",
            run("return coroutine.wrap(body)(), 1"));
  EXPECT_EQ("cannot resume dead coroutine", run("local c = coroutine.create(body) coroutine.resume(c)"
                                                "return select(2, coroutine.resume(c))"));
}

TEST_F(ScriptManagerTest, CoroutinesWorkAsEver) {
  EXPECT_EQ("1 2 nil 4", run("local f = coroutine.wrap(function(a) local b, c, d = coroutine.yield(a)"
                             "  return a .. ' ' .. b .. ' ' .. tostring(c) .. ' ' .. d end)"
                             "f(1) return f(2, nil, 4)"));
  EXPECT_EQ("oh", run("return select(2, coroutine.resume(coroutine.create(function() error('oh', 0) end)))"));
  EXPECT_EQ(
      "cannot resume dead coroutine",
      run("local c = coroutine.create(function() end) coroutine.resume(c) return select(2, coroutine.resume(c))"));
  EXPECT_THAT(run("coroutine.wrap(print)"), HasSubstr("bad argument #1 to 'wrap' (Lua function expected)"));
  EXPECT_EQ("7", run("return coroutine.wrap(function() return pcall(error, 7) end)() == false and '7'"));
}

TEST_F(ScriptManagerTest, ExceptionThatIsNoStandardOne) {
  lua_register(manager().getLuaState(), "throw", &throwNumber);
  EXPECT_EQ("C++ exception of an unknown type", run("throw()"));
  EXPECT_EQ("C++ exception of an unknown type", run("return select(2, pcall(throw))"));
}

} // namespace
