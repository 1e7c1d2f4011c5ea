// Where script plugins are looked for.
#pragma once

#include <string>
#include <vector>

namespace vyrLua {

/// The file name of a plugin: "lib" + name + "_luaplugin.so".
std::string pluginFileName(const std::string& name);

/// The directories of VYR_PLUGIN_PATH, then the given ones, then those beside this library and beside the program; each
/// once, in order.
std::vector<std::string> pluginSearchPaths(const std::vector<std::string>& extraPaths);

/// The first file of a plugin along the directories; "" when there is none.
std::string findPluginFile(const std::vector<std::string>& directories, const std::string& name);

/// The names of all plugins in the directories, sorted, each once.
std::vector<std::string> listPlugins(const std::vector<std::string>& directories);

} // namespace vyrLua
