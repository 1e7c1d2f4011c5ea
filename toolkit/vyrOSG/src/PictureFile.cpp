/// Writes pictures to image files and says why when it cannot.
#include <vyrOSG/PictureFile.h>

#include <osgDB/FileNameUtils>
#include <osgDB/FileUtils>
#include <osgDB/Registry>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace vyrOSG {

namespace {

/// Stores encoded bytes, and takes back what a full disk left of the file.
bool store(const std::string& bytes, const std::string& path, std::string& outReason) {
  errno = 0;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  const bool opened = file.is_open();
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (file)
    return true;
  outReason = "cannot write '" + path + "': " + (errno ? std::strerror(errno) : "the file cannot be opened");
  if (opened)
    unlink(path.c_str());
  return false;
}

} // namespace

bool PictureFile::makeParentDirectory(const std::string& path) {
  const std::string directory = osgDB::getFilePath(path);
  if (directory.empty())
    return access(".", W_OK) == 0;
  if (osgDB::fileType(directory) == osgDB::FILE_NOT_FOUND)
    osgDB::makeDirectory(directory);
  return osgDB::fileType(directory) == osgDB::DIRECTORY && access(directory.c_str(), W_OK) == 0;
}

bool PictureFile::write(const osg::Image& image, const std::string& path, std::string& outReason) {
  const std::string extension = osgDB::getLowerCaseFileExtension(path);
  osgDB::ReaderWriter* writer = osgDB::Registry::instance()->getReaderWriterForExtension(extension);
  if (!writer) {
    outReason = "cannot write '" + path + "': no image format has the extension '" + extension + "'";
    return false;
  }
  if (!makeParentDirectory(path)) {
    outReason = "cannot write '" + path + "': its directory cannot be made or written to";
    return false;
  }
  // Through memory, because the formats' own file functions do not notice a full disk.
  std::ostringstream bytes(std::ios::binary | std::ios::out);
  osgDB::ReaderWriter::WriteResult result = writer->writeImage(image, bytes);
  if (result.success() && !bytes.str().empty())
    return store(bytes.str(), path, outReason);
  result = writer->writeImage(image, path);
  if (result.success())
    return true;
  outReason = "cannot write '" + path +
              "': " + (result.message().empty() ? "the format cannot hold this picture" : result.message());
  return false;
}

osg::ref_ptr<osg::Image> PictureFile::scaled(const osg::Image& image, int width, int height) {
  osg::ref_ptr<osg::Image> copy = new osg::Image(image, osg::CopyOp::DEEP_COPY_ALL);
  if (copy->s() != width || copy->t() != height)
    copy->scaleImage(width, height, 1);
  return copy;
}

} // namespace vyrOSG
