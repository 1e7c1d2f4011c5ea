/// Volumes, centres of mass and inertia tensors, against closed forms.
#include "Scene.h"

#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/Trimesh.h>

#include <gtest/gtest.h>

#include <cmath>

namespace {

const double kPi = 3.14159265358979323846;

void expectDiagonal(const vyr::SPDMatrix3x3& m, double xx, double yy, double zz) {
  EXPECT_NEAR(m(0, 0), xx, 1e-12 * (1.0 + xx));
  EXPECT_NEAR(m(1, 1), yy, 1e-12 * (1.0 + yy));
  EXPECT_NEAR(m(2, 2), zz, 1e-12 * (1.0 + zz));
  EXPECT_NEAR(m(0, 1), 0.0, 1e-12);
  EXPECT_NEAR(m(0, 2), 0.0, 1e-12);
  EXPECT_NEAR(m(1, 2), 0.0, 1e-12);
}

/// The eight corners and twelve triangles of a block from `low` to `high`.
vyrCollide::Trimesh* blockMesh(const vyr::Vec3& low, const vyr::Vec3& high) {
  std::vector<vyr::Vec3> vertices;
  for (int i = 0; i < 8; ++i) {
    vertices.emplace_back((i & 1) != 0 ? high.x() : low.x(), (i & 2) != 0 ? high.y() : low.y(),
                          (i & 4) != 0 ? high.z() : low.z());
  }
  return new vyrCollide::Trimesh(vertices, {0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                                            2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5});
}

} // namespace

TEST(MassProperties, OfABox) {
  vyr::ref_ptr<vyrCollide::Box> box = new vyrCollide::Box(0.5, 1.0, 1.5);
  EXPECT_DOUBLE_EQ(box->getVolume(), 6.0);
  // m/12 (b^2 + c^2) with edges 1, 2, 3 and 12 kg
  expectDiagonal(box->getInertia(12.0), 13.0, 10.0, 5.0);
}

TEST(MassProperties, OfASphere) {
  vyr::ref_ptr<vyrCollide::Sphere> sphere = new vyrCollide::Sphere(2.0);
  EXPECT_NEAR(sphere->getVolume(), 32.0 / 3.0 * kPi, 1e-12);
  expectDiagonal(sphere->getInertia(5.0), 8.0, 8.0, 8.0);
}

TEST(MassProperties, OfACylinder) {
  vyr::ref_ptr<vyrCollide::Cylinder> cylinder = new vyrCollide::Cylinder(1.0, 3.0);
  EXPECT_NEAR(cylinder->getVolume(), 3.0 * kPi, 1e-12);
  // m/12 (3 r^2 + h^2) = 12, m r^2 / 2 = 6
  expectDiagonal(cylinder->getInertia(12.0), 12.0, 12.0, 6.0);
}

TEST(MassProperties, OfACapsuleThatIsAlmostABall) {
  vyr::ref_ptr<vyrCollide::Capsule> capsule = new vyrCollide::Capsule(1.0, 1e-9);
  const vyr::SPDMatrix3x3 inertia = capsule->getInertia(5.0);
  EXPECT_NEAR(inertia(0, 0), 2.0, 1e-7);
  EXPECT_NEAR(inertia(2, 2), 2.0, 1e-7);
}

TEST(MassProperties, OfACapsuleByQuadrature) {
  const double r = 0.3;
  const double h = 0.8;
  vyr::ref_ptr<vyrCollide::Capsule> capsule = new vyrCollide::Capsule(r, h);
  // Slices across the axis: discs of radius s with m = pi s^2 dz, I_zz = m s^2 / 2, I_xx = m (s^2 / 4 + z^2).
  double volume = 0.0;
  double xx = 0.0;
  double zz = 0.0;
  const int slices = 200000;
  const double top = 0.5 * h + r;
  const double dz = 2.0 * top / slices;
  for (int i = 0; i < slices; ++i) {
    const double z = -top + (i + 0.5) * dz;
    const double beyond = std::max(0.0, std::fabs(z) - 0.5 * h);
    const double s2 = r * r - beyond * beyond;
    const double m = kPi * s2 * dz;
    volume += m;
    zz += m * s2 / 2.0;
    xx += m * (s2 / 4.0 + z * z);
  }
  const vyrCollide::MassProperties properties = capsule->getMassProperties();
  EXPECT_NEAR(properties.volume, volume, 1e-9);
  EXPECT_NEAR(properties.inertia[0][0], xx, 1e-9);
  EXPECT_NEAR(properties.inertia[2][2], zz, 1e-9);
}

