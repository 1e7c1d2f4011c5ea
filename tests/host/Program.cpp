// Runs the host program and catches what it says.
#include "Program.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace vyrTest {

namespace {

namespace fs = std::filesystem;

std::string readFile(const std::string& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

void becomeProgram(const std::vector<std::string>& arguments, const std::string& folder,
                   const std::vector<std::string>& environment) {
  if (std::freopen((folder + "/stdin").c_str(), "r", stdin) == nullptr ||
      std::freopen((folder + "/stdout").c_str(), "w", stdout) == nullptr ||
      std::freopen((folder + "/stderr").c_str(), "w", stderr) == nullptr)
    std::_Exit(127);
  for (const std::string& entry : environment) {
    const std::size_t equals = entry.find('=');
    if (equals + 1 == entry.size())
      unsetenv(entry.substr(0, equals).c_str());
    else
      setenv(entry.substr(0, equals).c_str(), entry.c_str() + equals + 1, 1);
  }
  std::string program = "vyr";
  std::vector<std::string> copies = arguments;
  std::vector<char*> pointers = {program.data()};
  for (std::string& copy : copies)
    pointers.push_back(copy.data());
  pointers.push_back(nullptr);
  execv(VYR_PROGRAM, pointers.data());
  std::_Exit(127);
}

} // namespace

Outcome runProgram(const std::vector<std::string>& arguments, const std::string& input,
                   const std::vector<std::string>& environment) {
  const std::string folder = makeTestFolder() + "/streams";
  fs::create_directories(folder);
  writeFile(folder, "stdin", input);
  const pid_t child = fork();
  if (child == 0)
    becomeProgram(arguments, folder, environment);
  int status = 0;
  waitpid(child, &status, 0);
  Outcome outcome;
  outcome.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  outcome.output = readFile(folder + "/stdout");
  outcome.errors = readFile(folder + "/stderr");
  return outcome;
}

std::string makeTestFolder() {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  const std::string folder =
      testing::TempDir() + "vyr_host_" + test->test_suite_name() + "_" + test->name() + "_" + std::to_string(getpid());
  fs::create_directories(folder);
  return folder;
}

std::string writeFile(const std::string& folder, const std::string& name, const std::string& text) {
  const std::string file = folder + "/" + name;
  std::ofstream(file) << text;
  return file;
}

} // namespace vyrTest
