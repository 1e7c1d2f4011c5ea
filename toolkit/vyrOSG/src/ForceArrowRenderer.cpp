// Measures forces step by step and keeps one arrow a force in the scene.
#include <vyrOSG/ForceArrowRenderer.h>

#include "ShapeMesh.h"
#include "Surface.h"

#include <vyrOSG/Conversions.h>
#include <vyrOSG/OSGSceneRoot.h>

#include <vyr/Notify.h>
#include <vyrSDK/StepEventListener.h>

#include <osg/Geode>
#include <osg/MatrixTransform>

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_map>

namespace vyrOSG {

namespace {

constexpr unsigned int kSegments = 20;
constexpr float kBodyColor[3] = {0.90f, 0.30f, 0.20f};
constexpr float kConstraintColor[3] = {0.16f, 0.55f, 0.80f};

/// A part of an arrow with all dimensions 1, so that a matrix gives it any size.
osg::ref_ptr<osg::MatrixTransform> makePart(const osg::ref_ptr<osg::Geometry>& mesh, const float (&color)[3]) {
  osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
  colors->push_back(osg::Vec4(color[0], color[1], color[2], 1));
  mesh->setColorArray(colors, osg::Array::BIND_OVERALL);
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(mesh);
  osg::ref_ptr<osg::MatrixTransform> part = new osg::MatrixTransform;
  part->addChild(geode);
  return part;
}

} // namespace

struct ForceArrowRenderer::Arrow {
  explicit Arrow(const float (&color)[3])
      : shaft(makePart(mesh::makeCylinder(1, 1, kSegments), color))
      , tip(makePart(mesh::makeCone(1, 1, kSegments), color))
      , node(new osg::MatrixTransform) {
    node->addChild(shaft);
    node->addChild(tip);
    node->setNodeMask(0);
    surface::setFixedLook(node, true);
    node->getOrCreateStateSet()->setMode(GL_NORMALIZE, osg::StateAttribute::ON);
  }

  /// Whether there is still something whose force could be measured.
  bool isAlive() const {
    return body || std::any_of(constraints.begin(), constraints.end(), [](const auto& c) { return bool(c); });
  }

  /// Where the arrow begins, in the world (m).
  vyr::Vec3 begin() const {
    if (body)
      return position * body->getTransform();
    for (const auto& constraint : constraints) {
      if (constraint)
        return position * constraint->getFrame1()->getTransform();
    }
    return position;
  }

  vyr::observer_ptr<vyr::RigidBody> body;
  Constraint1DOFObserverVector constraints;
  vyr::Vec3 position;
  vyr::Vec3 applied;
  ExponentialMovingAverageStatistic force;
  osg::ref_ptr<osg::MatrixTransform> shaft;
  osg::ref_ptr<osg::MatrixTransform> tip;
  osg::ref_ptr<osg::MatrixTransform> node;
};

/// Listens to one simulation. The simulation holds it; it forgets its renderer when that goes first.
class ForceArrowRenderer::Sampler : public vyrSDK::StepEventListener {
public:
  Sampler(ForceArrowRenderer* renderer, vyrSDK::Simulation* simulation)
      : m_renderer(renderer)
      , m_simulation(simulation) {}

  void pre(const vyr::TimeStamp&) override {
    if (m_renderer && m_simulation)
      m_renderer->measureApplied(m_simulation.get());
  }

  void last(const vyr::TimeStamp&) override {
    if (m_renderer && m_simulation) {
      m_renderer->measure(m_simulation.get());
      moveToEnd();
    }
  }

