/// Time for a frame, a step and its drawing, of 1000 boxes: a script in the application against the same scene written
/// directly in C++ for the physics engine and the scene-graph library.
#include "LuaSceneLoader.h"

#include <vyr/Notify.h>
#include <vyrLua/ScriptManager.h>
#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/GraphicsBackend.h>
#include <vyrOSG/LaunchOptions.h>

#include <benchmark/benchmark.h>
#include <btBulletDynamicsCommon.h>
#include <osg/Geode>
#include <osg/LightModel>
#include <osg/LightSource>
#include <osg/Material>
#include <osg/MatrixTransform>
#include <osg/ShapeDrawable>
#include <osgViewer/Viewer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace {

// Small pictures: the software rasteriser's time for pixels is the same for both and would hide the difference.
constexpr unsigned kWidth = 320;
constexpr unsigned kHeight = 180;
constexpr int kBoxes = 1000;
/// Frames before measuring: the boxes come to rest, and shaders and buffers are made.
constexpr int kSettle = 60;

const osg::Vec3d kEye(16, -12, 9);
const osg::Vec3d kCenter(4.5, 4.5, 2);

const char* const kScript = R"(
function boxes(sim, app, root)
  local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
  S:createBox("ground", at(0, 0, -0.5), Vec3(100, 100, 1), root, sim, vyr.RigidBody.STATIC)
  for i = 0, 999 do
    local column = math.floor(i / 10)
    local box = S:createBox("box", at(column % 10, math.floor(column / 10), 0.25 + 0.5 * (i % 10)),
                            Vec3(0.5, 0.5, 0.5), root, sim)
    vyrOSG.setDiffuseColor(box:getNode(), Vec4(0.1 * (column % 10), 0.5, 0.01 * column, 1))
  end
  app:setCameraHome(Vec3(16, -12, 9), Vec3(4.5, 4.5, 2))
end
)";

/// Ends each frame only when its pixels are there, so that no frame's drawing is counted for the next.
class Finish : public osg::Camera::DrawCallback {
public:
  void operator()(osg::RenderInfo&) const override { glFinish(); }
};

class ScriptedScene {
public:
  ScriptedScene()
      : m_application(new vyrOSG::ExampleApplication) {
    vyrOSG::LaunchOptions::process() = vyrOSG::LaunchOptions();
    vyrOSG::LaunchOptions::process().backend = vyrOSG::LaunchOptions::EGL;
    vyrOSG::LaunchOptions::process().width = kWidth;
    vyrOSG::LaunchOptions::process().height = kHeight;
    vyrOSG::LaunchOptions::process().samples = 0;
    vyrLua::ScriptManager* scripts = vyrLua::ScriptManager::instance(true);
    scripts->requestScriptPlugin("vyrOSG");
    const std::string file = "/tmp/vyr_application_bench.lua";
    std::ofstream(file) << kScript;
    m_application->init(nullptr);
    m_application->setSceneLoader(new vyrHost::LuaSceneLoader(scripts->getLuaState(), ""));
    m_application->addScene(file, "boxes", 0, true);
    m_application->setupViewer(false);
    m_application->createNextScene();
    if (isReady())
      m_application->getCamera()->addFinalDrawCallback(new Finish);
  }
  ~ScriptedScene() {
    m_application = nullptr;
    vyrLua::ScriptManager::shutdown();
  }

  bool isReady() const {
    return m_application->getViewer() && m_application->getSimulation()->getRigidBodies().size() == kBoxes + 1;
  }
  void step() { m_application->step(); }
  void draw() { m_application->getViewer()->frame(m_application->getTimeStamp()); }

private:
  vyr::ref_ptr<vyrOSG::ExampleApplication> m_application;
};

