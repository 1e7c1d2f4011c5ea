/// Prints on the heads-up display that the simulation is paused.
#include <vyrOSG/SimulationPausedPrinter.h>

namespace vyrOSG {

SimulationPausedPrinter::SimulationPausedPrinter(vyrOSG::HudTextManager* manager,
                                                 vyrOSG::ExampleApplication* application)
    : m_manager(manager)
    , m_text(new HudTextManager::ReferencedText(std::string()))
    , m_application(application) {
  if (m_manager)
    m_manager->addReferencedText(m_text.get());
}

SimulationPausedPrinter::~SimulationPausedPrinter() {
  if (m_manager)
    m_manager->removeReferencedText(m_text.get());
}

void SimulationPausedPrinter::updateHud() {
  if (!m_manager)
    return;
  const bool paused = m_application.valid() && !m_application->getAutoStepping();
  m_text->setText(std::string(paused ? "Paused" : ""));
  m_manager->updateHud();
}

void SimulationPausedPrinter::update(float, float) {
  updateHud();
}

} // namespace vyrOSG
