// Sets the application up: arguments, scene graph, simulation, solver, pairs that pause.
#include "ApplicationParts.h"

#include <vyr/Notify.h>
#include <vyrOSG/Conversions.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/OSGSceneRoot.h>

#include <osgDB/FileNameUtils>

#include <algorithm>
#include <cctype>
#include <cmath>

namespace vyrOSG {

namespace {

const char* const kSolverNames[] = {"MULTI", "ITERATIVE"};

vyr::ref_ptr<vyrIO::CFGSceneLoader>& defaultLoader() {
  static vyr::ref_ptr<vyrIO::CFGSceneLoader> loader;
  return loader;
}

} // namespace

ExampleApplication::ExampleApplication(vyrSDK::Simulation* simulation)
    : m_sceneLoader(defaultLoader())
    , m_solverType(ITERATIVE)
    , m_gravity(0.0, 0.0, -9.80665)
    , m_initialized(false)
    , m_stopRequested(false)
    , m_cameraHomeSet(false)
    , m_simulation(simulation ? simulation : new vyrSDK::Simulation)
    , m_saveSceneFilename("vyr_scene.json")
    , m_parts(new Parts) {
  if (simulation)
    m_gravity = simulation->getGravity();
  const LaunchOptions& options = LaunchOptions::process();
  m_parts->placement.x = options.windowX;
  m_parts->placement.y = options.windowY;
  m_parts->placement.screen = options.screen;
  makeSceneGraph();
  m_imageCapture = new ImageCapture(m_simulation.get());
  m_parts->pickHandler = new ScenePickHandler;
  m_pickHandler = m_parts->pickHandler;
  initSimulation(m_simulation.get());
}

ExampleApplication::~ExampleApplication() {
  finishPictures();
  if (OSGSceneRoot::get() == m_scene.get())
    OSGSceneRoot::set(nullptr);
  if (m_viewer.valid())
    m_viewer->setSceneData(nullptr);
}

void ExampleApplication::setDefaultSceneLoader(vyrIO::CFGSceneLoader* loader) {
  defaultLoader() = loader;
}

void ExampleApplication::setSceneLoader(vyrIO::CFGSceneLoader* loader) {
  m_sceneLoader = loader;
}

void ExampleApplication::makeSceneGraph() {
  const LaunchOptions& options = LaunchOptions::process();
  m_root = new vyrOSG::Group;
  m_sceneDecorator = new SceneDecorator(static_cast<int>(options.width), static_cast<int>(options.height));
  m_parts->sceneTransform = new osg::MatrixTransform;
  m_sceneRoot = m_parts->sceneTransform;
  m_sceneSwitch = new osg::Switch;
  m_scene = new vyrOSG::Group;
  m_parts->overlay = new osg::MatrixTransform;
  m_root->addChild(m_sceneDecorator.get());
  m_sceneDecorator->addChild(m_sceneRoot.get());
  m_sceneRoot->addChild(m_sceneSwitch.get());
  m_sceneSwitch->addChild(m_scene.get());
  m_sceneDecorator->getNonShadowedScene()->addChild(m_parts->overlay.get());
  m_parts->overlay->addChild(m_parts->debugRenderer.getNode());
}

bool ExampleApplication::init(vyrIO::ArgumentParser* arguments) {
  m_arguments = arguments ? arguments : new vyrIO::ArgumentParser;
  m_initialized = readArguments();
  return m_initialized;
}

bool ExampleApplication::readArguments() {
  vyrIO::ArgumentParser& arguments = *m_arguments;
  m_luaFilePath = osgDB::getFilePath(arguments.getProgramName());
  if (m_luaFilePath.empty())
    m_luaFilePath = ".";
  arguments.read("--lua-path", m_luaFilePath);
  arguments.read("--save-file", m_saveSceneFilename);
  arguments.read("--cfg", m_parts->cfgFile);

  std::string text;
  if (arguments.read("--solver", text)) {
    const SolverType type = getSolverType(text);
    if (type == NUM_SOLVERS) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "option --solver: there is no solver \"" << text << "\"";
      return false;
    }
    m_solverType = type;
    applySolver();
  }
  double number = 0.0;
  if (arguments.has("--time-step")) {
    if (!arguments.read("--time-step", number) || !(number > 0.0)) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "option --time-step needs a positive number of seconds";
      return false;
    }
    setTimeStep(number);
  }
  if (arguments.readFlag("--paused"))
    setAutoStepping(false);
  m_parts->unpaced = arguments.readFlag("--unpaced");
  if (arguments.readFlag("--debug-rendering"))
    setEnableDebugRenderer(true);
  if (arguments.readFlag("--grid"))
    setEnableGrid(true);

  std::vector<std::string> place;
  if (arguments.read("--window", 4, place)) {
    m_parts->placement.x = std::atoi(place[0].c_str());
    m_parts->placement.y = std::atoi(place[1].c_str());
    if (!LaunchOptions::process().parseSize(place[2] + "x" + place[3])) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "option --window: " << place[2] << " by " << place[3] << " is no window size";
      return false;
    }
    m_sceneDecorator->resize(std::atoi(place[2].c_str()), std::atoi(place[3].c_str()));
  }
  int screen = 0;
  if (arguments.read("--screen", screen))
    m_parts->placement.screen = screen;
  if (!arguments.getProgramName().empty())
    m_parts->placement.title = osgDB::getSimpleFileName(arguments.getProgramName());

  if (arguments.read("--journal", m_parts->journalFile)) {
    m_parts->journalSession = "session";
    arguments.read("--journal-session", m_parts->journalSession);
    m_parts->playAtStart = arguments.readFlag("--journal-playback");
    int format = JOURNAL_FULL;
    if (arguments.has("--journal-format") &&
        (!arguments.read("--journal-format", format) || (format != JOURNAL_FULL && format != JOURNAL_COMPACT))) {
      VYR_NOTIFY(vyr::NOTIFY_ERROR) << "option --journal-format is 0, full, or 1, compact";
      return false;
    }
    setJournalFormat(static_cast<std::size_t>(format));
    if (arguments.readFlag("--journal-record") && !journalRecord(m_parts->journalFile, m_parts->journalSession))
      return false;
  }
  int port = 0;
  if (arguments.read("--remote-debugger", port) && !m_parts->debugger.listen(port))
    return false;
  return m_parts->cfgFile.empty() || readCFGFile();
}

