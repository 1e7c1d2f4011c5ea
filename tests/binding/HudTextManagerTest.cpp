// The module HudTextManager: every row of the manager and of its texts, and the application's class table beside it.
#include "CallChecks.h"

#include <vyrOSG/HudTextManager.h>
#include <vyrOSG/SceneDecorator.h>

namespace {

class HudTextManager : public bindingtest::CallChecks {
protected:
  HudTextManager() {
    set("decorator", decorator.get(), "vyrOSG::SceneDecorator");
    lua.run("h = vyrOSG.HudTextManager(decorator) t = vyrOSG.HudTextManager.ReferencedText('speed')");
  }
  vyrOSG::HudTextManager* manager() { return global<vyrOSG::HudTextManager>("h"); }

  osg::ref_ptr<vyrOSG::SceneDecorator> decorator{new vyrOSG::SceneDecorator(320, 240)};
};

TEST_F(HudTextManager, IsBuiltThreeWays) {
  lua.run("a = vyrOSG.HudTextManager:new(decorator) b = vyrOSG.HudTextManager:new_local(nil)");
  EXPECT_EQ("vyrOSG::HudTextManager vyrOSG::HudTextManager vyrOSG::HudTextManager", lua.eval("a, b, h"));
  const vyr::ref_ptr<vyrOSG::HudTextManager> keep = global<vyrOSG::HudTextManager>("a");
  EXPECT_EQ(1, keep->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::HudTextManager>("b")->getReferenceCount());
  EXPECT_EQ(1, manager()->getReferenceCount());
  for (const char* call : {"vyrOSG.HudTextManager:new()", "vyrOSG.HudTextManager:new_local(1)",
                           "vyrOSG.HudTextManager(h)", "vyrOSG.HudTextManager:new(decorator, 1)"})
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
}

TEST_F(HudTextManager, TextsAreBuiltThreeWaysAndGiveTheirStringBack) {
  EXPECT_EQ("vyrOSG::HudTextManager::ReferencedText x",
            lua.run("T = vyrOSG.HudTextManager.ReferencedText return T:new('x')"));
  EXPECT_EQ("vyrOSG::HudTextManager::ReferencedText x", lua.run("return T:new_local('x')"));
  // The runtime's call event asks for one value only.
  EXPECT_EQ("vyrOSG::HudTextManager::ReferencedText", lua.run("return T('x')"));
  lua.run("a, b = T:new('x'), T:new_local('y')");
  using Text = vyrOSG::HudTextManager::ReferencedText;
  const vyr::ref_ptr<Text> keep = global<Text>("a");
  EXPECT_EQ(1, keep->getReferenceCount());
  EXPECT_EQ(1, global<Text>("b")->getReferenceCount());
  for (const char* call : {"T:new()", "T:new_local({})", "T('x', 1)"})
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
}

TEST_F(HudTextManager, TextsAreReadAndChanged) {
  EXPECT_EQ("speed", lua.eval("t:getText()"));
  EXPECT_EQ("fast fast", lua.run("local back = t:setText('fast') return back, t:getText()"));
  EXPECT_EQ("12", lua.run("return t:setText(12)"));
  EXPECT_EQ("#ferror in function 'setText'.", lua.raised("t:setText({})"));
  EXPECT_EQ("#ferror in function 'setText'.", lua.raised("t:setText()"));
}

TEST_F(HudTextManager, LinesReachTheDisplay) {
  EXPECT_EQ("constant step", lua.run("local a, b = h:addConstantText('constant'), h:addText('step') return a, b"));
  EXPECT_EQ("", lua.run("return h:addReferencedText(t)"));
  EXPECT_EQ("", decorator->getText(0));
  EXPECT_EQ("", lua.run("return h:updateHud()"));
  EXPECT_EQ("constant", decorator->getText(0));
  EXPECT_EQ("speed", decorator->getText(1));
  EXPECT_EQ("step", decorator->getText(2));
  EXPECT_EQ("", lua.run("h:clearConstantText() h:updateHud()"));
  EXPECT_EQ("speed", decorator->getText(0));
  EXPECT_EQ("step", decorator->getText(1));
  EXPECT_EQ("", lua.run("h:clearText() h:updateHud()"));
  EXPECT_EQ("speed", decorator->getText(0));
  EXPECT_EQ("", decorator->getText(1));
}

TEST_F(HudTextManager, ATextOfLuaLivesOnInTheManager) {
  using Text = vyrOSG::HudTextManager::ReferencedText;
  const vyr::observer_ptr<Text> text = global<Text>("t");
  lua.run("h:addReferencedText(t) t = nil");
  lua.collect();
  ASSERT_TRUE(text.valid());
  EXPECT_EQ(1, text->getReferenceCount());
  const vyr::observer_ptr<vyrOSG::HudTextManager> gone = manager();
  lua.run("h = nil");
  lua.collect();
  EXPECT_FALSE(gone.valid());
  EXPECT_FALSE(text.valid());
}

TEST_F(HudTextManager, TheApplicationsClassKeepsItsFunctionsBaseAndCollector) {
  int (*open)(lua_State*) = nullptr;
  for (const vyrOSGModules::Module& module : vyrOSGModules::kModules)
    if (std::string(module.name) == "HudTextManager")
      open = module.open;
  ASSERT_TRUE(open);
  const std::string state = "local A = vyrOSG.ExampleApplication return type(rawget(A, '.collector')), "
                            "type(rawget(A, 'getScene')), type(rawget(A, '.call')), getmetatable(A) ~= nil";
  const std::string before = lua.run(state);
  EXPECT_EQ("function function function true", before);
  EXPECT_EQ(1, open(lua.get()));
  EXPECT_EQ(before, lua.run(state));
}

TEST_F(HudTextManager, EveryFunctionRefusesForeignAndNullSelfAndSurplus) {
  constexpr bindingtest::Call calls[] = {{"addText", "'a'"}, {"addConstantText", "'a'"}, {"clearConstantText", ""},
                                         {"clearText", ""},  {"updateHud", ""},          {"addReferencedText", "nil"}};
  expectRefusals("vyrOSG.HudTextManager", "h", "vyrOSG::HudTextManager", calls);
  const vyr::ref_ptr<vyrOSG::HudTextManager> other = new vyrOSG::HudTextManager(nullptr);
  expectConstant("vyrOSG.HudTextManager", other.get(), "vyrOSG::HudTextManager", calls, "");
  constexpr bindingtest::Call textCalls[] = {{"getText", ""}, {"setText", "'a'"}};
  expectRefusals("vyrOSG.HudTextManager.ReferencedText", "t", "vyrOSG::HudTextManager::ReferencedText", textCalls);
  const vyr::ref_ptr<vyrOSG::HudTextManager::ReferencedText> text =
      new vyrOSG::HudTextManager::ReferencedText(std::string("a"));
  expectConstant("vyrOSG.HudTextManager.ReferencedText", text.get(), "vyrOSG::HudTextManager::ReferencedText",
                 textCalls, "getText");
}

} // namespace
