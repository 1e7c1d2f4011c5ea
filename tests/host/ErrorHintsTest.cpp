// What the program adds to the errors of failed calls.
#include "ErrorHints.h"
#include "ApiManifest.h"

#include <tolua++.h>

extern "C" {
#include <lualib.h>
}

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>

namespace {

using testing::HasSubstr;
using testing::Not;
using vyrHost::ApiFunction;
using vyrHost::ApiManifest;
using vyrHost::ApiParameter;

constexpr const char* kText = R"(module    test_Wheel
type      t::Wheel
table     t
class     t.Part type "t::Part" base "" collector no
function  t.Part.setName 00 (self, string const std::string& name) -> string name
class     t.Wheel type "t::Wheel" base "t::Part" collector yes
function  t.Wheel.new 00 (class, number double radius, number int spokes = 12) -> t::Wheel (not owned)
function  t.Wheel..call 00 (class, number double radius, number int spokes = 12) -> t::Wheel (owned)
function  t.Wheel.mount 00 (self, t::Part* part) -> nothing
function  t.Wheel.mount 01 (self, const t::Part& part, const vyr::Vec3& at = vyr::Vec3(0, 0, 1), boolean bool fixed = true) -> nothing
function  t.Wheel.mount 02 (self, string std::map<int, int> name) -> nothing
function  t.lerp 00 (number double a, number double b) -> number
function  t.lerp 00 (number double a, number double b) -> number
)";

class ErrorHints : public testing::Test {
protected:
  ErrorHints()
      : m_state(luaL_newstate(), &lua_close) {
    std::istringstream input(kText);
    m_manifest.read(input);
    lua_State* state = m_state.get();
    luaL_openlibs(state);
    tolua_open(state);
    for (const char* type : {"t::Part", "t::Wheel"})
      tolua_usertype(state, type);
    tolua_module(state, nullptr, 0);
    tolua_beginmodule(state, nullptr);
    tolua_module(state, "t", 0);
    tolua_beginmodule(state, "t");
    tolua_cclass(state, "Part", "t::Part", "", nullptr);
    tolua_cclass(state, "Wheel", "t::Wheel", "t::Part", nullptr);
    tolua_endmodule(state);
    tolua_endmodule(state);
    s_manifest = &m_manifest;
    lua_pushcfunction(state, &explain);
    lua_setglobal(state, "explain");
    static int objects[2];
    tolua_pushusertype(state, &objects[0], "t::Wheel");
    lua_setglobal(state, "wheel");
    tolua_pushusertype(state, &objects[1], "t::Part");
    lua_setglobal(state, "part");
  }

  /// explain(text, failed index, expected type, arguments...)
  static int explain(lua_State* state) {
    const std::string text = lua_tostring(state, 1);
    const std::string type = lua_tostring(state, 3);
    tolua_Error record = {static_cast<int>(lua_tonumber(state, 2)), 0, type.c_str()};
    for (int index = 0; index < 3; ++index)
      lua_remove(state, 1);
    const vyrLua::ErrorReport report = {state, text.c_str(), &record, lua_gettop(state)};
    // A message's own pieces stand above the arguments by then.
    lua_pushliteral(state, "a piece of the message");
    lua_pushstring(state, vyrHost::explainFailedCall(*s_manifest, report).c_str());
    return 1;
  }

  std::string run(const std::string& call) {
    lua_State* state = m_state.get();
    EXPECT_EQ(0, luaL_dostring(state, ("return " + call).c_str())) << lua_tostring(state, -1);
    const std::string result = lua_tostring(state, -1);
    lua_settop(state, 0);
    return result;
  }

  static const ApiManifest* s_manifest;
  ApiManifest m_manifest;
  std::unique_ptr<lua_State, void (*)(lua_State*)> m_state;
};

const ApiManifest* ErrorHints::s_manifest = nullptr;

TEST_F(ErrorHints, ManifestListsOverloads) {
  const std::vector<ApiFunction> mount = m_manifest.findMethods("t::Wheel", "mount");
  ASSERT_EQ(3u, mount.size());
  EXPECT_EQ("t.Wheel:mount(t::Part part or nil)", mount[0].describe());
  EXPECT_EQ("t.Wheel:mount(t::Part part, vyr::Vec3 at = vyr::Vec3(0, 0, 1), boolean fixed = true)",
            mount[1].describe());
  EXPECT_EQ("const t::Part", mount[1].parameters[0].type);
  EXPECT_FALSE(mount[1].parameters[0].nullable);
  ASSERT_EQ(1u, mount[2].parameters.size());
  EXPECT_EQ(ApiParameter::STRING, mount[2].parameters[0].kind);
  ASSERT_EQ(1u, m_manifest.findFreeFunctions("lerp").size());
  EXPECT_EQ("t.lerp(number a, number b)", m_manifest.findFreeFunctions("lerp")[0].describe());
  EXPECT_EQ("t.Wheel(number radius, number spokes = 12)", m_manifest.findMethods("t::Wheel", ".call")[0].describe());
}

