// The module SimulationObject.
#include "ModuleTest.h"

#include <osg/Group>
#include <osg/Observer>
#include <vyr/AffineMatrix4x4.h>
#include <vyr/Referenced.h>
#include <vyr/RigidBody.h>
#include <vyr/Vec3.h>
#include <vyr/VectorPOD.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Geometry.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/SimulationObject.h>

#include <string>
#include <utility>

namespace {

class SimulationObjectModule : public bindingtest::ModuleTest {
protected:
  SimulationObjectModule() {
    set("m", &matrix, "vyr::AffineMatrix4x4");
    set("v", &size, "vyr::Vec3");
    set("g", group.get(), "vyrOSG::Group");
    lua.run("S = vyrOSG.SimulationObject");
  }

  vyr::AffineMatrix4x4 matrix;
  vyr::Vec3 size{1, 1, 1};
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
};

TEST_F(SimulationObjectModule, Constants) {
  EXPECT_EQ("1 2 3", lua.eval("vyr.RigidBody.STATIC, vyr.RigidBody.KINEMATICS, vyr.RigidBody.DYNAMICS"));
  EXPECT_EQ("1 nil nil", lua.eval("DEFAULT_DETAIL_RATIO, vyr.DEFAULT_DETAIL_RATIO, vyrOSG.DEFAULT_DETAIL_RATIO"));
}

TEST_F(SimulationObjectModule, ConstructorsChooseByArguments) {
  EXPECT_EQ("nil", lua.eval("S():getNode()"));
  osg::ref_ptr<osg::Node> node = new osg::Node;
  set("n", node.get(), "osg::Node");
  EXPECT_EQ("true nil", lua.eval("S(nil, nil, n):getNode() == n, S(nil, nil):getNode()"));
  EXPECT_EQ("true", lua.run("local s = S(nil, nil, n) return S(s):getNode() == n"));
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("S(1)"));
}

TEST_F(SimulationObjectModule, CopiesShareAndReleaseTheirParts) {
  osg::ref_ptr<osg::Node> node = new osg::Node;
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
  vyr::ref_ptr<vyrCollide::Geometry> geometry = new vyrCollide::Geometry(new vyrCollide::Box(size));
  const int nodes = node->referenceCount();
  const int bodies = body->getReferenceCount();
  const int geometries = geometry->getReferenceCount();
  set("n", node.get(), "osg::Node");
  set("b", body.get(), "vyr::RigidBody");
  set("q", geometry.get(), "vyrCollide::Geometry");
  lua.run("s = S(q, b, n) c = S(s)");
  EXPECT_EQ(nodes + 2, node->referenceCount());
  EXPECT_EQ(bodies + 2, body->getReferenceCount());
  EXPECT_EQ(geometries + 2, geometry->getReferenceCount());
  lua.run("c = nil");
  lua.collect();
  EXPECT_EQ(nodes + 1, node->referenceCount());
  EXPECT_EQ("true", lua.eval("s:getNode() == n"));
  lua.run("s:delete()");
  EXPECT_EQ(nodes, node->referenceCount());
  EXPECT_EQ(bodies, body->getReferenceCount());
  EXPECT_EQ(geometries, geometry->getReferenceCount());
  EXPECT_EQ("invalid 'self' in function 'getNode'", lua.raised("s:getNode()"));
  EXPECT_EQ("invalid 'self' in function 'delete'", lua.raised("s:delete()"));
}

/// Notes in a list that its object goes.
struct Farewell : vyr::Observer, osg::Observer {
  Farewell(std::string& inList, std::string inName)
      : list(inList)
      , name(std::move(inName)) {}
  void objectDeleted(vyr::Referenced*) override { list += name; }
  void objectDeleted(void*) override { list += name; }
  std::string& list;
  std::string name;
};

