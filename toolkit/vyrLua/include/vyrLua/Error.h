// The one way in which a binding raises a Lua error.
#pragma once

#include <vyrLua/export.h>

#include <string>

extern "C" {
struct lua_State;
struct tolua_Error;
}

namespace vyrLua {

/// What a failed call looked like, for a provider of hints.
struct ErrorReport {
  /// The interpreter that the call came from; the call's arguments stand at 1..argumentCount. *borrows*
  lua_State* state;
  /// The text as the wrapper gave it, with its "#f" or "#v".
  const char* text;
  /// The failed test. Nullable: texts that report no test have none.
  const tolua_Error* record;
  int argumentCount;
};

/// Returns lines to append to the error's text, each indented and without a final line end, or "".
using ErrorHintProvider = std::string (*)(const ErrorReport&);

/// Raises a Lua error and does not return.
///
/// A text that begins with "#f" tells of an argument, one with "#v" of an assigned value: the two characters are
/// dropped and the record's argument number, provided type and expected type are appended, in the words of the binding
/// runtime. The script's file and line come first, then the text, then what was passed, then the hints of the provider.
///
/// lua_error may jump: the caller holds no local with a destructor when it calls this.
/// @param record the failed test. Nullable: the text then stands alone.
[[noreturn]] VYRLUA_EXPORT void error(lua_State* state, const char* text, tolua_Error* record);

/// Sets who explains failed calls; null (the default) leaves the explanation out.
/// @return the provider that was set before. Nullable: none was.
VYRLUA_EXPORT ErrorHintProvider setErrorHintProvider(ErrorHintProvider provider);

} // namespace vyrLua
