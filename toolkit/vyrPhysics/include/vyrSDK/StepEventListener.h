/// Listener that the simulation calls before and after each step.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/TimeStamp.h>
#include <vyrPhysics/export.h>

namespace vyrSDK {

class Simulation;

/// Called in each step, in the order in which the listeners were added: pre for all, the step, post for all, last for
/// all. Listeners may add and remove anything, themselves included.
class VYRPHYSICS_EXPORT StepEventListener : public vyr::Referenced {
public:
  StepEventListener() = default;

  /// Before the step; `time` is the time at its start. Forces added here act in this step.
  virtual void pre(const vyr::TimeStamp& time);

  /// After the step; `time` is the new time. Poses, velocities and contacts are new.
  virtual void post(const vyr::TimeStamp& time);

  /// After all listeners' post: what may still change in post is settled here.
  virtual void last(const vyr::TimeStamp& time);

  /// Called when the listener enters a simulation and when it leaves (with null). *borrows*
  virtual void simulationChanged(Simulation* simulation);

protected:
  ~StepEventListener() override;
};

} // namespace vyrSDK