  ForceArrowRenderer* m_renderer;
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;

protected:
  ~Sampler() override = default;

private:
  /// Forces that other listeners add before the step are seen only behind them.
  void moveToEnd() {
    if (m_simulation->getStepEventListeners().back() == this)
      return;
    const vyr::ref_ptr<Sampler> kept(this);
    m_simulation->remove(this);
    m_simulation->add(this);
  }
};

ForceArrowRenderer::ForceArrowRenderer()
    : m_group(new osg::Group) {
  m_group->setName("force arrows");
}

ForceArrowRenderer::~ForceArrowRenderer() {
  for (const vyr::ref_ptr<Sampler>& sampler : m_samplers) {
    sampler->m_renderer = nullptr;
    if (sampler->m_simulation)
      sampler->m_simulation->remove(sampler.get());
  }
  while (m_group->getNumParents() > 0)
    m_group->getParent(0)->removeChild(m_group);
}

void ForceArrowRenderer::add(vyr::RigidBody* body, const vyr::Vec3& position) {
  if (!body)
    return;
  if (!position.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::ForceArrowRenderer::add: the position (" << position << ") on '"
                                  << body->getName() << "' is not finite";
    return;
  }
  for (const std::unique_ptr<Arrow>& arrow : m_arrows) {
    if (arrow->body == body) {
      arrow->position = position;
      return;
    }
  }
  auto arrow = std::make_unique<Arrow>(kBodyColor);
  arrow->body = body;
  arrow->position = position;
  m_group->addChild(arrow->node);
  m_arrows.push_back(std::move(arrow));
  watchAll();
}

void ForceArrowRenderer::add(Constraint1DOFObserverVector& constraints, const vyr::Vec3& position) {
  if (!position.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::ForceArrowRenderer::add: the position (" << position
                                  << ") at constraints is not finite";
    return;
  }
  auto arrow = std::make_unique<Arrow>(kConstraintColor);
  for (const auto& constraint : constraints) {
    if (constraint)
      arrow->constraints.push_back(constraint);
  }
  if (arrow->constraints.empty())
    return;
  remove(constraints);
  arrow->position = position;
  m_group->addChild(arrow->node);
  m_arrows.push_back(std::move(arrow));
  watchAll();
}

bool ForceArrowRenderer::remove(vyr::RigidBody* body) {
  for (auto i = m_arrows.begin(); body && i != m_arrows.end(); ++i) {
    if ((*i)->body == body) {
      m_group->removeChild((*i)->node);
      m_arrows.erase(i);
      return true;
    }
  }
  return false;
}

bool ForceArrowRenderer::remove(vyr::Constraint1DOF* constraint) {
  bool found = false;
  for (auto i = m_arrows.begin(); constraint && i != m_arrows.end();) {
    Constraint1DOFObserverVector& set = (*i)->constraints;
    const auto rest = std::remove_if(set.begin(), set.end(), [&](const auto& c) { return c == constraint; });
    const bool shrunk = rest != set.end();
    set.erase(rest, set.end());
    found = found || shrunk;
    if (shrunk && set.empty()) {
      m_group->removeChild((*i)->node);
      i = m_arrows.erase(i);
    } else {
      ++i;
    }
  }
  return found;
}

bool ForceArrowRenderer::remove(Constraint1DOFObserverVector& constraints) {
  for (auto i = m_arrows.begin(); i != m_arrows.end(); ++i) {
    if (!constraints.empty() && (*i)->constraints == constraints) {
      m_group->removeChild((*i)->node);
      m_arrows.erase(i);
      return true;
    }
  }
  return false;
}

void ForceArrowRenderer::setSmoothFactor(const double& factor) {
  set("setSmoothFactor", m_smoothFactor, factor, 1);
}

void ForceArrowRenderer::setConeLength(const double& length) {
  set("setConeLength", m_coneLength, length, std::numeric_limits<double>::max());
}

void ForceArrowRenderer::setArrowRadius(const double& radius) {
  set("setArrowRadius", m_arrowRadius, radius, std::numeric_limits<double>::max());
}

void ForceArrowRenderer::setScale(const double& scale) {
  set("setScale", m_scale, scale, std::numeric_limits<double>::max());
}

bool ForceArrowRenderer::set(const char* setter, double& member, double value, double limit) {
  if (!(value > 0 && value <= limit)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::ForceArrowRenderer::" << setter << ": " << value
                                  << " is not above 0 and at most " << limit;
    return false;
  }
  member = value;
  redraw();
  return true;
}

void ForceArrowRenderer::update(float, float) {
  watchAll();
  redraw();
}

void ForceArrowRenderer::watchAll() {
  for (const std::unique_ptr<Arrow>& arrow : m_arrows) {
    if (arrow->body)
      watch(arrow->body->getSimulation());
    for (const auto& constraint : arrow->constraints) {
      if (constraint)
        watch(constraint->getSimulation());
    }
  }
  vyrOSG::Group* root = OSGSceneRoot::get();
  if (root && m_group->getNumParents() == 0)
    root->addChild(m_group.get());
}

void ForceArrowRenderer::watch(vyrSDK::Simulation* simulation) {
  if (!simulation)
    return;
  for (const vyr::ref_ptr<Sampler>& sampler : m_samplers) {
    if (sampler->m_simulation == simulation)
      return;
  }
  vyr::ref_ptr<Sampler> sampler = new Sampler(this, simulation);
  m_samplers.push_back(sampler);
  simulation->add(sampler.get());
}

void ForceArrowRenderer::measureApplied(vyrSDK::Simulation* simulation) {
  for (const std::unique_ptr<Arrow>& arrow : m_arrows) {
    if (arrow->body && arrow->body->getSimulation() == simulation)
      arrow->applied = arrow->body->getForce();
  }
}

void ForceArrowRenderer::measure(vyrSDK::Simulation* simulation) {
  std::unordered_map<const vyr::RigidBody*, vyr::Vec3> contactForces;
  for (const vyrSDK::Contact& contact : simulation->getContacts()) {
    contactForces[contact.geometry1->getRigidBody()] += contact.getForce();
    contactForces[contact.geometry2->getRigidBody()] -= contact.getForce();
  }
  for (const std::unique_ptr<Arrow>& arrow : m_arrows) {
    vyr::Vec3 force;
    bool measured = false;
    if (arrow->body && arrow->body->getSimulation() == simulation) {
      force = arrow->applied;
      measured = true;
      const auto contacts = contactForces.find(arrow->body.get());
      if (contacts != contactForces.end())
        force += contacts->second;
    }
    for (const auto& constraint : arrow->constraints) {
      if (constraint && constraint->getSimulation() == simulation) {
        force += constraint->getForce();
        measured = true;
      }
    }
    if (measured)
      arrow->force.add(force, m_smoothFactor);
  }
  redraw();
}

void ForceArrowRenderer::redraw() {
  for (auto i = m_arrows.begin(); i != m_arrows.end();) {
    if ((*i)->isAlive()) {
      ++i;
    } else {
      m_group->removeChild((*i)->node);
      i = m_arrows.erase(i);
    }
  }
  constexpr double kShortest = 1e-6;
  for (const std::unique_ptr<Arrow>& arrow : m_arrows) {
    const osg::Vec3d force = toOsg(arrow->force.getAverage());
    const double length = force.length() * m_scale;
    if (!(length > kShortest) || !std::isfinite(length)) {
      arrow->node->setNodeMask(0);
      continue;
    }
    const double tip = std::min(m_coneLength, length);
    const double shaft = length - tip;
    arrow->shaft->setNodeMask(shaft > kShortest ? ~0u : 0u);
    arrow->shaft->setMatrix(osg::Matrixd::scale(m_arrowRadius, m_arrowRadius, std::max(shaft, kShortest)) *
                            osg::Matrixd::translate(0, 0, shaft / 2));
    arrow->tip->setMatrix(osg::Matrixd::scale(2 * m_arrowRadius, 2 * m_arrowRadius, tip) *
                          osg::Matrixd::translate(0, 0, shaft));
    arrow->node->setMatrix(osg::Matrixd::rotate(osg::Vec3d(0, 0, 1), force) *
                           osg::Matrixd::translate(toOsg(arrow->begin())));
    arrow->node->setNodeMask(~0u);
  }
}

} // namespace vyrOSG