// Simulation

void ExampleApplication::initSimulation(vyrSDK::Simulation* simulation) {
  if (!simulation) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "initSimulation: there is no simulation";
    return;
  }
  m_simulation = simulation;
  m_simulation->setGravity(m_gravity);
  m_imageCapture->setSimulation(simulation);
  m_parts->pickHandler->setSimulation(simulation);
  applySolver();
}

void ExampleApplication::applySolver() {
  m_simulation->setSolver(m_solverType == MULTI ? vyrSDK::Simulation::MULTI : vyrSDK::Simulation::ITERATIVE);
}

void ExampleApplication::changeSolver() {
  m_solverType = static_cast<SolverType>((m_solverType + 1) % NUM_SOLVERS);
  applySolver();
}

std::string ExampleApplication::getSolverName(SolverType type) const {
  return type >= MULTI && type < NUM_SOLVERS ? kSolverNames[type] : "";
}

ExampleApplication::SolverType ExampleApplication::getSolverType(const std::string& name) const {
  std::string upper = name;
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::toupper(letter)); });
  for (int i = 0; i < NUM_SOLVERS; ++i) {
    if (upper == kSolverNames[i])
      return static_cast<SolverType>(i);
  }
  return NUM_SOLVERS;
}

void ExampleApplication::setTimeStep(double seconds) {
  m_simulation->setTimeStep(seconds);
}

double ExampleApplication::getTimeStep() const {
  return m_simulation->getTimeStep();
}

double ExampleApplication::getTimeStamp() const {
  return m_simulation->getTime();
}

// Pausing

void ExampleApplication::addAutoPausePair(const vyr::RigidBody* first, const vyr::RigidBody* second) {
  m_parts->autoPause.add(first, second);
}

void ExampleApplication::addAutoPausePair(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second) {
  m_parts->autoPause.add(first, second);
}

void ExampleApplication::removeAutoPausePair(const vyr::RigidBody* first, const vyr::RigidBody* second) {
  m_parts->autoPause.remove(first, second);
}

void ExampleApplication::removeAutoPausePair(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second) {
  m_parts->autoPause.remove(first, second);
}

void ExampleApplication::setEnableAutoPausing(bool enable) {
  m_parts->autoPausing = enable;
}

bool ExampleApplication::getEnableAutoPausing() {
  return m_parts->autoPausing;
}

void ExampleApplication::setAutoStepping(bool enable) {
  m_parts->autoStepping = enable;
}

bool ExampleApplication::getAutoStepping() const {
  return m_parts->autoStepping;
}

} // namespace vyrOSG
