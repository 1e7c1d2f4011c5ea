// The modules TerrainRenderer and DeformableHeightFieldRenderer: every row, with results, ownership and errors.
#include "CallChecks.h"

#include <vyr/Range.h>
#include <vyr/TimeStamp.h>
#include <vyrModel/HeightFieldDeformer.h>
#include <vyrModel/Terrain.h>
#include <vyrOSG/DeformableHeightFieldRenderer.h>
#include <vyrOSG/TerrainRenderer.h>

#include <string>

namespace {

using bindingtest::Call;

vyr::RealVector flat() {
  return vyr::RealVector(25, 0.0);
}

class TerrainRenderer : public bindingtest::CallChecks {
protected:
  TerrainRenderer() {
    set("terrain", terrain.get(), "vyrModel::Terrain");
    set("range", &range, "vyr::RangeReal");
    set("group", group.get(), "vyrOSG::Group");
    set("time", &time, "vyr::TimeStamp");
    lua.run("r = vyrOSG.TerrainRenderer(terrain, range, group)");
  }
  vyrOSG::TerrainRenderer* renderer() { return global<vyrOSG::TerrainRenderer>("r"); }

  vyr::ref_ptr<vyrModel::Terrain> terrain{new vyrModel::Terrain(5, 5, 4, 4, flat())};
  vyr::RangeReal range{10, 2};
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  vyr::TimeStamp time;
};

TEST_F(TerrainRenderer, IsBuiltThreeWays) {
  lua.run(
      "a = vyrOSG.TerrainRenderer:new(terrain, range, nil) b = vyrOSG.TerrainRenderer:new_local(nil, range, group)");
  EXPECT_EQ(0, global<vyrOSG::TerrainRenderer>("a")->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::TerrainRenderer>("b")->getReferenceCount());
  EXPECT_EQ(1, renderer()->getReferenceCount());
  const vyr::ref_ptr<vyrOSG::TerrainRenderer> keep = global<vyrOSG::TerrainRenderer>("a");
  for (const char* call : {"vyrOSG.TerrainRenderer:new(terrain, nil, group)", "vyrOSG.TerrainRenderer(terrain, range)",
                           "vyrOSG.TerrainRenderer(terrain, range, group, 1)"}) {
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
  }
}

TEST_F(TerrainRenderer, AnUpsideDownRangeArrivesOrdered) {
  EXPECT_EQ(vyr::RangeReal(2, 10), renderer()->getRange());
  EXPECT_EQ(vyr::RangeReal(10, 2), range);
  range = vyr::RangeReal(3, 3);
  lua.run("r = vyrOSG.TerrainRenderer(terrain, range, group)");
  EXPECT_EQ(vyr::RangeReal(3, 3), renderer()->getRange());
}

TEST_F(TerrainRenderer, GivesItsNodeWithoutAReference) {
  EXPECT_EQ("vyrOSG::GeometryNode", lua.eval("r:getTerrainNode()"));
  EXPECT_EQ(group->getChild(0), static_cast<osg::Node*>(renderer()->getTerrainNode()));
  EXPECT_EQ(2, renderer()->getTerrainNode()->referenceCount());
  EXPECT_EQ("nil", lua.eval("vyrOSG.TerrainRenderer(nil, range, group):getTerrainNode()"));
}

TEST_F(TerrainRenderer, RefusesWhatDoesNotFit) {
  const Call calls[] = {{"post", "time"}, {"getTerrainNode", ""}};
  expectRefusals("vyrOSG.TerrainRenderer", "r", "vyrOSG::TerrainRenderer", calls);
  // An object that Lua does not know as a writable one yet.
  const vyr::ref_ptr<vyrOSG::TerrainRenderer> other = new vyrOSG::TerrainRenderer(terrain.get(), range, nullptr);
  expectConstant("vyrOSG.TerrainRenderer", other.get(), "vyrOSG::TerrainRenderer", calls, "");
  EXPECT_EQ("#ferror in function 'post'.", lua.raised("r:post(nil)"));
  EXPECT_EQ("", lua.run("return r:post(time)"));
}

TEST_F(TerrainRenderer, CollectionTakesTheDrawingAway) {
  lua.run("r = nil");
  lua.collect();
  EXPECT_EQ(0u, group->getNumChildren());
}

class DeformableHeightFieldRenderer : public bindingtest::CallChecks {
protected:
  DeformableHeightFieldRenderer() {
    set("deformer", deformer.get(), "vyrModel::HeightFieldDeformer");
    set("group", group.get(), "vyrOSG::Group");
    set("time", &time, "vyr::TimeStamp");
    lua.run("r = vyrOSG.DeformableHeightFieldRenderer(deformer, group)");
  }
  vyrOSG::DeformableHeightFieldRenderer* renderer() { return global<vyrOSG::DeformableHeightFieldRenderer>("r"); }

