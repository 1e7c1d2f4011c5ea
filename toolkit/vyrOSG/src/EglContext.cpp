// Opens libEGL at run time, finds a platform that needs no display server and makes an OpenGL context on it.
#include "EglContext.h"

#include <osg/State>
#include <osgViewer/GraphicsWindow>

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstring>
#include <dlfcn.h>
#include <vector>

namespace vyrOSG {

/// The functions of libEGL, looked up once; the library stays loaded for the life of the last context.
class EglLibrary {
public:
  static std::shared_ptr<EglLibrary> open(std::string& story) {
    void* handle = dlopen("libEGL.so.1", RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
      story = "libEGL.so.1 cannot be loaded";
      return nullptr;
    }
    auto library = std::make_shared<EglLibrary>();
    library->m_handle = handle;
    if (!library->lookUp()) {
      story = "libEGL.so.1 lacks a function that is needed";
      return nullptr;
    }
    return library;
  }

  ~EglLibrary() {
    // Drivers leave threads and exit handlers behind; unloading their code under them crashes at exit.
  }

  template <class Function>
  bool find(Function& function, const char* name) {
    function = reinterpret_cast<Function>(dlsym(m_handle, name));
    return function != nullptr;
  }

  bool lookUp() {
    const bool found = find(getProcAddress, "eglGetProcAddress") && find(queryString, "eglQueryString") &&
                       find(initialize, "eglInitialize") && find(terminate, "eglTerminate") &&
                       find(bindApi, "eglBindAPI") && find(chooseConfig, "eglChooseConfig") &&
                       find(createPbufferSurface, "eglCreatePbufferSurface") &&
                       find(createContext, "eglCreateContext") && find(makeCurrent, "eglMakeCurrent") &&
                       find(destroySurface, "eglDestroySurface") && find(destroyContext, "eglDestroyContext") &&
                       find(swapBuffers, "eglSwapBuffers");
    if (!found)
      return false;
    getPlatformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(getProcAddress("eglGetPlatformDisplayEXT"));
    queryDevices = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(getProcAddress("eglQueryDevicesEXT"));
    return getPlatformDisplay != nullptr;
  }

  bool hasClientExtension(const char* name) const {
    const char* extensions = queryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    return extensions && std::strstr(extensions, name);
  }

  PFNEGLGETPROCADDRESSPROC getProcAddress = nullptr;
  PFNEGLQUERYSTRINGPROC queryString = nullptr;
  PFNEGLINITIALIZEPROC initialize = nullptr;
  PFNEGLTERMINATEPROC terminate = nullptr;
  PFNEGLBINDAPIPROC bindApi = nullptr;
  PFNEGLCHOOSECONFIGPROC chooseConfig = nullptr;
  PFNEGLCREATEPBUFFERSURFACEPROC createPbufferSurface = nullptr;
  PFNEGLCREATECONTEXTPROC createContext = nullptr;
  PFNEGLMAKECURRENTPROC makeCurrent = nullptr;
  PFNEGLDESTROYSURFACEPROC destroySurface = nullptr;
  PFNEGLDESTROYCONTEXTPROC destroyContext = nullptr;
  PFNEGLSWAPBUFFERSPROC swapBuffers = nullptr;
  PFNEGLGETPLATFORMDISPLAYEXTPROC getPlatformDisplay = nullptr;
  PFNEGLQUERYDEVICESEXTPROC queryDevices = nullptr;

private:
  void* m_handle = nullptr;
};

EglContext::EglContext(osg::GraphicsContext::Traits* traits)
    : m_display(nullptr)
    , m_surface(nullptr)
    , m_context(nullptr)
    , m_realized(false) {
  _traits = traits;
  setState(new osg::State);
  getState()->setGraphicsContext(this);
  getState()->setContextID(osg::GraphicsContext::createNewContextID());
}

EglContext::~EglContext() {
  close(true);
}

osg::ref_ptr<EglContext> EglContext::create(osg::GraphicsContext::Traits* traits, std::string& story) {
  std::shared_ptr<EglLibrary> egl = EglLibrary::open(story);
  if (!egl)
    return nullptr;
  osg::ref_ptr<EglContext> context = new EglContext(traits);
  context->m_egl = egl;

  if (egl->queryDevices && egl->hasClientExtension("EGL_EXT_platform_device")) {
    EGLDeviceEXT devices[16];
    EGLint count = 0;
    if (!egl->queryDevices(16, devices, &count))
      count = 0;
    for (EGLint i = 0; i < count; ++i) {
      if (context->open(egl->getPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr),
                        "device " + std::to_string(i), story))
        return context;
    }
    if (count == 0)
      story = "no EGL device";
  } else {
    story = "no EGL_EXT_platform_device";
  }
  if (egl->hasClientExtension("EGL_MESA_platform_surfaceless")) {
    if (context->open(egl->getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr), "surfaceless", story))
      return context;
  } else {
    story += "; no EGL_MESA_platform_surfaceless";
  }
  return nullptr;
}

