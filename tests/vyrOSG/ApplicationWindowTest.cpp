// Draws in a window of a virtual display server, and compares with what is drawn without one.
#include "ApplicationFixture.h"
#include "CapturedMessages.h"

#include <osgDB/ReadFile>
#include <osgViewer/GraphicsWindow>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

using vyrOSG::ExampleApplication;
using vyrOSG::LaunchOptions;

namespace {

/// A display server without a screen, for the life of the object.
class VirtualDisplay {
public:
  VirtualDisplay() {
    int ends[2];
    if (pipe(ends) != 0)
      return;
    m_process = fork();
    if (m_process == 0) {
      close(ends[0]);
      const std::string number = std::to_string(ends[1]);
      execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", "640x480x24", "-nolisten", "tcp",
             static_cast<char*>(nullptr));
      _exit(127);
    }
    close(ends[1]);
    // The server writes its number and a line end, in pieces; it dies of a reader that leaves before.
    std::string text;
    char letter = 0;
    while (read(ends[0], &letter, 1) == 1 && letter != '\n')
      text += letter;
    close(ends[0]);
    if (letter == '\n')
      m_name = ":" + text;
  }
  ~VirtualDisplay() {
    if (m_process <= 0)
      return;
    kill(m_process, SIGTERM);
    waitpid(m_process, nullptr, 0);
  }
  VirtualDisplay(const VirtualDisplay&) = delete;
  VirtualDisplay& operator=(const VirtualDisplay&) = delete;

  /// "" when there is no such program here.
  const std::string& name() const { return m_name; }

private:
  pid_t m_process = -1;
  std::string m_name;
};

class ApplicationWindow : public ApplicationTest {
protected:
  void SetUp() override {
    if (const char* before = std::getenv("DISPLAY"))
      m_before = before;
    if (display.name().empty())
      GTEST_SKIP() << "Xvfb is not installed";
    setenv("DISPLAY", display.name().c_str(), 1);
    loader->scenes["still"] = [this](vyrSDK::Simulation& simulation, ExampleApplication& application,
                                     vyrOSG::Group& root) {
      makeFall(simulation, root);
      application.setCameraHome(vyr::Vec3(2, -5, 3), vyr::Vec3(0, 0, 1));
    };
  }
  void TearDown() override {
    app = nullptr;
    if (m_before.empty())
      unsetenv("DISPLAY");
    else
      setenv("DISPLAY", m_before.c_str(), 1);
  }

  /// Runs the still scene on a back end and gives the picture of 0.2 s.
  osg::ref_ptr<osg::Image> picture(LaunchOptions::Backend backend, const std::string& file) {
    LaunchOptions& options = LaunchOptions::process();
    options.backend = backend;
    options.shots.clear();
    options.addShot("0.2:" + (folder / file));
    app = new ExampleApplication;
    app->setSceneLoader(loader.get());
    EXPECT_TRUE(init({"--unpaced"}));
    app->addScene(script(), "still", 0, true);
    EXPECT_EQ(0, app->run());
    EXPECT_EQ(backend, app->getGraphicsBackend()->getKind());
    return osgDB::readRefImageFile(folder / file);
  }

  VirtualDisplay display;

private:
  std::string m_before;
};

TEST_F(ApplicationWindow, ShowsTheSamePictureAsWithoutDisplay) {
  if (!useEgl())
    GTEST_SKIP() << "no EGL context on this machine";
  const osg::ref_ptr<osg::Image> window = picture(LaunchOptions::WINDOW, "window.png");
  const osg::ref_ptr<osg::Image> egl = picture(LaunchOptions::EGL, "egl.png");
  ASSERT_TRUE(window.valid() && egl.valid());
  ASSERT_EQ(window->getTotalSizeInBytes(), egl->getTotalSizeInBytes());
  int largest = 0;
  for (unsigned i = 0; i < window->getTotalSizeInBytes(); ++i)
    largest = std::max(largest, std::abs(window->data()[i] - egl->data()[i]));
  EXPECT_LE(largest, 2);
}

TEST_F(ApplicationWindow, HasAHandleAndKeepsItsSizeWhenTold) {
  LaunchOptions::process().backend = LaunchOptions::WINDOW;
  ASSERT_TRUE(init());
  ASSERT_TRUE(app->setupViewer(true, true));
  EXPECT_NE(0u, app->getHWND());
  EXPECT_TRUE(app->getAllowWindowResizing());
  app->setAllowWindowResizing(false);
  EXPECT_FALSE(app->getAllowWindowResizing());
  osgViewer::ViewerBase::Windows windows;
  app->getViewer()->getWindows(windows);
  ASSERT_EQ(1u, windows.size());
  windows[0]->setWindowRectangle(10, 10, 300, 200);
  for (int i = 0; i < 20; ++i)
    app->getViewer()->frame();
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  windows[0]->getWindowRectangle(x, y, width, height);
  EXPECT_EQ(160, width);
  EXPECT_EQ(120, height);
}

TEST_F(ApplicationWindow, KeepsPaceWithTheClock) {
  LaunchOptions::process().backend = LaunchOptions::WINDOW;
  ASSERT_TRUE(init());
  const osg::Timer clock;
  EXPECT_EQ(0, run(0.5, "still"));
  EXPECT_GT(clock.time_s(), 0.45);
}

TEST_F(ApplicationWindow, ARunEndsWhenItsWindowIsClosed) {
  LaunchOptions::process().backend = LaunchOptions::WINDOW;
  loader->scenes["closed"] = [this](vyrSDK::Simulation& simulation, ExampleApplication&, vyrOSG::Group& root) {
    makeFall(simulation, root);
    osgViewer::ViewerBase::Windows windows;
    app->getViewer()->getWindows(windows);
    windows.at(0)->getEventQueue()->closeWindow();
  };
  ASSERT_TRUE(init());
  EXPECT_EQ(0, run(60, "closed"));
  EXPECT_LT(app->getTimeStamp(), 30);
  EXPECT_TRUE(app->done());
  // What needs the window says that it is gone, and does not fail otherwise.
  CapturedMessages messages;
  app->takeScreenShot(vyr::String(folder / "late.png"));
  EXPECT_EQ(1u, messages.take().size());
  EXPECT_EQ(0u, app->getHWND());
}

TEST_F(ApplicationWindow, AWindowOfNoSizeChangesNothing) {
  LaunchOptions::process().backend = LaunchOptions::WINDOW;
  ASSERT_TRUE(init());
  EXPECT_EQ(0, run(0.1, "still"));
  app->getViewer()->getEventQueue()->windowResize(0, 0, 0, 0);
  for (int i = 0; i < 3; ++i)
    app->getViewer()->frame();
  app->takeScreenShot(vyr::String(folder / "shot.png"));
  const osg::ref_ptr<osg::Image> read = osgDB::readRefImageFile(folder / "shot.png");
  ASSERT_TRUE(read.valid());
  EXPECT_EQ(160, read->s());
  EXPECT_EQ(120, read->t());
}

} // namespace
