#include "Natives.h"

#include "Frees.h"
#include "Objects.h"
#include "Recorder.h"
#include "Registration.h"
#include "Symbols.h"

#include <lua.hpp>

#include <array>
#include <cstdint>
#include <cstring>
#include <deque>
#include <memory>

namespace {

using namespace conformance;

std::unique_ptr<Recorder> s_recorder;
vyrLua::ErrorHintProvider s_previousProvider = nullptr;
std::array<char, 512> s_place{};

/// The last error that a wrapper raised.
struct Raised {
  bool raised = false;
  std::string text;
  bool hasRecord = false;
  int index = 0;
  std::string type;
} s_raised;

const Symbols& symbols() {
  static const Symbols list;
  return list;
}

std::string rememberRaised(const vyrLua::ErrorReport& report) {
  s_raised = {true, report.text, report.record != nullptr, 0, ""};
  if (report.record != nullptr) {
    s_raised.index = report.record->index;
    s_raised.type = report.record->type != nullptr ? report.record->type : "";
  }
  return "";
}

void setField(lua_State* state, const char* name, const std::string& text) {
  lua_pushlstring(state, text.data(), text.size());
  lua_setfield(state, -2, name);
}

void pushAddress(lua_State* state, std::uintptr_t address) {
  lua_pushlightuserdata(state, reinterpret_cast<void*>(address));
}

void pushValue(lua_State* state, const Value& value) {
  if (const bool* flag = std::get_if<bool>(&value)) {
    lua_pushboolean(state, *flag ? 1 : 0);
  } else if (const double* number = std::get_if<double>(&value)) {
    lua_pushnumber(state, *number);
  } else if (const std::string* text = std::get_if<std::string>(&value)) {
    lua_pushlstring(state, text->data(), text->size());
  } else if (const Pointed* pointed = std::get_if<Pointed>(&value)) {
    lua_newtable(state);
    pushAddress(state, pointed->address);
    lua_setfield(state, -2, "address");
    for (std::size_t i = 0; i < pointed->numbers.size(); ++i) {
      lua_pushnumber(state, pointed->numbers[i]);
      lua_rawseti(state, -2, static_cast<int>(i) + 1);
    }
  } else {
    lua_pushnil(state);
  }
}

/// operations(name) -> the readable names of the functions called so.
int operations(lua_State* state) {
  const std::vector<std::string> names = symbols().named(luaL_checkstring(state, 1));
  lua_newtable(state);
  for (std::size_t i = 0; i < names.size(); ++i) {
    lua_pushstring(state, names[i].c_str());
    lua_rawseti(state, -2, static_cast<int>(i) + 1);
  }
  return 1;
}

/// nameOf(function) -> the readable name of a native function; nil if no library names it.
int nameOf(lua_State* state) {
  const std::string name = symbols().at(reinterpret_cast<std::uintptr_t>(lua_tocfunction(state, 1)));
  if (name.empty()) {
    return 0;
  }
  lua_pushstring(state, name.c_str());
  return 1;
}

/// watch(operation, argument kinds, result kind, result in memory, held, bytes of an empty result)
int watch(lua_State* state) {
  Watched watched;
  watched.operation = luaL_checkstring(state, 1);
  watched.addresses = symbols().addresses(watched.operation);
  for (int i = 1; i <= static_cast<int>(lua_objlen(state, 2)); ++i) {
    lua_rawgeti(state, 2, i);
    watched.arguments.push_back(luaL_checkstring(state, -1));
    lua_pop(state, 1);
  }
  watched.result = luaL_checkstring(state, 3);
  watched.resultInMemory = lua_toboolean(state, 4) != 0;
  watched.held = lua_toboolean(state, 5) != 0;
  watched.heldBytes = static_cast<std::size_t>(luaL_optinteger(state, 6, 0));
  s_recorder->watch(watched);
  return 0;
}

/// take() -> the recorded calls: { operation, arguments, n, result, returned }
int take(lua_State* state) {
  const std::vector<RecordedCall> calls = s_recorder->take();
  lua_newtable(state);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    lua_newtable(state);
    setField(state, "operation", calls[i].operation);
    lua_pushboolean(state, calls[i].returned ? 1 : 0);
    lua_setfield(state, -2, "returned");
    pushValue(state, calls[i].result);
    lua_setfield(state, -2, "result");
    lua_newtable(state);
    for (std::size_t a = 0; a < calls[i].arguments.size(); ++a) {
      pushValue(state, calls[i].arguments[a]);
      lua_rawseti(state, -2, static_cast<int>(a) + 1);
    }
    lua_setfield(state, -2, "arguments");
    lua_rawseti(state, -2, static_cast<int>(i) + 1);
  }
  return 1;
}

