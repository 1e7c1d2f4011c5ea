// An OpenGL context of OpenSceneGraph on EGL: it needs no display server and loads libEGL at run time.
#pragma once

#include <osg/GraphicsContext>

#include <memory>
#include <string>

namespace vyrOSG {
class EglLibrary;

/// Draws into a multisampled pixel buffer of EGL: first on a device (EGL_EXT_platform_device), then on Mesa's
/// surfaceless platform.
///
/// libEGL is opened with dlopen, so that machines with a window system alone need not have it.
class EglContext : public osg::GraphicsContext {
public:
  /// Makes the context with @p traits' size and up to its samples. *Returns new*. Nullable: null when no platform
  /// gives one, with the reasons in @p story; otherwise @p story names platform and renderer.
  static osg::ref_ptr<EglContext> create(osg::GraphicsContext::Traits* traits, std::string& story);

  bool valid() const override;
  bool realizeImplementation() override;
  bool isRealizedImplementation() const override { return m_realized; }
  void closeImplementation() override;
  bool makeCurrentImplementation() override;
  bool makeContextCurrentImplementation(osg::GraphicsContext* readContext) override;
  bool releaseContextImplementation() override;
  void bindPBufferToTextureImplementation(GLenum buffer) override;
  void swapBuffersImplementation() override;

  bool isSameKindAs(const osg::Object* object) const override {
    return dynamic_cast<const EglContext*>(object) != nullptr;
  }
  const char* libraryName() const override { return "vyrOSG"; }
  const char* className() const override { return "EglContext"; }

protected:
  explicit EglContext(osg::GraphicsContext::Traits* traits);
  ~EglContext() override;

private:
  bool open(void* display, const std::string& platform, std::string& story);
  bool chooseAndMake(const std::string& platform, std::string& story);

  std::shared_ptr<EglLibrary> m_egl;
  void* m_display;
  void* m_surface;
  void* m_context;
  bool m_realized;
};
} // namespace vyrOSG
