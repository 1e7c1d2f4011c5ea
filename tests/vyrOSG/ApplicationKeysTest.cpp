// Presses the viewer's keys.
#include "ApplicationFixture.h"

#include <vyrOSG/SceneDecorator.h>

#include <osgDB/FileUtils>
#include <osgDB/ReadFile>
#include <osgGA/EventQueue>

using vyrOSG::ExampleApplication;

namespace {

class ApplicationKeys : public ApplicationTest {
protected:
  void SetUp() override {
    if (!useEgl())
      GTEST_SKIP() << "no EGL context on this machine";
    ASSERT_TRUE(init({"--save-file", folder / "saved.json"}));
    ASSERT_TRUE(app->setupViewer(true, true));
    app->addScene(script(), "fall", '1', true);
    app->addScene(script(), "fall", '2', false);
    app->createNextScene();
  }

  void press(int key) {
    app->getViewer()->getEventQueue()->keyPress(key);
    app->getViewer()->getEventQueue()->keyRelease(key);
    app->getViewer()->frame(app->getTimeStamp());
  }
};

TEST_F(ApplicationKeys, SwitchWhatIsDrawn) {
  press('g');
  EXPECT_TRUE(app->getEnableDebugRenderer());
  press('t');
  EXPECT_TRUE(app->getEnableTextDebugRendering());
  press('o');
  EXPECT_FALSE(app->getEnableOSGRenderer());
  press('n');
  EXPECT_TRUE(app->getEnableGrid());
  press('a');
  EXPECT_TRUE(app->getEnableCoordinateSystem());
  press('y');
  EXPECT_TRUE(app->getSceneDecorator()->getEnableShadows());
}

TEST_F(ApplicationKeys, RunPauseAndStep) {
  press('e');
  EXPECT_FALSE(app->getAutoStepping());
  press('r');
  press('r');
  EXPECT_NEAR(2.0 / 60.0, app->getTimeStamp(), 1e-12);
  press('e');
  EXPECT_TRUE(app->getAutoStepping());
  press('m');
  EXPECT_EQ(ExampleApplication::MULTI, app->getSolverType());
  press('p');
  EXPECT_FALSE(app->getEnableAutoPausing());
}

TEST_F(ApplicationKeys, ShowScenes) {
  press('2');
  press('1');
  press(osgGA::GUIEventAdapter::KEY_Page_Down);
  press(osgGA::GUIEventAdapter::KEY_F5);
  EXPECT_EQ(5u, loader->built.size());
}

TEST_F(ApplicationKeys, SaveAndRestore) {
  app->step();
  press('x');
  ASSERT_TRUE(osgDB::fileExists(folder / "saved.json"));
  const uint64_t saved = app->getSimulation()->stateHash();
  app->step();
  press('X');
  EXPECT_EQ(saved, app->getSimulation()->stateHash());
}

TEST_F(ApplicationKeys, TheHelpIsShownAndHidden) {
  const unsigned before = app->getRoot()->getNumChildren();
  press('h');
  EXPECT_EQ(before + 1, app->getRoot()->getNumChildren());
  press('h');
  EXPECT_EQ(before, app->getRoot()->getNumChildren());
}

TEST_F(ApplicationKeys, ListenersOfTheSimulationComeFirst) {
  class Listener : public vyrSDK::GuiEventListener {
  public:
    bool keyboard(int key, unsigned int, float, float, bool down) override {
      if (down)
        lastKey = key;
      return true;
    }
    void update(float, float) override { ++updates; }
    int lastKey = 0;
    int updates = 0;
  };
  vyr::ref_ptr<Listener> listener = new Listener;
  app->getSimulation()->add(static_cast<vyrSDK::GuiEventListener*>(listener.get()));
  press('g');
  EXPECT_EQ('g', listener->lastKey);
  EXPECT_FALSE(app->getEnableDebugRenderer()) << "the listener used the key up";
  app->takeScreenShot(vyr::String(folder / "a.png"));
  EXPECT_EQ(1, listener->updates);
}

} // namespace
