// Chooses where OpenGL draws, and says why.
#include "CapturedMessages.h"

#include <vyrOSG/GraphicsBackend.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

using vyrOSG::GraphicsBackend;
using vyrOSG::LaunchOptions;

namespace {

/// Takes the display server away for a test.
class WithoutDisplay : public ::testing::Test {
protected:
  WithoutDisplay() {
    if (const char* display = std::getenv("DISPLAY"))
      m_display = display;
    unsetenv("DISPLAY");
  }
  ~WithoutDisplay() override {
    if (!m_display.empty())
      setenv("DISPLAY", m_display.c_str(), 1);
  }

private:
  std::string m_display;
};

TEST_F(WithoutDisplay, NoneIsNoFailure) {
  const vyr::ref_ptr<GraphicsBackend> backend = GraphicsBackend::create(LaunchOptions::NONE, 64, 48, 4);
  EXPECT_EQ(LaunchOptions::NONE, backend->getKind());
  EXPECT_FALSE(backend->isFailure());
  EXPECT_EQ(nullptr, backend->getContext());
  EXPECT_EQ("graphics: none, as asked", backend->describe());
}

TEST_F(WithoutDisplay, AWindowAskedForByNameFailsWithOneError) {
  CapturedMessages messages;
  const vyr::ref_ptr<GraphicsBackend> backend = GraphicsBackend::create(LaunchOptions::WINDOW, 64, 48, 4);
  EXPECT_TRUE(backend->isFailure());
  EXPECT_EQ(nullptr, backend->getContext());
  EXPECT_EQ("Error: graphics: none (no window: DISPLAY is not set)", messages.takeOne());
}

TEST_F(WithoutDisplay, ADisplayThatDoesNotAnswerIsNamed) {
  setenv("DISPLAY", ":59999", 1);
  CapturedMessages messages;
  const vyr::ref_ptr<GraphicsBackend> backend = GraphicsBackend::create(LaunchOptions::WINDOW, 64, 48, 4);
  EXPECT_TRUE(backend->isFailure());
  EXPECT_NE(std::string::npos, messages.takeOne().find("display \":59999\" does not answer"));
  unsetenv("DISPLAY");
}

TEST_F(WithoutDisplay, AutoFallsBackToEglAndSaysWhy) {
  const vyr::ref_ptr<GraphicsBackend> backend = GraphicsBackend::create(LaunchOptions::AUTO, 64, 48, 4);
  if (!backend->getContext())
    GTEST_SKIP() << backend->describe();
  EXPECT_EQ(LaunchOptions::EGL, backend->getKind());
  EXPECT_FALSE(backend->isFailure());
  EXPECT_NE(std::string::npos, backend->describe().find("no window: DISPLAY is not set"));
  EXPECT_NE(std::string::npos, backend->describe().find("64x48"));
  EXPECT_TRUE(backend->getContext()->valid());
}

TEST_F(WithoutDisplay, TwoContextsLiveSideBySide) {
  const vyr::ref_ptr<GraphicsBackend> first = GraphicsBackend::create(LaunchOptions::EGL, 64, 48, 0);
  if (!first->getContext())
    GTEST_SKIP() << first->describe();
  {
    const vyr::ref_ptr<GraphicsBackend> second = GraphicsBackend::create(LaunchOptions::EGL, 32, 32, 0);
    ASSERT_NE(nullptr, second->getContext());
    ASSERT_TRUE(second->getContext()->realize());
  }
  // The second one's end must not take the display of the first with it.
  ASSERT_TRUE(first->getContext()->realize());
  ASSERT_TRUE(first->getContext()->makeCurrent());
  GLint viewport[4] = {};
  glGetIntegerv(GL_VIEWPORT, viewport);
  EXPECT_EQ(64, viewport[2]);
  EXPECT_EQ(48, viewport[3]);
  first->getContext()->releaseContext();
}

} // namespace
