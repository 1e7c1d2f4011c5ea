// Holds the process-wide launch options and reads their short forms.
#include <vyrOSG/LaunchOptions.h>

#include <cmath>
#include <cstdlib>

namespace vyrOSG {

LaunchOptions& LaunchOptions::process() {
  static LaunchOptions options;
  return options;
}

LaunchOptions::LaunchOptions()
    : backend(AUTO)
    , width(1280)
    , height(720)
    , windowX(80)
    , windowY(60)
    , screen(0)
    , samples(4)
    , steps(-1)
    , duration(-1.0)
    , fps(60.0)
    , m_failure(0) {}

bool LaunchOptions::parseBackend(const std::string& text, Backend& backend) {
  static const char* const kNames[] = {"auto", "window", "egl", "none"};
  for (int i = 0; i < 4; ++i) {
    if (text == kNames[i]) {
      backend = static_cast<Backend>(i);
      return true;
    }
  }
  return false;
}

bool LaunchOptions::addShot(const std::string& text) {
  const std::size_t start = text.compare(0, 2, "t=") == 0 ? 2 : 0;
  const std::size_t colon = text.find(':', start);
  if (colon == std::string::npos || colon == start || colon + 1 == text.size())
    return false;
  const std::string number = text.substr(start, colon - start);
  char* end = nullptr;
  const double time = std::strtod(number.c_str(), &end);
  if (*end != '\0' || !std::isfinite(time) || time < 0.0)
    return false;
  shots.push_back({time, text.substr(colon + 1)});
  return true;
}

/// Pixels along a side: beyond what graphics cards draw.
constexpr int kMaximumSize = 16384;

bool LaunchOptions::parseSize(const std::string& text) {
  const std::size_t cross = text.find('x');
  if (cross == std::string::npos)
    return false;
  const auto read = [](const std::string& number) {
    // Longer numbers are beyond every drawable, and would overflow.
    if (number.empty() || number.size() > 5 || number.find_first_not_of("0123456789") != std::string::npos)
      return 0;
    return std::atoi(number.c_str());
  };
  const int newWidth = read(text.substr(0, cross));
  const int newHeight = read(text.substr(cross + 1));
  if (newWidth <= 0 || newHeight <= 0 || newWidth > kMaximumSize || newHeight > kMaximumSize)
    return false;
  width = static_cast<unsigned>(newWidth);
  height = static_cast<unsigned>(newHeight);
  return true;
}

void LaunchOptions::setFailure(int exitCode) {
  if (m_failure == 0)
    m_failure = exitCode;
}

} // namespace vyrOSG
