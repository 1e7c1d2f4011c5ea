// The ready-made viewer application: it owns simulation, viewer, scene graph and scenes, and runs the main loop.
#pragma once

#include <vyrIO/CFGSceneLoader.h>
#include <vyrOSG/CameraData.h>
#include <vyrOSG/export.h>

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Referenced.h>
#include <vyr/Vec2.h>
#include <vyr/Vec2u.h>
#include <vyr/Vec3.h>
#include <vyr/VyrString.h>
#include <vyr/ref_ptr.h>
#include <vyrIO/ArgumentParser.h>
#include <vyrSDK/PickHandler.h>
#include <vyrSDK/Simulation.h>

#include <osg/Camera>
#include <osg/Group>
#include <osg/Notify>
#include <osg/ref_ptr>
#include <osgViewer/Viewer>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vyr {
class RigidBody;
}
namespace vyrCollide {
class Geometry;
}

namespace vyrOSG {

class GeometryNode;
class GraphicsBackend;
class ImageCapture;
class RenderToTexture;
class SceneDecorator;

/// A complete viewer. A program makes one, calls `init` with its arguments, adds scenes and calls `run`.
///
/// Where pictures go, how large they are, and how long the run lasts follow `LaunchOptions::process()`. In a window the
/// simulation keeps pace with the wall clock; without a display it runs as fast as it can and draws only the frames
/// that something needs: pictures, films, image captures.
class VYROSG_EXPORT ExampleApplication : public vyr::Referenced {
public:
  /// The solvers by number, as scripts know them.
  enum SolverType { MULTI = 0, ITERATIVE = 1, NUM_SOLVERS = 2 };

  /// How the journal writes bodies: each step in full double precision, or in single precision and only what moved.
  enum JournalFormat { JOURNAL_FULL = 0, JOURNAL_COMPACT = 1 };

  /// @param simulation the simulation to show (*retains*). Nullable: null makes one of its own.
  explicit ExampleApplication(vyrSDK::Simulation* simulation = nullptr);

  /// Runs the main loop until `done`: builds the start scene, then steps and draws. Returns the exit code: 0, 1 when
  /// the start scene could not be built or a picture not be written, 3 when the graphics asked for could not be had. In
  /// a window without limits a failed scene leaves the window open, so that it can be mended and loaded again.
  virtual int run();

  /// Makes viewer and context. @param createWindow false keeps to drawing without a window (EGL) or not at all.
  /// @param realize whether the context is made ready at once instead of with the first frame. False without graphics
  /// although a window or EGL was asked for by name; the simulation alone (NONE) is true.
  virtual bool setupViewer(bool createWindow, bool realize = true);

  /// Reads the arguments (*retains*), sets up decorator, groups and simulation. False, with one error line, when an
  /// argument is malformed. Nullable: null is no arguments.
  bool init(vyrIO::ArgumentParser* arguments);
  bool initialized() const { return m_initialized; }
  /// Nullable: null before `init`. *Returns inner*.
  vyrIO::ArgumentParser* getArguments() { return m_arguments.get(); }

  // The simulation and its pace.

  /// *Returns inner*.
  vyrSDK::Simulation* getSimulation() { return m_simulation.get(); }
  /// Takes another simulation (*retains*): its time step becomes the application's, its gravity and solver are set.
  /// Nullable: null is one error line and changes nothing.
  void initSimulation(vyrSDK::Simulation* simulation);
  /// Seconds, positive; anything else is one error line and changes nothing. Default 1/60.
  void setTimeStep(double seconds);
  double getTimeStep() const;
  /// Simulated time in seconds.
  double getTimeStamp() const;
  /// Whether the main loop steps; off is pause. Default on.
  void setAutoStepping(bool enable);
  bool getAutoStepping() const;
  /// Steps once and draws one frame where frames are drawn.
  void step();
  /// Stops the run when the simulated time reaches @p seconds from now; negative takes the limit away.
  void stopAfter(double seconds);
  void stop() { m_stopRequested = true; }
  bool shouldStop() { return m_stopRequested; }
  /// Whether the run is over: stopped, limit reached, or window closed.
  bool done() const;
  /// The stored gravity in m/s^2: what new simulations are given. Default (0, 0, -9.80665).
  vyr::Vec3 getGravity() const { return m_gravity; }

