/// What comes out of a run of the application: films, captures, textures and single pictures, in step with its time.
#include "CapturedMessages.h"
#include "TemporaryFolder.h"

#include <vyrIO/ArgumentParser.h>
#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/FrameRecorder.h>
#include <vyrOSG/GraphicsBackend.h>
#include <vyrOSG/ImageCapture.h>
#include <vyrOSG/LaunchOptions.h>
#include <vyrOSG/RenderToTexture.h>
#include <vyrOSG/SceneDecorator.h>
#include <vyrOSG/SimulationTimePrinter.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <osgDB/ReadFile>

namespace {

using vyrOSG::ExampleApplication;
using vyrOSG::LaunchOptions;

class ApplicationPictures : public testing::Test {
protected:
  ApplicationPictures() {
    LaunchOptions& options = LaunchOptions::process();
    options = LaunchOptions();
    options.backend = LaunchOptions::EGL;
    options.width = 64;
    options.height = 48;
    options.samples = 0;
  }
  ~ApplicationPictures() override { LaunchOptions::process() = LaunchOptions(); }

  /// Makes the application under the options of now. @return whether pictures can be drawn here.
  bool start() {
    application = new ExampleApplication;
    application->init(new vyrIO::ArgumentParser);
    application->setupViewer(true, true);
    return application->getGraphicsBackend()->getContext() != nullptr;
  }

  TemporaryFolder folder;
  CapturedMessages messages;
  vyr::ref_ptr<ExampleApplication> application;
};

TEST_F(ApplicationPictures, ASequenceHasDurationTimesRatePictures) {
  for (const auto& [fps, timeStep, duration, expected] :
       {std::tuple(30.0, 1.0 / 60, 1.0, 30u), std::tuple(25.0, 1.0 / 60, 2.0, 50u), std::tuple(60.0, 0.01, 0.5, 30u)}) {
    LaunchOptions& options = LaunchOptions::process();
    options.record = folder / (std::to_string(fps) + "/%05d.png");
    options.fps = fps;
    options.duration = duration;
    if (!start())
      GTEST_SKIP() << "no graphics: " << application->getGraphicsBackend()->describe();
    application->setTimeStep(timeStep);
    EXPECT_EQ(application->run(), 0);
    EXPECT_EQ(TemporaryFolder::countFiles(folder / std::to_string(fps)), expected) << fps;
  }
}

TEST_F(ApplicationPictures, CapturesAndTexturesKeepTheirOwnRates) {
  LaunchOptions::process().duration = 1.0;
  if (!start())
    GTEST_SKIP() << "no graphics: " << application->getGraphicsBackend()->describe();
  vyrOSG::ImageCapture* capture = application->getImageCapture();
  capture->setDirectoryPath(folder / "screen");
  capture->setFps(20);
  capture->startCapture();
  const vyr::ref_ptr<vyrOSG::RenderToTexture> target = new vyrOSG::RenderToTexture(32, 32, 1);
  const vyr::ref_ptr<vyrOSG::ImageCapture> texture = new vyrOSG::ImageCapture(application->getSimulation());
  texture->setDirectoryPath(folder / "texture");
  texture->setFps(12);
  texture->startCapture();
  target->setImageCapture(texture.get());
  target->setReferenceCamera(application->getCamera());
  application->addRenderToTexture(target.get());
  EXPECT_EQ(application->run(), 0);
  EXPECT_EQ(TemporaryFolder::countFiles(folder / "screen"), 20u);
  EXPECT_EQ(TemporaryFolder::countFiles(folder / "texture"), 12u);
  EXPECT_EQ(osgDB::readRefImageFile(folder / "screen/image_00000.png")->s(), 64);
  EXPECT_EQ(osgDB::readRefImageFile(folder / "texture/image_00000.png")->s(), 32);
}

TEST_F(ApplicationPictures, AnUnwritableCaptureFailsTheRunWithOneLine) {
  LaunchOptions::process().duration = 0.5;
  if (!start())
    GTEST_SKIP() << "no graphics: " << application->getGraphicsBackend()->describe();
  application->getImageCapture()->setDirectoryPath("/proc/nowhere");
  application->getImageCapture()->startCapture();
  EXPECT_EQ(application->run(), 1);
  EXPECT_THAT(messages.takeOne(), testing::HasSubstr("/proc/nowhere/image_00000.png"));
  EXPECT_NEAR(application->getTimeStamp(), 0.5, 1e-9);
}

TEST_F(ApplicationPictures, WithoutGraphicsACaptureEndsWithOneLine) {
  LaunchOptions::process().backend = LaunchOptions::NONE;
  LaunchOptions::process().duration = 0.5;
  EXPECT_FALSE(start());
  application->getImageCapture()->setDirectoryPath(folder.path());
  application->getImageCapture()->startCapture();
  EXPECT_EQ(application->run(), 3);
  EXPECT_THAT(messages.takeOne(), testing::HasSubstr("nothing is rendered"));
  EXPECT_EQ(TemporaryFolder::countFiles(folder.path()), 0u);
}

TEST_F(ApplicationPictures, SinglePicturesTellWhyTheyAreMissing) {
  if (!start())
    GTEST_SKIP() << "no graphics: " << application->getGraphicsBackend()->describe();
  application->takeScreenShot(folder / "deep/shot.png");
  EXPECT_TRUE(std::filesystem::exists(folder / "deep/shot.png"));
  application->takeScreenShot(folder / "shot.nosuchformat");
  EXPECT_THAT(messages.takeOne(), testing::HasSubstr("shot.nosuchformat"));
  application->takeScreenShot(std::string("/proc/nowhere/shot.png"));
  EXPECT_THAT(messages.takeOne(), testing::HasSubstr("/proc/nowhere/shot.png"));
}

TEST_F(ApplicationPictures, TheDisplayIsPartOfThePicture) {
  LaunchOptions::process().width = 320;
  LaunchOptions::process().height = 240;
  if (!start())
    GTEST_SKIP() << "no graphics: " << application->getGraphicsBackend()->describe();
  application->getSceneDecorator()->setBackgroundColor(vyr::Vec3(0, 0, 0));
  const auto brightness = [this](const std::string& name) {
    application->takeScreenShot(folder / name);
    const osg::ref_ptr<osg::Image> image = osgDB::readRefImageFile(folder / name);
    float sum = 0;
    for (unsigned row = 0; image && row < 240; ++row)
      for (unsigned column = 0; column < 320; ++column)
        sum += image->getColor(column, row).r();
    return sum;
  };
  EXPECT_EQ(brightness("before.png"), 0.0f);
  const vyr::ref_ptr<vyrOSG::HudTextManager> manager = new vyrOSG::HudTextManager(application->getSceneDecorator());
  const vyr::ref_ptr<vyrOSG::SimulationTimePrinter> printer = new vyrOSG::SimulationTimePrinter(manager.get());
  application->getSimulation()->add(printer.get());
  EXPECT_GT(brightness("after.png"), 100.0f);
  EXPECT_EQ(application->getSceneDecorator()->getText(0), "Time: 0.000 s");
}

} // namespace
