// A modelled tree that comes with its own renderer.
#include <vyrOSG/Tree.h>

#include <algorithm>

namespace vyrOSG {

Tree::Tree(vyrOSG::Group* group)
    : m_renderer(new TreeRenderer(this, group)) {}

Tree::~Tree() = default;

void Tree::changed() {
  auto* listener = static_cast<vyrSDK::StepEventListener*>(m_renderer.get());
  if (m_simulation && m_simulation.get() != getSimulation())
    m_simulation->remove(listener);
  m_simulation = getSimulation();
  if (m_simulation) {
    // The simulation may have been cleared in between.
    const auto& listeners = m_simulation->getStepEventListeners();
    if (std::find(listeners.begin(), listeners.end(), listener) == listeners.end())
      m_simulation->add(listener);
  }
  m_renderer->update();
}

} // namespace vyrOSG
