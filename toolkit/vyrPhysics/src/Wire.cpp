/// Wires and ropes: chains of mass points that hang, swing and pull on bodies.
#include <vyrWire/Wire.h>

#include <vyr/Notify.h>

#include <algorithm>
#include <cmath>

namespace vyrWire {

namespace {

const std::size_t kMaxSegments = 16384;
const int kMaxSubSteps = 200;

/// Newton steps of a projection: the error falls with the square, three leave nothing that matters.
const int kProjections = 3;

/// The most further rounds, and the share of the wire's length that a segment's error may be: finer ones drown in the
/// rounding of long chains.
const int kRescues = 20;
const double kTolerance = 1e-7;

/// The smallest cosine of a segment's turn within a small step for which its old direction still serves.
const double kGentleTurn = 0.9;

/// The share of a taut wire's surplus length that a step leaves.
const double kKeptStretch = 0.8;

/// Pivots smaller than this share of the undisturbed one mean that nothing is left to move.
const double kSingular = 1e-6;

bool isPositive(double value) {
  return std::isfinite(value) && value > 0;
}

/// The inverse of a positive definite matrix, by cofactors.
vyr::SPDMatrix3x3 inverse(const vyr::SPDMatrix3x3& m) {
  const double xx = m(1, 1) * m(2, 2) - m(1, 2) * m(1, 2);
  const double xy = m(0, 2) * m(1, 2) - m(0, 1) * m(2, 2);
  const double xz = m(0, 1) * m(1, 2) - m(0, 2) * m(1, 1);
  const double yy = m(0, 0) * m(2, 2) - m(0, 2) * m(0, 2);
  const double yz = m(0, 1) * m(0, 2) - m(0, 0) * m(1, 2);
  const double zz = m(0, 0) * m(1, 1) - m(0, 1) * m(0, 1);
  return vyr::SPDMatrix3x3(xx, xy, xz, yy, yz, zz) * (1 / (m(0, 0) * xx + m(0, 1) * xy + m(0, 2) * xz));
}

/// Takes over a parameter that must be a number of at least 0.
bool assignIfValid(double& target, double value, const char* what) {
  if (!std::isfinite(value) || value < 0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Wire: " << what << " must be a number of at least 0, not " << value;
    return false;
  }
  target = value;
  return true;
}

} // namespace

Wire::Wire(double length, std::size_t segments, double massPerLength, double radius)
    : m_length(length)
    , m_radius(radius)
    , m_massPerLength(massPerLength) {
  m_valid = isPositive(length) && isPositive(massPerLength) && isPositive(radius) && segments >= 1 &&
            segments <= kMaxSegments;
  if (!m_valid) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Wire: length " << length << " m, " << segments << " segments, " << massPerLength
                                  << " kg/m, radius " << radius << " m: each must be above 0, and segments at most "
                                  << kMaxSegments;
    return;
  }
  m_segmentLength = length / static_cast<double>(segments);
  const double mass = massPerLength * m_segmentLength;
  for (std::size_t i = 0; i <= segments; ++i) {
    m_places.emplace_back(static_cast<double>(i) * m_segmentLength, 0, 0);
    m_inverseMasses.push_back(i == 0 || i == segments ? 2 / mass : 1 / mass);
  }
  m_velocities.resize(segments + 1);
  m_lambdas.resize(segments);
}

Wire::~Wire() = default;

void Wire::attach(End& end, vyr::RigidBody* body, const vyr::Vec3& point) {
  if (!point.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Wire: the end was not fastened, its place (" << point << ") is not finite";
    return;
  }
  end.fastened = true;
  end.onBody = body != nullptr;
  end.body = body;
  end.point = point;
  layOut();
}

void Wire::attachBegin(vyr::RigidBody* body, const vyr::Vec3& point) {
  attach(m_begin, body, point);
}

void Wire::attachEnd(vyr::RigidBody* body, const vyr::Vec3& point) {
  attach(m_end, body, point);
}

void Wire::detachBegin() {
  m_begin = End();
}

void Wire::detachEnd() {
  m_end = End();
}

