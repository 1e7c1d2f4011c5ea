/// Makes the textures that render state scripts describe.
#pragma once

#include "ConfigReader.h"

#include <osg/Image>
#include <osg/Texture>
#include <osg/Uniform>

#include <string>
#include <vector>

namespace vyrOSG {

/// One entry of the section "textures".
class TextureEntry {
public:
  /// *borrows* the reader. `folder`: where files are looked for first; `line`: of the entry.
  TextureEntry(ConfigReader& reader, const std::string& folder, int line);

  /// Null, after one error line, where the entry has a mistake.
  osg::ref_ptr<osg::Texture> make();

  /// The sampler of shaders that reads a texture.
  static osg::Uniform::Type samplerOf(const osg::Texture& texture);

private:
  struct File {
    std::string name;
    int line;
  };

  /// The files that the entry names, checked against what its kind takes.
  std::vector<File> files(std::size_t kind);
  osg::ref_ptr<osg::Image> read(const File& file, const char* key);
  /// Whether pictures have the same size and format.
  bool areAlike(const std::vector<osg::ref_ptr<osg::Image>>& images, const std::vector<File>& files);

  ConfigReader& m_reader;
  std::string m_folder;
  int m_line;
};

} // namespace vyrOSG
