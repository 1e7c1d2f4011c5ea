/// Listener that the simulation calls before and after each step.
#include <vyrSDK/StepEventListener.h>

namespace vyrSDK {

StepEventListener::~StepEventListener() = default;

void StepEventListener::pre(const vyr::TimeStamp&) {}

void StepEventListener::post(const vyr::TimeStamp&) {}

void StepEventListener::last(const vyr::TimeStamp&) {}

void StepEventListener::simulationChanged(Simulation*) {}

} // namespace vyrSDK
