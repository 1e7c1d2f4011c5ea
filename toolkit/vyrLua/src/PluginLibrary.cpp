// A plugin's shared library, open as long as the object lives.
#include "PluginLibrary.h"

#include <dlfcn.h>
#include <link.h>

#include <utility>

namespace vyrLua {

namespace {

const char* baseAddressOf(void* handle) {
  link_map* map = nullptr;
  if (dlinfo(handle, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr)
    return nullptr;
  // The loader gives addresses as integers.
  return reinterpret_cast<const char*>(map->l_addr); // NOLINT(performance-no-int-to-ptr)
}

} // namespace

PluginLibrary::PluginLibrary(std::string file)
    : m_file(std::move(file))
    , m_handle(dlopen(m_file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (m_handle == nullptr) {
    const char* reason = dlerror();
    m_error = reason != nullptr ? reason : "unknown reason";
  }
}

PluginLibrary::~PluginLibrary() {
  if (m_handle != nullptr)
    dlclose(m_handle);
}

PluginLibrary::EntryPoint PluginLibrary::getEntryPoint() const {
  void* symbol = m_handle != nullptr ? dlsym(m_handle, "initPlugin") : nullptr;
  // dlsym also searches the libraries that this one depends on, and a plugin may be linked to another plugin: an entry
  // point that lies elsewhere would start the wrong one.
  Dl_info info = {};
  if (symbol == nullptr || dladdr(symbol, &info) == 0 || info.dli_fbase != baseAddressOf(m_handle))
    return nullptr;
  return reinterpret_cast<EntryPoint>(symbol);
}

} // namespace vyrLua
