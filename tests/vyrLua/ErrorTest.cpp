// What a script reads when a bound call fails.
#include <vyrLua/Error.h>

#include <tolua++.h>

extern "C" {
#include <lualib.h>
}

#include <gtest/gtest.h>

#include <memory>

namespace {

/// Takes (A, number); the runtime's own words for a mismatch are the yardstick: `f` asks vyrLua::error, `g` the
/// runtime.
template <bool Own>
int takesTypeAndNumber(lua_State* state) {
  tolua_Error record;
  if (tolua_isusertype(state, 1, "A", 0, &record) && tolua_isnumber(state, 2, 0, &record) &&
      tolua_isnoobj(state, 3, &record))
    return 0;
  if (Own)
    vyrLua::error(state, "#ferror in function 'f'.", &record);
  tolua_error(state, "#ferror in function 'f'.", &record);
  return 0;
}

template <bool Own>
int takesValue(lua_State* state) {
  tolua_Error record;
  tolua_isnumber(state, 1, 0, &record);
  if (Own)
    vyrLua::error(state, "#vinvalid type in variable assignment.", &record);
  tolua_error(state, "#vinvalid type in variable assignment.", &record);
  return 0;
}

int hasNullSelf(lua_State* state) {
  vyrLua::error(state, "invalid 'self' in function 'h'", nullptr);
}
int hasNoRecord(lua_State* state) {
  vyrLua::error(state, "#ferror in function 'h'.", nullptr);
}
int hasPercent(lua_State* state) {
  vyrLua::error(state, "100% s%s", nullptr);
}
int hasNullText(lua_State* state) {
  vyrLua::error(state, nullptr, nullptr);
}

int makeB(lua_State* state) {
  static int object;
  tolua_pushusertype(state, &object, "B");
  return 1;
}

class Error : public testing::Test {
protected:
  Error()
      : m_state(luaL_newstate(), &lua_close) {
    lua_State* state = m_state.get();
    luaL_openlibs(state);
    tolua_open(state);
    tolua_usertype(state, "A");
    tolua_usertype(state, "B");
    tolua_module(state, nullptr, 0);
    tolua_beginmodule(state, nullptr);
    tolua_cclass(state, "A", "A", "", nullptr);
    tolua_beginmodule(state, "A");
    tolua_function(state, ".call", &takesTypeAndNumber<true>);
    tolua_endmodule(state);
    tolua_cclass(state, "B", "B", "", nullptr);
    tolua_function(state, "f", &takesTypeAndNumber<true>);
    tolua_function(state, "g", &takesTypeAndNumber<false>);
    tolua_function(state, "v", &takesValue<true>);
    tolua_function(state, "w", &takesValue<false>);
    tolua_function(state, "h", &hasNullSelf);
    tolua_function(state, "r", &hasNoRecord);
    tolua_function(state, "p", &hasPercent);
    tolua_function(state, "n", &hasNullText);
    tolua_function(state, "B_", &makeB);
    tolua_endmodule(state);
  }
  ~Error() override { vyrLua::setErrorHintProvider(nullptr); }

  /// Runs the chunk as the script "s.lua" and gives its error's text.
  std::string failureOf(const std::string& chunk) {
    lua_State* state = m_state.get();
    if (luaL_loadbuffer(state, chunk.data(), chunk.size(), "@s.lua") == 0 && lua_pcall(state, 0, 0, 0) == 0) {
      ADD_FAILURE() << "no error: " << chunk;
      return {};
    }
    const std::string text = lua_tostring(state, -1);
    lua_settop(state, 0);
    return text;
  }

  std::unique_ptr<lua_State, void (*)(lua_State*)> m_state;
};

TEST_F(Error, BeginsWithTheRuntimesOwnLines) {
  for (const char* arguments : {"()", "(B_(),1)", "(nil,'a')", "(nil,1,2)", "(nil,1,B_())", "(A,1)", "(io.stdout)",
                                "({})", "(nil, 1, nil, nil, 'x')"}) {
    std::string own = failureOf(std::string("f") + arguments);
    std::string runtimes = failureOf(std::string("g") + arguments);
    ASSERT_EQ('\n', runtimes.back());
    runtimes.pop_back();
    EXPECT_EQ(runtimes, own.substr(0, runtimes.size())) << arguments;
  }
}

TEST_F(Error, ArgumentMismatchListsWhatWasPassed) {
  EXPECT_EQ("s.lua:1: error in function 'f'.\n"
            "     argument #1 is 'string'; 'A' expected.\n"
            "     passed: (string \"abc\", number 2.5, true, nil, table, B, class A, function)",
            failureOf("f('abc', 2.5, true, nil, {}, B_(), A, print)"));
  EXPECT_EQ("s.lua:1: error in function 'f'.\n"
            "     argument #2 is '[no object]'; 'number' expected.\n"
            "     passed: (nil)",
            failureOf("f(nil)"));
}

TEST_F(Error, LongStringsAndListsAreCut) {
  const std::string text = failureOf("f(('x'):rep(100), 1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16,17)");
  EXPECT_NE(std::string::npos, text.find("string \"" + std::string(40, 'x') + "\"..., number 1"));
  EXPECT_EQ("number 15, ...)", text.substr(text.size() - 15));
}

TEST_F(Error, ListingLeavesTheArgumentsAsTheyAre) {
  EXPECT_EQ("number", failureOf("local function t(...) pcall(f, ...) error(type((select(1, ...))), 0) end t(1)"));
}

TEST_F(Error, AssignmentMismatch) {
  EXPECT_EQ("s.lua:1: invalid type in variable assignment.\n     value is 'string'; 'number' expected.",
            failureOf("v('x')"));
  EXPECT_EQ(failureOf("w('x')"), failureOf("v('x')") + "\n");
}

TEST_F(Error, TextWithoutRecordStandsAlone) {
  EXPECT_EQ("s.lua:2: invalid 'self' in function 'h'", failureOf("\nh()"));
  EXPECT_EQ("s.lua:1: error in function 'h'.", failureOf("r()"));
  EXPECT_EQ("s.lua:1: 100% s%s", failureOf("p()"));
  EXPECT_EQ("s.lua:1: ", failureOf("n()"));
}

TEST_F(Error, FindsTheScriptsLineBehindCallEventsAndPcall) {
  EXPECT_EQ(0u, failureOf("\n\nA(1)").find("s.lua:3: error in function 'f'.\n     argument #1 is 'class A'"));
  EXPECT_EQ("s.lua:1: invalid 'self' in function 'h'", failureOf("error(select(2, pcall(h)), 0)"));
}

TEST_F(Error, HintProviderAppendsItsLines) {
  EXPECT_EQ(nullptr, vyrLua::setErrorHintProvider([](const vyrLua::ErrorReport& report) {
              return std::string("     hint: ") + report.text + " " + std::to_string(report.argumentCount) +
                     (report.record != nullptr ? " #" + std::to_string(report.record->index) : "");
            }));
  EXPECT_EQ("s.lua:1: error in function 'f'.\n     argument #2 is '[no object]'; 'number' expected.\n"
            "     passed: (nil)\n     hint: #ferror in function 'f'. 1 #2",
            failureOf("f(nil)"));
  EXPECT_EQ("s.lua:1: invalid 'self' in function 'h'\n     hint: invalid 'self' in function 'h' 3",
            failureOf("h(1, 2, 3)"));
  EXPECT_NE(nullptr, vyrLua::setErrorHintProvider(nullptr));
}

} // namespace
