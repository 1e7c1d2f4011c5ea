// The reference of the scripts' interface, as `vyr help` shows it.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace vyrHost {

/// The entries of a reference: a line with the name of a class or function, then indented lines with its calls and what
/// they do; an empty line ends an entry.
class Reference {
public:
  struct Entry {
    std::string name;
    std::string text;
  };

  void read(std::istream& input);

  bool isEmpty() const { return m_entries.empty(); }

  /// The entries that a name may mean, the best kind of match alone: the whole name ("vyrWire.Wire", with '.' or ':'
  /// before a function), the last part of it ("setNode"), or a part of it ("node"); capitals do not matter.
  std::vector<Entry> find(const std::string& name) const;

  /// All namespaces and classes.
  std::vector<Entry> findTables() const;

private:
  std::vector<Entry> m_entries;
};

/// Writes what the reference says of a name, or the list of classes where it is empty, to the standard output.
/// @return the program's exit code: 1 when nothing has such a name or the reference is not installed, else 0.
int runHelp(const std::string& name);

} // namespace vyrHost
