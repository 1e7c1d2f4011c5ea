// What generated wrappers do: tests, conversions, chains, results, variables, arrays, operators.
#include "LuaState.h"
#include "Machine.h"

#include <gtest/gtest.h>

int tolua_vyrTest_Machinery_open(lua_State* state);
int luaopen_vyrTest_Machinery(lua_State* state);

namespace {

using bindingtest::lastRaised;

class Machinery : public ::testing::Test {
protected:
  Machinery() { tolua_vyrTest_Machinery_open(lua.get()); }
  bindingtest::LuaState lua;
};

TEST_F(Machinery, OpenFunctionsReturnOne) {
  EXPECT_EQ(1, tolua_vyrTest_Machinery_open(lua.get()));
  EXPECT_EQ(1, luaopen_vyrTest_Machinery(lua.get()));
}

TEST_F(Machinery, ConstantsStandWhereTheyAreDeclared) {
  EXPECT_EQ("0 1 7 12", lua.eval("machine.OFF, machine.ON, machine.AUTO, machine.LIMIT"));
  EXPECT_EQ("-2.5 nil", lua.eval("SCRIPT_ONLY, machine.SCRIPT_ONLY"));
}

TEST_F(Machinery, NumbersAreConvertedToTheParametersType) {
  EXPECT_EQ("3 -3 -2147483648", lua.eval("machine.toInt(3.9), machine.toInt(-3.9), machine.toInt(0/0)"));
  EXPECT_EQ("4294967295 5000000000 1", lua.eval("machine.toUnsigned(-1.9), string.format('%.0f', machine.toSize(5e9)), "
                                                "machine.toShort(65537)"));
  EXPECT_EQ("7 true", lua.eval("machine.toMode(7.9), math.abs(machine.toFloat(0.1) - 0.1) > 1e-10"));
  // What reads as a number passes the runtime's test, as everywhere in Lua.
  EXPECT_EQ("12", lua.eval("machine.toInt('12')"));
}

TEST_F(Machinery, DefaultsStandInForAbsentArguments) {
  EXPECT_EQ("5", lua.eval("machine.scaled(2)"));
  EXPECT_EQ("6", lua.eval("machine.scaled(2, 3)"));
  EXPECT_EQ("-6", lua.eval("machine.scaled(2, 3, true)"));
  EXPECT_EQ("true", lua.eval("machine.isNull()"));
  EXPECT_EQ("true false", lua.eval("machine.isNull(nil), machine.isNull(machine.Part())"));
}

TEST_F(Machinery, ObjectDefaultsMakeAShorterOverload) {
  EXPECT_EQ("6", lua.eval("machine.moved(5)"));
  EXPECT_EQ("8", lua.eval("machine.moved(5, machine.Vector:new_local(3, 0, 0))"));
}

TEST_F(Machinery, SurplusArgumentsFailTheCall) {
  EXPECT_EQ("#ferror in function 'toInt'.", lua.raised("machine.toInt(1, 2)"));
  EXPECT_TRUE(lastRaised().hasRecord);
  EXPECT_EQ(2, lastRaised().index);
  EXPECT_EQ("[no object]", lastRaised().type);
}

TEST_F(Machinery, IndexZeroReportsItsOwnFailingTest) {
  EXPECT_EQ("#ferror in function 'get'.", lua.raised("machine.Value(1):get('x')"));
  EXPECT_EQ(2, lastRaised().index);
  EXPECT_EQ("[no object]", lastRaised().type);
}

TEST_F(Machinery, BothConstructorsReportNew) {
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("machine.Value:new({})"));
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("machine.Value:new_local({})"));
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("machine.Value({})"));
}

TEST_F(Machinery, ChainsTryTheLastOverloadFirst) {
  EXPECT_EQ("3 6", lua.run("local v = machine.Value(3) return v:get(), v:get(2)"));
}

TEST_F(Machinery, AFailedTestLeavesNothingForThePreviousOverload) {
  // An object of a type that is no class makes the runtime's type test leave two values on the stack, which would count
  // as surplus arguments.
  EXPECT_EQ("const machine::Opaque 0", lua.run("local v = machine.Assembly():getOpaque() return v, machine.which(v)"));
}

TEST_F(Machinery, StaticFunctionsTestTheClassTable) {
  EXPECT_EQ("0", lua.eval("machine.Value:alive()"));
  EXPECT_EQ("#ferror in function 'alive'.", lua.raised("machine.Value.alive()"));
  EXPECT_EQ("#ferror in function 'alive'.", lua.raised("machine.Part.alive(machine.Value)"));
}

