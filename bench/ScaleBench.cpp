/// How the cost of a step and of its drawing grows with the size of the content: 10, 100, 1000, 10 000 parts.
#include <vyr/RigidBody.h>
#include <vyrCollide/Box.h>
#include <vyrModel/Terrain.h>
#include <vyrOSG/TerrainRenderer.h>
#include <vyrOSG/WireRenderer.h>
#include <vyrSDK/Simulation.h>
#include <vyrWire/Wire.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using vyr::Vec3;

vyr::ref_ptr<vyr::RigidBody> addBox(vyrSDK::Simulation& simulation, const Vec3& place, double halfSize, double mass) {
  vyr::ref_ptr<vyr::RigidBody> body(new vyr::RigidBody("box"));
  body->add(new vyrCollide::Geometry(new vyrCollide::Box(Vec3(halfSize, halfSize, halfSize))));
  body->setMass(mass);
  body->setPosition(place);
  simulation.add(body.get());
  return body;
}

/// A slack wire between two fixed places, 0.1 m a segment.
void wireStep(benchmark::State& state) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  const double length = 0.1 * static_cast<double>(state.range(0));
  vyr::ref_ptr<vyrWire::Wire> wire(new vyrWire::Wire(length, static_cast<std::size_t>(state.range(0)), 1));
  simulation->add(wire.get());
  wire->attachBegin(nullptr, Vec3(0, 0, 0));
  wire->attachEnd(nullptr, Vec3(0.8 * length, 0, 0));
  for (auto _ : state) {
    simulation->step();
  }
}

void wireDrawing(benchmark::State& state) {
  vyr::ref_ptr<vyrWire::Wire> wire(new vyrWire::Wire(10, static_cast<std::size_t>(state.range(0)), 1));
  osg::ref_ptr<osg::Group> group = new osg::Group;
  vyr::ref_ptr<vyrOSG::WireRenderer> renderer(new vyrOSG::WireRenderer(wire.get(), group));
  for (auto _ : state) {
    renderer->update();
  }
}

vyr::ref_ptr<vyrModel::Terrain> makeTerrain(std::int64_t cells) {
  const auto side = static_cast<std::size_t>(std::lround(std::sqrt(static_cast<double>(cells)))) + 1;
  return new vyrModel::Terrain(side, side, 0.1 * static_cast<double>(side), 0.1 * static_cast<double>(side),
                               vyr::RealVector(side * side, 0.0));
}

/// A field of which every part is loaded: a box for each hundred cells.
void terrainStep(benchmark::State& state) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  const auto terrain = makeTerrain(state.range(0));
  simulation->add(terrain.get());
  const double half = 0.5 * terrain->getHeightField()->getSizeX() - 0.2;
  for (double x = -half + 0.4; x < half; x += 1) {
    for (double y = -half + 0.4; y < half; y += 1) {
      addBox(*simulation, Vec3(x, y, 0.205), 0.2, 100);
    }
  }
  for (auto _ : state) {
    simulation->step();
  }
}

void terrainDrawing(benchmark::State& state) {
  const auto terrain = makeTerrain(state.range(0));
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  for (auto _ : state) {
    // All rows anew: the most that a frame can ask for.
    vyr::ref_ptr<vyrOSG::TerrainRenderer> renderer(
        new vyrOSG::TerrainRenderer(terrain.get(), vyr::RangeReal(-1, 1), group));
    benchmark::DoNotOptimize(renderer->getTerrainNode());
  }
}

/// Boxes side by side on a plane of boxes: four contacts each.
void contactStep(benchmark::State& state) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  const auto boxes = static_cast<int>((state.range(0) + 3) / 4);
  const int side = static_cast<int>(std::ceil(std::sqrt(boxes)));
  vyr::ref_ptr<vyr::RigidBody> ground(new vyr::RigidBody("ground"));
  ground->add(new vyrCollide::Geometry(new vyrCollide::Box(Vec3(side, side, 0.5))));
  ground->setPosition(Vec3(0, 0, -0.5));
  ground->setMotionControl(vyr::RigidBody::STATIC);
  simulation->add(ground.get());
  for (int i = 0; i < boxes; ++i) {
    addBox(*simulation, Vec3(i % side - 0.5 * side, i / side - 0.5 * side, 0.3), 0.3, 10);
  }
  simulation->stepTo(0.5);
  for (auto _ : state) {
    simulation->step();
  }
  state.counters["contacts"] = static_cast<double>(simulation->getContacts().size());
}

/// Prints each row, and at the end the exponent by which each family grows: the slope of time over size between the
/// second size and the last, both on logarithmic scales.
class ExponentReporter : public benchmark::ConsoleReporter {
public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      m_times[run.run_name.function_name].emplace_back(std::stod(run.run_name.args), run.GetAdjustedCPUTime());
    }
    ConsoleReporter::ReportRuns(runs);
  }
  void Finalize() override {
    for (const auto& [name, times] : m_times) {
      if (times.size() > 2) {
        const auto& [size1, time1] = times[1];
        const auto& [size2, time2] = times.back();
        std::printf("%-16s grows with size^%.2f\n", name.c_str(), std::log(time2 / time1) / std::log(size2 / size1));
      }
    }
  }

private:
  std::map<std::string, std::vector<std::pair<double, double>>> m_times;
};

} // namespace

BENCHMARK(wireStep)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(wireDrawing)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(terrainStep)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(terrainDrawing)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(contactStep)->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  ExponentReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
