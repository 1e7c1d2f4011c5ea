/// Looks in scene files: a scene is dressed, written, and read into another simulation, which then gives the same
/// picture.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"
#include "TemporaryFolder.h"
#include "TestPicture.h"

#include <vyrModel/Terrain.h>
#include <vyrOSG/ReaderWriter.h>
#include <vyrOSG/SimulationObject.h>
#include <vyrOSG/TerrainRenderer.h>
#include <vyrOSG/Tree.h>
#include <vyrOSG/WireRenderer.h>
#include <vyrOSG/utils.h>
#include <vyrSDK/Simulation.h>
#include <vyrUtil/SimpleCar.h>
#include <vyrWire/Wire.h>

#include <vyrCollide/Box.h>
#include <vyrCollide/Sphere.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <osg/Material>
#include <osgDB/WriteFile>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

namespace {

using testing::HasSubstr;
using vyrOSG::GeometryNode;
using vyrOSG::SimulationObject;

constexpr unsigned long kWhole =
    vyrOSG::READ_BODIES | vyrOSG::READ_CONSTRAINTS | vyrOSG::READ_SETTINGS | vyrOSG::CREATE_VISUALS;

// A tetrahedron with a red and a green material of its own.
const char* const kModel = "mtllib model.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nusemtl red\nf 1 3 2\nf 1 2 4\n"
                           "usemtl green\nf 1 4 3\nf 2 3 4\n";
const char* const kMaterials = "newmtl red\nKd 0.9 0.1 0.1\nnewmtl green\nKd 0.1 0.8 0.2\n";

vyr::AffineMatrix4x4 at(double x, double y, double z) {
  return vyr::AffineMatrix4x4::translate(x, y, z);
}

osg::Material* materialOf(osg::Node* node) {
  return static_cast<osg::Material*>(node->getStateSet()->getAttribute(osg::StateAttribute::MATERIAL));
}

class SceneFile : public testing::Test {
protected:
  SceneFile() {
    osg::ref_ptr<osg::Image> image = makePicture(16, 16, osg::Vec4(0.9f, 0.6f, 0.1f, 1), true);
    osgDB::writeImageFile(*image, folder / "tiles.png");
    osgDB::writeImageFile(*makePicture(16, 16, osg::Vec4(0.7f, 0.5f, 0.8f, 1)), folder / "bumps.png");
    std::ofstream(folder / "model.obj") << kModel;
    std::ofstream(folder / "model.mtl") << kMaterials;
  }

  /// Two rows of things, each dressed in another way.
  void build() {
    const auto still = vyr::RigidBody::STATIC;
    SimulationObject::createPlane("ground", at(0, 0, 0), root.get(), simulation.get(), still);
    const auto box = [&](const char* name, double x, double y) {
      return SimulationObject::createBox(name, at(x, y, 0.5), vyr::Vec3(0.8, 0.8, 0.8), root.get(), simulation.get(),
                                         still);
    };
    vyrOSG::setDiffuseColor(box("glass", -3, 0).node.get(), vyr::Vec4(0.2, 0.7, 0.9, 0.4));
    osg::ref_ptr<osg::Node> shiny = box("shiny", -2, 0).node;
    vyrOSG::setDiffuseColor(shiny.get(), vyr::Vec4(0.8, 0.2, 0.3, 1));
    vyrOSG::setSpecularColor(shiny.get(), vyr::Vec4(1, 1, 0.5, 1));
    vyrOSG::setShininess(shiny.get(), 12);
    vyrOSG::setAmbientColor(shiny.get(), vyr::Vec4(0, 0, 0.4, 1));
    vyrOSG::setTexture(box("tiled", -1, 0).node.get(), folder / "tiles.png", true, vyrOSG::DIFFUSE_TEXTURE, 3, 2);
    vyrOSG::setTexture(box("bumpy", 0, 0).node.get(), folder / "bumps.png", false, vyrOSG::NORMALMAP_TEXTURE);
    vyrOSG::forceWireFrameModeOn(box("wires", 1, 0).node.get());
    box("hidden", 2, 0).node->setNodeMask(0);
    vyrOSG::setAlpha(box("faint", 3, 0).node.get(), 0.3f);
    const SimulationObject model = SimulationObject::createTrimesh("model", at(-3, 2, 0), folder / "model.obj", 0.8,
                                                                   root.get(), simulation.get(), still);
    ASSERT_TRUE(model.node);
    const SimulationObject named = box("named", -1, 2);
    vyrOSG::addText(named.geometry.get(), root.get(), "Hi", vyr::Vec3(0, 0, 0.8), vyr::Vec4(1, 0.9, 0, 1), 0.5);
    vyrOSG::createAxes(named.geometry.get(), at(0, 0, 0.4), root.get(), 0.9f);
    auto* node = static_cast<GeometryNode*>(named.node.get());
    osg::ref_ptr<osg::MatrixTransform> hat = new osg::MatrixTransform(osg::Matrixd::translate(0.5, 0, 0.4));
    hat->addChild(vyrOSG::readNodeFile(folder / "model.obj"));
    node->addChild(hat);
    const SimulationObject sensor = SimulationObject::createBox("sensor", at(1, 2, 0.5), vyr::Vec3(0.5, 0.5, 0.9),
                                                                root.get(), simulation.get(), still, true, true, true);
    ASSERT_TRUE(sensor.node);
    addPair();
    // Present and not drawn.
    SimulationObject::createBox("secret", at(0, -1.5, 0.5), vyr::Vec3(1, 1, 1), root.get(), simulation.get(), still,
                                false);
    vyrUtil::SimpleCar* car = vyrOSG::createSimpleBoxCar(vyr::Vec3(1.6, 0.8, 0.3), 800, simulation.get(), root.get());
    car->transform(at(4, 2.5, 0.5));
  }

