/// Checked access to the members of a configuration object.
#include "ConfigReader.h"

#include <vyr/Notify.h>

#include <cmath>

namespace vyrOSG {

using vyrCFG::ConfigValue;

ConfigReader::ConfigReader(const vyrCFG::ConfigScript& script, const ConfigValue& value, const std::string& what)
    : m_script(script)
    , m_value(value)
    , m_what(what) {
  if (!value.isObject())
    fail(value.getLine(), std::string("an object is needed, not a ") + value.getKindName());
}

ConfigReader::~ConfigReader() = default;

const ConfigValue* ConfigReader::take(const std::string& key) {
  m_known.insert(key);
  return m_value.find(key);
}

void ConfigReader::getNumber(const std::string& key, double& outValue) {
  const ConfigValue* value = take(key);
  if (!value)
    return;
  if (value->isNumber())
    outValue = value->asNumber();
  else
    fail(value->getLine(), "\"" + key + "\" is a number, not a " + value->getKindName());
}

void ConfigReader::getInteger(const std::string& key, int least, int most, int& outValue) {
  const ConfigValue* value = take(key);
  if (!value)
    return;
  const double number = value->asNumber(NAN);
  if (number == std::floor(number) && number >= least && number <= most)
    outValue = static_cast<int>(number);
  else
    fail(value->getLine(),
         "\"" + key + "\" is a whole number from " + std::to_string(least) + " to " + std::to_string(most));
}

void ConfigReader::getString(const std::string& key, std::string& outValue) {
  const ConfigValue* value = take(key);
  if (!value)
    return;
  if (value->isString())
    outValue = value->asString();
  else
    fail(value->getLine(), "\"" + key + "\" is a string, not a " + value->getKindName());
}

void ConfigReader::getNumbers(const std::string& key, std::size_t least, std::size_t most,
                              std::vector<double>& outValue) {
  const ConfigValue* value = take(key);
  if (!value)
    return;
  const std::vector<ConfigValue>& elements = value->getElements();
  bool good = value->isArray() && elements.size() >= least && elements.size() <= most;
  for (const ConfigValue& element : elements)
    good = good && element.isNumber();
  if (!good) {
    const std::string count = std::to_string(least) + (least == most ? "" : " to " + std::to_string(most));
    fail(value->getLine(), "\"" + key + "\" is a list of " + count + " numbers");
    return;
  }
  outValue.clear();
  for (const ConfigValue& element : elements)
    outValue.push_back(element.asNumber());
}

void ConfigReader::getStrings(const std::string& key, std::vector<std::string>& outValue) {
  const ConfigValue* value = take(key);
  if (!value)
    return;
  bool good = value->isArray();
  for (const ConfigValue& element : value->getElements())
    good = good && element.isString();
  if (!good) {
    fail(value->getLine(), "\"" + key + "\" is a list of strings");
    return;
  }
  outValue.clear();
  for (const ConfigValue& element : value->getElements())
    outValue.push_back(element.asString());
}

void ConfigReader::getWord(const std::string& key, const std::vector<std::string>& words, std::size_t& outIndex) {
  const ConfigValue* value = take(key);
  if (!value)
    return;
  std::string listed;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (value->isString() && value->asString() == words[i]) {
      outIndex = i;
      return;
    }
    listed += (listed.empty() ? "\"" : ", \"") + words[i] + "\"";
  }
  fail(value->getLine(), "\"" + key + "\" is one of " + listed);
}

void ConfigReader::getColor(const std::string& key, vyr::Vec4& outValue) {
  std::vector<double> numbers;
  getNumbers(key, 3, 4, numbers);
  if (!numbers.empty())
    outValue = vyr::Vec4(numbers[0], numbers[1], numbers[2], numbers.size() > 3 ? numbers[3] : 1);
}

void ConfigReader::fail(int line, const std::string& text) {
  m_good = false;
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << m_script.getName() << ":" << line << ": " << m_what << ": " << text;
}

void ConfigReader::reportUnknown() {
  for (const ConfigValue::Member& member : m_value.getMembers())
    if (m_known.count(member.key) == 0)
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << m_script.getName() << ":" << member.line << ": " << m_what << ": unknown key \""
                                    << member.key << "\"";
}

} // namespace vyrOSG
