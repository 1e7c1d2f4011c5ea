/// Records a film or a numbered picture sequence from the pictures of a camera.
#pragma once

#include <vyr/Referenced.h>
#include <vyrOSG/FrameClock.h>
#include <vyrOSG/export.h>

#include <osg/Image>

#include <memory>
#include <string>

namespace vyrOSG {

class FilmEncoder;
class FrameGrabber;

/**
 * Writes pictures into one film file through the program ffmpeg, or into numbered picture files.
 *
 * A target with one integer conversion ("frames/%05d.png") is a sequence, anything else a film ("out.mp4") whose
 * container and codec follow from its extension. Where ffmpeg is missing, a film becomes a sequence of PNG files in a
 * directory beside it, after one warning line. The loop of an application reads
 *
 *     recorder->preFrame(simulation->getTimeStamp(), grabber);
 *     viewer->frame();
 *     recorder->postFrame(grabber);
 *
 * and the film of D seconds at F pictures a second holds exactly D * F pictures.
 */
class VYROSG_EXPORT FrameRecorder : public vyr::Referenced {
public:
  FrameRecorder();

  /**
   * Starts a recording.
   * @param target film file or sequence pattern; missing directories are made.
   * @param fps pictures a second, above 0.
   * @param width,height size of the pictures in pixels; 0 and 0: the size of the first picture. Pictures of another
   *        size are scaled.
   * @return false after one error line if the target or the rate cannot be used.
   */
  bool open(const std::string& target, double fps, unsigned int width = 0, unsigned int height = 0);

  /// Whether a recording runs: true between open() and close() or the first failure.
  bool isOpen() const { return m_open; }

  /// Moves the recorder's clock (s) and gives the number of pictures that became due; 0 when closed.
  int advance(double time);

  /// Seconds until the next picture is due; infinite when closed. Steps no longer than this give each picture its own
  /// moment of the simulation.
  double getTimeToNextFrame() const;

  /// Writes a picture `copies` times. False after one error line if it cannot be written; the recording then ends and
  /// what was written before stays.
  bool write(const osg::Image& image, int copies = 1);

  /// Before a frame is drawn: moves the clock (s) and asks the grabber for the picture if one is due.
  void preFrame(double time, FrameGrabber* grabber);

  /// After the frame was drawn: writes the picture if one was due. False as for write().
  bool postFrame(FrameGrabber* grabber);

  /// Ends the recording and waits until the film is complete. False after one error line if it is not; true when
  /// nothing was open.
  bool close();

  /// The number of pictures written since open().
  unsigned long getFrameCount() const { return m_frameCount; }

  /// What is written: the film's file, or the pattern of the sequence (of the replacement where ffmpeg is missing).
  const std::string& getTarget() const { return m_target; }

  /// Whether a target names a sequence: true with exactly one conversion such as %d or %05d.
  static bool isSequencePattern(const std::string& target);

  /// The path of picture `number` of a sequence. The pattern must pass isSequencePattern().
  static std::string getSequencePath(const std::string& pattern, unsigned long number);

protected:
  ~FrameRecorder() override;

private:
  bool startEncoder();
  bool fail(const std::string& reason);

  FrameClock m_clock;
  std::unique_ptr<FilmEncoder> m_encoder;
  std::string m_target;
  double m_fps = 0.0;
  int m_width = 0;
  int m_height = 0;
  int m_due = 0;
  unsigned long m_frameCount = 0;
  bool m_open = false;
  bool m_sequence = false;
};

} // namespace vyrOSG
