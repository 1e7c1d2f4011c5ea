// Scripts that draw: back ends, limits, pictures, films.
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using vyrTest::makeTestFolder;
using vyrTest::Outcome;
using vyrTest::runProgram;
using vyrTest::writeFile;

constexpr const char* kScript = R"(
function scene(sim, app, root)
  local ball = vyr.RigidBody("ball")
  local geometry = vyrCollide.Geometry(vyrCollide.Sphere(0.5))
  ball:add(geometry)
  sim:add(ball)
  root:addChild(vyrOSG.GeometryNode(geometry))
  if arg[1] == "fail" then error("no floor") end
end
local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser())
app:addScene(arg[0], arg[1] == "unknown" and "nowhere" or "scene", string.byte("1"), true)
print(app:run(), app:getTimeStamp())
)";

class Graphics : public testing::Test {
protected:
  Graphics()
      : m_folder(makeTestFolder())
      , m_script(writeFile(m_folder, "scene.lua", kScript)) {}

  /// Runs the script, without a display server.
  Outcome run(std::vector<std::string> options, const std::vector<std::string>& arguments = {}) {
    options.push_back(m_script);
    options.insert(options.end(), arguments.begin(), arguments.end());
    return runProgram(options, "", {"DISPLAY="});
  }

  bool hasEgl() { return runProgram({"doctor"}, "", {"DISPLAY="}).output.find("ok   egl") != std::string::npos; }

  std::string m_folder;
  std::string m_script;
};

#define NEEDS_EGL()                                                                                                    \
  if (!hasEgl())                                                                                                       \
  GTEST_SKIP() << "no EGL on this machine"

std::uint32_t readBigEndian(std::istream& input) {
  unsigned char bytes[4] = {};
  input.read(reinterpret_cast<char*>(bytes), sizeof bytes);
  return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
         static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

/// "WxH" out of the head of a PNG file.
std::string pictureSize(const std::string& file) {
  std::ifstream input(file, std::ios::binary);
  input.seekg(16);
  const std::uint32_t width = readBigEndian(input);
  const std::uint32_t height = readBigEndian(input);
  return input ? std::to_string(width) + "x" + std::to_string(height) : "no picture";
}

TEST_F(Graphics, StepsLimitTheRun) {
  const Outcome outcome = run({"--gl=none", "--steps=30"});
  EXPECT_EQ(0, outcome.code) << outcome.errors;
  EXPECT_EQ("0\t0.5\n", outcome.output);
  EXPECT_EQ("vyr: graphics: none, as asked\n", outcome.errors);
}

TEST_F(Graphics, DurationLimitsTheRun) {
  EXPECT_EQ("0\t2\n", run({"--gl=none", "--duration=2"}).output);
}

TEST_F(Graphics, MissingGraphicsEndsWithItsOwnCode) {
  const Outcome outcome = run({"--gl=window"});
  EXPECT_EQ(3, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("no window: DISPLAY is not set"));
  EXPECT_THAT(outcome.errors, HasSubstr("libgl1-mesa-dri"));
  EXPECT_THAT(outcome.errors, HasSubstr("libegl1"));
}

TEST_F(Graphics, FailedSceneEndsABatchRun) {
  const Outcome outcome = run({"--gl=none", "--steps=3"}, {"fail"});
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("scene.lua:8: no floor\nstack traceback:"));
}

TEST_F(Graphics, UnknownSceneFunctionNamesFileAndFunction) {
  const Outcome outcome = run({"--gl=none", "--steps=3"}, {"unknown"});
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("scene.lua' defines no global function 'nowhere'"));
}

TEST_F(Graphics, OneLineNamesTheBackend) {
  NEEDS_EGL();
  const Outcome outcome = run({"--gl=auto", "--size=64x48", "--steps=2"});
  EXPECT_EQ(0, outcome.code) << outcome.errors;
  EXPECT_THAT(outcome.errors, StartsWith("vyr: graphics: EGL ("));
  EXPECT_THAT(outcome.errors, HasSubstr("64x48"));
  EXPECT_EQ(1, std::count(outcome.errors.begin(), outcome.errors.end(), '\n')) << outcome.errors;
}

TEST_F(Graphics, ShotsArePicturesOfTheirMoments) {
  NEEDS_EGL();
  const Outcome outcome = run(
      {"--gl=egl", "--size=96x64", "--shot", "t=0.1:" + m_folder + "/a.png", "--shot", "t=0.3:" + m_folder + "/b.png"});
  EXPECT_EQ(0, outcome.code) << outcome.errors;
  EXPECT_EQ("96x64", pictureSize(m_folder + "/a.png"));
  EXPECT_EQ("96x64", pictureSize(m_folder + "/b.png"));
}

TEST_F(Graphics, ShotThatCannotBeWrittenIsAnError) {
  NEEDS_EGL();
  const Outcome outcome = run({"--gl=egl", "--size=64x48", "--shot", "t=0.1:" + m_script + "/a.png"});
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("scene.lua/a.png"));
}

TEST_F(Graphics, FilmAsNumberedPictures) {
  NEEDS_EGL();
  const Outcome outcome =
      run({"--gl=egl", "--size=64x48", "--duration=0.5", "--fps=10", "--record", m_folder + "/frames/%03d.png"});
  EXPECT_EQ(0, outcome.code) << outcome.errors;
  EXPECT_EQ("64x48", pictureSize(m_folder + "/frames/004.png"));
  EXPECT_FALSE(std::filesystem::exists(m_folder + "/frames/005.png"));
}

