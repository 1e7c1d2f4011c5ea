// The modules SplineRenderer and WireRenderer: every row, with results, chains, ownership and errors.
#include "CallChecks.h"

#include <vyr/VectorPOD.h>
#include <vyrOSG/SplineRenderer.h>
#include <vyrOSG/WireRenderer.h>
#include <vyrUtil/Spline.h>
#include <vyrWire/Wire.h>

#include <osg/Group>

#include <string>

namespace {

using bindingtest::Call;

/// Notes which of the virtual updates was called, and with what.
class Probe : public vyrOSG::SplineRenderer {
public:
  using vyrOSG::SplineRenderer::SplineRenderer;
  void update() override { calls += "plain "; }
  void update(const vyr::RealVector& values) override { calls += std::to_string(values.size()) + " values "; }
  std::string calls;
};

class SplineRenderer : public bindingtest::CallChecks {
protected:
  SplineRenderer() {
    spline->add(vyr::Vec3(0, 0, 0));
    spline->add(vyr::Vec3(1, 0, 0));
    set("spline", spline.get(), "vyrUtil::Spline");
    set("group", group.get(), "osg::Group");
    set("values", &values, "vyr::RealVector");
    set("color", &color, "vyr::Vec4");
    lua.run("r = vyrOSG.SplineRenderer(spline, group)");
  }
  vyrOSG::SplineRenderer* renderer() { return global<vyrOSG::SplineRenderer>("r"); }