  /// A body of two geometries in a group that is dressed as a whole.
  void addPair() {
    vyr::ref_ptr<vyr::RigidBody> pair = new vyr::RigidBody("pair");
    pair->setMotionControl(vyr::RigidBody::STATIC);
    pair->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.4), "left"), at(-0.4, 0, 0));
    pair->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.3), "right"), at(0.4, 0, 0));
    pair->setPosition(vyr::Vec3(3, 2, 0.5));
    simulation->add(pair.get());
    vyrOSG::Group* group = vyrOSG::createVisual(pair.get(), root.get(), 0.8f, true);
    vyrOSG::setTexture(group, folder / "tiles.png");
    vyrOSG::setDiffuseColor(group, vyr::Vec4(0.5, 1, 0.5, 1));
  }

  vyr::ref_ptr<vyrModel::Terrain> makeTerrain() {
    vyr::RealVector heights;
    heights.assign(17 * 17, 0.4);
    return new vyrModel::Terrain(17, 17, 8, 8, heights);
  }

  osg::ref_ptr<osg::Image> draw(vyrOSG::Group& scene) {
    OffscreenViewer viewer(320, 240);
    if (!viewer.isReady())
      return nullptr;
    viewer.viewer()->setSceneData(&scene);
    viewer.camera()->setViewMatrixAsLookAt(osg::Vec3d(1.5, -7, 5), osg::Vec3d(0.4, 0.8, 0.3), osg::Vec3d(0, 0, 1));
    viewer.draw();
    return viewer.draw();
  }

  /// Pixels that differ by more than some levels of 255; usually the rounding of blended colours.
  static unsigned int countDifferences(const osg::Image& first, const osg::Image& second, float levels = 1.5f) {
    const float allowed = levels / 255;
    unsigned int count = 0;
    for (unsigned int y = 0; y < static_cast<unsigned int>(first.t()); ++y) {
      for (unsigned int x = 0; x < static_cast<unsigned int>(first.s()); ++x) {
        const osg::Vec4 difference = first.getColor(x, y) - second.getColor(x, y);
        for (int i = 0; i < 3; ++i) {
          if (std::abs(difference[i]) > allowed) {
            ++count;
            break;
          }
        }
      }
    }
    return count;
  }

  GeometryNode* nodeOf(vyrSDK::Simulation& where, const char* name, vyrOSG::Group& below) {
    vyr::RigidBody* body = where.findRigidBody(name);
    return body ? vyrOSG::findGeometryNode(body->getGeometries()[0].get(), &below) : nullptr;
  }

  TemporaryFolder folder;
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  osg::ref_ptr<vyrOSG::Group> root{new vyrOSG::Group};
  vyr::ref_ptr<vyrSDK::Simulation> copy{new vyrSDK::Simulation};
  osg::ref_ptr<vyrOSG::Group> copyRoot{new vyrOSG::Group};
};

