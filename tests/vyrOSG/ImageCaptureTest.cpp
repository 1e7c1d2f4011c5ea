/// The recorder of numbered image files: its settings, its lock step with a clock, and its failures.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"
#include "TemporaryFolder.h"
#include "TestPicture.h"

#include <vyrOSG/ImageCapture.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <osgDB/ReadFile>

#include <cmath>
#include <limits>
#include <thread>

namespace {

using vyrOSG::ImageCapture;

class ImageCaptureTest : public testing::Test {
protected:
  void SetUp() override { capture->setDirectoryPath(folder / "shots"); }

  /// Steps a clock from 0 through `steps` steps of `dt` seconds and writes what becomes due. @return number of files.
  std::size_t run(double dt, int steps) {
    capture->write(*picture, capture->advance(0.0));
    for (int i = 1; i <= steps; ++i)
      capture->write(*picture, capture->advance(i * dt));
    return TemporaryFolder::countFiles(folder / "shots");
  }

  TemporaryFolder folder;
  CapturedMessages messages;
  osg::ref_ptr<osg::Image> picture = makePicture(8, 6, osg::Vec4(1, 0, 0, 1));
  vyr::ref_ptr<ImageCapture> capture{new ImageCapture(nullptr)};
};

TEST_F(ImageCaptureTest, DefaultsAreAsDocumented) {
  const vyr::ref_ptr<ImageCapture> fresh = new ImageCapture(nullptr);
  EXPECT_EQ(fresh->getDirectoryPath(), ".");
  EXPECT_EQ(fresh->getPrefix(), "image_");
  EXPECT_EQ(fresh->getPostfix(), ".png");
  EXPECT_EQ(fresh->getFps(), 25.0f);
  EXPECT_EQ(fresh->getImageNum(), 0);
  EXPECT_EQ(fresh->getImageResolution(), vyr::Vec2u(0, 0));
  EXPECT_FALSE(fresh->getCaptureStarted());
  EXPECT_EQ(fresh->getImagePath(0), "./image_00000.png");
}

TEST_F(ImageCaptureTest, NumberOfImagesIsDurationTimesRate) {
  for (const auto& [fps, dt, steps, expected] :
       {std::tuple(30.0f, 1.0 / 60, 120, 60u), std::tuple(25.0f, 1.0 / 60, 120, 50u),
        std::tuple(60.0f, 1.0 / 60, 90, 90u), std::tuple(24.0f, 0.01, 250, 60u), std::tuple(50.0f, 0.1, 13, 65u),
        std::tuple(29.97f, 0.01, 1000, 299u)}) {
    const TemporaryFolder other;
    capture = new ImageCapture(nullptr);
    capture->setDirectoryPath(folder / ("shots" + std::to_string(fps) + std::to_string(dt)));
    capture->setFps(fps);
    capture->startCapture();
    run(dt, steps);
    EXPECT_TRUE(capture->stopCapture());
    EXPECT_EQ(TemporaryFolder::countFiles(capture->getDirectoryPath()), expected) << fps << " at " << dt;
    EXPECT_EQ(capture->getNumCaptured(), static_cast<int>(expected));
  }
  EXPECT_TRUE(messages.errors().empty());
}

TEST_F(ImageCaptureTest, ALongFilmLosesNoImage) {
  // Only counted, not written: ten hours at each common rate. The stored interval is single precision.
  for (const float fps : {24.0f, 25.0f, 30.0f, 50.0f, 60.0f, 120.0f}) {
    capture = new ImageCapture(nullptr);
    capture->setFps(fps);
    capture->startCapture();
    long count = capture->advance(0.0);
    for (int i = 1; i <= 36000 * 60; ++i)
      count += capture->advance(i / 60.0);
    EXPECT_EQ(count, std::lround(36000.0 * static_cast<double>(fps))) << fps;
  }
}

TEST_F(ImageCaptureTest, FilesAreNumberedOneByOne) {
  capture->setPrefix("run-");
  capture->setPostfix("-left.jpg");
  capture->setFps(10);
  capture->startCapture(7);
  EXPECT_EQ(run(0.1, 3), 3u);
  EXPECT_EQ(capture->getImageNum(), 10);
  for (const std::string name : {"run-00007-left.jpg", "run-00008-left.jpg", "run-00009-left.jpg"})
    EXPECT_TRUE(std::filesystem::exists(folder / "shots" + "/" + name)) << name;
}

TEST_F(ImageCaptureTest, APostfixWithoutExtensionGivesPng) {
  capture->setPostfix("_left");
  EXPECT_EQ(capture->getImagePath(123456), folder / "shots/image_123456_left.png");
  capture->setDirectoryPath("");
  EXPECT_EQ(capture->getImagePath(1), "image_00001_left.png");
}

TEST_F(ImageCaptureTest, ASecondCaptureDoesNotWriteOverTheFirst) {
  capture->setFps(10);
  capture->startCapture();
  EXPECT_EQ(run(0.1, 2), 2u);
  capture->stopCapture();
  capture->startCapture();
  EXPECT_EQ(run(0.1, 3), 5u);
  EXPECT_EQ(capture->getImageNum(), 5);
}

TEST_F(ImageCaptureTest, RateAndMaximumStayWhileACaptureRuns) {
  capture->setFps(10);
  capture->setMaxImages(2);
  capture->startCapture();
  EXPECT_TRUE(capture->getCaptureStarted());
  capture->setFps(50);
  capture->setMaxImages(99);
  EXPECT_EQ(capture->getFps(), 10.0f);
  EXPECT_EQ(run(0.1, 10), 2u);
  EXPECT_FALSE(capture->getCaptureStarted());
  EXPECT_FALSE(capture->stopCapture());
  capture->setFps(50);
  EXPECT_EQ(capture->getFps(), 50.0f);
  EXPECT_TRUE(messages.errors().empty());
}

TEST_F(ImageCaptureTest, TheMaximumCountsEachCapture) {
  capture->setFps(10);
  capture->setMaxImages(3);
  for (const std::size_t expected : {3u, 6u}) {
    capture->startCapture();
    EXPECT_EQ(run(0.1, 9), expected);
    EXPECT_FALSE(capture->getCaptureStarted());
  }
}

TEST_F(ImageCaptureTest, FpsIsTheReciprocalInSinglePrecision) {
  for (const float fps : {25.0f, 30.0f, 7.0f, 1000.0f}) {
    capture->setFps(fps);
    EXPECT_EQ(capture->getFps(), 1.0f / (1.0f / fps)) << fps;
  }
  capture->setFps(0.0f);
  EXPECT_EQ(capture->getFps(), 0.0f);
}

TEST_F(ImageCaptureTest, RatesWithoutMeaningTakeNoImages) {
  for (const float fps : {0.0f, -30.0f, std::nanf("")}) {
    capture->setFps(fps);
    capture->startCapture();
    EXPECT_EQ(run(1.0, 3), 0u) << fps;
    EXPECT_EQ(capture->getTimeToNextImage(), std::numeric_limits<double>::infinity()) << fps;
    EXPECT_TRUE(capture->stopCapture());
  }
}

TEST_F(ImageCaptureTest, ResetTimeBeginsANewInterval) {
  capture->setFps(10);
  capture->startCapture();
  capture->advance(0.0);
  EXPECT_EQ(capture->advance(0.09), 0);
  EXPECT_NEAR(capture->getTimeToNextImage(), 0.01, 1e-9);
  capture->resetTime();
  EXPECT_EQ(capture->advance(0.1), 0);
  EXPECT_EQ(capture->advance(0.19), 0);
  EXPECT_EQ(capture->advance(0.2), 1);
  // A scene that starts again begins again, too.
  EXPECT_EQ(capture->advance(0.0), 0);
  EXPECT_EQ(capture->advance(0.1), 1);
}

TEST_F(ImageCaptureTest, ImagesHaveTheResolutionThatWasSet) {
  capture->setImageResolution(16, 4);
  EXPECT_EQ(capture->getImageResolution(), vyr::Vec2u(16, 4));
  capture->startCapture();
  ASSERT_TRUE(capture->write(*picture));
  const osg::ref_ptr<osg::Image> read = osgDB::readRefImageFile(capture->getImagePath(0));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->s(), 16);
  EXPECT_EQ(read->t(), 4);
  capture->setImageResolution(0, 0);
  ASSERT_TRUE(capture->write(*picture));
  EXPECT_EQ(osgDB::readRefImageFile(capture->getImagePath(1))->s(), 8);
}

