// Scenes of a real application that are built by script functions.
#include "LuaSceneLoader.h"

#include "Program.h"
#include "ReloadOnChange.h"

#include <vyrLua/ScriptManager.h>
#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/LaunchOptions.h>

#include <vyr/Notify.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

namespace {

using testing::HasSubstr;
using vyrHost::LuaSceneLoader;
using vyrLua::ScriptManager;
using vyrTest::writeFile;

class Messages : public vyr::NotifySink {
public:
  void message(vyr::NotifyLevel level, const std::string& text) override {
    if (level == vyr::NOTIFY_ERROR)
      errors.push_back(text);
  }
  std::vector<std::string> errors;
};

constexpr const char* kBall = "function ball(sim, app, root)\n"
                              "  local body = vyr.RigidBody('ball')\n"
                              "  body:add(vyrCollide.Geometry(vyrCollide.Sphere(0.5)))\n"
                              "  sim:add(body)\n"
                              "end\n";

class LuaSceneLoaderTest : public testing::Test {
protected:
  LuaSceneLoaderTest()
      : m_folder(vyrTest::makeTestFolder())
      , m_messages(new Messages)
      , m_loader(new LuaSceneLoader(ScriptManager::instance(true)->getLuaState(), ""))
      , m_application(new vyrOSG::ExampleApplication) {
    vyr::Notify::instance()->addSink(m_messages.get());
    EXPECT_TRUE(ScriptManager::instance(true)->requestScriptPlugin("vyr"));
    vyrOSG::LaunchOptions::process() = vyrOSG::LaunchOptions();
    vyrOSG::LaunchOptions::process().backend = vyrOSG::LaunchOptions::NONE;
    vyrOSG::LaunchOptions::process().steps = 10;
    EXPECT_TRUE(m_application->init(nullptr));
    m_application->setSceneLoader(m_loader.get());
  }
  ~LuaSceneLoaderTest() override {
    m_application = nullptr;
    ScriptManager::shutdown();
    vyr::Notify::instance()->removeSink(m_messages.get());
    vyrOSG::LaunchOptions::process() = vyrOSG::LaunchOptions();
  }

  bool addScene(const std::string& text, const std::string& function) {
    return m_application->addScene(writeFile(m_folder, "scene.lua", text), function, 0, true);
  }

  std::string lastError() const { return m_messages->errors.empty() ? "" : m_messages->errors.back(); }

