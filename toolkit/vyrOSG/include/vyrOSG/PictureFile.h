/// Writes pictures to image files and says why when it cannot.
#pragma once

#include <vyrOSG/export.h>

#include <osg/Image>
#include <osg/ref_ptr>

#include <string>

namespace vyrOSG {

/// The one way in which screenshots, captures and picture sequences reach the disk.
class VYROSG_EXPORT PictureFile {
public:
  /**
   * Writes an image in the format of the path's extension; missing directories are made.
   * @param outReason set when the result is false: the file and why it could not be written.
   */
  static bool write(const osg::Image& image, const std::string& path, std::string& outReason);

  /// Makes the directory that a file is to stand in. True if it is there afterwards and can be written to.
  static bool makeParentDirectory(const std::string& path);

  /// The image at another size in pixels. *Returns new*, or a copy that shares nothing with the image.
  static osg::ref_ptr<osg::Image> scaled(const osg::Image& image, int width, int height);
};

} // namespace vyrOSG
