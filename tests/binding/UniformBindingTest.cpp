// The module Uniform: every row of osg.Matrix2, osg.Matrix3, osg.Uniform and osg.Uniform.Callback.
#include "GivenObjects.h"
#include "LuaState.h"

#include <osg/CopyOp>
#include <osg/Matrixd>
#include <osg/Matrixf>
#include <osg/StateSet>
#include <osg/Uniform>
#include <osg/observer_ptr>

#include <gtest/gtest.h>

int tolua_vyrOSG_StateSet_open(lua_State* state);
int tolua_vyrOSG_Uniform_open(lua_State* state);
int luaopen_vyrOSG_Uniform(lua_State* state);

namespace {

using bindingtest::invalidSelf;
using bindingtest::lastRaised;
using bindingtest::mismatch;
using bindingtest::ownedCount;

class UniformBinding : public ::testing::Test {
protected:
  UniformBinding() {
    tolua_vyrOSG_Uniform_open(lua.get());
    tolua_vyrOSG_StateSet_open(lua.get());
    // The vectors and large matrices come from other plugins of a host.
    give("vec2", &vec2, "osg::Vec2");
    give("vec3", &vec3, "osg::Vec3");
    give("vec4", &vec4, "osg::Vec4");
    give("matrixf", &matrixf, "osg::Matrixf");
    give("matrixd", &matrixd, "osg::Matrixd");
    give("copyOp", &copyOp, "osg::CopyOp");
    give("uniform", uniform.get(), "osg::Uniform");
    give("constUniform", readOnly.get(), "const osg::Uniform");
  }
  void give(const char* name, void* object, const char* type) { bindingtest::give(lua, name, object, type); }

  /// The uniform that an expression makes, as the library sees it.
  osg::Uniform* made(const std::string& expression) {
    lua.run("made = " + expression);
    return bindingtest::taken<osg::Uniform>(lua, "made");
  }

