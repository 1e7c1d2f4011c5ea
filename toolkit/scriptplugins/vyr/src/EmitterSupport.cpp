/// Calls a function of a script for each body of an emitter.
#include <vyrScript/EmitterSupport.h>

#include <vyrScript/ScriptFunction.h>

#include <vyr/Notify.h>

#include <memory>
#include <new>

namespace vyrScript {

namespace {

using Random = std::function<double()>;

/// What the factory shares with the function that scripts draw numbers with: there is something to draw from only
/// while the factory runs.
struct Draw {
  const Random* random = nullptr;
};
using DrawPointer = std::shared_ptr<Draw>;

int destroyDraw(lua_State* L) {
  static_cast<DrawPointer*>(lua_touserdata(L, 1))->~DrawPointer();
  return 0;
}

int drawNumber(lua_State* L) {
  const Draw& draw = **static_cast<DrawPointer*>(lua_touserdata(L, lua_upvalueindex(1)));
  if (draw.random == nullptr) {
    return luaL_error(L, "random numbers can be drawn only while the geometry is made");
  }
  lua_pushnumber(L, (*draw.random)());
  return 1;
}

/// Upvalues: the script's function and the one that draws numbers; the argument is the index.
int callFactory(lua_State* L) {
  lua_settop(L, 1);
  lua_pushvalue(L, lua_upvalueindex(1));
  lua_insert(L, 1);
  lua_pushvalue(L, lua_upvalueindex(2));
  lua_call(L, 2, 1);
  return 1;
}

/// Pushes the function that draws numbers.
DrawPointer pushDraw(lua_State* L) {
  // Lua raises errors by jumping: whatever can fail is done before there is anything to destroy.
  void* const memory = lua_newuserdata(L, sizeof(DrawPointer));
  lua_createtable(L, 0, 1);
  lua_pushcfunction(L, &destroyDraw);
  auto* const draw = new (memory) DrawPointer(std::make_shared<Draw>());
  lua_setfield(L, -2, "__gc");
  lua_setmetatable(L, -2);
  lua_pushcclosure(L, &drawNumber, 1);
  return *draw;
}

class Factory {
public:
  Factory(lua_State* L, lua_Object function, const vyr::RigidBodyEmitter* emitter)
      : m_emitter(emitter) {
    lua_pushvalue(L, function);
    m_draw = pushDraw(L);
    lua_pushcclosure(L, &callFactory, 2);
    m_function = ScriptFunction(L, lua_gettop(L));
    lua_pop(L, 1);
  }

  vyrCollide::Geometry* make(const Random& random) {
    vyrCollide::Geometry* geometry = nullptr;
    const char* wrong = nullptr;
    m_draw->random = &random;
    m_enabled = m_enabled && m_function.call(
                                 "geometry factory",
                                 [this](lua_State* L) {
                                   lua_pushnumber(L, static_cast<lua_Number>(m_emitter->getNumEmitted() + 1));
                                   return 1;
                                 },
                                 [&](lua_State* L) {
                                   tolua_Error ignored;
                                   if (tolua_isusertype(L, lua_gettop(L), "vyrCollide::Geometry", 0, &ignored)) {
                                     geometry = static_cast<vyrCollide::Geometry*>(tolua_tousertype(L, -1, nullptr));
                                   } else {
                                     wrong = luaL_typename(L, -1);
                                   }
                                 });
    m_draw->random = nullptr;
    if (wrong != nullptr) {
      m_enabled = false;
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the geometry factory of '" << m_emitter->getName() << "' returned a " << wrong
                                    << " instead of a geometry";
    }
    return geometry;
  }

private:
  const vyr::RigidBodyEmitter* m_emitter; // which holds this
  ScriptFunction m_function;
  DrawPointer m_draw;
  bool m_enabled = true;
};

} // namespace

void setGeometryFactory(vyr::RigidBodyEmitter* emitter, lua_State* L, lua_Object function) {
  if (!lua_isfunction(L, function)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "the geometry factory of '" << emitter->getName() << "' is a "
                                  << luaL_typename(L, function) << ", not a function";
    return;
  }
  auto factory = std::make_shared<Factory>(L, function, emitter);
  emitter->setGeometryFactory([factory](const Random& random) { return factory->make(random); });
}

} // namespace vyrScript
