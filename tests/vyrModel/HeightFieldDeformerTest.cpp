/// Prints in a height field.
#include <vyr/RigidBody.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Sphere.h>
#include <vyrModel/HeightFieldDeformer.h>

#include <gtest/gtest.h>

namespace {

using vyr::Vec3;

struct Scene {
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  vyr::ref_ptr<vyrCollide::Geometry> ground{
      new vyrCollide::Geometry(new vyrCollide::HeightField(41, 41, 4, 4, vyr::RealVector(41 * 41, 0.0)))};
  vyr::ref_ptr<vyrModel::HeightFieldDeformer> deformer{new vyrModel::HeightFieldDeformer(ground.get())};

  Scene() {
    simulation->add(ground.get());
    simulation->add(deformer.get());
  }
  void addBox(double mass) const {
    vyr::ref_ptr<vyr::RigidBody> body(new vyr::RigidBody("load"));
    body->add(new vyrCollide::Geometry(new vyrCollide::Box(Vec3(0.3, 0.3, 0.3))));
    body->setMass(mass);
    body->setPosition(Vec3(0, 0, 0.301));
    simulation->add(body.get());
  }
};

TEST(HeightFieldDeformer, PrintsWhatIsTooHeavy) {
  const Scene scene;
  scene.addBox(2000);
  scene.simulation->stepTo(3);
  EXPECT_GT(scene.deformer->getDepth(20, 20), 0.02);
  EXPECT_NEAR(scene.deformer->getHeightField()->getHeight(20, 20), -scene.deformer->getDepth(20, 20), 1e-12);
  EXPECT_EQ(scene.deformer->getDepth(2, 2), 0);
  EXPECT_GT(scene.deformer->getRowRevision(20), 0u);
}

TEST(HeightFieldDeformer, BearsWhatIsLight) {
  const Scene scene;
  scene.deformer->setBearingCapacity(5e5);
  scene.addBox(10);
  scene.simulation->stepTo(2);
  EXPECT_EQ(scene.deformer->getRevision(), 0u);
}

TEST(HeightFieldDeformer, GoesNoDeeperThanItsMaximum) {
  const Scene scene;
  scene.deformer->setMaximumDepth(0.01);
  scene.addBox(5000);
  scene.simulation->stepTo(2);
  for (std::size_t i = 0; i < 41; ++i) {
    EXPECT_LE(scene.deformer->getDepth(i, 20), 0.01);
  }
}

TEST(HeightFieldDeformer, RefusesOtherGeometries) {
  vyr::ref_ptr<vyrCollide::Geometry> ball(new vyrCollide::Geometry(new vyrCollide::Sphere(1)));
  vyr::ref_ptr<vyrModel::HeightFieldDeformer> deformer(new vyrModel::HeightFieldDeformer(ball.get()));
  EXPECT_FALSE(deformer->isValid());
  vyr::ref_ptr<vyrModel::HeightFieldDeformer> none(new vyrModel::HeightFieldDeformer(nullptr));
  EXPECT_FALSE(none->isValid());
  none->post(vyr::TimeStamp());
  EXPECT_FALSE(none->setSoftness(-1));
  EXPECT_EQ(none->getDepth(0, 0), 0);
}

} // namespace