TEST_F(ImageCaptureTest, UnusableResolutionsAreOneErrorLineEach) {
  capture->setImageResolution(16, 4);
  for (const auto& [width, height] :
       {std::pair<std::size_t, std::size_t>(0, 4), {4, 0}, {20000, 4}, {4, static_cast<std::size_t>(-4)}}) {
    capture->setImageResolution(width, height);
    EXPECT_EQ(capture->getImageResolution(), vyr::Vec2u(16, 4));
    EXPECT_EQ(messages.take().size(), 1u);
  }
}

TEST_F(ImageCaptureTest, ANegativeFirstNumberStartsNothing) {
  capture->startCapture(-1);
  EXPECT_FALSE(capture->getCaptureStarted());
  EXPECT_THAT(messages.takeOne(), testing::HasSubstr("-1"));
}

TEST_F(ImageCaptureTest, AnUnwritableDirectoryStopsTheCaptureWithOneLine) {
  capture->setDirectoryPath("/proc/nowhere");
  capture->setFps(10);
  capture->startCapture();
  run(0.1, 5);
  EXPECT_FALSE(capture->getCaptureStarted());
  EXPECT_THAT(messages.takeOne(), testing::HasSubstr("/proc/nowhere/image_00000.png"));
  EXPECT_EQ(capture->getImageNum(), 0);
}

