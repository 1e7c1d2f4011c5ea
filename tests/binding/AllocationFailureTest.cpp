/// Memory that runs out: wherever the interpreter's allocator fails, the script gets "not enough memory".
#include <vyrModel_modules.h>
#include <vyrOSG_modules.h>
#include <vyr_modules.h>

#include <vyrLua/ObjectRetirer.h>

#include <lua.hpp>

#include <gtest/gtest.h>

#include <cstdlib>
#include <malloc.h>
#include <string>

namespace {

/// Fails once, at the n-th request that needs memory, and works before and after it.
struct Allocator {
  long countdown = 0; // 0: never fails
  long requests = 0;
  bool failed = false;

  static void* allocate(void* self, void* block, std::size_t oldSize, std::size_t newSize) {
    auto& allocator = *static_cast<Allocator*>(self);
    if (newSize == 0) {
      std::free(block);
      return nullptr;
    }
    if (newSize > oldSize) {
      ++allocator.requests;
      if (allocator.countdown > 0 && allocator.requests >= allocator.countdown && !allocator.failed) {
        allocator.failed = true;
        return nullptr;
      }
    }
    return std::realloc(block, newSize);
  }
};

constexpr const char* kScript = R"(
  local simulation = vyrSDK.Simulation()
  local bodies = {}
  for i = 1, 3 do
    local body = vyr.RigidBody("body " .. i)
    body:add(vyrCollide.Geometry(vyrCollide.Box(0.5, 0.5, 0.5)))
    body:setPosition(vyr.Vec3(0, 0, i) + vyr.Vec3(0, 0, 1))
    simulation:add(body)
    bodies[#bodies + 1] = body:getPosition()
  end
  simulation:add(vyrSDK.StepEventListener({ pre = function(time) bodies.time = tostring(time) end }))
  simulation:step()
  local group = vyrOSG.Group:new()
  local node = osg.Node()
  group:addChild(node)
  local text = vyrOSG.Text("label")
  group:addChild(text)
  local camera = osg.Camera()
  local view = camera:getClearColor()
  local child = vyrOSG.Group:new()
  group:addChild(child)
  group:removeChild(child)
  assert(not pcall(function() return child:getNumChildren("too many") end))
  assert(not pcall(function() return vyr.Vec3("wrong") end))
  local uniform = osg.Uniform:new(osg.Uniform.FLOAT, "u")
  group:getOrCreateStateSet():addUniform(uniform)
  vyr.Vec3(1, 2, 3).extra = {}
  group, node, text, camera = nil
  collectgarbage()
)";

/// The interpreter's own libraries stay out of it: theirs closes the process's streams when it fails half way.
int openLibraries(lua_State* state) {
  luaL_openlibs(state);
  return 0;
}

int openAll(lua_State* state) {
  for (const auto& module : vyrModules::kModules)
    module.open(state);
  for (const auto& module : vyrModelModules::kModules)
    module.open(state);
  for (const auto& module : vyrOSGModules::kModules)
    module.open(state);
  return 0;
}

int runScript(lua_State* state) {
  if (luaL_loadbuffer(state, kScript, std::char_traits<char>::length(kScript), "=script") != 0)
    return lua_error(state);
  lua_call(state, 0, 0);
  return 0;
}

/// Runs a function with the n-th request failing; the error text, "" for success.
std::string runFailing(Allocator& allocator, lua_State* state, lua_CFunction function, long countdown) {
  allocator.requests = 0;
  allocator.failed = false;
  allocator.countdown = countdown;
  const int status = lua_cpcall(state, function, nullptr);
  allocator.countdown = 0;
  std::string text;
  if (status != 0) {
    text = lua_tostring(state, -1) != nullptr ? lua_tostring(state, -1) : "an error without a text";
    lua_pop(state, 1);
  }
  return text;
}

/// Every request of the first thousand, then ever fewer; all of them where VYR_EVERY_ALLOCATION is set.
long following(long request) {
  return std::getenv("VYR_EVERY_ALLOCATION") != nullptr || request < 1000 ? request + 1 : request + request / 64 + 1;
}

/// Bytes that the process has allocated. The sanitizers' allocator is not counted: they report leaks themselves.
double bytesInUse() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

/// What may stay after all failures: tables of the libraries, and the few objects whose own end failed for want of
/// memory, for the interpreter ends each object once. A simulation that stayed at every tenth failure is more.
constexpr double kMostGrowth = 1048576.0;

TEST(AllocationFailure, StartUpEndsWithAnError) {
  double before = 0.0;
  for (long request = 1;; request = following(request)) {
    SCOPED_TRACE(request);
    Allocator allocator;
    lua_State* state = lua_newstate(&Allocator::allocate, &allocator);
    ASSERT_NE(state, nullptr);
    ASSERT_EQ(runFailing(allocator, state, &openLibraries, 0), "");
    const std::string text = runFailing(allocator, state, &openAll, request);
    const bool failed = allocator.failed;
    lua_close(state);
    // What is made once is there after the first time.
    if (request == 1)
      before = bytesInUse();
    if (!failed) {
      EXPECT_EQ(text, "");
      break;
    }
    EXPECT_EQ(text, "not enough memory");
  }
  EXPECT_LT(bytesInUse() - before, kMostGrowth);
}

TEST(AllocationFailure, AStateItselfIsRefused) {
  Allocator allocator;
  allocator.countdown = 1;
  EXPECT_EQ(lua_newstate(&Allocator::allocate, &allocator), nullptr);
}

TEST(AllocationFailure, AScriptEndsWithAnError) {
  Allocator allocator;
  lua_State* state = lua_newstate(&Allocator::allocate, &allocator);
  ASSERT_NE(state, nullptr);
  ASSERT_EQ(runFailing(allocator, state, &openLibraries, 0), "");
  ASSERT_EQ(runFailing(allocator, state, &openAll, 0), "");
  vyrLua::ObjectRetirer retirer(state);
  for (int warmUp = 0; warmUp < 3; ++warmUp) {
    ASSERT_EQ(runFailing(allocator, state, &runScript, 0), "");
    lua_gc(state, LUA_GCCOLLECT, 0);
  }
  const double before = bytesInUse();
  for (long request = 1;; request = following(request)) {
    SCOPED_TRACE(request);
    const std::string text = runFailing(allocator, state, &runScript, request);
    lua_gc(state, LUA_GCCOLLECT, 0);
    if (!allocator.failed) {
      EXPECT_EQ(text, "");
      break;
    }
    // A failure inside of a protected call of the script, in its end of an object, or in a listener stays there.
    EXPECT_TRUE(text.empty() || text.find("not enough memory") != std::string::npos) << text;
  }
  lua_gc(state, LUA_GCCOLLECT, 0);
  EXPECT_LT(bytesInUse() - before, kMostGrowth);
  lua_close(state);
  retirer.stop();
}

} // namespace
