// Lets the scene graph's objects retire from Lua before they go.
#pragma once

#include <memory>

namespace vyrLua {
class ObjectRetirer;
}

namespace vyrHost {

/// Puts a delete handler into the scene-graph library that tells the retirer of each object.
void installSceneDeleteHandler(const std::shared_ptr<vyrLua::ObjectRetirer>& retirer);

/// Takes the handler out again; objects are deleted directly from here on.
void removeSceneDeleteHandler();

} // namespace vyrHost
