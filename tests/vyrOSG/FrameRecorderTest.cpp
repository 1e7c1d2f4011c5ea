/// Films and picture sequences: their length, their size, and what happens where they cannot be written.
#include "CapturedMessages.h"
#include "TemporaryFolder.h"
#include "TestPicture.h"

#include <vyrOSG/FrameRecorder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <osgDB/ReadFile>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

using vyrOSG::FrameRecorder;

/// Sets a variable of the environment for the life of the object.
class ScopedVariable {
public:
  ScopedVariable(const char* name, const std::string& value)
      : m_name(name)
      , m_old(std::getenv(name) ? std::getenv(name) : "") {
    setenv(name, value.c_str(), 1);
  }
  ~ScopedVariable() { setenv(m_name, m_old.c_str(), 1); }

private:
  const char* m_name;
  std::string m_old;
};

bool isInstalled(const std::string& program) {
  return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;
}

/// "width,height,rate,frames" of a film, as ffprobe counts them by decoding.
std::string probe(const std::string& film) {
  std::FILE* pipe = popen(("ffprobe -v error -count_frames -select_streams v:0 -of csv=p=0 -show_entries "
                           "stream=width,height,r_frame_rate,nb_read_frames '" +
                           film + "'")
                              .c_str(),
                          "r");
  std::array<char, 256> text{};
  const bool read = pipe && std::fgets(text.data(), text.size(), pipe);
  if (pipe)
    pclose(pipe);
  std::string line = read ? text.data() : "";
  return line.substr(0, line.find_first_of("\r\n"));
}

/// Runs a clock of `steps` steps of `dt` seconds through a recorder that is open.
void record(FrameRecorder& recorder, double dt, int steps, const osg::Image& picture) {
  recorder.write(picture, recorder.advance(0.0));
  for (int i = 1; i <= steps; ++i)
    recorder.write(picture, recorder.advance(i * dt));
}

TEST(FrameRecorder, FilmHasDurationTimesRateFrames) {
  if (!isInstalled("ffmpeg") || !isInstalled("ffprobe"))
    GTEST_SKIP() << "ffmpeg and ffprobe are not installed";
  const TemporaryFolder folder;
  const vyr::ref_ptr<FrameRecorder> recorder = new FrameRecorder;
  ASSERT_TRUE(recorder->open(folder / "film.mp4", 30));
  record(*recorder, 1.0 / 60, 150, *makePicture(64, 48, osg::Vec4(1, 0, 0, 1)));
  EXPECT_EQ(recorder->getFrameCount(), 75u);
  EXPECT_TRUE(recorder->close());
  EXPECT_EQ(probe(folder / "film.mp4"), "64,48,30/1,75");
}

TEST(FrameRecorder, FilmShowsThePictureUprightInItsColors) {
  if (!isInstalled("ffmpeg"))
    GTEST_SKIP() << "ffmpeg is not installed";
  const TemporaryFolder folder;
  const vyr::ref_ptr<FrameRecorder> recorder = new FrameRecorder;
  ASSERT_TRUE(recorder->open(folder / "film.mp4", 25));
  ASSERT_TRUE(recorder->write(*makePicture(64, 64, osg::Vec4(0, 0, 1, 1), true), 5));
  ASSERT_TRUE(recorder->close());
  const std::string command =
      "ffmpeg -v error -i '" + folder / "film.mp4" + "' -frames:v 1 '" + folder / "one.png" + "'";
  ASSERT_EQ(std::system(command.c_str()), 0);
  const osg::ref_ptr<osg::Image> first = osgDB::readRefImageFile(folder / "one.png");
  ASSERT_TRUE(first);
  const osg::Vec4 bottom = first->getColor(32u, 10u);
  EXPECT_NEAR(bottom.r(), 0.0f, 0.08f);
  EXPECT_NEAR(bottom.b(), 1.0f, 0.08f);
  EXPECT_NEAR(first->getColor(32u, 54u).r(), 1.0f, 0.08f);
}

