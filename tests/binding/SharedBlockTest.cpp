// The numeric helpers and enumeration tables that 17 modules register in the table vyr.
#include "ModuleTest.h"

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Quat.h>
#include <vyr/SPDMatrix3x3.h>
#include <vyr/Vec2.h>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>

#include <cmath>
#include <cstdlib>

namespace {

class SharedBlock : public bindingtest::ModuleTest {};

TEST_F(SharedBlock, LerpClampsAtBothEnds) {
  EXPECT_EQ("4 2 2.5 2 4", lua.eval("vyr.lerp(2, 4, 1.5), vyr.lerp(2, 4, -1), vyr.lerp(2, 4, 0.25), vyr.lerp(2, 4, 0),"
                                    "vyr.lerp(2, 4, 1)"));
  EXPECT_EQ("#ferror in function 'lerp'.", lua.raised("vyr.lerp(1, 2)"));
  EXPECT_EQ("#ferror in function 'lerp'.", lua.raised("vyr.lerp(1, 2, 3, 4)"));
}

TEST_F(SharedBlock, RandomFollowsTheProcessesGenerator) {
  EXPECT_EQ("5", lua.eval("vyr.random(5, 5)"));
  std::srand(42);
  const double expected = 2 + (6 - 2) * (std::rand() / 2147483647.0);
  std::srand(42);
  lua.run("x = vyr.random(2, 6)");
  lua_getglobal(lua.get(), "x");
  EXPECT_EQ(expected, lua_tonumber(lua.get(), -1));
}

TEST_F(SharedBlock, LogInterpolateGoesThroughLogarithms) {
  EXPECT_EQ("true", lua.eval("math.abs(vyr.logInterpolate(1, 100, 0.5) - 10) < 1e-12"));
  EXPECT_EQ("true", lua.eval("math.abs(vyr.logInterpolate(1, 100, 2) - 100) < 1e-12"));
  EXPECT_EQ("true", lua.eval("math.abs(vyr.logInterpolate(3, 100, -1) - 3) < 1e-12"));
  // The clamped end still carries the rounding of the round trip.
  lua.run("x = vyr.logInterpolate(3, 100, -1)");
  lua_getglobal(lua.get(), "x");
  EXPECT_EQ(std::pow(10.0, std::log10(3.0)), lua_tonumber(lua.get(), -1));
  EXPECT_EQ("0", lua.eval("vyr.logInterpolate(0, 100, 0)"));
  EXPECT_EQ("true", lua.run("local x = vyr.logInterpolate(-1, 100, 0.5) return x ~= x"));
}

TEST_F(SharedBlock, LogInterpolateNarrowsItsParameter) {
  const float t = 0.1f;
  const double expected =
      std::pow(10.0, static_cast<double>(t) * std::log10(100.0) + static_cast<double>(1 - t) * std::log10(2.0));
  lua.run("x = vyr.logInterpolate(2, 100, 0.1)");
  lua_getglobal(lua.get(), "x");
  EXPECT_EQ(expected, lua_tonumber(lua.get(), -1));
}

TEST_F(SharedBlock, EquivalentNumbers) {
  EXPECT_EQ("true false true",
            lua.eval("vyr.equivalent(1, 1 + 5e-10), vyr.equivalent(1, 1 + 2e-9), vyr.equivalent(1, 1.5, 1)"));
  EXPECT_EQ("false false", lua.eval("vyr.equivalent(0/0, 0/0), vyr.equivalent(1, 0/0, 1e300)"));
  EXPECT_EQ("#ferror in function 'equivalent'.", lua.raised("vyr.equivalent(1)"));
  EXPECT_EQ("#ferror in function 'equivalent'.", lua.raised("vyr.equivalent(1, 2, 3, 4)"));
}

TEST_F(SharedBlock, EquivalentVectors) {
  vyr::Vec3 a(1, 2, 3);
  vyr::Vec3 b(1, 2 + 5e-7, 3);
  set("a", &a, "vyr::Vec3");
  set("b", &b, "vyr::Vec3");
  EXPECT_EQ("true false true", lua.eval("vyr.equivalent(a, b), vyr.equivalent(a, b, 1e-7), vyr.equivalent(a, a, 0)"));
  EXPECT_EQ("#ferror in function 'equivalent'.", lua.raised("vyr.equivalent(a, nil)"));
  EXPECT_EQ("#ferror in function 'equivalent'.", lua.raised("vyr.equivalent(a, 1)"));
  vyr::Vec2 c(1, 2);
  vyr::Vec2 d(1, 2.5);
  set("c", &c, "vyr::Vec2");
  set("d", &d, "vyr::Vec2");
  EXPECT_EQ("false true", lua.eval("vyr.equivalent(c, d), vyr.equivalent(c, d, 0.6)"));
  vyr::Vec4 e(1, 2, 3, 4);
  vyr::Vec4 f(1, 2, 3, 4 + 5e-7);
  set("e", &e, "vyr::Vec4");
  set("f", &f, "vyr::Vec4");
  EXPECT_EQ("true false", lua.eval("vyr.equivalent(e, f), vyr.equivalent(e, f, 1e-7)"));
  EXPECT_EQ("#ferror in function 'equivalent'.", lua.raised("vyr.equivalent(a, c)"));
}

TEST_F(SharedBlock, EquivalentMatricesAndRotations) {
  vyr::AffineMatrix4x4 a;
  vyr::AffineMatrix4x4 b;
  b(3, 0) += 5e-8;
  set("a", &a, "vyr::AffineMatrix4x4");
  set("b", &b, "vyr::AffineMatrix4x4");
  // Matrices without an eps are compared with 1e-9.
  EXPECT_EQ("true false true", lua.eval("vyr.equivalent(a, a), vyr.equivalent(a, b), vyr.equivalent(a, b, 1e-7)"));
  vyr::Quat p(0, 0, 0, 1);
  vyr::Quat q(0, 5e-7, 0, 1);
  set("p", &p, "vyr::Quat");
  set("q", &q, "vyr::Quat");
  EXPECT_EQ("true false", lua.eval("vyr.equivalent(p, q), vyr.equivalent(p, q, 1e-7)"));
  vyr::SPDMatrix3x3 s;
  set("s", &s, "vyr::SPDMatrix3x3");
  EXPECT_EQ("true true", lua.eval("vyr.equivalent(s, s), vyr.equivalent(s, s, 0)"));
}

TEST_F(SharedBlock, AbsoluteNumbers) {
  EXPECT_EQ("3 3 inf", lua.eval("vyr.absolute(-3), vyr.absolute(3), 1 / vyr.absolute(-0)"));
  EXPECT_EQ("true", lua.run("local x = vyr.absolute(0/0) return x ~= x"));
}

TEST_F(SharedBlock, AbsoluteVectorsAreNewDoubles) {
  vyr::Vec2f a(-1, 2);
  vyr::Vec3f b(-1, -2, 3);
  vyr::Vec4f c(-1, 2, -3, -4);
  vyr::Vec2 d(-0.1, 2);
  vyr::Vec3 e(-0.1, -2, 3);
  vyr::Vec4 f(-0.1, 2, -3, -4);
  set("a", &a, "vyr::Vec2f");
  set("b", &b, "vyr::Vec3f");
  set("c", &c, "vyr::Vec4f");
  set("d", &d, "vyr::Vec2d");
  set("e", &e, "vyr::Vec3d");
  set("f", &f, "vyr::Vec4d");
  EXPECT_EQ("vyr::Vec2 vyr::Vec3 vyr::Vec4",
            lua.run("ra, rb, rc = vyr.absolute(a), vyr.absolute(b), vyr.absolute(c) return ra, rb, rc"));
  EXPECT_EQ("vyr::Vec2 vyr::Vec3 vyr::Vec4",
            lua.run("rd, re, rf = vyr.absolute(d), vyr.absolute(e), vyr.absolute(f) return rd, re, rf"));
  EXPECT_EQ(1, (*global<vyr::Vec2>("ra"))[0]);
  EXPECT_EQ(2, (*global<vyr::Vec3>("rb"))[1]);
  EXPECT_EQ(4, (*global<vyr::Vec4>("rc"))[3]);
  EXPECT_EQ(0.1, (*global<vyr::Vec2>("rd"))[0]);
  EXPECT_EQ(0.1, (*global<vyr::Vec3>("re"))[0]);
  EXPECT_EQ(0.1, (*global<vyr::Vec4>("rf"))[0]);
  EXPECT_EQ("#ferror in function 'absolute'.", lua.raised("vyr.absolute(nil)"));
}

TEST_F(SharedBlock, Clamp) {
  EXPECT_EQ("3 0 2", lua.eval("vyr.clamp(5, 0, 3), vyr.clamp(-1, 0, 3), vyr.clamp(2, 0, 3)"));
  EXPECT_EQ("3 1", lua.eval("vyr.clamp(2, 3, 1), vyr.clamp(4, 3, 1)"));
}

TEST_F(SharedBlock, SignOfZeroAndNaNIsOne) {
  EXPECT_EQ("-1 1 1 1 1", lua.eval("vyr.sign(-2), vyr.sign(2), vyr.sign(0), vyr.sign(-0), vyr.sign(0/0)"));
}

TEST_F(SharedBlock, TheTwoEnumerationsDiffer) {
  EXPECT_EQ("0 1 2 3 4",
            lua.eval("vyr.FrictionModel.NOT_DEFINED, vyr.FrictionModel.DIRECT, vyr.FrictionModel.ITERATIVE, "
                     "vyr.FrictionModel.SPLIT, vyr.FrictionModel.DIRECT_AND_ITERATIVE"));
  EXPECT_EQ("1 4 5", lua.eval("vyr.Constraint.DIRECT, vyr.Constraint.ITERATIVE, vyr.Constraint.DIRECT_AND_ITERATIVE"));
}

} // namespace
