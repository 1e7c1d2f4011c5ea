/// How contacts press on the samples of a height field.
#include "GroundPressure.h"

#include <vyr/Vec2.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace vyrModel {

namespace {

/// A gap in m below which an underside counts as touching: contact points alone are few and come and go.
const double kTouchGap = 0.02;

/// The contacts of one other geometry, in grid units: sample (column, row) lies at that point.
struct Patch {
  const vyrCollide::Geometry* other = nullptr;
  std::vector<vyr::Vec2> points;
  double force = 0;
};

/// A height field with its place in the world.
struct Ground {
  const vyrCollide::HeightField& field;
  vyr::AffineMatrix4x4 toWorld;
  vyr::AffineMatrix4x4 toGround;
  double dx;
  double dy;

  vyr::Vec2 toGrid(const vyr::Vec3& world) const {
    const vyr::Vec3 local = world * toGround;
    return {(local.x() + 0.5 * field.getSizeX()) / dx, (local.y() + 0.5 * field.getSizeY()) / dy};
  }
};

/// The samples whose cells lie under the world box of a geometry, cut to the grid.
void rectangleUnder(const Ground& ground, const vyrCollide::Geometry& other, vyr::Vec2& outLow, vyr::Vec2& outHigh) {
  const vyrCollide::Bounds bounds = other.getWorldBounds();
  outLow.set(1e300, 1e300);
  outHigh.set(-1e300, -1e300);
  for (int corner = 0; corner < 8; ++corner) {
    const vyr::Vec2 point = ground.toGrid(vyr::Vec3((corner & 1) != 0 ? bounds.max.x() : bounds.min.x(),
                                                    (corner & 2) != 0 ? bounds.max.y() : bounds.min.y(),
                                                    (corner & 4) != 0 ? bounds.max.z() : bounds.min.z()));
    outLow.set(std::min(outLow.x(), point.x()), std::min(outLow.y(), point.y()));
    outHigh.set(std::max(outHigh.x(), point.x()), std::max(outHigh.y(), point.y()));
  }
  outLow.set(std::max(0.0, std::ceil(outLow.x() - 0.5)), std::max(0.0, std::ceil(outLow.y() - 0.5)));
  outHigh.set(std::min(static_cast<double>(ground.field.getNumColumns() - 1), outHigh.x() + 0.5),
              std::min(static_cast<double>(ground.field.getNumRows() - 1), outHigh.y() + 0.5));
}

/// Whether the underside of `other` touches a quarter of a sample's cell: a ray from below its middle meets the
/// underside no higher than a gap. `x`, `y`: -1 or 1, which quarter.
bool touches(const Ground& ground, const vyrCollide::Geometry& other, std::size_t column, std::size_t row, int x,
             int y) {
  const double reach = ground.dx + ground.dy;
  const vyr::Vec3 sample = ground.field.getVertex(column, row);
  const vyr::Vec3 from = (sample + vyr::Vec3(0.25 * x * ground.dx, 0.25 * y * ground.dy, -reach)) * ground.toWorld;
  double distance = 0;
  return other.rayTest(from, ground.toWorld.transform3x3(vyr::Vec3(0, 0, 1)), reach + kTouchGap, distance);
}

/// Adds the other corners of the square of the grid that lies from a sample towards (`x`, `y`), at the edge the sample
/// itself.
void addSquare(const Ground& ground, std::size_t column, std::size_t row, int x, int y,
               std::map<std::size_t, double>& outShares) {
  const auto next = [](std::size_t index, int step, std::size_t count) {
    return step < 0 ? std::max<std::size_t>(index, 1) - 1 : std::min(index + 1, count - 1);
  };
  const std::size_t columns = ground.field.getNumColumns();
  const std::size_t otherColumn = next(column, x, columns);
  const std::size_t otherRow = next(row, y, ground.field.getNumRows());
  outShares.emplace(otherRow * columns + column, 0);
  outShares.emplace(row * columns + otherColumn, 0);
  outShares.emplace(otherRow * columns + otherColumn, 0);
}

/// The samples that carry a patch, with the shares of their cells that do. The four corners of a square of the grid
/// carry what touches the square: those about the rim would hold a foot up if they did not give way with the others.
std::map<std::size_t, double> samplesUnder(const Ground& ground, const Patch& patch) {
  const std::size_t columns = ground.field.getNumColumns();
  std::map<std::size_t, double> shares;
  for (const vyr::Vec2& point : patch.points) {
    const double column = std::round(point.x());
    const double row = std::round(point.y());
    if (column >= 0 && row >= 0 && column < static_cast<double>(columns) &&
        row < static_cast<double>(ground.field.getNumRows())) {
      // What is smaller than a quarter of a cell presses on a quarter.
      shares[static_cast<std::size_t>(row) * columns + static_cast<std::size_t>(column)] = 0.25;
    }
  }
  vyr::Vec2 low;
  vyr::Vec2 high;
  rectangleUnder(ground, *patch.other, low, high);
  if (high.x() < low.x() || high.y() < low.y())
    return shares;
  const auto lastColumn = static_cast<std::size_t>(high.x());
  const auto lastRow = static_cast<std::size_t>(high.y());
  for (auto row = static_cast<std::size_t>(low.y()); row <= lastRow; ++row) {
    for (auto column = static_cast<std::size_t>(low.x()); column <= lastColumn; ++column) {
      double share = 0;
      for (const int x : {-1, 1}) {
        for (const int y : {-1, 1}) {
          if (touches(ground, *patch.other, column, row, x, y)) {
            share += 0.25;
            addSquare(ground, column, row, x, y, shares);
          }
        }
      }
      if (share > 0) {
        shares[row * columns + column] = share;
      }
    }
  }
  return shares;
}

} // namespace

