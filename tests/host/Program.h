// Runs the host program and catches what it says.
#pragma once

#include <string>
#include <vector>

namespace vyrTest {

struct Outcome {
  /// The exit code; 128 + the signal's number for a program that a signal ended.
  int code;
  std::string output;
  std::string errors;
};

/// Runs build/bin/vyr.
/// @param input what it reads on its standard input.
/// @param environment further variables, "NAME=value"; a "NAME=" without a value takes the variable away.
Outcome runProgram(const std::vector<std::string>& arguments, const std::string& input = "",
                   const std::vector<std::string>& environment = {});

/// A folder of its own for the running test, empty at first.
std::string makeTestFolder();

/// Writes a file and gives its path.
std::string writeFile(const std::string& folder, const std::string& name, const std::string& text);

} // namespace vyrTest
