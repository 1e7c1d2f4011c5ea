// The module utils: visual functions, the scene root, and the arrows of forces.
#include "ModuleTest.h"

#include <vyr/Constraint1DOF.h>
#include <vyr/Frame.h>
#include <vyr/Hinge.h>
#include <vyr/ParticleSystem.h>
#include <vyr/RigidBodyEmitter.h>
#include <vyrCollide/Box.h>
#include <vyrOSG/ForceArrowRenderer.h>
#include <vyrOSG/utils.h>
#include <vyrRender/Color.h>
#include <vyrSDK/Assembly.h>
#include <vyrSDK/Simulation.h>
#include <vyrUtil/SimpleCar.h>

#include <osg/Material>
#include <osg/Texture2D>
#include <osg/ValueObject>
#include <osgDB/WriteFile>

#include <algorithm>
#include <filesystem>

namespace {

osg::Vec4 diffuseOf(osg::Node* node) {
  return static_cast<osg::Material*>(node->getStateSet()->getAttribute(osg::StateAttribute::MATERIAL))
      ->getDiffuse(osg::Material::FRONT);
}

class UtilsModule : public bindingtest::ModuleTest {
protected:
  UtilsModule() {
    body->add(geometry.get());
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(2, 2, 1, GL_RGB, GL_UNSIGNED_BYTE);
    std::fill_n(image->data(), image->getTotalSizeInBytes(), static_cast<unsigned char>(0));
    osgDB::writeImageFile(*image, picture);

    set("geometry", geometry.get(), "vyrCollide::Geometry");
    set("body", body.get(), "vyr::RigidBody");
    set("group", group.get(), "vyrOSG::Group");
    set("plain", plain.get(), "osg::Group");
    set("node", node.get(), "osg::Node");
    set("v", &vector, "vyr::Vec3");
    set("c4", &color4, "vyr::Vec4");
    set("color", &color, "vyrRender::Color");
    set("m", &matrix, "vyr::AffineMatrix4x4");
    set("frame", frame.get(), "vyr::Frame");
    set("hinge", static_cast<vyr::Constraint*>(hinge.get()), "vyr::Constraint");
    set("sim", simulation.get(), "vyrSDK::Simulation");
    lua.run("u = vyrOSG");
    lua_pushstring(lua.get(), picture.c_str());
    lua_setglobal(lua.get(), "picture");
  }
  ~UtilsModule() override {
    vyrOSG::OSGSceneRoot::set(nullptr);
    std::filesystem::remove(picture);
  }

  vyr::ref_ptr<vyrCollide::Geometry> geometry =
      new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(1, 1, 1)), "box");
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("body");
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  osg::ref_ptr<osg::Group> plain = new osg::Group;
  osg::ref_ptr<osg::Node> node = new osg::Node;
  vyr::Vec3 vector{1, 2, 3};
  vyr::Vec4 color4{0.25, 0.5, 0.75, 1};
  vyrRender::Color color{1, 0, 0, 1};
  vyr::AffineMatrix4x4 matrix;
  vyr::ref_ptr<vyr::Frame> frame = new vyr::Frame;
  vyr::ref_ptr<vyr::Hinge> hinge = new vyr::Hinge(new vyr::Frame(body.get()), new vyr::Frame);
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  std::string picture = (std::filesystem::temp_directory_path() /
                         ("vyr-utils-" + std::to_string(reinterpret_cast<uintptr_t>(this)) + ".png"))
                            .string();
};

TEST_F(UtilsModule, Constants) {
  EXPECT_EQ("0 1 2 3 4 5 6", lua.eval("u.DIFFUSE_TEXTURE, u.SHADOW_TEXTURE, u.SHADOW_JITTER_TEXTURE, "
                                      "u.NORMALMAP_TEXTURE, u.HEIGHTMAP_TEXTURE, u.SPECULARMAP_TEXTURE, "
                                      "u.SPHEREMAP_TEXTURE"));
  EXPECT_EQ("0 1 0 1 2", lua.run("local p = u.ParticleSystemDrawable return p.SPRITES, p.TRIANGLES, p.SIMPLE_SPRITES, "
                                 "p.ROTATION_SPRITES, p.ALPHA_SPRITES"));
}