vyr::Vec3 Wire::placeOf(const End& end) const {
  return end.onBody ? end.point * end.body->getTransform() : end.point;
}

void Wire::layOut() {
  if (!m_valid || (!m_begin.fastened && !m_end.fastened)) {
    return;
  }
  const std::size_t last = m_places.size() - 1;
  if (!m_begin.fastened || !m_end.fastened) {
    // One end: the wire hangs straight down from it.
    const vyr::Vec3 top = placeOf(m_begin.fastened ? m_begin : m_end);
    for (std::size_t i = 0; i <= last; ++i) {
      const auto below = static_cast<double>(m_begin.fastened ? i : last - i);
      m_places[i] = top - vyr::Vec3(0, 0, below * m_segmentLength);
    }
  } else {
    layOutBetween(placeOf(m_begin), placeOf(m_end));
  }
  std::fill(m_velocities.begin(), m_velocities.end(), vyr::Vec3());
}

void Wire::layOutBetween(const vyr::Vec3& from, const vyr::Vec3& to) {
  const std::size_t last = m_places.size() - 1;
  const auto parabola = [&](double sag, double t) {
    return from + (to - from) * t - vyr::Vec3(0, 0, 4 * sag * t * (1 - t));
  };
  const int parts = 64 * static_cast<int>(last);
  const auto lengthFor = [&](double sag) {
    double sum = 0;
    for (int i = 0; i < parts; ++i) {
      sum += (parabola(sag, (i + 1.0) / parts) - parabola(sag, static_cast<double>(i) / parts)).length();
    }
    return sum;
  };
  // The sag that makes the parabola as long as the wire; none when the wire is taut.
  double low = 0;
  double high = m_length;
  for (int i = 0; i < 40 && lengthFor(0) < m_length; ++i) {
    const double middle = 0.5 * (low + high);
    (lengthFor(middle) < m_length ? low : high) = middle;
  }
  // Nodes at equal distances along it.
  const double total = lengthFor(low);
  double walked = 0;
  std::size_t node = 0;
  for (int i = 0; i < parts && node < last; ++i) {
    while (node < last && walked >= total * static_cast<double>(node) / static_cast<double>(last)) {
      m_places[node++] = parabola(low, static_cast<double>(i) / parts);
    }
    walked += (parabola(low, (i + 1.0) / parts) - parabola(low, static_cast<double>(i) / parts)).length();
  }
  m_places[last] = to;
}

bool Wire::setNode(std::size_t index, const vyr::Vec3& place) {
  const bool fastened = (index == 0 && m_begin.fastened) || (index + 1 == m_places.size() && m_end.fastened);
  if (index >= m_places.size() || fastened || !place.isFinite()) {
    return false;
  }
  m_places[index] = place;
  return true;
}

double Wire::getTension(std::size_t segment) const {
  if (segment >= m_lambdas.size() || !m_simulation) {
    return 0;
  }
  return m_lambdas[segment] / m_simulation->getTimeStep();
}

bool Wire::setStretchStiffness(double newtons) {
  return assignIfValid(m_stretchStiffness, newtons, "the stretch stiffness");
}

bool Wire::setBendStiffness(double newtonSquareMetres) {
  return assignIfValid(m_bendStiffness, newtonSquareMetres, "the bending stiffness");
}

bool Wire::setDamping(double perSecond) {
  return assignIfValid(m_damping, perSecond, "the damping");
}

bool Wire::setNumSubSteps(int count) {
  if (count < 1 || count > kMaxSubSteps) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "Wire: the number of small steps must be 1 to " << kMaxSubSteps << ", not "
                                  << count;
    return false;
  }
  m_subSteps = count;
  return true;
}

double Wire::getEnergy() const {
  const vyr::Vec3 gravity = m_simulation ? m_simulation->getGravity() : vyr::Vec3();
  double energy = 0;
  for (std::size_t i = 0; i < m_places.size(); ++i) {
    const bool end = i == 0 || i + 1 == m_places.size();
    const double mass = m_massPerLength * m_segmentLength * (end ? 0.5 : 1);
    energy += mass * (0.5 * m_velocities[i].length2() - gravity * m_places[i]);
  }
  return energy;
}

