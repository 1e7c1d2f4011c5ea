// Runs the application: limits, scenes, solvers, pausing, settings.
#include "ApplicationFixture.h"
#include "CapturedMessages.h"

#include <vyrOSG/SceneDecorator.h>

#include <osg/MatrixTransform>

#include <limits>

using vyrOSG::ExampleApplication;
using vyrOSG::LaunchOptions;

namespace {

class Application : public ApplicationTest {};

TEST_F(Application, RunStopsAfterTheTimeAndTellsIt) {
  ASSERT_TRUE(init());
  EXPECT_TRUE(app->initialized());
  EXPECT_EQ(0, run(0.5));
  EXPECT_NEAR(0.5, app->getTimeStamp(), 1e-9);
  // Free fall over 0.4 s, before the box touches: s = g t^2 / 2, with the half step that the engine's integration adds.
  EXPECT_LT(box->getPosition().z(), 1.5);
  EXPECT_TRUE(app->done());
}

TEST_F(Application, RunNeedsInit) {
  CapturedMessages messages;
  EXPECT_EQ(1, app->run());
  EXPECT_EQ(1u, messages.errors().size());
}

TEST_F(Application, StepsAndDurationLimitTheRun) {
  ASSERT_TRUE(init());
  LaunchOptions::process().steps = 7;
  app->addScene(script(), "fall", 0, true);
  EXPECT_EQ(0, app->run());
  EXPECT_NEAR(7.0 / 60.0, app->getTimeStamp(), 1e-9);
  LaunchOptions::process().steps = -1;
  LaunchOptions::process().duration = 0.25;
  EXPECT_EQ(0, app->run());
  EXPECT_NEAR(7.0 / 60.0 + 0.25, app->getTimeStamp(), 1.0 / 60.0);
}

TEST_F(Application, StopEndsTheRunFromWithin) {
  ASSERT_TRUE(init());
  class Stopper : public vyrSDK::StepEventListener {
  public:
    explicit Stopper(ExampleApplication& application)
        : m_application(application) {}
    void post(const vyr::TimeStamp& time) override {
      if (time.steps() == 5)
        m_application.stop();
    }

  private:
    ExampleApplication& m_application;
  };
  loader->scenes["stopping"] = [](vyrSDK::Simulation& simulation, ExampleApplication& application, vyrOSG::Group&) {
    simulation.add(static_cast<vyrSDK::StepEventListener*>(new Stopper(application)));
  };
  EXPECT_EQ(0, run(10.0, "stopping"));
  EXPECT_TRUE(app->shouldStop());
  EXPECT_NEAR(5.0 / 60.0, app->getTimeStamp(), 1e-9);
}

TEST_F(Application, ASceneThatFailsIsExitCodeOne) {
  ASSERT_TRUE(init());
  CapturedMessages messages;
  EXPECT_EQ(1, run(1.0, "missing"));
  EXPECT_NE(std::string::npos, messages.takeOne().find("there is no function missing"));
  EXPECT_EQ(1, LaunchOptions::process().getFailure());
}

TEST_F(Application, AddSceneRefusesWhatCannotBeShown) {
  ASSERT_TRUE(init());
  CapturedMessages messages;
  EXPECT_TRUE(app->addScene(script(), "fall", '1', true));
  EXPECT_FALSE(app->addScene(script(), "fall", '1', true)) << "the key is taken";
  EXPECT_FALSE(app->addScene("no-such-file.lua", "fall", '2', true));
  EXPECT_FALSE(app->addScene(script(), "", '2', true));
  EXPECT_FALSE(app->addScene(script(), "fall", '2', true, -1.0f, false));
  EXPECT_FALSE(app->addScene(script(), "fall", false, std::numeric_limits<float>::quiet_NaN(), false));
  EXPECT_EQ(5u, messages.take().size());
  EXPECT_EQ(1u, app->getNumScenes());
  EXPECT_TRUE(app->addScene("scene.lua", "fall", false)) << "found beside the program's script";
  EXPECT_EQ(2u, app->getNumScenes());
}

TEST_F(Application, ScenesAreWalkedThroughAndReloaded) {
  ASSERT_TRUE(init());
  loader->scenes["empty"] = [](vyrSDK::Simulation&, ExampleApplication&, vyrOSG::Group&) {};
  app->addScene(script(), "fall", '1', true);
  app->addScene(script(), "empty", '2', false);
  app->createNextScene();
  app->createNextScene();
  app->createNextScene();
  app->createPreviousScene();
  app->reloadScene();
  EXPECT_TRUE(app->createSceneByKey('1'));
  EXPECT_FALSE(app->createSceneByKey('9'));
  EXPECT_EQ(std::vector<std::string>({"fall", "empty", "fall", "empty", "empty", "fall"}), loader->built);
  EXPECT_EQ(script(), app->getScriptFile());
  EXPECT_EQ(2u, app->getSimulation()->getRigidBodies().size());
  EXPECT_GT(app->getScene()->getNumChildren(), 0u);
  app->clearScene();
  EXPECT_TRUE(app->getSimulation()->getRigidBodies().empty());
  EXPECT_EQ(0u, app->getScene()->getNumChildren());
  EXPECT_EQ(0.0, app->getTimeStamp());
}

TEST_F(Application, AReloadedSceneRunsBitForBitAlike) {
  ASSERT_TRUE(init());
  run(1.0);
  const uint64_t first = app->getSimulation()->stateHash();
  app->reloadScene();
  EXPECT_EQ(0.0, app->getTimeStamp());
  app->stopAfter(1.0);
  app->run();
  EXPECT_EQ(first, app->getSimulation()->stateHash());
}

TEST_F(Application, ScenesWithDurationsFollowOneAnother) {
  ASSERT_TRUE(init());
  loader->scenes["other"] = loader->scenes["fall"];
  app->addScene(script(), "fall", 0, true, 0.2f, false);
  app->addScene(script(), "other", 0, false, 0.1f, false);
  EXPECT_EQ(0, app->run());
  EXPECT_EQ(std::vector<std::string>({"fall", "other"}), loader->built);
  EXPECT_NEAR(0.1, app->getTimeStamp(), 1e-6);
}

TEST_F(Application, APausedSceneEndsARunWithoutWindow) {
  ASSERT_TRUE(init());
  CapturedMessages messages;
  app->addScene(script(), "fall", 0, true, 0.0f, true);
  app->stopAfter(1.0);
  EXPECT_EQ(0, app->run());
  EXPECT_EQ(0.0, app->getTimeStamp());
  EXPECT_EQ(1u, messages.warnings().size());
  app->step();
  EXPECT_NEAR(1.0 / 60.0, app->getTimeStamp(), 1e-12);
}

TEST_F(Application, BodiesThatTouchPauseOnce) {
  ASSERT_TRUE(init());
  loader->scenes["watched"] = [this](vyrSDK::Simulation& simulation, ExampleApplication& application,
                                     vyrOSG::Group& root) {
    makeFall(simulation, root);
    application.addAutoPausePair(box.get(), ground.get());
  };
  run(2.0, "watched");
  EXPECT_FALSE(app->getAutoStepping());
  // A fall of 1 m takes sqrt(2 / 9.80665) = 0.4516 s; contacts are found a step or two around it.
  EXPECT_NEAR(0.4516, app->getTimeStamp(), 0.05);
  app->setAutoStepping(true);
  app->stopAfter(0.5);
  const double before = app->getTimeStamp();
  app->run();
  EXPECT_NEAR(before + 0.5, app->getTimeStamp(), 0.02) << "a pair that stays in contact does not pause again";
}

TEST_F(Application, GeometryPairsPauseAndCanBeRemoved) {
  ASSERT_TRUE(init());
  EXPECT_TRUE(app->getEnableAutoPausing());
  loader->scenes["watched"] = [this](vyrSDK::Simulation& simulation, ExampleApplication& application,
                                     vyrOSG::Group& root) {
    makeFall(simulation, root);
    const vyrCollide::Geometry* a = ground->getGeometries()[0].get();
    const vyrCollide::Geometry* b = box->getGeometries()[0].get();
    application.addAutoPausePair(a, b);
    application.addAutoPausePair(static_cast<const vyr::RigidBody*>(nullptr), box.get());
    if (simulation.getTimeStep() < 0.015)
      application.removeAutoPausePair(b, a);
  };
  run(2.0, "watched");
  EXPECT_NEAR(0.4516, app->getTimeStamp(), 0.05);
  app->setTimeStep(0.01);
  app->reloadScene();
  app->stopAfter(1.0);
  app->run();
  EXPECT_NEAR(1.0, app->getTimeStamp(), 1e-9);
  app->setTimeStep(1.0 / 60.0);
  app->setEnableAutoPausing(false);
  app->reloadScene();
  app->stopAfter(1.0);
  app->run();
  EXPECT_NEAR(1.0, app->getTimeStamp(), 1e-9);
}

TEST_F(Application, SolversHaveNames) {
  EXPECT_EQ("MULTI", app->getSolverName(ExampleApplication::MULTI));
  EXPECT_EQ("ITERATIVE", app->getSolverName(ExampleApplication::ITERATIVE));
  EXPECT_EQ("", app->getSolverName(ExampleApplication::NUM_SOLVERS));
  EXPECT_EQ(ExampleApplication::MULTI, app->getSolverType("multi"));
  EXPECT_EQ(ExampleApplication::NUM_SOLVERS, app->getSolverType("none"));
  EXPECT_EQ(ExampleApplication::ITERATIVE, app->getSolverType());
  app->changeSolver();
  EXPECT_EQ(ExampleApplication::MULTI, app->getSolverType());
  EXPECT_EQ(vyrSDK::Simulation::MULTI, app->getSimulation()->getSolver());
  app->changeSolver();
  EXPECT_EQ(vyrSDK::Simulation::ITERATIVE, app->getSimulation()->getSolver());
}

TEST_F(Application, ArgumentsSetItUp) {
  ASSERT_TRUE(init({"--solver", "multi", "--time-step", "0.01", "--paused", "--grid", "--debug-rendering", "own"}));
  EXPECT_EQ(ExampleApplication::MULTI, app->getSolverType());
  EXPECT_EQ(0.01, app->getTimeStep());
  EXPECT_FALSE(app->getAutoStepping());
  EXPECT_TRUE(app->getEnableGrid());
  EXPECT_TRUE(app->getEnableDebugRenderer());
  EXPECT_EQ(parser.get(), app->getArguments());
  EXPECT_EQ(std::vector<std::string>({"own"}), parser->getRemaining());
  EXPECT_EQ(folder.path(), app->getLuaFilePath());
}

TEST_F(Application, MalformedArgumentsFailInit) {
  CapturedMessages messages;
  EXPECT_FALSE(init({"--solver", "magic"}));
  EXPECT_FALSE(init({"--time-step", "-1"}));
  EXPECT_FALSE(init({"--window", "0", "0", "0", "0"}));
  EXPECT_FALSE(init({"--cfg", folder / "none.cfg"}));
  EXPECT_FALSE(app->initialized());
  EXPECT_EQ(4u, messages.take().size());
}

TEST_F(Application, ASimulationOfItsOwnOrAGivenOne) {
  vyr::ref_ptr<vyrSDK::Simulation> given = new vyrSDK::Simulation;
  given->setGravity(vyr::Vec3(0, 0, -1.62));
  vyr::ref_ptr<ExampleApplication> other = new ExampleApplication(given.get());
  EXPECT_EQ(given.get(), other->getSimulation());
  EXPECT_EQ(vyr::Vec3(0, 0, -1.62), other->getGravity());
  vyr::ref_ptr<vyrSDK::Simulation> next = new vyrSDK::Simulation;
  other->initSimulation(next.get());
  EXPECT_EQ(next.get(), other->getSimulation());
  EXPECT_EQ(vyr::Vec3(0, 0, -1.62), next->getGravity());
  CapturedMessages messages;
  other->initSimulation(nullptr);
  EXPECT_EQ(next.get(), other->getSimulation());
  EXPECT_EQ(1u, messages.take().size());
  EXPECT_EQ(vyr::Vec3(0, 0, -9.80665), app->getGravity());
}

TEST_F(Application, SceneGraphHasOneOrder) {
  EXPECT_EQ(app->getSceneDecorator(), app->getRoot()->getChild(0));
  EXPECT_EQ(app->getSceneRoot(), app->getSceneDecorator()->getChild(0));
  EXPECT_EQ(app->getSceneSwitch(), app->getSceneRoot()->getChild(0));
  EXPECT_EQ(app->getScene(), app->getSceneSwitch()->getChild(0));
  osg::ref_ptr<osg::Group> own = new osg::Group;
  app->setScene(own.get());
  EXPECT_EQ(own.get(), app->getScene());
  EXPECT_EQ(2, own->referenceCount());
  EXPECT_EQ(nullptr, app->getCamera());
  EXPECT_EQ(nullptr, app->getViewer());
  EXPECT_EQ(0u, app->getHWND());
}

TEST_F(Application, TheVisualsCanBeSwitchedOff) {
  EXPECT_TRUE(app->getEnableOSGRenderer());
  app->setEnableOSGRenderer(false);
  EXPECT_FALSE(app->getEnableOSGRenderer());
  EXPECT_EQ(0u, app->getSceneSwitch()->getNodeMask());
}

TEST_F(Application, GridSettingsAreChecked) {
  CapturedMessages messages;
  app->setGridSize(vyr::Vec2(4, 6));
  app->setGridResolution(vyr::Vec2u(8, 9));
  app->setEnableGrid(true);
  app->setGridSize(vyr::Vec2(-1, 2));
  app->setGridSize(vyr::Vec2(std::numeric_limits<double>::quiet_NaN(), 2));
  app->setGridResolution(vyr::Vec2u(0, 2));
  EXPECT_EQ(3u, messages.take().size());
  EXPECT_EQ(4.0, app->getGridSize().x());
  EXPECT_EQ(9u, app->getGridResolution().y());
  EXPECT_TRUE(app->getEnableGrid());
  app->setEnableCoordinateSystem(true);
  EXPECT_TRUE(app->getEnableCoordinateSystem());
}

TEST_F(Application, TheCoordinateSystemMovesTheScene) {
  CapturedMessages messages;
  app->setCoordinateSystemTransform(vyr::AffineMatrix4x4::translate(1, 2, 3));
  EXPECT_EQ(vyr::Vec3(1, 2, 3), app->getCoordinateSystemTransform().getTranslate());
  EXPECT_EQ(osg::Vec3d(1, 2, 3), app->getSceneRoot()->asTransform()->asMatrixTransform()->getMatrix().getTrans());
  app->setCoordinateSystemTransform(vyr::AffineMatrix4x4::scale(vyr::Vec3(1, 0, 1)));
  EXPECT_EQ(1u, messages.take().size());
  EXPECT_EQ(vyr::Vec3(1, 2, 3), app->getCoordinateSystemTransform().getTranslate());
}

TEST_F(Application, SettingsComeOutOfAFile) {
  std::ofstream(folder / "a.cfg") << "{ \"timeStep\": 0.005, \"gravity\": [0, 0, -3.7], \"solver\": \"MULTI\",\n"
                                     "  \"grid\": true, \"gridSize\": [2, 3], \"shadows\": true,\n"
                                     "  \"coordinateSystem\": true, \"autoPausing\": false }\n";
  ASSERT_TRUE(init({"--cfg", folder / "a.cfg"}));
  EXPECT_EQ(0.005, app->getTimeStep());
  EXPECT_EQ(vyr::Vec3(0, 0, -3.7), app->getGravity());
  EXPECT_EQ(ExampleApplication::MULTI, app->getSolverType());
  EXPECT_TRUE(app->getEnableGrid());
  EXPECT_EQ(3.0, app->getGridSize().y());
  EXPECT_TRUE(app->getSceneDecorator()->getEnableShadows());
  EXPECT_TRUE(app->getEnableCoordinateSystem());
  EXPECT_FALSE(app->getEnableAutoPausing());
}

TEST_F(Application, MistakesInTheSettingsNameTheLine) {
  std::ofstream(folder / "b.cfg") << "{ \"timeStep\": 0.005,\n  \"colour\": 1 }\n";
  CapturedMessages messages;
  EXPECT_FALSE(init({"--cfg", folder / "b.cfg"}));
  EXPECT_NE(std::string::npos, messages.takeOne().find("b.cfg:2: there is no setting \"colour\""));
}

TEST_F(Application, AWindowWithoutDisplayIsExitCodeThree) {
  const char* display = std::getenv("DISPLAY");
  const std::string kept = display ? display : "";
  unsetenv("DISPLAY");
  ASSERT_TRUE(init());
  CapturedMessages messages;
  LaunchOptions::process().backend = LaunchOptions::WINDOW;
  EXPECT_EQ(3, run(0.1));
  EXPECT_EQ(3, LaunchOptions::process().getFailure());
  EXPECT_EQ(1u, messages.take().size());
  if (!kept.empty())
    setenv("DISPLAY", kept.c_str(), 1);
}

TEST_F(Application, PicturesWithoutGraphicsAreExitCodeThree) {
  ASSERT_TRUE(init());
  CapturedMessages messages;
  LaunchOptions::process().addShot("0.1:" + (folder / "a.png"));
  EXPECT_EQ(3, run(0.2));
  EXPECT_FALSE(messages.take().empty());
}

} // namespace