TEST_F(SceneFile, ADressedSceneGivesTheSamePicture) {
  build();
  const osg::ref_ptr<osg::Image> before = draw(*root);
  if (!before)
    GTEST_SKIP() << "no graphics context without a display here";
  ASSERT_TRUE(simulation->write(folder / "scene.json"));
  CapturedMessages messages;
  ASSERT_TRUE(
      vyrOSG::readFile(folder / "scene.json", copy.get(), copyRoot.get(), nullptr, nullptr, 0.35, false, -1, kWhole));
  EXPECT_EQ(0u, messages.errors().size()) << messages.errors()[0];
  EXPECT_EQ(simulation->stateHash(), copy->stateHash());
  const osg::ref_ptr<osg::Image> after = draw(*copyRoot);
  EXPECT_EQ(0u, countDifferences(*before, *after));

  // What is written of the copy is what was read.
  ASSERT_TRUE(copy->write(folder / "again.json"));
  std::ifstream first(folder / "scene.json"), second(folder / "again.json");
  const std::string texts[2] = {std::string(std::istreambuf_iterator<char>(first), {}),
                                std::string(std::istreambuf_iterator<char>(second), {})};
  EXPECT_TRUE(texts[0] == texts[1]);

  // The picture shows the looks: without them it is another one.
  osg::ref_ptr<vyrOSG::Group> bare = new vyrOSG::Group;
  for (const auto& body : simulation->getRigidBodies())
    vyrOSG::createVisual(body.get(), bare.get());
  EXPECT_GT(countDifferences(*before, *draw(*bare)), 5000u);
}

TEST_F(SceneFile, LooksComeBackOneByOne) {
  build();
  ASSERT_TRUE(simulation->write(folder / "scene.json"));
  ASSERT_TRUE(vyrOSG::readFile(folder / "scene.json", copy.get(), copyRoot.get()));
  constexpr osg::Material::Face kFront = osg::Material::FRONT;
  const auto node = [&](const char* name) { return nodeOf(*copy, name, *copyRoot); };
  EXPECT_EQ(osg::Vec4(0.2f, 0.7f, 0.9f, 0.4f), materialOf(node("glass"))->getDiffuse(kFront));
  EXPECT_EQ(osg::StateSet::TRANSPARENT_BIN, node("glass")->getStateSet()->getRenderingHint());
  EXPECT_EQ(osg::Vec4(1, 1, 0.5f, 1), materialOf(node("shiny"))->getSpecular(kFront));
  EXPECT_EQ(osg::Vec4(0, 0, 0.4f, 1), materialOf(node("shiny"))->getAmbient(kFront));
  EXPECT_EQ(12, materialOf(node("shiny"))->getShininess(kFront));
  EXPECT_TRUE(node("tiled")->getStateSet()->getTextureAttribute(0, osg::StateAttribute::TEXTURE));
  EXPECT_TRUE(
      node("bumpy")->getStateSet()->getTextureAttribute(vyrOSG::NORMALMAP_TEXTURE, osg::StateAttribute::TEXTURE));
  EXPECT_TRUE(node("wires")->getStateSet()->getAttribute(osg::StateAttribute::POLYGONMODE));
  EXPECT_EQ(0u, node("hidden")->getNodeMask());
  EXPECT_FLOAT_EQ(0.3f, materialOf(node("faint"))->getDiffuse(kFront).a());
  EXPECT_TRUE(node("model")->getRenderChild(GeometryNode::RENDER_DATA));
  vyr::RigidBody* named = copy->findRigidBody("named");
  osgText::Text* text = vyrOSG::findText(named->getGeometries()[0].get(), copyRoot.get());
  ASSERT_TRUE(text);
  EXPECT_EQ("Hi", text->getText().createUTF8EncodedString());
  EXPECT_EQ(4u, node("named")->getNumChildren()) << "shape, hat, text, axes";
  EXPECT_TRUE(node("sensor"));
  EXPECT_FALSE(node("secret"));
  ASSERT_EQ(1u, copy->getAssemblies().size());
  EXPECT_TRUE(dynamic_cast<vyrUtil::SimpleCar*>(copy->getAssemblies()[0].get()));
  EXPECT_TRUE(node("front left wheel")->getRenderChild(GeometryNode::RENDER_DATA));
}

