/// What comes out of a run of the application: films, captures, textures and single pictures, in step with its time.
#include "ApplicationFixture.h"
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
#include <osg/ShapeDrawable>
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

/// Rows and columns of a picture that a red box covers, and pixels of its middle row that are neither red nor not.
struct RedBox {
  explicit RedBox(const osg::Image& image) {
    const auto redness = [&](int column, int row) {
      const osg::Vec4 color = image.getColor(static_cast<unsigned>(column), static_cast<unsigned>(row));
      return color.r() - color.b();
    };
    const float full = redness(image.s() / 2, image.t() / 2);
    for (int column = 0; column < image.s(); ++column) {
      const float share = redness(column, image.t() / 2) / full;
      width += share > 0.9f;
      between += share > 0.2f && share < 0.9f;
    }
    for (int row = 0; row < image.t(); ++row)
      height += redness(image.s() / 2, row) > 0.9f * full;
  }
  int width = 0;
  int height = 0;
  int between = 0;
};

TEST_F(ApplicationPictures, ACaptureOfAnotherSizeIsDrawnAndNotScaled) {
  LaunchOptions::process().duration = 0.5;
  for (const auto& [width, height] : {std::pair(256, 192), std::pair(512, 192)}) {
    if (!start())
      GTEST_SKIP() << "no graphics: " << application->getGraphicsBackend()->describe();
    osg::ref_ptr<osg::ShapeDrawable> box = new osg::ShapeDrawable(new osg::Box(osg::Vec3(), 2.0f));
    box->setColor(osg::Vec4(1, 0, 0, 1));
    box->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
    application->getSceneRoot()->addChild(box.get());
    application->setCameraHome(vyr::Vec3(0, -8, 0), vyr::Vec3(0, 0, 0));
    vyrOSG::ImageCapture* capture = application->getImageCapture();
    capture->setDirectoryPath(folder / std::to_string(width));
    capture->setFps(4);
    capture->setImageResolution(static_cast<std::size_t>(width), static_cast<std::size_t>(height));
    capture->startCapture();
    EXPECT_EQ(application->run(), 0);
    EXPECT_EQ(TemporaryFolder::countFiles(folder / std::to_string(width)), 2u);
    const auto read = osgDB::readRefImageFile(folder / (std::to_string(width) + "/image_00001.png"));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->s(), width);
    EXPECT_EQ(read->t(), height);
    const RedBox seen(*read);
    // 2 m at a distance of 7 m, in a view of 40 degrees: 2 / (2 * 7 * tan 20) of the height, as much to the side.
    EXPECT_NEAR(seen.height, 0.392 * height, 2);
    EXPECT_NEAR(seen.width, seen.height, 1);
    EXPECT_EQ(seen.between, 0) << "a picture of 64 by 48 that is scaled has soft edges";
    // The window's own size is back.
    application->takeScreenShot(vyr::String(folder / "window.png"));
    const auto window = osgDB::readRefImageFile(folder / "window.png");
    EXPECT_EQ(window->s(), 64);
    EXPECT_NEAR(RedBox(*window).height, 0.392 * 48, 1);
    EXPECT_NEAR(RedBox(*window).width, RedBox(*window).height, 1);
  }
}

TEST_F(ApplicationPictures, AFilmOfSeveralScenesHasAllTheirPictures) {
  LaunchOptions& options = LaunchOptions::process();
  options.record = folder / "film/%05d.png";
  options.fps = 25;
  if (!start())
    GTEST_SKIP() << "no graphics: " << application->getGraphicsBackend()->describe();
  vyr::ref_ptr<FunctionLoader> loader = new FunctionLoader;
  const std::string script = folder / "scene.lua";
  std::ofstream(script) << "-- scenes\n";
  application->setSceneLoader(loader.get());
  for (const auto& [name, duration] : {std::pair("one", 0.4f), std::pair("two", 0.52f), std::pair("three", 0.08f)}) {
    loader->scenes[name] = [](vyrSDK::Simulation&, ExampleApplication&, vyrOSG::Group&) {};
    application->addScene(script, name, false, duration, false);
  }
  EXPECT_EQ(application->run(), 0);
  EXPECT_EQ(loader->built, std::vector<std::string>({"one", "two", "three"}));
  EXPECT_EQ(TemporaryFolder::countFiles(folder / "film"), 25u);
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
