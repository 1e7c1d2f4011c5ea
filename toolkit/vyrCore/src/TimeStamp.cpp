/// Simulation time that does not drift.
#include <vyr/TimeStamp.h>

namespace vyr {

void TimeStamp::setTimeStep(double dt) {
  if (dt != m_dt) {
    m_base = seconds();
    m_stepsOfThisLength = 0;
    m_dt = dt;
  }
}

void TimeStamp::reset(double seconds, std::uint64_t steps) {
  m_base = seconds;
  m_steps = steps;
  m_stepsOfThisLength = 0;
}

void TimeStamp::restore(double countStart, std::uint64_t countedSteps, std::uint64_t steps) {
  m_base = countStart;
  m_steps = steps;
  m_stepsOfThisLength = countedSteps;
}

} // namespace vyr
