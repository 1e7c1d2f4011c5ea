// The modules Node, GeometryNode and Shape.
#include "ModuleTest.h"

#include <osg/Geode>
#include <osg/Group>
#include <osg/MatrixTransform>
#include <osg/Shape>
#include <osg/ShapeDrawable>
#include <vyr/AffineMatrix4x4.h>
#include <vyr/Vec3.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Geometry.h>
#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>

namespace {

class NodeModule : public bindingtest::ModuleTest {};

TEST_F(NodeModule, SetNameGivesTheNameBack) {
  EXPECT_EQ("a", lua.run("local n = osg.Node() return n:setName('a')"));
  EXPECT_EQ("b", lua.run("local n = vyrOSG.Node:new() return n:setName('b')"));
  EXPECT_EQ("c", lua.run("local n = vyrOSG.Transform:new() return n:setName('c')"));
  EXPECT_EQ("#ferror in function 'setName'.", lua.raised("osg.Node():setName({})"));
}

TEST_F(NodeModule, AGeodeIsNoGroup) {
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  set("g", geode.get(), "osg::Geode");
  EXPECT_EQ("nil osg::Geode osg::Geode", lua.eval("g:asGroup(), g:asGeode(), g"));
  EXPECT_EQ("nil nil", lua.run("local n = osg.Node() return n:asGroup(), n:asGeode()"));
  osg::ref_ptr<osg::Group> group = new osg::Group;
  set("h", group.get(), "osg::Group");
  EXPECT_EQ("osg::Group nil", lua.eval("h:asGroup(), h:asGeode()"));
}

TEST_F(NodeModule, GroupsAddAndGiveTheirChildren) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  set("g", group.get(), "osg::Group");
  EXPECT_EQ("true false", lua.run("n = osg.Node:new() return g:addChild(n), g:addChild(nil)"));
  EXPECT_EQ(1u, group->getNumChildren());
  EXPECT_EQ("true", lua.eval("g:getChild(0) == n"));
}

TEST_F(NodeModule, IndicesOutOfRangeGiveNil) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  set("g", group.get(), "osg::Group");
  EXPECT_EQ("nil nil nil nil", lua.eval("g:getChild(0), g:getChild(-1), g:getParent(0), g:getChild(1e10)"));
  osg::ref_ptr<vyrOSG::Group> own = new vyrOSG::Group;
  set("o", own.get(), "vyrOSG::Group");
  EXPECT_EQ("0 nil", lua.eval("o:getNumChildren(), o:getChild(3)"));
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  set("d", geode.get(), "osg::Geode");
  EXPECT_EQ("nil", lua.eval("d:getDrawable(0)"));
}

TEST_F(NodeModule, ParentsAreCountedAndGiven) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  osg::ref_ptr<osg::Node> node = new osg::Node;
  group->addChild(node.get());
  set("g", group.get(), "osg::Group");
  set("n", node.get(), "osg::Node");
  EXPECT_EQ("1 true", lua.eval("n:getNumParents(), n:getParent(0) == g"));
}

TEST_F(NodeModule, NodesCarryLuasReferenceAndGroupsDoNot) {
  lua.run("n = osg.Node() m = osg.Node:new()");
  EXPECT_EQ(1, global<osg::Node>("n")->referenceCount());
  EXPECT_EQ(0, global<osg::Node>("m")->referenceCount());
  EXPECT_EQ("function", lua.eval("type(rawget(osg.Node, '.collector'))"));
#ifndef VYROSG_EXPLICIT_COLLECTORS
  for (const char* name : {"osg.Group", "osg.MatrixTransform", "osg.Transform", "osg.Geode", "osg.Drawable",
                           "vyrOSG.Node", "vyrOSG.Group", "vyrOSG.Transform", "osg.HeightField"}) {
    EXPECT_EQ("nil", lua.eval(std::string("rawget(") + name + ", '.collector')")) << name;
  }
#endif
}

TEST_F(NodeModule, ANodeThatAGroupHoldsOutlivesLua) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  set("g", group.get(), "osg::Group");
  lua.run("local n = osg.Node() n:setName('kept') g:addChild(n)");
  lua.collect();
  ASSERT_EQ(1u, group->getNumChildren());
  EXPECT_EQ(1, group->getChild(0)->referenceCount());
  EXPECT_EQ("kept", group->getChild(0)->getName());
}