TEST_F(UtilsModule, VisualsOfGeometries) {
  EXPECT_EQ("vyrOSG::GeometryNode", lua.eval("u.createVisual(geometry, group)"));
  EXPECT_EQ("vyrOSG::GeometryNode", lua.eval("u.createVisual(geometry, group, 1, true, true)"));
  EXPECT_EQ("nil", lua.eval("u.createVisual(geometry, nil)"));
  EXPECT_EQ("#ferror in function 'createVisual'.", lua.raised("u.createVisual(geometry, plain)"));
  EXPECT_EQ("#ferror in function 'createVisual'.", lua.raised("u.createVisual(geometry, group, 1, true, true, 1)"));
  EXPECT_EQ("true", lua.eval("u.findGeometryNode(geometry, group):getGeometry() == geometry"));
  EXPECT_EQ("nil", lua.eval("u.findGeometryNode(geometry, plain)"));
  EXPECT_EQ("#ferror in function 'findGeometryNode'.", lua.raised("u.findGeometryNode(geometry)"));
}

TEST_F(UtilsModule, SensorsAreSkippedByDefault) {
  geometry->setSensor(true);
  EXPECT_EQ("nil", lua.eval("u.createVisual(geometry, group)"));
  EXPECT_EQ("vyrOSG::GeometryNode", lua.eval("u.createVisual(geometry, group, 0.3, false, true)"));
}

TEST_F(UtilsModule, VisualsOfBodiesAndAssemblies) {
  EXPECT_EQ("vyrOSG::Group", lua.eval("u.createVisual(body, group)"));
  EXPECT_EQ("vyrOSG::Group", lua.eval("u.createVisual(body, group, 0.5, true)"));
  vyr::ref_ptr<vyrSDK::Assembly> assembly = new vyrSDK::Assembly;
  set("assembly", assembly.get(), "vyrSDK::Assembly");
  EXPECT_EQ("vyrOSG::Group", lua.eval("u.createVisual(assembly, group)"));
  EXPECT_EQ("vyrOSG::Group", lua.eval("u.createVisual(assembly, group, 0.5, true)"));
  vyr::ref_ptr<vyr::RigidBodyEmitter> emitter = new vyr::RigidBodyEmitter;
  set("emitter", emitter.get(), "vyr::RigidBodyEmitter");
  EXPECT_EQ("osg::Group", lua.run("local g = u.createVisual(emitter, group) return g"));
}

TEST_F(UtilsModule, Particles) {
  vyr::ref_ptr<vyr::ParticleSystem> particles = new vyr::ParticleSystem;
  set("particles", particles.get(), "vyr::ParticleSystem");
  EXPECT_EQ("nil", lua.eval("u.findParticleSystemDrawable(group)"));
  EXPECT_EQ("osg::Geode", lua.eval("u.createVisual(particles, group)"));
  EXPECT_EQ("vyrOSG::ParticleSystemDrawable 1",
            lua.run("d = u.findParticleSystemDrawable(group) return d, d:getParticleShaderMode()"));
  EXPECT_EQ("2", lua.run("d:setParticleShaderMode(2.7) return d:getParticleShaderMode()"));
  EXPECT_EQ("osg::Geode", lua.eval("u.createVisual(particles, group, 1, 0)"));
  EXPECT_EQ("osg::Geode", lua.eval("u.createParticleContactGraph(particles, group, 0, 10)"));
  EXPECT_EQ("osg::Geode", lua.eval("u.createParticleTrajectoriesVisual(particles, group, 0.1, 10)"));
  EXPECT_EQ("#ferror in function 'createParticleContactGraph'.",
            lua.raised("u.createParticleContactGraph(particles, group, 0)"));
}

TEST_F(UtilsModule, PathsOfBodies) {
  EXPECT_EQ("osg::Geode", lua.eval("u.createRigidBodyTrajectoriesVisual(sim, group, 0.1, 10)"));
  EXPECT_EQ("osg::Geode", lua.eval("u.createRigidBodyTrajectoriesVisual(sim, group, 0.1, 10, c4)"));
  EXPECT_EQ("#ferror in function 'createRigidBodyTrajectoriesVisual'.",
            lua.raised("u.createRigidBodyTrajectoriesVisual(sim, group, 0.1, 10, nil)"));
}

