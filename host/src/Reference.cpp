// The reference of the scripts' interface, as `vyr help` shows it.
#include "Reference.h"

#include "ExitCode.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <istream>
#include <system_error>

namespace vyrHost {

namespace {

/// More entries than these are listed by their names alone.
constexpr std::size_t kMostWholeEntries = 12;

std::string plainName(const std::string& name) {
  std::string plain;
  for (const char c : name)
    plain += c == ':' ? '.' : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return plain;
}

bool endsWith(const std::string& text, const std::string& ending) {
  return text.size() >= ending.size() && text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

/// "share/vyr" beside the program's folder, as it is built and as it is installed.
std::filesystem::path findReference() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return program.parent_path().parent_path() / "share" / "vyr" / "reference.txt";
}

void printNames(const std::vector<Reference::Entry>& entries) {
  for (const Reference::Entry& entry : entries)
    std::printf("%s\n", entry.name.c_str());
}

} // namespace

void Reference::read(std::istream& input) {
  bool inside = false;
  for (std::string line; std::getline(input, line);) {
    if (line.empty()) {
      inside = false;
    } else if (!inside) {
      m_entries.push_back({line, ""});
      inside = true;
    } else {
      m_entries.back().text += line + "\n";
    }
  }
}

std::vector<Reference::Entry> Reference::find(const std::string& name) const {
  const std::string wanted = plainName(name);
  const std::function<bool(const std::string&)> kinds[] = {
      [&](const std::string& entry) { return entry == wanted; },
      [&](const std::string& entry) { return endsWith(entry, "." + wanted); },
      [&](const std::string& entry) { return entry.find(wanted) != std::string::npos; }};
  std::vector<Entry> found;
  for (const auto& matches : kinds) {
    std::copy_if(m_entries.begin(), m_entries.end(), std::back_inserter(found),
                 [&](const Entry& entry) { return matches(plainName(entry.name)); });
    if (!found.empty())
      break;
  }
  return found;
}

std::vector<Reference::Entry> Reference::findTables() const {
  std::vector<Entry> tables;
  std::copy_if(m_entries.begin(), m_entries.end(), std::back_inserter(tables), [](const Entry& entry) {
    return entry.text.compare(0, 8, "  class ") == 0 || entry.text.compare(0, 8, "  table ") == 0;
  });
  return tables;
}

int runHelp(const std::string& name) {
  const std::filesystem::path file = findReference();
  std::ifstream input(file);
  Reference reference;
  reference.read(input);
  if (reference.isEmpty()) {
    std::fprintf(stderr, "vyr: the reference '%s' cannot be read; it belongs to the program's installation\n",
                 file.c_str());
    return EXIT_CODE_SCRIPT_ERROR;
  }
  if (name.empty()) {
    printNames(reference.findTables());
    std::printf("\nvyr help NAME tells of a class or a function.\n");
    return EXIT_CODE_OK;
  }
  const std::vector<Reference::Entry> found = reference.find(name);
  if (found.empty()) {
    std::fprintf(stderr, "vyr: nothing is called '%s'; 'vyr help' lists the classes\n", name.c_str());
    return EXIT_CODE_SCRIPT_ERROR;
  }
  if (found.size() > kMostWholeEntries) {
    printNames(found);
    std::printf("\n%zu names match '%s'; a longer name tells of one.\n", found.size(), name.c_str());
    return EXIT_CODE_OK;
  }
  for (const Reference::Entry& entry : found)
    std::printf("%s%s\n%s", &entry == &found.front() ? "" : "\n", entry.name.c_str(), entry.text.c_str());
  return EXIT_CODE_OK;
}

} // namespace vyrHost
