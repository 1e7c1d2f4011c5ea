/// Counts the pictures that a film of a given rate owes to a clock.
#pragma once

#include <vyrOSG/export.h>

namespace vyrOSG {

/**
 * Turns the times of a clock into numbers of pictures, without drift.
 *
 * The first picture is due one interval after the start, the next one interval later, and so on: a clock that has run
 * for D seconds at F pictures a second has been told of exactly floor(D * F) pictures, however its steps were cut.
 */
class VYROSG_EXPORT FrameClock {
public:
  /**
   * Takes the pictures that are due out of an accumulated time.
   *
   * A picture counts as due a thousandth of an interval early, because sums of time steps are not exact.
   * @param accumulated seconds since the last picture; reduced by one interval for each picture that is due.
   * @param fps pictures a second; 0, a negative rate and NaN give no pictures.
   * @return the number of pictures that are due, 0 or more.
   */
  static int takeDue(double& accumulated, double fps);

  /// Sets the rate in pictures a second and starts again at the next time given.
  void start(double fps);

  /// Moves the clock to a time in seconds and gives the number of pictures that became due. The first call after
  /// start() fixes the zero; a time that runs backwards starts again there.
  int advance(double time);

  /// Seconds until the next picture is due; infinite without a rate.
  double getTimeToNext() const;

private:
  double m_fps = 0.0;
  double m_lastTime = 0.0;
  double m_accumulated = 0.0;
  bool m_reset = true;
};

} // namespace vyrOSG