TEST_F(ImageCaptureTest, AFailureKeepsEarlierImages) {
  capture->setFps(10);
  capture->startCapture();
  EXPECT_EQ(run(0.1, 3), 3u);
  std::filesystem::create_directory(capture->getImagePath(3));
  EXPECT_FALSE(capture->write(*picture));
  EXPECT_FALSE(capture->getCaptureStarted());
  EXPECT_THAT(messages.takeOne(), testing::HasSubstr("image_00003.png"));
  EXPECT_EQ(TemporaryFolder::countFiles(folder / "shots"), 3u);
}

TEST_F(ImageCaptureTest, IncImageNumGivesTheNewNumber) {
  EXPECT_EQ(capture->incImageNum(), 1);
  EXPECT_EQ(capture->getImageNum(), 1);
  capture->startCapture(2147483647);
  EXPECT_EQ(capture->incImageNum(), 2147483647);
}

TEST_F(ImageCaptureTest, WithoutAPictureACaptureStops) {
  capture->setFps(10);
  capture->startCapture();
  capture->preFrame(0.0, nullptr);
  EXPECT_TRUE(capture->postFrame(nullptr));
  capture->preFrame(0.5, nullptr);
  EXPECT_FALSE(capture->postFrame(nullptr));
  EXPECT_FALSE(capture->getCaptureStarted());
  EXPECT_EQ(messages.take().size(), 1u);
}

TEST_F(ImageCaptureTest, TheFlagMayBeReadWhileAnotherThreadStartsAndStops) {
  std::thread other([this] {
    for (int i = 0; i < 10000; ++i) {
      capture->startCapture();
      capture->stopCapture();
    }
  });
  int started = 0;
  for (int i = 0; i < 10000; ++i)
    started += capture->getCaptureStarted() ? 1 : 0;
  other.join();
  EXPECT_LE(started, 10000);
  EXPECT_FALSE(capture->getCaptureStarted());
}

TEST_F(ImageCaptureTest, CapturesWhatACameraDraws) {
  OffscreenViewer screen(32, 24);
  if (!screen.isReady())
    GTEST_SKIP() << "no graphics: " << screen.describe();
  screen.viewer()->setSceneData(new osg::Group);
  capture->setFps(30);
  capture->startCapture();
  for (int i = 0; i <= 60; ++i) {
    screen.camera()->setClearColor(osg::Vec4(static_cast<float>(i) / 60, 0, 0, 1));
    capture->preFrame(i / 60.0, screen.grabber());
    screen.viewer()->frame();
    EXPECT_TRUE(capture->postFrame(screen.grabber()));
  }
  EXPECT_EQ(TemporaryFolder::countFiles(folder / "shots"), 30u);
  const osg::ref_ptr<osg::Image> last = osgDB::readRefImageFile(capture->getImagePath(29));
  ASSERT_TRUE(last);
  EXPECT_EQ(last->getColor(16u, 12u), osg::Vec4(1, 0, 0, 1));
}

} // namespace