  osg::Vec2 vec2{1, 2};
  osg::Vec3 vec3{3, 4, 5};
  osg::Vec4 vec4{6, 7, 8, 9};
  osg::Matrixf matrixf{osg::Matrixf::translate(1, 2, 3)};
  osg::Matrixd matrixd{osg::Matrixd::scale(2, 3, 4)};
  osg::CopyOp copyOp{osg::CopyOp::DEEP_COPY_ALL};
  osg::ref_ptr<osg::Uniform> uniform{new osg::Uniform(osg::Uniform::FLOAT, "uniform")};
  // An object of its own: the runtime knows one type for an address.
  osg::ref_ptr<osg::Uniform> readOnly{new osg::Uniform("uniform", 2.5f)};
  bindingtest::LuaState lua;
};

TEST_F(UniformBinding, OpensAloneAndTwice) {
  bindingtest::LuaState fresh;
  EXPECT_EQ(1, luaopen_vyrOSG_Uniform(fresh.get()));
  EXPECT_EQ(1, tolua_vyrOSG_Uniform_open(fresh.get()));
  EXPECT_EQ("nil nil nil", fresh.eval("vyr, vyrOSG, osg.StateSet"));
  EXPECT_EQ("table table table table",
            fresh.eval("type(osg.Matrix2), type(osg.Matrix3), type(osg.Uniform), type(osg.Uniform.Callback)"));
  EXPECT_EQ("osg::Uniform", fresh.eval("osg.Uniform:new()"));
}

TEST_F(UniformBinding, TypeConstants) {
  const std::pair<const char*, int> types[] = {{"FLOAT", 5126},
                                               {"FLOAT_VEC2", 35664},
                                               {"FLOAT_VEC3", 35665},
                                               {"FLOAT_VEC4", 35666},
                                               {"INT", 5124},
                                               {"INT_VEC2", 35667},
                                               {"INT_VEC3", 35668},
                                               {"INT_VEC4", 35669},
                                               {"BOOL", 35670},
                                               {"BOOL_VEC2", 35671},
                                               {"BOOL_VEC3", 35672},
                                               {"BOOL_VEC4", 35673},
                                               {"FLOAT_MAT2", 35674},
                                               {"FLOAT_MAT3", 35675},
                                               {"FLOAT_MAT4", 35676},
                                               {"SAMPLER_1D", 35677},
                                               {"SAMPLER_2D", 35678},
                                               {"SAMPLER_3D", 35679},
                                               {"SAMPLER_CUBE", 35680},
                                               {"SAMPLER_1D_SHADOW", 35681},
                                               {"SAMPLER_2D_SHADOW", 35682},
                                               {"UNDEFINED", 0}};
  for (const auto& [name, value] : types)
    EXPECT_EQ(std::to_string(value), lua.eval(std::string("osg.Uniform.") + name)) << name;
  EXPECT_EQ("22", lua.run("local n = 0 for k, v in pairs(osg.Uniform) do"
                          " if type(v) == 'number' then n = n + 1 end end return n"));
}

// Both matrices have the same rows; the parameter is their number of rows.
class MatrixBinding : public ::testing::TestWithParam<int> {
protected:
  MatrixBinding() { tolua_vyrOSG_Uniform_open(lua.get()); }
  std::string className() const { return "osg.Matrix" + std::to_string(GetParam()); }
  std::string typeName() const { return "osg::Matrix" + std::to_string(GetParam()); }
  int count() const { return GetParam() * GetParam(); }
  /// "1, 2, ... n", plus `first` - 1 each.
  std::string numbers(int first, int howMany, const char* separator) const {
    std::string text;
    for (int i = 0; i < howMany; ++i)
      text += (i > 0 ? separator : "") + std::to_string(first + i);
    return text;
  }
  /// Runs code with the class as C, then gives all elements of m.
  std::string elements(const std::string& code) {
    return lua.run("local C = " + className() + " " + code + " local t = {} for i = 0, " + std::to_string(count() - 1) +
                   " do t[#t + 1] = m[i] end return unpack(t)");
  }
  bindingtest::LuaState lua;
};

TEST_P(MatrixBinding, Constructors) {
  // The library starts the larger one with zeroes.
  const std::string start = GetParam() == 2 ? "1 0 0 1" : "0 0 0 0 0 0 0 0 0";
  const std::string list = numbers(1, count(), ", ");
  for (const char* maker : {"C:new", "C:new_local", "C"}) {
    const bool isCall = std::string(maker) == "C";
    const std::string open = isCall ? "C(" : std::string(maker) + "(";
    EXPECT_EQ(start, elements("local m = " + open + ")")) << maker;
    EXPECT_EQ(numbers(1, count(), " "), elements("local m = " + open + list + ")")) << maker;
    EXPECT_EQ(numbers(1, count(), " "), elements("local o = C(" + list + ") local m = " + open + "o) o:makeIdentity()"))
        << maker;
    EXPECT_EQ(mismatch("new"), lua.raised("local C = " + className() + " return " + open + "1)")) << maker;
    EXPECT_EQ(mismatch("new"), lua.raised("local C = " + className() + " return " + open + "nil)")) << maker;
  }
}

TEST_P(MatrixBinding, NewIsNotOwnedTheOthersAre) {
  EXPECT_EQ("0", ownedCount(lua, className() + ":new()"));
  EXPECT_EQ("1", ownedCount(lua, className() + ":new_local()"));
  EXPECT_EQ("1", ownedCount(lua, className() + "()"));
  EXPECT_EQ("function", lua.eval("type(" + className() + "['.collector'])"));
}

TEST_P(MatrixBinding, SetAndIdentity) {
  EXPECT_EQ(numbers(11, count(), " "), elements("local m = C() m:set(" + numbers(11, count(), ", ") + ")"));
  EXPECT_EQ(numbers(1, count(), " "), elements("local m = C() m:set(C(" + numbers(1, count(), ", ") + "))"));
  EXPECT_EQ(GetParam() == 2 ? "1 0 0 1" : "1 0 0 0 1 0 0 0 1",
            elements("local m = C(" + numbers(1, count(), ", ") + ") m:makeIdentity()"));
  EXPECT_EQ(mismatch("set"), lua.raised(className() + "():set(1, 2)"));
  EXPECT_EQ(mismatch("set"), lua.raised(className() + "():set(nil)"));
  EXPECT_EQ(mismatch("makeIdentity"), lua.raised(className() + "():makeIdentity(1)"));
}

TEST_P(MatrixBinding, ElementsByIndex) {
  lua.run("m = " + className() + "(" + numbers(1, count(), ", ") + ")");
  EXPECT_EQ("2 0.5", lua.run("local before = m[1] m[1] = 0.5 return before, m[1]"));
  // A number with a fraction is cut, and a value is narrowed to single precision.
  EXPECT_EQ("0.5", lua.eval("m[1.9]"));
  EXPECT_EQ("true", lua.run("m[0] = 0.1 return m[0] ~= 0.1 and math.abs(m[0] - 0.1) < 1e-8"));
  EXPECT_EQ(mismatch(".geti"), lua.raised("return getmetatable(m)['.geti'](m, {})"));
  EXPECT_EQ(mismatch(".seti"), lua.raised("getmetatable(m)['.seti'](m, {}, 1)"));
  EXPECT_EQ(mismatch(".seti"), lua.raised("getmetatable(m)['.seti'](m, 1, {})"));
}

// Without the guard this reads and writes past the matrix.
TEST_P(MatrixBinding, ElementsOutsideReadAsZeroAndAreNotWritten) {
  lua.run("m = " + className() + "(" + numbers(1, count(), ", ") + ")");
  for (const std::string& index : {std::string("-1"), std::to_string(count()), std::string("100000000")}) {
    EXPECT_EQ("0", lua.eval("m[" + index + "]")) << index;
    EXPECT_EQ("none", lua.raised("m[" + index + "] = 5")) << index;
  }
  EXPECT_EQ(numbers(1, count(), " "), elements("local m = m"));
}

TEST_P(MatrixBinding, AReadOnlyMatrixGivesItsElements) {
  osg::Matrix2 two(1, 2, 3, 4);
  osg::Matrix3 three(1, 2, 3, 4, 5, 6, 7, 8, 9);
  void* matrix = GetParam() == 2 ? static_cast<void*>(&two) : static_cast<void*>(&three);
  bindingtest::give(lua, "view", matrix, ("const " + typeName()).c_str());
  EXPECT_EQ("2", lua.eval(className() + "['.geti'](view, 1)"));
  EXPECT_EQ(mismatch(".seti"), lua.raised(className() + "['.seti'](view, 1, 2)"));
  EXPECT_EQ(mismatch("set"), lua.raised(className() + ".set(view, view)"));
}

TEST_P(MatrixBinding, DeleteLeavesANullSelf) {
  EXPECT_EQ("", lua.run("m = " + className() + "() m:delete()"));
  EXPECT_EQ(invalidSelf("delete"), lua.raised("m:delete()"));
  lua.run("m = nil");
  lua.collect();
}

TEST_P(MatrixBinding, NullSelf) {
  bindingtest::giveNull(lua, "null", typeName().c_str());
  EXPECT_EQ(invalidSelf("set"), lua.raised("null:set(" + numbers(1, count(), ", ") + ")"));
  EXPECT_EQ(invalidSelf("set"), lua.raised("null:set(" + className() + "())"));
  EXPECT_EQ(invalidSelf("makeIdentity"), lua.raised("null:makeIdentity()"));
  EXPECT_EQ(invalidSelf("operator[]"), lua.raised("return null[0]"));
  EXPECT_EQ(invalidSelf("operator&[]"), lua.raised("null[0] = 1"));
  EXPECT_FALSE(lastRaised().hasRecord);
}

INSTANTIATE_TEST_SUITE_P(Binding, MatrixBinding, ::testing::Values(2, 3));

TEST_F(UniformBinding, ByTypeAndNameTheNameComesBack) {
  EXPECT_EQ("osg::Uniform u", lua.eval("osg.Uniform:new(osg.Uniform.FLOAT, 'u')"));
  EXPECT_EQ("osg::Uniform u", lua.eval("osg.Uniform:new_local(osg.Uniform.FLOAT, 'u')"));
  // The class call's event keeps one value only.
  EXPECT_EQ("osg::Uniform", lua.eval("osg.Uniform(osg.Uniform.FLOAT, 'u')"));
  osg::Uniform* u = made("osg.Uniform:new(osg.Uniform.FLOAT_VEC3, 'v')");
  EXPECT_EQ(osg::Uniform::FLOAT_VEC3, u->getType());
  EXPECT_EQ("v", u->getName());
  EXPECT_EQ(1u, u->getNumElements());
}

TEST_F(UniformBinding, EmptyAndCopies) {
  EXPECT_EQ(osg::Uniform::UNDEFINED, made("osg.Uniform:new()")->getType());
  uniform->set(2.5f);
  for (const char* copy :
       {"osg.Uniform:new(uniform)", "osg.Uniform:new(constUniform)", "osg.Uniform:new(uniform, copyOp)"}) {
    osg::Uniform* u = made(copy);
    ASSERT_NE(uniform.get(), u) << copy;
    float value = 0;
    EXPECT_TRUE(u->get(value));
    EXPECT_EQ(2.5f, value) << copy;
    EXPECT_EQ("uniform", u->getName());
  }
  EXPECT_EQ(mismatch("new"), lua.raised("osg.Uniform:new(nil)"));
  EXPECT_EQ(mismatch("new"), lua.raised("osg.Uniform:new(uniform, nil)"));
}

TEST_F(UniformBinding, ByNameAndValue) {
  const std::pair<const char*, osg::Uniform::Type> cases[] = {
      {"'u', 3", osg::Uniform::INT},
      {"'u', true", osg::Uniform::BOOL},
      {"'u', vec2", osg::Uniform::FLOAT_VEC2},
      {"'u', vec3", osg::Uniform::FLOAT_VEC3},
      {"'u', vec4", osg::Uniform::FLOAT_VEC4},
      {"'u', osg.Matrix2()", osg::Uniform::FLOAT_MAT2},
      {"'u', osg.Matrix3()", osg::Uniform::FLOAT_MAT3},
      {"'u', matrixf", osg::Uniform::FLOAT_MAT4},
      {"'u', matrixd", osg::Uniform::DOUBLE_MAT4},
      {"'u', 1, 2", osg::Uniform::INT_VEC2},
      {"'u', 1, 2, 3", osg::Uniform::INT_VEC3},
      {"'u', 1, 2, 3, 4", osg::Uniform::INT_VEC4},
      {"'u', true, false", osg::Uniform::BOOL_VEC2},
      {"'u', true, false, true", osg::Uniform::BOOL_VEC3},
      {"'u', true, false, true, false", osg::Uniform::BOOL_VEC4}};
  for (const auto& [arguments, type] : cases) {
    for (const char* maker : {"osg.Uniform:new", "osg.Uniform:new_local", "osg.Uniform"}) {
      // The name is no reference here: nothing comes back behind the uniform.
      const std::string call = std::string(maker) + "(" + arguments + ")";
      EXPECT_EQ("osg::Uniform", lua.eval(call)) << call;
      osg::Uniform* u = made(call);
      EXPECT_EQ(type, u->getType()) << call;
      EXPECT_EQ("u", u->getName()) << call;
    }
  }
  osg::Matrixd stored;
  EXPECT_TRUE(made("osg.Uniform:new('u', matrixd)")->get(stored));
  EXPECT_EQ(matrixd, stored);
}

// The form with an integer takes the same arguments as the one with a float and is tried first.
TEST_F(UniformBinding, ANumberMakesAnIntegerUniform) {
  osg::Uniform* u = made("osg.Uniform:new('u', 2.75)");
  int value = 0;
  EXPECT_EQ(osg::Uniform::INT, u->getType());
  EXPECT_TRUE(u->get(value));
  EXPECT_EQ(2, value);
  EXPECT_EQ("true true 2.75", lua.run("local u = osg.Uniform:new(osg.Uniform.FLOAT, 'u')"
                                      " return u:setFloat(2.75), u:getFloat(0)"));
}

// The library ends the process for a null name.
TEST_F(UniformBinding, ANilNameIsEmpty) {
  for (const char* arguments :
       {"nil, 1", "nil, true", "nil, vec2", "nil, vec3", "nil, vec4", "nil, osg.Matrix2()", "nil, osg.Matrix3()",
        "nil, matrixf", "nil, matrixd", "nil, 1, 2", "nil, 1, 2, 3", "nil, 1, 2, 3, 4", "nil, true, true",
        "nil, true, true, true", "nil, true, true, true, true"}) {
    osg::Uniform* u = made(std::string("osg.Uniform:new(") + arguments + ")");
    ASSERT_NE(nullptr, u) << arguments;
    EXPECT_EQ("", u->getName()) << arguments;
  }
}

TEST_F(UniformBinding, ConstructorsOwnAsTheirNameSays) {
  for (const char* arguments : {"", "osg.Uniform.INT, 'u'", "uniform", "uniform, copyOp", "'u', 1", "'u', true",
                                "'u', vec2", "'u', 1, 2", "'u', true, false"}) {
    EXPECT_EQ("0", ownedCount(lua, std::string("osg.Uniform:new(") + arguments + ")")) << arguments;
    EXPECT_EQ("1", ownedCount(lua, std::string("osg.Uniform:new_local(") + arguments + ")")) << arguments;
    EXPECT_EQ("1", ownedCount(lua, std::string("osg.Uniform(") + arguments + ")")) << arguments;
  }
}

TEST_F(UniformBinding, TypeAndName) {
  EXPECT_EQ("false true 5124",
            lua.run("local u = osg.Uniform:new()"
                    " return uniform:setType(osg.Uniform.INT), u:setType(osg.Uniform.INT), u:getType()"));
  EXPECT_EQ("5126", lua.eval("constUniform:getType()"));
  // The library names a uniform once.
  EXPECT_EQ("fresh", lua.run("made = osg.Uniform:new() return made:setName('fresh')"));
  EXPECT_EQ("fresh", bindingtest::taken<osg::Uniform>(lua, "made")->getName());
  EXPECT_EQ(mismatch("setType"), lua.raised("uniform:setType('x')"));
  EXPECT_EQ(mismatch("getType"), lua.raised("uniform:getType(1)"));
  EXPECT_EQ(mismatch("setName"), lua.raised("uniform:setName({})"));
}

TEST_F(UniformBinding, StaticsOfTypes) {
  EXPECT_EQ("mat4", lua.eval("osg.Uniform:getTypename(osg.Uniform.FLOAT_MAT4)"));
  EXPECT_EQ("35676 mat4", lua.eval("osg.Uniform:getTypeId('mat4')"));
  EXPECT_EQ("0 nonsense", lua.eval("osg.Uniform:getTypeId('nonsense')"));
  EXPECT_EQ("5124", lua.eval("osg.Uniform:getGlApiType(osg.Uniform.SAMPLER_2D)"));
  EXPECT_EQ(mismatch("getTypename"), lua.raised("osg.Uniform.getTypename(35676)"));
  EXPECT_EQ(mismatch("getTypeId"), lua.raised("osg.Uniform:getTypeId()"));
  EXPECT_EQ(mismatch("getGlApiType"), lua.raised("osg.Uniform:getGlApiType('x')"));
}

TEST_F(UniformBinding, Comparisons) {
  osg::ref_ptr<osg::Uniform> larger = new osg::Uniform("uniform", 7.0f);
  uniform->set(1.0f);
  give("larger", larger.get(), "osg::Uniform");
  const int compared = uniform->compare(*larger);
  EXPECT_EQ(std::to_string(compared), lua.eval("uniform:compare(larger)"));
  EXPECT_EQ(std::to_string(uniform->compareData(*larger)), lua.eval("uniform:compareData(larger)"));
  EXPECT_EQ("0 0 true", lua.eval("uniform:compare(uniform), constUniform:compareData(constUniform),"
                                 "constUniform:compare(uniform) ~= 0"));
  EXPECT_EQ(compared < 0 ? "true false" : "false true", lua.eval("uniform < larger, larger < uniform"));
  EXPECT_EQ("false true", lua.eval("uniform == larger, uniform == osg.Uniform:new(uniform)"));
  EXPECT_EQ("", lua.run("larger:copyData(uniform)"));
  float value = 0;
  larger->get(value);
  EXPECT_EQ(1.0f, value);
  for (const char* name : {"compare", "compareData", "copyData"})
    EXPECT_EQ(mismatch(name), lua.raised(std::string("uniform:") + name + "(nil)"));
  EXPECT_EQ(mismatch(".lt"), lua.raised("return getmetatable(uniform)['.lt'](uniform, nil)"));
  EXPECT_EQ(mismatch(".eq"), lua.raised("return getmetatable(uniform)['.eq'](uniform, nil)"));
}

TEST_F(UniformBinding, ParentsAreReadOnlyAndChecked) {
  osg::ref_ptr<osg::StateSet> first = new osg::StateSet, second = new osg::StateSet;
  first->addUniform(uniform);
  second->addUniform(uniform);
  EXPECT_EQ("2", lua.eval("uniform:getNumParents()"));
  EXPECT_EQ("const osg::StateSet const osg::StateSet", lua.eval("uniform:getParent(0), uniform:getParent(1)"));
  first->addUniform(readOnly);
  EXPECT_EQ("const osg::StateSet 1", lua.eval("constUniform:getParent(0), constUniform:getNumParents()"));
  // Out of range the library reads past its list.
  EXPECT_EQ("nil nil nil", lua.eval("uniform:getParent(2), uniform:getParent(-1), constUniform:getParent(1e9)"));
  EXPECT_EQ(mismatch("getParent"), lua.raised("uniform:getParent()"));
  EXPECT_EQ(mismatch("getNumParents"), lua.raised("uniform:getNumParents(1)"));
}

TEST_F(UniformBinding, ScalarsGoInAndComeBack) {
  EXPECT_EQ("true true 0.5", lua.run("return uniform:setFloat(0.5), uniform:getFloat(9)"));
  EXPECT_EQ("true 2.5", lua.eval("constUniform:getFloat(9)"));
  EXPECT_EQ("true true -3", lua.run("local u = osg.Uniform:new('u', 0) return u:setInt(-3.9), u:getInt(9)"));
  EXPECT_EQ("true true true",
            lua.run("local u = osg.Uniform:new('u', false) return u:setBool(true), u:getBool(false)"));
  EXPECT_EQ("true true 1 2", lua.run("local u = osg.Uniform:new('u', 0, 0) return u:setInt(1, 2), u:getInt(0, 0)"));
  EXPECT_EQ("true true 1 2 3",
            lua.run("local u = osg.Uniform:new('u', 0, 0, 0) return u:setInt(1, 2, 3), u:getInt(0, 0, 0)"));
  EXPECT_EQ("true true 1 2 3 4",
            lua.run("local u = osg.Uniform:new('u', 0, 0, 0, 0) return u:setInt(1, 2, 3, 4), u:getInt(0, 0, 0, 0)"));
  EXPECT_EQ(
      "true true false true",
      lua.run("local u = osg.Uniform:new('u', true, false) return u:setBool(false, true), u:getBool(true, true)"));
  EXPECT_EQ("true true false true false",
            lua.run("local u = osg.Uniform:new('u', true, true, true)"
                    " return u:setBool(false, true, false), u:getBool(true, true, true)"));
  EXPECT_EQ("true true false true false true",
            lua.run("local u = osg.Uniform:new('u', true, true, true, true)"
                    " return u:setBool(false, true, false, true), u:getBool(true, true, true, true)"));
}

TEST_F(UniformBinding, AFailedGetGivesTheValuesBackUnchanged) {
  lua.run("u = osg.Uniform:new('u', 1, 2, 3)");
  EXPECT_EQ("false 7", lua.eval("u:getInt(7)"));
  EXPECT_EQ("true 1 2 3", lua.eval("u:getInt(7, 7, 7)"));
  EXPECT_EQ("false 7 8", lua.eval("u:getInt(7, 8)"));
  EXPECT_EQ("false 0.5", lua.eval("u:getFloat(0.5)"));
  EXPECT_EQ("false true", lua.eval("u:getBool(true)"));
  EXPECT_EQ("false true false true false", lua.eval("u:getBool(true, false, true, false)"));
  EXPECT_EQ("false false false", lua.eval("u:setFloat(1), u:setInt(1), u:setBool(true)"));
  EXPECT_EQ("false false", lua.eval("u:getVec3(vec3), u:set(vec3)"));
}

TEST_F(UniformBinding, VectorsAndMatricesAreFilled) {
  osg::Vec2 gotVec2;
  osg::Vec3 gotVec3;
  osg::Vec4 gotVec4;
  osg::Matrix2 gotMatrix2;
  osg::Matrix3 gotMatrix3;
  osg::Matrixf gotMatrixf;
  osg::Matrixd gotMatrixd;
  osg::Matrix2 matrix2(1, 2, 3, 4);
  osg::Matrix3 matrix3(1, 2, 3, 4, 5, 6, 7, 8, 9);
  give("gotVec2", &gotVec2, "osg::Vec2");
  give("gotVec3", &gotVec3, "osg::Vec3");
  give("gotVec4", &gotVec4, "osg::Vec4");
  give("gotMatrix2", &gotMatrix2, "osg::Matrix2");
  give("gotMatrix3", &gotMatrix3, "osg::Matrix3");
  give("gotMatrixf", &gotMatrixf, "osg::Matrixf");
  give("gotMatrixd", &gotMatrixd, "osg::Matrixd");
  give("matrix2", &matrix2, "osg::Matrix2");
  give("matrix3", &matrix3, "osg::Matrix3");
  const auto round = [this](const char* type, const char* value, const char* get) {
    return lua.run(std::string("local u = osg.Uniform:new(osg.Uniform.") + type + ", 'u') return u:set(" + value +
                   "), u:" + get);
  };
  EXPECT_EQ("true true", round("FLOAT_VEC2", "vec2", "getVec2(gotVec2)"));
  EXPECT_EQ(vec2, gotVec2);
  EXPECT_EQ("true true", round("FLOAT_VEC3", "vec3", "getVec3(gotVec3)"));
  EXPECT_EQ(vec3, gotVec3);
  EXPECT_EQ("true true", round("FLOAT_VEC4", "vec4", "getVec4(gotVec4)"));
  EXPECT_EQ(vec4, gotVec4);
  EXPECT_EQ("true true", round("FLOAT_MAT2", "matrix2", "get(gotMatrix2)"));
  EXPECT_TRUE(std::equal(matrix2.ptr(), matrix2.ptr() + 4, gotMatrix2.ptr()));
  EXPECT_EQ("true true", round("FLOAT_MAT3", "matrix3", "get(gotMatrix3)"));
  EXPECT_TRUE(std::equal(matrix3.ptr(), matrix3.ptr() + 9, gotMatrix3.ptr()));
  EXPECT_EQ("true true", round("FLOAT_MAT4", "matrixf", "get(gotMatrixf)"));
  EXPECT_EQ(matrixf, gotMatrixf);
  EXPECT_EQ("true true", round("FLOAT_MAT4", "matrixd", "get(gotMatrixd)"));
  EXPECT_EQ(matrixd, gotMatrixd);
}

TEST_F(UniformBinding, SettersAndGettersRefuseOtherArguments) {
  for (const char* call : {"setFloat('x')", "setInt()", "setInt(1, 2, 3, 4, 5)", "setBool(1)", "set(1)", "set(nil)",
                           "getFloat()", "getInt()", "getInt(1, 2, 3, 4, 5)", "getBool()", "getVec2(nil)",
                           "getVec3(vec2)", "getVec4(1)", "get(vec2)", "get(nil)"}) {
    const std::string text = call;
    EXPECT_EQ(mismatch(text.substr(0, text.find('('))), lua.raised("uniform:" + text)) << call;
  }
  // Setters need a plain self.
  EXPECT_EQ(mismatch("setFloat"), lua.raised("constUniform:setFloat(1)"));
  EXPECT_EQ("osg::Uniform", lastRaised().type);
}

TEST_F(UniformBinding, Callbacks) {
  EXPECT_EQ("osg::Uniform::Callback osg::Uniform::Callback osg::Uniform::Callback",
            lua.run("callback = osg.Uniform.Callback:new() copy = osg.Uniform.Callback:new(callback, copyOp)"
                    " return callback, copy, osg.Uniform.Callback:new_local()"));
  EXPECT_EQ("0", ownedCount(lua, "osg.Uniform.Callback:new()"));
  EXPECT_EQ("0", ownedCount(lua, "osg.Uniform.Callback:new(callback, copyOp)"));
  EXPECT_EQ("1", ownedCount(lua, "osg.Uniform.Callback:new_local(callback, copyOp)"));
  EXPECT_EQ("1", ownedCount(lua, "osg.Uniform.Callback()"));
  EXPECT_EQ("1", ownedCount(lua, "osg.Uniform.Callback(callback, copyOp)"));
  EXPECT_EQ("nil nil", lua.eval("uniform:getUpdateCallback(), uniform:getEventCallback()"));
  // A callback that the script has already keeps its type.
  EXPECT_EQ("osg::Uniform::Callback osg::Uniform::Callback",
            lua.run("uniform:setUpdateCallback(callback) uniform:setEventCallback(copy)"
                    " return uniform:getUpdateCallback(), uniform:getEventCallback()"));
  EXPECT_EQ(bindingtest::taken<osg::UniformCallback>(lua, "callback"), uniform->getUpdateCallback());
  EXPECT_EQ(bindingtest::taken<osg::UniformCallback>(lua, "copy"), uniform->getEventCallback());
  // The read-only form is tried first and takes a plain uniform too, so a callback that is new to the script is const.
  osg::ref_ptr<osg::UniformCallback> update = new osg::UniformCallback, event = new osg::UniformCallback;
  uniform->setUpdateCallback(update);
  readOnly->setEventCallback(event);
  EXPECT_EQ("const osg::Uniform::Callback const osg::Uniform::Callback",
            lua.eval("uniform:getUpdateCallback(), constUniform:getEventCallback()"));
  lua.run("uniform:setUpdateCallback(nil) uniform:setEventCallback(nil)");
  EXPECT_EQ(nullptr, uniform->getUpdateCallback());
  EXPECT_EQ(nullptr, uniform->getEventCallback());
  EXPECT_EQ(mismatch("new"), lua.raised("osg.Uniform.Callback:new(callback)"));
  EXPECT_EQ(mismatch("setUpdateCallback"), lua.raised("uniform:setUpdateCallback(uniform)"));
  EXPECT_EQ(mismatch("getUpdateCallback"), lua.raised("uniform:getUpdateCallback(1)"));
  EXPECT_EQ(mismatch("setEventCallback"), lua.raised("uniform:setEventCallback(1)"));
  EXPECT_EQ(mismatch("getEventCallback"), lua.raised("uniform:getEventCallback(1)"));
}

// Its base is registered under a name with the word virtual, which no other type has.
TEST_F(UniformBinding, ACallbackIsNoObject) {
  tolua_Error error;
  lua.run("callback = osg.Uniform.Callback:new()");
  lua_getglobal(lua.get(), "callback");
  const int callback = lua_gettop(lua.get());
  EXPECT_FALSE(tolua_isusertype(lua.get(), callback, "osg::Object", 0, &error));
  EXPECT_TRUE(tolua_isusertype(lua.get(), callback, "virtual osg::Object", 0, &error));
  lua_getglobal(lua.get(), "uniform");
  EXPECT_TRUE(tolua_isusertype(lua.get(), callback + 1, "osg::Object", 0, &error));
}

TEST_F(UniformBinding, ModifiedCount) {
  EXPECT_EQ("12 13", lua.run("uniform:setModifiedCount(12) local c = uniform:getModifiedCount() uniform:dirty()"
                             " return c, uniform:getModifiedCount()"));
  EXPECT_EQ(mismatch("dirty"), lua.raised("uniform:dirty(1)"));
  EXPECT_EQ(mismatch("setModifiedCount"), lua.raised("uniform:setModifiedCount()"));
  EXPECT_EQ(mismatch("getModifiedCount"), lua.raised("uniform:getModifiedCount(1)"));
}

TEST_F(UniformBinding, NullSelfNamesTheNativeMember) {
  bindingtest::giveNull(lua, "null", "osg::Uniform");
  const std::pair<const char*, const char*> calls[] = {{"setType(0)", "setType"},
                                                       {"getType()", "getType"},
                                                       {"setName('n')", "setName"},
                                                       {"compare(uniform)", "compare"},
                                                       {"compareData(uniform)", "compareData"},
                                                       {"copyData(uniform)", "copyData"},
                                                       {"getParent(0)", "getParent"},
                                                       {"getNumParents()", "getNumParents"},
                                                       {"setFloat(1)", "set"},
                                                       {"setInt(1)", "set"},
                                                       {"setInt(1, 2)", "set"},
                                                       {"setInt(1, 2, 3)", "set"},
                                                       {"setInt(1, 2, 3, 4)", "set"},
                                                       {"setBool(true)", "set"},
                                                       {"setBool(true, true)", "set"},
                                                       {"setBool(true, true, true)", "set"},
                                                       {"setBool(true, true, true, true)", "set"},
                                                       {"set(vec2)", "set"},
                                                       {"set(vec3)", "set"},
                                                       {"set(vec4)", "set"},
                                                       {"set(matrixf)", "set"},
                                                       {"set(matrixd)", "set"},
                                                       {"set(osg.Matrix2())", "set"},
                                                       {"set(osg.Matrix3())", "set"},
                                                       {"getFloat(1)", "get"},
                                                       {"getInt(1)", "get"},
                                                       {"getInt(1, 2)", "get"},
                                                       {"getInt(1, 2, 3)", "get"},
                                                       {"getInt(1, 2, 3, 4)", "get"},
                                                       {"getBool(true)", "get"},
                                                       {"getBool(true, true)", "get"},
                                                       {"getBool(true, true, true)", "get"},
                                                       {"getBool(true, true, true, true)", "get"},
                                                       {"getVec2(vec2)", "get"},
                                                       {"getVec3(vec3)", "get"},
                                                       {"getVec4(vec4)", "get"},
                                                       {"get(matrixf)", "get"},
                                                       {"get(matrixd)", "get"},
                                                       {"get(osg.Matrix2())", "get"},
                                                       {"get(osg.Matrix3())", "get"},
                                                       {"setUpdateCallback(nil)", "setUpdateCallback"},
                                                       {"getUpdateCallback()", "getUpdateCallback"},
                                                       {"setEventCallback(nil)", "setEventCallback"},
                                                       {"getEventCallback()", "getEventCallback"},
                                                       {"dirty()", "dirty"},
                                                       {"setModifiedCount(1)", "setModifiedCount"},
                                                       {"getModifiedCount()", "getModifiedCount"}};
  for (const auto& [call, native] : calls)
    EXPECT_EQ(invalidSelf(native), lua.raised(std::string("null:") + call)) << call;
  EXPECT_EQ(invalidSelf("operator<"), lua.raised("return getmetatable(null)['.lt'](null, uniform)"));
  EXPECT_EQ(invalidSelf("operator=="), lua.raised("return getmetatable(null)['.eq'](null, uniform)"));
  EXPECT_FALSE(lastRaised().hasRecord);
}

} // namespace