TEST_F(SceneFile, AFolderWithASceneAndItsImagesCanBeMoved) {
  vyrOSG::setTexture(
      SimulationObject::createBox("tiled", at(0, 0, 0), vyr::Vec3(1, 1, 1), root.get(), simulation.get()).node.get(),
      folder / "tiles.png");
  ASSERT_TRUE(simulation->write(folder / "scene.json"));
  TemporaryFolder other;
  for (const char* file : {"scene.json", "tiles.png"})
    std::filesystem::rename(folder / file, other / file);
  CapturedMessages messages;
  ASSERT_TRUE(vyrOSG::readFile(other / "scene.json", copy.get(), copyRoot.get()));
  EXPECT_TRUE(messages.errors().empty());
  const auto* texture = dynamic_cast<osg::Texture2D*>(
      nodeOf(*copy, "tiled", *copyRoot)->getStateSet()->getTextureAttribute(0, osg::StateAttribute::TEXTURE));
  ASSERT_TRUE(texture);
  EXPECT_EQ(other / "tiles.png", texture->getImage()->getFileName());
}

TEST_F(SceneFile, AMissingImageCostsOneLineAndTheRestIsDrawn) {
  osg::ref_ptr<osg::Node> node =
      SimulationObject::createBox("tiled", at(0, 0, 0), vyr::Vec3(1, 1, 1), root.get(), simulation.get()).node;
  vyrOSG::setTexture(node.get(), folder / "tiles.png");
  vyrOSG::setDiffuseColor(node.get(), vyr::Vec4(1, 0, 1, 1));
  ASSERT_TRUE(simulation->write(folder / "scene.json"));
  std::filesystem::remove(folder / "tiles.png");
  CapturedMessages messages;
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", copy.get(), copyRoot.get()));
  EXPECT_THAT(messages.takeOne(), HasSubstr("tiles.png"));
  EXPECT_EQ(osg::Vec4(1, 0, 1, 1), materialOf(nodeOf(*copy, "tiled", *copyRoot))->getDiffuse(osg::Material::FRONT));
}

TEST_F(SceneFile, MistakesInLooksAreNamedAndNothingIsRead) {
  const char* const mistakes[][2] = {
      {R"("color": "red")", "visual.color: must be a list of 4 numbers"},
      {R"("color": [1, 1, 1])", "visual.color: must be a list of 4 numbers"},
      {R"("shininess": 300)", "visual.shininess: must be from 0 to 128"},
      {R"("textures": [{}])", "visual.textures[0]: the member \"file\" is missing"},
      {R"("textures": [{"file": "a.png", "mode": "oil"}])", "visual.textures[0].mode: there is no mode \"oil\""},
      {R"("lights": [{"number": 9, "on": true}])", "visual.lights[0].number"},
      {R"("texts": [{"text": "a", "size": 0}])", "visual.texts[0].size: must be above 0"},
      {R"("model": {"file": 3})", "visual.model.file: must be a text"},
  };
  for (const auto& mistake : mistakes) {
    std::ofstream(folder / "bad.json")
        << R"({"format": "vyr-scene", "version": 2, "bodies": [{"geometries": [{"shape": {"type": "sphere", "radius": 1},
            "visual": {)"
        << mistake[0] << "}}]}]}";
    CapturedMessages messages;
    EXPECT_FALSE(vyrOSG::readFile(folder / "bad.json", copy.get(), copyRoot.get()));
    EXPECT_THAT(messages.takeOne(), HasSubstr(std::string("bodies[0].geometries[0].") + mistake[1]));
    EXPECT_TRUE(copy->getRigidBodies().empty());
    EXPECT_EQ(0u, copyRoot->getNumChildren());
  }
}

TEST_F(SceneFile, ASimulationThatIsNotDrawnHasNoLooks) {
  build();
  simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("plain");
  body->add(new vyrCollide::Geometry(new vyrCollide::Sphere(1)));
  simulation->add(body.get());
  EXPECT_EQ(std::string::npos, simulation->toText().find("visual"));
  ASSERT_TRUE(simulation->write(folder / "scene.json"));
  ASSERT_TRUE(vyrOSG::readFile(folder / "scene.json", copy.get(), copyRoot.get()));
  EXPECT_TRUE(nodeOf(*copy, "plain", *copyRoot)) << "it gets the usual look";
}

