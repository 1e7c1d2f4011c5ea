// Writes the box in formats of text and of bytes.
#include "ModelFiles.h"

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Material>
#include <osgDB/WriteFile>

#include <array>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <vector>

namespace modelfiles {

namespace {

using Corner = std::array<float, 3>;

/// Corner i of the box: bit 0 is x, bit 1 y, bit 2 z.
Corner corner(int i) {
  return {static_cast<float>(i & 1), static_cast<float>(i & 2), 3.0f * static_cast<float>((i >> 2) & 1)};
}

constexpr int kCorners = 8;
/// Counter-clockwise seen from outside.
const std::vector<std::vector<int>> kQuads = {{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4},
                                              {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}};

std::vector<std::vector<int>> triangles() {
  std::vector<std::vector<int>> result;
  for (const std::vector<int>& quad : kQuads) {
    result.push_back({quad[0], quad[1], quad[2]});
    result.push_back({quad[0], quad[2], quad[3]});
  }
  return result;
}

/// All corners, with something between the numbers and something behind each corner but the last.
std::string cornerList(const std::string& between, const std::string& behind) {
  std::ostringstream out;
  for (int i = 0; i < kCorners; ++i) {
    const Corner c = corner(i);
    out << c[0] << between << c[1] << between << c[2] << (i + 1 < kCorners ? behind : "");
  }
  return out.str();
}

/// All faces, each with something before, between and behind its corners, which are counted from `first`.
std::string faceList(const std::vector<std::vector<int>>& faces, const std::string& before, const std::string& between,
                     const std::string& behind, int first = 0) {
  std::ostringstream out;
  for (const std::vector<int>& face : faces) {
    out << before;
    for (std::size_t i = 0; i < face.size(); ++i)
      out << face[i] + first << (i + 1 < face.size() ? between : behind);
  }
  return out.str();
}

/// Bytes of numbers in either order.
class Bytes {
public:
  explicit Bytes(bool bigEndian)
      : m_bigEndian(bigEndian) {}

  Bytes& text(const std::string& value) { return m_data += value, *this; }
  Bytes& integer(std::int64_t value, int size) { return number(static_cast<std::uint64_t>(value), size, m_bigEndian); }
  Bytes& bigInteger(std::int64_t value) { return number(static_cast<std::uint64_t>(value), 4, true); }
  Bytes& real(float value) {
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return number(bits, 4, m_bigEndian);
  }
  Bytes& real64(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return number(bits, 8, m_bigEndian);
  }
  Bytes& place(const Corner& c) { return real(c[0]).real(c[1]).real(c[2]); }
  const std::string& get() const { return m_data; }

private:
  Bytes& number(std::uint64_t value, int size, bool bigEndian) {
    for (int i = 0; i < size; ++i)
      m_data.push_back(static_cast<char>(value >> 8 * (bigEndian ? size - 1 - i : i) & 0xff));
    return *this;
  }