TEST_F(Machinery, NumbersByReferenceComeBack) {
  EXPECT_EQ("2 1", lua.eval("machine.swapNumbers(1, 2)"));
  EXPECT_EQ("5 1.5 4", lua.eval("machine.sum(1.5, 4.9)"));
}

TEST_F(Machinery, BooleansByReferenceComeBack) {
  EXPECT_EQ("false", lua.eval("machine.flip(true)"));
}

TEST_F(Machinery, StringsByReferenceComeBackBehindTheResult) {
  EXPECT_EQ("true abcd cd", lua.eval("machine.extend('ab', 'cd')"));
}

TEST_F(Machinery, StringsByValueDoNotComeBack) {
  EXPECT_EQ("a/b", lua.eval("machine.join('a', 'b')"));
}

TEST_F(Machinery, NilStringsReadAsEmpty) {
  EXPECT_EQ("/", lua.eval("machine.join(nil, nil)"));
}

TEST_F(Machinery, ANullStringIsNil) {
  EXPECT_EQ("nil", lua.eval("machine.nothing()"));
}

TEST_F(Machinery, ReferencesAndValuesRejectNil) {
  EXPECT_EQ("#ferror in function 'read'.", lua.raised("machine.read(nil)"));
  EXPECT_EQ("#ferror in function 'byValue'.", lua.raised("machine.byValue(nil)"));
  EXPECT_EQ("3", lua.eval("machine.byValue(machine.Value(3))"));
}

TEST_F(Machinery, ConstResultsCarryTheConstName) {
  EXPECT_EQ("const machine::Value", lua.eval("machine.makeConst()"));
  EXPECT_EQ("5", lua.eval("machine.makeConst():get()"));
}

TEST_F(Machinery, VariablesReadAndWrite) {
  EXPECT_EQ("true 7 2 hi 9",
            lua.run("local a = machine.Assembly() a.enabled = true a.count = 7.9 a.mode = 2 a.label = 'hi'"
                    "a.origin = machine.Vector:new_local(9, 8, 7)"
                    "return a.enabled, a.count, a.mode, a.label, a.origin._v[0]"));
}

TEST_F(Machinery, VariablesRejectOtherTypes) {
  for (const char* assignment :
       {"a.enabled = 1", "a.count = 'x'", "a.label = {}", "a.origin = nil", "a.origin = a", "a.part = a"}) {
    EXPECT_EQ("#vinvalid type in variable assignment.",
              lua.raised(std::string("local a = machine.Assembly() ") + assignment))
        << assignment;
    EXPECT_TRUE(lastRaised().hasRecord);
  }
}

TEST_F(Machinery, ReadOnlyVariablesHaveNoSetter) {
  EXPECT_EQ("41", lua.eval("machine.Assembly().serial"));
  lua.run("a = machine.Assembly() a.serial = 1");
  EXPECT_EQ("41", lua.eval("machine.Assembly().serial"));
}

TEST_F(Machinery, StaticConstantsNeedNoObject) {
  EXPECT_EQ("64", lua.eval("machine.Assembly.CAPACITY"));
}

TEST_F(Machinery, PointerFieldsTakeNil) {
  EXPECT_EQ("nil machine::Part nil",
            lua.run("local a = machine.Assembly() local p = machine.Part() local before = a.part a.part = p"
                    " local during = a.part a.part = nil return before, during, a.part"));
}

TEST_F(Machinery, ObservedFieldsBecomeNil) {
  EXPECT_EQ("machine::Part", lua.run("a = machine.Assembly() p = machine.Part() a.watched = p return a.watched"));
  lua.run("p = nil");
  lua.collect();
  EXPECT_EQ("nil", lua.eval("a.watched"));
}

TEST_F(Machinery, CountedFieldsHold) {
  lua.run("a = machine.Assembly() p = machine.Part() a.held = p");
  EXPECT_EQ("2 machine::Part", lua.eval("p:count(), a:heldPart()"));
  lua.run("a.held = nil");
  EXPECT_EQ("1", lua.eval("p:count()"));
}

TEST_F(Machinery, NestedClassesStandInTheirOuterOnes) {
  EXPECT_EQ("machine::Assembly::Slot 3", lua.run("local s = machine.Assembly():slot() return s, s.index"));
  EXPECT_EQ("table", lua.eval("type(machine.Assembly.Slot)"));
}

