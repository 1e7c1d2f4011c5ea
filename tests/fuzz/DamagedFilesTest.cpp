/// Damaged files of every kind that is read: each read ends, with a result or with an error line.
#include "CapturedMessages.h"
#include "TemporaryFolder.h"

#include <vyr/Hinge.h>
#include <vyrCFG/ConfigScript.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Sphere.h>
#include <vyrCollide/Trimesh.h>
#include <vyrIO/ArgumentParser.h>
#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/LaunchOptions.h>
#include <vyrOSG/RenderStateManager.h>
#include <vyrOSG/SimulationObject.h>
#include <vyrOSG/utils.h>
#include <vyrSDK/Simulation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>

namespace {

/// Damaged variants of each file; VYR_DAMAGED_FILES sets another number for long runs.
int variants() {
  const char* text = std::getenv("VYR_DAMAGED_FILES");
  return text != nullptr ? std::atoi(text) : 250;
}

std::string contents(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// Cuts, overwrites, doubles and swaps parts of a text; the same seed damages in the same way everywhere.
class Damage {
public:
  explicit Damage(unsigned seed)
      : m_engine(seed) {}

  std::string operator()(std::string text) {
    const int changes = 1 + below(4);
    for (int i = 0; i < changes && !text.empty(); ++i)
      change(text);
    return text;
  }

private:
  int below(std::size_t limit) { return static_cast<int>(m_engine() % limit); }

  void change(std::string& text) {
    const auto at = static_cast<std::size_t>(below(text.size()));
    const auto length = static_cast<std::size_t>(1 + below(20));
    switch (below(8)) {
    case 0:
      text.resize(at);
      break;
    case 1:
      text[at] = static_cast<char>(below(256));
      break;
    case 2:
      text.erase(at, length);
      break;
    case 3:
      text.insert(at, text.substr(at, 4 * length));
      break;
    case 4: {
      static const char* const kWords[] = {"-1",     "0",     "1e308", "-1e309", "nan",  "null",
                                           "[]",     "{}",    "\"\"",  "1.5",    "true", "4294967296",
                                           "1e-320", "[[[[[", "}",     "\n\n",   ",",    "999999999"};
      text.replace(at, length, kWords[below(std::size(kWords))]);
      break;
    }
    case 5:
      text[at] = static_cast<char>(text[at] ^ (1 << below(8)));
      break;
    case 6:
      replaceNumber(text, at);
      break;
    default:
      std::swap(text[at], text[static_cast<std::size_t>(below(text.size()))]);
    }
  }

  /// Keeps the file well formed and changes what it says.
  void replaceNumber(std::string& text, std::size_t at) {
    const std::size_t begin = text.find_first_of("0123456789", at);
    if (begin == std::string::npos)
      return;
    const std::size_t end = text.find_first_not_of("0123456789.eE+-", begin);
    static const char* const kNumbers[] = {"0", "-1", "1e300", "2147483648", "-7", "65536", "1e-300", "3"};
    text.replace(begin, end == std::string::npos ? std::string::npos : end - begin,
                 kNumbers[below(std::size(kNumbers))]);
  }

  std::mt19937 m_engine;
};

class DamagedFiles : public testing::Test {
protected:
  /// Reads damaged variants of a file, each under `name` in the folder.
  template <class Read>
  void tryAll(const std::string& original, const std::string& name, Read read) {
    ASSERT_FALSE(original.empty());
    for (int variant = 0; variant < variants(); ++variant) {
      SCOPED_TRACE(variant);
      const std::string file = folder / name;
      std::ofstream(file, std::ios::binary) << Damage(static_cast<unsigned>(variant))(original);
      read(file);
    }
  }

  TemporaryFolder folder;
  CapturedMessages messages;
};

vyr::ref_ptr<vyrSDK::Simulation> makeScene() {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyr::ref_ptr<vyr::RigidBody> box = new vyr::RigidBody("box");
  box->add(new vyrCollide::Geometry(new vyrCollide::Box(0.5, 0.5, 0.5)));
  vyr::ref_ptr<vyr::RigidBody> ball = new vyr::RigidBody("ball");
  ball->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.3)));
  ball->setPosition(vyr::Vec3(0.0, 0.0, 2.0));
  vyr::RealVector heights;
  for (int i = 0; i < 9; ++i)
    heights.push_back(0.1 * i);
  simulation->add(new vyrCollide::Geometry(new vyrCollide::HeightField(3, 3, 4.0, 4.0, heights), "hill"));
  simulation->add(box.get());
  simulation->add(ball.get());
  simulation->add(vyr::Hinge::create(ball.get(), box.get(), vyr::Vec3(0.0, 0.0, 1.0), vyr::Vec3(1.0, 0.0, 0.0)));
  simulation->stepTo(0.1);
  return simulation;
}

