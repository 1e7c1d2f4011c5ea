// A plugin's shared library, open as long as the object lives.
#pragma once

#include <string>

namespace vyrLua {

class ScriptManager;

/// Opens a shared library for itself alone (its symbols serve nobody else) and finds the plugin's entry point in it.
class PluginLibrary {
public:
  using EntryPoint = void (*)(ScriptManager*);

  /// Opens the file; see isOpen and getError.
  explicit PluginLibrary(std::string file);
  ~PluginLibrary();

  PluginLibrary(const PluginLibrary&) = delete;
  PluginLibrary& operator=(const PluginLibrary&) = delete;

  bool isOpen() const { return m_handle != nullptr; }

  /// Why the file could not be opened, in the loader's words.
  const std::string& getError() const { return m_error; }
  const std::string& getFile() const { return m_file; }

  /// The function initPlugin. Nullable: this library has none of its own.
  EntryPoint getEntryPoint() const;

private:
  std::string m_file;
  std::string m_error;
  void* m_handle;
};

} // namespace vyrLua
