// The scripts' interface as the plugins' manifests list it.
#include "ApiManifest.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <istream>
#include <set>

namespace vyrHost {

namespace {

namespace fs = std::filesystem;

bool startsWith(const std::string& text, const std::string& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos)
    return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

/// The text between the n-th pair of quotation marks that follows a word.
std::string quotedAfter(const std::string& text, const std::string& word) {
  const std::size_t begin = text.find(word + " \"");
  if (begin == std::string::npos)
    return {};
  const std::size_t first = begin + word.size() + 2;
  return text.substr(first, text.find('"', first) - first);
}

/// Splits at the commas that stand outside of all brackets.
std::vector<std::string> splitParameters(const std::string& text) {
  std::vector<std::string> parts;
  int depth = 0;
  std::size_t begin = 0;
  for (std::size_t index = 0; index <= text.size(); ++index) {
    const char letter = index < text.size() ? text[index] : ',';
    if (letter == '(' || letter == '<' || letter == '{')
      ++depth;
    else if (letter == ')' || letter == '>' || letter == '}')
      --depth;
    if ((letter == ',' && depth == 0) || index == text.size()) {
      const std::string part = trimmed(text.substr(begin, index - begin));
      if (!part.empty())
        parts.push_back(part);
      begin = index + 1;
    }
  }
  return parts;
}

std::size_t findClosing(const std::string& text, std::size_t opening) {
  int depth = 0;
  for (std::size_t index = opening; index < text.size(); ++index) {
    depth += text[index] == '(' ? 1 : text[index] == ')' ? -1 : 0;
    if (depth == 0)
      return index;
  }
  return std::string::npos;
}

ApiParameter readParameter(std::string text) {
  ApiParameter parameter;
  if (const std::size_t equals = text.find(" = "); equals != std::string::npos) {
    parameter.defaultValue = text.substr(equals + 3);
    text.erase(equals);
  }
  const std::size_t lastBlank = text.rfind(' ');
  if (lastBlank == std::string::npos) {
    parameter.name = text;
    return parameter;
  }
  parameter.name = text.substr(lastBlank + 1);
  std::string type = text.substr(0, lastBlank);
  if (startsWith(type, "number")) {
    parameter.kind = ApiParameter::NUMBER;
  } else if (startsWith(type, "boolean")) {
    parameter.kind = ApiParameter::BOOLEAN;
  } else if (startsWith(type, "string")) {
    parameter.kind = ApiParameter::STRING;
  } else if (type.find("::") != std::string::npos) {
    parameter.kind = ApiParameter::OBJECT;
    parameter.nullable = type.back() == '*';
    while (type.back() == '*' || type.back() == '&')
      type.pop_back();
    parameter.type = type;
  }
  return parameter;
}

/// How many letters have to be changed, added or taken away; a change of case counts for nothing.
std::size_t letterDistance(const std::string& first, const std::string& second) {
  std::vector<std::size_t> row(second.size() + 1);
  for (std::size_t column = 0; column <= second.size(); ++column)
    row[column] = column;
  for (std::size_t line = 1; line <= first.size(); ++line) {
    std::size_t diagonal = row[0];
    row[0] = line;
    for (std::size_t column = 1; column <= second.size(); ++column) {
      const bool same = std::tolower(static_cast<unsigned char>(first[line - 1])) ==
                        std::tolower(static_cast<unsigned char>(second[column - 1]));
      const std::size_t changed = diagonal + (same ? 0 : 1);
      diagonal = row[column];
      row[column] = std::min({changed, row[column] + 1, row[column - 1] + 1});
    }
  }
  return row[second.size()];
}

bool sameParameters(const ApiFunction& first, const ApiFunction& second) {
  return first.describe() == second.describe();
}

void appendOnce(std::vector<ApiFunction>& list, const ApiFunction& function) {
  // Several modules register the same shared functions.
  const auto same = [&function](const ApiFunction& other) { return sameParameters(function, other); };
  if (std::none_of(list.begin(), list.end(), same))
    list.push_back(function);
}

} // namespace

std::string ApiParameter::describe() const {
  std::string text;
  switch (kind) {
  case NUMBER:
    text = "number ";
    break;
  case BOOLEAN:
    text = "boolean ";
    break;
  case STRING:
    text = "string ";
    break;
  case OBJECT:
    text = (startsWith(type, "const ") ? type.substr(6) : type) + " ";
    break;
  case OTHER:
    break;
  }
  text += name;
  if (!defaultValue.empty())
    text += " = " + (defaultValue == "nullptr" ? "nil" : defaultValue);
  else if (nullable)
    text += " or nil";
  return text;
}

std::string ApiFunction::describe() const {
  std::string text = table;
  if (name != ".call")
    text += (self == NONE ? "." : ":") + name;
  text += "(";
  for (std::size_t index = 0; index < parameters.size(); ++index)
    text += (index > 0 ? ", " : "") + parameters[index].describe();
  return text + ")";
}

void ApiManifest::read(std::istream& input) {
  for (std::string line; std::getline(input, line);) {
    if (startsWith(line, "class "))
      readClass(trimmed(line.substr(6)));
    else if (startsWith(line, "function "))
      readFunction(trimmed(line.substr(9)));
  }
}

void ApiManifest::readFolder(const std::string& folder) {
  std::error_code failure;
  std::vector<fs::path> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder, failure))
    if (entry.path().extension() == ".txt")
      files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  for (const fs::path& file : files) {
    std::ifstream input(file);
    read(input);
  }
}

