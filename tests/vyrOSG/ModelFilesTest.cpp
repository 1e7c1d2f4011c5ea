/// What comes back from model files of every format that the machine's plugins read.
#include "ModelFiles.h"
#include "CapturedMessages.h"
#include "TemporaryFolder.h"

#include <vyrOSG/Group.h>
#include <vyrOSG/ReaderWriter.h>
#include <vyrOSG/SimulationObject.h>

#include <vyr/RigidBody.h>
#include <vyrCollide/Geometry.h>
#include <vyrCollide/Trimesh.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <osg/ComputeBoundsVisitor>
#include <osg/Geometry>
#include <osg/Material>
#include <osg/TriangleFunctor>
#include <osgDB/Registry>

#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <ostream>

namespace {

using testing::HasSubstr;

struct TriangleCount {
  void operator()(const osg::Vec3&, const osg::Vec3&, const osg::Vec3&) { ++count; }
  void operator()(const osg::Vec3&, const osg::Vec3&, const osg::Vec3&, bool) { ++count; }
  unsigned int count = 0;
};

/// Counts what a model is made of.
class Inventory : public osg::NodeVisitor {
public:
  explicit Inventory(osg::Node& model)
      : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {
    model.accept(*this);
    osg::ComputeBoundsVisitor visitor;
    model.accept(visitor);
    bounds = visitor.getBoundingBox();
  }

  void apply(osg::Node& node) override {
    look(node);
    traverse(node);
  }

  void apply(osg::Drawable& drawable) override {
    look(drawable);
    osg::TriangleFunctor<TriangleCount> functor;
    drawable.accept(functor);
    triangles += functor.count;
    if (const osg::Geometry* geometry = drawable.asGeometry())
      vertices += geometry->getVertexArray() ? geometry->getVertexArray()->getNumElements() : 0;
  }

  unsigned int triangles = 0;
  unsigned int vertices = 0;
  bool isRed = false;
  osg::BoundingBox bounds;

private:
  void look(const osg::Node& node) {
    const osg::StateSet* stateSet = node.getStateSet();
    const auto* material =
        stateSet ? static_cast<const osg::Material*>(stateSet->getAttribute(osg::StateAttribute::MATERIAL)) : nullptr;
    if (material)
      isRed =
          isRed || material->getDiffuse(osg::Material::FRONT).r() > 2 * material->getDiffuse(osg::Material::FRONT).g();
  }
};

/// In which directions the lengths 1, 2 and 3 of the file lie after reading.
enum Axes {
  AS_IN_FILE, ///< (x, y, z)
  Y_UP,       ///< (x, -z, y): turned
  LEFT_HANDED ///< (x, z, y): mirrored, from a left-handed file with y up
};

struct Case {
  const char* name; ///< the file's name; what stands behind "box" is the format
  std::function<bool(const std::string& path)> write;
  unsigned int triangles;
  unsigned int vertices;
  Axes axes;
  bool isRed;
  double height = 3; ///< of what lies along the file's z; 0 for flat formats
};

/// Names the case in the lists of tests.
void PrintTo(const Case& model, std::ostream* stream) {
  *stream << model.name;
}

std::function<bool(const std::string&)> text(const std::string& content) {
  return [content](const std::string& path) { return bool(std::ofstream(path, std::ios::binary) << content); };
}

const std::function<bool(const std::string&)> library = modelfiles::writeByLibrary;

/// The library writes such a file under its other name only, until a reader was asked for one.
bool compressed(const std::string& path) {
  return modelfiles::writeByLibrary(path + ".osg.gz") && std::rename((path + ".osg.gz").c_str(), path.c_str()) == 0;
}

const Case kCases[] = {
    // name, writer, triangles, vertices, axes, red, height
    {"box.3dc", text(modelfiles::points()), 0, 8, AS_IN_FILE, false},
    {"box.3ds", library, 12, 36, AS_IN_FILE, true},
    {"box.ac", text(modelfiles::ac()), 12, 24, AS_IN_FILE, true},
    {"box.asc", text(modelfiles::points()), 0, 8, AS_IN_FILE, false},
    {"z.dae", text(modelfiles::collada("Z_UP")), 12, 8, AS_IN_FILE, false},
    {"y.dae", text(modelfiles::collada("Y_UP")), 12, 8, Y_UP, false},
    {"box.dxf", text(modelfiles::drawingExchange()), 12, 24, AS_IN_FILE, false},
    {"box.flt", library, 12, 36, AS_IN_FILE, true},
    {"box.iv", text(modelfiles::inventor("#Inventor V2.1 ascii")), 12, 36, Y_UP, true},
    {"box.ive", library, 12, 36, AS_IN_FILE, true},
    {"box.lwo", text(modelfiles::lightWave()), 12, 24, LEFT_HANDED, true},
    {"old.lwo", text(modelfiles::lightWaveOld()), 12, 24, LEFT_HANDED, false},
    {"box.md2", text(modelfiles::gameModel()), 12, 8, Y_UP, false},
    {"box.obj", text(modelfiles::objectFile()), 12, 8, Y_UP, false},
    {"written.obj", library, 12, 24, Y_UP, true},
    {"box.osg", library, 12, 36, AS_IN_FILE, true},
    {"box.osgb", library, 12, 36, AS_IN_FILE, true},
    {"box.osgt", library, 12, 36, AS_IN_FILE, true},
    {"box.osgt.gz", library, 12, 36, AS_IN_FILE, true},
    {"box.osgx", library, 12, 36, AS_IN_FILE, true},
    {"box.osgz", compressed, 12, 36, AS_IN_FILE, true},
    {"box.ply", text(modelfiles::polygonFile(false)), 12, 32, AS_IN_FILE, false},
    {"binary.ply", text(modelfiles::polygonFile(true)), 12, 32, AS_IN_FILE, false},
    {"box.shp", text(modelfiles::shapeFile()), 3, 5, AS_IN_FILE, false, 0},
    {"box.stl", text(modelfiles::stereoLithography(false)), 12, 8, AS_IN_FILE, false},
    {"binary.stl", text(modelfiles::stereoLithography(true)), 12, 24, AS_IN_FILE, false},
    {"old.wrl", text(modelfiles::inventor("#VRML V1.0 ascii")), 12, 36, Y_UP, true},
    {"box.wrl", text(modelfiles::virtualReality()), 12, 36, Y_UP, true},
    {"box.x", text(modelfiles::directX()), 12, 24, LEFT_HANDED, true},
    // The last one: once its plugin is loaded, it tries every file with flat forms first.
    {"box.geojson.ogr", text(modelfiles::square()), 3, 9, AS_IN_FILE, false, 0},
};

osg::BoundingBox expectedBounds(Axes axes, float height) {
  if (axes == Y_UP)
    return osg::BoundingBox(0, -height, 0, 1, 0, 2);
  if (axes == LEFT_HANDED)
    return osg::BoundingBox(0, 0, 0, 1, height, 2);
  return osg::BoundingBox(0, 0, 0, 1, 2, height);
}

void expectBounds(const osg::BoundingBox& bounds, const osg::BoundingBox& expected) {
  for (unsigned int axis = 0; axis < 3; ++axis) {
    EXPECT_NEAR(bounds._min[axis], expected._min[axis], 1e-5) << "axis " << axis;
    EXPECT_NEAR(bounds._max[axis], expected._max[axis], 1e-5) << "axis " << axis;
  }
}

class ModelFiles : public testing::Test {
protected:
  void TearDown() override { osgDB::Registry::instance()->clearObjectCache(); }

