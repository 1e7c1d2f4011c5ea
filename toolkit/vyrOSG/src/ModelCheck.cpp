// Counts what an .obj file defines and compares each index that it uses; follows the lines of an .stl file of text.
#include "ModelCheck.h"

#include <osgDB/FileNameUtils>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

namespace vyrOSG {

namespace {

/// Vertices, texture coordinates and normals.
using Counts = std::array<long, 3>;

struct Use {
  int line;
  std::string corner; // "vertex/texture/normal", the last two optional
  Counts before;      // what stood above it: negative indices count from there
};

bool isSound(const Use& use, const Counts& counts) {
  std::istringstream parts(use.corner);
  std::string part;
  for (std::size_t kind = 0; kind < counts.size() && std::getline(parts, part, '/'); ++kind) {
    if (part.empty() && kind > 0)
      continue;
    const long index = std::strtol(part.c_str(), nullptr, 10);
    if (index == 0 || index > counts[kind] || index < -use.before[kind])
      return false;
  }
  return true;
}

/// Reads a line and those that it continues in.
bool readLine(std::istream& file, std::string& outLine, int& number) {
  if (!std::getline(file, outLine))
    return false;
  ++number;
  std::string next;
  while (!outLine.empty() && outLine.back() == '\\' && std::getline(file, next)) {
    outLine.back() = ' ';
    outLine += next;
    ++number;
  }
  return true;
}

/// The numbers behind a line's first word, at most 7.
int countNumbers(const std::string& line) {
  std::array<float, 7> n = {};
  return std::max(
      0, std::sscanf(line.c_str(), "%*s %f %f %f %f %f %f %f", &n[0], &n[1], &n[2], &n[3], &n[4], &n[5], &n[6]));
}

/// Counts vertices ("v"; 3 or 4 numbers, or 6 or 7 with a colour), texture coordinates ("vt") and normals ("vn").
class Counter {
public:
  /// False where a line's numbers are too few or others than before: the library leaves such a line out, and all later
  /// indices would miss, or has fewer colours than vertices.
  bool add(const std::string& word, const std::string& line) {
    const int numbers = word == "v" || word == "vt" || word == "vn" ? countNumbers(line) : 0;
    if (word == "v") {
      const bool hasColor = numbers > 5;
      const bool isFirst = m_counts[0]++ == 0;
      m_hasColors = isFirst ? hasColor : m_hasColors;
      return numbers >= 3 && numbers != 5 && hasColor == m_hasColors;
    }
    m_counts[1] += word == "vt" ? 1 : 0;
    m_counts[2] += word == "vn" ? 1 : 0;
    return (word != "vt" || numbers >= 1) && (word != "vn" || numbers >= 3);
  }

  const Counts& get() const { return m_counts; }

private:
  Counts m_counts = {0, 0, 0};
  bool m_hasColors = false;
};

bool isSoundObj(std::istream& file, std::string& outProblem) {
  Counter counter;
  std::vector<Use> uses;
  std::string line;
  int number = 0;
  while (readLine(file, line, number)) {
    std::istringstream words(line);
    std::string word;
    words >> word;
    if (!counter.add(word, line)) {
      outProblem = "line " + std::to_string(number) + " has other numbers behind '" + word + "' than it should";
      return false;
    }
    if (word == "f" || word == "l" || word == "p")
      while (words >> word)
        uses.push_back({number, word, counter.get()});
  }
  for (const Use& use : uses) {
    if (!isSound(use, counter.get())) {
      outProblem = "line " + std::to_string(use.line) + " names '" + use.corner + "', which the file does not have";
      return false;
    }
  }
  return true;
}

/// The beginnings of the lines in their order; a facet has three vertices and may be followed by another one.
const char* const kFacet[] = {"facet normal ", "outer loop", "vertex ", "vertex ", "vertex ", "endloop", "endfacet"};

/// Whether a text begins with three words that are numbers as a whole.
bool hasThreeNumbers(const std::string& text) {
  std::istringstream words(text);
  std::string word;
  for (int i = 0; i < 3; ++i) {
    char* end = nullptr;
    if (!(words >> word) || (std::strtod(word.c_str(), &end), *end != '\0'))
      return false;
  }
  return true;
}

bool isSoundStl(std::istream& file, std::string& outProblem) {
  constexpr std::size_t kLast = std::size(kFacet) - 1;
  std::string line;
  std::size_t expected = 0;
  std::getline(file, line); // "solid", which told that the file is text
  for (int number = 2; std::getline(file, line); ++number) {
    const std::size_t first = line.find_first_not_of(" \t\r");
    if (first == std::string::npos)
      continue;
    line.erase(0, first);
    // Longer ones are cut into several by the library.
    if (line.size() < 200 && expected == 0 && (line.rfind("endsolid", 0) == 0 || line.rfind("solid", 0) == 0))
      continue;
    const std::string rest = line.substr(std::min(line.size(), std::string(kFacet[expected]).size()));
    const bool hasNumbers = expected == 0 || (expected >= 2 && expected <= 4);
    if (line.size() >= 200 || line.rfind(kFacet[expected], 0) != 0 || (hasNumbers && !hasThreeNumbers(rest))) {
      outProblem = "line " + std::to_string(number) + " is no '" + kFacet[expected] + "'";
      return false;
    }
    expected = expected == kLast ? 0 : expected + 1;
  }
  if (expected != 0)
    outProblem = "the last facet is cut off";
  return expected == 0;
}

/// The length of a binary file follows from its count; every other one is text to the library.
bool isBinaryStl(std::istream& file) {
  char header[84] = {};
  file.seekg(0, std::ios::end);
  const auto size = static_cast<std::uint64_t>(file.tellg());
  file.seekg(0);
  file.read(header, sizeof header);
  file.clear();
  file.seekg(0);
  std::uint32_t count = 0;
  std::memcpy(&count, header + 80, sizeof count);
  return size == sizeof header + std::uint64_t{50} * count;
}

} // namespace

bool isSoundModel(const std::string& path, std::string& outProblem) {
  const std::string extension = osgDB::getLowerCaseFileExtension(path);
  if (extension != "obj" && extension != "stl" && extension != "sta")
    return true;
  std::ifstream file(path, std::ios::binary);
  if (extension == "obj")
    return isSoundObj(file, outProblem);
  return isBinaryStl(file) || isSoundStl(file, outProblem);
}

} // namespace vyrOSG
