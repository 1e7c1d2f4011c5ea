/// Decides where the limbs and leaves of a tree are.
#include "TreeGrowth.h"

#include "BranchGrid.h"

#include <vyr/Notify.h>
#include <vyr/Quat.h>
#include <vyr/Random.h>

#include <algorithm>
#include <cmath>

namespace vyrModel {

namespace {

const double kPi = 3.14159265358979323846;
/// Between limbs that follow each other round their parent: no two stand over each other.
/// Source: Prusinkiewicz, Lindenmayer, The Algorithmic Beauty of Plants, section 4.1.
const double kGoldenAngle = kPi * (3.0 - std::sqrt(5.0));
const double kThinnest = 0.004;
/// Limbs keep this far apart, in m, or they would rub against each other in a calm.
const double kClearance = 0.02;
/// A limb's radius over its length: what slender branches have.
const double kSlenderness = 0.022;
const double kTaper = 0.35;

vyr::Vec3 anyAcross(const vyr::Vec3& v) {
  const vyr::Vec3 helper = std::abs(v.z()) < 0.9 ? vyr::Vec3(0, 0, 1) : vyr::Vec3(1, 0, 0);
  return (helper ^ v).normalized();
}

/// Edge of the cells in which pieces look for their neighbours, as a share of the tree's height.
const double kCellShare = 0.025;

/// Least distance between two straight pieces.
/// Source: Ericson, Real-Time Collision Detection, section 5.1.9.
double distanceBetween(const vyr::Vec3& p, const vyr::Vec3& d1, const vyr::Vec3& q, const vyr::Vec3& d2) {
  const vyr::Vec3 r = p - q;
  const double a = d1 * d1;
  const double e = d2 * d2;
  const double f = d2 * r;
  const double c = d1 * r;
  const double b = d1 * d2;
  const double denominator = a * e - b * b;
  double s = denominator > 1e-12 ? std::clamp((b * f - c * e) / denominator, 0.0, 1.0) : 0.0;
  double t = (b * s + f) / e;
  if (t < 0) {
    t = 0;
    s = std::clamp(-c / a, 0.0, 1.0);
  } else if (t > 1) {
    t = 1;
    s = std::clamp((b - c) / a, 0.0, 1.0);
  }
  return (p + d1 * s - q - d2 * t).length();
}

/// One limb to be: where it starts and what it wants to be.
struct Limb {
  int parent = -1;
  int level = 0;
  double offset = 0;
  vyr::Vec3 base;
  vyr::Vec3 direction;
  double length = 0;
  double radius = 0;
};

class Growth {
public:
  Growth(const TreeParameters& parameters, unsigned int seed)
      : m_p(parameters)
      , m_random(seed)
      , m_grid(parameters.height * kCellShare) {}

  GrownTree run() {
    Limb trunk;
    trunk.direction = vyr::Vec3(m_random.uniform(-0.04, 0.04), m_random.uniform(-0.04, 0.04), 1).normalized();
    trunk.length = m_p.height;
    trunk.radius = m_p.trunkRadius;
    growLimb(trunk, 0);
    growLeaves();
    return std::move(m_tree);
  }

private:
  /// Adds a limb and what grows out of it; false when it finds no room.
  bool growLimb(const Limb& limb, double azimuth) {
    const int count = std::max(1, m_p.trunkSegments >> limb.level);
    const std::size_t first = m_tree.branches.size();
    Limb piece = limb;
    const double step = limb.length / count;
    for (int i = 0; i < count; ++i) {
      GrownBranch grown;
      grown.base = piece.base;
      grown.direction = piece.direction;
      grown.branch.parent = piece.parent;
      grown.branch.level = limb.level;
      grown.branch.offset = piece.offset;
      grown.branch.length = step;
      grown.branch.radiusBegin = radiusAt(limb, double(i) / count);
      grown.branch.radiusEnd = radiusAt(limb, double(i + 1) / count);
      grown.branch.continues = i > 0;
      if (!hasRoom(grown)) {
        m_tree.branches.resize(first);
        return false;
      }
      m_grid.add(m_tree.branches.size(), grown.base, grown.base + grown.direction * step, thickest(grown));
      m_tree.branches.push_back(grown);
      piece.parent = static_cast<int>(m_tree.branches.size()) - 1;
      piece.offset = step;
      piece.base = grown.base + grown.direction * step;
      piece.direction = turned(piece.direction, limb.level);
    }
    if (limb.level + 1 < m_p.levels) {
      growChildren(limb, first, count, azimuth);
    }
    return true;
  }

