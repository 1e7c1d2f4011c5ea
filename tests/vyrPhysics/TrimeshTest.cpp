/// Triangle meshes: files, contacts.
#include "Scene.h"

#include <vyr/Notify.h>

#include <vyrCollide/Trimesh.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <fstream>

#include <string>
#include <unistd.h>

namespace {

/// A file in the test's folder that goes away with the object.
class TemporaryFile {
public:
  TemporaryFile(const std::string& name, const std::string& content)
      : m_path(::testing::TempDir() + "vyrPhysics_" + std::to_string(getpid()) + name) {
    std::ofstream(m_path, std::ios::binary) << content;
  }
  ~TemporaryFile() { std::remove(m_path.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& getPath() const { return m_path; }

private:
  std::string m_path;
};

/// A cube of 2 m with quads, texture and normal indices, and indices from the end.
const char* const kCubeObj = R"(# cube
v -1 -1 -1
v 1 -1 -1
v 1 1 -1
v -1 1 -1
v -1 -1 1
v 1 -1 1
v 1 1 1
v -1 1 1
vn 0 0 1
f 1 4 3 2
f 5//1 6//1 7//1 8//1
f 1/1/1 2/2/1 6/3/1 5/4/1
f 2 3 7 6
f 3 4 8 7
f -5 -8 -4 -1
)";

std::string littleEndian(uint32_t value) {
  std::string bytes;
  for (int i = 0; i < 4; ++i) {
    bytes.push_back(static_cast<char>(value >> (8 * i) & 0xff));
  }
  return bytes;
}

std::string floatBytes(float value) {
  uint32_t bits = 0;
  static_assert(sizeof(bits) == sizeof(value), "single precision");
  std::copy_n(reinterpret_cast<const char*>(&value), sizeof(value), reinterpret_cast<char*>(&bits));
  return littleEndian(bits);
}

/// A tetrahedron as a binary STL file whose header begins like a text file.
std::string binaryStl() {
  const float corners[4][3] = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const int triangles[4][3] = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
  std::string data = "solid but binary";
  data.resize(80, ' ');
  data += littleEndian(4);
  for (const auto& triangle : triangles) {
    data += std::string(12, '\0');
    for (int corner : triangle) {
      for (float x : corners[corner]) {
        data += floatBytes(x);
      }
    }
    data += std::string(2, '\0');
  }
  return data;
}

} // namespace

TEST(Trimesh, ReadsAWavefrontFile) {
  const TemporaryFile file("cube.OBJ", kCubeObj);
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = vyrCollide::Trimesh::create(file.getPath(), 0.5);
  ASSERT_TRUE(mesh);
  EXPECT_EQ(mesh->getNumVertices(), 8u);
  EXPECT_EQ(mesh->getNumTriangles(), 12u);
  EXPECT_TRUE(mesh->isClosed());
  EXPECT_NEAR(mesh->getVolume(), 1.0, 1e-12);
  EXPECT_EQ(mesh->getBounds().max, vyr::Vec3(0.5, 0.5, 0.5));
}

TEST(Trimesh, TurnsWavefrontFilesFromYUpToZUp) {
  // A corner of a box of 1 by 2 by 3 m: x stays, what was up is up, what came forward comes forward.
  const TemporaryFile file("corner.obj", "v 0 0 0\nv 1 0 0\nv 0 2 0\nv 0 0 3\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n");
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = vyrCollide::Trimesh::create(file.getPath());
  ASSERT_TRUE(mesh);
  EXPECT_EQ(mesh->getBounds().min, vyr::Vec3(0, -3, 0));
  EXPECT_EQ(mesh->getBounds().max, vyr::Vec3(1, 0, 2));
  // Turned, not mirrored: outside stays outside.
  EXPECT_NEAR(mesh->getVolume(), 1.0, 1e-12);
}

TEST(Trimesh, ReadsABinaryStlFile) {
  const TemporaryFile file("tetrahedron.stl", binaryStl());
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = vyrCollide::Trimesh::create(file.getPath());
  ASSERT_TRUE(mesh);
  EXPECT_EQ(mesh->getNumVertices(), 4u);
  EXPECT_EQ(mesh->getNumTriangles(), 4u);
  EXPECT_NEAR(mesh->getVolume(), 1.0 / 6.0, 1e-12);
}

TEST(Trimesh, ReadsATextStlFile) {
  const TemporaryFile file("triangle.stl", "solid t\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n"
                                           "vertex 0 1e0 0\nendloop\nendfacet\nendsolid t\n");
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = vyrCollide::Trimesh::create(file.getPath());
  ASSERT_TRUE(mesh);
  EXPECT_EQ(mesh->getNumTriangles(), 1u);
  EXPECT_FALSE(mesh->isClosed());
  EXPECT_DOUBLE_EQ(mesh->getVolume(), 0.0);
}

TEST(Trimesh, NamesTheFileThatItCannotRead) {
  const TemporaryFile garbage("garbage.obj", "v 1 2\nf 1 2 3\n");
  const TemporaryFile outside("outside.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 4\n");
  const TemporaryFile empty("empty.stl", "");
  const TemporaryFile cut("cut.stl", binaryStl().substr(0, 150));
  const TemporaryFile other("mesh.txt", kCubeObj);
  for (const std::string& path : {std::string("/nowhere/at/all.obj"), garbage.getPath(), outside.getPath(),
                                  empty.getPath(), cut.getPath(), other.getPath(), ::testing::TempDir()}) {
    scene::Messages messages;
    vyr::ref_ptr<vyrCollide::Trimesh> mesh = vyrCollide::Trimesh::create(path);
    EXPECT_FALSE(mesh) << path;
    ASSERT_EQ(messages.get().size(), 1u) << path;
    EXPECT_NE(messages.get()[0].find(path), std::string::npos) << messages.get()[0];
  }
  scene::Messages messages;
  const TemporaryFile good("good.obj", kCubeObj);
  EXPECT_EQ(vyrCollide::Trimesh::create(good.getPath(), -1.0), nullptr);
  EXPECT_EQ(messages.get().size(), 1u);
}

TEST(Trimesh, RefusesIndicesOutOfRange) {
  scene::Messages messages;
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = new vyrCollide::Trimesh({vyr::Vec3(), vyr::Vec3(1.0, 0.0, 0.0)}, {0, 1, 2});
  EXPECT_FALSE(mesh->isValid());
  EXPECT_EQ(messages.get().size(), 1u);
}

TEST(Trimesh, RefusesNothingAndWhatIsNoTriangle) {
  scene::Messages messages;
  const std::vector<vyr::Vec3> corners = {vyr::Vec3(), vyr::Vec3(1.0, 0.0, 0.0), vyr::Vec3(0.0, 1.0, 0.0)};
  const std::vector<vyr::Vec3> bad = {vyr::Vec3(), vyr::Vec3(1.0, std::nan(""), 0.0), vyr::Vec3(0.0, 1.0, 0.0)};
  const vyr::ref_ptr<vyrCollide::Trimesh> meshes[] = {
      new vyrCollide::Trimesh({}, {}), new vyrCollide::Trimesh(corners, {}), new vyrCollide::Trimesh({}, {0, 1, 2}),
      new vyrCollide::Trimesh(corners, {0, 1}), new vyrCollide::Trimesh(bad, {0, 1, 2})};
  EXPECT_EQ(messages.get().size(), 5u);
  for (const auto& mesh : meshes) {
    EXPECT_FALSE(mesh->isValid());
    EXPECT_FALSE(mesh->isConvex());
    EXPECT_FALSE(mesh->getBounds().isValid());
    vyr::ref_ptr<vyrCollide::Geometry> geometry = new vyrCollide::Geometry(mesh.get());
    EXPECT_FALSE(geometry->isValid());
  }
}

/// Keeps the warnings of the library.
struct Warnings : vyr::NotifySink {
  void message(vyr::NotifyLevel level, const std::string& text) override {
    if (level == vyr::NOTIFY_WARNING) {
      texts.push_back(text);
    }
  }
  std::vector<std::string> texts;
};

// An L of 2 m: a ball put into its notch is pushed out when the L moves, and stays when it does not.
TEST(Trimesh, MovesAsItsHullAndSaysSo) {
  const std::vector<vyr::Vec3> outline = {{0.0, 0.0, 0.0}, {2.0, 0.0, 0.0}, {2.0, 0.0, 0.5},
                                          {0.5, 0.0, 0.5}, {0.5, 0.0, 2.0}, {0.0, 0.0, 2.0}};
  std::vector<vyr::Vec3> vertices = outline;
  for (const vyr::Vec3& corner : outline) {
    vertices.push_back(corner + vyr::Vec3(0.0, 1.0, 0.0));
  }
  std::vector<unsigned int> indices = {0, 1, 2, 0, 2, 3, 0, 3, 4, 0, 4, 5};
  for (unsigned int i = 0; i < 12; i += 3) {
    indices.insert(indices.end(), {indices[i] + 6, indices[i + 2] + 6, indices[i + 1] + 6});
  }
  for (unsigned int i = 0; i < 6; ++i) {
    const unsigned int next = (i + 1) % 6;
    indices.insert(indices.end(), {i, i + 6, next + 6, i, next + 6, next});
  }
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = new vyrCollide::Trimesh(vertices, indices);
  ASSERT_TRUE(mesh->isClosed());
  EXPECT_NEAR(mesh->getMassProperties().volume, 1.75, 1e-12);
  EXPECT_FALSE(mesh->isConvex());
  const TemporaryFile file("cube.obj", kCubeObj);
  EXPECT_TRUE(vyr::ref_ptr<vyrCollide::Trimesh>(vyrCollide::Trimesh::create(file.getPath()))->isConvex());

  const vyr::ref_ptr<Warnings> warnings(new Warnings);
  vyr::Notify::instance()->addSink(warnings.get());
  for (const bool moves : {false, true}) {
    vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
    simulation->setGravity(vyr::Vec3());
    vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("bracket");
    body->add(new vyrCollide::Geometry(mesh.get()));
    body->setMotionControl(moves ? vyr::RigidBody::DYNAMICS : vyr::RigidBody::STATIC);
    simulation->add(body.get());
    vyr::ref_ptr<vyr::RigidBody> ball = new vyr::RigidBody("ball");
    ball->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.2)));
    ball->setPosition(vyr::Vec3(0.8, 0.5, 0.8));
    simulation->add(ball.get());
    simulation->step();
    EXPECT_EQ(simulation->getContacts().size(), moves ? 1u : 0u);
    EXPECT_EQ(warnings->texts.size(), moves ? 1u : 0u);
    vyr::ref_ptr<vyr::RigidBody> other = new vyr::RigidBody("another");
    other->add(new vyrCollide::Geometry(mesh.get()));
    other->setPosition(vyr::Vec3(50.0, 0.0, 0.0));
    if (moves) {
      simulation->add(other.get()); // each mesh warns once
    }
  }
  vyr::Notify::instance()->removeSink(warnings.get());
  ASSERT_EQ(warnings->texts.size(), 1u);
  EXPECT_NE(warnings->texts[0].find("'bracket'"), std::string::npos) << warnings->texts[0];
}