void Wire::simulationChanged(vyrSDK::Simulation* simulation) {
  m_simulation = simulation;
}

vyr::Vec3 Wire::End::answer(const vyr::Vec3& direction) const {
  // 1/m d + (I^-1 (r x d)) x r with the lever r: what a force does at the point where it acts.
  const vyr::Vec3 lever = rotation * arm;
  const vyr::Vec3 turn = rotation * (inverseInertia * (rotation.conj() * (lever ^ direction)));
  return direction * inverseMass + (turn ^ lever);
}

void Wire::End::advance(double h) {
  const vyr::Vec3 force = impulse / h;
  const vyr::Vec3 torque = (rotation * arm) ^ force;
  linear += force;
  angular += torque;
  velocity += force * inverseMass;
  angularVelocity += rotation * (inverseInertia * (rotation.conj() * torque));
  place += velocity * h;
  rotation = rotation * vyr::Quat(angularVelocity.length() * h, angularVelocity);
  rotation.normalize();
  impulse = vyr::Vec3();
}

void Wire::beginStep(End& end, std::size_t node) {
  if (end.onBody && !end.body) {
    end = End();
  }
  end.inverseMass = 0;
  end.linear = end.angular = end.impulse = vyr::Vec3();
  m_inverseMasses[node] = end.fastened ? 0 : 2 / (m_massPerLength * m_segmentLength);
  if (!end.fastened) {
    return;
  }
  m_places[node] = placeOf(end);
  m_velocities[node] = end.onBody ? end.body->getVelocityAtPoint(m_places[node]) : vyr::Vec3();
  if (!end.onBody || end.body->getMotionControl() != vyr::RigidBody::DYNAMICS) {
    return;
  }
  const vyr::RigidBody& body = *end.body;
  end.inverseMass = 1 / body.getMass();
  end.inverseInertia = inverse(body.getInertia());
  end.gravity = body.getEnableGravity() ? m_simulation->getGravity() : vyr::Vec3();
  end.place = body.getCenterOfMass();
  end.rotation = body.getRotation();
  end.arm = end.rotation.conj() * (m_places[node] - end.place);
  end.velocity = body.getVelocity();
  end.angularVelocity = body.getAngularVelocity();
}

void Wire::endStep(End& end, const End& before, double dt) {
  if (end.inverseMass == 0) {
    return;
  }
  end.body->addForce(end.linear / dt);
  end.body->addTorque(end.angular / dt);
  // The body's own step goes all its way with the new velocity, the copy went through the step little by little.
  end.missedWay = end.place - (before.place + end.velocity * dt);
  const vyr::Quat turned = before.rotation * vyr::Quat(end.angularVelocity.length() * dt, end.angularVelocity);
  end.missedTurn = turned.inverse() * end.rotation;
}

void Wire::pre(const vyr::TimeStamp&) {
  if (!m_valid || !m_simulation) {
    return;
  }
  beginStep(m_begin, 0);
  beginStep(m_end, m_places.size() - 1);
  absorbJumps();
  const End begin = m_begin;
  const End end = m_end;
  std::fill(m_lambdas.begin(), m_lambdas.end(), 0);
  const double dt = m_simulation->getTimeStep();
  for (int i = 0; i < m_subSteps; ++i) {
    subStep(dt / m_subSteps);
  }
  endStep(m_begin, begin, dt);
  endStep(m_end, end, dt);
}

void Wire::post(const vyr::TimeStamp&) {
  for (End* end : {&m_begin, &m_end}) {
    if (end->inverseMass > 0 && end->body) {
      const vyr::Quat rotation = end->body->getRotation() * end->missedTurn;
      // The frame's origin is where it must be for the centre of mass to be at its place.
      const vyr::Vec3 place = end->body->getCenterOfMass() + end->missedWay;
      const vyr::Vec3 inner =
          end->body->getRotation().conj() * (end->body->getPosition() - end->body->getCenterOfMass());
      end->body->setTransform(vyr::AffineMatrix4x4(rotation, place + rotation * inner));
      end->inverseMass = 0;
    }
  }
}

