/// One small step of a wire's mass points: an implicit solve of all segments at once.
#include "WireChain.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vyrWire {

namespace {

/// Newton steps at most: the error falls with the square once it is small.
const int kMaxRounds = 16;

/// Where segments go slack or taut one after the other, this share of a segment must do after the last round: the next
/// small step goes on with it.
const double kEnough = 0.05;

/// The share of its length that may lack for a segment beside a taut one to count as straight.
const double kNearlyTaut = 1e-3;

/// A slack segment turns taut when it is too long by this many tolerances.
const double kHair = 10;

/// Weights of a segment's directions after, at and before the start of the small step. They are at rest in every step
/// for a sum of 1, stable for every step for a middle one of at most 1/2, and quicken nothing while the first is not
/// below the last. The surplus of the first is what fast waves lose in a small step: the root of 2/3 of them stays.
const double kAfter = 0.3;
const double kNow = 0.5;
const double kBefore = 0.2;

} // namespace

bool WireChain::solve(std::vector<vyr::Vec3>& places, double tolerance) {
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    places[i] = nodes[i].free;
  }
  for (Segment& segment : segments) {
    segment.taut = segment.released = false;
  }
  double error = 0;
  for (int round = 0; round < kMaxRounds; ++round) {
    error = improve(places, tolerance);
    if (!std::isfinite(error)) {
      return false;
    }
    if (error < tolerance) {
      return true;
    }
  }
  return error < kEnough * segments.front().length;
}

void WireChain::extrapolate(std::vector<vyr::Vec3>& places, double tolerance) {
  const std::vector<vyr::Vec3> start(places);
  bool pressed = false;
  improve(places, tolerance);
  for (const Segment& segment : segments) {
    pressed = pressed || segment.pull < 0;
  }
  if (pressed && !pressable) {
    improve(places, tolerance);
  }
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (!places[i].isFinite()) {
      places = start;
    }
  }
}

double WireChain::improve(std::vector<vyr::Vec3>& places, double tolerance) {
  assemble(places, tolerance);
  if (!eliminate()) {
    return std::numeric_limits<double>::infinity();
  }
  double error = 0;
  for (const Row& row : m_rows) {
    error = std::max(error, vyr::Vec3(row.right[0], row.right[1], row.right[2]).length());
  }
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const Column& change = m_rows[i].right;
    places[i] += vyr::Vec3(change[0], change[1], change[2]);
    if (i > 0) {
      segments[i - 1].pull += change[3];
    }
  }
  return error;
}

void WireChain::assemble(const std::vector<vyr::Vec3>& places, double tolerance) {
  m_rows.assign(nodes.size(), Row());
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    Row& row = m_rows[i];
    row = Row{};
    const vyr::Vec3 lag = nodes[i].mass * (nodes[i].free - places[i]);
    for (int a = 0; a < 3; ++a) {
      for (int b = 0; b < 3; ++b) {
        row.diagonal[a][b] = nodes[i].mass(a, b);
      }
      row.right[a] = lag[a];
    }
  }
  // The first node has no segment before it.
  m_rows.front().diagonal[3][3] = 1;
  chooseTaut(places, tolerance);
  for (std::size_t i = 0; i < segments.size(); ++i) {
    addSegment(i, places);
  }
  // Fixed nodes do not move, whatever pulls.
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    for (int a = 0; a < 3 && nodes[i].fixed; ++a) {
      m_rows[i].lower[a] = m_rows[i].upper[a] = m_rows[i].diagonal[a] = Column{};
      m_rows[i].diagonal[a][a] = 1;
      m_rows[i].right[a] = 0;
    }
  }
}

void WireChain::chooseTaut(const std::vector<vyr::Vec3>& places, double tolerance) {
  std::size_t run = 0;
  bool pulled = false;
  for (std::size_t i = 0; i < segments.size(); ++i) {
    Segment& segment = segments[i];
    const double excess = (places[i + 1] - places[i]).length() - segment.length - segment.give * segment.pull;
    const bool taut = pressable || segment.pull + lighterMass(i) * (excess - kHair * tolerance) > 0;
    segment.released = segment.released || (segment.taut && !taut);
    segment.taut = taut;
    // A straight run of segments turns taut as one: each alone would need a round.
    const bool straight = taut || excess > -kNearlyTaut * segment.length;
    pulled = straight && (pulled || taut);
    run = straight ? run + 1 : 0;
    if (pulled && (i + 1 == segments.size() || taut)) {
      for (std::size_t k = i + 1 - run; k <= i; ++k) {
        segments[k].taut = segments[k].taut || !segments[k].released;
      }
      run = 0;
    } else if (pulled && !segment.released) {
      segment.taut = true;
    }
  }
}

