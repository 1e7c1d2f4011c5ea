/// What every wrapper refuses, asked of a list of functions: a foreign self, a null self, arguments too many.
#pragma once

#include "ModuleTest.h"

#include <string>
#include <utility>

namespace bindingtest {

/// A function's Lua name and arguments that fit, as Lua text.
using Call = std::pair<const char*, const char*>;

/// The text of a call of a function of a class table, with an expression for self and arguments behind those that fit.
inline std::string callText(const std::string& classTable, const Call& call, const std::string& self,
                            const std::string& surplus = "") {
  std::string text = classTable + "['" + call.first + "'](" + self;
  for (const std::string& arguments : {std::string(call.second), surplus}) {
    if (!arguments.empty()) {
      text += ", " + arguments;
    }
  }
  return text + ")";
}

/// A module test that can ask lists of functions for their refusals.
class CallChecks : public ModuleTest {
protected:
  /// Makes a global whose type is right and whose object is null.
  void setGhost(const char* name, const char* type) {
    set(name, static_cast<void*>(&m_anchor), type);
    lua_getglobal(lua.get(), name);
    *static_cast<void**>(lua_touserdata(lua.get(), -1)) = nullptr;
    lua_pop(lua.get(), 1);
  }

  /// Each function takes its arguments on `object`, and refuses more of them, a self of another type and a null self
  /// of `type`.
  template <std::size_t Count>
  void expectRefusals(const std::string& classTable, const std::string& object, const char* type,
                      const Call (&calls)[Count]) {
    setGhost("ghost", type);
    for (const Call& call : calls) {
      const std::string name = call.first;
      const std::string mismatch = "#ferror in function '" + name + "'.";
      EXPECT_EQ("none", lua.raised(callText(classTable, call, object))) << name << " " << call.second;
      EXPECT_EQ(mismatch, lua.raised(callText(classTable, call, object, "{}, {}, {}, {}, {}, {}, {}, {}"))) << name;
      EXPECT_EQ(mismatch, lua.raised(callText(classTable, call, "{}"))) << name;
      EXPECT_EQ(1, lastRaised().index) << name;
      EXPECT_EQ(type, lastRaised().type.substr(lastRaised().type.find(type))) << name;
      EXPECT_EQ("invalid 'self' in function '" + name + "'", lua.raised(callText(classTable, call, "ghost")))
          << name << " " << call.second;
      EXPECT_FALSE(lastRaised().hasRecord) << name;
    }
  }

  /// Of the functions those take a read-only self, "const " and `type`, whose names `constant` lists between blanks.
  template <std::size_t Count>
  void expectConstant(const std::string& classTable, void* object, const char* type, const Call (&calls)[Count],
                      const std::string& constant) {
    const std::string readOnly = std::string("const ") + type;
    set("reader", object, readOnly.c_str());
    for (const Call& call : calls) {
      const bool takes = (" " + constant + " ").find(" " + std::string(call.first) + " ") != std::string::npos;
      EXPECT_EQ(takes ? "none" : std::string("#ferror in function '") + call.first + "'.",
                lua.raised(callText(classTable, call, "reader")))
          << call.first;
    }
  }

private:
  int m_anchor = 0;
};

} // namespace bindingtest