TEST(MassProperties, OfAMeshThatIsABlock) {
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = blockMesh(vyr::Vec3(9.0, 0.0, 0.0), vyr::Vec3(10.0, 2.0, 3.0));
  ASSERT_TRUE(mesh->isClosed());
  const vyrCollide::MassProperties properties = mesh->getMassProperties();
  EXPECT_NEAR(properties.volume, 6.0, 1e-12);
  EXPECT_NEAR((properties.center - vyr::Vec3(9.5, 1.0, 1.5)).length(), 0.0, 1e-12);
  expectDiagonal(mesh->getInertia(12.0), 13.0, 10.0, 5.0);
}

TEST(MassProperties, OfATetrahedron) {
  // Corners at the origin and one unit along each axis: V = 1/6, centre 1/4, I_xy about the centre = +1/480 rho.
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = new vyrCollide::Trimesh(
      {vyr::Vec3(), vyr::Vec3(1.0, 0.0, 0.0), vyr::Vec3(0.0, 1.0, 0.0), vyr::Vec3(0.0, 0.0, 1.0)},
      {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3});
  const vyrCollide::MassProperties p = mesh->getMassProperties();
  EXPECT_NEAR(p.volume, 1.0 / 6.0, 1e-15);
  EXPECT_NEAR((p.center - vyr::Vec3(0.25, 0.25, 0.25)).length(), 0.0, 1e-15);
  // Integral of x^2 is 1/60, of xy 1/120; minus V/16 each for the centre.
  EXPECT_NEAR(p.inertia[0][0], 2.0 * (1.0 / 60.0 - 1.0 / 96.0), 1e-15);
  EXPECT_NEAR(p.inertia[0][1], -(1.0 / 120.0 - 1.0 / 96.0), 1e-15);
}

TEST(MassProperties, OfABodyMadeOfTwoBlocks) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  vyr::ref_ptr<vyr::Material> light = new vyr::Material("light", 1.0);
  vyr::ref_ptr<vyr::Material> heavy = new vyr::Material("heavy", 3.0);
  auto* first = new vyrCollide::Geometry(new vyrCollide::Box(0.5, 0.5, 0.5));
  first->setMaterial(light.get());
  auto* second = new vyrCollide::Geometry(new vyrCollide::Box(0.5, 0.5, 0.5));
  second->setMaterial(heavy.get());
  body->add(first, vyr::AffineMatrix4x4::translate(0.0, 0.0, 0.0));
  body->add(second, vyr::AffineMatrix4x4::translate(4.0, 0.0, 0.0));
  body->setPosition(vyr::Vec3(10.0, 0.0, 0.0));
  EXPECT_DOUBLE_EQ(body->getMass(), 4.0);
  EXPECT_NEAR((body->getCenterOfMass() - vyr::Vec3(13.0, 0.0, 0.0)).length(), 0.0, 1e-12);
  EXPECT_DOUBLE_EQ(body->getPosition().x(), 10.0);
  // m a^2 / 6 each, and 1 * 3^2 + 3 * 1^2 across.
  expectDiagonal(body->getInertia(), 4.0 / 6.0, 4.0 / 6.0 + 12.0, 4.0 / 6.0 + 12.0);
  body->setMass(8.0);
  expectDiagonal(body->getInertia(), 8.0 / 6.0, 8.0 / 6.0 + 24.0, 8.0 / 6.0 + 24.0);
}

TEST(MassProperties, OfATurnedBlockHaveProducts) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  vyr::ref_ptr<vyr::Material> unit = new vyr::Material("unit", 2.0);
  auto* geometry = new vyrCollide::Geometry(new vyrCollide::Box(0.5, 1.0, 1.5));
  geometry->setMaterial(unit.get());
  body->add(geometry, vyr::AffineMatrix4x4::rotate(kPi / 4.0, vyr::Vec3(0.0, 0.0, 1.0)));
  // 12 kg: moments 13, 10, 5 turned by 45 degrees about z: (13 + 10) / 2 and product (13 - 10) / 2.
  const vyr::SPDMatrix3x3 inertia = body->getInertia();
  EXPECT_NEAR(inertia(0, 0), 11.5, 1e-12);
  EXPECT_NEAR(inertia(1, 1), 11.5, 1e-12);
  EXPECT_NEAR(inertia(2, 2), 5.0, 1e-12);
  EXPECT_NEAR(inertia(0, 1), 1.5, 1e-12);
  // The pose that users see is free of the principal axes.
  EXPECT_NEAR((body->getPosition() - vyr::Vec3()).length(), 0.0, 1e-12);
  double angle = 0.0;
  vyr::Vec3 axis;
  body->getRotation().getRotate(angle, axis);
  EXPECT_NEAR(std::sin(angle), 0.0, 1e-12);
}

TEST(MassProperties, OfABodyWithoutVolume) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  EXPECT_DOUBLE_EQ(body->getMass(), 1.0);
  expectDiagonal(body->getInertia(), 1.0 / 6.0, 1.0 / 6.0, 1.0 / 6.0);
}