void Wire::absorbJumps() {
  // An end that was put elsewhere, or a node that was moved, is a jump and no motion: it must not become velocity. The
  // ends stay where they are.
  m_restLength = m_segmentLength;
  if (m_stretchStiffness > 0) {
    return;
  }
  const double masses[2] = {m_begin.inverseMass, m_end.inverseMass};
  m_begin.inverseMass = m_end.inverseMass = 0;
  std::vector<vyr::Vec3> along;
  std::vector<double> total(m_lambdas.size());
  for (int round = 0; round < kRescues && largestError(m_places, 0, total) > kTolerance; ++round) {
    directions(m_places, along);
    correctLengths(m_places, along, 0, total);
    std::fill(total.begin(), total.end(), 0);
  }
  m_begin.inverseMass = masses[0];
  m_end.inverseMass = masses[1];
  m_begin.impulse = m_end.impulse = vyr::Vec3();
  // What a taut wire is too long by is taken back over several steps.
  double length = 0;
  for (std::size_t i = 0; i < m_lambdas.size(); ++i) {
    length += (m_places[i + 1] - m_places[i]).length();
  }
  m_restLength += std::max(0.0, length - m_length) * kKeptStretch / static_cast<double>(m_lambdas.size());
}

void Wire::subStep(double h) {
  const vyr::Vec3 gravity = m_simulation->getGravity();
  const double kept = std::exp(-m_damping * h);
  addBending(h);
  for (std::size_t i = 0; i < m_places.size(); ++i) {
    if (m_inverseMasses[i] > 0) {
      m_velocities[i] += gravity * h;
      m_velocities[i] *= kept;
    }
  }
  for (End* end : {&m_begin, &m_end}) {
    if (end->inverseMass > 0) {
      end->velocity += end->gravity * h;
      m_velocities[end == &m_begin ? 0 : m_places.size() - 1] = end->endVelocity();
    }
  }
  project(h);
  for (End* end : {&m_begin, &m_end}) {
    if (end->inverseMass > 0) {
      const std::size_t node = end == &m_begin ? 0 : m_places.size() - 1;
      end->advance(h);
      m_places[node] = end->endPlace();
      m_velocities[node] = end->endVelocity();
    }
  }
}

void Wire::addBending(double h) {
  if (m_bendStiffness <= 0) {
    return;
  }
  // Each inner node resists the second difference of its neighbourhood; E I / l^3 is its stiffness. The stencil's
  // largest eigenvalue is 16, so that 16 k h^2 / m below 4 keeps the explicit step stable; half of that is taken.
  const double nodeMass = m_massPerLength * m_segmentLength;
  const double wanted = m_bendStiffness / (m_segmentLength * m_segmentLength * m_segmentLength);
  const double stiffness = std::min(wanted, 0.125 * nodeMass / (h * h));
  for (std::size_t i = 1; i + 1 < m_places.size(); ++i) {
    const vyr::Vec3 bend = m_places[i - 1] - m_places[i] * 2.0 + m_places[i + 1];
    const vyr::Vec3 impulse = bend * (stiffness * h);
    m_velocities[i - 1] -= impulse * m_inverseMasses[i - 1];
    m_velocities[i] += impulse * (2 * m_inverseMasses[i]);
    m_velocities[i + 1] -= impulse * m_inverseMasses[i + 1];
  }
}

