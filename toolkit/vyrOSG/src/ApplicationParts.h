// What the application is made of behind its header.
#pragma once

#include "AutoPause.h"
#include "DebugRenderer.h"
#include "Journal.h"
#include "OrbitCamera.h"
#include "RemoteDebugger.h"
#include "ScenePickHandler.h"

#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/FrameGrabber.h>
#include <vyrOSG/FrameRecorder.h>
#include <vyrOSG/GraphicsBackend.h>
#include <vyrOSG/ImageCapture.h>
#include <vyrOSG/LaunchOptions.h>
#include <vyrOSG/RenderToTexture.h>
#include <vyrOSG/SceneDecorator.h>

#include <osg/MatrixTransform>
#include <osg/Switch>
#include <osg/Timer>
#include <osgGA/TrackballManipulator>

#include <deque>
#include <limits>
#include <string>
#include <vector>

namespace vyrOSG {

/// One scene that was added.
struct SceneEntry {
  std::string file;
  std::string function;
  int key;
  double duration;
  bool paused;
};

/// The members of the application that no inline function reads.
struct ExampleApplication::Parts {
  static constexpr std::size_t kNoScene = static_cast<std::size_t>(-1);

  // Scenes
  std::vector<SceneEntry> scenes;
  std::size_t startScene = kNoScene;
  std::size_t currentScene = kNoScene;
  double sceneEnd = std::numeric_limits<double>::infinity();
  int exitCode = 0;

  // Pace
  bool autoStepping = true;
  bool unpaced = false;
  long long stepsLeft = -1;
  double stopTime = std::numeric_limits<double>::infinity();
  bool limited = false;
  AutoPause autoPause;
  bool autoPausing = true;

  // Camera
  osg::Vec3d homeEye;
  osg::Vec3d homeCenter;
  osg::Vec3d homeUp{0.0, 0.0, 1.0};
  osg::ref_ptr<osgGA::TrackballManipulator> manipulator;
  OrbitCamera orbit;
  bool viewWasChosen = false;
  vyr::ref_ptr<ScenePickHandler> pickHandler;
  float pointerX = 0.0f;
  float pointerY = 0.0f;

  // Scene graph
  osg::ref_ptr<osg::MatrixTransform> sceneTransform;
  osg::ref_ptr<osg::MatrixTransform> overlay;
  osg::ref_ptr<osg::Node> grid;
  osg::ref_ptr<osg::Node> axes;
  DebugRenderer debugRenderer;
  bool osgRenderer = true;
  bool gridEnabled = false;
  bool axesEnabled = false;
  vyr::Vec2 gridSize{20.0, 20.0};
  vyr::Vec2u gridResolution{20, 20};
  vyr::AffineMatrix4x4 coordinateSystem;

  // Window
  GraphicsBackend::Placement placement;
  bool allowResizing = true;
  int windowX = 0;
  int windowY = 0;
  int windowWidth = 0;
  int windowHeight = 0;
  bool helpShown = false;
  osg::ref_ptr<osg::Camera> helpNode;

  // Pictures
  FrameGrabber* grabber = nullptr;
  vyr::ref_ptr<FrameRecorder> recorder;
  std::deque<LaunchOptions::Shot> shots;
  std::vector<vyr::ref_ptr<RenderToTexture>> targets;
  bool captureSynced = true;
  int screenShotNumber = 0;
  osg::Timer clock;

  // State
  bool dump = false;
  std::string journalFile;
  std::string journalSession;
  JournalFormat journalFormat = JOURNAL_FULL;
  Journal journal;
  JournalPlayer player;
  bool playAtStart = false;
  RemoteDebugger debugger;
  std::string cfgFile;
};

} // namespace vyrOSG
