// Lets the scene graph's objects retire from Lua before they go.
#include "SceneDeleteHandler.h"

#include <vyrLua/ObjectRetirer.h>

#include <osg/DeleteHandler>
#include <osg/Referenced>
#include <osgDB/Registry>

#include <cstdlib>
#include <mutex>
#include <vector>

namespace vyrHost {

namespace {

/// As the toolkit's own handler: an object that another thread lets go of waits for the Lua thread.
class SceneDeleteHandler : public osg::DeleteHandler {
public:
  explicit SceneDeleteHandler(const std::shared_ptr<vyrLua::ObjectRetirer>& retirer)
      : m_retirer(retirer) {}

  ~SceneDeleteHandler() override { SceneDeleteHandler::flush(); }

  void flush() override {
    std::vector<const osg::Referenced*> waiting;
    {
      std::lock_guard<std::mutex> guard(m_mutex);
      waiting.swap(m_waiting);
    }
    for (const osg::Referenced* object : waiting)
      destroy(object);
  }

  void flushAll() override { flush(); }

  void requestDelete(const osg::Referenced* object) override {
    if (!m_retirer->isLuaThread()) {
      std::lock_guard<std::mutex> guard(m_mutex);
      m_waiting.push_back(object);
      return;
    }
    flush();
    destroy(object);
  }

private:
  void destroy(const osg::Referenced* object) {
    // Lua knows an object by the address of the class that it was bound as: the count's, or the whole object's.
    const void* whole = dynamic_cast<const void*>(object);
    m_retirer->retire(object);
    if (whole != object)
      m_retirer->retire(whole);
    doDelete(object);
  }

  std::shared_ptr<vyrLua::ObjectRetirer> m_retirer;
  std::mutex m_mutex;
  std::vector<const osg::Referenced*> m_waiting;
};

} // namespace

void installSceneDeleteHandler(const std::shared_ptr<vyrLua::ObjectRetirer>& retirer) {
  // A script may end the process: the library would go on using the handler after its own end destroyed it.
  static const bool atExit = std::atexit(&removeSceneDeleteHandler) == 0;
  static_cast<void>(atExit);
  // The library owns the handler from here on and deletes it when it gets another one.
  osg::Referenced::setDeleteHandler(new SceneDeleteHandler(retirer));
} // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks)

void removeSceneDeleteHandler() {
  // Files of some formats are read as viewers, which must not outlive the viewer library's own statics.
  osgDB::Registry::instance()->clearObjectCache();
  osg::Referenced::setDeleteHandler(nullptr);
}

} // namespace vyrHost
