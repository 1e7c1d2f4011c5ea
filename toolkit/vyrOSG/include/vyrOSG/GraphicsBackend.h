// Chooses where OpenGL draws: a window, an EGL context without a display server, or nowhere.
#pragma once

#include <vyrOSG/LaunchOptions.h>
#include <vyrOSG/export.h>

#include <vyr/Referenced.h>
#include <vyr/ref_ptr.h>

#include <osg/GraphicsContext>

#include <string>

namespace vyrOSG {
/// A graphics context and the story of its choice.
class VYROSG_EXPORT GraphicsBackend : public vyr::Referenced {
public:
  /// Where a window shall stand, in pixels of the screen.
  struct Placement {
    int x = 80;
    int y = 60;
    int screen = 0;
    bool decorated = true;
    std::string title = "vyr";
  };

  /// Makes the context that @p wanted asks for, @p width by @p height pixels with @p samples samples a pixel (fewer
  /// where the driver offers fewer). *Returns new*, never null: without graphics the kind is NONE, and for any
  /// @p wanted but AUTO and NONE that is a failure that `isFailure` tells and one error line names.
  static vyr::ref_ptr<GraphicsBackend> create(LaunchOptions::Backend wanted, unsigned width, unsigned height,
                                              unsigned samples, const Placement& placement);

  /// As above at the default place.
  static vyr::ref_ptr<GraphicsBackend> create(LaunchOptions::Backend wanted, unsigned width, unsigned height,
                                              unsigned samples) {
    return create(wanted, width, height, samples, Placement());
  }

  /// What was chosen: WINDOW, EGL or NONE.
  LaunchOptions::Backend getKind() const { return m_kind; }

  /// True when graphics was asked for by name and could not be had.
  bool isFailure() const { return m_failure; }

  /// One line: which back end draws, and why those before it in the order window, EGL do not.
  const std::string& describe() const { return m_description; }

  /// The context, realized on first use by the viewer; Nullable: null for NONE. *Returns inner*.
  osg::GraphicsContext* getContext() const { return m_context.get(); }

protected:
  GraphicsBackend();
  ~GraphicsBackend() override;

private:
  bool createWindow(unsigned width, unsigned height, unsigned samples, const Placement& placement);
  bool createEgl(unsigned width, unsigned height, unsigned samples);
  void append(const std::string& text);

  LaunchOptions::Backend m_kind;
  bool m_failure;
  std::string m_description;
  osg::ref_ptr<osg::GraphicsContext> m_context;
};
} // namespace vyrOSG