  TemporaryFolder folder;
  CapturedMessages messages;
};

class ModelFormats : public ModelFiles, public testing::WithParamInterface<Case> {
protected:
  /// Writes the file of a case; pseudo endings that only the reader knows are left out of its name.
  std::string write(const Case& model) {
    std::string path = folder / model.name;
    const std::size_t pseudo = path.rfind(".ogr");
    EXPECT_TRUE(model.write(path.substr(0, pseudo))) << path;
    return path;
  }
};

TEST_P(ModelFormats, TheBoxComesBack) {
  const Case& model = GetParam();
  osg::ref_ptr<osg::Node> node = vyrOSG::readNodeFile(write(model));
  ASSERT_TRUE(node) << messages.takeOne();
  const Inventory inventory(*node);
  EXPECT_EQ(inventory.triangles, model.triangles);
  EXPECT_EQ(inventory.vertices, model.vertices);
  EXPECT_EQ(inventory.isRed, model.isRed);
  expectBounds(inventory.bounds, expectedBounds(model.axes, static_cast<float>(model.height)));
  EXPECT_TRUE(messages.errors().empty());
  EXPECT_TRUE(messages.warnings().empty()) << messages.warnings().front();
}

TEST_P(ModelFormats, ThePictureAndTheCollisionShapeCoincide) {
  const Case& model = GetParam();
  const std::string path = write(model);
  osg::ref_ptr<vyrOSG::Group> root = new vyrOSG::Group;
  vyrOSG::SimulationObject object =
      vyrOSG::SimulationObject::createTrimesh("box", vyr::AffineMatrix4x4(), path, root.get(), nullptr);
  const bool isSurface = model.triangles > 0 && path.rfind(".ogr") == std::string::npos;
  ASSERT_EQ(static_cast<bool>(object.geometry), isSurface);
  if (!isSurface)
    return;
  osg::ref_ptr<osg::Node> node = vyrOSG::readNodeFile(path);
  const osg::BoundingBox drawn = Inventory(*node).bounds;
  const vyrCollide::Bounds bounds = object.geometry->getShape()->getBounds();
  expectBounds(osg::BoundingBox(osg::Vec3d(bounds.min.x(), bounds.min.y(), bounds.min.z()),
                                osg::Vec3d(bounds.max.x(), bounds.max.y(), bounds.max.z())),
               drawn);
  expectBounds(Inventory(*object.getNode()).bounds, drawn);
  // The two formats that the physics reads by itself.
  if (path.find(".obj") == std::string::npos && path.find(".stl") == std::string::npos)
    return;
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = vyrCollide::Trimesh::create(path);
  ASSERT_TRUE(mesh);
  EXPECT_EQ(mesh->getBounds().min, bounds.min);
  EXPECT_EQ(mesh->getBounds().max, bounds.max);
  EXPECT_NEAR(mesh->getVolume(), 6, 1e-9) << "outside stays outside";
}

INSTANTIATE_TEST_SUITE_P(All, ModelFormats, testing::ValuesIn(kCases), [](const auto& parameter) {
  std::string name = parameter.param.name;
  for (char& c : name)
    c = c == '.' ? '_' : c;
  return name;
});

TEST_F(ModelFiles, TheDocumentNamesEveryFormat) {
  std::ifstream file(VYR_SOURCE_DIR "/docs/model-files.md");
  const std::string document((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  for (const Case& model : kCases) {
    const std::string name = model.name;
    EXPECT_THAT(document, HasSubstr("`" + name.substr(name.find('.')) + "`"));
  }
}

TEST_F(ModelFiles, EndingsChangeWhatIsRead) {
  const std::string path = folder / "box.obj";
  ASSERT_TRUE(text(modelfiles::objectFile())(path));
  const auto bounds = [this](const std::string& name) {
    osg::ref_ptr<osg::Node> node = vyrOSG::readNodeFile(name);
    EXPECT_TRUE(node) << messages.takeOne();
    return node ? Inventory(*node).bounds : osg::BoundingBox();
  };
  expectBounds(bounds(path + ".2.scale"), osg::BoundingBox(0, -6, 0, 2, 0, 4));
  expectBounds(bounds(path + ".1,2,3.scale"), osg::BoundingBox(0, -6, 0, 1, 0, 6));
  expectBounds(bounds(path + ".(0.5).scale"), osg::BoundingBox(0, -1.5f, 0, 0.5f, 0, 1));
  expectBounds(bounds(path + ".1,2,3.trans"), osg::BoundingBox(1, -1, 3, 2, 2, 5));
  // A quarter turn around z: x becomes y.
  expectBounds(bounds(path + ".0,0,90.rot"), osg::BoundingBox(0, 0, 0, 3, 1, 2));
  osg::ref_ptr<osgDB::Options> options = new osgDB::Options("noRotation");
  osg::ref_ptr<osg::Node> asInFile = vyrOSG::readNodeFile(path, options.get(), false);
  ASSERT_TRUE(asInFile);
  expectBounds(Inventory(*asInFile).bounds, osg::BoundingBox(0, 0, 0, 1, 2, 3));
}

TEST_F(ModelFiles, ASkeletonHasNoSurface) {
  ASSERT_TRUE(text(modelfiles::animatedSkeleton())(folder / "walk.bvh"));
  osg::ref_ptr<osg::Node> node = vyrOSG::readNodeFile(folder / "walk.bvh");
  ASSERT_TRUE(node);
  EXPECT_EQ(Inventory(*node).triangles, 0u);
  EXPECT_FALSE(Inventory(*node).bounds.valid());
}

TEST_F(ModelFiles, EveryFailureIsOneLineThatSaysWhy) {
  const std::pair<const char*, const char*> files[] = {
      {"made.gltf", "there is no plugin for files that end in '.gltf'"},
      {"made.fbx", "there is no plugin for files that end in '.fbx'"},
      {"made.step", "there is no plugin for files that end in '.step'"},
      {"made.png", "it is no model of the format of its ending"},
      {"made.osgt", "it is no model of the format of its ending"},
      {"made.wrl", "Not a valid Inventor file."},
      {"made.x", "No 'xof' found in DirectX header"},
  };
  for (const auto& file : files) {
    const std::string path = folder / file.first;
    ASSERT_TRUE(text("x\n")(path));
    EXPECT_EQ(vyrOSG::readNodeFile(path), nullptr);
    const std::string line = messages.takeOne();
    EXPECT_THAT(line, HasSubstr("vyrOSG::readNodeFile: cannot read '" + path + "': "));
    EXPECT_THAT(line, HasSubstr(file.second));
    EXPECT_EQ(line.find('\n'), std::string::npos);
  }
  // What stands behind an ending that changes the model is looked at first, too.
  ASSERT_TRUE(text("v 0 0 0\nf 1 2 3\n")(folder / "cut.obj"));
  EXPECT_EQ(vyrOSG::readNodeFile(folder / "cut.obj.2.scale"), nullptr);
  EXPECT_THAT(messages.takeOne(), HasSubstr("line 2 names '2', which the file does not have"));
  EXPECT_EQ(vyrOSG::readNodeFile(folder / "none.obj.2.scale"), nullptr);
  EXPECT_THAT(messages.takeOne(), HasSubstr("cannot find '" + (folder / "none.obj.2.scale") + "'"));
}

} // namespace