  std::string m_folder;
  vyr::ref_ptr<Messages> m_messages;
  vyr::ref_ptr<LuaSceneLoader> m_loader;
  vyr::ref_ptr<vyrOSG::ExampleApplication> m_application;
};

TEST_F(LuaSceneLoaderTest, FunctionFillsTheSimulation) {
  ASSERT_TRUE(addScene(kBall, "ball"));
  EXPECT_EQ(0, m_application->run());
  ASSERT_EQ(1u, m_application->getSimulation()->getRigidBodies().size());
  EXPECT_EQ("ball", m_application->getSimulation()->getRigidBodies()[0]->getName());
  EXPECT_LT(m_application->getSimulation()->getRigidBodies()[0]->getPosition().z(), -0.01);
  EXPECT_TRUE(m_messages->errors.empty()) << lastError();
  EXPECT_FALSE(m_loader->hasFailedInBatch());
}

TEST_F(LuaSceneLoaderTest, UnknownFunctionNamesFileAndFunction) {
  ASSERT_TRUE(addScene(kBall, "bell"));
  EXPECT_EQ(1, m_application->run());
  EXPECT_THAT(lastError(), HasSubstr("scene.lua' defines no global function 'bell'"));
  EXPECT_TRUE(m_loader->hasFailedInBatch());
}

TEST_F(LuaSceneLoaderTest, ErrorInTheFunctionShowsTheTraceback) {
  ASSERT_TRUE(addScene("local function inner(sim)\n  sim:fly()\nend\nfunction scene(sim)\n  inner(sim)\nend", "scene"));
  EXPECT_EQ(1, m_application->run());
  EXPECT_THAT(lastError(), HasSubstr("scene.lua:2: attempt to call method 'fly'"));
  EXPECT_THAT(lastError(), HasSubstr("scene.lua:5: in function <"));
  EXPECT_TRUE(m_loader->hasFailedInBatch());
}

TEST_F(LuaSceneLoaderTest, TheApplicationGoesOnAfterAFailedScene) {
  ASSERT_TRUE(addScene("function bad() error('no floor') end\n" + std::string(kBall), "bad"));
  ASSERT_TRUE(m_application->addScene(m_folder + "/scene.lua", "ball", 0, false));
  EXPECT_FALSE(m_application->createScene(0));
  EXPECT_TRUE(m_application->createScene(1));
  EXPECT_EQ(1u, m_application->getSimulation()->getRigidBodies().size());
}

TEST_F(LuaSceneLoaderTest, ReloadTakesTheChangedFile) {
  ASSERT_TRUE(addScene(kBall, "ball"));
  ASSERT_TRUE(m_application->createScene(0));
  EXPECT_FALSE(m_loader->haveScriptsChanged());
  const auto before = std::filesystem::last_write_time(m_folder + "/scene.lua");
  writeFile(m_folder, "scene.lua", "function ball(sim) for i = 1, 3 do sim:add(vyr.RigidBody('ball ' .. i)) end end");
  std::filesystem::last_write_time(m_folder + "/scene.lua", before + std::chrono::seconds(2));
  EXPECT_TRUE(m_loader->haveScriptsChanged());
  m_application->reloadScene();
  EXPECT_EQ(3u, m_application->getSimulation()->getRigidBodies().size());
  EXPECT_FALSE(m_loader->haveScriptsChanged());
}

TEST_F(LuaSceneLoaderTest, ReloadHappensBetweenFrames) {
  ASSERT_TRUE(addScene(kBall, "ball"));
  ASSERT_TRUE(m_application->createScene(0));
  const auto before = std::filesystem::last_write_time(m_folder + "/scene.lua");
  writeFile(m_folder, "scene.lua", "function ball(sim) sim:add(vyr.RigidBody()) sim:add(vyr.RigidBody()) end");
  std::filesystem::last_write_time(m_folder + "/scene.lua", before + std::chrono::seconds(2));
  const osg::ref_ptr<vyrHost::ReloadOnChange> handler =
      new vyrHost::ReloadOnChange(m_application.get(), m_loader.get());
  osg::ref_ptr<osgGA::GUIEventAdapter> event = new osgGA::GUIEventAdapter;
  osgViewer::Viewer viewer;
  const auto send = [&](osgGA::GUIEventAdapter::EventType type, double time) {
    event->setEventType(type);
    event->setTime(time);
    static_cast<osgGA::GUIEventHandler*>(handler.get())->handle(*event, viewer);
    return m_application->getSimulation()->getRigidBodies().size();
  };
  EXPECT_EQ(1u, send(osgGA::GUIEventAdapter::KEYDOWN, 1.0));
  EXPECT_EQ(2u, send(osgGA::GUIEventAdapter::FRAME, 1.0));
  EXPECT_FALSE(m_loader->haveScriptsChanged());
}

TEST_F(LuaSceneLoaderTest, JournalIsPlayedBackInTheScene) {
  const std::string journal = m_folder + "/run.journal";
  ASSERT_TRUE(addScene(kBall, "ball"));
  ASSERT_TRUE(m_application->journalRecord(journal, "session"));
  ASSERT_EQ(0, m_application->run());
  const double fallen = m_application->getSimulation()->getRigidBodies()[0]->getPosition().z();
  m_application = new vyrOSG::ExampleApplication;
  ASSERT_TRUE(m_application->init(new vyrIO::ArgumentParser("player", {"--journal", journal})));
  m_loader->setPlayingJournal(true);
  m_application->setSceneLoader(m_loader.get());
  ASSERT_TRUE(m_application->addScene(m_folder + "/scene.lua", "ball", 0, true));
  ASSERT_TRUE(m_application->createScene(0));
  // Without gravity only the journal can move the ball.
  m_application->getSimulation()->setGravity(vyr::Vec3(0, 0, 0));
  for (int step = 0; step < 10; ++step)
    m_application->step();
  EXPECT_EQ(fallen, m_application->getSimulation()->getRigidBodies()[0]->getPosition().z());
}

} // namespace