void Wire::project(double h) {
  std::vector<vyr::Vec3> moved(m_places.size());
  for (std::size_t i = 0; i < moved.size(); ++i) {
    moved[i] = m_places[i] + m_velocities[i] * h;
  }
  const std::vector<vyr::Vec3> free(moved);
  std::vector<vyr::Vec3> along;
  std::vector<vyr::Vec3> ahead;
  directions(m_places, along);
  directions(moved, ahead);
  std::vector<double> total(m_lambdas.size());
  const double give = m_stretchStiffness > 0 ? m_segmentLength / (m_stretchStiffness * h * h) : 0;
  bool gentle = true;
  for (std::size_t i = 0; i < along.size(); ++i) {
    gentle = gentle && along[i] * ahead[i] > kGentleTurn;
  }
  for (int round = 0; round < kProjections && gentle; ++round) {
    correctLengths(moved, along, give, total);
  }
  // Where a wire whips, the old directions no longer help. The new ones do; they lose some energy.
  if (!gentle || !(largestError(moved, give, total) < kTolerance)) {
    moved = free;
    std::fill(total.begin(), total.end(), 0);
    m_begin.impulse = m_end.impulse = vyr::Vec3();
    for (int round = 0; round < kRescues && !(largestError(moved, give, total) < kTolerance); ++round) {
      directions(moved, along);
      correctLengths(moved, along, give, total);
    }
  }
  for (std::size_t i = 0; i < m_lambdas.size(); ++i) {
    m_lambdas[i] += total[i] / h;
  }
  for (std::size_t i = 0; i < moved.size(); ++i) {
    m_velocities[i] = (moved[i] - m_places[i]) / h;
    m_places[i] = moved[i];
  }
}

vyr::Vec3 Wire::answer(std::size_t node, const vyr::Vec3& direction) const {
  if (node == 0 && m_begin.inverseMass > 0) {
    return m_begin.answer(direction);
  }
  if (node + 1 == m_places.size() && m_end.inverseMass > 0) {
    return m_end.answer(direction);
  }
  return direction * m_inverseMasses[node];
}

void Wire::directions(const std::vector<vyr::Vec3>& places, std::vector<vyr::Vec3>& outDirections) {
  outDirections.resize(places.size() - 1);
  for (std::size_t i = 0; i < outDirections.size(); ++i) {
    outDirections[i] = (places[i + 1] - places[i]).normalized();
  }
}

double Wire::largestError(const std::vector<vyr::Vec3>& places, double give, const std::vector<double>& total) const {
  double largest = 0;
  for (std::size_t i = 0; i < total.size(); ++i) {
    const double error = (places[i + 1] - places[i]).length() - m_restLength - give * total[i];
    largest = std::max(largest, std::fabs(error) / m_length);
  }
  return largest;
}

void Wire::correctLengths(std::vector<vyr::Vec3>& places, const std::vector<vyr::Vec3>& along, double give,
                          std::vector<double>& total) {
  const std::size_t segments = m_lambdas.size();
  std::vector<double> upper(segments);
  std::vector<double> right(segments);
  // Thomas' elimination. Row i: how the length of segment i answers to impulses (times h) along the directions.
  for (std::size_t i = 0; i < segments; ++i) {
    vyr::Vec3 direction = places[i + 1] - places[i];
    right[i] = direction.normalize() - m_restLength - give * total[i];
    const double own = direction * (answer(i, along[i]) + answer(i + 1, along[i]));
    double diagonal = own + give;
    upper[i] = i + 1 < segments ? -(direction * answer(i + 1, along[i + 1])) : 0;
    if (i > 0) {
      const double lower = -(direction * answer(i, along[i - 1]));
      diagonal -= lower * upper[i - 1];
      right[i] -= lower * right[i - 1];
    }
    // A segment between two fixed places, or one that turned square to its direction, cannot be mended.
    const bool solvable = diagonal > kSingular * std::fabs(own) && diagonal > 0;
    upper[i] = solvable ? upper[i] / diagonal : 0;
    right[i] = solvable ? right[i] / diagonal : 0;
  }
  for (std::size_t i = segments - 1; i-- > 0;) {
    right[i] -= upper[i] * right[i + 1];
  }
  for (std::size_t i = 0; i < segments; ++i) {
    const vyr::Vec3 impulse = along[i] * right[i];
    total[i] += right[i];
    places[i] += answer(i, impulse);
    places[i + 1] -= answer(i + 1, impulse);
  }
  m_begin.impulse += along.front() * right.front();
  m_end.impulse -= along.back() * right.back();
}

} // namespace vyrWire