  void setSolverType(SolverType type) { m_solverType = type; }
  SolverType getSolverType() const { return m_solverType; }
  /// "MULTI", "ITERATIVE", or "" for no solver's number.
  std::string getSolverName(SolverType type) const;
  /// The number of a name, in any case of letters; NUM_SOLVERS for no solver's name.
  SolverType getSolverType(const std::string& name) const;
  /// Goes to the next solver and tells the simulation.
  void changeSolver();

  // Pausing when things touch.

  /// The run pauses when the two touch (*borrows*, weakly): bodies in any of their geometries. Nullable: null is
  /// ignored.
  void addAutoPausePair(const vyr::RigidBody* first, const vyr::RigidBody* second);
  void addAutoPausePair(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second);
  void removeAutoPausePair(const vyr::RigidBody* first, const vyr::RigidBody* second);
  void removeAutoPausePair(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second);
  /// Default on; it takes pairs to have an effect. A pair pauses once for each time that it comes into contact.
  void setEnableAutoPausing(bool enable);
  bool getEnableAutoPausing();

  // Scenes.

  /// Adds the scene that @p function of @p file builds.
  /// @param key the key (character code) that shows it, 0 for none.
  /// @param start whether `run` begins with it; the last one so marked wins, without any the first scene.
  /// @param duration simulated seconds after which the next scene follows (the run ends after the last); 0: none.
  /// @param paused whether it begins paused.
  /// False, with one error line, for an empty function or file, an unreadable file, a key taken already or a negative
  /// duration.
  bool addScene(const std::string& file, const std::string& function, int key, bool start, float duration = 0.0f,
                bool paused = false);
  bool addScene(const std::string& file, const std::string& function, bool start, float duration = 0.0f,
                bool paused = false);
  void reloadScene();
  void createNextScene();
  void createPreviousScene();
  /// Empties scene and simulation, time included.
  void clearScene();
  std::size_t getNumScenes() const;
  /// Shows scene @p index (from 0); false when there is none or it failed.
  bool createScene(std::size_t index);
  /// Shows the scene of a key; false when no scene has it or it failed.
  bool createSceneByKey(int key);
  /// What runs script scenes (*retains*). Nullable.
  void setSceneLoader(vyrIO::CFGSceneLoader* loader);
  vyrIO::CFGSceneLoader* getSceneLoader() { return m_sceneLoader.get(); }
  /// The loader that applications of this process begin with; the host sets it once. Nullable.
  static void setDefaultSceneLoader(vyrIO::CFGSceneLoader* loader);
  /// The folders, separated by ';', in which script files are sought that are not found as named.
  std::string getLuaFilePath() const { return m_luaFilePath; }
  /// The file of the scene shown, "" before the first.
  std::string getScriptFile() const { return m_scriptFile; }
  /// Where state is saved; argument --save-file, default "vyr_scene.json".
  std::string getSaveSceneFilename() const { return m_saveSceneFilename; }

  // Scene graph.

  /// *Returns inner*.
  SceneDecorator* getSceneDecorator() { return m_sceneDecorator.get(); }
  /// The group that the scene shown fills. Nullable. *Returns inner*.
  osg::Group* getScene() { return m_scene.get(); }
  /// Replaces the reference to the scene's group (*retains*). Nullable.
  void setScene(osg::Group* scene) { m_scene = scene; }
  /// The transform below the decorator that all scenes stand under. *Returns inner*.
  osg::Group* getSceneRoot() { return m_sceneRoot.get(); }
  /// The switch below the scene root. *Returns inner*.
  osg::Group* getSceneSwitch() { return m_sceneSwitch.get(); }
  /// The root that the viewer draws. *Returns inner*.
  osg::Group* getRoot() { return m_root.get(); }
  /// How simulation coordinates stand in the world of the viewer; default the identity. A singular or non-finite matrix
  /// is one error line and changes nothing.
  void setCoordinateSystemTransform(const vyr::AffineMatrix4x4& transform);
  vyr::AffineMatrix4x4 getCoordinateSystemTransform() const;

