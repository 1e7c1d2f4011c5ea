// The modules PressureRenderer, PressureFromContacts and PressureFieldRenderer: defaults, overloads, indices.
#include "CallChecks.h"
#include "GivenObjects.h"
#include "MessageLines.h"

#include <vyrCollide/Box.h>
#include <vyrCollide/Trimesh.h>
#include <vyrOSG/PressureFieldRenderer.h>
#include <vyrOSG/PressureRenderer.h>
#include <vyrSDK/GeometryFilter.h>

#include <string>

namespace {

using vyrOSG::PressureFromContacts;
using vyrOSG::PressureRenderer;

class PressureModules : public bindingtest::CallChecks {
protected:
  PressureModules() {
    colors.push_back(vyrRender::Color(0, 0, 1));
    colors.push_back(vyrRender::Color(1, 0, 0));
    simulation->add(geometry.get());
    set("sim", simulation.get(), "vyrSDK::Simulation");
    set("geometry", geometry.get(), "vyrCollide::Geometry");
    set("mesh", mesh.get(), "vyrCollide::Trimesh");
    set("atlas", atlas.get(), "vyrOSG::PressureAtlas");
    set("filter", filter.get(), "vyrSDK::ExecuteFilter");
    set("group", group.get(), "vyrOSG::Group");
    set("decorator", decorator.get(), "vyrOSG::SceneDecorator");
    set("colors", &colors, "vyrRender::ColorVector");
    set("place", &place, "vyr::Vec2");
    lua.run("contacts = vyrOSG.PressureFromContacts(sim, atlas)"
            " renderer = vyrOSG.PressureRenderer(group, decorator, sim, 1, 2, colors)"
            " field = vyrOSG.PressureFieldRenderer(group)");
  }

  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  vyr::ref_ptr<vyrCollide::Geometry> geometry{new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(0.5, 0.5, 0.5)))};
  vyr::ref_ptr<vyrCollide::Trimesh> mesh{
      new vyrCollide::Trimesh({vyr::Vec3(0, 0, 0), vyr::Vec3(1, 0, 0), vyr::Vec3(0, 1, 0)}, {0, 1, 2})};
  vyr::ref_ptr<vyrOSG::PressureAtlas> atlas{new vyrOSG::PressureAtlas(geometry.get())};
  vyr::ref_ptr<vyrSDK::GeometryFilter> filter{new vyrSDK::GeometryFilter(geometry.get())};
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  osg::ref_ptr<vyrOSG::SceneDecorator> decorator{new vyrOSG::SceneDecorator(320, 240)};
  vyrRender::ColorVector colors;
  vyr::Vec2 place{12, 34};
};

TEST_F(PressureModules, ContactsTakeTheDefaults) {
  const auto* contacts = global<PressureFromContacts>("contacts");
  EXPECT_EQ(2e-5, contacts->getRangeFactor());
  EXPECT_EQ(PressureFromContacts::TOTAL_FORCE, contacts->getForceType());
  EXPECT_EQ(simulation.get(), contacts->getSimulation());
  EXPECT_EQ(atlas.get(), contacts->getAtlas());
  lua.run("other = vyrOSG.PressureFromContacts:new(sim, atlas, 1e-4, 1)");
  EXPECT_EQ(1e-4, global<PressureFromContacts>("other")->getRangeFactor());
  EXPECT_EQ(PressureFromContacts::NORMAL_FORCE, global<PressureFromContacts>("other")->getForceType());
  lua.run("third = vyrOSG.PressureFromContacts:new(sim, atlas, 3e-4)");
  EXPECT_EQ(3e-4, global<PressureFromContacts>("third")->getRangeFactor());
  EXPECT_EQ(PressureFromContacts::TOTAL_FORCE, global<PressureFromContacts>("third")->getForceType());
  for (const char* call : {"vyrOSG.PressureFromContacts:new(sim)", "vyrOSG.PressureFromContacts(atlas, sim)",
                           "vyrOSG.PressureFromContacts:new(sim, atlas, 'a')",
                           "vyrOSG.PressureFromContacts:new_local(sim, atlas, 1, 2, 3)"})
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
}