  vyr::ref_ptr<vyrUtil::Spline> spline{new vyrUtil::Spline};
  osg::ref_ptr<osg::Group> group{new osg::Group};
  vyr::RealVector values{1.0, 2.0};
  vyr::Vec4 color{0.1, 0.2, 0.3, 1};
};

TEST_F(SplineRenderer, IsBuiltThreeWays) {
  lua.run("a = vyrOSG.SplineRenderer:new(spline, nil) b = vyrOSG.SplineRenderer:new_local(nil, group)");
  EXPECT_EQ(0, global<vyrOSG::SplineRenderer>("a")->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::SplineRenderer>("b")->getReferenceCount());
  EXPECT_EQ(1, renderer()->getReferenceCount());
  const vyr::ref_ptr<vyrOSG::SplineRenderer> keep = global<vyrOSG::SplineRenderer>("a");
  for (const char* call : {"vyrOSG.SplineRenderer:new(spline)", "vyrOSG.SplineRenderer:new(1, group)",
                           "vyrOSG.SplineRenderer(spline, group, 1)"}) {
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
  }
}

TEST_F(SplineRenderer, CollectionTakesTheDrawingAway) {
  EXPECT_EQ(1u, group->getNumChildren());
  EXPECT_EQ(2, spline->getReferenceCount());
  lua.run("r = nil");
  lua.collect();
  EXPECT_EQ(0u, group->getNumChildren());
  EXPECT_EQ(1, spline->getReferenceCount());
}

TEST_F(SplineRenderer, UpdateChoosesByItsArgument) {
  const vyr::ref_ptr<Probe> probe = new Probe(spline.get(), nullptr);
  set("p", static_cast<vyrOSG::SplineRenderer*>(probe.get()), "vyrOSG::SplineRenderer");
  EXPECT_EQ("", lua.run("return p:update()"));
  EXPECT_EQ("", lua.run("return p:update(values)"));
  EXPECT_EQ("plain 2 values ", probe->calls);
  EXPECT_EQ("#ferror in function 'update'.", lua.raised("p:update(nil)"));
}

TEST_F(SplineRenderer, TheSplineIsHeldAndLetGo) {
  EXPECT_EQ("vyrUtil::Spline", lua.eval("r:getSplineModel()"));
  EXPECT_EQ("", lua.run("return r:setSplineModel(spline)"));
  EXPECT_EQ(2, spline->getReferenceCount());
  EXPECT_EQ("", lua.run("return r:setSplineModel(nil)"));
  EXPECT_EQ(1, spline->getReferenceCount());
  EXPECT_EQ("nil", lua.eval("r:getSplineModel()"));
}

TEST_F(SplineRenderer, NumbersAreStoredUnchanged) {
  EXPECT_EQ("", lua.run("return r:setRadius(-0.5)"));
  EXPECT_EQ("-0.5", lua.eval("r:getRadius()"));
  EXPECT_EQ("", lua.run("return r:setNumSegmentsPerUnitLength(-3)"));
  EXPECT_EQ("-3", lua.eval("r:getNumSegmentsPerUnitLength()"));
}

TEST_F(SplineRenderer, TheColourComesAsAFreshVector) {
  EXPECT_EQ("", lua.run("return r:setColor(color)"));
  EXPECT_EQ(color, renderer()->getColor());
  lua.run("a, b = r:getColor(), r:getColor()");
  EXPECT_EQ("vyr::Vec4 false", lua.eval("a, rawequal(a, b)"));
  EXPECT_EQ("#ferror in function 'setColor'.", lua.raised("r:setColor(nil)"));
}

TEST_F(SplineRenderer, RefusesWhatDoesNotFit) {
  const Call calls[] = {{"update", "values"},
                        {"update", ""},
                        {"setSplineModel", "spline"},
                        {"getSplineModel", ""},
                        {"setRadius", "1"},
                        {"getRadius", ""},
                        {"setNumSegmentsPerUnitLength", "1"},
                        {"getNumSegmentsPerUnitLength", ""},
                        {"setColor", "color"},
                        {"getColor", ""}};
  expectRefusals("vyrOSG.SplineRenderer", "r", "vyrOSG::SplineRenderer", calls);
  // An object that Lua does not know as a writable one yet.
  const vyr::ref_ptr<vyrOSG::SplineRenderer> other = new vyrOSG::SplineRenderer(spline.get(), nullptr);
  expectConstant("vyrOSG.SplineRenderer", other.get(), "vyrOSG::SplineRenderer", calls,
                 "getRadius getNumSegmentsPerUnitLength getColor");
}

class WireRenderer : public bindingtest::CallChecks {
protected:
  WireRenderer() {
    set("wire", wire.get(), "vyrWire::Wire");
    set("group", group.get(), "osg::Group");
    lua.run("r = vyrOSG.WireRenderer(wire, group)");
  }
  vyr::ref_ptr<vyrWire::Wire> wire{new vyrWire::Wire(2, 8, 1, 0.03)};
  osg::ref_ptr<osg::Group> group{new osg::Group};
};

TEST_F(WireRenderer, IsBuiltThreeWays) {
  lua.run("a = vyrOSG.WireRenderer:new(wire, nil) b = vyrOSG.WireRenderer:new_local(nil, nil)");
  EXPECT_EQ(0, global<vyrOSG::WireRenderer>("a")->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::WireRenderer>("b")->getReferenceCount());
  const vyr::ref_ptr<vyrOSG::WireRenderer> keep = global<vyrOSG::WireRenderer>("a");
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("vyrOSG.WireRenderer:new(wire)"));
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("vyrOSG.WireRenderer(wire, group, 1)"));
}

TEST_F(WireRenderer, AnswersTheSplineRenderersMethods) {
  EXPECT_EQ("", lua.run("return r:setRadius(0.05)"));
  EXPECT_EQ("0.05 vyrUtil::Spline", lua.eval("r:getRadius(), r:getSplineModel()"));
  EXPECT_EQ("none", lua.raised("r:update()"));
  EXPECT_EQ(9u, global<vyrOSG::WireRenderer>("r")->getSplineModel()->getNumPoints());
}

TEST_F(WireRenderer, CollectionTakesTheDrawingAway) {
  EXPECT_EQ(1u, group->getNumChildren());
  lua.run("r = nil");
  lua.collect();
  EXPECT_EQ(0u, group->getNumChildren());
}

} // namespace
