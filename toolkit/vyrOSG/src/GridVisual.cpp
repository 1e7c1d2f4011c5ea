// Draws grid and axes as lines.
#include "GridVisual.h"

#include "LineDrawing.h"

#include <vyrOSG/Text.h>

#include <osg/Group>

namespace vyrOSG {

namespace {

const osg::Vec4 kThin(0.25f, 0.27f, 0.30f, 0.35f);
const osg::Vec4 kStrong(0.15f, 0.17f, 0.20f, 0.75f);

/// Lifted by this share of a cell, lest the lines fight with a ground plane at the same height.
constexpr double kLift = 0.002;

void addLines(LineDrawing& lines, double along, double across, unsigned cells, bool alongX) {
  for (unsigned i = 0; i <= cells; ++i) {
    const double place = across * (static_cast<double>(i) / cells - 0.5);
    // Counted from the middle, so that the strong lines run through the origin.
    const long fromMiddle = static_cast<long>(i) - static_cast<long>(cells / 2);
    const osg::Vec4& color = fromMiddle % 10 == 0 ? kStrong : kThin;
    const double z = kLift * across / cells;
    if (alongX)
      lines.add(osg::Vec3d(-0.5 * along, place, z), osg::Vec3d(0.5 * along, place, z), color);
    else
      lines.add(osg::Vec3d(place, -0.5 * along, z), osg::Vec3d(place, 0.5 * along, z), color);
  }
}

} // namespace

osg::ref_ptr<osg::Node> makeGrid(const vyr::Vec2& size, const vyr::Vec2u& cells) {
  LineDrawing lines(1.0f);
  addLines(lines, size.y(), size.x(), cells.x(), false);
  addLines(lines, size.x(), size.y(), cells.y(), true);
  lines.finish();
  return lines.getNode();
}

osg::ref_ptr<osg::Node> makeAxesVisual(double length) {
  static const char* const kLetters[] = {"x", "y", "z"};
  osg::ref_ptr<osg::Group> axes = new osg::Group;
  LineDrawing lines(2.5f);
  for (int i = 0; i < 3; ++i) {
    osg::Vec3d end;
    end[i] = length;
    osg::Vec4 color(0.15f, 0.15f, 0.15f, 1.0f);
    color[i] = 0.9f;
    lines.add(osg::Vec3d(), end, color);
    osg::Vec3d side;
    side[(i + 1) % 3] = 0.03 * length;
    for (int arrow = -1; arrow <= 1; arrow += 2)
      lines.add(end, end * 0.92 + side * arrow, color);
    osg::ref_ptr<Text> letter = new Text(vyr::String(kLetters[i]), vyr::Vec3(end[0], end[1], end[2]) * 1.06,
                                         vyr::Vec4(color[0], color[1], color[2], 1.0));
    letter->setCharacterSize(static_cast<float>(0.12 * length));
    letter->setAlignment(Text::CENTER_CENTER);
    axes->addChild(letter.get());
  }
  lines.finish();
  axes->addChild(lines.getNode());
  return axes;
}

} // namespace vyrOSG
