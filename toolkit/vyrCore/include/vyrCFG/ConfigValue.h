/// One value of a configuration script: a leaf, a list or a set of named members, each with the line that it stands on.
#pragma once

#include <vyrCore/export.h>

#include <string>
#include <vector>

namespace vyrCFG {

/// Lines are kept so that whoever reads a value can name the place of a mistake in it.
class VYRCORE_EXPORT ConfigValue {
public:
  enum class Kind { Null, Boolean, Number, String, Array, Object };
  struct Member;

  explicit ConfigValue(Kind kind = Kind::Null, int line = 0);
  ConfigValue(const ConfigValue& other);
  ConfigValue(ConfigValue&& other) noexcept;
  ConfigValue& operator=(ConfigValue other) noexcept;
  ~ConfigValue();

  Kind getKind() const { return m_kind; }
  /// The kind as a word for messages: "null", "boolean", "number", "string", "list" or "object".
  const char* getKindName() const;
  /// The line in the script, counted from 1; 0 for a value that was made by a program.
  int getLine() const { return m_line; }

  bool isNull() const { return m_kind == Kind::Null; }
  bool isBoolean() const { return m_kind == Kind::Boolean; }
  bool isNumber() const { return m_kind == Kind::Number; }
  bool isString() const { return m_kind == Kind::String; }
  bool isArray() const { return m_kind == Kind::Array; }
  bool isObject() const { return m_kind == Kind::Object; }

  /// The value of a leaf; `otherwise` when it is of another kind.
  bool asBoolean(bool otherwise = false) const;
  double asNumber(double otherwise = 0) const;
  const std::string& asString() const;

  /// The elements of a list in order; empty for every other kind.
  const std::vector<ConfigValue>& getElements() const { return m_elements; }
  /// The members of an object in the order of the script; empty for every other kind.
  const std::vector<Member>& getMembers() const { return m_members; }
  /// The member of that name. Nullable: there is none. *returns inner*
  const ConfigValue* find(const std::string& key) const;

  void setBoolean(bool value);
  void setNumber(double value);
  void setString(const std::string& value);
  /// Appends an element and gives it back for filling. *returns inner*, valid until the next append.
  ConfigValue* append(ConfigValue value);
  /// Sets a member and gives it back for filling; one of the same name is replaced. *returns inner*, valid until the
  /// next change.
  ConfigValue* setMember(const std::string& key, ConfigValue value, int line = 0);

private:
  Kind m_kind;
  int m_line;
  bool m_boolean = false;
  double m_number = 0;
  std::string m_string;
  std::vector<ConfigValue> m_elements;
  std::vector<Member> m_members;
};

/// A named value of an object, with the line of its name.
struct ConfigValue::Member {
  std::string key;
  int line = 0;
  ConfigValue value;
};

} // namespace vyrCFG
