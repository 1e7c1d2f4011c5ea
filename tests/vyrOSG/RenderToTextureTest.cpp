/// Scenes that are drawn into textures.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"
#include "TemporaryFolder.h"

#include <vyrOSG/RenderToTexture.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/ShapeDrawable>
#include <osg/Texture2D>
#include <osgDB/ReadFile>

namespace {

using vyrOSG::RenderToTexture;

/// A ball of one colour at the origin, not lit.
osg::ref_ptr<osg::Node> ball(const osg::Vec4& color) {
  osg::ref_ptr<osg::ShapeDrawable> drawable = new osg::ShapeDrawable(new osg::Sphere(osg::Vec3(), 1.0f));
  drawable->setColor(color);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(drawable.get());
  geode->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  return geode;
}

TEST(RenderToTexture, DefaultsAreEightSamplesAndRgba) {
  const vyr::ref_ptr<RenderToTexture> target = new RenderToTexture(64, 32);
  EXPECT_EQ(target->getSize(), vyr::Vec2u(64, 32));
  ASSERT_TRUE(target->getTexture());
  EXPECT_EQ(target->getTexture()->getInternalFormat(), 6408);
  EXPECT_EQ(target->getTexture()->getTextureWidth(), 64);
  EXPECT_EQ(target->getTexture()->getTextureHeight(), 32);
  osg::Camera* camera = target->getCamera();
  ASSERT_TRUE(camera);
  EXPECT_TRUE(camera->isRenderToTextureCamera());
  EXPECT_EQ(camera->getRenderOrder(), osg::Camera::PRE_RENDER);
  const osg::Camera::Attachment& color = camera->getBufferAttachmentMap()[osg::Camera::COLOR_BUFFER];
  EXPECT_EQ(color._texture.get(), target->getTexture());
  EXPECT_EQ(color._multisampleSamples, 8u);
  EXPECT_EQ(target->getImageCapture(), nullptr);
}

TEST(RenderToTexture, OneSampleIsNoAntiAliasing) {
  const vyr::ref_ptr<RenderToTexture> target = new RenderToTexture(8, 8, 1, GL_RGB);
  EXPECT_EQ(target->getCamera()->getBufferAttachmentMap()[osg::Camera::COLOR_BUFFER]._multisampleSamples, 0u);
  EXPECT_EQ(target->getTexture()->getInternalFormat(), GL_RGB);
}

TEST(RenderToTexture, UnusableSizesAreOneErrorLine) {
  CapturedMessages messages;
  const vyr::ref_ptr<RenderToTexture> target = new RenderToTexture(0, static_cast<std::size_t>(-5));
  EXPECT_EQ(messages.take().size(), 1u);
  EXPECT_EQ(target->getSize(), vyr::Vec2u(1, 16384));
}

TEST(RenderToTexture, DrawsItsSceneIntoTheTexture) {
  const CapturedMessages messages;
  OffscreenViewer screen(64, 64);
  if (!screen.isReady())
    GTEST_SKIP() << "no graphics: " << screen.describe();
  const vyr::ref_ptr<RenderToTexture> target = new RenderToTexture(128, 64);
  target->setScene(ball(osg::Vec4(1, 0, 0, 1)).get());
  target->getCamera()->setClearColor(osg::Vec4(0, 1, 0, 1));
  target->getCamera()->setViewMatrixAsLookAt(osg::Vec3d(0, -5, 0), osg::Vec3d(), osg::Vec3d(0, 0, 1));

  // The main picture is a square that shows the texture.
  osg::ref_ptr<osg::Geometry> square =
      osg::createTexturedQuadGeometry(osg::Vec3(-1, -1, 0), osg::Vec3(2, 0, 0), osg::Vec3(0, 2, 0));
  square->getOrCreateStateSet()->setTextureAttributeAndModes(0, target->getTexture());
  square->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(square.get());
  osg::ref_ptr<osg::Group> root = new osg::Group;
  root->addChild(target->getCamera());
  root->addChild(geode.get());
  screen.viewer()->setSceneData(root.get());
  screen.camera()->setProjectionMatrixAsOrtho2D(-1, 1, -1, 1);
  screen.camera()->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);

