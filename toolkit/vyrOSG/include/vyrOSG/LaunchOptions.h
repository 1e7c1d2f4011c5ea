// The options that a host program sets once for the whole process and that every application of the process follows.
#pragma once

#include <vyrOSG/export.h>

#include <string>
#include <vector>

namespace vyrOSG {
/// What the command line of the process asked for: graphics back end, picture size, limits, pictures and films.
///
/// A script creates its own application, so that what the user typed cannot travel as a parameter: it waits here.
class VYROSG_EXPORT LaunchOptions {
public:
  /// Where pictures are drawn.
  enum Backend {
    AUTO,   ///< A window when a display server answers, else EGL, else none.
    WINDOW, ///< A window, or nothing.
    EGL,    ///< A context without a display server, or nothing.
    NONE    ///< No graphics: simulation only.
  };

  /// One picture to take when the simulated time reaches `time` (s).
  struct Shot {
    double time;
    std::string file;
  };

  /// The options of this process; *returns inner*.
  static LaunchOptions& process();

  LaunchOptions();

  /// Reads "auto", "window", "egl" or "none" into @p backend; false, and nothing changed, for any other text.
  static bool parseBackend(const std::string& text, Backend& backend);

  /// Reads "t=2.5:file.png" or "2.5:file.png" and appends the shot; false, and nothing changed, when malformed.
  bool addShot(const std::string& text);

  /// Reads "1280x720" into width and height; false, and nothing changed, when malformed, zero or above 16384.
  bool parseSize(const std::string& text);

  /// Notes that something asked for on the command line failed; the first code that is not 0 stays.
  /// Codes are exit codes: 1 for a picture or film that could not be written, 3 for no graphics.
  void setFailure(int exitCode);

  /// The code that the host has to exit with when nothing worse happened, 0 when all went well.
  int getFailure() const { return m_failure; }

  Backend backend;         ///< Default AUTO.
  unsigned width;          ///< Pixels, default 1280.
  unsigned height;         ///< Pixels, default 720.
  int windowX;             ///< Where a window stands, pixels of the screen, default 80.
  int windowY;             ///< Default 60.
  int screen;              ///< Which screen a window stands on, default 0.
  unsigned samples;        ///< Samples a pixel (antialiasing), default 4.
  long long steps;         ///< Stop after so many simulation steps; negative: no limit (default).
  double duration;         ///< Stop after so much simulated time (s); negative: no limit (default).
  std::vector<Shot> shots; ///< Pictures to take; the run ends after the last when nothing else limits it.
  std::string record;      ///< Film ("out.mp4") or numbered frames ("frames/%05d.png"); empty: none (default).
  double fps;              ///< Frames a second of simulated time in the recording, default 60.

private:
  int m_failure;
};
} // namespace vyrOSG
