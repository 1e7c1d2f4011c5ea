/// The functions of the loaded toolkit and scene-graph libraries by their readable names.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace conformance {

/// Every function that the symbol tables of the loaded libraries name, local and inline ones included where a library
/// keeps its full table.
class Symbols {
public:
  /// Reads the tables of the libraries whose file names contain "libvyr", "libosg" or "libOpenThreads".
  Symbols();

  /// The readable names, parameters included, of the functions called `name`; standard strings are written std::string,
  /// and instances of function templates stand without result type and template arguments too.
  std::vector<std::string> named(const std::string& name) const;

  /// Where a function with this readable name begins: more than one address if several libraries carry an inline copy.
  std::vector<std::uintptr_t> addresses(const std::string& fullName) const;

  /// The readable name of the function that begins there; "" if there is none.
  std::string at(std::uintptr_t address) const;

private:
  void add(const std::string& name, std::uintptr_t address);

  std::map<std::string, std::vector<std::uintptr_t>> m_functions;
  std::map<std::uintptr_t, std::string> m_names;
};

/// First and last address of the code of the library that `address` belongs to.
std::pair<std::uintptr_t, std::uintptr_t> codeAround(std::uintptr_t address);

} // namespace conformance
