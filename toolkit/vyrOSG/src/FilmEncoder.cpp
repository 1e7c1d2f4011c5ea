/// Runs ffmpeg and feeds it raw pictures.
#include "FilmEncoder.h"

#include <osgDB/FileNameUtils>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace vyrOSG {

namespace {

/// The command line that reads raw pictures from the standard input.
std::vector<std::string> arguments(const std::string& path, int width, int height, double fps) {
  char rate[64];
  std::snprintf(rate, sizeof rate, "%.9g", fps);
  std::vector<std::string> line = {"ffmpeg",
                                   "-hide_banner",
                                   "-nostats",
                                   "-loglevel",
                                   "error",
                                   "-f",
                                   "rawvideo",
                                   "-pixel_format",
                                   "rgb24",
                                   "-video_size",
                                   std::to_string(width) + "x" + std::to_string(height),
                                   "-framerate",
                                   rate,
                                   "-i",
                                   "pipe:0"};
  if (osgDB::getLowerCaseFileExtension(path) != "gif") {
    // What players understand is 4:2:0, and that needs even sizes: an odd picture gets a black line.
    line.insert(line.end(), {"-vf", "pad=ceil(iw/2)*2:ceil(ih/2)*2", "-pix_fmt", "yuv420p"});
  }
  // The prefix keeps a name with a colon or a leading dash a file's name.
  line.insert(line.end(), {"-y", "file:" + path});
  return line;
}

/// The picture as ffmpeg reads it: red, green, blue, a byte each. A film's rows run from the top down, the image's from
/// the bottom up.
std::vector<unsigned char> rawPicture(const osg::Image& image) {
  const auto width = static_cast<unsigned int>(image.s());
  const bool direct = image.getPixelFormat() == GL_RGB && image.getDataType() == GL_UNSIGNED_BYTE;
  std::vector<unsigned char> bytes;
  bytes.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(image.t()) * 3);
  for (auto row = static_cast<unsigned int>(image.t()); row-- > 0;) {
    if (direct) {
      bytes.insert(bytes.end(), image.data(0, row), image.data(0, row) + std::size_t{width} * 3);
      continue;
    }
    for (unsigned int column = 0; column < width; ++column) {
      const osg::Vec4 color = image.getColor(column, row);
      for (int channel = 0; channel < 3; ++channel)
        bytes.push_back(static_cast<unsigned char>(osg::clampBetween(color[channel], 0.0f, 1.0f) * 255.0f + 0.5f));
    }
  }
  return bytes;
}

} // namespace

FilmEncoder::~FilmEncoder() {
  std::string ignored;
  finish(ignored);
}

FilmEncoder::StartResult FilmEncoder::start(const std::string& path, int width, int height, double fps,
                                            std::string& outReason) {
  int sockets[2];
  m_messages = std::tmpfile();
  if (!m_messages || socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, sockets) != 0) {
    outReason = std::string("no connection to ffmpeg: ") + std::strerror(errno);
    return FAILED;
  }
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, sockets[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&actions, fileno(m_messages), STDERR_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

  std::vector<std::string> line = arguments(path, width, height, fps);
  std::vector<char*> pointers;
  for (std::string& argument : line)
    pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  const int error = posix_spawnp(&m_process, "ffmpeg", &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(sockets[0]);
  if (error != 0) {
    m_process = -1;
    close(sockets[1]);
    outReason = std::string("ffmpeg cannot be started: ") + std::strerror(error);
    return error == ENOENT ? NOT_INSTALLED : FAILED;
  }
  m_input = sockets[1];
  return STARTED;
}

bool FilmEncoder::send(const osg::Image& image, std::string& outReason) {
  const std::vector<unsigned char> picture = rawPicture(image);
  for (std::size_t sent = 0; sent < picture.size();) {
    const ssize_t count = ::send(m_input, picture.data() + sent, picture.size() - sent, MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR)
      continue;
    if (count <= 0) {
      outReason = "ffmpeg stopped";
      finish(outReason);
      return false;
    }
    sent += static_cast<std::size_t>(count);
  }
  return true;
}

bool FilmEncoder::finish(std::string& outReason) {
  if (m_input >= 0)
    close(m_input);
  m_input = -1;
  bool success = true;
  if (m_process > 0) {
    int status = 0;
    while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
    success = WIFEXITED(status) && WEXITSTATUS(status) == 0;
    if (!success) {
      const std::string message = takeMessage();
      outReason = message.empty() ? "ffmpeg failed" : "ffmpeg: " + message;
    }
  }
  if (m_messages)
    std::fclose(m_messages);
  m_messages = nullptr;
  return success;
}

/// The first line that ffmpeg wrote about its failure.
std::string FilmEncoder::takeMessage() {
  char line[512] = "";
  std::rewind(m_messages);
  if (!std::fgets(line, sizeof line, m_messages))
    return std::string();
  return std::string(line, std::strcspn(line, "\r\n"));
}

} // namespace vyrOSG
