// Looks in scene files.
#pragma once

#include "Look.h"

#include <vyrSDK/SceneRecord.h>
#include <vyrSDK/SceneValue.h>

#include <string>

namespace vyrOSG {

/// `folder`: files in it are named without their place. Empty: all are named in full.
void writeLook(const GeometryLook& look, const std::string& folder, vyrSDK::SceneRecord out);
void writeCompany(const CompanyLook& company, const std::string& folder, vyrSDK::SceneRecord out);

/// Mistakes are vyrSDK::SceneErrors.
GeometryLook readLook(const vyrSDK::SceneValue& value);
CompanyLook readCompany(const vyrSDK::SceneValue& value);

} // namespace vyrOSG