  void growChildren(const Limb& limb, std::size_t first, int count, double azimuth) {
    const int wanted = limb.level == 0 ? m_p.boughs : m_p.branches;
    const double lowest = limb.level == 0 ? 0.28 : 0.25;
    for (int i = 0; i < wanted; ++i) {
      const double share = lowest + (0.97 - lowest) * (i + 0.5) / wanted;
      const int segment = std::min(count - 1, static_cast<int>(share * count));
      // A copy: growing moves the list.
      const GrownBranch parent = m_tree.branches[first + segment];
      const double along = std::clamp(share * count - segment, 0.2, 0.85);
      Limb child;
      child.parent = static_cast<int>(first) + segment;
      child.level = limb.level + 1;
      child.offset = along * parent.branch.length;
      child.base = parent.base + parent.direction * child.offset;
      const double crown = (share - lowest) / (1 - lowest);
      child.length =
          m_p.lengthRatio * limb.length * (1 - (limb.level == 0 ? 0.62 : 0.4) * crown) * m_random.uniform(0.85, 1.1);
      const double thickness = radiusAt(limb, (segment + along) / count);
      child.radius = std::max(kThinnest, std::min(0.65 * thickness, kSlenderness * child.length));
      for (int attempt = 0; attempt < 6; ++attempt) {
        azimuth += attempt == 0 ? kGoldenAngle : 0.9;
        const double spread = m_p.spread * (1.15 - 0.4 * crown) * m_random.uniform(0.85, 1.15);
        child.direction = awayFrom(parent.direction, azimuth, spread);
        if (growLimb(child, m_random.uniform(0, 2 * kPi))) {
          break;
        }
      }
    }
  }

  double radiusAt(const Limb& limb, double share) const {
    return std::max(kThinnest, limb.radius * (1 - (1 - kTaper) * share));
  }

  /// Limbs wind a little and turn towards the light.
  vyr::Vec3 turned(const vyr::Vec3& direction, int level) {
    const double wobble = level == 0 ? 0.06 : 0.16;
    const double light = level == 0 ? 0.05 : 0.14;
    const vyr::Vec3 random(m_random.uniform(-1, 1), m_random.uniform(-1, 1), m_random.uniform(-1, 1));
    return (direction + random * wobble + vyr::Vec3(0, 0, light)).normalized();
  }

  static vyr::Vec3 awayFrom(const vyr::Vec3& axis, double azimuth, double angle) {
    const vyr::Vec3 x = anyAcross(axis);
    const vyr::Vec3 y = axis ^ x;
    return (axis * std::cos(angle) + (x * std::cos(azimuth) + y * std::sin(azimuth)) * std::sin(angle)).normalized();
  }

  bool hasRoom(const GrownBranch& grown) const {
    const vyr::Vec3 end = grown.base + grown.direction * grown.branch.length;
    if (std::min(grown.base.z(), end.z()) < 0 || (grown.branch.level > 0 && end.z() < 0.1 * m_p.height)) {
      return false;
    }
    const auto touches = [&](std::size_t i) {
      if (i >= m_tree.branches.size() || static_cast<int>(i) == grown.branch.parent) {
        return false;
      }
      const GrownBranch& other = m_tree.branches[i];
      return distanceBetween(grown.base, grown.direction * grown.branch.length, other.base,
                             other.direction * other.branch.length) < thickest(grown) + thickest(other) + kClearance;
    };
    return !m_grid.any(grown.base, end, thickest(grown) + kClearance, touches);
  }

  static double thickest(const GrownBranch& grown) {
    return std::max(grown.branch.radiusBegin, grown.branch.radiusEnd);
  }