  // Camera.

  /// Nullable: null without graphics. *Returns inner*.
  osgViewer::Viewer* getViewer() { return m_viewer.get(); }
  /// The viewer's master camera. Nullable: null without a viewer. *Returns inner*.
  osg::Camera* getCamera() { return m_viewer.valid() ? m_viewer->getCamera() : nullptr; }
  /// Where the camera goes on the home key and when a scene begins (m, world).
  void setCameraHome(const vyr::Vec3& eye, const vyr::Vec3& center, const vyr::Vec3& up = vyr::Vec3(0, 0, 1));
  bool isCameraHomeSet() const { return m_cameraHomeSet; }
  /// Moves back along the view direction until everything that is not an endless plane is in view.
  void fitSceneIntoView();
  /// Turns the camera towards the middle of the scene without moving the eye.
  void centerScene();
  CameraData getCameraData() const;
  void applyCameraData(const CameraData& data);
  /// Unit vector, world.
  vyr::Vec3 getViewDirection();
  /// The camera circles @p node (*borrows*, weakly) and follows it. Nullable: null ends it.
  /// @param distance horizontal distance (m). @param height above the node (m).
  /// @param speed turns a second of simulated time, positive anticlockwise seen from above.
  /// @param flags 1: turn with the node's heading too.
  void setOrbitCamera(vyrOSG::GeometryNode* node, double distance, double height, double speed, int flags = 0);
  /// The camera keeps @p eye and looks at @p center with @p up, all in coordinates relative to the node (m).
  /// @param flags 1: the offsets turn with the node, 0: they keep the world's axes.
  void setOrbitCamera(vyrOSG::GeometryNode* node, const vyr::Vec3& eye, const vyr::Vec3& center, const vyr::Vec3& up,
                      int flags = 0);
  /// Rays against the physics' geometries. *Returns inner*.
  vyrSDK::PickHandler* getPickHandler() { return m_pickHandler.get(); }

  // Drawing.

  /// Contacts, normals, forces, frames and bounds as lines; true when the state is as asked.
  bool setEnableDebugRenderer(bool enable);
  bool getEnableDebugRenderer() const;
  /// Names, speeds and contact forces as text beside the debug lines. Default off.
  void setEnableTextDebugRendering(bool enable);
  bool getEnableTextDebugRendering() const;
  /// The inverse of the transform that the debug lines shall be seen under; default the identity.
  void setDebugRenderInverseMatrix(const vyr::AffineMatrix4x4& matrix);
  /// The scene itself on or off; debug lines and HUD stay. Default on.
  void setEnableOSGRenderer(bool enable);
  bool getEnableOSGRenderer();
  /// A grid in the plane z = 0 of the simulation. Default off.
  void setEnableGrid(bool enable);
  bool getEnableGrid() const;
  /// Edge lengths (m), positive; default 20 by 20.
  void setGridSize(const vyr::Vec2& size);
  vyr::Vec2 getGridSize() const;
  /// Cells along each edge, 1 to 10000; default 20 by 20.
  void setGridResolution(vyr::Vec2u resolution);
  vyr::Vec2u getGridResolution() const;
  /// Axes at the origin: x red, y green, z blue. Default off.
  void setEnableCoordinateSystem(bool enable);
  bool getEnableCoordinateSystem() const;
  /// Whether the user may change the window's size. Default on.
  void setAllowWindowResizing(bool allow);
  bool getAllowWindowResizing() const;
  /// The window's handle as a number (the X window), 0 without a window.
  std::size_t getHWND() const;
  void setOsgNotifyLevel(osg::NotifySeverity level) const;
  /// Texts that are drawn once a frame and textures that are drawn into (*retains*). Nullable: null is ignored.
  void addRenderToTexture(vyrOSG::RenderToTexture* target);
  /// Draws a frame and writes it; "" takes the next free "screenshot_0000.png". An image that cannot be written is one
  /// error line and an exit code 1 of `run`.
  void takeScreenShot(const vyr::VyrString<std::string>& file = vyr::VyrString<std::string>());
  /// *Returns inner*.
  ImageCapture* getImageCapture() { return m_imageCapture.get(); }
  /// Whether captures take their pace from simulated time (default) instead of the wall clock.
  void setEnableCaptureSyncWithSimulation(bool enable);
  bool getEnableCaptureSyncWithSimulation() const;
  /// Which back end draws. Nullable: null before `setupViewer`. *Returns inner*.
  GraphicsBackend* getGraphicsBackend() { return m_backend.get(); }

