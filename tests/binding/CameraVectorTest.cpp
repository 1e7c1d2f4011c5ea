// The small vectors of the module RenderToTexture, in both precisions: every row, the array, and its errors.
#include "CallChecks.h"

#include <osg/Vec3d>
#include <osg/Vec3f>

#include <cmath>

namespace {

using bindingtest::lastRaised;

/// Runs once for each of the two classes; scripts find the class as the global V.
class CameraVector : public bindingtest::CallChecks, public ::testing::WithParamInterface<const char*> {
protected:
  CameraVector() { lua.run(std::string("V = osg.") + GetParam() + " v = V(1, 2, 3)"); }
  std::string type() const { return std::string("osg::") + GetParam(); }
};

TEST_P(CameraVector, HasThreeComponents) {
  EXPECT_EQ("3", lua.eval("V.num_components"));
}

TEST_P(CameraVector, IsBuiltThreeWaysFromNothingOrThreeNumbers) {
  EXPECT_EQ(type() + " 0 0 0", lua.run("local a = V:new() return a, a:x(), a:y(), a:z()"));
  EXPECT_EQ(type() + " 0 0 0", lua.run("local a = V:new_local() return a, a:x(), a:y(), a:z()"));
  EXPECT_EQ(type() + " 0 0 0", lua.run("local a = V() return a, a:x(), a:y(), a:z()"));
  for (const char* construct : {"V:new", "V:new_local", "V"}) {
    EXPECT_EQ(type() + " 1 -2 0.5",
              lua.run(std::string("local a = ") + construct + "(1, -2, 0.5) return a, a:x(), a:y(), a:z()"));
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(std::string(construct) + "(1, 2)")) << construct;
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(std::string(construct) + "(1, 2, 3, 4)")) << construct;
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(std::string(construct) + "(v)")) << construct;
  }
}

TEST_P(CameraVector, ManyVectorsComeAndGo) {
  EXPECT_EQ("1000", lua.run("local sum = 0 for i = 1, 1000 do sum = sum + V(1, 0, 0):x() end return sum"));
  lua.collect();
}

TEST_P(CameraVector, SetTakesNumbersOrAVector) {
  EXPECT_EQ("4 5 6", lua.run("v:set(4, 5, 6) return v:x(), v:y(), v:z()"));
  EXPECT_EQ("7 8 9", lua.run("v:set(V(7, 8, 9)) return v:x(), v:y(), v:z()"));
  EXPECT_EQ("#ferror in function 'set'.", lua.raised("v:set(nil)"));
  EXPECT_EQ("#ferror in function 'set'.", lua.raised("v:set(1, 2)"));
  EXPECT_EQ(4, lastRaised().index);
  const std::string other = std::string(GetParam()) == "Vec3f" ? "Vec3d" : "Vec3f";
  EXPECT_EQ("#ferror in function 'set'.", lua.raised("v:set(osg." + other + "(1, 2, 3))"));
}

TEST_P(CameraVector, TheArrayReadsAndWritesTheComponents) {
  EXPECT_EQ("1 2 3", lua.eval("v._v[0], v._v[1], v._v[2]"));
  EXPECT_EQ("1 2 -7.5", lua.run("v._v[2] = -7.5 return v:x(), v:y(), v:z()"));
  EXPECT_EQ("1 2", lua.eval("v._v[0.9], v._v[1.9]"));
}

TEST_P(CameraVector, TheArrayHasAnEnd) {
  for (const char* index : {"3", "-1", "1e300"}) {
    EXPECT_EQ("array indexing out of range.", lua.raised(std::string("return v._v[") + index + "]")) << index;
    EXPECT_FALSE(lastRaised().hasRecord) << index;
    EXPECT_EQ("array indexing out of range.", lua.raised(std::string("v._v[") + index + "] = 1")) << index;
  }
  EXPECT_EQ("array indexing out of range.", lua.raised("return v._v[0 / 0]"));
  EXPECT_EQ("1 2 3", lua.eval("v:x(), v:y(), v:z()"));
}

TEST_P(CameraVector, TheArraysIndexIsANumber) {
  EXPECT_EQ("#vinvalid type in array indexing.", lua.raised("return v._v.x"));
  EXPECT_TRUE(lastRaised().hasRecord);
  EXPECT_EQ("#vinvalid type in array indexing.", lua.raised("v._v.x = 1"));
  EXPECT_EQ("#vinvalid type in array indexing.", lua.raised("return v._v[{}]"));
}

