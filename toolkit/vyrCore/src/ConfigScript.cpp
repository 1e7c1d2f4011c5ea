/// Reads JSON into values with line numbers; the parser of the JSON library counts no lines, so its input does.
#include <vyrCFG/ConfigScript.h>

#include <vyr/Notify.h>

#include <nlohmann/json.hpp>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>
#include <utility>
#include <vector>

namespace vyrCFG {

namespace {

using Json = nlohmann::json;

// Hands the text to the parser and lets the handler see how far the parser has read.
class CountingIterator {
public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, const char** shared)
      : m_at(at)
      , m_shared(shared) {}
  reference operator*() const { return *m_at; }
  CountingIterator& operator++() {
    ++m_at;
    *m_shared = m_at;
    return *this;
  }
  CountingIterator operator++(int) {
    CountingIterator before = *this;
    ++*this;
    return before;
  }
  bool operator==(const CountingIterator& other) const { return m_at == other.m_at; }
  bool operator!=(const CountingIterator& other) const { return m_at != other.m_at; }

private:
  const char* m_at;
  const char** m_shared;
};

// Builds the tree from the parser's events.
class TreeBuilder : public nlohmann::json_sax<Json> {
public:
  TreeBuilder(const char* begin, const char* const* position, const std::string& name)
      : m_counted(begin)
      , m_position(position)
      , m_name(name) {}

  ConfigValue takeRoot() { return std::move(m_root); }

  bool null() override { return leaf(ConfigValue(ConfigValue::Kind::Null, line())); }
  bool boolean(bool value) override {
    ConfigValue made(ConfigValue::Kind::Boolean, line());
    made.setBoolean(value);
    return leaf(std::move(made));
  }
  bool number_integer(number_integer_t value) override { return number(static_cast<double>(value)); }
  bool number_unsigned(number_unsigned_t value) override { return number(static_cast<double>(value)); }
  bool number_float(number_float_t value, const string_t&) override { return number(value); }
  bool string(string_t& value) override {
    ConfigValue made(ConfigValue::Kind::String, line());
    made.setString(value);
    return leaf(std::move(made));
  }
  bool binary(binary_t&) override { return false; }
  bool start_object(std::size_t) override { return open(ConfigValue(ConfigValue::Kind::Object, line())); }
  bool start_array(std::size_t) override { return open(ConfigValue(ConfigValue::Kind::Array, line())); }
  bool end_object() override { return close(); }
  bool end_array() override { return close(); }
  bool key(string_t& value) override {
    m_open.back().key = value;
    m_open.back().keyLine = line();
    if (m_open.back().value.find(value))
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << m_name << ":" << line() << ": key \"" << value
                                    << "\" stands twice, the later one counts";
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const Json::exception& error) override {
    // The library's own text starts with its error number in brackets and repeats the position in its own count.
    std::string text = error.what();
    const std::size_t bracket = text.find("] ");
    if (bracket != std::string::npos)
      text.erase(0, bracket + 2);
    const std::size_t colon = text.find(": ");
    if (colon != std::string::npos)
      text.erase(0, colon + 2);
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << m_name << ":" << line() << ": " << text;
    return false;
  }

private:
  struct Open {
    ConfigValue value;
    std::string key;
    int keyLine = 0;
  };

  // The line of the token that was just read. Numbers end only where the next character has been read, which may be
  // the line's end: that one character is left out.
  int line() {
    for (; m_counted + 1 < *m_position; ++m_counted)
      if (*m_counted == '\n')
        ++m_line;
    return m_line;
  }
  bool number(double value) {
    ConfigValue made(ConfigValue::Kind::Number, line());
    made.setNumber(value);
    return leaf(std::move(made));
  }
  bool leaf(ConfigValue value) {
    if (m_open.empty())
      m_root = std::move(value);
    else if (m_open.back().value.isArray())
      m_open.back().value.append(std::move(value));
    else
      m_open.back().value.setMember(m_open.back().key, std::move(value), m_open.back().keyLine);
    return true;
  }
  bool open(ConfigValue value) {
    m_open.push_back(Open{std::move(value), std::string(), 0});
    return true;
  }
  bool close() {
    ConfigValue value = std::move(m_open.back().value);
    m_open.pop_back();
    return leaf(std::move(value));
  }

  const char* m_counted;
  const char* const* m_position;
  const std::string& m_name;
  int m_line = 1;
  std::vector<Open> m_open;
  ConfigValue m_root;
};

} // namespace

ConfigScript::ConfigScript()
    : m_root(ConfigValue::Kind::Object) {}

ConfigScript::ConfigScript(const std::string& fileName)
    : ConfigScript() {
  load(fileName);
}

ConfigScript::~ConfigScript() = default;

bool ConfigScript::load(const std::string& fileName) {
  // A folder opens like a file, and reading it throws.
  std::error_code error;
  std::ifstream file;
  if (!std::filesystem::is_directory(fileName, error))
    file.open(fileName, std::ios::binary);
  if (!file.is_open()) {
    m_name = fileName;
    m_root = ConfigValue(ConfigValue::Kind::Object);
    m_valid = false;
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "configuration script \"" << fileName << "\" cannot be read";
    return false;
  }
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  const bool read = parse(text, fileName);
  m_fromFile = true;
  return read;
}

bool ConfigScript::parse(const std::string& text, const std::string& name) {
  m_name = name;
  m_fromFile = false;
  m_root = ConfigValue(ConfigValue::Kind::Object);
  m_valid = false;

  const char* position = text.data();
  TreeBuilder builder(text.data(), &position, m_name);
  const bool strict = true, ignoreComments = true;
  if (!Json::sax_parse(CountingIterator(text.data(), &position), CountingIterator(text.data() + text.size(), &position),
                       &builder, Json::input_format_t::json, strict, ignoreComments))
    return false;
  ConfigValue root = builder.takeRoot();
  if (!root.isObject()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << m_name << ":" << root.getLine() << ": a configuration script is an object, not a "
                                  << root.getKindName();
    return false;
  }
  m_root = std::move(root);
  m_valid = true;
  return true;
}

std::string ConfigScript::getDirectory() const {
  const std::size_t slash = m_fromFile ? m_name.rfind('/') : std::string::npos;
  return slash == std::string::npos ? std::string() : m_name.substr(0, slash + 1);
}

} // namespace vyrCFG
