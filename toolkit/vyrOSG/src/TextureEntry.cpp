/// Lines, pictures, stacks of pictures and cubes as textures.
#include "TextureEntry.h"

#include "FileSearch.h"

#include <osg/Texture1D>
#include <osg/Texture2D>
#include <osg/Texture3D>
#include <osg/TextureCubeMap>
#include <osg/Uniform>
#include <osgDB/Registry>

#include <cstring>

namespace vyrOSG {

namespace {

enum Kind { FLAT, LINE, STACK, CUBE };
const std::vector<std::string> kKindNames{"2d", "1d", "3d", "cube"};

const std::vector<std::string> kWrapNames{"repeat", "clamp", "mirror"};
const osg::Texture::WrapMode kWraps[] = {osg::Texture::REPEAT, osg::Texture::CLAMP_TO_EDGE, osg::Texture::MIRROR};

const std::vector<std::string> kFilterNames{"mipmap", "linear", "nearest"};
const osg::Texture::FilterMode kMinFilters[] = {osg::Texture::LINEAR_MIPMAP_LINEAR, osg::Texture::LINEAR,
                                                osg::Texture::NEAREST};
const osg::Texture::FilterMode kMagFilters[] = {osg::Texture::LINEAR, osg::Texture::LINEAR, osg::Texture::NEAREST};

/// The sides of a cube are given in the order of their numbers: +x, -x, +y, -y, +z, -z.
constexpr std::size_t kSides = 6;

using Images = std::vector<osg::ref_ptr<osg::Image>>;

/// The lowest row of a picture.
osg::ref_ptr<osg::Image> lowestRow(const osg::Image& image) {
  osg::ref_ptr<osg::Image> row = new osg::Image;
  row->allocateImage(image.s(), 1, 1, image.getPixelFormat(), image.getDataType(), image.getPacking());
  row->setInternalTextureFormat(image.getInternalTextureFormat());
  std::memcpy(row->data(), image.data(), row->getRowSizeInBytes());
  return row;
}

osg::ref_ptr<osg::Image> stack(const Images& images) {
  const osg::Image& first = *images.front();
  osg::ref_ptr<osg::Image> all = new osg::Image;
  all->allocateImage(first.s(), first.t(), static_cast<int>(images.size()), first.getPixelFormat(), first.getDataType(),
                     first.getPacking());
  all->setInternalTextureFormat(first.getInternalTextureFormat());
  for (std::size_t layer = 0; layer < images.size(); ++layer)
    std::memcpy(all->data(0, 0, static_cast<unsigned int>(layer)), images[layer]->data(),
                images[layer]->getTotalSizeInBytes());
  return all;
}

osg::ref_ptr<osg::Texture> makeCube(const Images& images) {
  osg::ref_ptr<osg::TextureCubeMap> cube = new osg::TextureCubeMap;
  for (unsigned int side = 0; side < kSides; ++side) {
    // The rows of a cube map run from the top down, those of a read image from the bottom up.
    images[side]->flipVertical();
    cube->setImage(side, images[side]);
  }
  return cube;
}

} // namespace

TextureEntry::TextureEntry(ConfigReader& reader, const std::string& folder, int line)
    : m_reader(reader)
    , m_folder(folder)
    , m_line(line) {}

osg::ref_ptr<osg::Texture> TextureEntry::make() {
  std::size_t kind = FLAT, wrap = 0, filter = 0;
  double anisotropy = 1;
  m_reader.getWord("kind", kKindNames, kind);
  const std::vector<File> names = files(kind);
  m_reader.getWord("wrap", kWrapNames, wrap);
  m_reader.getWord("filter", kFilterNames, filter);
  m_reader.getNumber("anisotropy", anisotropy);
  Images images;
  for (std::size_t i = 0; m_reader.isGood() && i < names.size(); ++i)
    images.push_back(read(names[i], kind == FLAT || kind == LINE ? "file" : "files"));
  if (!m_reader.isGood() || !areAlike(images, names))
    return nullptr;
  if (kind == CUBE && images.front()->s() != images.front()->t()) {
    m_reader.fail(names.front().line, "the sides of a cube are square");
    return nullptr;
  }

  osg::ref_ptr<osg::Texture> texture;
  if (kind == FLAT)
    texture = new osg::Texture2D(images.front());
  else if (kind == LINE)
    texture = new osg::Texture1D(lowestRow(*images.front()));
  else if (kind == STACK)
    texture = new osg::Texture3D(stack(images));
  else
    texture = makeCube(images);
  for (auto axis : {osg::Texture::WRAP_S, osg::Texture::WRAP_T, osg::Texture::WRAP_R})
    texture->setWrap(axis, kind == CUBE ? osg::Texture::CLAMP_TO_EDGE : kWraps[wrap]);
  texture->setFilter(osg::Texture::MIN_FILTER, kMinFilters[filter]);
  texture->setFilter(osg::Texture::MAG_FILTER, kMagFilters[filter]);
  texture->setMaxAnisotropy(static_cast<float>(anisotropy));
  return texture;
}

std::vector<TextureEntry::File> TextureEntry::files(std::size_t kind) {
  if (kind == FLAT || kind == LINE) {
    const vyrCFG::ConfigValue* value = m_reader.take("file");
    std::string name;
    m_reader.getString("file", name);
    if (!value)
      m_reader.fail(m_line, "a \"file\" is needed");
    return {{name, value ? value->getLine() : m_line}};
  }
  const vyrCFG::ConfigValue* value = m_reader.take("files");
  std::vector<std::string> names;
  m_reader.getStrings("files", names);
  if (!m_reader.isGood())
    return {};
  if (!value || (kind == CUBE ? names.size() != kSides : names.size() < 2)) {
    m_reader.fail(value ? value->getLine() : m_line, kind == CUBE
                                                         ? "\"files\" with the six sides of the cube are needed"
                                                         : "\"files\" with two pictures or more are needed");
    return {};
  }
  std::vector<File> result;
  for (std::size_t i = 0; i < names.size(); ++i)
    result.push_back({names[i], value->getElements()[i].getLine()});
  return result;
}

osg::ref_ptr<osg::Image> TextureEntry::read(const File& file, const char* key) {
  const FileSearch search(file.name, m_folder);
  if (!search.isFound()) {
    m_reader.fail(file.line,
                  std::string("\"") + key + "\": file \"" + file.name + "\" is not there, tried: " + search.getTried());
    return nullptr;
  }
  // Through the registry, which leaves it to us to tell of a failure.
  osgDB::Registry* registry = osgDB::Registry::instance();
  const osg::ref_ptr<osg::Image> image = registry->readImage(search.getPath(), registry->getOptions()).getImage();
  if (!image || !image->data()) {
    m_reader.fail(file.line, "file \"" + search.getPath() + "\" holds no image that can be read");
    return nullptr;
  }
  // A copy: the readers may hand the same picture to others, and cubes turn theirs over.
  return new osg::Image(*image, osg::CopyOp::DEEP_COPY_ALL);
}

bool TextureEntry::areAlike(const std::vector<osg::ref_ptr<osg::Image>>& images, const std::vector<File>& files) {
  const osg::Image& first = *images.front();
  for (std::size_t i = 1; i < images.size(); ++i) {
    const osg::Image& image = *images[i];
    if (image.s() != first.s() || image.t() != first.t() || image.getPixelFormat() != first.getPixelFormat() ||
        image.getDataType() != first.getDataType()) {
      m_reader.fail(files[i].line,
                    "file \"" + files[i].name + "\" has another size or format than \"" + files[0].name + "\"");
      return false;
    }
  }
  return true;
}

osg::Uniform::Type TextureEntry::samplerOf(const osg::Texture& texture) {
  switch (texture.getTextureTarget()) {
  case GL_TEXTURE_1D:
    return osg::Uniform::SAMPLER_1D;
  case GL_TEXTURE_3D:
    return osg::Uniform::SAMPLER_3D;
  case GL_TEXTURE_CUBE_MAP:
    return osg::Uniform::SAMPLER_CUBE;
  default:
    return osg::Uniform::SAMPLER_2D;
  }
}

} // namespace vyrOSG