  void growLeaves() {
    std::vector<bool> carries(m_tree.branches.size(), false);
    for (std::size_t i = 0; i < m_tree.branches.size(); ++i) {
      const TreeBranch& branch = m_tree.branches[i].branch;
      carries[i] = branch.level == m_p.levels - 1 || (branch.level > 0 && branch.continues);
    }
    // The trunk ends in leaves, too.
    for (std::size_t i = 0; i < m_tree.branches.size() && m_tree.branches[i].branch.level == 0; ++i) {
      const bool last = i + 1 == m_tree.branches.size() || m_tree.branches[i + 1].branch.level != 0;
      carries[i] = carries[i] || last;
    }
    for (std::size_t i = 0; i < m_tree.branches.size(); ++i) {
      if (carries[i]) {
        growLeavesOn(i);
      }
    }
  }

  void growLeavesOn(std::size_t index) {
    const GrownBranch& grown = m_tree.branches[index];
    const double begin = grown.branch.continues ? 0.0 : 0.25;
    const int count = static_cast<int>(std::lround(m_p.leavesPerMeter * grown.branch.length * (1 - begin)));
    const vyr::Vec3 upwards = vyr::Vec3(0, 0, 1) * branchRotation(grown.direction).inverse();
    double azimuth = m_random.uniform(0, 2 * kPi);
    for (int i = 0; i < count; ++i) {
      const double share = begin + (1 - begin) * (i + m_random.uniform()) / count;
      azimuth += kGoldenAngle;
      TreeLeaf leaf;
      leaf.branch = index;
      leaf.position = vyr::Vec3(0, 0, share * grown.branch.length);
      leaf.size = m_p.leafSize * m_random.uniform(0.7, 1.2);
      leaf.direction = awayFrom(vyr::Vec3(0, 0, 1), azimuth, m_random.uniform(0.5, 1.4));
      // Leaves turn their upper side to the light.
      const vyr::Vec3 light = upwards + anyAcross(leaf.direction) * m_random.uniform(-0.7, 0.7);
      const vyr::Vec3 normal = light - leaf.direction * (light * leaf.direction);
      leaf.normal = normal.length() > 1e-6 ? normal.normalized() : anyAcross(leaf.direction);
      m_tree.leaves.push_back(leaf);
    }
  }

  const TreeParameters& m_p;
  vyr::Random m_random;
  GrownTree m_tree;
  BranchGrid m_grid;
};

bool isWithin(double value, double low, double high, const char* what) {
  if (value >= low && value <= high) {
    return true;
  }
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << what << " of a tree must be from " << low << " to " << high << ", not " << value;
  return false;
}

} // namespace

bool areUsable(const TreeParameters& p) {
  return isWithin(p.height, 0.2, 100, "height") && isWithin(p.trunkRadius, 0.005, 0.2 * p.height, "trunk radius") &&
         isWithin(p.levels, 1, 4, "number of levels") && isWithin(p.trunkSegments, 1, 16, "number of trunk segments") &&
         isWithin(p.boughs, 0, 64, "number of boughs") && isWithin(p.branches, 0, 16, "number of branches") &&
         isWithin(p.spread, 0, kPi, "spread") && isWithin(p.lengthRatio, 0.05, 1, "length ratio") &&
         isWithin(p.leavesPerMeter, 0, 500, "number of leaves a metre") && isWithin(p.leafSize, 0.01, 5, "leaf size") &&
         isWithin(p.leafBodies, 0, 10000, "number of leaf bodies") && isWithin(p.density, 1, 1e5, "density") &&
         isWithin(p.stiffness, 1e5, 1e12, "stiffness") && isWithin(p.strength, 1, HUGE_VAL, "strength") &&
         isWithin(p.damping, 0, 1, "damping");
}

GrownTree growTree(const TreeParameters& parameters, unsigned int seed) {
  return Growth(parameters, seed).run();
}

vyr::Quat branchRotation(const vyr::Vec3& direction) {
  return vyr::Quat(vyr::Vec3(0, 0, 1), direction);
}

} // namespace vyrModel
