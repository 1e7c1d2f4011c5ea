// Takes flags and options out of a list of arguments.
#include <vyrIO/ArgumentParser.h>

#include <vyr/Notify.h>

#include <cmath>
#include <cstdlib>

namespace vyrIO {

namespace {

constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

/// A number such as "-3" begins with "-" too, and is a value.
bool looksLikeOption(const std::string& argument) {
  if (argument.size() < 2 || argument[0] != '-')
    return false;
  char* end = nullptr;
  std::strtod(argument.c_str(), &end);
  return *end != '\0';
}

bool toNumber(const std::string& name, const std::string& text, double& value) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(number)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "option " << name << ": \"" << text << "\" is not a number";
    return false;
  }
  value = number;
  return true;
}

} // namespace

ArgumentParser::ArgumentParser(const std::vector<std::string>& arguments)
    : m_all(arguments)
    , m_rest(arguments) {}

ArgumentParser::ArgumentParser(const std::string& program, const std::vector<std::string>& arguments)
    : m_program(program)
    , m_all(arguments)
    , m_rest(arguments) {}

ArgumentParser::ArgumentParser(int argc, const char* const* argv) {
  if (argc > 0)
    m_program = argv[0];
  for (int i = 1; i < argc; ++i)
    m_all.emplace_back(argv[i]);
  m_rest = m_all;
}

std::string ArgumentParser::getArgument(int index) const {
  return index >= 0 && index < getNumArguments() ? m_all[static_cast<std::size_t>(index)] : std::string();
}

std::size_t ArgumentParser::find(const std::string& name, bool& withValue) const {
  for (std::size_t i = 0; i < m_rest.size() && m_rest[i] != "--"; ++i) {
    withValue =
        m_rest[i].size() > name.size() && m_rest[i].compare(0, name.size(), name) == 0 && m_rest[i][name.size()] == '=';
    if (withValue || m_rest[i] == name)
      return i;
  }
  return kNowhere;
}

bool ArgumentParser::has(const std::string& name) const {
  bool withValue = false;
  return find(name, withValue) != kNowhere;
}

bool ArgumentParser::readFlag(const std::string& name) {
  bool withValue = false;
  const std::size_t at = find(name, withValue);
  if (at == kNowhere || withValue)
    return false;
  m_rest.erase(m_rest.begin() + static_cast<std::ptrdiff_t>(at));
  return true;
}

bool ArgumentParser::read(const std::string& name, std::string& value) {
  bool withValue = false;
  const std::size_t at = find(name, withValue);
  if (at == kNowhere)
    return false;
  const auto first = m_rest.begin() + static_cast<std::ptrdiff_t>(at);
  if (withValue) {
    value = m_rest[at].substr(name.size() + 1);
    m_rest.erase(first);
    return true;
  }
  if (at + 1 >= m_rest.size() || looksLikeOption(m_rest[at + 1])) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "option " << name << " needs a value";
    m_rest.erase(first);
    return false;
  }
  value = m_rest[at + 1];
  m_rest.erase(first, first + 2);
  return true;
}

bool ArgumentParser::read(const std::string& name, double& value) {
  std::string text;
  return read(name, text) && toNumber(name, text, value);
}

bool ArgumentParser::read(const std::string& name, int& value) {
  double number = 0.0;
  if (!read(name, number))
    return false;
  if (number != std::floor(number) || std::fabs(number) > 2147483647.0) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "option " << name << ": " << number << " is not a whole number";
    return false;
  }
  value = static_cast<int>(number);
  return true;
}

bool ArgumentParser::read(const std::string& name, int count, std::vector<std::string>& values) {
  bool withValue = false;
  const std::size_t at = find(name, withValue);
  if (at == kNowhere || withValue || count < 0)
    return false;
  const std::size_t wanted = static_cast<std::size_t>(count);
  std::size_t found = 0;
  while (found < wanted && at + 1 + found < m_rest.size() && !looksLikeOption(m_rest[at + 1 + found]))
    ++found;
  const auto first = m_rest.begin() + static_cast<std::ptrdiff_t>(at);
  if (found < wanted) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "option " << name << " needs " << count << " values";
    m_rest.erase(first);
    return false;
  }
  values.assign(first + 1, first + 1 + static_cast<std::ptrdiff_t>(wanted));
  m_rest.erase(first, first + 1 + static_cast<std::ptrdiff_t>(wanted));
  return true;
}

std::vector<std::string> ArgumentParser::getPositional() const {
  std::vector<std::string> positional;
  bool optionsOver = false;
  for (const std::string& argument : m_rest) {
    if (!optionsOver && argument == "--")
      optionsOver = true;
    else if (optionsOver || !looksLikeOption(argument))
      positional.push_back(argument);
  }
  return positional;
}

std::vector<std::string> ArgumentParser::getUnknown() const {
  std::vector<std::string> unknown;
  for (const std::string& argument : m_rest) {
    if (argument == "--")
      break;
    if (looksLikeOption(argument))
      unknown.push_back(argument);
  }
  return unknown;
}

} // namespace vyrIO
