/// Curves by `vyrUtil::Spline`.
#include <vyr/Math.h>
#include <vyr/ref_ptr.h>
#include <vyrUtil/Spline.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

vyr::ref_ptr<vyrUtil::Spline> makeSpline(std::initializer_list<vyr::Vec3> points) {
  vyr::ref_ptr<vyrUtil::Spline> spline(new vyrUtil::Spline);
  for (const vyr::Vec3& point : points) {
    spline->add(point);
  }
  return spline;
}

TEST(Spline, GoesThroughItsPoints) {
  const auto spline = makeSpline({{0, 0, 0}, {1, 2, 0}, {3, 1, 1}, {4, 0, 2}});
  for (std::size_t i = 0; i < spline->getNumPoints(); ++i) {
    EXPECT_TRUE(vyr::equivalent(spline->evaluate(static_cast<double>(i)), spline->getPoint(i), 1e-12));
  }
}

TEST(Spline, OfPointsOnALineIsTheLine) {
  const auto spline = makeSpline({{0, 0, 0}, {1, 1, 1}, {5, 5, 5}});
  for (const double t : {0.25, 0.5, 1.3, 1.9}) {
    const vyr::Vec3 place = spline->evaluate(t);
    EXPECT_NEAR(place.x(), place.y(), 1e-12);
    EXPECT_NEAR(place.x(), place.z(), 1e-12);
  }
  EXPECT_NEAR(spline->length(), 5 * std::sqrt(3.0), 1e-9);
  EXPECT_TRUE(vyr::equivalent(spline->tangent(1), vyr::Vec3(1, 1, 1).normalized(), 1e-6));
}

TEST(Spline, FollowsACircle) {
  vyr::ref_ptr<vyrUtil::Spline> spline(new vyrUtil::Spline);
  const double step = std::acos(-1.0) / 16;
  for (int i = 0; i <= 16; ++i) {
    spline->add(vyr::Vec3(std::cos(i * step), std::sin(i * step), 0));
  }
  for (double t = 2; t < 14; t += 0.1) {
    EXPECT_NEAR(spline->evaluate(t).length(), 1, 2e-4);
  }
  EXPECT_NEAR(spline->length(), std::acos(-1.0), 3e-3);
}

TEST(Spline, SamplesByDensity) {
  const auto spline = makeSpline({{0, 0, 0}, {1, 0, 0}, {1.5, 0, 0}});
  std::vector<double> parameters;
  EXPECT_EQ(spline->sample(10, &parameters).size(), 10u + 5u + 1u);
  EXPECT_EQ(parameters.size(), 16u);
  EXPECT_EQ(parameters.back(), 2);
  EXPECT_EQ(spline->sample(0).size(), 3u);
  EXPECT_EQ(spline->sample(-4).size(), 3u);
  EXPECT_EQ(spline->sample(std::numeric_limits<double>::quiet_NaN()).size(), 3u);
  EXPECT_EQ(spline->sample(1e9).size(), 2u * 256u + 1u);
}

TEST(Spline, TakesDegenerateInput) {
  vyr::ref_ptr<vyrUtil::Spline> spline(new vyrUtil::Spline);
  EXPECT_EQ(spline->evaluate(0.5), vyr::Vec3());
  EXPECT_TRUE(spline->sample(10).empty());
  EXPECT_EQ(spline->length(), 0);
  spline->add(vyr::Vec3(1, 2, 3));
  EXPECT_EQ(spline->evaluate(7), vyr::Vec3(1, 2, 3));
  EXPECT_EQ(spline->tangent(0), vyr::Vec3(0, 0, 1));
  spline->add(vyr::Vec3(1, 2, 3));
  EXPECT_TRUE(spline->evaluate(0.5).isFinite());
  EXPECT_FALSE(spline->add(vyr::Vec3(std::numeric_limits<double>::infinity(), 0, 0)));
  EXPECT_FALSE(spline->setPoint(5, vyr::Vec3()));
  EXPECT_EQ(spline->getNumPoints(), 2u);
}

} // namespace