TEST_F(PressureModules, ContactsAreCounted) {
  // The simulation holds a generator as well as Lua does.
  EXPECT_EQ(2, global<PressureFromContacts>("contacts")->getReferenceCount());
  lua.run("alone = vyrOSG.PressureFromContacts(nil, atlas)");
  const vyr::observer_ptr<PressureFromContacts> alone = global<PressureFromContacts>("alone");
  EXPECT_EQ(1, alone->getReferenceCount());
  lua.run("alone = nil");
  lua.collect();
  EXPECT_FALSE(alone.valid());
}

TEST_F(PressureModules, ContactsHaveARangeFactorAndFilters) {
  EXPECT_EQ("", lua.run("return contacts:setRangeFactor(0.5)"));
  EXPECT_EQ("0.5", lua.eval("contacts:getRangeFactor()"));
  EXPECT_EQ("", lua.run("return contacts:addFilter(filter)"));
  EXPECT_EQ("", lua.run("return contacts:addFilter(nil)"));
  EXPECT_EQ(2, filter->getReferenceCount());
  const bindingtest::Call calls[] = {{"setRangeFactor", "1"}, {"getRangeFactor", ""}, {"addFilter", "filter"}};
  expectRefusals("vyrOSG.PressureFromContacts", "contacts", "vyrOSG::PressureFromContacts", calls);
  // An object that Lua has not seen: the runtime keeps the type of those that it knows.
  const vyr::ref_ptr<PressureFromContacts> fresh = new PressureFromContacts(nullptr, nullptr);
  expectConstant("vyrOSG.PressureFromContacts", fresh.get(), "vyrOSG::PressureFromContacts", calls, "getRangeFactor");
}

TEST_F(PressureModules, RendererHasThreeConstructors) {
  struct Case {
    const char* arguments;
    double resolution;
  };
  const Case cases[] = {{"group, decorator, sim, 1, 2, colors", 50},
                        {"group, decorator, sim, 1, 2, colors, 10", 10},
                        {"group, decorator, sim, 1, 2, colors, 20, 1e-3", 20},
                        {"group, decorator, sim, 1, 2, colors, 30, 1e-3, 0", 30}};
  for (const Case& one : cases) {
    for (const char* way : {":new", ":new_local", ""}) {
      lua.run(std::string("made = vyrOSG.PressureRenderer") + way + "(" + one.arguments + ")");
      EXPECT_EQ("vyrOSG::PressureRenderer", lua.eval("made")) << one.arguments << way;
      auto* made = global<PressureRenderer>("made");
      EXPECT_EQ(one.resolution, made->getPressureAtlasManager()->getResolution());
      EXPECT_EQ(1, made->getColorRange()->getMin());
      EXPECT_EQ(2, made->getColorRange()->getMax());
      EXPECT_EQ(std::string(way) == ":new" ? 1 : 2, made->getReferenceCount());
    }
  }
  for (const char* call : {"vyrOSG.PressureRenderer:new(group, decorator, sim, 1, 2, nil)",
                           "vyrOSG.PressureRenderer:new(group, decorator, sim, 1, 2)",
                           "vyrOSG.PressureRenderer(group, decorator, sim, 1, 2, colors, nil, nil)",
                           "vyrOSG.PressureRenderer(group, decorator, sim, 1, 2, colors, 1, 1, 1, 1)"})
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
}

TEST_F(PressureModules, RendererTakesGeometriesAndMeshes) {
  EXPECT_EQ("true", lua.eval("renderer:addGeometry(geometry)"));
  EXPECT_EQ("false", lua.eval("renderer:addGeometry(geometry, false)"));
  EXPECT_EQ("false", lua.eval("renderer:addGeometry(nil)"));
  EXPECT_EQ("false", lua.eval("renderer:addTrimesh(mesh)"));
  const vyr::ref_ptr<vyrCollide::Geometry> carrier(new vyrCollide::Geometry(mesh.get()));
  simulation->add(carrier.get());
  EXPECT_EQ("true", lua.eval("renderer:addTrimesh(mesh, false)"));
  for (const char* call : {"renderer:addGeometry()", "renderer:addGeometry(mesh)", "renderer:addGeometry(geometry, 1)"})
    EXPECT_EQ("#ferror in function 'addGeometry'.", lua.raised(call)) << call;
  EXPECT_EQ("#ferror in function 'addTrimesh'.", lua.raised("renderer:addTrimesh(geometry)"));
}