TEST_F(ErrorHints, ManifestFindsFunctionsOfBases) {
  ASSERT_EQ(1u, m_manifest.findMethods("t::Wheel", "setName").size());
  EXPECT_TRUE(m_manifest.findMethods("t::Part", "mount").empty());
  EXPECT_TRUE(m_manifest.findMethods("t::Nothing", "mount").empty());
  EXPECT_TRUE(m_manifest.findFreeFunctions("mount").empty());
}

TEST_F(ErrorHints, ClosestCandidateComesFirst) {
  const std::string text = run("explain(\"#ferror in function 'mount'.\", 2, 't::Part', wheel, part, 1, true)");
  const std::size_t first = text.find("candidate: t.Wheel:mount(t::Part part, vyr::Vec3 at");
  const std::size_t second = text.find("candidate: t.Wheel:mount(t::Part part or nil)");
  ASSERT_NE(std::string::npos, first) << text;
  ASSERT_NE(std::string::npos, second) << text;
  EXPECT_LT(first, second);
  EXPECT_EQ(0u, run("explain(\"#ferror in function 'mount'.\", 2, 't::Part', wheel, 'axle', 2)")
                    .find("     candidate: t.Wheel:mount(string name)"));
}

TEST_F(ErrorHints, PointForColon) {
  EXPECT_THAT(run("explain(\"#ferror in function 'new'.\", 1, 't::Wheel', 0.5)"),
              HasSubstr("hint: write ':' instead of '.': t.Wheel:new(number radius, number spokes = 12)"));
}

TEST_F(ErrorHints, ColonForPoint) {
  EXPECT_THAT(run("explain(\"#ferror in function 'lerp'.\", 1, 'number', t, 1, 2)"),
              HasSubstr("hint: write '.' instead of ':': t.lerp(number a, number b)"));
}

TEST_F(ErrorHints, SurplusStringOfANestedCall) {
  EXPECT_THAT(run("explain(\"#ferror in function 'mount'.\", 3, '[no object]', wheel, part, 'name')"),
              HasSubstr("hint: a surplus value is often the second result"));
}

TEST_F(ErrorHints, NilAndWrongText) {
  EXPECT_THAT(run("explain(\"#ferror in function 'mount'.\", 2, 'const t::Part', wheel, nil)"),
              HasSubstr("hint: nil is not accepted here"));
  EXPECT_THAT(run("explain(\"#ferror in function 'new'.\", 2, 'number', t.Wheel, 'wide')"),
              HasSubstr("hint: the string is no number"));
}

TEST_F(ErrorHints, MisspeltNames) {
  EXPECT_EQ("     hint: was 'mount' meant?",
            vyrHost::explainMissingName(m_manifest, "s.lua:1: attempt to call method 'muont' (a nil value)"));
  EXPECT_EQ("     hint: was 'setName' meant?",
            vyrHost::explainMissingName(m_manifest, "s.lua:1: attempt to call method 'setname' (a nil value)"));
  EXPECT_EQ("     hint: was 'Wheel' meant?",
            vyrHost::explainMissingName(m_manifest, "s.lua:1: attempt to index field 'wheel' (a nil value)"));
  EXPECT_EQ("", vyrHost::explainMissingName(m_manifest, "s.lua:1: attempt to call method 'fly' (a nil value)"));
  EXPECT_EQ("", vyrHost::explainMissingName(m_manifest, "s.lua:1: attempt to call method 'mount' (a number value)"));
  EXPECT_EQ("", vyrHost::explainMissingName(m_manifest, "s.lua:1: 'muont' (a nil value)"));
}

TEST_F(ErrorHints, UnknownFunctionsAndOtherTextsAreLeftAlone) {
  EXPECT_EQ("", run("explain(\"#ferror in function 'fly'.\", 2, 'number', wheel, true)"));
  EXPECT_EQ("", run("explain('#vinvalid type in variable assignment.', 2, 'number', wheel, true)"));
}

} // namespace
