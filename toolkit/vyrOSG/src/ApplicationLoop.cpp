// The application's main loop: steps, frames, limits and the exit code.
#include "ApplicationParts.h"

#include <vyr/Notify.h>

#include <OpenThreads/Thread>

#include <algorithm>
#include <cmath>

namespace vyrOSG {

namespace {

/// Times of steps are sums of roundings only in the last digits: what lies this near counts as reached (s).
constexpr double kReached = 1.0e-9;

constexpr double kSinglePrecision = 1.0e-5;

/// Frames a second in a window, when the window system does not hold the pace itself.
constexpr double kFrameTime = 1.0 / 60.0;

/// The simulation falls behind the clock rather than to let a slow scene take ever longer frames (s).
constexpr double kLongestFrame = 0.1;

} // namespace

void ExampleApplication::stopAfter(double seconds) {
  m_parts->stopTime = seconds >= 0.0 ? getTimeStamp() + seconds : std::numeric_limits<double>::infinity();
}

bool ExampleApplication::done() const {
  return m_stopRequested || m_parts->stepsLeft == 0 || getTimeStamp() >= m_parts->stopTime - kReached ||
         (m_viewer.valid() && m_viewer->done());
}

void ExampleApplication::fail(int exitCode) {
  if (m_parts->exitCode == 0)
    m_parts->exitCode = exitCode;
  LaunchOptions::process().setFailure(exitCode);
}

int ExampleApplication::run() {
  if (!m_initialized) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "run: the application was not initialized";
    return 1;
  }
  m_stopRequested = false;
  m_parts->exitCode = 0;
  if (!m_backend && !setupViewer(true, true)) {
    fail(3);
    return 3;
  }
  const LaunchOptions& options = LaunchOptions::process();
  m_parts->stepsLeft = options.steps;
  m_parts->limited = options.steps >= 0 || options.duration >= 0.0 || std::isfinite(m_parts->stopTime);
  if (!startPictures())
    return m_parts->exitCode;

  if (!m_parts->scenes.empty() && m_parts->currentScene == Parts::kNoScene) {
    const std::size_t first = m_parts->startScene == Parts::kNoScene ? 0 : m_parts->startScene;
    // In a window somebody can mend the scene and load it again; elsewhere the run would go on with nothing in it.
    const bool someoneIsThere = m_backend->getKind() == LaunchOptions::WINDOW && !m_parts->limited &&
                                options.shots.empty() && options.record.empty();
    if (!createScene(first) && !someoneIsThere)
      fail(1);
  }
  if (m_parts->playAtStart)
    journalPlayback();
  if (options.duration >= 0.0)
    m_parts->stopTime = std::min(m_parts->stopTime, getTimeStamp() + options.duration);
  if (m_parts->exitCode == 0) {
    const bool paced = m_backend->getKind() == LaunchOptions::WINDOW && !m_parts->unpaced && !m_parts->recorder;
    m_parts->limited = m_parts->limited || std::isfinite(m_parts->stopTime) || std::isfinite(m_parts->sceneEnd);
    if (paced)
      runPaced();
    else
      runUnpaced();
  }
  finishPictures();
  return m_parts->exitCode;
}

void ExampleApplication::runPaced() {
  osg::Timer clock;
  double owed = 0.0;
  double last = clock.time_s();
  drawFrame();
  while (!done()) {
    const double now = clock.time_s();
    owed = m_parts->autoStepping ? std::min(owed + now - last, kLongestFrame) : 0.0;
    last = now;
    while (owed >= getTimeStep() && m_parts->autoStepping && !done() && clock.time_s() - now < kLongestFrame) {
      owed -= getTimeStep();
      stepSimulation();
      takeDueShots();
      // Each image shows its own moment, even where drawing is too slow for the wall clock.
      if (isCapturingInLockStep())
        break;
    }
    drawFrame();
    const double rest = kFrameTime - (clock.time_s() - now);
    if (rest > 0.0)
      OpenThreads::Thread::microSleep(static_cast<unsigned>(rest * 1.0e6));
  }
}

void ExampleApplication::runUnpaced() {
  if (!m_parts->limited && m_backend->getKind() != LaunchOptions::WINDOW)
    VYR_NOTIFY(vyr::NOTIFY_WARNING) << "nothing limits this run: it goes on until it is interrupted";
  drawFrame();
  while (!done()) {
    if (m_parts->autoStepping) {
      stepSimulation();
      takeDueShots();
    } else if (m_backend->getKind() != LaunchOptions::WINDOW) {
      VYR_NOTIFY(vyr::NOTIFY_WARNING) << "paused at " << getTimeStamp()
                                      << " s with nobody there to go on: the run ends here";
      break;
    }
    drawFrame();
  }
}

void ExampleApplication::step() {
  stepSimulation();
  takeDueShots();
  drawFrame();
}

void ExampleApplication::stepSimulation() {
  if (m_parts->player.isOpen()) {
    if (!m_parts->player.next(*m_simulation)) {
      m_parts->player.close();
      setAutoStepping(false);
      // Without a window nobody can let the simulation go on from here.
      if (m_backend && m_backend->getKind() != LaunchOptions::WINDOW)
        m_stopRequested = true;
      return;
    }
  } else {
    m_simulation->step();
    if (m_parts->journal.isOpen())
      m_parts->journal.record(*m_simulation);
  }
  if (m_parts->stepsLeft > 0)
    --m_parts->stepsLeft;
  if (m_parts->dump)
    m_simulation->write(m_saveSceneFilename + "." + std::to_string(m_simulation->getTimeStamp().steps()) + ".json");
  updateRemoteDebugger();
  std::string who;
  if (m_parts->autoPausing && m_parts->autoPause.check(*m_simulation, who)) {
    VYR_NOTIFY(vyr::NOTIFY_INFO) << "paused at " << getTimeStamp() << " s: " << who << " touch";
    setAutoStepping(false);
  }
  checkLimits();
}

void ExampleApplication::checkLimits() {
  // Durations come in single precision, so that "0.1" may be a hair above a step's time.
  if (getTimeStamp() < m_parts->sceneEnd - kSinglePrecision)
    return;
  if (m_parts->currentScene + 1 < m_parts->scenes.size()) {
    // The moment at which the scene ends belongs to its film.
    drawFrame();
    createNextScene();
  } else {
    m_stopRequested = true;
  }
}

} // namespace vyrOSG