TEST_F(Graphics, FilmWithoutTheEncoderBecomesPictures) {
  NEEDS_EGL();
  const Outcome outcome = runProgram(
      {"--gl=egl", "--size=64x48", "--duration=0.2", "--fps=10", "--record", m_folder + "/out.mp4", m_script}, "",
      {"DISPLAY=", "PATH=/nowhere"});
  EXPECT_EQ(0, outcome.code) << outcome.errors;
  EXPECT_THAT(outcome.errors, HasSubstr("ffmpeg is not installed"));
  EXPECT_EQ("64x48", pictureSize(m_folder + "/out_frames/00001.png"));
}

TEST_F(Graphics, FilmByTheEncoder) {
  NEEDS_EGL();
  if (runProgram({"doctor"}).output.find("ok   ffmpeg") == std::string::npos)
    GTEST_SKIP() << "no ffmpeg on this machine";
  const Outcome outcome = run({"--gl=egl", "--size=64x48", "--duration=0.5", "--record", m_folder + "/out.mp4"});
  EXPECT_EQ(0, outcome.code) << outcome.errors;
  std::ifstream film(m_folder + "/out.mp4", std::ios::binary);
  char head[12] = {};
  film.read(head, sizeof head);
  EXPECT_EQ("ftyp", std::string(head + 4, 4));
}

TEST_F(Graphics, WatchedSceneIsMendedInTheWindow) {
  if (std::system("command -v xvfb-run > /dev/null") != 0)
    GTEST_SKIP() << "no Xvfb on this machine";
  const std::string text = "function scene(sim, app) BODY end\n"
                           "local app = vyrOSG.ExampleApplication()\n"
                           "app:init(vyrIO.ArgumentParser())\n"
                           "app:addScene(arg[0], 'scene', 0, true)\n"
                           "print('done', app:run())\n";
  const auto write = [&](const std::string& body) {
    writeFile(m_folder, "watched.lua", std::string(text).replace(text.find("BODY"), 4, body));
  };
  write("error('no floor')");
  FILE* program = popen(("cd " + m_folder +
                         " && timeout 60 xvfb-run -a " VYR_PROGRAM
                         " --watch --gl=window --size=64x48 watched.lua 2>&1; echo code $?")
                            .c_str(),
                        "r");
  ASSERT_NE(nullptr, program);
  std::string output;
  char line[512];
  while (std::fgets(line, sizeof line, program) != nullptr) {
    // The scene has failed, and the window waits: now it is mended.
    if (output.find("no floor") == std::string::npos && std::strstr(line, "no floor") != nullptr) {
      std::this_thread::sleep_for(std::chrono::seconds(1));
      write("print('mended') app:stop()");
    }
    output += line;
  }
  pclose(program);
  EXPECT_THAT(output, HasSubstr("vyr: graphics: window on display"));
  EXPECT_THAT(output, HasSubstr("mended\n"));
  EXPECT_THAT(output, HasSubstr("done\t0\ncode 0\n"));
}

TEST_F(Graphics, JournalIsRecordedListedAndPlayed) {
  const std::string journal = m_folder + "/run.journal";
  const std::string script =
      writeFile(m_folder, "recorded.lua",
                std::string(kScript).replace(std::string(kScript).find("ArgumentParser()"), 16, "ArgumentParser(arg)"));
  const std::vector<std::string> environment = {"DISPLAY="};
  const Outcome recorded = runProgram(
      {"--gl=none", "--steps=20", script, "--journal", journal, "--journal-session", "one", "--journal-record"}, "",
      environment);
  ASSERT_EQ(0, recorded.code) << recorded.errors;
  EXPECT_EQ("one\n", runProgram({"play", journal}, "", environment).output);
  const Outcome played = runProgram({"--gl=none", "--session=one", "play", journal, script}, "", environment);
  EXPECT_EQ(0, played.code) << played.errors;
  EXPECT_THAT(played.output, HasSubstr("0\t0.333333"));
  const Outcome missing = runProgram({"play", m_folder + "/none.journal"}, "", environment);
  EXPECT_EQ(1, missing.code);
  EXPECT_THAT(missing.errors, HasSubstr("none.journal"));
}

TEST_F(Graphics, AJournalOfAKilledProgramIsReadable) {
  const std::string journal = m_folder + "/killed.journal";
  const std::string script = writeFile(m_folder, "killed.lua",
                                       "function scene(sim, app, root)\n"
                                       "  sim:add(vyr.RigidBody('body'))\n"
                                       "  sim:add(vyrSDK.StepEventListener({post = function()\n"
                                       "    if arg.kill and sim:getTime() > 2.5 then os.execute('kill -9 $PPID') end\n"
                                       "  end}))\n"
                                       "end\n"
                                       "arg.kill = arg[1] == 'kill'\n"
                                       "local app = vyrOSG.ExampleApplication()\n"
                                       "app:init(vyrIO.ArgumentParser(arg))\n"
                                       "app:addScene(arg[0], 'scene', 0, true)\n"
                                       "app:run()\n"
                                       "print(app:getTimeStamp())\n");
  const std::vector<std::string> environment = {"DISPLAY="};
  const Outcome killed = runProgram(
      {"--gl=none", "--steps=1000", script, "kill", "--journal", journal, "--journal-record"}, "", environment);
  ASSERT_NE(0, killed.code);
  EXPECT_THAT(killed.output, Not(HasSubstr("2.5")));
  EXPECT_EQ("session\n", runProgram({"play", journal}, "", environment).output);
  const Outcome played = runProgram({"--gl=none", "--session=session", "play", journal, script}, "", environment);
  EXPECT_EQ(0, played.code) << played.errors;
  // A second's steps are written out together: two whole seconds are safe.
  EXPECT_EQ("2\n", played.output);
  EXPECT_THAT(played.errors, Not(HasSubstr("nobody there")));
}

} // namespace
