// Colours for numbers.
#include "ColorRamp.h"

#include <algorithm>

namespace vyrOSG {

osg::Vec4 rampColor(double share) {
  static const osg::Vec4 kStops[] = {{0.15f, 0.25f, 0.85f, 1},
                                     {0.10f, 0.70f, 0.85f, 1},
                                     {0.20f, 0.75f, 0.30f, 1},
                                     {0.95f, 0.85f, 0.20f, 1},
                                     {0.90f, 0.15f, 0.10f, 1}};
  const int last = 4;
  const double place = share > 0 ? std::min(share, 1.0) * last : 0;
  const int stop = std::min(static_cast<int>(place), last - 1);
  const auto part = static_cast<float>(place - stop);
  return kStops[stop] * (1 - part) + kStops[stop + 1] * part;
}

} // namespace vyrOSG