  bool m_bigEndian;
  std::string m_data;
};

/// A chunk of an interchange file: its name, its length, its content, filled up to an even length.
std::string chunk(const std::string& name, const std::string& content) {
  const std::string head = Bytes(true).text(name).bigInteger(static_cast<std::int64_t>(content.size())).get();
  return head + content + std::string(content.size() % 2, '\0');
}

std::string cornerBytes(bool bigEndian) {
  Bytes bytes(bigEndian);
  for (int i = 0; i < kCorners; ++i)
    bytes.place(corner(i));
  return bytes.get();
}

} // namespace

std::string objectFile() {
  return "v " + cornerList(" ", "\nv ") + "\n" + faceList(kQuads, "f ", " ", "\n", 1);
}

std::string polygonFile(bool binary) {
  const std::string head = std::string("ply\nformat ") + (binary ? "binary_little_endian" : "ascii") +
                           " 1.0\nelement vertex 8\nproperty float x\nproperty float y\nproperty float z\n"
                           "element face 6\nproperty list uchar int vertex_indices\nend_header\n";
  if (!binary)
    return head + cornerList(" ", "\n") + "\n" + faceList(kQuads, "4 ", " ", "\n");
  Bytes faces(false);
  for (const std::vector<int>& quad : kQuads) {
    faces.integer(4, 1);
    for (int i : quad)
      faces.integer(i, 4);
  }
  return head + cornerBytes(false) + faces.get();
}

std::string stereoLithography(bool binary) {
  std::ostringstream text;
  Bytes bytes(false);
  bytes.text(std::string(80, ' ')).integer(12, 4);
  text << "solid box\n";
  for (const std::vector<int>& triangle : triangles()) {
    text << "facet normal 0 0 0\nouter loop\n";
    bytes.place({0, 0, 0});
    for (int i : triangle) {
      const Corner c = corner(i);
      text << "vertex " << c[0] << ' ' << c[1] << ' ' << c[2] << '\n';
      bytes.place(c);
    }
    text << "endloop\nendfacet\n";
    bytes.integer(0, 2);
  }
  text << "endsolid box\n";
  return binary ? bytes.get() : text.str();
}

std::string ac() {
  std::ostringstream out;
  out << "AC3Db\nMATERIAL \"red\" rgb 0.8 0.2 0.1  amb 0.2 0.2 0.2  emis 0 0 0  spec 0.5 0.5 0.5  shi 10  trans 0\n"
      << "OBJECT world\nkids 1\nOBJECT poly\nname \"box\"\nnumvert 8\n"
      << cornerList(" ", "\n") << "\nnumsurf 6\n"
      << faceList(kQuads, "SURF 0x00\nmat 0\nrefs 4\n", " 0 0\n", " 0 0\n") << "kids 0\n";
  return out.str();
}

std::string drawingExchange() {
  std::ostringstream out;
  out << "0\nSECTION\n2\nENTITIES\n";
  for (const std::vector<int>& quad : kQuads) {
    out << "0\n3DFACE\n8\n0\n";
    for (std::size_t k = 0; k < quad.size(); ++k)
      for (std::size_t axis = 0; axis < 3; ++axis)
        out << 10 * (axis + 1) + k << '\n' << corner(quad[k])[axis] << '\n';
  }
  out << "0\nENDSEC\n0\nEOF\n";
  return out.str();
}

std::string directX() {
  return "xof 0303txt 0032\nMaterial red {\n0.8;0.2;0.1;1.0;;\n10.0;\n0.5;0.5;0.5;;\n0.0;0.0;0.0;;\n}\nMesh box "
         "{\n8;\n" +
         cornerList(";", ";,\n") + ";;\n6;\n" + faceList(kQuads, "4;", ",", ";\n") +
         "MeshMaterialList {\n1;\n6;\n0,\n0,\n0,\n0,\n0,\n0;\n{red}\n}\n}\n";
}

std::string inventor(const std::string& header) {
  return header + "\nSeparator {\n Material { diffuseColor 0.8 0.2 0.1 }\n Coordinate3 { point [ " +
         cornerList(" ", ", ") + " ] }\n IndexedFaceSet { coordIndex [ " + faceList(kQuads, "", ", ", ", -1, ") +
         " ] }\n}\n";
}

std::string virtualReality() {
  return "#VRML V2.0 utf8\nShape { appearance Appearance { material Material { diffuseColor 0.8 0.2 0.1 } }\n"
         " geometry IndexedFaceSet { coord Coordinate { point [ " +
         cornerList(" ", ", ") + " ] } coordIndex [ " + faceList(kQuads, "", ", ", ", -1, ") + " ] } }\n";
}

std::string collada(const std::string& upAxis) {
  return R"(<?xml version="1.0"?>
<COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1"><asset><up_axis>)" +
         upAxis + R"(</up_axis></asset>
<library_geometries><geometry id="g"><mesh><source id="p"><float_array id="pa" count="24">)" +
         cornerList(" ", " ") + R"(</float_array>
<technique_common><accessor source="#pa" count="8" stride="3"><param name="X" type="float"/>
<param name="Y" type="float"/><param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="12"><input semantic="VERTEX" source="#v" offset="0"/><p>)" +
         faceList(triangles(), "", " ", " ") + R"(</p></triangles></mesh></geometry></library_geometries>
<library_visual_scenes><visual_scene id="s"><node id="n"><instance_geometry url="#g"/></node></visual_scene>
</library_visual_scenes><scene><instance_visual_scene url="#s"/></scene></COLLADA>)";
}

std::string lightWave() {
  Bytes polygons(true);
  Bytes tags(true);
  polygons.text("FACE");
  tags.text("SURF");
  for (std::size_t face = 0; face < kQuads.size(); ++face) {
    polygons.integer(4, 2);
    for (int i : kQuads[face])
      polygons.integer(i, 2);
    tags.integer(static_cast<std::int64_t>(face), 2).integer(0, 2);
  }
  const std::string color =
      Bytes(true).text("COLR").integer(14, 2).real(0.8f).real(0.2f).real(0.1f).integer(0, 2).get();
  return chunk("FORM", "LWO2" + chunk("TAGS", std::string("red\0", 4)) +
                           chunk("LAYR", std::string(16, '\0') + std::string("box\0", 4)) +
                           chunk("PNTS", cornerBytes(true)) + chunk("POLS", polygons.get()) +
                           chunk("PTAG", tags.get()) + chunk("SURF", std::string("red\0\0\0", 6) + color));
}

std::string lightWaveOld() {
  Bytes polygons(true);
  for (const std::vector<int>& quad : kQuads) {
    polygons.integer(4, 2);
    for (int i : quad)
      polygons.integer(i, 2);
    polygons.integer(1, 2);
  }
  const std::string color = Bytes(true).text("COLR").integer(4, 2).text("\xc8\x32\x19").integer(0, 1).get();
  return chunk("FORM", "LWOB" + chunk("PNTS", cornerBytes(true)) + chunk("SRFS", std::string("red\0", 4)) +
                           chunk("POLS", polygons.get()) + chunk("SURF", std::string("red\0", 4) + color));
}

