/// Listeners of the simulation made from functions of a script.
#pragma once

#include <vyrSDK/GuiEventListener.h>
#include <vyrSDK/StepEventListener.h>

#include <lua.hpp>
#include <tolua++.h>

namespace vyrScript {

/// Makes a listener from a table with the optional functions pre, post and last. Ownership: *returns new*.
/// Failures: an entry that is no function is left out, with one error message.
vyrSDK::StepEventListener* stepListener(lua_State* L, lua_Object functions);

/// Makes a listener from a table with the optional functions keyboard, mouse, mouseMotion and update.
/// Ownership and failures as above.
vyrSDK::GuiEventListener* guiListener(lua_State* L, lua_Object functions);

} // namespace vyrScript