TEST_F(UtilsModule, Cars) {
  EXPECT_EQ("vyrUtil::SimpleCar", lua.run("car = u.createSimpleBoxCar(v, 100, sim, group) return car"));
  EXPECT_EQ(1u, group->getNumChildren());
  EXPECT_EQ("vyrOSG::Group", lua.eval("u.createVisual(car, group)"));
  EXPECT_EQ("vyrOSG::Group", lua.eval("u.createVisual(car, group, 0.5)"));
  EXPECT_EQ("vyrUtil::SimpleCar", lua.eval("u.createSimpleBoxCar(v, 100, sim, group, false)"));
  EXPECT_EQ(3u, group->getNumChildren());
  EXPECT_EQ("#ferror in function 'createSimpleBoxCar'.", lua.raised("u.createSimpleBoxCar(nil, 100, sim, group)"));
}

TEST_F(UtilsModule, TexturesGiveTheirPathBack) {
  const std::string found = "true " + picture;
  lua.run("u.createVisual(geometry, group)");
  EXPECT_EQ(found, lua.eval("u.setTexture(geometry, group, picture)"));
  EXPECT_EQ(found, lua.eval("u.setTexture(geometry, group, picture, true, u.NORMALMAP_TEXTURE)"));
  EXPECT_EQ(found, lua.eval("u.setTexture(body, group, picture)"));
  EXPECT_EQ(found, lua.eval("u.setTexture(body, group, picture, true, 1)"));
  EXPECT_EQ(found, lua.eval("u.setTexture(node, picture)"));
  EXPECT_EQ(found, lua.eval("u.setTexture(node, picture, true, 0, 2, 3)"));
  EXPECT_EQ("false nosuch.png", lua.eval("u.setTexture(node, 'nosuch.png')"));
  osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D;
  set("texture", texture.get(), "osg::Texture2D");
  EXPECT_EQ("true", lua.eval("u.setTexture(node, texture)"));
  EXPECT_EQ("true", lua.eval("u.setTexture(node, texture, true, 0, 2, 3)"));
  EXPECT_EQ(texture.get(), node->getStateSet()->getTextureAttribute(0, osg::StateAttribute::TEXTURE));
  EXPECT_EQ("#ferror in function 'setTexture'.", lua.raised("u.setTexture(node)"));
}

TEST_F(UtilsModule, CubeMapsGiveTheirStringsBack) {
  EXPECT_EQ("false sky", lua.eval("u.setCubeMapTexture(node, 'sky')"));
  EXPECT_EQ("false sky .png", lua.eval("u.setCubeMapTexture(node, 'sky', '.png')"));
  EXPECT_EQ("", lua.eval("u.setEnvMapReflectionCoefficient(node, 0.25)"));
  float coefficient = 0;
  EXPECT_TRUE(node->getStateSet()->getUniform("vyr_reflection")->get(coefficient));
  EXPECT_EQ(0.25f, coefficient);
}

TEST_F(UtilsModule, Texts) {
  lua.run("u.createVisual(geometry, group)");
  EXPECT_EQ("true first", lua.eval("u.addText(geometry, group, 'first', v, c4, 1)"));
  EXPECT_EQ("true second", lua.eval("u.addText(geometry, group, 'second', v, color, 1)"));
  EXPECT_EQ("osgText::Text osgText::Text nil",
            lua.eval("u.findText(geometry, group), u.findText(geometry, group, 1), u.findText(geometry, group, 2)"));
  EXPECT_EQ("#ferror in function 'addText'.", lua.raised("u.addText(geometry, group, 'x', v, nil, 1)"));
  EXPECT_EQ("#ferror in function 'addText'.", lua.raised("u.addText(geometry, group, 'x', v, c4)"));
}

