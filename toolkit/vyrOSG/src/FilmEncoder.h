/// Feeds raw pictures to a running ffmpeg, which writes them into one film file.
#pragma once

#include <osg/Image>

#include <cstdio>
#include <string>
#include <sys/types.h>

namespace vyrOSG {

/// One run of ffmpeg. Its input is a socket and not a pipe, so that a program that died early is an error code here and
/// not a signal that ends the host.
class FilmEncoder {
public:
  enum StartResult { STARTED, NOT_INSTALLED, FAILED };

  FilmEncoder() = default;
  FilmEncoder(const FilmEncoder&) = delete;
  FilmEncoder& operator=(const FilmEncoder&) = delete;
  ~FilmEncoder();

  /// Starts ffmpeg for a film of `width` by `height` pixels; with FAILED the reason is set.
  StartResult start(const std::string& path, int width, int height, double fps, std::string& outReason);

  /// Sends one picture of the film's size, 8 bits a channel, red, green, blue. False with the reason if ffmpeg stopped.
  bool send(const osg::Image& image, std::string& outReason);

  /// Ends the input and waits for the film. False with the reason if ffmpeg reports a failure.
  bool finish(std::string& outReason);

private:
  std::string takeMessage();

  pid_t m_process = -1;
  int m_input = -1;
  std::FILE* m_messages = nullptr;
};

} // namespace vyrOSG
