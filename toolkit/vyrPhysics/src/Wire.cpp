/// Wires and ropes: chains of mass points that hang, swing and pull on bodies.
#include <vyrWire/Wire.h>

#include "WireChain.h"

#include <vyr/Notify.h>

#include <algorithm>
#include <cmath>

namespace vyrWire {

namespace {

const std::size_t kMaxSegments = 16384;
const int kMaxSubSteps = 200;

/// The most rounds that bring jumped segments back to their lengths, and the share of the wire's length
/// that a segment's error may be: finer ones drown in the rounding of long chains.
const int kRescues = 20;
const double kTolerance = 1e-7;

/// The share of the wire's length to which a small step finds its nodes: what is left is noise of the tension.
const double kPrecision = 1e-9;

/// The smallest cosine of a segment's turn between two small steps; what turned further was moved, and its older
/// direction says nothing.
const double kGentleTurn = 0.9;

/// The share of the wire's length by which a segment may be too long at the start of a step without having jumped.
const double kSmallError = 0.002;

/// The share of such an error that a step takes back. It is motion, so that quick steps of it would pull on the load.
const double kTakenBack = 0.05;

/// Pivots smaller than this share of the undisturbed one mean that nothing is left to move.
const double kSingular = 1e-6;

bool isPositive(double value) {
  return std::isfinite(value) && value > 0;
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
    , m_massPerLength(massPerLength)
    , m_chain(std::make_unique<WireChain>()) {
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
  m_before.resize(segments);
  m_startLengths.assign(segments, m_segmentLength);
  m_pulls.resize(segments);
  m_chain->nodes.resize(segments + 1);
  m_chain->segments.resize(segments);
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
  directions(m_places, m_before);
  std::fill(m_pulls.begin(), m_pulls.end(), 0);
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
  const double share = lengthFor(low) / static_cast<double>(last);
  double walked = 0;
  std::size_t node = 0;
  for (int i = 0; i < parts && node < last; ++i) {
    const vyr::Vec3 here = parabola(low, static_cast<double>(i) / parts);
    const vyr::Vec3 way = parabola(low, (i + 1.0) / parts) - here;
    const double length = way.length();
    for (; node < last && share * static_cast<double>(node) <= walked + length; ++node) {
      m_places[node] = here + way * (length > 0 ? (share * static_cast<double>(node) - walked) / length : 0);
    }
    walked += length;
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

void Wire::pre(const vyr::TimeStamp&) {
  if (!m_valid || !m_simulation) {
    return;
  }
  beginStep(m_begin, 0);
  beginStep(m_end, m_places.size() - 1);
  absorbJumps();
  std::fill(m_lambdas.begin(), m_lambdas.end(), 0);
  const double dt = m_simulation->getTimeStep();
  for (int i = 0; i < m_subSteps; ++i) {
    const double takenBack = kTakenBack * (i + 1) / m_subSteps;
    for (std::size_t k = 0; k < m_lambdas.size(); ++k) {
      m_chain->segments[k].length = m_startLengths[k] + (m_segmentLength - m_startLengths[k]) * takenBack;
    }
    subStep(dt / m_subSteps);
  }
  endStep(m_begin, dt);
  endStep(m_end, dt);
}

void Wire::post(const vyr::TimeStamp&) {
  for (End* end : {&m_begin, &m_end}) {
    if (end->inverseMass > 0 && end->body) {
      finishStep(*end, m_simulation->getTimeStep());
    }
    end->inverseMass = 0;
  }
}

void Wire::absorbJumps() {
  // Bodies that went otherwise than their copies leave the end segments a little too long or too short. Those begin the
  // step with the length that they have, and it comes back little by little.
  bool small = true;
  for (std::size_t i = 0; i < m_lambdas.size(); ++i) {
    m_startLengths[i] = (m_places[i + 1] - m_places[i]).length();
    if (isSlack(i, m_startLengths[i])) {
      m_startLengths[i] = m_segmentLength;
    }
    small = small && m_startLengths[i] > 0.5 * m_segmentLength &&
            m_startLengths[i] - m_segmentLength < kSmallError * m_length;
  }
  if (m_stretchStiffness > 0) {
    std::fill(m_startLengths.begin(), m_startLengths.end(), m_segmentLength);
    return;
  }
  if (small) {
    return;
  }
  // An end that was put elsewhere, or a node that was moved, is a jump and no motion: it must not become velocity. The
  // ends stay where they are.
  std::fill(m_pulls.begin(), m_pulls.end(), 0);
  for (int round = 0; round < kRescues && !(largestError() < kTolerance); ++round) {
    correctLengths();
  }
  for (std::size_t i = 0; i < m_lambdas.size(); ++i) {
    m_startLengths[i] = (m_places[i + 1] - m_places[i]).length();
    if (isSlack(i, m_startLengths[i])) {
      m_startLengths[i] = m_segmentLength;
    }
  }
}

bool Wire::isSlack(std::size_t segment, double length) const {
  return m_bendStiffness <= 0 && m_pulls[segment] <= 0 && length < m_segmentLength;
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
      end->velocity += end->acceleration * h;
      end->angularVelocity += end->turning * h;
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
  const double give = m_stretchStiffness > 0 ? m_segmentLength / (m_stretchStiffness * h * h) : 0;
  std::vector<vyr::Vec3> now;
  directions(m_places, now);
  for (std::size_t i = 0; i < m_places.size(); ++i) {
    WireChain::Node& node = m_chain->nodes[i];
    const End* end = i == 0 ? &m_begin : i + 1 == m_places.size() ? &m_end : nullptr;
    const bool onBody = end && end->inverseMass > 0;
    node.free = onBody ? end->freePlace(h) : m_places[i] + m_velocities[i] * h;
    node.fixed = !onBody && m_inverseMasses[i] == 0;
    node.mass = onBody ? massAt(*end) : vyr::SPDMatrix3x3() * (node.fixed ? 1 : 1 / m_inverseMasses[i]);
  }
  for (std::size_t i = 0; i < now.size(); ++i) {
    WireChain::Segment& segment = m_chain->segments[i];
    segment.now = now[i];
    segment.before = now[i] * m_before[i] > kGentleTurn ? m_before[i] : now[i];
    segment.give = give;
    segment.pull = m_pulls[i];
  }
  m_chain->pressable = m_bendStiffness > 0;
  std::vector<vyr::Vec3> moved(m_places.size());
  const bool whips = !m_chain->solve(moved, kPrecision * m_length);
  if (whips) {
    moved = m_places;
    for (std::size_t i = 0; i < m_pulls.size(); ++i) {
      m_chain->segments[i].pull = m_pulls[i];
    }
    m_chain->extrapolate(moved, kPrecision * m_length);
  }
  for (std::size_t i = 0; i < m_pulls.size(); ++i) {
    m_pulls[i] = m_chain->segments[i].pull;
    if (whips && m_stretchStiffness <= 0) {
      // What the wire's turning left too long is no motion either.
      m_startLengths[i] = std::max(m_segmentLength, (moved[i + 1] - moved[i]).length());
    }
  }
  m_begin.impulse = m_chain->segments.front().along * m_pulls.front();
  m_end.impulse = m_chain->segments.back().along * -m_pulls.back();
  m_before.swap(now);
  for (std::size_t i = 0; i < m_lambdas.size(); ++i) {
    m_lambdas[i] += m_pulls[i] / h;
  }
  for (std::size_t i = 0; i < moved.size(); ++i) {
    m_velocities[i] = (moved[i] - m_places[i]) / h;
    m_places[i] = moved[i];
  }
}

void Wire::directions(const std::vector<vyr::Vec3>& places, std::vector<vyr::Vec3>& outDirections) {
  outDirections.resize(places.size() - 1);
  for (std::size_t i = 0; i < outDirections.size(); ++i) {
    outDirections[i] = (places[i + 1] - places[i]).normalized();
  }
}

double Wire::largestError() const {
  double largest = 0;
  for (std::size_t i = 0; i < m_pulls.size(); ++i) {
    const double length = (m_places[i + 1] - m_places[i]).length();
    const double error = isSlack(i, length) ? 0 : length - m_segmentLength;
    largest = std::max(largest, std::fabs(error) / m_length);
  }
  return largest;
}

void Wire::correctLengths() {
  const std::size_t segments = m_lambdas.size();
  std::vector<vyr::Vec3> along;
  directions(m_places, along);
  std::vector<double> upper(segments);
  std::vector<double> right(segments);
  // Thomas' elimination. Row i: how the length of segment i answers to pulls along the directions.
  for (std::size_t i = 0; i < segments; ++i) {
    const double length = (m_places[i + 1] - m_places[i]).length();
    right[i] = length - m_segmentLength;
    const double own = m_inverseMasses[i] + m_inverseMasses[i + 1];
    double diagonal = own;
    upper[i] = i + 1 < segments ? -(along[i] * along[i + 1]) * m_inverseMasses[i + 1] : 0;
    if (i > 0) {
      const double lower = -(along[i] * along[i - 1]) * m_inverseMasses[i];
      diagonal -= lower * upper[i - 1];
      right[i] -= lower * right[i - 1];
    }
    // A slack segment stays so; one between two fixed places cannot be mended.
    const bool solvable = !isSlack(i, length) && diagonal > kSingular * own;
    upper[i] = solvable ? upper[i] / diagonal : 0;
    right[i] = solvable ? right[i] / diagonal : 0;
  }
  for (std::size_t i = segments - 1; i-- > 0;) {
    right[i] -= upper[i] * right[i + 1];
  }
  for (std::size_t i = 0; i < segments; ++i) {
    m_places[i] += along[i] * (right[i] * m_inverseMasses[i]);
    m_places[i + 1] -= along[i] * (right[i] * m_inverseMasses[i + 1]);
  }
}

} // namespace vyrWire
