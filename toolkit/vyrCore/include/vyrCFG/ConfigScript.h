/// A configuration script: JSON text (comments allowed) read into values that know their lines.
#pragma once

#include <vyr/Referenced.h>
#include <vyrCFG/ConfigValue.h>
#include <vyrCore/export.h>

#include <string>

namespace vyrCFG {

/// Readers of particular configurations, such as the render state manager, take a script and look up what they know.
class VYRCORE_EXPORT ConfigScript : public vyr::Referenced {
public:
  ConfigScript();
  /// Loads the file; `isValid()` tells whether that succeeded.
  explicit ConfigScript(const std::string& fileName);

  /// Reads a file. Failure (no such file, no JSON, outermost value not an object): false, one error line with file and
  /// line number, and the script is empty.
  bool load(const std::string& fileName);
  /// Reads text; `name` stands for the file name in messages. Fails as `load`.
  bool parse(const std::string& text, const std::string& name = "configuration");

  /// True after a successful `load` or `parse`.
  bool isValid() const { return m_valid; }
  /// The file name, or the name that was given with the text.
  const std::string& getName() const { return m_name; }
  /// The folder of the file, with a slash at its end; empty for text and for a bare file name. Relative file names in
  /// the script are looked up here first.
  std::string getDirectory() const;
  /// The outermost object; empty when nothing was read.
  const ConfigValue& getRoot() const { return m_root; }

protected:
  ~ConfigScript() override;

private:
  std::string m_name;
  ConfigValue m_root;
  bool m_valid = false;
  bool m_fromFile = false;
};

} // namespace vyrCFG
