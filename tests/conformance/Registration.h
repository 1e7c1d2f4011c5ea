/// Every registration that open functions make, with the functions themselves, by standing in front of the runtime's.
#pragma once

#include <tolua++.h>

#include <string>
#include <vector>

namespace conformance {

/// One call of the runtime's registration functions.
struct Entry {
  /// open, usertype, module, begin, end, class, function, constant, variable or array.
  std::string kind;
  /// The tables around it, joined by points: "osg.Uniform"; "" for the global table.
  std::string table;
  /// The Lua name; of a declared type the type name.
  std::string name;
  /// Of a class.
  std::string type;
  std::string base;
  /// The function or getter, or a class's collector. Nullable: a class without one.
  lua_CFunction function = nullptr;
  /// The setter of a variable or array. Nullable: read-only.
  lua_CFunction setter = nullptr;
  /// Of a constant, and the third argument of a module.
  double value = 0;
};

/// The entries since the last clear.
std::vector<Entry>& registration();

} // namespace conformance