TEST_F(SimulationObjectModule, TheLastOneLetsNodeBodyAndGeometryGoInThatOrder) {
  for (const char* end : {"s:delete() s = nil", "s = nil collectgarbage() collectgarbage()",
                          "local c = S:new(s) s:delete() c:delete() s = nil"}) {
    std::string order;
    Farewell nodeGoes(order, "node ");
    Farewell bodyGoes(order, "body ");
    Farewell geometryGoes(order, "geometry ");
    osg::ref_ptr<osg::Node> node = new osg::Node;
    vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
    vyr::ref_ptr<vyrCollide::Geometry> geometry = new vyrCollide::Geometry(new vyrCollide::Box(size));
    node->addObserver(&nodeGoes);
    body->addObserver(&bodyGoes);
    geometry->addObserver(&geometryGoes);
    set("n", node.get(), "osg::Node");
    set("b", body.get(), "vyr::RigidBody");
    set("q", geometry.get(), "vyrCollide::Geometry");
    lua.run("s = S(q, b, n) n, b, q = nil, nil, nil");
    node = nullptr;
    body = nullptr;
    geometry = nullptr;
    EXPECT_EQ("", order) << end;
    EXPECT_EQ("", lua.run(end)) << end;
    EXPECT_EQ("node body geometry ", order) << end;
  }
}

TEST_F(SimulationObjectModule, TheBoxNeedsItsSimulation) {
  EXPECT_EQ("#ferror in function 'createBox'.", lua.raised("S:createBox('b', m, v, g)"));
  EXPECT_EQ("vyrOSG::SimulationObject b", lua.eval("S:createBox('b', m, v, g, nil)"));
  EXPECT_EQ("vyrOSG::SimulationObject s", lua.eval("S:createSphere('s', m, 1, g)"));
}

TEST_F(SimulationObjectModule, MotionDefaultsToStaticOrDynamics) {
  lua.run("p = S:createPlane('p', m, g) s = S:createSphere('s', m, 1, g) b = S:createBox('b', m, v, g, nil, 2.9)");
  EXPECT_EQ(vyr::RigidBody::STATIC, global<vyrOSG::SimulationObject>("p")->body->getMotionControl());
  EXPECT_EQ(vyr::RigidBody::DYNAMICS, global<vyrOSG::SimulationObject>("s")->body->getMotionControl());
  EXPECT_EQ(vyr::RigidBody::KINEMATICS, global<vyrOSG::SimulationObject>("b")->body->getMotionControl());
}

TEST_F(SimulationObjectModule, HeightFieldsGiveTheirArgumentsBack) {
  EXPECT_EQ("vyrOSG::SimulationObject h missing.png 1 2 3 4",
            lua.eval("S:createHeightField('h', m, 'missing.png', 1, 2, 3, 4, g)"));
  vyr::RealVector heights(4);
  for (std::size_t i = 0; i < 4; ++i) {
    heights[i] = 0;
  }
  set("r", &heights, "vyr::RealVector");
  EXPECT_EQ("vyrOSG::SimulationObject h", lua.eval("S:createHeightField('h', m, r, 2, 2, 1, 1, 1, g)"));
  EXPECT_EQ("#ferror in function 'createHeightField'.",
            lua.raised("S:createHeightField('h', m, nil, 2, 2, 1, 1, 1, g)"));
}

TEST_F(SimulationObjectModule, TrimeshesGiveTheirFileBack) {
  EXPECT_EQ("vyrOSG::SimulationObject t missing.obj", lua.eval("S:createTrimesh('t', m, 'missing.obj', g)"));
  EXPECT_EQ("vyrOSG::SimulationObject t missing.obj", lua.eval("S:createTrimesh('t', m, 'missing.obj', 2, g)"));
  EXPECT_EQ("vyrOSG::SimulationObject t", lua.run("local o, n = S:createTrimesh('t', m, nil, g) return o, n"));
}

TEST_F(SimulationObjectModule, StaticFunctionsTestTheClassTable) {
  EXPECT_EQ("#ferror in function 'createSphere'.", lua.raised("S.createSphere('s', m, 1, g)"));
  EXPECT_EQ("#ferror in function 'createCylinder'.", lua.raised("S:createCylinder('c', m, 1, g)"));
  EXPECT_EQ("#ferror in function 'createCapsule'.", lua.raised("S:createCapsule('c', nil, 1, 1, g)"));
}

} // namespace
