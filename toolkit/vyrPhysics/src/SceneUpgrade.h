/// Brings scene files of older versions to the present one.
#pragma once

#include "SceneJson.h"

namespace vyrSDK {

/// Changes what is older; anything else stays as it is, for the reader to judge. Throws what the parser throws for
/// values of a wrong kind.
void upgradeScene(Json& scene);

} // namespace vyrSDK
