/// Simulation time that does not drift.
#pragma once

#include <vyrCore/export.h>

#include <cstdint>

namespace vyr {

/// Time since a simulation began, counted in whole steps: n steps of dt are n * dt, not a sum of n roundings.
/// A change of the step length starts a new count on top of the time reached.
class VYRCORE_EXPORT TimeStamp {
public:
  /// `dt`: the step length in s.
  explicit TimeStamp(double dt = 1.0 / 60.0)
      : m_dt(dt) {}

  void setTimeStep(double dt);
  double getTimeStep() const { return m_dt; }
  /// Goes one step on.
  void advance() {
    ++m_steps;
    ++m_stepsOfThisLength;
  }
  /// The time in s.
  double seconds() const { return m_base + static_cast<double>(m_stepsOfThisLength) * m_dt; }
  /// Steps made since the beginning.
  std::uint64_t steps() const { return m_steps; }
  /// Restores a state: `seconds` reached after `steps` steps.
  void reset(double seconds = 0, std::uint64_t steps = 0);
  /// Where the count of the present step length began, in s.
  double countStart() const { return m_base; }
  /// Steps counted since then.
  std::uint64_t countedSteps() const { return m_stepsOfThisLength; }
  /// Restores a state in every bit: seconds() goes on as it would have.
  void restore(double countStart, std::uint64_t countedSteps, std::uint64_t steps);

private:
  double m_dt;
  double m_base = 0;
  std::uint64_t m_steps = 0;
  std::uint64_t m_stepsOfThisLength = 0;
};

} // namespace vyr
