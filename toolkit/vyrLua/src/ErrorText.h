// Words the message of a failed call, on the Lua stack.
#pragma once

#include <vyrLua/Error.h>

namespace vyrLua {

/// Pushes the whole message of a failed call as one string.
void pushErrorText(lua_State* state, const char* text, const tolua_Error* record, ErrorHintProvider hints);

} // namespace vyrLua
