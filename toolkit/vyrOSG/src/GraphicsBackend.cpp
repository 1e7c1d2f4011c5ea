// Tries the graphics back ends in order and keeps the reasons.
#include <vyrOSG/GraphicsBackend.h>

#include "EglContext.h"

#include <vyr/Notify.h>

#include <osg/Notify>
#include <osg/State>
#include <osgViewer/GraphicsWindow>

#include <cstdlib>

namespace vyrOSG {

namespace {

osg::ref_ptr<osg::GraphicsContext::Traits> makeTraits(unsigned width, unsigned height, unsigned samples) {
  osg::ref_ptr<osg::GraphicsContext::Traits> traits = new osg::GraphicsContext::Traits;
  traits->width = static_cast<int>(width);
  traits->height = static_cast<int>(height);
  traits->red = traits->green = traits->blue = 8;
  traits->depth = 24;
  traits->stencil = 8;
  traits->sampleBuffers = samples > 1 ? 1 : 0;
  traits->samples = samples > 1 ? samples : 0;
  traits->doubleBuffer = true;
  traits->vsync = true;
  return traits;
}

/// Keeps the scene-graph library's own complaints off the terminal while a back end is tried: the story tells them.
class QuietTrial {
public:
  QuietTrial()
      : m_level(osg::getNotifyLevel()) {
    if (m_level < osg::INFO)
      osg::setNotifyLevel(osg::ALWAYS);
  }
  ~QuietTrial() { osg::setNotifyLevel(m_level); }

private:
  osg::NotifySeverity m_level;
};

/// Display servers under load now and then refuse a window that they grant a moment later.
constexpr int kWindowTrials = 4;

/// The window with the most samples a pixel that the display grants, up to those of the traits. Nullable.
osg::ref_ptr<osg::GraphicsContext> openWindow(osg::GraphicsContext::Traits& traits) {
  for (;; traits.samples /= 2) {
    traits.sampleBuffers = traits.samples > 1 ? 1 : 0;
    for (int trial = 0; trial < kWindowTrials; ++trial) {
      osg::ref_ptr<osg::GraphicsContext> context = osg::GraphicsContext::createGraphicsContext(&traits);
      if (context.valid() && context->valid())
        return context;
    }
    if (traits.samples <= 1)
      return nullptr;
  }
}

} // namespace

GraphicsBackend::GraphicsBackend()
    : m_kind(LaunchOptions::NONE)
    , m_failure(false) {}

GraphicsBackend::~GraphicsBackend() = default;

vyr::ref_ptr<GraphicsBackend> GraphicsBackend::create(LaunchOptions::Backend wanted, unsigned width, unsigned height,
                                                      unsigned samples, const Placement& placement) {
  vyr::ref_ptr<GraphicsBackend> backend = new GraphicsBackend;
  if (wanted == LaunchOptions::NONE) {
    backend->m_description = "graphics: none, as asked";
    return backend;
  }
  const bool tryWindow = wanted == LaunchOptions::AUTO || wanted == LaunchOptions::WINDOW;
  const bool tryEgl = wanted == LaunchOptions::AUTO || wanted == LaunchOptions::EGL;
  if (tryWindow && backend->createWindow(width, height, samples, placement))
    return backend;
  if (tryEgl && backend->createEgl(width, height, samples))
    return backend;
  backend->m_description = "graphics: none (" + backend->m_description + ")";
  if (wanted != LaunchOptions::AUTO) {
    backend->m_failure = true;
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << backend->m_description;
  }
  return backend;
}

void GraphicsBackend::append(const std::string& text) {
  if (!m_description.empty())
    m_description += "; ";
  m_description += text;
}

bool GraphicsBackend::createWindow(unsigned width, unsigned height, unsigned samples, const Placement& placement) {
  const char* display = std::getenv("DISPLAY");
  if (!display || !*display) {
    append("no window: DISPLAY is not set");
    return false;
  }
  QuietTrial quiet;
  osg::GraphicsContext::WindowingSystemInterface* windows = osg::GraphicsContext::getWindowingSystemInterface();
  osg::ref_ptr<osg::GraphicsContext::Traits> traits = makeTraits(width, height, samples);
  traits->readDISPLAY();
  traits->setUndefinedScreenDetailsToDefaultScreen();
  if (placement.screen >= 0)
    traits->screenNum = placement.screen;
  if (!windows || windows->getNumScreens(*traits) == 0) {
    append(std::string("no window: display \"") + display + "\" does not answer");
    return false;
  }
  traits->x = placement.x;
  traits->y = placement.y;
  traits->windowDecoration = placement.decorated;
  traits->windowName = placement.title;
  m_context = openWindow(*traits);
  if (!m_context) {
    append(std::string("no window: display \"") + display + "\" offers no OpenGL window");
    return false;
  }
  m_kind = LaunchOptions::WINDOW;
  m_description = std::string("graphics: window on display \"") + display + "\", " + std::to_string(width) + "x" +
                  std::to_string(height) + ", " + std::to_string(traits->samples) + " samples";
  return true;
}

bool GraphicsBackend::createEgl(unsigned width, unsigned height, unsigned samples) {
  osg::ref_ptr<osg::GraphicsContext::Traits> traits = makeTraits(width, height, samples);
  traits->pbuffer = true;
  std::string story;
  osg::ref_ptr<EglContext> context = EglContext::create(traits.get(), story);
  if (!context) {
    append("no EGL: " + story);
    return false;
  }
  m_context = context;
  m_kind = LaunchOptions::EGL;
  const std::string before = m_description;
  m_description = "graphics: EGL (" + story + "), " + std::to_string(width) + "x" + std::to_string(height) + ", " +
                  std::to_string(traits->samples) + " samples";
  if (!before.empty())
    m_description += "; " + before;
  return true;
}

} // namespace vyrOSG
