/// Colours by component and by name.
#include <vyrRender/Color.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <iterator>

namespace vyrRender {

namespace {

struct NamedColor {
  const char* name;
  std::uint32_t rgb;
};

/// The basic colour keywords. Source: W3C, "CSS Color Module Level 3", section 4.1, with orange of section 4.3.
const NamedColor kNamedColors[] = {
    {"aqua", 0x00FFFF},   {"black", 0x000000},  {"blue", 0x0000FF},   {"fuchsia", 0xFF00FF}, {"gray", 0x808080},
    {"green", 0x008000},  {"lime", 0x00FF00},   {"maroon", 0x800000}, {"navy", 0x000080},    {"olive", 0x808000},
    {"orange", 0xFFA500}, {"purple", 0x800080}, {"red", 0xFF0000},    {"silver", 0xC0C0C0},  {"teal", 0x008080},
    {"white", 0xFFFFFF},  {"yellow", 0xFFFF00}};

Color fromRgba(std::uint32_t rgba) {
  return {((rgba >> 24) & 0xFF) / 255.0, ((rgba >> 16) & 0xFF) / 255.0, ((rgba >> 8) & 0xFF) / 255.0,
          (rgba & 0xFF) / 255.0};
}

} // namespace

bool Color::fromName(const std::string& name, Color& outColor) {
  std::string key(name);
  std::transform(key.begin(), key.end(), key.begin(), [](unsigned char c) { return std::tolower(c); });
  if (!key.empty() && key[0] == '#') {
    const std::string digits = key.substr(1);
    const bool hexadecimal =
        std::all_of(digits.begin(), digits.end(), [](unsigned char c) { return std::isxdigit(c) != 0; });
    if (!hexadecimal || (digits.size() != 6 && digits.size() != 8)) {
      return false;
    }
    const auto value = static_cast<std::uint32_t>(std::strtoul(digits.c_str(), nullptr, 16));
    outColor = fromRgba(digits.size() == 8 ? value : (value << 8) | 0xFF);
    return true;
  }
  const auto found = std::find_if(std::begin(kNamedColors), std::end(kNamedColors),
                                  [&key](const NamedColor& color) { return key == color.name; });
  if (found == std::end(kNamedColors)) {
    return false;
  }
  outColor = fromRgba((found->rgb << 8) | 0xFF);
  return true;
}

} // namespace vyrRender
