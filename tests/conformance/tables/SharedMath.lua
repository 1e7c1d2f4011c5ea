-- The helper functions and enumerations that seventeen modules carry; each has wrappers of its own.
namespace "vyr"
row { "double lerp(double a, double b, double t)", with = "2, 4, 0.25", gives = "2.5", seen = "vyr.lerp(2, 4, 1.5) == 4, vyr.lerp(2, 4, -1) == 2" }
row { "double random(double min, double max)", with = "5, 5", gives = "5" }
row { "double logInterpolate(double a, double b, double t)", reaches = "double vyr::logInterpolate(double, double, float)",
  with = "1, 100, 0.5", gives = "10" }
class("FrictionModel")
constants { "NOT_DEFINED", 0, "DIRECT", 1, "ITERATIVE", 2, "SPLIT", 3, "DIRECT_AND_ITERATIVE", 4 }
class("Constraint")
constants { "DIRECT", 1, "ITERATIVE", 4, "DIRECT_AND_ITERATIVE", 5 }
back()
row { "bool equivalent(double a, double b)", reaches = "bool vyr::equivalent(double, double, double = 1e-9)",
  with = "1, 1 + 5e-10", gives = "true", seen = "not vyr.equivalent(1, 1 + 2e-9), not vyr.equivalent(0 / 0, 1)" }
row { "bool equivalent(double a, double b, double eps)", with = "1, 1.5, 1", gives = "true" }
row { "bool equivalent(const vyr::AffineMatrix4x4& a, const vyr::AffineMatrix4x4& b)",
  reaches = "bool vyr::equivalent(const vyr::AffineMatrix4x4&, const vyr::AffineMatrix4x4&, double = 1e-9)", gives = "true" }
row "bool equivalent(const vyr::AffineMatrix4x4& a, const vyr::AffineMatrix4x4& b, double eps)"
row "bool equivalent(const vyr::Quat& a, const vyr::Quat& b, double eps = 1e-6)"
row { "bool equivalent(const vyr::SPDMatrix3x3& a, const vyr::SPDMatrix3x3& b)",
  reaches = "bool vyr::equivalent(const vyr::SPDMatrix3x3&, const vyr::SPDMatrix3x3&, double = 1e-9)", gives = "true" }
row "bool equivalent(const vyr::SPDMatrix3x3& a, const vyr::SPDMatrix3x3& b, double eps)"
row "bool equivalent(const vyr::Vec2& a, const vyr::Vec2& b, double eps = 1e-6)"
row { "bool equivalent(const vyr::Vec3& a, const vyr::Vec3& b, double eps = 1e-6)", with = "vyr.Vec3(1, 2, 3), vyr.Vec3(1, 2, 3 + 5e-7), 1e-7",
  gives = "false", seen = "vyr.equivalent(vyr.Vec3(1, 2, 3), vyr.Vec3(1, 2, 3 + 5e-7))" }
row "bool equivalent(const vyr::Vec4& a, const vyr::Vec4& b, double eps = 1e-6)"
row { "double absolute(double x)", with = "-2.5", gives = "2.5" }
row { "vyr::Vec2 absolute(const vyr::Vec2f& v)", seen = "vyr.absolute(vec2f).x == 1.25, vyr.absolute(vec2f).y == 2.5" }
row "vyr::Vec3 absolute(const vyr::Vec3f& v)"
row "vyr::Vec4 absolute(const vyr::Vec4f& v)"
row { "vyr::Vec2 absolute(const vyr::Vec2d& v)", with = "vyr.Vec2d(-1.5, 2)" }
row { "vyr::Vec3 absolute(const vyr::Vec3d& v)", with = "vyr.Vec3d(-1.5, 2, -3)" }
row { "vyr::Vec4 absolute(const vyr::Vec4d& v)", with = "vyr.Vec4d(-1.5, 2, -3, 4)" }
row { "double clamp(double v, double min, double max)", with = "5, 0, 3", gives = "3",
  seen = "vyr.clamp(-1, 0, 3) == 0, vyr.clamp(2, 3, 1) == 3, vyr.clamp(4, 3, 1) == 1" }
row { "double sign(double x)", with = "0", gives = "1", seen = "vyr.sign(-2) == -1, vyr.sign(0 / 0) == 1" }
