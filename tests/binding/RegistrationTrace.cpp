// The dynamic linker finds these before the runtime's own, which they call in turn.
#include "RegistrationTrace.h"

#include <tolua++.h>

#include <dlfcn.h>

#include <sstream>

namespace {

std::string& indentation() {
  static std::string text;
  return text;
}

void record(const std::string& text) {
  bindingtest::registrationTrace().push_back(indentation() + text);
}

std::string named(const char* name) {
  return name != nullptr ? name : "(global)";
}

template <class Function>
Function next(Function, const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

std::vector<std::string>& bindingtest::registrationTrace() {
  static std::vector<std::string> trace;
  return trace;
}

// Exported, or the plugin would not find them.
#pragma GCC visibility push(default)
extern "C" {

void tolua_usertype(lua_State* state, const char* type) {
  record("usertype " + named(type));
  next(&tolua_usertype, "tolua_usertype")(state, type);
}

void tolua_module(lua_State* state, const char* name, int hasVariables) {
  record("module " + named(name) + " " + std::to_string(hasVariables));
  next(&tolua_module, "tolua_module")(state, name, hasVariables);
}

void tolua_beginmodule(lua_State* state, const char* name) {
  record("begin " + named(name));
  indentation() += "  ";
  next(&tolua_beginmodule, "tolua_beginmodule")(state, name);
}

void tolua_endmodule(lua_State* state) {
  indentation().resize(indentation().size() - 2);
  record("end");
  next(&tolua_endmodule, "tolua_endmodule")(state);
}

void tolua_cclass(lua_State* state, const char* luaName, const char* name, const char* base, lua_CFunction collector) {
  record("class " + named(luaName) + " type=" + name + " base=" + base + (collector != nullptr ? " collector" : ""));
  next(&tolua_cclass, "tolua_cclass")(state, luaName, name, base, collector);
}

void tolua_function(lua_State* state, const char* name, lua_CFunction function) {
  record("function " + named(name));
  next(&tolua_function, "tolua_function")(state, name, function);
}

void tolua_constant(lua_State* state, const char* name, lua_Number value) {
  std::ostringstream text;
  text << "constant " << name << " " << value;
  record(text.str());
  next(&tolua_constant, "tolua_constant")(state, name, value);
}

void tolua_variable(lua_State* state, const char* name, lua_CFunction get, lua_CFunction set) {
  record("variable " + named(name) + (set != nullptr ? "" : " read-only"));
  next(&tolua_variable, "tolua_variable")(state, name, get, set);
}

void tolua_array(lua_State* state, const char* name, lua_CFunction get, lua_CFunction set) {
  record("array " + named(name) + (set != nullptr ? "" : " read-only"));
  next(&tolua_array, "tolua_array")(state, name, get, set);
}

} // extern "C"
#pragma GCC visibility pop
