/// Prints the simulation's time on the heads-up display.
#include <vyrOSG/SimulationTimePrinter.h>

#include <cstdio>

namespace vyrOSG {

SimulationTimePrinter::SimulationTimePrinter(vyrOSG::HudTextManager* manager)
    : m_manager(manager)
    , m_text(new HudTextManager::ReferencedText(std::string())) {
  if (m_manager)
    m_manager->addReferencedText(m_text.get());
}

SimulationTimePrinter::~SimulationTimePrinter() {
  if (m_manager)
    m_manager->removeReferencedText(m_text.get());
}

void SimulationTimePrinter::updateHud() {
  if (!m_manager)
    return;
  std::string line;
  const vyrSDK::Simulation* simulation = m_simulation.valid() ? m_simulation.get() : m_manager->getSimulation();
  if (simulation) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "Time: %.3f s", simulation->getTime());
    line = buffer;
  }
  m_text->setText(line);
  m_manager->updateHud();
}

void SimulationTimePrinter::update(float, float) {
  updateHud();
}

void SimulationTimePrinter::simulationChanged(vyrSDK::Simulation* simulation) {
  m_simulation = simulation;
}

} // namespace vyrOSG
