// Turns the contacts of a simulation into pressure.
#include <vyrOSG/PressureFromContacts.h>

#include "ContactPatch.h"

#include <vyr/Notify.h>
#include <vyrCollide/Shape.h>
#include <vyrCollide/Trimesh.h>
#include <vyrSDK/Contact.h>

#include <algorithm>
#include <cmath>
#include <unordered_map>
#include <utility>

namespace vyrOSG {

namespace {

constexpr double kDefaultRangeFactor = 2e-5;
constexpr int kRimPoints = 24;
constexpr std::size_t kMostCorners = 5000;

/// Points of a geometry, in the world, that bound its flat sides; none for round and endless ones.
std::vector<vyr::Vec3> cornersOf(const vyrCollide::Geometry& geometry) {
  std::vector<vyr::Vec3> corners;
  const vyrCollide::Shape* shape = geometry.getShape();
  if (shape->getType() == vyrCollide::Shape::BOX) {
    const vyrCollide::Bounds box = shape->getBounds();
    for (int i = 0; i < 8; ++i)
      corners.emplace_back((i & 1) != 0 ? box.max.x() : box.min.x(), (i & 2) != 0 ? box.max.y() : box.min.y(),
                           (i & 4) != 0 ? box.max.z() : box.min.z());
  } else if (shape->getType() == vyrCollide::Shape::CYLINDER) {
    const vyrCollide::Bounds box = shape->getBounds();
    for (int i = 0; i < kRimPoints; ++i) {
      const double angle = 2 * 3.14159265358979 * i / kRimPoints;
      for (double z : {box.min.z(), box.max.z()})
        corners.emplace_back(box.max.x() * std::cos(angle), box.max.y() * std::sin(angle), z);
    }
  } else if (shape->getType() == vyrCollide::Shape::TRIMESH) {
    const auto* mesh = static_cast<const vyrCollide::Trimesh*>(shape);
    if (mesh->getNumVertices() <= kMostCorners)
      corners = mesh->getVertices();
  }
  const vyr::AffineMatrix4x4 toWorld = geometry.getTransform();
  for (vyr::Vec3& corner : corners)
    corner = corner * toWorld;
  return corners;
}

/// Adds the corners that a patch has besides its contact points, of which the solver makes four at most, often fewer.
/// What an endless side touches ends where the geometry itself does.
void boundPatch(ContactPatch& patch, const vyrCollide::Geometry& own, const vyrCollide::Geometry& other,
                const vyr::AffineMatrix4x4& toLocal) {
  const vyrCollide::Shape::Type type = other.getShape()->getType();
  const bool endless = type == vyrCollide::Shape::PLANE || type == vyrCollide::Shape::HEIGHT_FIELD;
  for (const vyr::Vec3& corner : cornersOf(endless ? own : other))
    patch.addCorner(corner * toLocal);
}

} // namespace

PressureFromContacts::PressureFromContacts(vyrSDK::Simulation* simulation, PressureAtlas* atlas, double rangeFactor,
                                           ForceType forceType)
    : PressureGenerator(simulation, atlas)
    , m_rangeFactor(kDefaultRangeFactor)
    , m_forceType(forceType) {
  setRangeFactor(rangeFactor);
}

PressureFromContacts::~PressureFromContacts() = default;

void PressureFromContacts::setRangeFactor(double rangeFactor) {
  if (rangeFactor >= 0 && std::isfinite(rangeFactor))
    m_rangeFactor = rangeFactor;
  else
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the range factor of pressures must be at least 0 m^2/N, not " << rangeFactor;
}

void PressureFromContacts::addFilter(vyrSDK::ExecuteFilter* filter) {
  if (filter)
    m_filters.emplace_back(filter);
}

double PressureFromContacts::forceOf(const vyrSDK::Contact& contact) const {
  switch (m_forceType) {
  case TANGENTIAL_FORCE:
    return contact.tangentialForce.length();
  case NORMAL_FORCE:
    return contact.normalForce;
  case TOTAL_FORCE:
    break;
  }
  return contact.getForce().length();
}

bool PressureFromContacts::passes(const vyrSDK::Contact& contact) const {
  return m_filters.empty() || std::any_of(m_filters.begin(), m_filters.end(), [&](const auto& filter) {
           return filter->match(contact.geometry1, contact.geometry2);
         });
}

void PressureFromContacts::generate() {
  generate(getSimulation());
}

void PressureFromContacts::generate(vyrSDK::Simulation* simulation) {
  PressureAtlas* atlas = getAtlas();
  if (!atlas || !atlas->isValid())
    return;
  atlas->refresh();
  atlas->clear();
  const vyrCollide::Geometry* geometry = atlas->getGeometry();
  if (!geometry || !simulation)
    return;
  const vyr::AffineMatrix4x4 toLocal = geometry->getTransform().inverse();
  // In the order of the first contacts, so that sums come out the same in every run.
  std::vector<std::pair<const vyrCollide::Geometry*, ContactPatch>> patches;
  std::unordered_map<const vyrCollide::Geometry*, std::vector<std::size_t>> patchesOf;
  for (const vyrSDK::Contact& contact : simulation->getContacts()) {
    const bool isFirst = contact.geometry1 == geometry;
    if (!isFirst && contact.geometry2 != geometry)
      continue;
    const vyrCollide::Geometry* other = isFirst ? contact.geometry2 : contact.geometry1;
    const double force = forceOf(contact);
    if (!(force > 0) || other->isSensor() || geometry->isSensor() || !passes(contact))
      continue;
    const vyr::Vec3 outward = toLocal.transform3x3(isFirst ? -contact.normal : contact.normal);
    std::vector<std::size_t>& known = patchesOf[other];
    const auto patch = std::find_if(known.begin(), known.end(),
                                    [&](std::size_t index) { return patches[index].second.takes(outward); });
    const std::size_t index = patch == known.end() ? patches.size() : *patch;
    if (index == patches.size()) {
      known.push_back(index);
      patches.emplace_back(other, ContactPatch(outward));
    }
    patches[index].second.add(contact.point * toLocal, force);
  }
  for (auto& [other, patch] : patches) {
    boundPatch(patch, *geometry, *other, toLocal);
    patch.press(*atlas, m_rangeFactor);
  }
}

} // namespace vyrOSG
