// Base of what writes pressures into an atlas.
#include <vyrOSG/PressureGenerator.h>

#include "StepCall.h"

namespace vyrOSG {

PressureGenerator::PressureGenerator(vyrSDK::Simulation* simulation, PressureAtlas* atlas)
    : m_simulation(simulation)
    , m_atlas(atlas) {
  StepCall<PressureGenerator>::add(simulation, this, &PressureGenerator::generate, StepCall<PressureGenerator>::POST);
}

PressureGenerator::~PressureGenerator() = default;

} // namespace vyrOSG
