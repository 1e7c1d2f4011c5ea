/// Writes rendered frames to numbered image files while a simulation runs.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/Vec2u.h>
#include <vyr/observer_ptr.h>
#include <vyrOSG/export.h>
#include <vyrSDK/Simulation.h>

#include <osg/Image>

#include <cstddef>
#include <limits>
#include <mutex>
#include <string>

namespace vyrOSG {

class FrameGrabber;

/**
 * A recorder of pictures in lockstep with a clock, usually the simulation's.
 *
 * File names are <directory>/<prefix><number, five digits><postfix>, "./image_00000.png" unless set otherwise. The
 * postfix ends in the extension that chooses the image format; ".png" is added to one without an extension. Missing
 * directories are made when the first image is written. A picture is due one interval (1/fps) after the capture began,
 * the next one interval later: D seconds give exactly D * fps images. A simulation step longer than an interval gives
 * the same picture several numbers, so that a film keeps the simulation's pace.
 *
 * The owner drives the recorder once a frame: preFrame(), draw, postFrame().
 */
class VYROSG_EXPORT ImageCapture : public vyr::Referenced {
public:
  /// Nullable: simulation. *Borrows* the simulation through a weak pointer.
  explicit ImageCapture(vyrSDK::Simulation* simulation);

  /// Limits the number of images of one capture; 0 or less, the default: no limit. Ignored while a capture runs.
  void setMaxImages(int maxImages) {
    if (!getCaptureStarted())
      m_maxImages = maxImages;
  }

  /// Sets the frame rate in images a second, 25 by default; a rate of 0 takes no images. Ignored while a capture runs:
  /// the rate of a film cannot change.
  void setFps(float fps) {
    if (!getCaptureStarted())
      m_timeBetweenFrames = 1.0f / fps;
  }

  /// Gets the frame rate in images a second, to single precision.
  float getFps() { return 1.0f / m_timeBetweenFrames; }

  /**
   * Begins a capture; one that runs goes on unchanged.
   * @param firstNumber least number for the next image. Numbers never go back by themselves, so that a second capture
   *        does not write over the first. A negative number gives one error line and no capture.
   */
  virtual void startCapture(int firstNumber = 0);

  /// Ends the capture. True if one was running.
  virtual bool stopCapture();

  /// Sets the beginning of the file names, "image_" by default.
  void setPrefix(const std::string& prefix) { m_prefix = prefix; }
  /// Gets the beginning of the file names.
  std::string getPrefix() const { return m_prefix; }

  /// Sets the directory of the images, "." by default; an empty path is the current directory, too.
  void setDirectoryPath(const std::string& path) { m_directoryPath = path; }
  /// Gets the directory of the images.
  std::string getDirectoryPath() const { return m_directoryPath; }

  /// Sets the end of the file names, ".png" by default.
  void setPostfix(const std::string& postfix) { m_postfix = postfix; }
  /// Gets the end of the file names.
  std::string getPostfix() const { return m_postfix; }

  /// Sets the observed simulation. Nullable. *Borrows*.
  void setSimulation(vyrSDK::Simulation* simulation) { m_simulation = simulation; }
  /// Gets the observed simulation. Nullable: null once it is gone. *Returns inner*.
  vyrSDK::Simulation* getSimulation() { return m_simulation.get(); }

  /// Sets the size of the images in pixels; 0 and 0, the default: the size of the rendered picture. A picture of
  /// another size is scaled; the application draws one of the very size instead, with the same height of view.
  /// A single zero and sizes above 16384 give one error line and change nothing.
  void setImageResolution(std::size_t width, std::size_t height);
  /// Gets the size of the images in pixels: width, height.
  vyr::Vec2u getImageResolution() const;

  /// Whether a capture runs. Takes the recorder's lock.
  bool getCaptureStarted() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_captureStarted;
  }

  /// Gets the number of the next image.
  int getImageNum() const { return m_imageNum; }
  /// Adds one to the number of the next image and gives the new number; the greatest number stays.
  int incImageNum() { return m_imageNum < std::numeric_limits<int>::max() ? ++m_imageNum : m_imageNum; }

  /// Begins a new interval: the next image is due one interval after the next time that the recorder is told.
  void resetTime() {
    m_accumulatedTime = 0.0;
    m_timeReset = true;
  }

  /// Moves the recorder's clock (s) and gives the number of images that became due; 0 when no capture runs. The first
  /// time after startCapture() or resetTime() fixes the zero; a time that runs backwards begins a new interval.
  int advance(double time);

  /// Seconds until the next image is due; infinite when no capture runs.
  double getTimeToNextImage();

  /// Writes the picture under the next `copies` numbers. False after one error line if a file cannot be written; the
  /// capture then stops and earlier files stay. The capture also stops, with true, at the maximum.
  bool write(const osg::Image& image, int copies = 1);

  /// Before a frame is drawn: moves the clock (s) and asks the grabber for the picture if one is due. Nullable:
  /// grabber.
  void preFrame(double time, FrameGrabber* grabber);

  /// Between preFrame() and postFrame(): whether a picture is due that shall not have this size (pixels).
  bool wantsOtherSize(int width, int height) const;

  /// After the frame was drawn: writes the picture if one was due. Nullable: grabber. False as for write().
  bool postFrame(FrameGrabber* grabber);

  /// The path that an image of this number is written to.
  std::string getImagePath(int number) const;

  /// The number of images written since startCapture().
  int getNumCaptured() const { return m_numCaptured; }

protected:
  ~ImageCapture() override;

private:
  double getRate() const;
  bool fail(const std::string& reason);

  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
  std::string m_directoryPath = ".";
  std::string m_prefix = "image_";
  std::string m_postfix = ".png";
  int m_imageNum = 0;
  int m_maxImages = 0;
  float m_timeBetweenFrames = 1.0f / 25.0f;
  double m_accumulatedTime = 0.0;
  bool m_timeReset = true;
  bool m_captureStarted = false;
  std::mutex m_mutex;
  double m_lastTime = 0.0;
  int m_width = 0;
  int m_height = 0;
  int m_numCaptured = 0;
  int m_due = 0;
};

} // namespace vyrOSG