TEST(Trimesh, CarriesAndIsCarried) {
  const TemporaryFile file("cube.obj", kCubeObj);
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = vyrCollide::Trimesh::create(file.getPath());
  ASSERT_TRUE(mesh);
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  // Two fixed cubes share the triangles; a third one lies on the first.
  vyr::ref_ptr<vyr::RigidBody> table = scene::body(mesh.get());
  table->setMotionControl(vyr::RigidBody::STATIC);
  simulation->add(table.get());
  vyrCollide::Geometry* far = new vyrCollide::Geometry(mesh.get());
  far->setLocalTransform(vyr::AffineMatrix4x4::translate(5.0, 0.0, 0.0));
  simulation->add(far);
  vyr::ref_ptr<vyr::RigidBody> cube = scene::body(mesh.get(), vyr::Vec3(0.0, 0.0, 2.0));
  simulation->add(cube.get());
  vyr::ref_ptr<vyr::RigidBody> ball = scene::body(new vyrCollide::Sphere(0.5), vyr::Vec3(5.1, 0.2, 1.5));
  simulation->add(ball.get());
  EXPECT_NEAR(cube->getMass(), 8000.0, 1e-6);
  simulation->stepTo(2.0);
  EXPECT_NEAR(cube->getPosition().z(), 2.0, 5e-3);
  EXPECT_NEAR(ball->getPosition().z(), 1.5, 5e-3);
  vyr::Vec3 force;
  for (const vyrSDK::Contact& contact : simulation->getContacts()) {
    if (contact.geometry1 == far || contact.geometry2 == far) {
      force += contact.getForce() * (contact.geometry1 == far ? -1.0 : 1.0);
    }
  }
  EXPECT_NEAR(force.z(), ball->getMass() * scene::kGravity, 0.01 * ball->getMass() * scene::kGravity);
}