bool EglContext::open(void* display, const std::string& platform, std::string& story) {
  if (display == EGL_NO_DISPLAY || !m_egl->initialize(display, nullptr, nullptr)) {
    story += (story.empty() ? "" : "; ") + platform + ": no display";
    return false;
  }
  m_display = display;
  if (chooseAndMake(platform, story))
    return true;
  m_egl->terminate(display);
  m_display = nullptr;
  return false;
}

bool EglContext::chooseAndMake(const std::string& platform, std::string& story) {
  const std::string prefix = (story.empty() ? "" : "; ") + platform;
  if (!m_egl->bindApi(EGL_OPENGL_API)) {
    story += prefix + ": no desktop OpenGL";
    return false;
  }
  EGLConfig config = nullptr;
  EGLint count = 0;
  unsigned samples = _traits->samples;
  for (;; samples /= 2) {
    const EGLint attributes[] = {EGL_SURFACE_TYPE,
                                 EGL_PBUFFER_BIT,
                                 EGL_RENDERABLE_TYPE,
                                 EGL_OPENGL_BIT,
                                 EGL_RED_SIZE,
                                 8,
                                 EGL_GREEN_SIZE,
                                 8,
                                 EGL_BLUE_SIZE,
                                 8,
                                 EGL_DEPTH_SIZE,
                                 24,
                                 EGL_STENCIL_SIZE,
                                 8,
                                 EGL_SAMPLE_BUFFERS,
                                 samples > 1 ? 1 : 0,
                                 EGL_SAMPLES,
                                 samples > 1 ? static_cast<EGLint>(samples) : 0,
                                 EGL_NONE};
    if (m_egl->chooseConfig(m_display, attributes, &config, 1, &count) && count > 0)
      break;
    if (samples <= 1) {
      story += prefix + ": no configuration with a pixel buffer";
      return false;
    }
  }
  _traits->samples = samples > 1 ? samples : 0;
  const EGLint size[] = {EGL_WIDTH, _traits->width, EGL_HEIGHT, _traits->height, EGL_NONE};
  m_surface = m_egl->createPbufferSurface(m_display, config, size);
  if (m_surface == EGL_NO_SURFACE) {
    story += prefix + ": no pixel buffer of that size";
    return false;
  }
  m_context = m_egl->createContext(m_display, config, EGL_NO_CONTEXT, nullptr);
  if (m_context == EGL_NO_CONTEXT || !m_egl->makeCurrent(m_display, m_surface, m_surface, m_context)) {
    story += prefix + ": no context";
    if (m_context != EGL_NO_CONTEXT)
      m_egl->destroyContext(m_display, m_context);
    m_egl->destroySurface(m_display, m_surface);
    m_context = m_surface = nullptr;
    return false;
  }
  const GLubyte* renderer = glGetString(GL_RENDERER);
  story = platform + ", " + (renderer ? reinterpret_cast<const char*>(renderer) : "unknown renderer");
  m_egl->makeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  return true;
}

bool EglContext::valid() const {
  return m_context != nullptr;
}

bool EglContext::realizeImplementation() {
  m_realized = m_context != nullptr;
  return m_realized;
}

void EglContext::closeImplementation() {
  m_realized = false;
  if (!m_context)
    return;
  m_egl->makeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
  m_egl->destroyContext(m_display, m_context);
  m_egl->destroySurface(m_display, m_surface);
  // The display is shared by every context of the process on that platform: terminating it would end the others.
  m_context = m_surface = m_display = nullptr;
}

bool EglContext::makeCurrentImplementation() {
  return m_context && m_egl->makeCurrent(m_display, m_surface, m_surface, m_context);
}

bool EglContext::makeContextCurrentImplementation(osg::GraphicsContext*) {
  return makeCurrentImplementation();
}

bool EglContext::releaseContextImplementation() {
  return m_context && m_egl->makeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

void EglContext::bindPBufferToTextureImplementation(GLenum) {}

void EglContext::swapBuffersImplementation() {
  if (m_context)
    m_egl->swapBuffers(m_display, m_surface);
}

} // namespace vyrOSG
