/// Small pictures for tests of what is written to files.
#pragma once

#include <osg/Image>
#include <osg/ref_ptr>

/// A picture of one colour, 8 bits a channel, red, green, blue; the upper half is white when `whiteTop` is set.
inline osg::ref_ptr<osg::Image> makePicture(int width, int height, const osg::Vec4& color, bool whiteTop = false) {
  osg::ref_ptr<osg::Image> image = new osg::Image;
  image->allocateImage(width, height, 1, GL_RGB, GL_UNSIGNED_BYTE);
  for (int row = 0; row < height; ++row)
    for (int column = 0; column < width; ++column)
      image->setColor(whiteTop && row >= height / 2 ? osg::Vec4(1, 1, 1, 1) : color, static_cast<unsigned>(column),
                      static_cast<unsigned>(row));
  return image;
}