TEST_F(PressureModules, RendererRecords) {
  lua.run("renderer:addGeometry(geometry)");
  EXPECT_EQ("false", lua.eval("renderer:isRecording()"));
  EXPECT_EQ("true", lua.eval("renderer:startMaxAvgRecording()"));
  EXPECT_EQ("false true", lua.eval("renderer:startMaxAvgRecording(), renderer:isRecording()"));
  simulation->step();
  EXPECT_EQ("0 1", lua.eval("renderer:stopMaxAvgRecording(), renderer:getNumRecordings()"));
  EXPECT_EQ("true true true false", lua.eval("renderer:renderMaxPressure(0), renderer:renderAvgPressure(0),"
                                             "renderer:restoreRendering(), renderer:restoreRendering()"));
}

TEST_F(PressureModules, IndicesKeepTheirLow32Bits) {
  const bindingtest::MessageLines lines;
  for (int i = 0; i < 4; ++i)
    lua.run("renderer:startMaxAvgRecording() renderer:stopMaxAvgRecording()");
  EXPECT_EQ("true", lua.eval("renderer:renderMaxPressure(3)"));
  EXPECT_EQ("true", lua.eval("renderer:renderMaxPressure(4294967299)"));
  EXPECT_EQ("true", lua.eval("renderer:renderAvgPressure(3.9)"));
  EXPECT_EQ("true", lua.eval("renderer:renderAvgPressure(4294967296)"));
  EXPECT_EQ("false", lua.eval("renderer:renderMaxPressure(4)"));
  EXPECT_EQ("false", lua.eval("renderer:renderAvgPressure(-1)"));
  EXPECT_EQ("#ferror in function 'renderMaxPressure'.", lua.raised("renderer:renderMaxPressure()"));
  EXPECT_EQ("#ferror in function 'renderAvgPressure'.", lua.raised("renderer:renderAvgPressure('a')"));
}

TEST_F(PressureModules, RendererHasALegend) {
  EXPECT_EQ("", lua.run("return renderer:setLegendPosition(place)"));
  lua.run("a = renderer:getLegendPosition() b = renderer:getLegendPosition()");
  EXPECT_EQ("vyr::Vec2", lua.eval("a"));
  EXPECT_NE(global<vyr::Vec2>("a"), global<vyr::Vec2>("b"));
  EXPECT_EQ(place, *global<vyr::Vec2>("a"));
  global<vyr::Vec2>("a")->set(1, 1);
  EXPECT_EQ(place, global<PressureRenderer>("renderer")->getLegendPosition());
  EXPECT_EQ("", lua.run("return renderer:setLegendPosition(a)"));
  EXPECT_EQ(vyr::Vec2(1, 1), global<PressureRenderer>("renderer")->getLegendPosition());
  EXPECT_EQ("", lua.run("return renderer:setEnableLegend(false)"));
  EXPECT_EQ("#ferror in function 'setLegendPosition'.", lua.raised("renderer:setLegendPosition(nil)"));
  EXPECT_EQ("#ferror in function 'setEnableLegend'.", lua.raised("renderer:setEnableLegend()"));
}

TEST_F(PressureModules, RendererHandsItsPartsOut) {
  EXPECT_EQ("osgSim::ColorRange", lua.eval("renderer:getColorRange()"));
  EXPECT_EQ("vyrOSG::PressureAtlasManager", lua.eval("renderer:getPressureAtlasManager()"));
  lua.run("range = renderer:getColorRange() manager = renderer:getPressureAtlasManager()");
  EXPECT_EQ(global<PressureRenderer>("renderer")->getColorRange(), global<osgSim::ColorRange>("range"));
  EXPECT_EQ(global<PressureRenderer>("renderer")->getPressureAtlasManager(),
            global<vyrOSG::PressureAtlasManager>("manager"));
}

