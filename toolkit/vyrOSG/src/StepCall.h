// Lets an object that is no listener hear of a simulation's steps.
#pragma once

#include <vyr/ref_ptr.h>
#include <vyrSDK/Simulation.h>
#include <vyrSDK/StepEventListener.h>

namespace vyrOSG {

/// Calls a member function of an object, which it keeps alive, after each step.
template <class T>
class StepCall : public vyrSDK::StepEventListener {
public:
  using Function = void (T::*)();
  enum When { POST, LAST };

  /// Adds a call to a simulation, for the constructor of `object`: the reference is taken when the simulation has the
  /// listener, so that a refusal cannot destroy an object that is being made. Nullable: simulation.
  static void add(vyrSDK::Simulation* simulation, T* object, Function function, When when) {
    if (!simulation)
      return;
    const vyr::ref_ptr<StepCall> call(new StepCall(function, when));
    if (simulation->add(static_cast<vyrSDK::StepEventListener*>(call.get())))
      call->m_object = object;
  }

  void post(const vyr::TimeStamp&) override { run(POST); }
  void last(const vyr::TimeStamp&) override { run(LAST); }

protected:
  StepCall(Function function, When when)
      : m_function(function)
      , m_when(when) {}
  ~StepCall() override = default;

private:
  void run(When when) {
    if (when == m_when && m_object)
      (m_object.get()->*m_function)();
  }

  vyr::ref_ptr<T> m_object;
  Function m_function;
  When m_when;
};

} // namespace vyrOSG
