/// Image files: what is written is read back, and failures name the file.
#include "TemporaryFolder.h"
#include "TestPicture.h"

#include <vyrOSG/PictureFile.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <osgDB/ReadFile>

namespace {

TEST(PictureFile, WritesAPngThatReadsBackWithItsRowsInPlace) {
  const TemporaryFolder folder;
  const std::string path = folder / "deep/er/picture.png";
  std::string reason;
  ASSERT_TRUE(vyrOSG::PictureFile::write(*makePicture(6, 4, osg::Vec4(1, 0, 0, 1), true), path, reason)) << reason;
  const osg::ref_ptr<osg::Image> read = osgDB::readRefImageFile(path);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->s(), 6);
  EXPECT_EQ(read->t(), 4);
  EXPECT_EQ(read->getColor(0u, 0u), osg::Vec4(1, 0, 0, 1));
  EXPECT_EQ(read->getColor(5u, 3u), osg::Vec4(1, 1, 1, 1));
}

TEST(PictureFile, WritesTheFormatOfTheExtension) {
  const TemporaryFolder folder;
  for (const std::string name : {"a.png", "a.jpg", "a.bmp", "a.tga", "a.PNG"}) {
    std::string reason;
    EXPECT_TRUE(vyrOSG::PictureFile::write(*makePicture(8, 8, osg::Vec4(0, 1, 0, 1)), folder / name, reason)) << reason;
    const osg::ref_ptr<osg::Image> read = osgDB::readRefImageFile(folder / name);
    ASSERT_TRUE(read) << name;
    EXPECT_EQ(read->s(), 8) << name;
    EXPECT_NEAR(read->getColor(4u, 4u).g(), 1.0f, 0.02f) << name;
  }
}

TEST(PictureFile, FailuresNameTheFile) {
  const TemporaryFolder folder;
  const osg::ref_ptr<osg::Image> picture = makePicture(4, 4, osg::Vec4(0, 0, 1, 1));
  std::string reason;
  EXPECT_FALSE(vyrOSG::PictureFile::write(*picture, folder / "a.nosuchformat", reason));
  EXPECT_THAT(reason, testing::AllOf(testing::HasSubstr("a.nosuchformat"), testing::HasSubstr("no image format")));
  EXPECT_FALSE(vyrOSG::PictureFile::write(*picture, "/proc/nowhere/a.png", reason));
  EXPECT_THAT(reason, testing::HasSubstr("/proc/nowhere/a.png"));
  std::filesystem::create_directory(folder / "taken.png");
  EXPECT_FALSE(vyrOSG::PictureFile::write(*picture, folder / "taken.png", reason));
  EXPECT_THAT(reason, testing::HasSubstr("taken.png"));
}

TEST(PictureFile, AFullDiskIsAFailure) {
  std::filesystem::path full = "/dev/full";
  if (!std::filesystem::exists(full))
    GTEST_SKIP() << "no /dev/full here";
  const TemporaryFolder folder;
  std::filesystem::create_symlink(full, folder / "a.png");
  std::string reason;
  EXPECT_FALSE(vyrOSG::PictureFile::write(*makePicture(64, 64, osg::Vec4(0, 0, 1, 1)), folder / "a.png", reason));
  EXPECT_THAT(reason, testing::HasSubstr("No space left"));
  EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(folder / "a.png")));
}

TEST(PictureFile, ScaledKeepsTheOriginal) {
  const osg::ref_ptr<osg::Image> picture = makePicture(8, 8, osg::Vec4(1, 0, 0, 1), true);
  const osg::ref_ptr<osg::Image> scaled = vyrOSG::PictureFile::scaled(*picture, 4, 2);
  EXPECT_EQ(picture->s(), 8);
  EXPECT_EQ(scaled->s(), 4);
  EXPECT_EQ(scaled->t(), 2);
  EXPECT_NEAR(scaled->getColor(1u, 0u).g(), 0.0f, 0.02f);
  EXPECT_NEAR(scaled->getColor(1u, 1u).g(), 1.0f, 0.02f);
}

} // namespace
