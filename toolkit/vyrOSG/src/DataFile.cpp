// Looks for data files where the scene-graph library looks, and says where it looked.
#include "DataFile.h"

#include "FileSearch.h"
#include "ReaderMessages.h"

#include <vyr/Notify.h>

#include <osgDB/FileNameUtils>
#include <osgDB/ReadFile>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <sstream>

namespace vyrOSG::datafile {

namespace {

bool report(const char* caller, const std::string& path, const std::string& reason) {
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << caller << ": cannot read '" << path << "': " << reason;
  return false;
}

/// Brings numbers linearly from one range into another; a range without extent moves to the lower end.
void mapRange(std::vector<double>& values, double low, double high, double newLow, double newHigh) {
  const double factor = high > low ? (newHigh - newLow) / (high - low) : 0;
  for (double& value : values)
    value = newLow + (value - low) * factor;
}

bool readTextHeights(const char* caller, const std::string& path, double minHeight, double maxHeight,
                     Heights& outHeights) {
  std::ifstream file(path);
  std::string line;
  for (size_t lineNumber = 1; std::getline(file, line); ++lineNumber) {
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == ',' || c == ';' || c == '\r'; }, ' ');
    std::istringstream words(line);
    size_t columns = 0;
    for (std::string word; words >> word; ++columns) {
      char* end = nullptr;
      const double value = std::strtod(word.c_str(), &end);
      if (*end != '\0' || !std::isfinite(value))
        return report(caller, path, "line " + std::to_string(lineNumber) + ": '" + word + "' is no height");
      outHeights.values.push_back(value);
    }
    if (columns == 0)
      continue;
    if (outHeights.rows > 0 && columns != outHeights.columns)
      return report(caller, path,
                    "line " + std::to_string(lineNumber) + " has " + std::to_string(columns) +
                        " heights, the lines before it " + std::to_string(outHeights.columns));
    outHeights.columns = columns;
    ++outHeights.rows;
  }
  if (outHeights.rows < 2 || outHeights.columns < 2)
    return report(caller, path, "a height field needs two rows and two columns at least");
  if (minHeight < maxHeight) {
    const auto range = std::minmax_element(outHeights.values.begin(), outHeights.values.end());
    mapRange(outHeights.values, *range.first, *range.second, minHeight, maxHeight);
  }
  return true;
}

bool readRawHeights(const char* caller, const std::string& path, double minHeight, double maxHeight,
                    Heights& outHeights) {
  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  const size_t count = bytes.size() / 2;
  const auto side = static_cast<size_t>(std::lround(std::sqrt(double(count))));
  if (side < 2 || side * side != count || bytes.size() % 2 != 0)
    return report(caller, path, std::to_string(bytes.size()) + " bytes are no square of 16-bit numbers");
  outHeights.columns = outHeights.rows = side;
  for (size_t i = 0; i < count; ++i) {
    const auto low = static_cast<unsigned char>(bytes[2 * i]);
    const auto high = static_cast<unsigned char>(bytes[2 * i + 1]);
    outHeights.values.push_back(double(low + 256 * high));
  }
  mapRange(outHeights.values, 0, 65535, minHeight, maxHeight);
  return true;
}

} // namespace

std::string find(const char* caller, const std::string& fileName) {
  const FileSearch search(fileName);
  if (!search.isFound()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << caller << ": cannot find '" << fileName << "', tried: " << search.getTried();
  }
  return search.getPath();
}

osg::ref_ptr<osg::Image> readImage(const char* caller, const std::string& fileName) {
  const std::string path = find(caller, fileName);
  if (path.empty())
    return nullptr;
  ReaderMessages messages(path);
  osg::ref_ptr<osg::Image> image = osgDB::readRefImageFile(path);
  if (!image || !image->data()) {
    messages.takeReason(); // the line below says it
    report(caller, path, "it is no image of a known format");
    return nullptr;
  }
  return image;
}

bool readHeights(const char* caller, const std::string& fileName, double minHeight, double maxHeight,
                 Heights& outHeights) {
  const std::string path = find(caller, fileName);
  if (path.empty())
    return false;
  const std::string extension = osgDB::getLowerCaseFileExtension(path);
  if (extension == "txt" || extension == "asc" || extension == "csv" || extension == "dat")
    return readTextHeights(caller, path, minHeight, maxHeight, outHeights);
  if (extension == "raw" || extension == "r16")
    return readRawHeights(caller, path, minHeight, maxHeight, outHeights);

  osg::ref_ptr<osg::Image> image = readImage(caller, path);
  if (!image)
    return false;
  if (image->s() < 2 || image->t() < 2)
    return report(caller, path, "a height field needs two rows and two columns at least");
  outHeights.columns = static_cast<size_t>(image->s());
  outHeights.rows = static_cast<size_t>(image->t());
  const bool colored = osg::Image::computeNumComponents(image->getPixelFormat()) >= 3;
  for (int t = 0; t < image->t(); ++t) {
    for (int s = 0; s < image->s(); ++s) {
      const osg::Vec4 pixel = image->getColor(static_cast<unsigned int>(s), static_cast<unsigned int>(t));
      // Source: ITU-R BT.601, luma from red, green and blue. An equal share in all three gives itself.
      outHeights.values.push_back(colored ? 0.299 * double(pixel.r()) + 0.587 * double(pixel.g()) +
                                                0.114 * double(pixel.b())
                                          : double(pixel.r()));
    }
  }
  mapRange(outHeights.values, 0, 1, minHeight, maxHeight);
  return true;
}

} // namespace vyrOSG::datafile