TEST(FrameRecorder, OddSizesGetAFilmToo) {
  if (!isInstalled("ffmpeg") || !isInstalled("ffprobe"))
    GTEST_SKIP() << "ffmpeg and ffprobe are not installed";
  const TemporaryFolder folder;
  const vyr::ref_ptr<FrameRecorder> recorder = new FrameRecorder;
  ASSERT_TRUE(recorder->open(folder / "it's a film: 1.mp4", 10));
  EXPECT_TRUE(recorder->write(*makePicture(33, 21, osg::Vec4(0, 1, 0, 1)), 3));
  EXPECT_TRUE(recorder->close());
  EXPECT_TRUE(std::filesystem::file_size(folder / "it's a film: 1.mp4") > 0);
  std::filesystem::rename(folder / "it's a film: 1.mp4", folder / "film.mp4");
  EXPECT_EQ(probe(folder / "film.mp4"), "34,22,10/1,3");
}

TEST(FrameRecorder, SequenceHasDurationTimesRateFiles) {
  const TemporaryFolder folder;
  const vyr::ref_ptr<FrameRecorder> recorder = new FrameRecorder;
  ASSERT_TRUE(recorder->open(folder / "frames/%05d.png", 20, 8, 4));
  record(*recorder, 0.01, 100, *makePicture(16, 8, osg::Vec4(1, 0, 0, 1)));
  EXPECT_TRUE(recorder->close());
  EXPECT_EQ(TemporaryFolder::countFiles(folder / "frames"), 20u);
  EXPECT_TRUE(std::filesystem::exists(folder / "frames/00000.png"));
  const osg::ref_ptr<osg::Image> last = osgDB::readRefImageFile(folder / "frames/00019.png");
  ASSERT_TRUE(last);
  EXPECT_EQ(last->s(), 8);
  EXPECT_EQ(last->t(), 4);
}

TEST(FrameRecorder, PatternsAreReadWithoutBelievingThem) {
  EXPECT_TRUE(FrameRecorder::isSequencePattern("a%d.png"));
  EXPECT_TRUE(FrameRecorder::isSequencePattern("frames/%05d.png"));
  EXPECT_FALSE(FrameRecorder::isSequencePattern("film.mp4"));
  EXPECT_FALSE(FrameRecorder::isSequencePattern("%s.png"));
  EXPECT_FALSE(FrameRecorder::isSequencePattern("%05d%n.png"));
  EXPECT_FALSE(FrameRecorder::isSequencePattern("%99999d.png"));
  EXPECT_FALSE(FrameRecorder::isSequencePattern("100%"));
  EXPECT_EQ(FrameRecorder::getSequencePath("a/%03d.png", 7), "a/007.png");
  EXPECT_EQ(FrameRecorder::getSequencePath("a/%03d.png", 12345), "a/12345.png");
  EXPECT_EQ(FrameRecorder::getSequencePath("a%d.jpg", 7), "a7.jpg");
}

TEST(FrameRecorder, WithoutFfmpegPicturesTakeTheFilmsPlace) {
  const TemporaryFolder folder;
  const CapturedMessages messages;
  const ScopedVariable path("PATH", folder.path());
  const vyr::ref_ptr<FrameRecorder> recorder = new FrameRecorder;
  ASSERT_TRUE(recorder->open(folder / "film.mp4", 10));
  EXPECT_TRUE(recorder->write(*makePicture(8, 8, osg::Vec4(0, 1, 0, 1)), 4));
  EXPECT_TRUE(recorder->close());
  EXPECT_EQ(TemporaryFolder::countFiles(folder / "film_frames"), 4u);
  EXPECT_TRUE(messages.errors().empty());
  ASSERT_EQ(messages.warnings().size(), 1u);
  EXPECT_THAT(messages.warnings()[0],
              testing::AllOf(testing::HasSubstr("ffmpeg is not installed"), testing::HasSubstr("film.mp4"),
                             testing::HasSubstr("film_frames/%05d.png")));
}

