/// Counts the pictures that a film owes to a clock.
#include <vyrOSG/FrameClock.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace vyrOSG {

namespace {

/// Share of an interval by which a picture may come early: far above the rounding of summed steps, far below what a
/// viewer sees.
constexpr double kTolerance = 1e-3;

bool isRate(double fps) {
  return fps > 0.0 && std::isfinite(fps);
}

} // namespace

int FrameClock::takeDue(double& accumulated, double fps) {
  if (!isRate(fps))
    return 0;
  const double due = std::floor(accumulated * fps + kTolerance);
  if (!(due >= 1.0))
    return 0;
  const double count = std::min(due, static_cast<double>(std::numeric_limits<int>::max()));
  accumulated -= count / fps;
  return static_cast<int>(count);
}

void FrameClock::start(double fps) {
  m_fps = fps;
  m_accumulated = 0.0;
  m_reset = true;
}

int FrameClock::advance(double time) {
  if (std::isnan(time))
    return 0;
  if (m_reset || time < m_lastTime) {
    m_reset = false;
    m_accumulated = 0.0;
  } else {
    m_accumulated += time - m_lastTime;
  }
  m_lastTime = time;
  return takeDue(m_accumulated, m_fps);
}

double FrameClock::getTimeToNext() const {
  return isRate(m_fps) ? std::max(0.0, 1.0 / m_fps - m_accumulated) : std::numeric_limits<double>::infinity();
}

} // namespace vyrOSG