TEST_F(UtilsModule, UniformsGiveTheirNameBack) {
  EXPECT_EQ("count", lua.eval("u.setUniformInt(node, 'count', 3.9)"));
  EXPECT_EQ("speed", lua.eval("u.setUniformFloat(node, 'speed', 0.5)"));
  EXPECT_EQ("count", lua.eval("u.setUniformInt(nil, 'count', 3)"));
  int count = 0;
  float speed = 0;
  EXPECT_TRUE(node->getStateSet()->getUniform("count")->get(count));
  EXPECT_TRUE(node->getStateSet()->getUniform("speed")->get(speed));
  EXPECT_EQ(3, count);
  EXPECT_EQ(0.5f, speed);
}

TEST_F(UtilsModule, Grids) {
  EXPECT_EQ("true", lua.eval("u.createGrid(2, 3, v, v, v, plain)"));
  EXPECT_EQ("false", lua.eval("u.createGrid(2, 3, v, v, v, nil)"));
  EXPECT_EQ("#ferror in function 'createGrid'.", lua.raised("u.createGrid(2, 3, v, nil, v, plain)"));
}

TEST_F(UtilsModule, AxesOfEveryKind) {
  const char* const calls[] = {"u.createAxesGivenFrame(geometry, frame, plain)",
                               "u.createAxesGivenFrame(geometry, frame, plain, 2, c4)",
                               "u.createAxes(geometry, m, plain)",
                               "u.createAxes(geometry, m, plain, 2, c4)",
                               "u.createAxesGivenFrame(body, frame, plain)",
                               "u.createAxesGivenFrame(body, frame, plain, 2, c4)",
                               "u.createAxes(body, m, plain)",
                               "u.createAxes(body, m, plain, 2, c4)",
                               "u.createAxes(hinge, plain)",
                               "u.createAxes(hinge, plain, 2, c4)"};
  unsigned int count = 0;
  for (const char* call : calls) {
    EXPECT_EQ("", lua.eval(call)) << call;
    EXPECT_EQ(++count, plain->getNumChildren()) << call;
  }
  EXPECT_EQ("", lua.eval("u.createAxes(hinge, group)"));
  EXPECT_EQ("", lua.eval("u.createAxes(hinge, group, 2, color)"));
  EXPECT_EQ(2u, group->getNumChildren());
}

TEST_F(UtilsModule, AxesWithAColorNeedTheirScale) {
  EXPECT_EQ("#ferror in function 'createAxes'.", lua.raised("u.createAxes(hinge, plain, c4)"));
  EXPECT_EQ("#ferror in function 'createAxes'.", lua.raised("u.createAxes(body, nil, plain)"));
  EXPECT_EQ("#ferror in function 'createAxesGivenFrame'.",
            lua.raised("u.createAxesGivenFrame(body, frame, plain, c4)"));
}

TEST_F(UtilsModule, ColorsOfNodes) {
  EXPECT_EQ("", lua.eval("u.setDiffuseColor(node, c4)"));
  EXPECT_EQ(osg::Vec4(0.25f, 0.5f, 0.75f, 1), diffuseOf(node));
  EXPECT_EQ("", lua.eval("u.setDiffuseColor(node, color)"));
  EXPECT_EQ(osg::Vec4(1, 0, 0, 1), diffuseOf(node));
  EXPECT_EQ("", lua.eval("u.setSpecularColor(node, c4)"));
  EXPECT_EQ("", lua.eval("u.setSpecularColor(node, color)"));
  EXPECT_EQ("", lua.eval("u.setAmbientColor(node, c4)"));
  EXPECT_EQ("", lua.eval("u.setAmbientColor(node, color)"));
  EXPECT_EQ("", lua.eval("u.setShininess(node, 5)"));
  EXPECT_EQ("", lua.eval("u.setAlpha(node, 0.5)"));
  EXPECT_EQ(0.5f, diffuseOf(node).a());
  for (const char* name : {"setDiffuseColor", "setSpecularColor", "setAmbientColor", "setShininess", "setAlpha"})
    EXPECT_EQ(std::string("#ferror in function '") + name + "'.", lua.raised(std::string("u.") + name + "(node, nil)"));
}

