// The dynamic linker finds these before the runtime's own, which they call in turn.
#include "Registration.h"

#include <dlfcn.h>

namespace {

std::vector<std::string>& openTables() {
  static std::vector<std::string> tables;
  return tables;
}

conformance::Entry& record(const char* kind, const char* name) {
  conformance::Entry entry;
  entry.kind = kind;
  entry.name = name != nullptr ? name : "";
  for (const std::string& table : openTables()) {
    entry.table += (entry.table.empty() || table.empty() ? "" : ".") + table;
  }
  conformance::registration().push_back(entry);
  return conformance::registration().back();
}

template <class Function>
Function next(Function, const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

} // namespace

std::vector<conformance::Entry>& conformance::registration() {
  static std::vector<Entry> entries;
  return entries;
}

// Exported, or the modules would not find them.
#pragma GCC visibility push(default)
extern "C" {

void tolua_open(lua_State* state) {
  record("open", "");
  next(&tolua_open, "tolua_open")(state);
}

void tolua_usertype(lua_State* state, const char* type) {
  record("usertype", type);
  next(&tolua_usertype, "tolua_usertype")(state, type);
}

void tolua_module(lua_State* state, const char* name, int hasVariables) {
  record("module", name).value = hasVariables;
  next(&tolua_module, "tolua_module")(state, name, hasVariables);
}

void tolua_beginmodule(lua_State* state, const char* name) {
  record("begin", name);
  openTables().push_back(name != nullptr ? name : "");
  next(&tolua_beginmodule, "tolua_beginmodule")(state, name);
}

void tolua_endmodule(lua_State* state) {
  openTables().pop_back();
  record("end", "");
  next(&tolua_endmodule, "tolua_endmodule")(state);
}

void tolua_cclass(lua_State* state, const char* luaName, const char* name, const char* base, lua_CFunction collector) {
  conformance::Entry& entry = record("class", luaName);
  entry.type = name;
  entry.base = base;
  entry.function = collector;
  next(&tolua_cclass, "tolua_cclass")(state, luaName, name, base, collector);
}

void tolua_function(lua_State* state, const char* name, lua_CFunction function) {
  record("function", name).function = function;
  next(&tolua_function, "tolua_function")(state, name, function);
}

void tolua_constant(lua_State* state, const char* name, lua_Number value) {
  record("constant", name).value = value;
  next(&tolua_constant, "tolua_constant")(state, name, value);
}

void tolua_variable(lua_State* state, const char* name, lua_CFunction get, lua_CFunction set) {
  conformance::Entry& entry = record("variable", name);
  entry.function = get;
  entry.setter = set;
  next(&tolua_variable, "tolua_variable")(state, name, get, set);
}

void tolua_array(lua_State* state, const char* name, lua_CFunction get, lua_CFunction set) {
  conformance::Entry& entry = record("array", name);
  entry.function = get;
  entry.setter = set;
  next(&tolua_array, "tolua_array")(state, name, get, set);
}

} // extern "C"
#pragma GCC visibility pop