TEST_F(DamagedFiles, Scenes) {
  const std::string original = folder / "original.json";
  ASSERT_TRUE(makeScene()->write(original));
  int read = 0;
  tryAll(contents(original), "scene.json", [&](const std::string& file) {
    vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
    const bool ok = simulation->read(file);
    EXPECT_NE(ok, messages.take().size() > 0) << "a message and a result exclude each other";
    read += ok ? 1 : 0;
    for (int step = 0; ok && step < 5; ++step)
      simulation->step();
  });
  EXPECT_GT(read, 0) << "some damage is none";
}

TEST_F(DamagedFiles, RenderStateScripts) {
  const std::string original =
      R"({"renderStates": {"planks": {"ambient": [0.25, 0.25, 0.25], "diffuse": [1, 0.5, 0.25, 1],
    "alpha": 0.5, "shininess": 32, "textures": [{"texture": "wood", "unit": 3, "scale": [2, 4], "sampler": "detail"}],
    "uniforms": {"gain": 0.5}, "sharedUniforms": ["time"], "shaderState": "glow"}},
    "shaderStates": {"glow": {"program": "lit", "uniforms": {"tint": [1, 0, 0], "on": true}, "sharedUniforms": ["time"]}},
    "uniforms": {"time": {"type": "float", "value": 3}}, "programs": {"lit": {"shaders": ["move"], "attributes": {"tangent": 6}}},
    "shaders": {"move": {"stage": "vertex", "source": ["void main() {", "gl_Position = gl_Vertex;", "}"]}},
    "textures": {"wood": {"file": "wood.png", "wrap": "clamp", "filter": "nearest", "anisotropy": 4}}})";
  auto* manager = vyrOSG::RenderStateManager::instance();
  tryAll(original, "look.json", [&](const std::string& file) {
    vyr::ref_ptr<vyrCFG::ConfigScript> script = new vyrCFG::ConfigScript(file);
    manager->parse(script.get());
    vyr::ref_ptr<vyrOSG::RenderStateManager::RenderState> state = manager->findRenderState("planks");
    osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
    if (state)
      state->apply(group.get());
    manager->clear();
  });
}

TEST_F(DamagedFiles, Meshes) {
  const std::string examples = VYR_SOURCE_DIR "/examples/data/";
  const std::string facet =
      "facet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\n";
  std::string binary(84, '\0');
  binary[80] = 1;
  binary.append(50, '\1');
  const std::pair<std::string, std::string> meshes[] = {
      {contents(examples + "gem.obj"), "mesh.obj"},
      {"solid a\n" + facet + facet + "endsolid a\n", "mesh.stl"},
      {binary, "binary.stl"},
  };
  for (const auto& mesh : meshes) {
    tryAll(mesh.first, mesh.second, [&](const std::string& file) {
      vyr::ref_ptr<vyrCollide::Trimesh> trimesh = vyrCollide::Trimesh::create(file);
      osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
      vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
      vyrOSG::SimulationObject::createTrimesh("mesh", vyr::AffineMatrix4x4(), file, group.get(), simulation.get());
      simulation->step();
    });
  }
}

TEST_F(DamagedFiles, AMeshWithAnOddVertexIsRefused) {
  for (const std::string odd : {"v --0.25 1 0", "v 0 1 0.258.2 0.25", "v 0 1 0 1 0 0"}) {
    SCOPED_TRACE(odd);
    const std::string file = folder / "mesh.obj";
    std::ofstream(file) << "v 0 0 0\nv 1 0 0\n" + odd + "\nv 0 0 1\nf 1 2 3\nf 4 2 1\n";
    osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
    vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
    vyrOSG::SimulationObject::createTrimesh("mesh", vyr::AffineMatrix4x4(), file, group.get(), simulation.get());
    EXPECT_THAT(messages.takeOne(), testing::HasSubstr("line 3"));
    EXPECT_EQ(group->getNumChildren(), 0u);
  }
}

