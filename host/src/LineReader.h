// Reads lines from the terminal.
#pragma once

#include <string>

namespace vyrHost {

/// Shows a prompt and reads a line: with editing and history on a terminal, plainly elsewhere.
class LineReader {
public:
  LineReader();

  /// False at the end of the input.
  bool read(const std::string& prompt, std::string& line);

  /// Keeps a line for the arrow keys.
  void remember(const std::string& line);

private:
  bool m_editing;
};

} // namespace vyrHost