std::string gameModel() {
  // A header of 17 numbers, one texture coordinate, the triangles, one frame of corners as bytes of its scale.
  constexpr int kHeader = 68;
  constexpr int kCoordinates = 4;
  constexpr int kTriangles = 12 * 12;
  constexpr int kFrame = 40 + 4 * kCorners;
  Bytes bytes(false);
  bytes.text("IDP2");
  for (int number : {8, 64, 64, kFrame, 0, kCorners, 1, 12, 1, 1, kHeader, kHeader, kHeader + kCoordinates,
                     kHeader + kCoordinates + kTriangles, kHeader + kCoordinates + kTriangles + kFrame,
                     kHeader + kCoordinates + kTriangles + kFrame + 4})
    bytes.integer(number, 4);
  bytes.integer(0, kCoordinates);
  for (const std::vector<int>& triangle : triangles()) {
    for (int i : triangle)
      bytes.integer(i, 2);
    bytes.integer(0, 6);
  }
  bytes.place({1 / 255.0f, 2 / 255.0f, 3 / 255.0f}).place({0, 0, 0}).text("still01").text(std::string(9, '\0'));
  for (int i = 0; i < kCorners; ++i)
    bytes.integer(i & 1 ? 255 : 0, 1).integer(i & 2 ? 255 : 0, 1).integer(i & 4 ? 255 : 0, 1).integer(0, 1);
  return bytes.integer(0, 4).get();
}

std::string shapeFile() {
  const double ring[5][2] = {{0, 0}, {0, 2}, {1, 2}, {1, 0}, {0, 0}};
  Bytes record(false);
  record.integer(5, 4).real64(0).real64(0).real64(1).real64(2).integer(1, 4).integer(5, 4).integer(0, 4);
  for (const auto& point : ring)
    record.real64(point[0]).real64(point[1]);
  const auto words = static_cast<std::int64_t>(record.get().size() / 2);
  Bytes file(false);
  file.bigInteger(9994).integer(0, 20).bigInteger(50 + 4 + words).integer(1000, 4).integer(5, 4);
  file.real64(0).real64(0).real64(1).real64(2).real64(0).real64(0).real64(0).real64(0);
  return file.bigInteger(1).bigInteger(words).text(record.get()).get();
}

std::string square() {
  return R"({"type": "FeatureCollection", "features": [{"type": "Feature", "properties": {}, "geometry":
{"type": "Polygon", "coordinates": [[[0, 0], [1, 0], [1, 2], [0, 2], [0, 0]]]}}]})";
}

std::string animatedSkeleton() {
  return "HIERARCHY\nROOT hip\n{\nOFFSET 0 0 0\nCHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation "
         "Yrotation\n"
         "JOINT knee\n{\nOFFSET 0 1 0\nCHANNELS 3 Zrotation Xrotation Yrotation\nEnd Site\n{\nOFFSET 0 1 0\n}\n}\n}\n"
         "MOTION\nFrames: 1\nFrame Time: 0.1\n0 0 0 0 0 0 0 0 0\n";
}

std::string points() {
  return cornerList(" ", " 255 0 0\n") + " 255 0 0\n";
}

bool writeByLibrary(const std::string& path) {
  osg::ref_ptr<osg::Geometry> box = new osg::Geometry;
  osg::ref_ptr<osg::Vec3Array> places = new osg::Vec3Array;
  osg::ref_ptr<osg::Vec3Array> normals = new osg::Vec3Array(osg::Array::BIND_PER_VERTEX);
  for (const std::vector<int>& triangle : triangles()) {
    osg::Vec3 place[3];
    for (std::size_t i = 0; i < 3; ++i) {
      const Corner c = corner(triangle[i]);
      place[i].set(c[0], c[1], c[2]);
    }
    osg::Vec3 normal = (place[1] - place[0]) ^ (place[2] - place[0]);
    normal.normalize();
    for (const osg::Vec3& p : place) {
      places->push_back(p);
      normals->push_back(normal);
    }
  }
  box->setVertexArray(places);
  box->setNormalArray(normals);
  box->addPrimitiveSet(new osg::DrawArrays(GL_TRIANGLES, 0, static_cast<GLsizei>(places->size())));
  osg::ref_ptr<osg::Material> red = new osg::Material;
  red->setDiffuse(osg::Material::FRONT_AND_BACK, osg::Vec4(0.8f, 0.2f, 0.1f, 1));
  osg::ref_ptr<osg::Geode> geode = new osg::Geode;
  geode->setName("box");
  geode->addDrawable(box);
  geode->getOrCreateStateSet()->setAttributeAndModes(red);
  return osgDB::writeNodeFile(*geode, path);
}

} // namespace modelfiles