/// raised() -> the last error of a wrapper since the last question: text, argument number, expected type. Nothing
/// without an error; nil for number and type without a record.
int raised(lua_State* state) {
  const Raised last = s_raised;
  s_raised = Raised();
  if (!last.raised) {
    return 0;
  }
  lua_pushstring(state, last.text.c_str());
  if (!last.hasRecord) {
    return 1;
  }
  lua_pushinteger(state, last.index);
  lua_pushstring(state, last.type.c_str());
  return 3;
}

/// address(object) -> where it is; nil without one.
int address(lua_State* state) {
  void* object = lua_isuserdata(state, 1) != 0 ? tolua_tousertype(state, 1, nullptr) : nullptr;
  if (object == nullptr) {
    return 0;
  }
  lua_pushlightuserdata(state, object);
  return 1;
}

/// given(type) -> an object of a type that scripts cannot make; nil if there is none either.
int given(lua_State* state) {
  const char* type = luaL_checkstring(state, 1);
  tolua_pushusertype(state, givenObject(type), type);
  return 1;
}

/// owned(object) -> whether Lua collects the object with its value.
int owned(lua_State* state) {
  lua_getfield(state, LUA_REGISTRYINDEX, "tolua_gc");
  lua_pushlightuserdata(state, tolua_tousertype(state, 1, nullptr));
  lua_rawget(state, -2);
  lua_pushboolean(state, lua_isnil(state, -1) ? 0 : 1);
  return 1;
}

/// ghost(type) -> a value of the type that has lost its object.
int ghost(lua_State* state) {
  // The runtime keeps values by the addresses of their objects, so each ghost needs one of its own, for good.
  static std::deque<int> anchors;
  anchors.push_back(0);
  tolua_pushusertype(state, &anchors.back(), luaL_checkstring(state, 1));
  *static_cast<void**>(lua_touserdata(state, -1)) = nullptr;
  return 1;
}

/// as(object, type) -> the same object as a value of another type, "const osg::Node" or a base; the old value keeps its
/// own type.
int as(lua_State* state) {
  void* object = tolua_tousertype(state, 1, nullptr);
  *static_cast<void**>(lua_newuserdata(state, sizeof(void*))) = object;
  luaL_getmetatable(state, luaL_checkstring(state, 2));
  lua_setmetatable(state, -2);
  return 1;
}

/// isa(object, type) -> whether the type's chain of bases says so.
int isa(lua_State* state) {
  tolua_Error error;
  lua_pushboolean(state, tolua_isusertype(state, 1, luaL_checkstring(state, 2), 0, &error));
  return 1;
}

template <class T>
double numberIn(const char* memory, int index) {
  T number;
  std::memcpy(&number, memory + static_cast<std::size_t>(index) * sizeof(T), sizeof(T));
  return static_cast<double>(number);
}

/// numbers(object, kind, count) -> the first numbers in the object's memory; the kind is "d", "f" or "u".
int numbers(lua_State* state) {
  const char* memory = static_cast<const char*>(tolua_tousertype(state, 1, nullptr));
  const char kind = *luaL_checkstring(state, 2);
  const int count = static_cast<int>(luaL_checkinteger(state, 3));
  lua_newtable(state);
  for (int i = 0; memory != nullptr && i < count; ++i) {
    const double number = kind == 'd'   ? numberIn<double>(memory, i)
                          : kind == 'f' ? numberIn<float>(memory, i)
                                        : numberIn<std::uint32_t>(memory, i);
    lua_pushnumber(state, number);
    lua_rawseti(state, -2, i + 1);
  }
  return 1;
}

/// narrow(number) -> the number in single precision.
int narrow(lua_State* state) {
  lua_pushnumber(state, static_cast<double>(static_cast<float>(luaL_checknumber(state, 1))));
  return 1;
}

/// count(type, object) -> the object's references; nil for a type that is not counted.
int count(lua_State* state) {
  const CountedType* type = countedType(luaL_checkstring(state, 1));
  if (type == nullptr) {
    return 0;
  }
  lua_pushinteger(state, type->count(tolua_tousertype(state, 2, nullptr)));
  return 1;
}