  const osg::ref_ptr<osg::Image> image = screen.draw();
  ASSERT_TRUE(image);
  EXPECT_EQ(image->getColor(32u, 32u), osg::Vec4(1, 0, 0, 1));
  EXPECT_EQ(image->getColor(2u, 2u), osg::Vec4(0, 1, 0, 1));
  EXPECT_EQ(image->getColor(61u, 61u), osg::Vec4(0, 1, 0, 1));
}

TEST(RenderToTexture, FollowsTheReferenceCameraInTheSameFrame) {
  const CapturedMessages messages;
  OffscreenViewer screen(64, 64);
  if (!screen.isReady())
    GTEST_SKIP() << "no graphics: " << screen.describe();
  const vyr::ref_ptr<RenderToTexture> target = new RenderToTexture(128, 64);
  target->setReferenceCamera(screen.camera());
  osg::ref_ptr<osg::Group> root = new osg::Group;
  root->addChild(target->getCamera());
  screen.viewer()->setSceneData(root.get());
  const osg::Matrixd view = osg::Matrixd::lookAt(osg::Vec3d(3, -5, 2), osg::Vec3d(), osg::Vec3d(0, 0, 1));
  screen.camera()->setViewMatrix(view);
  screen.viewer()->frame();
  EXPECT_EQ(target->getCamera()->getViewMatrix(), view);
  EXPECT_EQ(target->getCamera()->getClearColor(), osg::Vec4(0, 0, 1, 1));
  double fovy, aspectRatio, zNear, zFar;
  ASSERT_TRUE(target->getCamera()->getProjectionMatrixAsPerspective(fovy, aspectRatio, zNear, zFar));
  EXPECT_NEAR(fovy, 40.0, 1e-9);
  EXPECT_NEAR(aspectRatio, 2.0, 1e-9);

  screen.camera()->setProjectionMatrixAsOrtho(-3, 5, -2, 2, 1, 50);
  screen.viewer()->frame();
  double left, right, bottom, top;
  ASSERT_TRUE(target->getCamera()->getProjectionMatrixAsOrtho(left, right, bottom, top, zNear, zFar));
  EXPECT_NEAR(left, -3.0, 1e-9);
  EXPECT_NEAR(right, 5.0, 1e-9);
  EXPECT_NEAR(top, 2.0, 1e-9);

  target->setReferenceCamera(nullptr);
  screen.camera()->setViewMatrix(osg::Matrixd::identity());
  screen.viewer()->frame();
  EXPECT_EQ(target->getCamera()->getViewMatrix(), view);
}

TEST(RenderToTexture, AReferenceCameraMayGo) {
  const vyr::ref_ptr<RenderToTexture> target = new RenderToTexture(8, 8);
  osg::ref_ptr<osg::Camera> reference = new osg::Camera;
  target->setReferenceCamera(reference.get());
  EXPECT_EQ(reference->referenceCount(), 1);
  reference = nullptr;
  osg::NodeVisitor cull(osg::NodeVisitor::CULL_VISITOR, osg::NodeVisitor::TRAVERSE_ALL_CHILDREN);
  target->getCamera()->accept(cull);
  EXPECT_EQ(target->getCamera()->getViewMatrix(), osg::Matrixd::identity());
}

