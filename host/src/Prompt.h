// The interactive prompt.
#pragma once

#include "LineReader.h"

namespace vyrHost {

class Interpreter;

/// Reads chunks, over several lines where one is incomplete, runs them and prints what they return. A line that begins
/// with "=" prints the expression behind it. The globals _PROMPT and _PROMPT2 change the prompts.
class Prompt {
public:
  /// @param interpreter *borrows*
  explicit Prompt(Interpreter& interpreter)
      : m_interpreter(interpreter) {}

  /// Runs until the end of the input.
  void run();

private:
  std::string getPrompt(bool first) const;
  bool readChunk(std::string& chunk, bool& loaded);
  void printResults();

  Interpreter& m_interpreter;
  LineReader m_reader;
};

} // namespace vyrHost
