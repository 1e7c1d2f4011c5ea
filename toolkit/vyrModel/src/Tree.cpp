/// A tree that sways in the wind, bends under loads and breaks.
#include <vyrModel/Tree.h>

#include <vyr/Frame.h>
#include <vyr/Material.h>
#include <vyr/Notify.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Geometry.h>

#include "TreeGrowth.h"
#include "TreeMotion.h"

#include <algorithm>
#include <cmath>

namespace vyrModel {

namespace {

const double kPi = 3.14159265358979323846;
/// Mass of a square metre of sprays in kg.
const double kLeafMass = 0.1;
/// The trunk's capsule keeps this far above the ground, in m, which it would press on for ever.
const double kFootGap = 0.02;

double massOf(const TreeBranch& branch, double density) {
  const double begin = branch.radiusBegin;
  const double end = branch.radiusEnd;
  return density * kPi / 3 * branch.length * (begin * begin + begin * end + end * end);
}

/// A capsule along the piece. Its caps reach into its neighbours, which it does not touch.
vyrCollide::Geometry* makeGeometry(const TreeBranch& branch, vyr::Material* material, vyr::AffineMatrix4x4& outLocal) {
  const double radius = 0.5 * (branch.radiusBegin + branch.radiusEnd);
  const double low = branch.parent < 0 ? std::min(radius + kFootGap, 0.5 * branch.length) : 0.0;
  outLocal = vyr::AffineMatrix4x4::translate(0, 0, 0.5 * (low + branch.length));
  auto* geometry = new vyrCollide::Geometry(new vyrCollide::Capsule(radius, branch.length - low));
  geometry->setMaterial(material);
  return geometry;
}

/// Twigs carry leaves around them and resist turning about their own axis more than bare sticks.
void fattenInertia(vyr::RigidBody& body) {
  const vyr::SPDMatrix3x3 inertia = body.getInertia();
  const double across = std::max(inertia(0, 0), inertia(1, 1));
  body.setInertia(vyr::SPDMatrix3x3(vyr::Vec3(across, across, std::max(inertia(2, 2), 0.1 * across))));
}

} // namespace

Tree::Tree() = default;

Tree::~Tree() = default;

void Tree::changed() {}

void Tree::shapeChanged() {
  ++m_revision;
  ++m_shapeRevision;
  changed();
}

bool Tree::grow(const TreeParameters& parameters, unsigned int seed) {
  if (getSimulation() != nullptr) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "a tree grows before it enters a simulation";
    return false;
  }
  if (!areUsable(parameters)) {
    return false;
  }
  m_parameters = parameters;
  GrownTree grown = growTree(parameters, seed);
  m_branches.clear();
  m_leaves = std::move(grown.leaves);

  vyr::ref_ptr<vyr::Material> wood(new vyr::Material("wood", parameters.density, 0.6, 0.1));
  std::vector<double> masses;
  for (const GrownBranch& piece : grown.branches) {
    masses.push_back(massOf(piece.branch, parameters.density));
  }
  for (const TreeLeaf& leaf : m_leaves) {
    masses[leaf.branch] += kLeafMass * leaf.size * leaf.size;
  }
  for (std::size_t i = 0; i < grown.branches.size(); ++i) {
    TreeBranch branch = grown.branches[i].branch;
    branch.body = new vyr::RigidBody("branch");
    vyr::AffineMatrix4x4 local;
    vyrCollide::Geometry* geometry = makeGeometry(branch, wood.get(), local);
    branch.body->add(geometry, local);
    branch.body->setMass(masses[i]);
    fattenInertia(*branch.body);
    branch.body->setTransform(
        vyr::AffineMatrix4x4(branchRotation(grown.branches[i].direction), grown.branches[i].base) * m_transform);
    vyr::RigidBody* parent = branch.parent < 0 ? nullptr : m_branches[branch.parent].body.get();
    const vyr::Vec3 foot = branch.body->getPosition();
    branch.joint = new vyr::Lock(vyr::Frame::create(branch.body.get(), foot), vyr::Frame::create(parent, foot));
    m_branches.push_back(branch);
  }
  shapeChanged();
  return true;
}

bool Tree::setTransform(const vyr::AffineMatrix4x4& transform) {
  if (getSimulation() != nullptr || !transform.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "a tree is placed before it enters a simulation, at a finite place";
    return false;
  }
  const vyr::AffineMatrix4x4 change = m_transform.inverse() * transform;
  for (TreeBranch& branch : m_branches) {
    branch.body->setTransform(branch.body->getTransform() * change);
    if (branch.parent < 0) {
      vyr::Frame& rooted = *branch.joint->getFrame2();
      rooted.setLocalTransform(rooted.getLocalTransform() * change);
    }
  }
  m_transform = transform;
  shapeChanged();
  return true;
}

