/// How the cost of a step and of a frame grows with the size of the content: 10, 100, 1000, 10 000 parts.
#include "ScaleContents.h"

#include <vyrOSG/FrameGrabber.h>
#include <vyrOSG/GraphicsBackend.h>

#include <benchmark/benchmark.h>
#include <osgViewer/Viewer>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using scale::Content;

/// Processor time of the program in s, all threads together: other programs do not count.
double processorTime() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// A small picture without a window, so that the content counts and not its pixels.
class SmallViewer {
public:
  SmallViewer()
      : m_backend(vyrOSG::GraphicsBackend::create(vyrOSG::LaunchOptions::EGL, 64, 64, 0)) {
    if (m_backend->getContext() == nullptr)
      return;
    m_viewer = new osgViewer::Viewer;
    m_viewer->setThreadingModel(osgViewer::ViewerBase::SingleThreaded);
    m_viewer->setKeyEventSetsDone(0);
    m_viewer->getCamera()->setGraphicsContext(m_backend->getContext());
    m_viewer->getCamera()->setViewport(0, 0, 64, 64);
    m_grabber = vyrOSG::FrameGrabber::install(m_viewer->getCamera());
  }

  bool isReady() const { return m_viewer.valid(); }
  std::string describe() const { return m_backend->describe(); }

  void show(osg::Group* scene) {
    m_viewer->setSceneData(scene);
    const osg::BoundingSphere ball = scene->getBound();
    const osg::Vec3d eye = osg::Vec3d(ball.center()) + osg::Vec3d(0.3, -2.5, 1.0) * ball.radius();
    m_viewer->getCamera()->setProjectionMatrixAsPerspective(50, 1, 0.1 * ball.radius(), 10 * ball.radius());
    m_viewer->getCamera()->setViewMatrixAsLookAt(eye, ball.center(), osg::Vec3d(0, 0, 1));
  }

  /// Returns when the picture is drawn: reading it waits for that.
  void draw() {
    m_grabber->request();
    m_viewer->frame();
  }

private:
  vyr::ref_ptr<vyrOSG::GraphicsBackend> m_backend;
  osg::ref_ptr<osgViewer::Viewer> m_viewer;
  osg::ref_ptr<vyrOSG::FrameGrabber> m_grabber;
};

SmallViewer& viewer() {
  static SmallViewer s_viewer;
  return s_viewer;
}

enum Part { STEP, DRAWING, FRAME };
const char* const kPartNames[] = {"step", "drawing", "frame"};

/// The content of the last benchmark, kept for the next ones.
Content& contentOf(const std::string& name, const scale::Maker& make, int size) {
  static std::string s_key;
  static Content s_content;
  const std::string key = name + std::to_string(size);
  if (key != s_key) {
    s_content = Content();
    s_content = make(size);
    s_content.simulation->step();
    s_content.draw();
    s_key = key;
  }
  return s_content;
}

/// STEP: the simulation's. DRAWING: bringing the scene graph up to what the step did. FRAME: that, and the picture.
void measure(benchmark::State& state, Content& content, Part part) {
  if (part == FRAME && !viewer().isReady()) {
    state.SkipWithError(viewer().describe().c_str());
    return;
  }
  if (part == FRAME) {
    viewer().show(content.group.get());
    viewer().draw();
  }
  std::vector<double> times;
  for (auto _ : state) {
    double begin = processorTime();
    content.simulation->step();
    if (part != STEP) {
      begin = processorTime();
      content.draw();
    }
    if (part == FRAME)
      viewer().draw();
    times.push_back(processorTime() - begin);
    state.SetIterationTime(times.back());
  }
  // The middle: a software driver compiles programs in the midst of frames.
  std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2), times.end());
  state.counters["median_us"] = 1e6 * times[times.size() / 2];
  state.counters["size"] = static_cast<double>(content.size());
  if (part == FRAME)
    viewer().show(new osg::Group);
}

/// Prints each row, and at the end a table of the times with the exponent by which each row grows: the slope of time
/// over size between the second size and the last, both on logarithmic scales.
class TableReporter : public benchmark::ConsoleReporter {
public:
  TableReporter()
      : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      // One row a content and part, whatever the order of the runs.
      const auto size = run.counters.find("size");
      if (!run.error_occurred && size != run.counters.end())
        m_rows[run.run_name.function_name].emplace_back(size->second.value, run.counters.at("median_us").value);
    }
    ConsoleReporter::ReportRuns(runs);
  }

  void Finalize() override {
    std::printf("\n%-20s %s\n", "median time in us", "size: time ...; exponent (n log n from 100 to 10 000: 1.15)");
    for (const auto& [name, row] : m_rows) {
      std::printf("%-20s", name.c_str());
      for (const auto& [size, time] : row)
        std::printf(" %6.0f: %-9.4g", size, time);
      if (row.size() > 2) {
        const auto& [size1, time1] = row[1];
        const auto& [size2, time2] = row.back();
        std::printf(" %5.2f", std::log(time2 / time1) / std::log(size2 / size1));
      }
      std::printf("\n");
    }
  }

private:
  std::map<std::string, std::vector<std::pair<double, double>>> m_rows;
};

} // namespace

int main(int argc, char** argv) {
  for (const auto& kind : scale::makers()) {
    for (const int size : {10, 100, 1000, 10000}) {
      for (const Part part : {STEP, DRAWING, FRAME}) {
        const auto run = [kind, size, part](benchmark::State& state) {
          measure(state, contentOf(kind.first, kind.second, size), part);
        };
        benchmark::RegisterBenchmark((kind.first + "." + kPartNames[part]).c_str(), run)
            ->Arg(size)
            ->UseManualTime()
            ->Iterations(std::max(7, 2000 / size))
            ->Unit(benchmark::kMicrosecond);
      }
    }
  }
  benchmark::Initialize(&argc, argv);
  TableReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  return 0;
}