class WrittenScene {
public:
  WrittenScene()
      : m_backend(vyrOSG::GraphicsBackend::create(vyrOSG::LaunchOptions::EGL, kWidth, kHeight, 0))
      , m_viewer(new osgViewer::Viewer)
      , m_root(new osg::Group) {
    buildWorld();
    buildGraph();
    m_viewer->setThreadingModel(osgViewer::Viewer::SingleThreaded);
    m_viewer->setLightingMode(osg::View::NO_LIGHT);
    osg::Camera* camera = m_viewer->getCamera();
    camera->setGraphicsContext(m_backend->getContext());
    camera->setViewport(0, 0, kWidth, kHeight);
    camera->setDrawBuffer(GL_BACK);
    camera->setProjectionMatrixAsPerspective(40, static_cast<double>(kWidth) / kHeight, 0.1, 1000);
    camera->setViewMatrixAsLookAt(kEye, kCenter, osg::Vec3d(0, 0, 1));
    camera->addFinalDrawCallback(new Finish);
    m_viewer->setSceneData(m_root.get());
    if (isReady())
      m_viewer->realize();
  }
  ~WrittenScene() {
    for (const auto& body : m_bodies)
      m_world.removeRigidBody(body.get());
  }
  WrittenScene(const WrittenScene&) = delete;
  WrittenScene& operator=(const WrittenScene&) = delete;

  bool isReady() const { return m_backend->getContext() != nullptr; }

  void step() {
    m_world.stepSimulation(1.0 / 60.0, 0, 1.0 / 60.0);
    m_time += 1.0 / 60.0;
  }

  void draw() {
    for (std::size_t i = 0; i < m_bodies.size(); ++i) {
      double matrix[16];
      m_bodies[i]->getWorldTransform().getOpenGLMatrix(matrix);
      m_places[i]->setMatrix(osg::Matrixd(matrix));
    }
    m_viewer->frame(m_time);
  }

private:
  void buildWorld() {
    m_world.getDispatchInfo().m_deterministicOverlappingPairs = true;
    m_world.getSolverInfo().m_solverMode |= SOLVER_USE_2_FRICTION_DIRECTIONS;
    m_world.getSolverInfo().m_numIterations = 30;
    m_world.getSolverInfo().m_splitImpulsePenetrationThreshold = 0.0;
    m_world.getSolverInfo().m_warmstartingFactor = 1.0;
    m_world.setGravity(btVector3(0.0, 0.0, -9.80665));
    addBody(0.0, m_groundShape, btVector3(0.0, 0.0, -0.5));
    for (int i = 0; i < kBoxes; ++i) {
      const int column = i / 10;
      addBody(125.0, m_boxShape, btVector3(column % 10, column / 10, 0.25 + 0.5 * (i % 10)));
    }
  }

  void addBody(double mass, btBoxShape& shape, const btVector3& place) {
    btVector3 inertia(0.0, 0.0, 0.0);
    if (mass > 0.0)
      shape.calculateLocalInertia(mass, inertia);
    btRigidBody::btRigidBodyConstructionInfo info(mass, nullptr, &shape, inertia);
    info.m_startWorldTransform.setOrigin(place);
    m_bodies.push_back(std::make_unique<btRigidBody>(info));
    if (mass > 0.0)
      m_bodies.back()->setActivationState(DISABLE_DEACTIVATION);
    m_world.addRigidBody(m_bodies.back().get());
  }

  static osg::ref_ptr<osg::Geode> makeBox(const osg::Vec3& size) {
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(new osg::ShapeDrawable(new osg::Box(osg::Vec3(), size.x(), size.y(), size.z())));
    return geode;
  }

  void buildGraph() {
    osg::StateSet* state = m_root->getOrCreateStateSet();
    state->setMode(GL_LIGHTING, osg::StateAttribute::ON);
    osg::ref_ptr<osg::LightModel> model = new osg::LightModel;
    model->setAmbientIntensity(osg::Vec4(0.3f, 0.3f, 0.3f, 1.0f));
    state->setAttribute(model.get());
    const osg::Vec4 directions[] = {{-0.4f, -0.6f, 1, 0}, {0.9f, -0.4f, 0.5f, 0}, {0.2f, 0.9f, 0.4f, 0}};
    for (unsigned i = 0; i < 3; ++i) {
      osg::ref_ptr<osg::LightSource> source = new osg::LightSource;
      source->getLight()->setLightNum(static_cast<int>(i));
      source->getLight()->setPosition(directions[i]);
      source->getLight()->setDiffuse(osg::Vec4(0.4f, 0.4f, 0.4f, 1.0f));
      source->setStateSetModes(*state, osg::StateAttribute::ON);
      m_root->addChild(source.get());
    }
    const osg::ref_ptr<osg::Geode> ground = makeBox(osg::Vec3(100, 100, 1));
    const osg::ref_ptr<osg::Geode> box = makeBox(osg::Vec3(0.5f, 0.5f, 0.5f));
    for (int i = -1; i < kBoxes; ++i) {
      osg::ref_ptr<osg::MatrixTransform> place = new osg::MatrixTransform;
      place->addChild(i < 0 ? ground.get() : box.get());
      osg::ref_ptr<osg::Material> material = new osg::Material;
      const float column = static_cast<float>(i / 10);
      material->setDiffuse(osg::Material::FRONT_AND_BACK,
                           osg::Vec4(0.1f * static_cast<float>(i / 10 % 10), 0.5f, 0.01f * column, 1.0f));
      place->getOrCreateStateSet()->setAttribute(material.get());
      m_root->addChild(place.get());
      m_places.push_back(place);
    }
  }

