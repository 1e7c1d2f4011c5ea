// The one way in which a binding raises a Lua error.
#include <vyrLua/Error.h>

#include "ErrorText.h"

extern "C" {
#include <lua.h>
}

#include <cstdlib>

namespace vyrLua {

namespace {
ErrorHintProvider s_hintProvider = nullptr;
}

void error(lua_State* state, const char* text, tolua_Error* record) {
  pushErrorText(state, text != nullptr ? text : "", record, s_hintProvider);
  lua_error(state);
  std::abort(); // lua_error does not return; its declaration does not say so.
}

ErrorHintProvider setErrorHintProvider(ErrorHintProvider provider) {
  const ErrorHintProvider previous = s_hintProvider;
  s_hintProvider = provider;
  return previous;
}

} // namespace vyrLua
