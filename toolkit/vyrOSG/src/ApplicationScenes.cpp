// The application's scenes: adding, building, switching and emptying them.
#include "ApplicationParts.h"

#include <vyr/Notify.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/OSGSceneRoot.h>

#include <osgDB/FileUtils>

#include <cmath>

namespace vyrOSG {

namespace {

/// The file itself, or the first of that name in the folders, which are separated by ';'. "" when there is none.
std::string findScript(const std::string& file, const std::string& folders) {
  if (osgDB::fileType(file) == osgDB::REGULAR_FILE)
    return file;
  std::size_t begin = 0;
  while (begin <= folders.size()) {
    const std::size_t end = std::min(folders.find(';', begin), folders.size());
    const std::string path = folders.substr(begin, end - begin) + "/" + file;
    if (end > begin && osgDB::fileType(path) == osgDB::REGULAR_FILE)
      return path;
    begin = end + 1;
  }
  return "";
}

} // namespace

bool ExampleApplication::addScene(const std::string& file, const std::string& function, int key, bool start,
                                  float duration, bool paused) {
  const std::string path = findScript(file, m_luaFilePath);
  std::string problem;
  if (path.empty())
    problem = "there is no such file, neither as named nor in \"" + m_luaFilePath + "\"";
  else if (function.empty())
    problem = "the scene function has no name";
  else if (key != 0 && hasSceneKey(key))
    problem = "the key " + std::to_string(key) + " has a scene already";
  else if (!(duration >= 0.0f) || !std::isfinite(duration))
    problem = "the duration is negative or not a number";
  if (!problem.empty()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot add scene \"" << function << "\" of \"" << file << "\": " << problem;
    return false;
  }
  if (start)
    m_parts->startScene = m_parts->scenes.size();
  m_parts->scenes.push_back({path, function, key, static_cast<double>(duration), paused});
  return true;
}

bool ExampleApplication::addScene(const std::string& file, const std::string& function, bool start, float duration,
                                  bool paused) {
  return addScene(file, function, 0, start, duration, paused);
}

bool ExampleApplication::hasSceneKey(int key) const {
  for (const SceneEntry& scene : m_parts->scenes) {
    if (scene.key != 0 && scene.key == key)
      return true;
  }
  return false;
}

std::size_t ExampleApplication::getNumScenes() const {
  return m_parts->scenes.size();
}

bool ExampleApplication::createSceneByKey(int key) {
  for (std::size_t i = 0; i < m_parts->scenes.size(); ++i) {
    if (m_parts->scenes[i].key != 0 && m_parts->scenes[i].key == key)
      return createScene(i);
  }
  return false;
}

void ExampleApplication::reloadScene() {
  if (m_parts->currentScene != Parts::kNoScene)
    createScene(m_parts->currentScene);
}

void ExampleApplication::createNextScene() {
  const std::size_t count = m_parts->scenes.size();
  if (count > 0)
    createScene(m_parts->currentScene == Parts::kNoScene ? 0 : (m_parts->currentScene + 1) % count);
}

void ExampleApplication::createPreviousScene() {
  const std::size_t count = m_parts->scenes.size();
  if (count > 0)
    createScene(m_parts->currentScene == Parts::kNoScene ? count - 1 : (m_parts->currentScene + count - 1) % count);
}

bool ExampleApplication::createScene(std::size_t index) {
  if (index >= m_parts->scenes.size())
    return false;
  // A home that was set before the first scene is meant for it; every later scene begins without one.
  if (m_parts->currentScene != Parts::kNoScene)
    m_cameraHomeSet = m_parts->viewWasChosen = false;
  const double stopIn = m_parts->stopTime - getTimeStamp();
  clearScene();
  // Limits are spans of the run, while the clock begins anew with the scene.
  m_parts->stopTime = getTimeStamp() + stopIn;
  m_parts->currentScene = index;
  return buildScene(index);
}

bool ExampleApplication::buildScene(std::size_t index) {
  const SceneEntry entry = m_parts->scenes[index];
  m_scriptFile = entry.file;
  m_parts->sceneEnd = entry.duration > 0.0 ? entry.duration : std::numeric_limits<double>::infinity();
  if (!m_sceneLoader) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot build scene \"" << entry.function << "\" of \"" << entry.file
                                  << "\": no scene loader was set";
    return false;
  }
  vyrOSG::Group* group = static_cast<vyrOSG::Group*>(m_scene.get());
  osg::ref_ptr<vyrOSG::Group> held = group;
  std::string error;
  if (!m_sceneLoader->loadScene(entry.file, entry.function, m_simulation.get(), this, group, error)) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "cannot build scene \"" << entry.function << "\" of \"" << entry.file
                                  << "\": " << error;
    m_sceneDecorator->setText(0, vyr::String(error), vyr::Vec4(1.0, 0.45, 0.35, 1.0));
    setAutoStepping(false);
    return false;
  }
  if (entry.paused)
    setAutoStepping(false);
  beginScene();
  return true;
}

void ExampleApplication::beginScene() {
  m_sceneDecorator->calculateLightPositions(m_scene.get());
  if (m_cameraHomeSet)
    placeHome();
  else
    fitSceneIntoView();
}

void ExampleApplication::clearScene() {
  // Bodies are journalled by their place in the simulation, so a session ends with its scene.
  if (m_parts->journal.getNumSteps() > 0)
    m_parts->journal.close();
  m_simulation->clear();
  m_simulation->setGravity(m_gravity);
  applySolver();
  m_sceneSwitch->removeChildren(0, m_sceneSwitch->getNumChildren());
  m_scene = new vyrOSG::Group;
  m_sceneSwitch->addChild(m_scene.get());
  m_sceneSwitch->setNodeMask(m_parts->osgRenderer ? ~0u : 0u);
  OSGSceneRoot::set(static_cast<vyrOSG::Group*>(m_scene.get()));
  for (const vyr::ref_ptr<RenderToTexture>& target : m_parts->targets)
    m_root->removeChild(target->getCamera());
  m_parts->targets.clear();
  m_parts->autoPause.clear();
  m_parts->orbit.end();
  m_parts->debugRenderer.clear();
  m_parts->player.close();
  m_parts->sceneEnd = std::numeric_limits<double>::infinity();
  m_imageCapture->resetTime();
  m_sceneDecorator->clearText();
  setAutoStepping(true);
}

} // namespace vyrOSG
