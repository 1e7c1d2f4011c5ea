// The module Tree: every row, read-only colours, ownership through a virtual base.
#include "CallChecks.h"
#include "GivenObjects.h"

#include <vyrOSG/Tree.h>
#include <vyrOSG/TreeRenderer.h>

namespace {

class TreeModule : public bindingtest::CallChecks {
protected:
  TreeModule() {
    model->grow();
    set("model", model.get(), "vyrModel::Tree");
    set("group", group.get(), "vyrOSG::Group");
    set("red", &red, "vyr::Vec4");
    set("readOnlyRed", &red, "const vyr::Vec4");
    lua.run("renderer = vyrOSG.TreeRenderer(model, group) tree = vyrOSG.Tree(group)");
  }

  vyr::ref_ptr<vyrModel::Tree> model{new vyrModel::Tree};
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  vyr::Vec4 red{0.9, 0.1, 0.2, 1};
};

TEST_F(TreeModule, IsBuiltThreeWays) {
  lua.run("a = vyrOSG.TreeRenderer:new(model, group) b = vyrOSG.TreeRenderer:new_local(nil, nil)");
  EXPECT_EQ("vyrOSG::TreeRenderer vyrOSG::TreeRenderer vyrOSG::TreeRenderer", lua.eval("a, b, renderer"));
  const vyr::ref_ptr<vyrOSG::TreeRenderer> keepRenderer = global<vyrOSG::TreeRenderer>("a");
  EXPECT_EQ(1, keepRenderer->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::TreeRenderer>("b")->getReferenceCount());
  lua.run("c = vyrOSG.Tree:new(group) d = vyrOSG.Tree:new_local(nil)");
  EXPECT_EQ("vyrOSG::Tree vyrOSG::Tree vyrOSG::Tree", lua.eval("c, d, tree"));
  const vyr::ref_ptr<vyrOSG::Tree> keepTree = global<vyrOSG::Tree>("c");
  EXPECT_EQ(1, keepTree->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::Tree>("d")->getReferenceCount());
  for (const char* call : {"vyrOSG.TreeRenderer:new(model)", "vyrOSG.TreeRenderer:new_local(group, model)",
                           "vyrOSG.TreeRenderer()", "vyrOSG.TreeRenderer(model, group, 1)", "vyrOSG.Tree:new()",
                           "vyrOSG.Tree:new_local(model)", "vyrOSG.Tree(group, 1)"})
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
}

TEST_F(TreeModule, ATreeIsAModelOfATree) {
  EXPECT_EQ("vyrOSG::TreeRenderer", lua.eval("vyrOSG.TreeRenderer(tree, group)"));
}

TEST_F(TreeModule, ColoursGoToTheRenderer) {
  EXPECT_EQ("", lua.run("return renderer:setColor(red)"));
  EXPECT_EQ(red, global<vyrOSG::TreeRenderer>("renderer")->getColor());
  EXPECT_EQ("", lua.run("return tree:setColor(readOnlyRed)"));
  EXPECT_EQ(red, global<vyrOSG::Tree>("tree")->getColor());
  EXPECT_EQ(red, global<vyrOSG::Tree>("tree")->getRenderer()->getColor());
  for (const char* call : {"renderer:setColor(nil)", "renderer:setColor(1)", "tree:setColor(nil)", "tree:setColor()"})
    EXPECT_EQ("#ferror in function 'setColor'.", lua.raised(call)) << call;
}

TEST_F(TreeModule, ColoursComeBackAsReadOnlyCopies) {
  lua.run("tree:setColor(red) renderer:setColor(red)");
  for (const char* object : {"tree", "renderer"}) {
    lua.run("color = nil");
    EXPECT_EQ("1", bindingtest::ownedCount(lua, std::string(object) + ":getColor()"));
    lua.run(std::string("color = ") + object + ":getColor()");
    EXPECT_EQ("const vyr::Vec4", lua.eval("color"));
    EXPECT_EQ(red, *global<vyr::Vec4>("color"));
    EXPECT_NE(&red, global<vyr::Vec4>("color"));
    // It serves where a constant vector does.
    EXPECT_EQ("none", lua.raised(std::string(object) + ":setColor(color)"));
  }
  // And nowhere else.
  tolua_Error error;
  lua_getglobal(lua.get(), "color");
  EXPECT_EQ(0, tolua_isusertype(lua.get(), lua_gettop(lua.get()), "vyr::Vec4", 0, &error));
  EXPECT_EQ(1, tolua_isusertype(lua.get(), lua_gettop(lua.get()), "const vyr::Vec4", 0, &error));
}

constexpr bindingtest::Call kCalls[] = {{"setColor", "red"}, {"getColor", ""}};

TEST_F(TreeModule, EveryFunctionRefusesForeignAndNullSelfAndSurplus) {
  expectRefusals("vyrOSG.TreeRenderer", "renderer", "vyrOSG::TreeRenderer", kCalls);
  expectRefusals("vyrOSG.Tree", "tree", "vyrOSG::Tree", kCalls);
  // Objects that Lua has not seen: the runtime keeps the type of those that it knows.
  const vyr::ref_ptr<vyrOSG::TreeRenderer> freshRenderer = new vyrOSG::TreeRenderer(nullptr, nullptr);
  const vyr::ref_ptr<vyrOSG::Tree> freshTree = new vyrOSG::Tree(nullptr);
  expectConstant("vyrOSG.TreeRenderer", freshRenderer.get(), "vyrOSG::TreeRenderer", kCalls, "getColor");
  expectConstant("vyrOSG.Tree", freshTree.get(), "vyrOSG::Tree", kCalls, "getColor");
}

TEST_F(TreeModule, CollectionFindsTheCountBehindTheVirtualBase) {
  const vyr::observer_ptr<vyrOSG::Tree> alone = global<vyrOSG::Tree>("tree");
  lua.run("held = vyrOSG.Tree(group)");
  const vyr::ref_ptr<vyrOSG::Tree> held = global<vyrOSG::Tree>("held");
  const vyr::observer_ptr<vyrOSG::TreeRenderer> renderer = global<vyrOSG::TreeRenderer>("renderer");
  EXPECT_EQ(2, held->getReferenceCount());
  lua.run("tree, held, renderer = nil, nil, nil");
  lua.collect();
  EXPECT_FALSE(alone.valid());
  EXPECT_FALSE(renderer.valid());
  EXPECT_EQ(1, held->getReferenceCount());
}

} // namespace