  // State, journal, debugger.

  /// Reads a state that was saved by key or dump. Bodies of the same name and order take it over; into an empty
  /// simulation the bodies themselves are built, with visuals. False and one error line on any failure.
  bool restoreFromFile(const std::string& file);
  /// Writes the state to `file`, which `restoreFromFile` reads; false and one error line on failure.
  bool saveToFile(const std::string& file) const;
  /// Whether the state is written to "<save file>.<step>.json" after every step. Default off.
  void setEnableSimulationDump(bool enable);
  bool getEnableSimulationDump() const;
  /// The application's settings out of the file of argument --cfg, or "vyr.cfg" of the current folder. False when there
  /// is none, or with one error line when a line of it is malformed.
  bool readCFGFile();
  /// Plays back the session that was named by --journal-session from the file of --journal, from its beginning.
  void journalPlayback();
  /// Starts writing each step into the journal @p file under @p session; false and one error line on failure.
  bool journalRecord(const std::string& file, const std::string& session);
  /// The names of the sessions in a journal, oldest first; also told as information.
  std::vector<std::string> listSessionNames(const std::string& file);
  std::size_t getJournalFormat() const;
  /// A `JournalFormat`; any other number is one error line and changes nothing. Takes effect with the next recording.
  void setJournalFormat(std::size_t format);
  /// Sends the state of this moment to the debuggers that are connected; nothing happens without --remote-debugger.
  void updateRemoteDebugger();
  /// The port on which debuggers are listened for on the loopback interface, 0 while none is.
  int getRemoteDebuggerPort() const;

protected:
  ~ExampleApplication() override;

private:
  friend class ApplicationKeys;
  struct Parts;

  bool readArguments();
  void makeSceneGraph();
  void applySolver();
  bool hasSceneKey(int key) const;
  bool buildScene(std::size_t index);
  void beginScene();
  void placeHome();
  void setView(const osg::Vec3d& eye, const osg::Vec3d& center, const osg::Vec3d& up);
  void updateView();
  void stepSimulation();
  void checkLimits();
  void drawFrame();
  bool isCapturingInLockStep() const;
  bool drawAndGrab();
  /// Draws what the last frame showed once more, in another size (pixels).
  bool drawAndGrab(int width, int height);
  void takeDueShots();
  bool writePicture(const std::string& file);
  bool startPictures();
  void finishPictures();
  void fail(int exitCode);
  void runPaced();
  void runUnpaced();
  void renewGrid();
  void resized(int x, int y, int width, int height);
  void toggleHelp();

  // What the inline functions above read.
  osg::ref_ptr<SceneDecorator> m_sceneDecorator;
  vyr::ref_ptr<ImageCapture> m_imageCapture;
  osg::ref_ptr<osgViewer::Viewer> m_viewer;
  osg::ref_ptr<osg::Group> m_sceneRoot;
  osg::ref_ptr<osg::Group> m_root;
  osg::ref_ptr<osg::Group> m_scene;
  osg::ref_ptr<osg::Group> m_sceneSwitch;
  vyr::ref_ptr<vyrIO::ArgumentParser> m_arguments;
  vyr::ref_ptr<vyrSDK::PickHandler> m_pickHandler;
  vyr::ref_ptr<vyrIO::CFGSceneLoader> m_sceneLoader;
  SolverType m_solverType;
  vyr::Vec3 m_gravity;
  bool m_initialized;
  bool m_stopRequested;
  bool m_cameraHomeSet;

  vyr::ref_ptr<vyrSDK::Simulation> m_simulation;
  vyr::ref_ptr<GraphicsBackend> m_backend;
  std::string m_luaFilePath;
  std::string m_scriptFile;
  std::string m_saveSceneFilename;
  std::unique_ptr<Parts> m_parts;
};

} // namespace vyrOSG