std::vector<LoadedSample> groundPressure(const vyrSDK::Simulation& simulation, const vyrCollide::Geometry& ground,
                                         const vyrCollide::HeightField& field) {
  const vyr::AffineMatrix4x4 toWorld = ground.getTransform();
  const Ground place{field, toWorld, toWorld.inverse(),
                     field.getSizeX() / static_cast<double>(field.getNumColumns() - 1),
                     field.getSizeY() / static_cast<double>(field.getNumRows() - 1)};

  // By first contact, not by address: the order must not depend on where objects lie in memory.
  std::vector<Patch> patches;
  std::map<const vyrCollide::Geometry*, std::size_t> patchOf;
  for (const vyrSDK::Contact& contact : simulation.getContacts()) {
    const bool first = contact.geometry1 == &ground;
    if ((!first && contact.geometry2 != &ground) || contact.normalForce <= 0) {
      continue;
    }
    const vyrCollide::Geometry* other = first ? contact.geometry2 : contact.geometry1;
    if (other->isSensor()) {
      continue;
    }
    const std::size_t index = patchOf.emplace(other, patches.size()).first->second;
    if (index == patches.size()) {
      patches.emplace_back();
      patches.back().other = other;
    }
    patches[index].points.push_back(place.toGrid(contact.point));
    patches[index].force += contact.normalForce;
  }

  std::map<std::size_t, LoadedSample> samples;
  for (const Patch& patch : patches) {
    const std::map<std::size_t, double> shares = samplesUnder(place, patch);
    double area = 0;
    for (const auto& [sample, share] : shares) {
      area += share * place.dx * place.dy;
    }
    for (const auto& [sample, share] : shares) {
      LoadedSample& load = samples[sample];
      load.index = sample;
      load.pressure += patch.force / area;
      load.meanPressure += share * patch.force / area;
    }
  }
  std::vector<LoadedSample> loads;
  loads.reserve(samples.size());
  for (const auto& [index, load] : samples) {
    loads.push_back(load);
  }
  return loads;
}

} // namespace vyrModel