TEST_F(PressureModules, RendererRefusesForeignAndNullSelfAndSurplus) {
  const bindingtest::MessageLines lines;
  const bindingtest::Call calls[] = {
      {"addTrimesh", "mesh, true"}, {"addGeometry", "geometry, true"}, {"startMaxAvgRecording", ""},
      {"isRecording", ""},          {"stopMaxAvgRecording", ""},       {"getNumRecordings", ""},
      {"renderMaxPressure", "0"},   {"renderAvgPressure", "0"},        {"restoreRendering", ""},
      {"setEnableLegend", "true"},  {"getLegendPosition", ""},         {"setLegendPosition", "place"},
      {"getColorRange", ""},        {"getPressureAtlasManager", ""},   {"addFilter", "filter"}};
  expectRefusals("vyrOSG.PressureRenderer", "renderer", "vyrOSG::PressureRenderer", calls);
  const vyr::ref_ptr<PressureRenderer> fresh = new PressureRenderer(nullptr, nullptr, nullptr, 0, 1, colors);
  expectConstant("vyrOSG.PressureRenderer", fresh.get(), "vyrOSG::PressureRenderer", calls, "getLegendPosition");
}

TEST_F(PressureModules, FieldRendererHasTwoConstructors) {
  for (const char* way : {":new", ":new_local", ""}) {
    for (const char* arguments : {"(group)", "(nil)", "(group, 2.5)"}) {
      lua.run(std::string("made = vyrOSG.PressureFieldRenderer") + way + arguments);
      EXPECT_EQ("vyrOSG::PressureFieldRenderer", lua.eval("made")) << way << arguments;
      EXPECT_EQ(std::string(way) == ":new" ? 0 : 1, global<vyrOSG::PressureFieldRenderer>("made")->getReferenceCount());
    }
  }
  for (const char* call : {"vyrOSG.PressureFieldRenderer:new()", "vyrOSG.PressureFieldRenderer(group, nil)",
                           "vyrOSG.PressureFieldRenderer(group, 1, 2)", "vyrOSG.PressureFieldRenderer(sim)"})
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
}

TEST_F(PressureModules, FieldRendererIsWhatModelsAskFor) {
  tolua_Error error;
  lua_getglobal(lua.get(), "field");
  EXPECT_EQ(1, tolua_isusertype(lua.get(), lua_gettop(lua.get()), "vyrModel::PressureFieldRenderer", 0, &error));
  EXPECT_EQ(1, tolua_isusertype(lua.get(), lua_gettop(lua.get()), "vyr::Referenced", 0, &error));
}

TEST(PressureModulesAlone, RendererBringsTheForcesButNoConstructorOfContacts) {
  bindingtest::LuaState lua;
  tolua_vyrOSG_PressureRenderer_open(lua.get());
  EXPECT_EQ("0 1 2 nil",
            lua.eval("vyrOSG.PressureFromContacts.TANGENTIAL_FORCE, vyrOSG.PressureFromContacts.NORMAL_FORCE,"
                     "vyrOSG.PressureFromContacts.TOTAL_FORCE, vyrOSG.PressureFromContacts.new"));
  tolua_vyrOSG_PressureFromContacts_open(lua.get());
  EXPECT_EQ("2 function", lua.eval("vyrOSG.PressureFromContacts.TOTAL_FORCE, type(vyrOSG.PressureFromContacts.new)"));
}

TEST(PressureModulesAlone, ContactsKeepTheirBaseAndCollectorInEitherOrder) {
  for (const bool contactsFirst : {true, false}) {
    bindingtest::LuaState lua;
    if (contactsFirst)
      tolua_vyrOSG_PressureFromContacts_open(lua.get());
    tolua_vyrOSG_PressureRenderer_open(lua.get());
    if (!contactsFirst)
      tolua_vyrOSG_PressureFromContacts_open(lua.get());
    lua.run("made = vyrOSG.PressureFromContacts(nil, nil)");
    const vyr::observer_ptr<PressureFromContacts> made(bindingtest::taken<PressureFromContacts>(lua, "made"));
    tolua_Error error;
    lua_getglobal(lua.get(), "made");
    EXPECT_EQ(1, tolua_isusertype(lua.get(), lua_gettop(lua.get()), "vyrOSG::PressureGenerator", 0, &error));
    lua_pop(lua.get(), 1);
    lua.run("made = nil");
    lua.collect();
    EXPECT_FALSE(made.valid());
  }
}

} // namespace