TEST_P(CameraVector, TheClassTablesArrayIsNoVector) {
  EXPECT_EQ("array indexing out of range.", lua.raised("return V._v[0]"));
  EXPECT_EQ("array indexing out of range.", lua.raised("V._v[0] = 1"));
}

TEST_P(CameraVector, LengthAndNormalize) {
  EXPECT_EQ("5 25", lua.run("local a = V(0, 3, 4) return a:length(), a:length2()"));
  EXPECT_EQ("5 true 1", lua.run("local a = V(0, 3, 4) return a:normalize(), math.abs(a:z() - 0.8) < 1e-6, a:length()"));
  EXPECT_EQ("0 0 0 0", lua.run("local a = V() return a:normalize(), a:x(), a:y(), a:z()"));
}

TEST_P(CameraVector, ValidAndNotANumber) {
  EXPECT_EQ("true false", lua.eval("v:valid(), v:isNaN()"));
  EXPECT_EQ("false true", lua.run("v:set(0, 0 / 0, 1) return v:valid(), v:isNaN()"));
}

constexpr bindingtest::Call kCalls[] = {{"set", "1, 2, 3"}, {"set", "V()"},   {"x", ""},     {"y", ""},
                                        {"z", ""},          {"valid", ""},    {"isNaN", ""}, {"length", ""},
                                        {"length2", ""},    {"normalize", ""}};

TEST_P(CameraVector, EveryFunctionRefusesForeignAndNullSelfAndSurplus) {
  expectRefusals("V", "V(1, 2, 3)", type().c_str(), kCalls);
}

TEST_P(CameraVector, ReadingTakesAReadOnlyVector) {
  osg::Vec3f single(1, 2, 3);
  osg::Vec3d twice(1, 2, 3);
  void* object = type() == "osg::Vec3f" ? static_cast<void*>(&single) : static_cast<void*>(&twice);
  expectConstant("V", object, type().c_str(), kCalls, "x y z valid isNaN length length2");
  EXPECT_EQ("1 2 3", lua.eval("V.x(reader), V.y(reader), V.z(reader)"));
}

INSTANTIATE_TEST_SUITE_P(Precisions, CameraVector, ::testing::Values("Vec3f", "Vec3d"),
                         [](const auto& parameter) { return std::string(parameter.param); });

class CameraVectors : public bindingtest::CallChecks {};

TEST_F(CameraVectors, PrecisionIsTheClasss) {
  EXPECT_EQ("false true", lua.eval("osg.Vec3f(0.1, 0, 0):x() == 0.1, osg.Vec3d(0.1, 0, 0):x() == 0.1"));
  EXPECT_EQ("false true", lua.run("local f, d = osg.Vec3f(), osg.Vec3d() f._v[1] = 0.1 d._v[1] = 0.1 "
                                  "return f._v[1] == 0.1, d._v[1] == 0.1"));
}

TEST_F(CameraVectors, TheDoubleOneConvertsIntoACopy) {
  EXPECT_EQ("osg::Vec3f 1 2 3", lua.run("d = osg.Vec3d(1, 2, 3) f = d['.Vec3f'](d) return f, f:x(), f:y(), f:z()"));
  EXPECT_EQ("1 9", lua.run("f:set(9, 9, 9) return d:x(), f:x()"));
  EXPECT_EQ("nil", lua.eval("rawget(osg.Vec3f, '.Vec3f')"));
  EXPECT_EQ("#ferror in function '.Vec3f'.", lua.raised("d['.Vec3f'](f)"));
  setGhost("ghost", "osg::Vec3d");
  EXPECT_EQ("invalid 'self' in function 'operatorVec3f'", lua.raised("osg.Vec3d['.Vec3f'](ghost)"));
  const osg::Vec3d source(0.1, 0, 0);
  set("reader", const_cast<osg::Vec3d*>(&source), "const osg::Vec3d");
  EXPECT_EQ("osg::Vec3f", lua.eval("osg.Vec3d['.Vec3f'](reader)"));
  lua.run("f, d = nil, nil");
  lua.collect();
}

} // namespace
