// Reads the arguments of a program: flags, options with values, and what stands alone.
#pragma once

#include <vyrCore/export.h>

#include <vyr/Referenced.h>

#include <string>
#include <vector>

namespace vyrIO {

/// A list of arguments out of which readers take what they know; what nobody knows is kept.
///
/// An option is written "--name value" or "--name=value", a flag "--name". After an argument "--" nothing is an option.
/// Reading an option removes it, so that several readers can share one parser and `getRemaining` tells what is left
/// over.
class VYRCORE_EXPORT ArgumentParser : public vyr::Referenced {
public:
  ArgumentParser() = default;

  /// @param arguments the arguments in order, without the program's name.
  explicit ArgumentParser(const std::vector<std::string>& arguments);

  /// @param program the program's or script's name, kept apart from the arguments.
  ArgumentParser(const std::string& program, const std::vector<std::string>& arguments);

  /// As handed to main: argv[0] is the program's name.
  ArgumentParser(int argc, const char* const* argv);

  /// The name of the program or script, or "".
  const std::string& getProgramName() const { return m_program; }

  /// All arguments as given, those already read included.
  const std::vector<std::string>& getArguments() const { return m_all; }

  /// Number of arguments as given.
  int getNumArguments() const { return static_cast<int>(m_all.size()); }

  /// The argument @p index (from 0) as given, "" outside.
  std::string getArgument(int index) const;

  /// Whether the option or flag is there and not yet read.
  bool has(const std::string& name) const;

  /// Takes the flag @p name ("--grid"); true when it was there.
  bool readFlag(const std::string& name);

  /// Takes the option @p name with its value; false, and @p value unchanged, when it is not there. Given several times,
  /// the first one left is taken. An option that lacks its value is one error line and false.
  bool read(const std::string& name, std::string& value);

  /// As above for a number; a value that is not a finite number is one error line naming it, and false.
  bool read(const std::string& name, double& value);

  /// As above for an integer.
  bool read(const std::string& name, int& value);

  /// Takes the option @p name followed by exactly @p count values ("--window 10 10 640 480").
  bool read(const std::string& name, int count, std::vector<std::string>& values);

  /// What was not read and is no option: the arguments that do not begin with "-", and all behind "--".
  std::vector<std::string> getPositional() const;

  /// Options that nobody has read, in order.
  std::vector<std::string> getUnknown() const;

  /// Everything not yet read, in order.
  const std::vector<std::string>& getRemaining() const { return m_rest; }

protected:
  ~ArgumentParser() override = default;

private:
  std::size_t find(const std::string& name, bool& withValue) const;

  std::string m_program;
  std::vector<std::string> m_all;
  std::vector<std::string> m_rest;
};

} // namespace vyrIO
