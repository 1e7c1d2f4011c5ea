/// Reads triangle meshes from files.
#include "MeshReader.h"

#include <vyr/Notify.h>

#include <array>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>

namespace vyrPhysics {

namespace {

using Vertices = std::vector<vyr::Vec3>;
using Indices = std::vector<unsigned int>;

std::string lowerCaseEnding(const std::string& fileName) {
  const size_t dot = fileName.rfind('.');
  std::string ending = dot == std::string::npos ? std::string() : fileName.substr(dot + 1);
  for (char& c : ending) {
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return ending;
}

/// A face corner of an OBJ file: "7", "7/1", "7//3" or "-1", counted from 1 or back from the last vertex.
bool parseCorner(const std::string& text, size_t numVertices, unsigned int& outIndex) {
  std::istringstream in(text);
  long number = 0;
  if (!(in >> number) || number == 0) {
    return false;
  }
  const long index = number > 0 ? number - 1 : static_cast<long>(numVertices) + number;
  if (index < 0 || index >= static_cast<long>(numVertices)) {
    return false;
  }
  outIndex = static_cast<unsigned int>(index);
  return true;
}

/// Gives equal places one index.
class Welder {
public:
  explicit Welder(Vertices& vertices)
      : m_vertices(vertices) {}

  unsigned int add(const vyr::Vec3& v) {
    const auto entry = m_indices.emplace(std::array<double, 3>{v.x(), v.y(), v.z()}, m_vertices.size());
    if (entry.second) {
      m_vertices.push_back(v);
    }
    return static_cast<unsigned int>(entry.first->second);
  }

private:
  Vertices& m_vertices;
  std::map<std::array<double, 3>, size_t> m_indices;
};

bool readObj(std::istream& in, Vertices& vertices, Indices& indices, std::string& outReason) {
  std::string line;
  for (size_t number = 1; std::getline(in, line); ++number) {
    std::istringstream words(line);
    std::string keyword;
    words >> keyword;
    bool good = true;
    if (keyword == "v") {
      double x = 0.0;
      double y = 0.0;
      double z = 0.0;
      good = static_cast<bool>(words >> x >> y >> z);
      // The files' custom is y up.
      vertices.emplace_back(x, -z, y);
    } else if (keyword == "f") {
      Indices corners;
      std::string word;
      while (good && words >> word) {
        unsigned int index = 0;
        good = parseCorner(word, vertices.size(), index);
        corners.push_back(index);
      }
      good = good && corners.size() >= 3;
      for (size_t i = 2; good && i < corners.size(); ++i) {
        indices.insert(indices.end(), {corners[0], corners[i - 1], corners[i]});
      }
    }
    if (!good) {
      outReason = "line " + std::to_string(number) + " is not understood";
      return false;
    }
  }
  // Programs write a corner once for each of its normals; left apart, no mesh of theirs would be closed.
  Vertices welded;
  Welder welder(welded);
  for (unsigned int& index : indices) {
    index = welder.add(vertices[index]);
  }
  vertices.swap(welded);
  return true;
}

const size_t kStlHeaderSize = 84;
const size_t kStlTriangleSize = 50;

uint32_t readCount(const std::string& data) {
  const auto byte = [&data](size_t i) { return static_cast<uint32_t>(static_cast<unsigned char>(data[i])); };
  return byte(80) | byte(81) << 8 | byte(82) << 16 | byte(83) << 24;
}

/// A binary STL file is known by its length: text files may begin with "solid", and so may binary ones.
bool isBinaryStl(const std::string& data) {
  return data.size() >= kStlHeaderSize && data.size() == kStlHeaderSize + kStlTriangleSize * readCount(data);
}

void readBinaryStl(const std::string& data, Vertices& vertices, Indices& indices) {
  Welder welder(vertices);
  for (size_t at = kStlHeaderSize; at + kStlTriangleSize <= data.size(); at += kStlTriangleSize) {
    for (size_t corner = 0; corner < 3; ++corner) {
      float xyz[3];
      std::memcpy(xyz, data.data() + at + 12 * (corner + 1), sizeof(xyz));
      indices.push_back(welder.add(vyr::Vec3(xyz[0], xyz[1], xyz[2])));
    }
  }
}

bool readTextStl(const std::string& data, Vertices& vertices, Indices& indices, std::string& outReason) {
  Welder welder(vertices);
  std::istringstream in(data);
  std::string word;
  while (in >> word) {
    if (word == "vertex") {
      double x = 0.0;
      double y = 0.0;
      double z = 0.0;
      if (!(in >> x >> y >> z)) {
        outReason = "a vertex without three numbers";
        return false;
      }
      indices.push_back(welder.add(vyr::Vec3(x, y, z)));
    }
  }
  if (indices.size() % 3 != 0) {
    outReason = "a triangle without three vertices";
    return false;
  }
  return true;
}

} // namespace

bool readMesh(const std::string& fileName, std::vector<vyr::Vec3>& outVertices, std::vector<unsigned int>& outIndices) {
  std::string reason;
  const std::string ending = lowerCaseEnding(fileName);
  std::ifstream file(fileName, std::ios::binary);
  std::stringstream content;
  if (ending != "obj" && ending != "stl") {
    reason = "the ending is neither .obj nor .stl";
  } else if (!file || !(content << file.rdbuf())) {
    reason = "the file cannot be read";
  } else if (ending == "obj") {
    readObj(content, outVertices, outIndices, reason);
  } else {
    const std::string data = content.str();
    if (isBinaryStl(data)) {
      readBinaryStl(data, outVertices, outIndices);
    } else {
      readTextStl(data, outVertices, outIndices, reason);
    }
  }
  if (reason.empty() && outIndices.empty()) {
    reason = "the file holds no triangle";
  }
  if (!reason.empty()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot read the mesh '" << fileName << "': " << reason;
    return false;
  }
  return true;
}

} // namespace vyrPhysics