TEST(FrameRecorder, WhatFfmpegCannotWriteIsOneErrorLine) {
  if (!isInstalled("ffmpeg"))
    GTEST_SKIP() << "ffmpeg is not installed";
  const TemporaryFolder folder;
  const CapturedMessages messages;
  const vyr::ref_ptr<FrameRecorder> recorder = new FrameRecorder;
  ASSERT_TRUE(recorder->open(folder / "film.nosuchcontainer", 10));
  const osg::ref_ptr<osg::Image> picture = makePicture(640, 480, osg::Vec4(0, 1, 0, 1));
  // The program may need a moment to find out, but then neither a write nor the end goes unnoticed.
  bool success = true;
  for (int i = 0; i < 50 && success; ++i)
    success = recorder->write(*picture);
  success = recorder->close() && success;
  EXPECT_FALSE(success);
  EXPECT_FALSE(recorder->isOpen());
  ASSERT_EQ(messages.errors().size(), 1u);
  EXPECT_THAT(messages.errors()[0], testing::HasSubstr("film.nosuchcontainer"));
  EXPECT_FALSE(recorder->write(*picture));
  EXPECT_EQ(messages.errors().size(), 1u);
}

TEST(FrameRecorder, UnusableRequestsAreOneErrorLineEach) {
  const TemporaryFolder folder;
  const std::string film = folder / "film.mp4";
  const auto refused = [](const std::string& target, double fps, unsigned width = 0, unsigned height = 0) {
    const CapturedMessages messages;
    const vyr::ref_ptr<FrameRecorder> recorder = new FrameRecorder;
    const bool opened = recorder->open(target, fps, width, height);
    return !opened && !recorder->isOpen() && messages.errors().size() == 1 &&
           messages.errors()[0].find(target) != std::string::npos;
  };
  EXPECT_TRUE(refused(film, 0));
  EXPECT_TRUE(refused(film, -1));
  EXPECT_TRUE(refused(film, std::nan("")));
  EXPECT_TRUE(refused(film, 25, 0, 100));
  EXPECT_TRUE(refused(film, 25, 100, 1u << 30));
  EXPECT_TRUE(refused(folder / "a%d%d.png", 25));
  EXPECT_TRUE(refused(folder / "noextension", 25));
  EXPECT_TRUE(refused("/proc/nowhere/film.mp4", 25));
}

TEST(FrameRecorder, ASequenceThatFailsKeepsItsEarlierPictures) {
  const TemporaryFolder folder;
  const CapturedMessages messages;
  const vyr::ref_ptr<FrameRecorder> recorder = new FrameRecorder;
  const osg::ref_ptr<osg::Image> picture = makePicture(8, 8, osg::Vec4(0, 1, 0, 1));
  ASSERT_TRUE(recorder->open(folder / "frames/%d.png", 10));
  std::filesystem::create_directories(folder / "frames/3.png");
  EXPECT_FALSE(recorder->write(*picture, 10));
  EXPECT_EQ(recorder->getFrameCount(), 3u);
  EXPECT_EQ(TemporaryFolder::countFiles(folder / "frames"), 3u);
  ASSERT_EQ(messages.errors().size(), 1u);
  EXPECT_THAT(messages.errors()[0], testing::HasSubstr("3.png"));
}

TEST(FrameRecorder, WithoutAPictureARecordingFails) {
  const TemporaryFolder folder;
  const CapturedMessages messages;
  const vyr::ref_ptr<FrameRecorder> recorder = new FrameRecorder;
  ASSERT_TRUE(recorder->open(folder / "%d.png", 10));
  recorder->preFrame(0.0, nullptr);
  EXPECT_TRUE(recorder->postFrame(nullptr));
  recorder->preFrame(1.0, nullptr);
  EXPECT_FALSE(recorder->postFrame(nullptr));
  EXPECT_EQ(messages.errors().size(), 1u);
}

} // namespace