/// Sets the locks' stiffness, and the torques with which they carry the tree's weight.
void Tree::tuneJoints(const vyr::Vec3& gravity) {
  const std::size_t count = m_branches.size();
  std::vector<double> masses(count, 0);
  std::vector<vyr::Vec3> moments(count); // sum of mass times place
  for (std::size_t i = count; i-- > 0;) {
    const TreeBranch& branch = m_branches[i];
    masses[i] += branch.body->getMass();
    moments[i] += branch.body->getCenterOfMass() * branch.body->getMass();
    if (branch.parent >= 0) {
      masses[branch.parent] += masses[i];
      moments[branch.parent] += moments[i];
    }
  }
  for (std::size_t i = 0; i < count; ++i) {
    const TreeBranch& branch = m_branches[i];
    const vyr::Vec3 foot = branch.body->getPosition();
    const double reach = (moments[i] / masses[i] - foot).length();
    const double section = kPi / 4 * std::pow(branch.radiusBegin, 4);
    const double stiffness = m_parameters.stiffness * section / branch.length;
    // All that the joint carries, as a rod with its centre of mass in its middle.
    const double inertia = 4.0 / 3.0 * masses[i] * reach * reach;
    branch.joint->setElasticity(stiffness, 2 * m_parameters.damping * std::sqrt(stiffness * inertia));
    const vyr::Vec3 torque = (gravity * masses[i]) ^ (moments[i] / masses[i] - foot);
    const vyr::AffineMatrix4x4 frame = branch.joint->getFrame2()->getTransform();
    branch.joint->setPreload(frame.inverse().transform3x3(torque));
  }
}

bool Tree::addTo(vyrSDK::Simulation* simulation) {
  if (simulation == nullptr || m_branches.empty() || getSimulation() != nullptr) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "a tree needs a simulation, must be grown, and is in one simulation at most";
    return false;
  }
  tuneJoints(simulation->getGravity());
  for (const TreeBranch& branch : m_branches) {
    simulation->add(branch.joint.get());
  }
  vyr::ref_ptr<TreeMotion> motion(new TreeMotion(this));
  m_motion = motion.get();
  simulation->add(static_cast<vyrSDK::StepEventListener*>(motion.get()));
  changed();
  return true;
}

bool Tree::remove() {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(getSimulation());
  if (!simulation) {
    return false;
  }
  // The listener may be the last that holds the tree.
  const vyr::ref_ptr<Tree> self(this);
  for (const TreeBranch& branch : m_branches) {
    simulation->remove(branch.joint.get());
    simulation->remove(branch.body.get());
  }
  simulation->remove(static_cast<vyrSDK::StepEventListener*>(m_motion.get()));
  m_motion = nullptr;
  changed();
  return true;
}

vyrSDK::Simulation* Tree::getSimulation() const {
  return m_motion ? m_motion->getSimulation() : nullptr;
}

const TreeBranch* Tree::getBranch(std::size_t index) const {
  return index < m_branches.size() ? &m_branches[index] : nullptr;
}

double Tree::getMass() const {
  double mass = 0;
  for (const TreeBranch& branch : m_branches) {
    mass += branch.body->getMass();
  }
  return mass;
}

bool Tree::setWind(const vyr::Vec3& velocity) {
  if (!velocity.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the wind on a tree must be finite, not " << velocity;
    return false;
  }
  m_wind = velocity;
  return true;
}

bool Tree::setGustiness(double share) {
  if (!(share >= 0 && share <= 1)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the gustiness of the wind must be from 0 to 1, not " << share;
    return false;
  }
  m_gustiness = share;
  return true;
}

vyr::Vec3 Tree::getWindAt(const vyr::Vec3& place, double time) const {
  const double speed = m_wind.length();
  if (speed <= 0) {
    return {};
  }
  // Distance behind the front that passed the origin at the start, and across it, in m.
  const vyr::Vec3 ahead = m_wind / speed;
  const double along = speed * time - place * ahead;
  const double across = place * (vyr::Vec3(0, 0, 1) ^ ahead);
  // Waves without a common period, so that gusts do not repeat.
  const double gust = 0.5 * std::sin(0.21 * along + 0.13 * across) +
                      0.3 * std::sin(0.47 * along - 0.31 * across + 1.3) +
                      0.2 * std::sin(1.13 * along + 0.7 * across + 2.1);
  return m_wind * (1 + m_gustiness * gust);
}

bool Tree::setStrength(double stress) {
  if (!(stress > 0)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the strength of a tree must be above 0 Pa, not " << stress;
    return false;
  }
  m_parameters.strength = stress;
  return true;
}

double Tree::getStress(std::size_t index) const {
  return index < m_branches.size() ? TreeMotion::stressOf(m_branches[index]) : 0.0;
}

bool Tree::breakBranch(std::size_t index) {
  if (index >= m_branches.size() || m_branches[index].broken) {
    return false;
  }
  TreeBranch& branch = m_branches[index];
  branch.broken = true;
  // The joint stays in the simulation without effect: the two ends, which overlap, must not push each other away.
  branch.joint->setEnable(false);
  shapeChanged();
  return true;
}

std::size_t Tree::getNumBroken() const {
  return static_cast<std::size_t>(
      std::count_if(m_branches.begin(), m_branches.end(), [](const TreeBranch& branch) { return branch.broken; }));
}

} // namespace vyrModel