TEST_F(UtilsModule, ColorsOfBodiesAndGeometries) {
  osg::ref_ptr<osg::Node> visual = vyrOSG::createVisual(geometry.get(), group.get());
  lua.run("u.setDiffuseColor(body, c4, group)");
  EXPECT_EQ(osg::Vec4(0.25f, 0.5f, 0.75f, 1), diffuseOf(visual));
  lua.run("u.setDiffuseColor(geometry, color, group)");
  EXPECT_EQ(osg::Vec4(1, 0, 0, 1), diffuseOf(visual));
  lua.run("u.setDiffuseColor(geometry, c4, group)");
  EXPECT_EQ(osg::Vec4(0.25f, 0.5f, 0.75f, 1), diffuseOf(visual));
  lua.run("u.setDiffuseColor(body, color, group)");
  EXPECT_EQ(osg::Vec4(1, 0, 0, 1), diffuseOf(visual));
}

TEST_F(UtilsModule, LightsAndWires) {
  EXPECT_EQ("", lua.eval("u.setEnableLight(false, 1, node)"));
  EXPECT_EQ(0u, node->getStateSet()->getMode(GL_LIGHT1) & osg::StateAttribute::ON);
  EXPECT_EQ("true", lua.eval("u.forceWireFrameModeOn(node)"));
  EXPECT_EQ("false", lua.eval("u.forceWireFrameModeOn(nil)"));
}

TEST_F(UtilsModule, TheSceneRoot) {
  EXPECT_EQ("vyrOSG::OSGSceneRoot", lua.eval("u.OSGSceneRoot:instance()"));
  EXPECT_EQ("nil", lua.run("u.OSGSceneRoot:set(nil) return u.OSGSceneRoot:get()"));
  EXPECT_EQ("true", lua.run("u.OSGSceneRoot:create(group) return u.OSGSceneRoot:get() == group"));
  EXPECT_EQ("true true", lua.run("local r = u.OSGSceneRoot:instance() "
                                 "return r:createVisual(body), r:createVisual(geometry, 0.5)"));
  EXPECT_EQ("#ferror in function 'instance'.", lua.raised("u.OSGSceneRoot.instance()"));
}

TEST_F(UtilsModule, ForceArrowsAreOwnedByLua) {
  EXPECT_EQ("vyrOSG::ForceArrowRenderer", lua.run("r = u.ForceArrowRenderer() return r"));
  vyr::ref_ptr<vyrOSG::ForceArrowRenderer> renderer = global<vyrOSG::ForceArrowRenderer>("r");
  EXPECT_EQ(2, renderer->getReferenceCount());
  lua.run("r = nil");
  lua.collect();
  EXPECT_EQ(1, renderer->getReferenceCount());
}

TEST_F(UtilsModule, ForceArrowsTakeBodiesAndConstraints) {
  lua.run("r = u.ForceArrowRenderer()");
  EXPECT_EQ("", lua.eval("r:add(body, v)"));
  EXPECT_EQ("true false", lua.eval("r:remove(body), r:remove(body)"));
  vyrOSG::Constraint1DOFObserverVector constraints;
  constraints.push_back(vyr::observer_ptr<vyr::Constraint1DOF>(hinge.get()));
  set("constraints", &constraints, "vyrOSG::Constraint1DOFObserverVector");
  set("hinge1", static_cast<vyr::Constraint1DOF*>(hinge.get()), "vyr::Constraint1DOF");
  EXPECT_EQ("", lua.eval("r:add(constraints, v)"));
  EXPECT_EQ("true false", lua.eval("r:remove(constraints), r:remove(constraints)"));
  EXPECT_EQ("true", lua.run("r:add(constraints, v) return r:remove(hinge1)"));
  EXPECT_EQ("#ferror in function 'add'.", lua.raised("r:add(body, nil)"));
  EXPECT_EQ("#ferror in function 'remove'.", lua.raised("r:remove(1)"));
}

TEST_F(UtilsModule, ForceArrowSettersGiveTheirNumberBack) {
  lua.run("r = u.ForceArrowRenderer()");
  for (const char* property : {"SmoothFactor", "ConeLength", "ArrowRadius", "Scale"}) {
    const std::string name(property);
    EXPECT_EQ("0.5", lua.eval("r:set" + name + "(0.5)"));
    EXPECT_EQ("0.5", lua.eval("r:get" + name + "()"));
    EXPECT_EQ("#ferror in function 'set" + name + "'.", lua.raised("r:set" + name + "()"));
  }
}

} // namespace
