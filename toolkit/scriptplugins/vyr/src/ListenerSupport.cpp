/// Listeners of the simulation that call functions of a script.
#include <vyrScript/ListenerSupport.h>
#include <vyrScript/ScriptFunction.h>

#include <vyr/Notify.h>

namespace vyrScript {

namespace {

ScriptFunction functionOf(lua_State* L, lua_Object functions, const char* listener, const char* name) {
  if (!lua_istable(L, functions)) {
    return {};
  }
  lua_getfield(L, functions, name);
  if (!lua_isnil(L, -1) && !lua_isfunction(L, -1)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << listener << ": " << name << " is a " << luaL_typename(L, -1) << ", not a function";
  }
  ScriptFunction function(L, lua_gettop(L));
  lua_pop(L, 1);
  return function;
}

class ScriptStepListener : public vyrSDK::StepEventListener {
public:
  ScriptStepListener(lua_State* L, lua_Object functions)
      : m_pre(functionOf(L, functions, "StepEventListener", "pre"))
      , m_post(functionOf(L, functions, "StepEventListener", "post"))
      , m_last(functionOf(L, functions, "StepEventListener", "last")) {}

  void pre(const vyr::TimeStamp& time) override { call(m_pre, "pre", time); }
  void post(const vyr::TimeStamp& time) override { call(m_post, "post", time); }
  void last(const vyr::TimeStamp& time) override { call(m_last, "last", time); }

private:
  void call(const ScriptFunction& function, const char* name, const vyr::TimeStamp& time) {
    // One mistake gives one message, not one a step.
    m_enabled = m_enabled && function.call(name, [&time](lua_State* L) {
      lua_pushnumber(L, time.seconds());
      return 1;
    });
  }

  ScriptFunction m_pre;
  ScriptFunction m_post;
  ScriptFunction m_last;
  bool m_enabled = true;
};

class ScriptGuiListener : public vyrSDK::GuiEventListener {
public:
  ScriptGuiListener(lua_State* L, lua_Object functions)
      : m_keyboard(functionOf(L, functions, "GuiEventListener", "keyboard"))
      , m_mouse(functionOf(L, functions, "GuiEventListener", "mouse"))
      , m_mouseMotion(functionOf(L, functions, "GuiEventListener", "mouseMotion"))
      , m_update(functionOf(L, functions, "GuiEventListener", "update")) {}

  bool keyboard(int key, unsigned int modifiers, float x, float y, bool down) override {
    return call(m_keyboard, "keyboard", [=](lua_State* L) {
      lua_pushinteger(L, key);
      lua_pushnumber(L, modifiers);
      lua_pushnumber(L, static_cast<double>(x));
      lua_pushnumber(L, static_cast<double>(y));
      lua_pushboolean(L, down ? 1 : 0);
      return 5;
    });
  }

  bool mouse(int button, float x, float y, bool down) override {
    return call(m_mouse, "mouse", [=](lua_State* L) {
      lua_pushinteger(L, button);
      lua_pushnumber(L, static_cast<double>(x));
      lua_pushnumber(L, static_cast<double>(y));
      lua_pushboolean(L, down ? 1 : 0);
      return 4;
    });
  }

  bool mouseMotion(int buttons, float x, float y) override {
    return call(m_mouseMotion, "mouseMotion", [=](lua_State* L) {
      lua_pushinteger(L, buttons);
      lua_pushnumber(L, static_cast<double>(x));
      lua_pushnumber(L, static_cast<double>(y));
      return 3;
    });
  }

  void update(float x, float y) override {
    call(m_update, "update", [=](lua_State* L) {
      lua_pushnumber(L, static_cast<double>(x));
      lua_pushnumber(L, static_cast<double>(y));
      return 2;
    });
  }

private:
  bool call(const ScriptFunction& function, const char* name, const std::function<int(lua_State*)>& push) {
    bool used = false;
    if (m_enabled && function) {
      m_enabled = function.call(name, push, [&used](lua_State* L) { used = lua_toboolean(L, -1) != 0; });
    }
    return used;
  }

  ScriptFunction m_keyboard;
  ScriptFunction m_mouse;
  ScriptFunction m_mouseMotion;
  ScriptFunction m_update;
  bool m_enabled = true;
};

} // namespace

vyrSDK::StepEventListener* stepListener(lua_State* L, lua_Object functions) {
  return new ScriptStepListener(L, functions);
}

vyrSDK::GuiEventListener* guiListener(lua_State* L, lua_Object functions) {
  return new ScriptGuiListener(L, functions);
}

} // namespace vyrScript
