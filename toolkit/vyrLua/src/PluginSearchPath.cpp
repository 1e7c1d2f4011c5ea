// Where script plugins are looked for.
#include "PluginSearchPath.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <sstream>

namespace vyrLua {

namespace {

namespace fs = std::filesystem;

constexpr const char* kPrefix = "lib";
constexpr const char* kSuffix = "_luaplugin.so";
constexpr const char* kPluginFolder = "vyr/plugins";

void appendOnce(std::vector<std::string>& directories, const fs::path& directory) {
  const std::string text = directory.lexically_normal().string();
  if (!text.empty() && std::find(directories.begin(), directories.end(), text) == directories.end())
    directories.push_back(text);
}

fs::path libraryDirectory() {
  Dl_info info = {};
  if (dladdr(reinterpret_cast<const void*>(&pluginFileName), &info) == 0 || info.dli_fname == nullptr)
    return {};
  std::error_code failure;
  const fs::path real = fs::canonical(info.dli_fname, failure);
  return failure ? fs::path() : real.parent_path();
}

fs::path programDirectory() {
  std::error_code failure;
  const fs::path program = fs::read_symlink("/proc/self/exe", failure);
  return failure ? fs::path() : program.parent_path();
}

} // namespace

std::string pluginFileName(const std::string& name) {
  return kPrefix + name + kSuffix;
}

std::vector<std::string> pluginSearchPaths(const std::vector<std::string>& extraPaths) {
  std::vector<std::string> directories;
  if (const char* list = std::getenv("VYR_PLUGIN_PATH")) {
    std::istringstream entries(list);
    for (std::string entry; std::getline(entries, entry, ':');)
      appendOnce(directories, entry);
  }
  for (const std::string& path : extraPaths)
    appendOnce(directories, path);
  if (const fs::path library = libraryDirectory(); !library.empty())
    appendOnce(directories, library / kPluginFolder);
  if (const fs::path program = programDirectory(); !program.empty()) {
    appendOnce(directories, program / ".." / "lib" / kPluginFolder);
    appendOnce(directories, program / "plugins");
  }
  return directories;
}

std::string findPluginFile(const std::vector<std::string>& directories, const std::string& name) {
  for (const std::string& directory : directories) {
    const fs::path file = fs::path(directory) / pluginFileName(name);
    std::error_code failure;
    if (fs::exists(file, failure))
      return file.string();
  }
  return {};
}

std::vector<std::string> listPlugins(const std::vector<std::string>& directories) {
  const std::string prefix = kPrefix;
  const std::string suffix = kSuffix;
  std::set<std::string> names;
  for (const std::string& directory : directories) {
    std::error_code failure;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory, failure)) {
      const std::string file = entry.path().filename().string();
      if (file.size() > prefix.size() + suffix.size() && file.compare(0, prefix.size(), prefix) == 0 &&
          file.compare(file.size() - suffix.size(), suffix.size(), suffix) == 0)
        names.insert(file.substr(prefix.size(), file.size() - prefix.size() - suffix.size()));
    }
  }
  return {names.begin(), names.end()};
}

} // namespace vyrLua