void WireChain::addSegment(std::size_t index, const std::vector<vyr::Vec3>& places) {
  Segment& segment = segments[index];
  vyr::Vec3 direction = places[index + 1] - places[index];
  const double length = direction.normalize();
  segment.along = direction * kAfter + segment.now * kNow + segment.before * kBefore;
  Row& from = m_rows[index];
  Row& to = m_rows[index + 1];
  const double excess = length - segment.length - segment.give * segment.pull;
  if (!segment.taut) {
    // Slack: no pull, whatever the length.
    to.diagonal[3][3] = 1;
    to.right[3] = -segment.pull;
    segment.along = direction;
    for (int a = 0; a < 3; ++a) {
      from.upper[a][3] = -direction[a];
      to.diagonal[a][3] = direction[a];
      from.right[a] += direction[a] * segment.pull;
      to.right[a] -= direction[a] * segment.pull;
    }
    return;
  }
  // What a turn of the segment changes; a pressed one would make the nodes' system indefinite and is left out.
  const double stiffness = kAfter * std::max(0.0, segment.pull) / std::max(length, 1e-3 * segment.length);
  for (int a = 0; a < 3; ++a) {
    for (int b = 0; b < 3; ++b) {
      const double turn = stiffness * ((a == b ? 1 : 0) - direction[a] * direction[b]);
      from.diagonal[a][b] += turn;
      from.upper[a][b] -= turn;
      to.diagonal[a][b] += turn;
      to.lower[a][b] -= turn;
    }
    from.upper[a][3] -= segment.along[a];
    from.right[a] += segment.along[a] * segment.pull;
    to.diagonal[a][3] += segment.along[a];
    to.right[a] -= segment.along[a] * segment.pull;
    to.lower[3][a] -= direction[a];
    to.diagonal[3][a] += direction[a];
  }
  to.diagonal[3][3] = -segment.give;
  to.right[3] = -excess;
}

double WireChain::lighterMass(std::size_t index) const {
  const double from = nodes[index].mass(0, 0);
  const double to = nodes[index + 1].mass(0, 0);
  return nodes[index].fixed ? to : nodes[index + 1].fixed ? from : std::min(from, to);
}

bool WireChain::eliminate() {
  // Thomas' elimination with blocks.
  for (std::size_t i = 0; i < m_rows.size(); ++i) {
    Row& row = m_rows[i];
    if (i > 0) {
      const Row& above = m_rows[i - 1];
      for (int a = 0; a < 4; ++a) {
        for (int k = 0; k < 4; ++k) {
          const double factor = row.lower[a][k];
          if (factor == 0) {
            continue;
          }
          for (int b = 0; b < 4; ++b) {
            row.diagonal[a][b] -= factor * above.upper[k][b];
          }
          row.right[a] -= factor * above.right[k];
        }
      }
    }
    if (!divide(row.diagonal, row.upper, row.right)) {
      return false;
    }
  }
  for (std::size_t i = m_rows.size() - 1; i-- > 0;) {
    for (int a = 0; a < 4; ++a) {
      for (int b = 0; b < 4; ++b) {
        m_rows[i].right[a] -= m_rows[i].upper[a][b] * m_rows[i + 1].right[b];
      }
    }
  }
  return true;
}

bool WireChain::divide(Matrix& by, Matrix& upper, Column& right) {
  // Gauss' elimination with row pivoting.
  for (int k = 0; k < 4; ++k) {
    int pivot = k;
    for (int a = k + 1; a < 4; ++a) {
      pivot = std::fabs(by[a][k]) > std::fabs(by[pivot][k]) ? a : pivot;
    }
    if (!(std::fabs(by[pivot][k]) > 0)) {
      return false;
    }
    std::swap(by[k], by[pivot]);
    std::swap(upper[k], upper[pivot]);
    std::swap(right[k], right[pivot]);
    for (int a = 0; a < 4; ++a) {
      const double factor = by[a][k] / by[k][k];
      if (a == k || factor == 0) {
        continue;
      }
      for (int b = k; b < 4; ++b) {
        by[a][b] -= factor * by[k][b];
      }
      for (int b = 0; b < 4; ++b) {
        upper[a][b] -= factor * upper[k][b];
      }
      right[a] -= factor * right[k];
    }
  }
  for (int k = 0; k < 4; ++k) {
    for (int b = 0; b < 4; ++b) {
      upper[k][b] /= by[k][k];
    }
    right[k] /= by[k][k];
  }
  return true;
}

} // namespace vyrWire