  btDefaultCollisionConfiguration m_configuration;
  btCollisionDispatcher m_dispatcher{&m_configuration};
  btDbvtBroadphase m_broadphase;
  btSequentialImpulseConstraintSolver m_solver;
  btDiscreteDynamicsWorld m_world{&m_dispatcher, &m_broadphase, &m_solver, &m_configuration};
  btBoxShape m_groundShape{btVector3(50.0, 50.0, 0.5)};
  btBoxShape m_boxShape{btVector3(0.25, 0.25, 0.25)};
  std::vector<std::unique_ptr<btRigidBody>> m_bodies;
  vyr::ref_ptr<vyrOSG::GraphicsBackend> m_backend;
  osg::ref_ptr<osgViewer::Viewer> m_viewer;
  osg::ref_ptr<osg::Group> m_root;
  std::vector<osg::ref_ptr<osg::MatrixTransform>> m_places;
  double m_time = 0.0;
};

enum Part { kStep = 1, kDraw = 2 };

template <class Scene>
void frames(benchmark::State& state) {
  Scene scene;
  if (!scene.isReady()) {
    state.SkipWithError("no graphics without a display here");
    return;
  }
  for (int i = 0; i < kSettle; ++i) {
    scene.step();
    scene.draw();
  }
  for (auto _ : state) {
    if (state.range(0) & kStep)
      scene.step();
    if (state.range(0) & kDraw)
      scene.draw();
  }
}

BENCHMARK(frames<WrittenScene>)
    ->Arg(kStep | kDraw)
    ->Arg(kStep)
    ->Arg(kDraw)
    ->Unit(benchmark::kMillisecond)
    ->Name("written")
    ->MeasureProcessCPUTime()
    ->Iterations(40)
    ->Repetitions(3);
BENCHMARK(frames<ScriptedScene>)
    ->Arg(kStep | kDraw)
    ->Arg(kStep)
    ->Arg(kDraw)
    ->Unit(benchmark::kMillisecond)
    ->Name("script")
    ->MeasureProcessCPUTime()
    ->Iterations(40)
    ->Repetitions(3);

/// Keeps the fastest run of each name, for the ratios. Processor time, the rasteriser's threads included: what else
/// runs on the machine hardly shows in it.
class RatioReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.error_occurred)
        continue;
      const std::string name = run.benchmark_name().substr(0, run.benchmark_name().find("/iterations"));
      const double time = run.GetAdjustedCPUTime();
      const auto known = m_fastest.find(name);
      m_fastest[name] = known == m_fastest.end() ? time : std::min(known->second, time);
    }
    benchmark::ConsoleReporter::ReportRuns(runs);
  }

  void Finalize() override {
    for (const auto& part :
         {std::make_pair("/3", "frame"), std::make_pair("/1", "step"), std::make_pair("/2", "drawing")}) {
      const auto written = m_fastest.find(std::string("written") + part.first);
      const auto script = m_fastest.find(std::string("script") + part.first);
      if (written != m_fastest.end() && script != m_fastest.end())
        std::printf("ratio script/written directly, %s of 1000 boxes, processor time of the fastest runs: %.2f\n",
                    part.second, script->second / written->second);
    }
  }

private:
  std::map<std::string, double> m_fastest;
};

} // namespace

int main(int argc, char** argv) {
  setenv("VYR_PLUGIN_PATH", PLUGIN_DIRECTORY, 0);
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return 0;
}
