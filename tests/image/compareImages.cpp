/// Compares a rendered picture with its golden image and writes a difference image when they do not agree.
//
//   compareImages <golden.png> <rendered.png> <difference.png> <largest mean> <largest share> [largest level]
//
// Mean: the average difference of a channel, 0 to 255. Share: the part of the pixels, 0 to 1, of which some channel
// differs by more than kVisible. Level: the largest difference of any channel of any pixel, 255 unless given. Exit
// status: 0 agreed, 1 different, 2 unreadable.
#include <osg/Image>
#include <osgDB/ReadFile>
#include <osgDB/WriteFile>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iostream>

namespace {

// Below this a difference of one channel cannot be seen beside its neighbours; the rounding of the rasteriser's
// interpolation moves channels by one or two levels between processors.
constexpr int kVisible = 24;

int level(const osg::Vec4& color, int channel) {
  return static_cast<int>(std::lround(255.0 * static_cast<double>(color[channel])));
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 6 && argc != 7) {
    std::cerr << "usage: compareImages <golden> <rendered> <difference> <largest mean> <largest share> "
                 "[largest level]\n";
    return 2;
  }
  const osg::ref_ptr<osg::Image> golden = osgDB::readRefImageFile(argv[1]);
  const osg::ref_ptr<osg::Image> rendered = osgDB::readRefImageFile(argv[2]);
  if (!golden || !rendered) {
    std::cerr << "cannot read " << (golden ? argv[2] : argv[1]) << '\n';
    return 2;
  }
  if (golden->s() != rendered->s() || golden->t() != rendered->t()) {
    std::cerr << "sizes differ: golden " << golden->s() << 'x' << golden->t() << ", rendered " << rendered->s() << 'x'
              << rendered->t() << '\n';
    return 1;
  }

  osg::ref_ptr<osg::Image> difference = new osg::Image;
  difference->allocateImage(golden->s(), golden->t(), 1, GL_RGB, GL_UNSIGNED_BYTE);
  double sum = 0.0;
  long visible = 0;
  int worst = 0;
  for (int y = 0; y < golden->t(); ++y) {
    for (int x = 0; x < golden->s(); ++x) {
      const osg::Vec4 a = golden->getColor(static_cast<unsigned>(x), static_cast<unsigned>(y));
      const osg::Vec4 b = rendered->getColor(static_cast<unsigned>(x), static_cast<unsigned>(y));
      unsigned char* const out = difference->data(static_cast<unsigned>(x), static_cast<unsigned>(y));
      int largest = 0;
      for (int channel = 0; channel < 3; ++channel) {
        const int d = std::abs(level(a, channel) - level(b, channel));
        sum += d;
        largest = std::max(largest, d);
        out[channel] = static_cast<unsigned char>(std::min(255, 4 * d)); // brightened: small differences must show
      }
      worst = std::max(worst, largest);
      visible += largest > kVisible ? 1 : 0;
    }
  }
  const double pixels = static_cast<double>(golden->s()) * golden->t();
  const int allowed = argc == 7 ? std::atoi(argv[6]) : 255;
  const double mean = sum / (3.0 * pixels);
  const double share = static_cast<double>(visible) / pixels;
  std::cout << "mean difference " << mean << " (allowed " << argv[4] << "), share of visible pixels " << share
            << " (allowed " << argv[5] << "), largest difference " << worst << " (allowed " << allowed << ")\n";
  if (worst <= allowed && mean <= std::atof(argv[4]) && share <= std::atof(argv[5])) {
    return 0;
  }
  osgDB::writeImageFile(*difference, argv[3]);
  std::cout << "difference image: " << argv[3] << '\n';
  return 1;
}
