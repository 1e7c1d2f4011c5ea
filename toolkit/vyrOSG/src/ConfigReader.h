/// Takes the members of one object of a configuration script out, and reports what is wrong with them or unknown.
#pragma once

#include <vyr/Vec4.h>
#include <vyrCFG/ConfigScript.h>
#include <vyrCFG/ConfigValue.h>

#include <set>
#include <string>
#include <vector>

namespace vyrOSG {

/// Each getter leaves its target alone where the key is missing. A value of the wrong kind gives one error line and
/// makes `isGood()` false. Borrows script and value.
class ConfigReader {
public:
  /// `what` names the object in messages, as in `texture "wood"`. A value that is no object is an error.
  ConfigReader(const vyrCFG::ConfigScript& script, const vyrCFG::ConfigValue& value, const std::string& what);
  ~ConfigReader();
  ConfigReader(const ConfigReader&) = delete;
  ConfigReader& operator=(const ConfigReader&) = delete;

  /// Whether no mistake was found so far; unknown keys are none.
  bool isGood() const { return m_good; }
  /// Whether the key is there.
  bool has(const std::string& key) const { return m_value.find(key) != nullptr; }
  /// The value of a key, which counts as known from then on. Nullable: it is missing. *returns inner*
  const vyrCFG::ConfigValue* take(const std::string& key);

  void getNumber(const std::string& key, double& outValue);
  /// A whole number from `least` to `most`.
  void getInteger(const std::string& key, int least, int most, int& outValue);
  void getString(const std::string& key, std::string& outValue);
  /// A list of `least` to `most` numbers.
  void getNumbers(const std::string& key, std::size_t least, std::size_t most, std::vector<double>& outValue);
  /// A list of strings.
  void getStrings(const std::string& key, std::vector<std::string>& outValue);
  /// A word of a list; gives its index.
  void getWord(const std::string& key, const std::vector<std::string>& words, std::size_t& outIndex);
  /// Three or four numbers, the fourth 1 where it is missing.
  void getColor(const std::string& key, vyr::Vec4& outValue);

  /// Makes the object bad with one error line at `line`.
  void fail(int line, const std::string& text);
  /// Makes the object bad without a message, where a part of it has told already.
  void markBad() { m_good = false; }
  /// Reports each key that was never taken, with its line; such keys do not make the object bad.
  void reportUnknown();

private:
  const vyrCFG::ConfigScript& m_script;
  const vyrCFG::ConfigValue& m_value;
  std::string m_what;
  std::set<std::string> m_known;
  bool m_good = true;
};

} // namespace vyrOSG
