// Reads lines from the terminal.
#include "LineReader.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>

#ifdef VYR_HAVE_LIBEDIT
#include <editline/readline.h>
#endif

namespace vyrHost {

LineReader::LineReader()
    : m_editing(isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0) {
#ifdef VYR_HAVE_LIBEDIT
  if (m_editing)
    using_history();
#endif
}

bool LineReader::read(const std::string& prompt, std::string& line) {
#ifdef VYR_HAVE_LIBEDIT
  if (m_editing) {
    char* text = readline(prompt.c_str());
    if (text == nullptr)
      return false;
    line = text;
    std::free(text);
    return true;
  }
#endif
  std::fputs(prompt.c_str(), stdout);
  std::fflush(stdout);
  return static_cast<bool>(std::getline(std::cin, line));
}

void LineReader::remember(const std::string& line) {
#ifdef VYR_HAVE_LIBEDIT
  if (m_editing && !line.empty())
    add_history(line.c_str());
#else
  static_cast<void>(line);
#endif
}

} // namespace vyrHost