  vyr::ref_ptr<vyrModel::HeightFieldDeformer> deformer{
      new vyrModel::HeightFieldDeformer(new vyrCollide::Geometry(new vyrCollide::HeightField(5, 5, 4, 4, flat())))};
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  vyr::TimeStamp time;
};

TEST_F(DeformableHeightFieldRenderer, IsBuiltThreeWays) {
  lua.run("a = vyrOSG.DeformableHeightFieldRenderer:new(deformer, nil) "
          "b = vyrOSG.DeformableHeightFieldRenderer:new_local(nil, group)");
  EXPECT_EQ(0, global<vyrOSG::DeformableHeightFieldRenderer>("a")->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::DeformableHeightFieldRenderer>("b")->getReferenceCount());
  const vyr::ref_ptr<vyrOSG::DeformableHeightFieldRenderer> keep = global<vyrOSG::DeformableHeightFieldRenderer>("a");
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("vyrOSG.DeformableHeightFieldRenderer:new(deformer)"));
  EXPECT_EQ("false nil", lua.eval("b:isValid(), b:getHeightFieldNode()"));
}

TEST_F(DeformableHeightFieldRenderer, SeesItsNodeDisappear) {
  EXPECT_EQ("true vyrOSG::GeometryNode", lua.eval("r:isValid(), r:getHeightFieldNode()"));
  group->removeChildren(0, 1);
  EXPECT_EQ("nil", lua.eval("r:getHeightFieldNode()"));
  // The flag is the toolkit's: it follows at the next step.
  EXPECT_EQ("true", lua.eval("r:isValid()"));
  EXPECT_EQ("", lua.run("return r:last(time)"));
  EXPECT_EQ("false", lua.eval("r:isValid()"));
}

TEST_F(DeformableHeightFieldRenderer, RefusesWhatDoesNotFit) {
  const Call calls[] = {{"last", "time"}, {"getHeightFieldNode", ""}, {"isValid", ""}};
  expectRefusals("vyrOSG.DeformableHeightFieldRenderer", "r", "vyrOSG::DeformableHeightFieldRenderer", calls);
  const vyr::ref_ptr<vyrOSG::DeformableHeightFieldRenderer> other =
      new vyrOSG::DeformableHeightFieldRenderer(deformer.get(), group);
  expectConstant("vyrOSG.DeformableHeightFieldRenderer", other.get(), "vyrOSG::DeformableHeightFieldRenderer", calls,
                 "isValid");
  EXPECT_EQ("#ferror in function 'last'.", lua.raised("r:last(nil)"));
}

TEST(GroundRendererModules, CarryNoSharedBlock) {
  for (const char* name : {"TerrainRenderer", "DeformableHeightFieldRenderer"}) {
    bindingtest::LuaState lua;
    for (const vyrOSGModules::Module& module : vyrOSGModules::kModules) {
      if (std::string(module.name) == name) {
        module.open(lua.get());
      }
    }
    EXPECT_EQ("nil table", lua.eval(std::string("vyr, type(vyrOSG.") + name + ") == 'table' and {}")) << name;
  }
}

} // namespace