TEST_F(Machinery, RenamedFunctionsBearTheirLuaName) {
  EXPECT_EQ("nil function", lua.eval("rawget(machine.Assembly, 'setDown'), type(machine.Assembly.lower)"));
}

TEST_F(Machinery, ABaseWithTheWordVirtualIsNoBase) {
  EXPECT_EQ("none", lua.raised("local a = machine.Assembly() a:hold(nil)"));
  EXPECT_EQ("#ferror in function 'hold'.", lua.raised("local a = machine.Assembly() a:hold(a)"));
}

TEST_F(Machinery, ArraysCheckTheirIndex) {
  lua.run("v = machine.Vector:new_local(1, 2, 3)");
  EXPECT_EQ("1 2 3 3", lua.eval("v._v[0], v._v[1], v._v[2], v._v[2.9]"));
  lua.run("v._v[2] = 30");
  EXPECT_EQ("30", lua.eval("v._v[2]"));
  for (const char* access : {"return v._v[3]", "return v._v[-1]", "v._v[3] = 0", "v._v[-1] = 0", "return v._v[0/0]"}) {
    EXPECT_EQ("array indexing out of range.", lua.raised(access)) << access;
    EXPECT_FALSE(lastRaised().hasRecord);
  }
  EXPECT_EQ("#vinvalid type in array indexing.", lua.raised("v._v[{}] = 0"));
  EXPECT_TRUE(lastRaised().hasRecord);
}

TEST_F(Machinery, TheArrayOfTheClassTableHasNoElements) {
  EXPECT_EQ("array indexing out of range.", lua.raised("return machine.Vector._v[0]"));
  EXPECT_EQ("array indexing out of range.", lua.raised("machine.Vector._v[0] = 1"));
}

TEST_F(Machinery, OperatorsCompare) {
  EXPECT_EQ("true false true", lua.eval("machine.Value(1) < machine.Value(2), machine.Value(2) < machine.Value(1), "
                                        "machine.Value(2) == machine.Value(2)"));
}

TEST_F(Machinery, OperatorErrorsNameTheLuaOperatorOrTheNativeOne) {
  EXPECT_EQ("#ferror in function '.lt'.", lua.raised("local f = rawget(machine.Value, '.lt') f(machine.Value(1), 1)"));
  EXPECT_EQ(
      "invalid 'self' in function 'operator<'",
      lua.raised(
          "local v = machine.Value:new(1) local w = machine.Value(1) v:delete() rawget(machine.Value, '.lt')(v, w)"));
}

TEST_F(Machinery, IndexOperatorsReadAndWrite) {
  EXPECT_EQ("4 2", lua.run("local v = machine.Vector:new_local(1, 2, 3) v[0] = 4 return v[0], v[1.9]"));
}

TEST_F(Machinery, CastOperatorsBearTheTypesName) {
  EXPECT_EQ("machine::Narrow 1.5",
            lua.run("local n = machine.Vector['.Narrow'](machine.Vector:new_local(1.5, 0, 0)) return n, n.x"));
  EXPECT_EQ("#ferror in function '.Narrow'.", lua.raised("machine.Vector['.Narrow'](1)"));
}

TEST_F(Machinery, GuardedCallsGiveAnEmptyResult) {
  EXPECT_EQ("100 101 0 0",
            lua.run("local a = machine.Assembly() return a:getChild(0), a:getChild(1), a:getChild(2), a:getChild(-1)"));
}

TEST_F(Machinery, NullSelfIsNamedByTheNativeName) {
  lua.run("v = machine.Value:new(1) v:delete()");
  EXPECT_EQ("invalid 'self' in function 'get'", lua.raised("v:get()"));
  EXPECT_FALSE(lastRaised().hasRecord);
  EXPECT_EQ("invalid 'self' in accessing variable 'number'", lua.raised("return v.number"));
  EXPECT_EQ("invalid 'self' in accessing variable 'number'", lua.raised("v.number = 'x'"));
  EXPECT_EQ("invalid 'self' in function 'delete'", lua.raised("v:delete()"));
}

TEST_F(Machinery, ADeletedValueIsNoArgument) {
  lua.run("v = machine.Value(1) v:delete()");
  EXPECT_EQ("#ferror in function 'read'.", lua.raised("machine.read(v)"));
  EXPECT_EQ("const machine::Value", lastRaised().type);
}

} // namespace