TEST_F(DamagedFiles, AFacetWhoseNormalIsNoNumberIsRefused) {
  const std::string file = folder / "mesh.stl";
  std::ofstream(file) << "solid a\nfacet normal 0 0+1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\n"
                         "endfacet\nendsolid a\n";
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyrOSG::SimulationObject::createTrimesh("mesh", vyr::AffineMatrix4x4(), file, group.get(), simulation.get());
  EXPECT_THAT(messages.takeOne(), testing::HasSubstr("line 2"));
}

TEST_F(DamagedFiles, HeightFields) {
  const std::pair<std::string, std::string> grounds[] = {
      {contents(VYR_SOURCE_DIR "/examples/data/tiles.png"), "heights.png"},
      {"0 0.5 1 0.25\n1 2 3 4\n0 0 0 0\n1 1 1 1\n", "heights.txt"},
      {"0,0.5,1\n1,2,3\n0,0,0\n", "heights.csv"},
  };
  for (const auto& ground : grounds) {
    tryAll(ground.first, ground.second, [&](const std::string& file) {
      osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
      vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
      vyrOSG::SimulationObject::createHeightField("ground", vyr::AffineMatrix4x4(), file, 10.0, 10.0, 0.0, 2.0,
                                                  group.get(), simulation.get());
      simulation->step();
    });
  }
}

TEST_F(DamagedFiles, Textures) {
  tryAll(contents(VYR_SOURCE_DIR "/examples/data/wood.png"), "picture.png", [&](const std::string& file) {
    osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
    vyrOSG::setTexture(group.get(), file);
  });
}

TEST_F(DamagedFiles, Journals) {
  vyrOSG::LaunchOptions::process().backend = vyrOSG::LaunchOptions::NONE;
  const std::string original = folder / "original.db";
  {
    vyr::ref_ptr<vyrOSG::ExampleApplication> recorder = new vyrOSG::ExampleApplication(makeScene().get());
    ASSERT_TRUE(recorder->journalRecord(original, "first"));
    recorder->setAutoStepping(true);
    for (int step = 0; step < 10; ++step)
      recorder->step();
  }
  tryAll(contents(original), "run.db", [&](const std::string& file) {
    vyr::ref_ptr<vyrIO::ArgumentParser> arguments =
        new vyrIO::ArgumentParser({"test", "--journal", file, "--journal-session", "first"});
    vyr::ref_ptr<vyrOSG::ExampleApplication> player = new vyrOSG::ExampleApplication(makeScene().get());
    player->init(arguments.get());
    player->listSessionNames(file);
    player->journalPlayback();
    for (int step = 0; step < 12; ++step)
      player->step();
  });
}

TEST_F(DamagedFiles, SavedStates) {
  vyrOSG::LaunchOptions::process().backend = vyrOSG::LaunchOptions::NONE;
  const std::string original = folder / "original.json";
  {
    vyr::ref_ptr<vyrOSG::ExampleApplication> saver = new vyrOSG::ExampleApplication(makeScene().get());
    ASSERT_TRUE(saver->saveToFile(original));
  }
  // Into the scene that was saved, and into an empty simulation, which gets the bodies themselves.
  vyr::ref_ptr<vyrOSG::ExampleApplication> same = new vyrOSG::ExampleApplication(makeScene().get());
  tryAll(contents(original), "state.json", [&](const std::string& file) {
    same->restoreFromFile(file);
    same->getSimulation()->step();
    vyr::ref_ptr<vyrSDK::Simulation> none = new vyrSDK::Simulation;
    vyr::ref_ptr<vyrOSG::ExampleApplication> empty = new vyrOSG::ExampleApplication(none.get());
    empty->restoreFromFile(file);
    none->step();
  });
}

TEST_F(DamagedFiles, ConfigurationScripts) {
  const std::string original =
      R"({"a": 1, "b": [1, 2.5, "c", true, null, {"d": []}], "e": {"f": {"g": "\u00e4", "h": -1e-3}}})";
  int read = 0;
  tryAll(original, "settings.cfg", [&](const std::string& file) {
    vyr::ref_ptr<vyrCFG::ConfigScript> script = new vyrCFG::ConfigScript;
    const bool ok = script->load(file);
    EXPECT_NE(ok, messages.take().size() > 0) << "a message and a result exclude each other";
    read += ok ? 1 : 0;
  });
  EXPECT_GT(read, 0) << "some damage is none";
}

} // namespace