void ApiManifest::readClass(const std::string& text) {
  const std::string table = text.substr(0, text.find(' '));
  const std::string type = quotedAfter(text, "type");
  ApiClass& entry = m_classes[type];
  entry.table = table;
  if (const std::string base = quotedAfter(text, "base"); !base.empty())
    entry.base = base;
  m_classTables[table] = type;
}

void ApiManifest::readFunction(const std::string& text) {
  const std::size_t opening = text.find(" (");
  const std::string path = text.substr(0, text.find(' '));
  if (opening == std::string::npos)
    return;
  ApiFunction function;
  // Names of operators begin with a point themselves: "osg.Matrix2..geti".
  const std::size_t doublePoint = path.find("..");
  const std::size_t point = doublePoint != std::string::npos ? doublePoint : path.rfind('.');
  function.table = point != std::string::npos ? path.substr(0, point) : "";
  function.name = point != std::string::npos ? path.substr(point + 1) : path;
  const std::size_t closing = findClosing(text, opening + 1);
  if (closing == std::string::npos)
    return;
  for (const std::string& part : splitParameters(text.substr(opening + 2, closing - opening - 2))) {
    if (part == "self" || part == "const self")
      function.self = ApiFunction::OBJECT;
    else if (part == "class")
      function.self = ApiFunction::CLASS;
    else
      function.parameters.push_back(readParameter(part));
  }
  m_functions.emplace(function.name, function);
}

std::vector<ApiFunction> ApiManifest::findMethods(const std::string& type, const std::string& name) const {
  std::vector<ApiFunction> found;
  const auto [first, last] = m_functions.equal_range(name);
  std::string current = type;
  // A base that names itself or a circle of bases would be a broken manifest: the walk is bounded all the same.
  for (int depth = 0; depth < 32 && found.empty() && !current.empty(); ++depth) {
    const auto entry = m_classes.find(current);
    if (entry == m_classes.end())
      break;
    for (auto function = first; function != last; ++function)
      if (function->second.table == entry->second.table)
        appendOnce(found, function->second);
    current = entry->second.base;
    if (startsWith(current, "virtual "))
      current = current.substr(8);
  }
  return found;
}

std::vector<ApiFunction> ApiManifest::findFreeFunctions(const std::string& name) const {
  std::vector<ApiFunction> found;
  const auto [first, last] = m_functions.equal_range(name);
  for (auto function = first; function != last; ++function)
    if (m_classTables.count(function->second.table) == 0)
      appendOnce(found, function->second);
  return found;
}

std::vector<std::string> ApiManifest::findNamesLike(const std::string& name) const {
  constexpr std::size_t kMostNames = 3;
  // Short names are near to everything.
  const std::size_t furthest = name.size() < 5 ? 1 : 2;
  std::set<std::pair<std::size_t, std::string>> near;
  const auto consider = [&](const std::string& candidate) {
    const std::size_t distance = letterDistance(name, candidate);
    if (candidate != name && distance <= furthest)
      near.emplace(distance, candidate);
  };
  for (const auto& [function, overload] : m_functions)
    consider(function);
  for (const auto& [table, type] : m_classTables)
    consider(table.substr(table.rfind('.') + 1));
  std::vector<std::string> names;
  for (const auto& [distance, candidate] : near)
    if (names.size() < kMostNames && distance == near.begin()->first)
      names.push_back(candidate);
  return names;
}

} // namespace vyrHost