TEST_F(SceneFile, GroundTreesAndWiresComeBackWithTheirDrawings) {
  const vyr::ref_ptr<vyrModel::Terrain> terrain = makeTerrain();
  simulation->add(terrain.get());
  vyr::ref_ptr<vyrOSG::TerrainRenderer> ground =
      new vyrOSG::TerrainRenderer(terrain.get(), vyr::Range<double>(0, 0.6), root.get());
  simulation->add(static_cast<vyrSDK::StepEventListener*>(ground.get()));
  vyr::ref_ptr<vyrOSG::Tree> tree = new vyrOSG::Tree(root.get());
  vyrModel::TreeParameters small;
  small.height = 2;
  small.trunkRadius = 0.06;
  small.levels = 2;
  small.boughs = 3;
  tree->setTransform(at(-2, 1, 0.4));
  ASSERT_TRUE(tree->grow(small, 3));
  tree->setColor(vyr::Vec4(0.7, 0.4, 0.1, 1));
  tree->setWind(vyr::Vec3(6, 0, 0));
  tree->addTo(simulation.get());
  const SimulationObject ball =
      SimulationObject::createSphere("ball", at(1, 0, 0.7), 0.3, root.get(), simulation.get());
  vyr::ref_ptr<vyrWire::Wire> wire = new vyrWire::Wire(2, 16, 0.2, 0.03);
  wire->attachBegin(nullptr, vyr::Vec3(1, 1, 2));
  wire->attachEnd(ball.body.get(), vyr::Vec3(0, 0, 0.3));
  simulation->add(wire.get());
  vyr::ref_ptr<vyrOSG::WireRenderer> tube = new vyrOSG::WireRenderer(wire.get(), root.get());
  tube->setColor(vyr::Vec4(0.9, 0.1, 0.1, 1));
  simulation->add(static_cast<vyrSDK::StepEventListener*>(tube.get()));
  for (int i = 0; i < 100; ++i)
    simulation->step();
  EXPECT_GT(terrain->getRevision(), 0u) << "the ball sinks in";
  ASSERT_TRUE(simulation->write(folder / "scene.json"));
  CapturedMessages messages;
  ASSERT_TRUE(
      vyrOSG::readFile(folder / "scene.json", copy.get(), copyRoot.get(), nullptr, nullptr, 0.35, false, -1, kWhole));
  EXPECT_EQ(0u, messages.errors().size()) << messages.errors()[0];
  const osg::ref_ptr<osg::Image> before = draw(*root);
  // The shade of a leaf depends on where it was when the tree was coloured.
  constexpr float kShade = 8;
  if (before) {
    EXPECT_EQ(0u, countDifferences(*before, *draw(*copyRoot), kShade));
  }
  for (int i = 0; i < 100; ++i) {
    simulation->step();
    copy->step();
    ASSERT_EQ(simulation->stateHash(), copy->stateHash()) << "step " << i;
  }
  const osg::ref_ptr<osg::Image> later = draw(*root);
  if (later) {
    EXPECT_EQ(0u, countDifferences(*later, *draw(*copyRoot), kShade)) << "the drawings follow";
    EXPECT_GT(countDifferences(*before, *later, kShade), 0u);
  }
}

/// All names of members in a text, those of uniforms and contact points left out.
void collectKeys(const nlohmann::json& value, std::set<std::string>& keys) {
  for (const auto& item : value.items()) {
    if (value.is_object())
      keys.insert(item.key());
    if (item.value().is_structured() && item.key() != "uniforms" && item.key() != "points")
      collectKeys(item.value(), keys);
  }
}

TEST_F(SceneFile, EveryMemberIsDocumented) {
  build();
  vyrOSG::setUniformInt(root->getChild(1), "count", 3);
  vyrOSG::setEnableLight(false, 0, root->getChild(1));
  simulation->add(makeTerrain().get());
  vyr::ref_ptr<vyr::ParticleSystem> sand = new vyr::ParticleSystem("sand");
  sand->add(vyr::Vec3(0, 0, 9), vyr::Vec3(), 0.1, 1);
  simulation->add(sand.get());
  vyr::ref_ptr<vyrModel::Tree> tree = new vyrModel::Tree;
  tree->grow();
  tree->addTo(simulation.get());
  vyr::ref_ptr<vyrWire::Wire> wire = new vyrWire::Wire(2, 16, 0.2);
  wire->attachEnd(nullptr, vyr::Vec3());
  simulation->add(wire.get());
  for (int i = 0; i < 20; ++i)
    simulation->step();
  std::set<std::string> keys;
  collectKeys(nlohmann::json::parse(simulation->toText()), keys);
  EXPECT_GT(keys.size(), 120u);
  std::ifstream file(VYR_SOURCE_DIR "/docs/scene-format.md");
  const std::string page(std::istreambuf_iterator<char>(file), {});
  for (const std::string& key : keys)
    EXPECT_NE(std::string::npos, page.find("`" + key + "`")) << key << " is not in docs/scene-format.md";
}

} // namespace
