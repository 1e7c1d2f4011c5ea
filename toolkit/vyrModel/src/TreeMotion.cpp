/// What moves a tree in a simulation.
#include "TreeMotion.h"

#include <cmath>

namespace vyrModel {

namespace {

const double kPi = 3.14159265358979323846;
const double kAirDensity = 1.2;
/// Source: Hoerner, Fluid-Dynamic Drag, chapter 3: circular cylinders below the critical speed.
const double kWoodDrag = 1.2;
/// Leaves fold in the wind. Source: Vogel, Drag and Reconfiguration of Broad Leaves in High Winds, J. Exp. Bot. 40,
/// 1989: coefficients of clusters from 0.1 to 0.4, on the area of the leaves.
const double kLeafDrag = 0.25;
/// Part of a spray's square that is leaf.
const double kLeafShare = 0.5;

} // namespace

TreeMotion::TreeMotion(Tree* tree)
    : m_tree(tree)
    , m_sails(tree->getBranches().size())
    , m_leafSails(tree->getNumLeafBodies(), 0.0) {
  for (std::size_t i = 0; i < m_sails.size(); ++i) {
    const TreeBranch& branch = tree->getBranches()[i];
    m_sails[i].wood = kWoodDrag * branch.length * (branch.radiusBegin + branch.radiusEnd);
  }
  for (const TreeLeaf& leaf : tree->getLeaves()) {
    double& area = leaf.body < 0 ? m_sails[leaf.branch].leaves : m_leafSails[static_cast<std::size_t>(leaf.body)];
    area += kLeafDrag * kLeafShare * leaf.size * leaf.size;
  }
}

TreeMotion::~TreeMotion() = default;

void TreeMotion::simulationChanged(vyrSDK::Simulation* simulation) {
  m_simulation = simulation;
}

void TreeMotion::pre(const vyr::TimeStamp& time) {
  if (!m_simulation) {
    return;
  }
  const double step = m_simulation->getTimeStep();
  for (std::size_t i = 0; i < m_sails.size(); ++i) {
    blowOn(i, time.seconds(), step);
  }
  for (std::size_t i = 0; i < m_leafSails.size(); ++i) {
    vyr::RigidBody& body = *m_tree->getLeafBodies()[i].body;
    const vyr::Vec3 flow = m_tree->getWindAt(body.getCenterOfMass(), time.seconds()) - body.getVelocity();
    const double perSpeed = 0.5 * kAirDensity * m_leafSails[i] * flow.length();
    body.addForce(flow * (perSpeed / (1 + 2 * perSpeed * step / body.getMass())));
  }
}

void TreeMotion::blowOn(std::size_t index, double time, double step) {
  const TreeBranch& branch = m_tree->getBranches()[index];
  vyr::RigidBody& body = *branch.body;
  const vyr::Vec3 axis = vyr::Vec3(0, 0, 1) * body.getRotation();
  const vyr::Vec3 place = body.getPosition() + axis * (0.5 * branch.length);
  const vyr::Vec3 flow = m_tree->getWindAt(place, time) - body.getVelocity();
  const double speed = flow.length();
  if (speed < 1e-9) {
    return;
  }
  const double sine = (axis ^ flow).length() / speed;
  const double area = m_sails[index].wood * sine + m_sails[index].leaves;
  // In a step, air stops a branch at most: the form of the force that stays stable for light ones.
  const double perSpeed = 0.5 * kAirDensity * area * speed;
  body.addForceAtPosition(flow * (perSpeed / (1 + 2 * perSpeed * step / body.getMass())), place);
}

double TreeMotion::stressOf(const TreeBranch& branch) {
  if (branch.broken) {
    return 0;
  }
  // The joint's torque is about the centre of mass; the moment at the joint leaves out what its force does there.
  const vyr::Vec3 arm = branch.joint->getFrame1()->getPosition() - branch.body->getCenterOfMass();
  const vyr::Vec3 moment = branch.joint->getTorque() - (arm ^ branch.joint->getForce());
  return 4 * moment.length() / (kPi * std::pow(branch.radiusBegin, 3));
}

void TreeMotion::post(const vyr::TimeStamp&) {
  for (std::size_t i = 0; i < m_sails.size(); ++i) {
    if (stressOf(m_tree->getBranches()[i]) > m_tree->getStrength()) {
      m_tree->breakBranch(i);
    }
  }
  ++m_tree->m_revision;
}

} // namespace vyrModel
