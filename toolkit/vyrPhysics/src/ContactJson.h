/// Contact points in a scene file: the engine's memory from step to step.
#pragma once

#include "SceneJson.h"

#include <vyrSDK/SceneValue.h>

#include <BulletCollision/NarrowPhaseCollision/btManifoldPoint.h>

namespace vyrSDK {

/// All numbers of a contact point that the next step depends on.
Json toJson(const btManifoldPoint& point);
btManifoldPoint toManifoldPoint(const SceneValue& value);

} // namespace vyrSDK
