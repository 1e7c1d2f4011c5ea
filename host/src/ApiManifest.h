// The scripts' interface as the plugins' manifests list it.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace vyrHost {

/// One parameter of a bound function.
struct ApiParameter {
  enum Kind { NUMBER, BOOLEAN, STRING, OBJECT, OTHER };

  Kind kind = OTHER;
  /// For objects the type's name as the runtime tests it, with "const " where a read-only object will do.
  std::string type;
  /// Whether nil will do.
  bool nullable = false;
  std::string name;
  /// "" where the argument must be given.
  std::string defaultValue;

  /// As a reader wants it: "number samples = 8", "vyr::Vec4 color".
  std::string describe() const;
};

/// One overload of a bound function.
struct ApiFunction {
  enum Self { NONE, OBJECT, CLASS };

  /// The table that it stands in, as scripts write it: "vyrOSG.Tree", "vyr".
  std::string table;
  std::string name;
  Self self = NONE;
  std::vector<ApiParameter> parameters;

  /// The call as a script writes it: "vyrOSG.Tree:new(...)".
  std::string describe() const;
};

/// All classes and functions of the manifests read so far.
class ApiManifest {
public:
  /// Reads one manifest; lines that tell of other things are passed over.
  void read(std::istream& input);

  /// Reads every "*.txt" of a folder; a folder that is not there is no manifest.
  void readFolder(const std::string& folder);

  /// The overloads of a name in a class, or in the nearest of its bases that has it.
  std::vector<ApiFunction> findMethods(const std::string& type, const std::string& name) const;

  /// The overloads of a name in the tables that are no classes.
  std::vector<ApiFunction> findFreeFunctions(const std::string& name) const;

  /// Up to three names of functions and classes that a misspelt one may have meant: the nearest ones.
  std::vector<std::string> findNamesLike(const std::string& name) const;

  bool isEmpty() const { return m_functions.empty(); }

private:
  struct ApiClass {
    std::string table;
    std::string base;
  };

  void readClass(const std::string& text);
  void readFunction(const std::string& text);

  std::map<std::string, ApiClass> m_classes;           // by type name
  std::map<std::string, std::string> m_classTables;    // table -> type name
  std::multimap<std::string, ApiFunction> m_functions; // by name
};

} // namespace vyrHost
