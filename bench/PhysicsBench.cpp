/// Time for a step of 1000 resting boxes: vyrSDK::Simulation against the same scene written directly for the engine.
#include <vyr/RigidBody.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Geometry.h>
#include <vyrSDK/Simulation.h>

#include <benchmark/benchmark.h>
#include <btBulletDynamicsCommon.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace {

const int kSide = 10;
const int kLayers = 10;
const double kHalf = 0.25;

/// Place of a box: columns of boxes that stand on the ground, apart from each other.
vyr::Vec3 placeOf(int i) {
  const int column = i / kLayers;
  return vyr::Vec3(1.0 * (column % kSide), 1.0 * (column / kSide), kHalf * (1 + 2 * (i % kLayers)));
}

struct ToolkitScene {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;

  ToolkitScene() {
    auto* ground = new vyrCollide::Geometry(new vyrCollide::Box(50.0, 50.0, 0.5));
    ground->setLocalTransform(vyr::AffineMatrix4x4::translate(0.0, 0.0, -0.5));
    simulation->add(ground);
    vyr::ref_ptr<vyrCollide::Box> shape = new vyrCollide::Box(kHalf, kHalf, kHalf);
    for (int i = 0; i < kSide * kSide * kLayers; ++i) {
      auto* body = new vyr::RigidBody;
      body->add(new vyrCollide::Geometry(shape.get()));
      body->setPosition(placeOf(i));
      simulation->add(body);
    }
  }

  void step() { simulation->step(); }
};

/// The same boxes, time step, iterations and solver settings.
struct EngineScene {
  btDefaultCollisionConfiguration configuration;
  btCollisionDispatcher dispatcher{&configuration};
  btDbvtBroadphase broadphase;
  btSequentialImpulseConstraintSolver solver;
  btDiscreteDynamicsWorld world{&dispatcher, &broadphase, &solver, &configuration};
  btBoxShape groundShape{btVector3(50.0, 50.0, 0.5)};
  btBoxShape shape{btVector3(kHalf, kHalf, kHalf)};
  std::vector<std::unique_ptr<btRigidBody>> bodies;

  EngineScene() {
    world.getDispatchInfo().m_deterministicOverlappingPairs = true;
    world.getSolverInfo().m_solverMode |= SOLVER_USE_2_FRICTION_DIRECTIONS;
    world.getSolverInfo().m_numIterations = 30;
    world.getSolverInfo().m_splitImpulsePenetrationThreshold = 0.0;
    world.getSolverInfo().m_warmstartingFactor = 1.0;
    world.setGravity(btVector3(0.0, 0.0, -9.80665));
    add(0.0, groundShape, btVector3(0.0, 0.0, -0.5));
    for (int i = 0; i < kSide * kSide * kLayers; ++i) {
      const vyr::Vec3 place = placeOf(i);
      add(125.0, shape, btVector3(place.x(), place.y(), place.z()));
    }
  }

  ~EngineScene() {
    for (const auto& body : bodies) {
      world.removeRigidBody(body.get());
    }
  }

  EngineScene(const EngineScene&) = delete;
  EngineScene& operator=(const EngineScene&) = delete;

  void add(double mass, btBoxShape& form, const btVector3& place) {
    btVector3 inertia(0.0, 0.0, 0.0);
    if (mass > 0.0) {
      form.calculateLocalInertia(mass, inertia);
    }
    btRigidBody::btRigidBodyConstructionInfo info(mass, nullptr, &form, inertia);
    info.m_startWorldTransform.setOrigin(place);
    bodies.push_back(std::make_unique<btRigidBody>(info));
    if (mass > 0.0) {
      bodies.back()->setActivationState(DISABLE_DEACTIVATION);
    }
    world.addRigidBody(bodies.back().get());
  }

  void step() { world.stepSimulation(1.0 / 60.0, 0, 1.0 / 60.0); }
};

/// Steps before measuring: the boxes come to rest.
const int kSettle = 60;

template <class Scene>
void stepBoxes(benchmark::State& state) {
  Scene scene;
  for (int i = 0; i < kSettle; ++i) {
    scene.step();
  }
  for (auto _ : state) {
    scene.step();
  }
  state.counters["boxes"] = kSide * kSide * kLayers;
}

void stepAndReadContacts(benchmark::State& state) {
  ToolkitScene scene;
  for (int i = 0; i < kSettle; ++i) {
    scene.step();
  }
  for (auto _ : state) {
    scene.step();
    benchmark::DoNotOptimize(scene.simulation->getContacts().data());
  }
  state.counters["contacts"] = static_cast<double>(scene.simulation->getContacts().size());
}

BENCHMARK(stepBoxes<EngineScene>)->Unit(benchmark::kMillisecond)->Name("engine/step")->Repetitions(3);
BENCHMARK(stepBoxes<ToolkitScene>)->Unit(benchmark::kMillisecond)->Name("toolkit/step")->Repetitions(3);
BENCHMARK(stepAndReadContacts)->Unit(benchmark::kMillisecond)->Name("toolkit/step_and_contacts")->Repetitions(3);

/// Keeps the fastest run of each name, for the ratio.
class RatioReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration) {
        double& fastest = run.benchmark_name().rfind("engine/", 0) == 0 ? m_engine : m_toolkit;
        if (run.benchmark_name().find("contacts") == std::string::npos) {
          fastest = fastest == 0.0 ? run.GetAdjustedCPUTime() : std::min(fastest, run.GetAdjustedCPUTime());
        }
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void printRatio() const {
    if (m_engine > 0.0 && m_toolkit > 0.0) {
      std::printf("ratio toolkit/engine, processor time of the fastest runs: %.3f\n", m_toolkit / m_engine);
    }
  }

private:
  double m_engine = 0.0;
  double m_toolkit = 0.0;
};

} // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.printRatio();
  benchmark::Shutdown();
  return 0;
}
