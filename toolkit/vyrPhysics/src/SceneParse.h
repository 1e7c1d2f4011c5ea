/// Makes single parts from the values of a scene file; mistakes are SceneErrors.
#pragma once

#include "SceneState.h"

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Constraint.h>
#include <vyr/Frame.h>
#include <vyr/Material.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Shape.h>
#include <vyrSDK/SceneType.h>
#include <vyrSDK/SceneValue.h>

#include <string>
#include <vector>

namespace vyrSDK {

vyr::ref_ptr<vyr::Material> makeMaterial(const SceneValue& value);
vyr::ref_ptr<vyrCollide::Shape> makeShape(const SceneValue& value);

/// Where an entry stands: its member "transform", or "position" and "rotation", each of which may be missing.
vyr::AffineMatrix4x4 readPlace(const SceneValue& value);

/// A frame from an object with "body" and a place. Without a place it lies where `first` does now. Nullable: `first`,
/// the frame is its body's then.
vyr::ref_ptr<vyr::Frame> makeFrame(const SceneValue& value, const SceneParts& parts, const vyr::Frame* first);

/// Settings and state of a constraint that is made, or that is given the state in the file.
ConstraintState readConstraintState(vyr::Constraint& constraint, const SceneValue& value);

/// The part of a list to which a place leads, or, where names are allowed, a name. `what` names the kind in the error.
template <class Part>
Part* partAt(const std::vector<vyr::ref_ptr<Part>>& parts, const SceneValue& value, const char* what) {
  if (value.isText()) {
    const std::string name = value.text();
    for (const auto& part : parts) {
      if (part->getName() == name) {
        return part.get();
      }
    }
    value.fail("there is no " + std::string(what) + " \"" + name + "\"");
  }
  const long long index = value.integer(0, 1LL << 53);
  if (index >= static_cast<long long>(parts.size())) {
    value.fail("there is no " + std::string(what) + " " + std::to_string(index) + ", the file has " +
               std::to_string(parts.size()));
  }
  return parts[static_cast<std::size_t>(index)].get();
}

} // namespace vyrSDK