TEST_F(NodeModule, StateSets) {
  osg::ref_ptr<osg::Node> node = new osg::Node;
  set("n", node.get(), "osg::Node");
  EXPECT_EQ("nil", lua.eval("n:getStateSet()"));
  EXPECT_EQ("osg::StateSet true", lua.run("local s = n:getOrCreateStateSet() return s, s == n:getStateSet()"));
  lua.run("n:setStateSet(nil)");
  EXPECT_EQ(nullptr, node->getStateSet());
}

TEST_F(NodeModule, TransformsAcceptBothKindsOfNodes) {
  lua.run("t = vyrOSG.Transform:new()");
  osg::ref_ptr<osg::MatrixTransform> transform = global<osg::MatrixTransform>("t");
  EXPECT_EQ("true true", lua.eval("t:addChild(osg.Geode:new()), t:addChild(vyrOSG.Node:new())"));
  EXPECT_EQ(2u, transform->getNumChildren());
  EXPECT_EQ("#ferror in function 'addChild'.", lua.raised("t:addChild(1)"));
}

TEST_F(NodeModule, OwnGroupsReplaceAndFindNodes) {
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  set("g", group.get(), "vyrOSG::Group");
  EXPECT_EQ("true true false 1",
            lua.run("a, b = osg.Node:new(), osg.Node:new() g:addChild(a)"
                    " return g:containsNode(a), g:replaceChild(a, b), g:containsNode(nil), g:getNumChildren()"));
  EXPECT_EQ("true 0", lua.run("return g:removeChild(b), g:getNumChildren()"));
}

TEST_F(NodeModule, DrawablesGiveTheirShape) {
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->addDrawable(new osg::ShapeDrawable(new osg::Sphere));
  set("g", geode.get(), "osg::Geode");
  EXPECT_EQ("osg::Drawable osg::Shape",
            lua.run("local d = g:getDrawable(0) d:setUseDisplayList(false) return d, d:getShape()"));
  EXPECT_FALSE(geode->getDrawable(0)->getUseDisplayList());
}

TEST_F(NodeModule, GeometryNodesChooseTheirConstructorByArguments) {
  EXPECT_EQ("1 2", lua.eval("vyrOSG.GeometryNode.RENDER_DATA, vyrOSG.GeometryNode.GEOMETRY_DATA"));
  EXPECT_EQ("nil", lua.run("e = vyrOSG.GeometryNode() return e:getGeometry()"));
  vyr::ref_ptr<vyrCollide::Geometry> geometry = new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(1, 1, 1)));
  set("g", geometry.get(), "vyrCollide::Geometry");
  EXPECT_EQ("true", lua.run("n = vyrOSG.GeometryNode(g) return n:getGeometry() == g"));
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("vyrOSG.GeometryNode(1)"));
  EXPECT_EQ(1, global<vyrOSG::GeometryNode>("n")->referenceCount());
}

TEST_F(NodeModule, GeometryNodesKeepTheirFlagAndSelection) {
  EXPECT_EQ(
      "false true",
      lua.run("n = vyrOSG.GeometryNode() n:setAutoRemove(false) local was = n:getAutoRemove() n:setAutoRemove(true)"
              " return was, n:getAutoRemove()"));
  EXPECT_EQ("2 true", lua.run("c = osg.Group:new() n:setRenderChild(vyrOSG.GeometryNode.GEOMETRY_DATA, c)"
                              " n:selectRenderChild(2.9) return n:getSelectedRenderChild(), n:getRenderChild(2) == c"));
  EXPECT_EQ("true", lua.run("o = vyrOSG.Node:new() n:setRenderChild(1, o) return n:getRenderChild(1) == o"));
  EXPECT_EQ("#ferror in function 'setRenderChild'.", lua.raised("n:setRenderChild('x', c)"));
}

TEST_F(NodeModule, HeightsOutsideOfTheFieldAreIgnored) {
  osg::ref_ptr<osg::HeightField> field = new osg::HeightField;
  field->allocate(3, 2);
  set("f", field.get(), "osg::HeightField");
  EXPECT_EQ("none",
            lua.raised("f:setHeight(2, 1, 0.1) f:setHeight(3, 1, 9) f:setHeight(0, 2, 9) f:setHeight(-1, 0, 9)"));
  EXPECT_EQ(0.1f, field->getHeight(2, 1));
  EXPECT_EQ(0.0f, field->getHeight(0, 0));
  // Columns beyond the first row's end reach the next row: only the height array bounds them.
  lua.run("f:setHeight(3, 0, 5)");
  EXPECT_EQ(5.0f, field->getHeight(0, 1));
}

} // namespace
