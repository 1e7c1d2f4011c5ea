/// Colours by component and by name.
#pragma once

#include <vyr/Vec4.h>
#include <vyr/Vector.h>
#include <vyrCore/export.h>

#include <string>

namespace vyrRender {

/// Red, green, blue and opacity, each 0 to 1; usable wherever a `vyr::Vec4` is.
class VYRCORE_EXPORT Color : public vyr::Vec4 {
public:
  /// Opaque black.
  Color()
      : vyr::Vec4(0, 0, 0, 1) {}
  Color(double red, double green, double blue, double alpha = 1)
      : vyr::Vec4(red, green, blue, alpha) {}
  Color(const vyr::Vec4& rgba)
      : vyr::Vec4(rgba) {}

  /// Reads "#rrggbb", "#rrggbbaa" or a basic CSS colour name in any case ("red", "Teal").
  /// Failure: false, and `outColor` is unchanged.
  static bool fromName(const std::string& name, Color& outColor);

  static Color Black() { return {0, 0, 0}; }
  static Color White() { return {1, 1, 1}; }
  static Color Gray() { return {0.5, 0.5, 0.5}; }
  static Color Red() { return {1, 0, 0}; }
  static Color Green() { return {0, 0.5, 0}; }
  static Color Blue() { return {0, 0, 1}; }
  static Color Yellow() { return {1, 1, 0}; }
  static Color Orange() { return {1, 0.647, 0}; }
};

/// Colours in a row, such as the steps of a scale.
using ColorVector = vyr::Vector<Color, vyr::ByteAllocator>;

} // namespace vyrRender