/// hold(type, object), letGo(type, address): a reference of somebody else.
int hold(lua_State* state) {
  countedType(luaL_checkstring(state, 1))->hold(tolua_tousertype(state, 2, nullptr));
  return 0;
}
int letGo(lua_State* state) {
  countedType(luaL_checkstring(state, 1))->letGo(lua_touserdata(state, 2));
  return 0;
}
int forget(lua_State* state) {
  countedType(luaL_checkstring(state, 1))->forget(lua_touserdata(state, 2));
  return 0;
}
int countAt(lua_State* state) {
  lua_pushinteger(state, countedType(luaL_checkstring(state, 1))->count(lua_touserdata(state, 2)));
  return 1;
}

/// observe(type, object) -> a handle; gone(handle) -> whether the object has been destroyed since.
int observe(lua_State* state) {
  lua_pushinteger(state, countedType(luaL_checkstring(state, 1))->observe(tolua_tousertype(state, 2, nullptr)));
  return 1;
}
int gone(lua_State* state) {
  lua_pushboolean(state, isGone(static_cast<int>(luaL_checkinteger(state, 1))) ? 1 : 0);
  return 1;
}

/// countFrees(object): begins to count; frees() -> how often its memory has been given back since.
int beginFrees(lua_State* state) {
  countFrees(tolua_tousertype(state, 1, nullptr));
  return 0;
}
int endFrees(lua_State* state) {
  lua_pushinteger(state, frees());
  return 1;
}

/// field(name, object) -> what stands in the native field of that Lua name; nil for an unknown one.
int field(lua_State* state) {
  const FieldReader read = fieldReader(luaL_checkstring(state, 1));
  if (read == nullptr) {
    return 0;
  }
  const FieldValue value = read(tolua_tousertype(state, 2, nullptr));
  if (value.isBoolean) {
    lua_pushboolean(state, value.number != 0);
  } else if (value.address != nullptr || value.isObject) {
    value.address != nullptr ? lua_pushlightuserdata(state, value.address) : lua_pushnil(state);
  } else {
    lua_pushnumber(state, value.number);
  }
  return 1;
}

/// entries() -> what has been registered since the last question.
int entries(lua_State* state) {
  lua_newtable(state);
  int index = 0;
  for (const Entry& entry : registration()) {
    lua_newtable(state);
    setField(state, "kind", entry.kind);
    setField(state, "table", entry.table);
    setField(state, "name", entry.name);
    setField(state, "type", entry.type);
    setField(state, "base", entry.base);
    lua_pushnumber(state, entry.value);
    lua_setfield(state, -2, "value");
    if (entry.function != nullptr) {
      lua_pushcfunction(state, entry.function);
      lua_setfield(state, -2, "call");
    }
    if (entry.setter != nullptr) {
      lua_pushcfunction(state, entry.setter);
      lua_setfield(state, -2, "set");
    }
    lua_rawseti(state, -2, ++index);
  }
  registration().clear();
  return 1;
}

/// at(text): where the engine is, for the report of a crash.
int at(lua_State* state) {
  std::strncpy(s_place.data(), luaL_checkstring(state, 1), s_place.size() - 1);
  return 0;
}

constexpr luaL_Reg kNatives[] = {{"operations", &operations},
                                 {"nameOf", &nameOf},
                                 {"watch", &watch},
                                 {"take", &take},
                                 {"raised", &raised},
                                 {"address", &address},
                                 {"owned", &owned},
                                 {"ghost", &ghost},
                                 {"given", &given},
                                 {"as", &as},
                                 {"isa", &isa},
                                 {"numbers", &numbers},
                                 {"narrow", &narrow},
                                 {"count", &count},
                                 {"countAt", &countAt},
                                 {"hold", &hold},
                                 {"letGo", &letGo},
                                 {"forget", &forget},
                                 {"observe", &observe},
                                 {"gone", &gone},
                                 {"countFrees", &beginFrees},
                                 {"frees", &endFrees},
                                 {"field", &field},
                                 {"entries", &entries},
                                 {"at", &at},
                                 {nullptr, nullptr}};

} // namespace

void conformance::openNatives(lua_State* state, int (*moduleFunction)(lua_State*)) {
  s_recorder.reset();
  s_recorder = std::make_unique<Recorder>(codeAround(reinterpret_cast<std::uintptr_t>(moduleFunction)));
  s_previousProvider = vyrLua::setErrorHintProvider(&rememberRaised);
  s_raised = Raised();
  luaL_register(state, "native", kNatives);
  // The address of no object.
  lua_pushlightuserdata(state, nullptr);
  lua_setfield(state, -2, "nothing");
  lua_pop(state, 1);
}

void conformance::closeNatives() {
  s_recorder.reset();
  vyrLua::setErrorHintProvider(s_previousProvider);
}

const char* conformance::lastPlace() {
  return s_place.data();
}
