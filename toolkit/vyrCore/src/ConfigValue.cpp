/// The tree of values of a configuration script.
#include <vyrCFG/ConfigValue.h>

#include <utility>

namespace vyrCFG {

ConfigValue::ConfigValue(Kind kind, int line)
    : m_kind(kind)
    , m_line(line) {}
ConfigValue::ConfigValue(const ConfigValue& other) = default;
ConfigValue::ConfigValue(ConfigValue&& other) noexcept = default;
ConfigValue::~ConfigValue() = default;

ConfigValue& ConfigValue::operator=(ConfigValue other) noexcept {
  m_kind = other.m_kind;
  m_line = other.m_line;
  m_boolean = other.m_boolean;
  m_number = other.m_number;
  m_string.swap(other.m_string);
  m_elements.swap(other.m_elements);
  m_members.swap(other.m_members);
  return *this;
}

const char* ConfigValue::getKindName() const {
  switch (m_kind) {
  case Kind::Null:
    return "null";
  case Kind::Boolean:
    return "boolean";
  case Kind::Number:
    return "number";
  case Kind::String:
    return "string";
  case Kind::Array:
    return "list";
  case Kind::Object:
    return "object";
  }
  return "value";
}

bool ConfigValue::asBoolean(bool otherwise) const {
  return isBoolean() ? m_boolean : otherwise;
}

double ConfigValue::asNumber(double otherwise) const {
  return isNumber() ? m_number : otherwise;
}

const std::string& ConfigValue::asString() const {
  return m_string;
}

const ConfigValue* ConfigValue::find(const std::string& key) const {
  for (const Member& member : m_members)
    if (member.key == key)
      return &member.value;
  return nullptr;
}

void ConfigValue::setBoolean(bool value) {
  m_kind = Kind::Boolean;
  m_boolean = value;
}

void ConfigValue::setNumber(double value) {
  m_kind = Kind::Number;
  m_number = value;
}

void ConfigValue::setString(const std::string& value) {
  m_kind = Kind::String;
  m_string = value;
}

ConfigValue* ConfigValue::append(ConfigValue value) {
  m_kind = Kind::Array;
  m_elements.push_back(std::move(value));
  return &m_elements.back();
}

ConfigValue* ConfigValue::setMember(const std::string& key, ConfigValue value, int line) {
  m_kind = Kind::Object;
  for (Member& member : m_members) {
    if (member.key == key) {
      member.line = line;
      member.value = std::move(value);
      return &member.value;
    }
  }
  m_members.push_back(Member{key, line, std::move(value)});
  return &m_members.back().value;
}

} // namespace vyrCFG