TEST(RenderToTexture, WritesTheTextureToImageFiles) {
  CapturedMessages messages;
  OffscreenViewer screen(64, 64);
  if (!screen.isReady())
    GTEST_SKIP() << "no graphics: " << screen.describe();
  const TemporaryFolder folder;
  const vyr::ref_ptr<vyrOSG::ImageCapture> capture = new vyrOSG::ImageCapture(nullptr);
  capture->setDirectoryPath(folder / "texture");
  capture->setFps(20);
  const vyr::ref_ptr<RenderToTexture> target = new RenderToTexture(37, 21);
  target->setImageCapture(capture.get());
  EXPECT_EQ(target->getImageCapture(), capture.get());
  target->setScene(ball(osg::Vec4(1, 0, 0, 1)).get());
  target->getCamera()->setClearColor(osg::Vec4(0, 1, 0, 0));
  target->getCamera()->setViewMatrixAsLookAt(osg::Vec3d(0, -5, 0), osg::Vec3d(), osg::Vec3d(0, 0, 1));
  osg::ref_ptr<osg::Group> root = new osg::Group;
  root->addChild(target->getCamera());
  screen.viewer()->setSceneData(root.get());
  capture->startCapture();
  for (int i = 0; i <= 20; ++i) {
    target->preFrame(i * 0.05);
    screen.viewer()->frame();
    EXPECT_TRUE(target->postFrame());
  }
  EXPECT_TRUE(messages.take().empty());
  EXPECT_EQ(TemporaryFolder::countFiles(folder / "texture"), 20u);
  const osg::ref_ptr<osg::Image> read = osgDB::readRefImageFile(capture->getImagePath(19));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->s(), 37);
  EXPECT_EQ(read->t(), 21);
  EXPECT_EQ(read->getColor(18u, 10u), osg::Vec4(1, 0, 0, 1));
  EXPECT_EQ(read->getColor(1u, 1u), osg::Vec4(0, 1, 0, 1));
}

/// Pixels of the picture of a red ball before green that are neither red nor green.
int countMixedPixels(OffscreenViewer& screen, std::size_t samples) {
  const TemporaryFolder folder;
  const vyr::ref_ptr<vyrOSG::ImageCapture> capture = new vyrOSG::ImageCapture(nullptr);
  capture->setDirectoryPath(folder.path());
  const vyr::ref_ptr<RenderToTexture> target = new RenderToTexture(64, 64, samples);
  target->setImageCapture(capture.get());
  target->setScene(ball(osg::Vec4(1, 0, 0, 1)).get());
  target->getCamera()->setClearColor(osg::Vec4(0, 1, 0, 1));
  target->getCamera()->setViewMatrixAsLookAt(osg::Vec3d(0, -5, 0), osg::Vec3d(), osg::Vec3d(0, 0, 1));
  osg::ref_ptr<osg::Group> root = new osg::Group;
  root->addChild(target->getCamera());
  screen.viewer()->setSceneData(root.get());
  capture->startCapture();
  for (const double time : {0.0, 0.04}) {
    target->preFrame(time);
    screen.viewer()->frame();
    target->postFrame();
  }
  const osg::ref_ptr<osg::Image> read = osgDB::readRefImageFile(capture->getImagePath(0));
  int mixed = 0;
  for (unsigned row = 0; read && row < 64; ++row)
    for (unsigned column = 0; column < 64; ++column) {
      const osg::Vec4 color = read->getColor(column, row);
      mixed += color != osg::Vec4(1, 0, 0, 1) && color != osg::Vec4(0, 1, 0, 1) ? 1 : 0;
    }
  return mixed;
}

TEST(RenderToTexture, SamplesSmoothTheEdges) {
  const CapturedMessages messages;
  OffscreenViewer screen(64, 64);
  if (!screen.isReady())
    GTEST_SKIP() << "no graphics: " << screen.describe();
  EXPECT_EQ(countMixedPixels(screen, 1), 0);
  EXPECT_GT(countMixedPixels(screen, 4), 40);
}

TEST(RenderToTexture, TheSceneIsReplaced) {
  const vyr::ref_ptr<RenderToTexture> target = new RenderToTexture(8, 8);
  target->setScene(new osg::Group);
  target->setScene(new osg::Group);
  EXPECT_EQ(target->getCamera()->getNumChildren(), 1u);
  target->setScene(nullptr);
  EXPECT_EQ(target->getCamera()->getNumChildren(), 0u);
  EXPECT_TRUE(target->postFrame());
}

} // namespace
