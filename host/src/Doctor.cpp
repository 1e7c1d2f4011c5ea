// Tells what works on this machine and what does not.
#include "Doctor.h"

#include "ExitCode.h"
#include "Plugins.h"

#include <vyrLua/ScriptManager.h>
#include <vyrOSG/GraphicsBackend.h>

#include <vyr/Notify.h>

#include <tolua++.h>

#include <osg/GL>
#include <osg/GraphicsContext>
#include <osg/Version>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

namespace vyrHost {

namespace {

/// Catches messages while something is tried, so that each finding stands where it belongs.
class FindingSink : public vyr::NotifySink {
public:
  void message(vyr::NotifyLevel level, const std::string& text) override {
    if (level >= vyr::NOTIFY_WARNING)
      m_findings.push_back(text);
  }
  const std::vector<std::string>& getFindings() const { return m_findings; }

private:
  ~FindingSink() override = default;
  std::vector<std::string> m_findings;
};

class Findings {
public:
  Findings()
      : m_sink(new FindingSink) {
    vyr::Notify::instance()->addSink(m_sink.get());
  }
  ~Findings() { vyr::Notify::instance()->removeSink(m_sink.get()); }
  const std::vector<std::string>& get() const { return m_sink->getFindings(); }

private:
  vyr::ref_ptr<FindingSink> m_sink;
};

void line(const char* subject, bool works, const std::string& text) {
  std::printf("  %-4s %-10s %s\n", works ? "ok" : "--", subject, text.c_str());
}

const char* environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : "(not set)";
}

std::string glText(GLenum name) {
  const GLubyte* text = glGetString(name);
  return text != nullptr ? reinterpret_cast<const char*>(text) : "(unknown)";
}

/// Whether a context can really be drawn into, and by whom.
bool examine(osg::GraphicsContext* context, std::string& text) {
  if (context == nullptr || (!context->isRealized() && !context->realize()) || !context->makeCurrent())
    return false;
  text = "OpenGL " + glText(GL_VERSION) + ", " + glText(GL_RENDERER);
  context->releaseContext();
  return true;
}

bool checkBackend(const char* name, vyrOSG::LaunchOptions::Backend kind) {
  Findings findings;
  constexpr unsigned kSide = 64;
  const vyr::ref_ptr<vyrOSG::GraphicsBackend> backend = vyrOSG::GraphicsBackend::create(kind, kSide, kSide, 0);
  const bool made = backend->getKind() == kind;
  line(name, made, backend->describe());
  std::string renderer;
  const bool draws = made && examine(backend->getContext(), renderer);
  if (draws)
    std::printf("                  %s\n", renderer.c_str());
  else if (made)
    std::printf("                  the context cannot be made current\n");
  return draws;
}

bool checkGraphics() {
  std::printf("Graphics\n");
  const bool window = checkBackend("window", vyrOSG::LaunchOptions::WINDOW);
  const bool egl = checkBackend("egl", vyrOSG::LaunchOptions::EGL);
  std::printf("       DISPLAY = %s, WAYLAND_DISPLAY = %s, XDG_SESSION_TYPE = %s\n", environment("DISPLAY"),
              environment("WAYLAND_DISPLAY"), environment("XDG_SESSION_TYPE"));
  if (!window && !egl)
    std::printf("       Debian packages for a window: libgl1 libgl1-mesa-dri; without a display server: libegl1 "
                "libegl-mesa0 libgl1-mesa-dri\n");
  return window || egl;
}

bool checkPlugin(vyrLua::ScriptManager& manager, const std::string& name) {
  Findings findings;
  const bool loaded = manager.requestScriptPlugin(name);
  line(name.c_str(), loaded, loaded ? manager.getScriptPluginFile(name) : "");
  for (const std::string& finding : findings.get())
    std::printf("                  %s\n", finding.c_str());
  return loaded && findings.get().empty();
}

bool checkPlugins() {
  std::printf("Plugins\n");
  vyrLua::ScriptManager& manager = *vyrLua::ScriptManager::instance(true);
  bool allLoad = true;
  for (const char* name : kPlugins)
    allLoad = checkPlugin(manager, name) && allLoad;
  for (const std::string& name : manager.findAvailablePlugins())
    if (manager.getScriptPlugin(name) == nullptr &&
        std::find(std::begin(kPlugins), std::end(kPlugins), name) == std::end(kPlugins))
      checkPlugin(manager, name);
  std::printf("       searched in:\n");
  for (const std::string& directory : manager.getSearchPaths())
    std::printf("                  %s\n", directory.c_str());
  return allLoad;
}

std::string findProgram(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::istringstream directories(path != nullptr ? path : "");
  for (std::string directory; std::getline(directories, directory, ':');) {
    std::string file = directory;
    file.append("/").append(name);
    if (access(file.c_str(), X_OK) == 0)
      return file;
  }
  return {};
}

void checkTools() {
  std::printf("Tools\n");
  const std::string ffmpeg = findProgram("ffmpeg");
  line("ffmpeg", !ffmpeg.empty(),
       !ffmpeg.empty() ? ffmpeg : "not found: --record writes numbered pictures (Debian package ffmpeg)");
}

} // namespace

void printVersion() {
  std::printf("vyr %s (%s, %s, OpenSceneGraph %s)\n", VYR_VERSION, LUA_RELEASE, TOLUA_VERSION, osgGetVersion());
}

int runDoctor() {
  printVersion();
  const bool graphics = checkGraphics();
  const bool plugins = checkPlugins();
  checkTools();
  vyrLua::ScriptManager::shutdown();
  if (!graphics)
    return EXIT_CODE_NO_GRAPHICS;
  return plugins ? EXIT_CODE_OK : EXIT_CODE_SCRIPT_ERROR;
}

} // namespace vyrHost
