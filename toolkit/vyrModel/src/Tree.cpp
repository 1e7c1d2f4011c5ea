/// A tree that sways in the wind, bends under loads and breaks.
#include <vyrModel/Tree.h>

#include <vyr/Frame.h>
#include <vyr/Material.h>
#include <vyr/Notify.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Sphere.h>

#include "TreeGrowth.h"
#include "TreeMotion.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

namespace vyrModel {

namespace {

const double kPi = 3.14159265358979323846;
/// Mass of a square metre of sprays in kg.
const double kLeafMass = 0.1;
/// How leaves swing on their twig, in Hz and as a share of the critical damping.
const double kLeafFrequency = 2.0;
const double kLeafDamping = 0.2;
/// The trunk's capsule keeps this far above the ground, in m, which it would press on for ever.
const double kFootGap = 0.02;

double massOf(const TreeBranch& branch, double density) {
  const double begin = branch.radiusBegin;
  const double end = branch.radiusEnd;
  return density * kPi / 3 * branch.length * (begin * begin + begin * end + end * end);
}

double massOf(const TreeLeaf& leaf) {
  return kLeafMass * leaf.size * leaf.size;
}

/// Numbers the leaves' bodies, in the order of the pieces: the leaves of a piece follow each other.
void chooseLeafBodies(std::vector<TreeLeaf>& leaves, std::size_t numBranches, int count) {
  std::vector<std::size_t> numLeaves(numBranches, 0);
  for (const TreeLeaf& leaf : leaves) {
    ++numLeaves[leaf.branch];
  }
  std::vector<std::size_t> byLeaves(numBranches);
  std::iota(byLeaves.begin(), byLeaves.end(), 0);
  std::stable_sort(byLeaves.begin(), byLeaves.end(),
                   [&](std::size_t a, std::size_t b) { return numLeaves[a] > numLeaves[b]; });
  byLeaves.resize(std::min(numBranches, static_cast<std::size_t>(count)));
  const std::set<std::size_t> chosen(byLeaves.begin(), byLeaves.end());
  int next = -1;
  for (std::size_t i = 0; i < leaves.size(); ++i) {
    if (chosen.count(leaves[i].branch) != 0) {
      next += i == 0 || leaves[i].branch != leaves[i - 1].branch ? 1 : 0;
      leaves[i].body = next;
    }
  }
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
  chooseLeafBodies(m_leaves, grown.branches.size(), parameters.leafBodies);
  std::vector<double> masses;
  for (const GrownBranch& piece : grown.branches) {
    masses.push_back(massOf(piece.branch, parameters.density));
  }
  for (const TreeLeaf& leaf : m_leaves) {
    masses[leaf.branch] += leaf.body < 0 ? massOf(leaf) : 0;
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
  growLeafBodies();
  shapeChanged();
  return true;
}

/// Gives the leaves that have an index of a body that body: a ball about their middle, held where the first one grows.
void Tree::growLeafBodies() {
  m_leafBodies.clear();
  for (std::size_t i = 0; i < m_leaves.size();) {
    const TreeLeaf& first = m_leaves[i];
    double mass = 0;
    double foot = first.position.z();
    double radius = 0;
    vyr::Vec3 moment;
    const std::size_t begin = i;
    for (; i < m_leaves.size() && m_leaves[i].branch == first.branch; ++i) {
      const TreeLeaf& leaf = m_leaves[i];
      mass += massOf(leaf);
      moment += (leaf.position + leaf.direction * (0.5 * leaf.size)) * massOf(leaf);
      foot = std::min(foot, leaf.position.z());
    }
    if (first.body < 0) {
      continue;
    }
    const vyr::Vec3 middle = moment / mass;
    for (std::size_t k = begin; k < i; ++k) {
      radius = std::max(radius, (m_leaves[k].position + m_leaves[k].direction * m_leaves[k].size - middle).length());
    }
    TreeLeafBody leaves;
    leaves.branch = first.branch;
    leaves.body = new vyr::RigidBody("leaves");
    // Leaves give way to what comes: they touch nothing.
    auto* ball = new vyrCollide::Geometry(new vyrCollide::Sphere(radius));
    ball->setEnableCollisions(false);
    leaves.body->add(ball, vyr::AffineMatrix4x4::translate(middle));
    leaves.body->setMass(mass);
    vyr::RigidBody* piece = m_branches[leaves.branch].body.get();
    leaves.body->setTransform(piece->getTransform());
    const vyr::Vec3 held = vyr::Vec3(0, 0, foot) * piece->getTransform();
    leaves.joint = new vyr::Lock(vyr::Frame::create(leaves.body.get(), held), vyr::Frame::create(piece, held));
    m_leafBodies.push_back(leaves);
  }
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
  for (TreeLeafBody& leaves : m_leafBodies) {
    leaves.body->setTransform(leaves.body->getTransform() * change);
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
  for (const TreeLeafBody& leaves : m_leafBodies) {
    const double mass = leaves.body->getMass();
    const vyr::Vec3 middle = leaves.body->getCenterOfMass();
    masses[leaves.branch] += mass;
    moments[leaves.branch] += middle * mass;
    const vyr::AffineMatrix4x4 frame = leaves.joint->getFrame2()->getTransform();
    const vyr::Vec3 arm = middle - frame.getTranslate();
    const vyr::SPDMatrix3x3 inertia = leaves.body->getInertia();
    const double turning = std::max({inertia(0, 0), inertia(1, 1), inertia(2, 2)}) + mass * arm.length2();
    const double rate = 2 * kPi * kLeafFrequency;
    leaves.joint->setElasticity(turning * rate * rate, 2 * kLeafDamping * turning * rate);
    leaves.joint->setPreload(frame.inverse().transform3x3((gravity * mass) ^ arm));
  }
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
  for (const TreeLeafBody& leaves : m_leafBodies) {
    simulation->add(leaves.joint.get());
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
  for (const TreeLeafBody& leaves : m_leafBodies) {
    simulation->remove(leaves.joint.get());
    simulation->remove(leaves.body.get());
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
  for (const TreeLeafBody& leaves : m_leafBodies) {
    mass += leaves.body->getMass();
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
